#include "simulator/model/Events.h"

#include "platform/stack/codec/Reader.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/model/Destination.h"

#include <algorithm>

namespace sim {

namespace {

using Octets = std::span<const std::uint8_t>;

constexpr std::uint8_t ALL_TRANSITIONS = 7;

Value Bits(std::uint8_t bits) {
    BACSTAC_BIT_STRING value{};
    value.BitCount = TRANSITIONS;
    value.Bits[0] = bits;
    return Value::BitString(value);
}

std::uint8_t BitsOf(const Object& object, BACSTAC_PROPERTY_ID property, std::uint8_t otherwise) {
    const Value* value = object.Find(property);
    BACSTAC_BIT_STRING bits{};
    return value != nullptr && bacnet::Reader(value->Wire()).BitString(bits) ? bits.Bits[0] & ALL_TRANSITIONS
                                                                             : otherwise;
}

std::uint32_t NumberOf(const Object& object, BACSTAC_PROPERTY_ID property, std::uint32_t otherwise) {
    const Value* value = object.Find(property);
    if (value == nullptr)
        return otherwise;
    bacnet::Reader in(value->Wire());
    std::uint32_t number = otherwise;
    if (in.IsApplication(bacnet::TAG_UNSIGNED))
        in.Unsigned(number);
    else
        in.Enumerated(number);
    return number;
}

BACSTAC_DATE_TIME NoTime() {
    BACSTAC_DATE_TIME time{};
    time.Date = {BACSTAC_ANY_YEAR, 0, BACSTAC_ANY_MONTH, BACSTAC_ANY_DAY, BACSTAC_ANY_WEEKDAY};
    time.Time = {255, 255, 255, 255};
    return time;
}

BACSTAC_TIME_STAMP StampOf(Octets octets) {
    BACSTAC_TIME_STAMP stamp{};
    stamp.Choice = 2;
    stamp.DateTime = NoTime();
    bacnet::Reader in(octets);
    if (in.IsContext(0)) {
        stamp.Choice = 0;
        in.Time(stamp.Time, 0);
    } else if (in.IsContext(1)) {
        stamp.Choice = 1;
        in.Unsigned(stamp.SequenceNumber, 1);
    } else if (in.IsOpening(2)) {
        in.Open(2);
        in.Date(stamp.DateTime.Date);
        in.Time(stamp.DateTime.Time);
    }
    return stamp;
}

void SetIfMissing(Object& object, BACSTAC_PROPERTY_ID property, Value value) {
    if (object.Find(property) == nullptr)
        object.Set(property, std::move(value));
}

} // namespace

Transition TransitionTo(std::uint32_t state) {
    return state == EVENT_NORMAL  ? Transition::toNormal
           : state == EVENT_FAULT ? Transition::toFault
                                  : Transition::toOffnormal;
}

void AddEventProperties(Object& object) {
    const Value never = Value::TimeStamp(NoTime());
    const Value times[] = {never, never, never};
    SetIfMissing(object, PROP_EVENT_STATE, Value::Enumerated(EVENT_NORMAL));
    SetIfMissing(object, PROP_NOTIFICATION_CLASS, Value::Unsigned(1));
    SetIfMissing(object, PROP_EVENT_ENABLE, Bits(ALL_TRANSITIONS));
    SetIfMissing(object, PROP_ACKED_TRANSITIONS, Bits(ALL_TRANSITIONS));
    SetIfMissing(object, PROP_NOTIFY_TYPE, Value::Enumerated(0));
    SetIfMissing(object, PROP_EVENT_TIME_STAMPS, Value::Array(times));
}

void EnterState(Object& object, std::uint32_t state, bool ackRequired, LocalTime now) {
    AddEventProperties(object);
    const auto transition = static_cast<std::uint32_t>(TransitionTo(state));
    object.Set(PROP_EVENT_STATE, Value::Enumerated(state));
    const Value times = *object.Find(PROP_EVENT_TIME_STAMPS);
    if (transition < times.Count())
        object.Set(PROP_EVENT_TIME_STAMPS, times.WithElement(transition, Value::TimeStamp(ToDateTime(now)).Wire()));
    const auto bit = static_cast<std::uint8_t>(1U << transition);
    const std::uint8_t acked = BitsOf(object, PROP_ACKED_TRANSITIONS, ALL_TRANSITIONS);
    object.Set(PROP_ACKED_TRANSITIONS, Bits(static_cast<std::uint8_t>(ackRequired ? acked & ~bit : acked | bit)));
    object.UpdateStatusFlags();
}

void Acknowledge(Object& object, Transition transition) {
    const std::uint8_t acked = BitsOf(object, PROP_ACKED_TRANSITIONS, ALL_TRANSITIONS);
    object.Set(PROP_ACKED_TRANSITIONS,
               Bits(static_cast<std::uint8_t>(acked | 1U << static_cast<unsigned>(transition))));
}

std::optional<EventStatus> StatusOf(const Object& object) {
    if (object.Find(PROP_EVENT_STATE) == nullptr || object.Find(PROP_ACKED_TRANSITIONS) == nullptr)
        return std::nullopt;
    EventStatus status;
    status.State = NumberOf(object, PROP_EVENT_STATE, EVENT_NORMAL);
    const bacnet::ObjectTypeInfo* info = bacnet::FindObjectType(object.Id().Type);
    const int own = info == nullptr ? bacnet::NO_EVENT_TYPE : info->EventType;
    status.Type = NumberOf(object, PROP_EVENT_TYPE, own < 0 ? 0 : static_cast<std::uint32_t>(own));
    status.NotifyType = NumberOf(object, PROP_NOTIFY_TYPE, 0);
    status.NotificationClass = NumberOf(object, PROP_NOTIFICATION_CLASS, 0);
    status.Acked = BitsOf(object, PROP_ACKED_TRANSITIONS, ALL_TRANSITIONS);
    status.Enabled = BitsOf(object, PROP_EVENT_ENABLE, 0);
    const Value* times = object.Find(PROP_EVENT_TIME_STAMPS);
    for (std::uint32_t i = 0; i < TRANSITIONS; ++i)
        status.Times[i] = StampOf(times != nullptr && i < times->Count() ? times->Element(i) : Octets{});
    return status;
}

NotificationClass ReadClass(const Object& object, const BACSTAC_RECIPIENT* recipient, std::uint32_t process) {
    NotificationClass read;
    const Value* priorities = object.Find(PROP_PRIORITY);
    for (std::uint32_t i = 0; priorities != nullptr && i < std::min(TRANSITIONS, priorities->Count()); ++i)
        bacnet::Reader(priorities->Element(i)).Unsigned(read.Priorities[i]);
    read.AckRequired = BitsOf(object, PROP_ACK_REQUIRED, ALL_TRANSITIONS);
    const Value* recipients = object.Find(PROP_RECIPIENT_LIST);
    for (std::uint32_t i = 0; recipient != nullptr && recipients != nullptr && i < recipients->Count(); ++i) {
        const auto destination = ReadDestination(recipients->Element(i));
        read.Notifies = read.Notifies ||
                        (destination && destination->Process == process && IsSame(destination->Recipient, *recipient));
    }
    return read;
}

} // namespace sim
