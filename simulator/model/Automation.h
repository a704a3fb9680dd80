// What a device does by itself, without being asked: it follows its schedules, reports events
// and tells of changes of value. Told of every change of a property and,
// from time to time, that time goes by. A device without such objects spends nothing on it. Not thread-safe: the device
// locks.
#pragma once

#include "simulator/model/EventMonitor.h"
#include "simulator/model/Schedules.h"
#include "simulator/model/Subscriptions.h"

#include <atomic>
#include <deque>

namespace sim {

class Automation {
public:
    explicit Automation(Device& device)
        : m_device(device), m_schedules(device), m_events(device), m_subscriptions(device) {}

    // Whether time brings something to do. Any thread.
    bool IsAtWork() const { return m_isAtWork; }
    // Whether no change has consequences.
    bool Empty() const { return m_schedules.Empty() && m_events.Empty() && m_subscriptions.Empty(); }
    EventMonitor& Events() { return m_events; }
    PropertyError Subscribe(const CovRequest& request);
    Subscriptions& Cov() { return m_subscriptions; }
    const Subscriptions& Cov() const { return m_subscriptions; }

    // Objects came or went.
    void FindObjects();
    // A property has another value, by whatever hand. What follows from it is done before this returns, and what
    // follows from that; unless it is itself called from there.
    void OnChange(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property);
    void OnTime();

private:
    struct Change {
        BACSTAC_OBJECT_ID Object;
        BACSTAC_PROPERTY_ID Property;
    };

    template <typename Step>
    void Do(Step step); // and what follows
    void Settle();

    Device& m_device;
    Schedules m_schedules;
    EventMonitor m_events;
    Subscriptions m_subscriptions;
    std::deque<Change> m_changes; // whose consequences are still to come
    bool m_settling = false;
    std::atomic<bool> m_isAtWork = false;
};

} // namespace sim
