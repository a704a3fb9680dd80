// Brings calls of any thread to a window's thread. Made and closed there; workers may hold it longer than the window
// lives.
#pragma once

#include "module/browser/GuiQueue.h"

#include <QObject>

#include <memory>
#include <mutex>

class CWindowQueue : public IGuiQueue {
public:
    CWindowQueue() : m_receiver(std::make_unique<QObject>()) {}

    void Post(std::function<void()> call) override {
        const std::lock_guard lock(m_mutex);
        if (m_receiver)
            QMetaObject::invokeMethod(m_receiver.get(), std::move(call), Qt::QueuedConnection);
    }
    // What waits is dropped.
    void Close() {
        const std::lock_guard lock(m_mutex);
        m_receiver.reset();
    }

private:
    std::mutex m_mutex;
    std::unique_ptr<QObject> m_receiver; // m_mutex
};
