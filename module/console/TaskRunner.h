// Takes tasks from any thread and runs them on the thread that it lives on, in their order. The tasks are handed over
// in a queue of its own; the toolkit's event only says that there is one.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

class CTaskRunner : public QObject {
public:
    void Post(std::function<void()> task) {
        {
            const std::lock_guard lock(m_mutex);
            m_tasks.push_back(std::move(task));
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        std::function<void()> task;
        {
            const std::lock_guard lock(m_mutex);
            task = std::move(m_tasks.front());
            m_tasks.pop_front();
        }
        task();
        return true;
    }

private:
    std::mutex m_mutex;
    std::deque<std::function<void()>> m_tasks; // m_mutex; one for each posted event
};
