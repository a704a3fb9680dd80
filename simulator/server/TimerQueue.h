// What a server thread has to do later. One thread.
#pragma once

#include "simulator/model/Fault.h"
#include "simulator/server/Requester.h"

#include <cstdint>
#include <memory>
#include <queue>
#include <vector>

namespace sim {

class DeviceServer;

// A request that is answered later than it came.
struct Deferred {
    Requester From;
    bool ToAll = false;             // Who-Is: the answer is broadcast,
    bool Globally = false;          // on all networks
    std::vector<std::uint8_t> Apdu; // of a confirmed request; empty: Who-Is
    FaultEffects Effects;
};

struct Timer {
    std::int64_t DueMs = 0;
    std::uint64_t Order = 0; // of timers that are due at once
    DeviceServer* Server = nullptr;
    std::uint32_t Slot = 0;            // of a segmented answer, without a deferred request
    std::shared_ptr<Deferred> Request; // shared because a priority queue gives its top as constant
};

class TimerQueue {
public:
    void Push(Timer timer) {
        timer.Order = m_order++;
        m_timers.push(std::move(timer));
    }
    // Milliseconds until the next timer is due; -1 without any.
    int TimeLeft(std::int64_t nowMs) const {
        if (m_timers.empty())
            return -1;
        const std::int64_t left = m_timers.top().DueMs - nowMs;
        return left < 0 ? 0 : static_cast<int>(left);
    }
    bool Pop(std::int64_t nowMs, Timer& timer) {
        if (m_timers.empty() || m_timers.top().DueMs > nowMs)
            return false;
        timer = m_timers.top();
        m_timers.pop();
        return true;
    }

private:
    struct Later {
        bool operator()(const Timer& a, const Timer& b) const {
            return a.DueMs != b.DueMs ? a.DueMs > b.DueMs : a.Order > b.Order;
        }
    };
    std::priority_queue<Timer, std::vector<Timer>, Later> m_timers;
    std::uint64_t m_order = 0;
};

} // namespace sim
