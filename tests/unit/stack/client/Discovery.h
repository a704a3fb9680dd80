// Collects the devices that announce themselves.
#pragma once

#include "api/bacnet/Callbacks.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>

class Discovery : public CIAMCallback {
public:
    void OnIAm(BACSTAC_ADDRESS const&, unsigned const& device) override {
        const std::lock_guard lock(m_lock);
        m_devices.insert(device);
        m_changed.notify_all();
    }
    // Waits until so many have, at most 5 seconds.
    std::set<unsigned> WaitFor(std::size_t count) {
        std::unique_lock lock(m_lock);
        m_changed.wait_for(lock, std::chrono::seconds(5), [&] { return m_devices.size() >= count; });
        return m_devices;
    }

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::set<unsigned> m_devices;
};
