// The standard's event algorithms (clause 13.3), one row each: where their terms come from, which state they want, and
// what a notification tells. They know nothing of time delays and of the states' consequences: EventMonitor does. Any
// thread; no state.
#pragma once

#include "platform/stack/codec/Reader.h"
#include "simulator/model/Events.h"

#include <optional>

namespace sim {

// BACnetEventType, as far as code names it.
inline constexpr std::uint32_t TYPE_CHANGE_OF_RELIABILITY = 19;

// What an algorithm measures by; each uses what it knows.
struct EventTerms {
    std::uint32_t TimeDelay = 0;       // seconds
    std::uint32_t TimeDelayNormal = 0; // back to normal
    double Low = 0;                    // also the difference from a set point
    double High = 0;
    double Deadband = 0;
    double Increment = 0; // of change-of-value; the threshold of buffer-ready
    bool LowEnabled = true;
    bool HighEnabled = true;
    BACSTAC_BIT_STRING Mask{};                     // the bits that count
    std::vector<Value> Alarms;                     // values that are alarms, each as the monitored value is encoded
    unsigned StateChoice = 1;                      // of BACnetPropertyStates: how a notification tells the new state
    std::optional<BACSTAC_DEV_OBJ_PROP_REF> Other; // the property to compare with: feedback, set point
};

// What it looks at.
struct EventInputs {
    Value Monitored;
    Value Other;     // the property that the terms refer to
    Value Last;      // the monitored value at the last transition
    Value Reference; // to the monitored property, as BACnetDeviceObjectPropertyReference
    BACSTAC_BIT_STRING StatusFlags{};
    std::uint32_t Reliability = 0;
};

struct EventAlgorithm {
    std::uint32_t Type; // BACnetEventType, also the context tag of its Event_Parameters and of its event values
    // Terms from the contents of that choice, and from the properties of an object that reports by itself; false when
    // they are not there.
    bool (*ReadParameters)(bacnet::Reader& parameters, EventTerms& terms);
    bool (*ReadObject)(const Object& object, EventTerms& terms);
    // The state that the object should be in, which is in state present (not a fault).
    std::uint32_t (*Judge)(const EventTerms& terms, const EventInputs& inputs, std::uint32_t present);
    // Whether it should be reported again though the state stays; null: never.
    bool (*Repeats)(const EventTerms& terms, const EventInputs& inputs, std::uint32_t present);
    // The contents of its event values. exceeded: the state that is entered, or left for normal.
    void (*PutValues)(const EventTerms& terms, const EventInputs& inputs, std::uint32_t exceeded, bacnet::Writer& to);
};

// Null for a type that the simulator does not work by.
const EventAlgorithm* FindAlgorithm(std::uint32_t eventType);

// The contents of the event values of a change of reliability (clause 13.2.5.3).
void PutReliability(const EventInputs& inputs, bacnet::Writer& to);

} // namespace sim
