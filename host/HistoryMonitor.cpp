#include "host/HistoryMonitor.h"

// Whoever waits may destroy the monitor as soon as it has the lock, so the waking is over by then.
void CHistoryMonitor::OnHistoryStatus(const HistoryStatus& status) {
    const std::lock_guard guard(m_lock);
    if (m_status.running && !status.running)
        ++m_ended;
    m_status = status;
    m_changed.notify_all();
}

HistoryStatus CHistoryMonitor::Latest() const {
    const std::lock_guard guard(m_lock);
    return m_status;
}

std::uint64_t CHistoryMonitor::Ended() const {
    const std::lock_guard guard(m_lock);
    return m_ended;
}

bool CHistoryMonitor::WaitForEnd(std::uint64_t ended, std::chrono::milliseconds time) const {
    std::unique_lock guard(m_lock);
    return m_changed.wait_for(guard, time, [&] { return m_ended > ended; });
}
