// What a device does by itself, without being asked: it follows its schedules and reports
// events. Told of every change of a property and,
// from time to time, that time goes by. A device without such objects spends nothing on it. Not thread-safe: the device
// locks.
#pragma once

#include "simulator/model/EventMonitor.h"
#include "simulator/model/Schedules.h"

#include <deque>

namespace sim {

class Automation {
public:
    explicit Automation(Device& device) : m_device(device), m_schedules(device), m_events(device) {}

    // Nothing to do, now or later.
    bool Empty() const { return m_schedules.Empty() && m_events.Empty(); }
    EventMonitor& Events() { return m_events; }

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
    std::deque<Change> m_changes; // whose consequences are still to come
    bool m_settling = false;
};

} // namespace sim
