// The latest status of the history transfer, for status displays and for whoever waits for its end. Any thread.
#pragma once

#include "api/driver/HistoryObserver.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

class CHistoryMonitor : public IHistoryObserver {
public:
    void OnHistoryStatus(const HistoryStatus& status) override;

    HistoryStatus Latest() const;
    // How many transfers have ended since the start of the process.
    std::uint64_t Ended() const;
    // Waits until more than `ended` transfers have ended; false when the time passes first.
    bool WaitForEnd(std::uint64_t ended, std::chrono::milliseconds time) const;

private:
    mutable std::mutex m_lock;
    mutable std::condition_variable m_changed;
    HistoryStatus m_status; // these are guarded by m_lock
    std::uint64_t m_ended = 0;
};
