// The schedules and calendars of a device at work: their present values follow the device's clock, and what a schedule
// says is written to the properties that it lists (clauses 12.24 and 12.9). Not thread-safe: the device locks.
#pragma once

#include "simulator/model/Object.h"

namespace sim {

class Device;

class Schedules {
public:
    explicit Schedules(Device& device) : m_device(device) {}

    bool Empty() const { return m_calendars.empty() && m_schedules.empty(); }

    // Objects came or went.
    void FindObjects();
    // The object has another value, by whatever hand.
    void OnChange(const Object& object, BACSTAC_PROPERTY_ID property);
    // To be called as often as present values are to be right; the clock may have been set.
    void OnTime();

private:
    struct Entry {
        BACSTAC_OBJECT_ID Id;
        bool Effective = false; // when it was evaluated last
    };

    void Evaluate();
    void EvaluateSchedule(Entry& entry, const BACSTAC_DATE_TIME& now);
    Entry* FindSchedule(BACSTAC_OBJECT_ID id);
    void WriteReferences(const Object& schedule);

    Device& m_device;
    std::vector<BACSTAC_OBJECT_ID> m_calendars;
    std::vector<Entry> m_schedules;
    LocalTime m_evaluatedAt = 0; // in seconds
};

} // namespace sim
