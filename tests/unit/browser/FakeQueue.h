// The console thread's queue, served by the test.
#pragma once

#include "module/browser/GuiQueue.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

class CFakeQueue : public IGuiQueue {
public:
    void Post(std::function<void()> call) override {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
        m_posted.notify_all();
    }
    // Runs what is there.
    void Run() {
        for (auto& call : Take())
            call();
    }
    // Serves the queue until the condition holds; false when it does not in ten seconds.
    template <class Condition>
    bool RunUntil(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        for (;;) {
            Run();
            if (condition())
                return true;
            std::unique_lock lock(m_mutex);
            // A condition may come true without a call.
            m_posted.wait_for(lock, std::chrono::milliseconds(5), [this] { return !m_calls.empty(); });
            if (std::chrono::steady_clock::now() > deadline)
                return false;
        }
    }

private:
    std::vector<std::function<void()>> Take() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_calls, {});
    }

    std::mutex m_mutex;
    std::condition_variable m_posted;
    std::vector<std::function<void()>> m_calls; // m_mutex
};
