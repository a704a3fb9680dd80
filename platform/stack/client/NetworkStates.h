// Which networks the driver has switched off. All are on at the start. Any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <set>
#include <shared_mutex>

namespace bacnet {

class NetworkStates {
public:
    bool IsEnabled(std::uint16_t network) const {
        if (!m_any.load(std::memory_order_acquire)) // the usual case: nothing is switched off
            return true;
        const std::shared_lock lock(m_lock);
        return !m_disabled.contains(network);
    }
    void Set(std::uint16_t network, bool enabled) {
        const std::unique_lock lock(m_lock);
        if (enabled)
            m_disabled.erase(network);
        else
            m_disabled.insert(network);
        m_any.store(!m_disabled.empty(), std::memory_order_release);
    }

private:
    mutable std::shared_mutex m_lock;
    std::set<std::uint16_t> m_disabled; // m_lock
    std::atomic<bool> m_any{false};
};

} // namespace bacnet
