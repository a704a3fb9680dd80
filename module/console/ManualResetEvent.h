// An event that stays set once it is set. Any thread.
#pragma once

#include "module/console/Thread.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

class CManualResetEvent {
public:
    void Set() {
        const std::lock_guard lock(m_mutex);
        m_isSet = true;
        m_wake.notify_all();
    }
    bool IsSet() const {
        const std::lock_guard lock(m_mutex);
        return m_isSet;
    }
    // False after the timeout in milliseconds, which WAIT_WITHOUT_LIMIT has none of.
    bool Wait(std::uint32_t milliseconds) const {
        std::unique_lock lock(m_mutex);
        const auto isSet = [this] { return m_isSet; };
        if (milliseconds != WAIT_WITHOUT_LIMIT)
            return m_wake.wait_for(lock, std::chrono::milliseconds(milliseconds), isSet);
        m_wake.wait(lock, isSet);
        return true;
    }

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_wake;
    bool m_isSet = false; // m_mutex
};
