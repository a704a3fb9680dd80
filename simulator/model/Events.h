// The event state of objects (clause 13): raising and acknowledging events, and what the summaries tell of them. All is
// kept in the objects' own properties. Not thread-safe: the device locks.
#pragma once

#include "api/bacnet/Services.h"
#include "simulator/model/Object.h"

#include <array>

namespace sim {

// BACnetEventState, as far as code names it.
inline constexpr std::uint32_t EVENT_NORMAL = 0;
inline constexpr std::uint32_t EVENT_FAULT = 1;
inline constexpr std::uint32_t EVENT_OFFNORMAL = 2;
inline constexpr std::uint32_t EVENT_HIGH_LIMIT = 3;
inline constexpr std::uint32_t EVENT_LOW_LIMIT = 4;

// Transitions, in the order of the bits and arrays.
enum class Transition : std::uint8_t { toOffnormal, toFault, toNormal };
inline constexpr std::uint32_t TRANSITIONS = 3;
Transition TransitionTo(std::uint32_t state);

// Gives an object the properties that reporting events takes, where it does not have them.
void AddEventProperties(Object& object);

// The object goes to that state. The transition is not acknowledged if acknowledgement is required.
void EnterState(Object& object, std::uint32_t state, bool ackRequired, LocalTime now);
void Acknowledge(Object& object, Transition transition);

// What an object tells of its events; nothing from one that reports none.
struct EventStatus {
    std::uint32_t State = EVENT_NORMAL;
    std::uint32_t Type = 0; // BACnetEventType
    std::uint32_t NotifyType = 0;
    std::uint32_t NotificationClass = 0;
    std::uint8_t Acked = 7; // bit n: transition n
    std::uint8_t Enabled = 0;
    std::array<BACSTAC_TIME_STAMP, TRANSITIONS> Times{};

    bool IsAcked() const { return Acked == 7; }
};
std::optional<EventStatus> StatusOf(const Object& object);

// What a notification class says; class objects are found by their property, not by their instance.
struct NotificationClass {
    std::array<std::uint32_t, TRANSITIONS> Priorities{255, 255, 255};
    std::uint8_t AckRequired = 7;
    bool Notifies = false; // the recipient that was asked for
};

// recipient: null, or the one that Notifies is about, with its process.
NotificationClass ReadClass(const Object& object, const BACSTAC_RECIPIENT* recipient, std::uint32_t process);

} // namespace sim
