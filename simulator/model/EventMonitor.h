// The event reporting of a device at work (clause 13.2): objects that report by themselves and Event Enrollment objects
// change their event state by their algorithms, after their time delays, and every transition is recorded in the event
// logs and sent to the recipients of the notification class. Objects are looked at when something of theirs changes,
// and when a delay is over. Not thread-safe: the device locks.
#pragma once

#include "simulator/model/EventAlgorithm.h"
#include "simulator/model/Events.h"
#include "simulator/model/Notification.h"

#include <vector>

namespace sim {

class Device;

class EventMonitor {
public:
    explicit EventMonitor(Device& device) : m_device(device) {}

    bool Empty() const { return m_sources.empty(); }
    bool IsWaiting() const { return m_waiting != 0; } // for the end of a delay

    // Objects came or went. What is not normal then stays so until something of it changes.
    void FindObjects();
    void OnChange(Object& object, BACSTAC_PROPERTY_ID property);
    void OnTime();

    // Takes the object to a state by hand, with all that comes of it, until something of it changes.
    void Enter(Object& object, std::uint32_t state);
    // Acknowledges, and tells the recipients; by: UTF-8, may be empty.
    void Acknowledge(Object& object, Transition transition, const std::string& by);

private:
    struct Source {
        BACSTAC_OBJECT_ID Id;
        std::vector<BACSTAC_OBJECT_ID> Watched; // besides itself: of an enrollment
        Value Last;                             // the monitored value at the last transition
        bool Waits = false;                     // for the end of a delay, to enter the state Wanted
        std::uint32_t Wanted = EVENT_NORMAL;
        LocalTime DueAt = 0; // uptime
    };
    // An algorithm with what it needs, taken from the objects as they are now.
    struct Reading {
        const EventAlgorithm* Algorithm = nullptr;
        EventTerms Terms;
        EventInputs Inputs;
    };

    void FollowParameters(Object& enrollment) const;
    Source* FindSource(BACSTAC_OBJECT_ID id);
    std::optional<Reading> Read(const Object& object) const;
    std::optional<Reading> ReadOwn(const Object& object) const;
    std::optional<Reading> ReadEnrollment(const Object& object) const;
    Value Get(const BACSTAC_DEV_OBJ_PROP_REF& reference) const;
    void Monitor(const BACSTAC_DEV_OBJ_PROP_REF& reference, Reading& reading) const;
    void Evaluate(Source& source);
    bool EvaluateOnce(Source& source);
    void SetWaits(Source& source, bool waits);
    void Watch(Source& source, const Reading& reading) const;
    void Change(Object& object, std::uint32_t state, Reading* reading);
    std::string ValuesOf(Reading& reading, const Object& object, const Notification& event) const;
    void Publish(const Notification& event, Transition transition, bool enabled);

    Device& m_device;
    std::vector<Source> m_sources;                // by identifier
    std::vector<BACSTAC_OBJECT_ID> m_enrollments; // those of them that watch other objects
    std::size_t m_waiting = 0;                    // sources that wait
};

} // namespace sim
