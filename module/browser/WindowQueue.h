// Brings calls of any thread to a window's thread. Made and closed there; workers may hold it longer than the window
// lives.
#pragma once

#include "module/browser/GuiQueue.h"
#include "module/console/TaskRunner.h"

#include <memory>
#include <mutex>

class CWindowQueue : public IGuiQueue {
public:
    CWindowQueue() : m_runner(std::make_unique<CTaskRunner>()) {}

    void Post(std::function<void()> call) override {
        const std::lock_guard lock(m_mutex);
        if (m_runner)
            m_runner->Post(std::move(call));
    }
    // What waits is dropped.
    void Close() {
        const std::lock_guard lock(m_mutex);
        m_runner.reset();
    }

private:
    std::mutex m_mutex;
    std::unique_ptr<CTaskRunner> m_runner; // m_mutex
};
