#include "platform/stack/codec/CharacterSet.h"
#include "platform/stack/services/Summaries.h"
#include "simulator/model/Events.h"
#include "simulator/server/Handlers.h"

#include <algorithm>

namespace sim {

namespace {

constexpr std::uint32_t NOTIFY_ALARM = 0;

BACSTAC_BIT_STRING Bits(std::uint8_t bits) {
    BACSTAC_BIT_STRING value{};
    value.BitCount = TRANSITIONS;
    value.Bits[0] = bits;
    return value;
}

// Of a GetEnrollmentSummary.
bool HasState(const EventStatus& status, std::uint32_t wanted) {
    enum Filter : std::uint32_t { offnormal, fault, normal, all, active };
    switch (wanted) {
    case offnormal:
        return status.State != EVENT_NORMAL && status.State != EVENT_FAULT;
    case fault:
        return status.State == EVENT_FAULT;
    case normal:
        return status.State == EVENT_NORMAL;
    case active:
        return status.State != EVENT_NORMAL;
    default:
        return true;
    }
}

bool IsWanted(const BACSTAC_ENROLLMENT_FILTER& filter, const EventStatus& status,
              const NotificationClass& notifications, std::uint32_t priority) {
    constexpr std::uint32_t ACKED = 1;
    constexpr std::uint32_t NOT_ACKED = 2;
    const auto asks = [&filter](std::uint32_t bit) { return (filter.Mask & bit) != 0; };
    if ((filter.Acked == ACKED && !status.IsAcked()) || (filter.Acked == NOT_ACKED && status.IsAcked()))
        return false;
    if (asks(BACSTAC_FILTER_RECIPIENT) && !notifications.Notifies)
        return false;
    if (asks(BACSTAC_FILTER_EVENT_STATE) && !HasState(status, filter.EventState))
        return false;
    if (asks(BACSTAC_FILTER_EVENT_TYPE) && status.Type != filter.EventType)
        return false;
    if (asks(BACSTAC_FILTER_PRIORITY) && (priority < filter.MinPriority || priority > filter.MaxPriority))
        return false;
    return !asks(BACSTAC_FILTER_NOTIFICATION_CLASS) || status.NotificationClass == filter.NotificationClass;
}

BACSTAC_EVENT_SUMMARY SummaryOf(const Device& device, BACSTAC_OBJECT_ID id, const EventStatus& status) {
    BACSTAC_EVENT_SUMMARY summary{};
    summary.ObjectId = id;
    summary.EventState = status.State;
    summary.AckedTransitions = Bits(status.Acked);
    summary.NotifyType = status.NotifyType;
    summary.EventEnable = Bits(status.Enabled);
    const NotificationClass notifications = device.ClassOf(status.NotificationClass, nullptr, 0);
    for (std::uint32_t i = 0; i < TRANSITIONS; ++i) {
        summary.TimeStamps[i] = status.Times[i];
        summary.Priorities[i] = notifications.Priorities[i];
    }
    return summary;
}

// Of an answer that holds as many entries as fit.
constexpr std::size_t END_OF_LIST = 3; // closing tag and "more events"

struct Acknowledgement {
    std::uint32_t Process = 0;
    BACSTAC_OBJECT_ID Object{};
    std::uint32_t State = EVENT_NORMAL;
    std::span<const std::uint8_t> TimeStamp; // of the transition
    std::string Source;
};

bool Decode(std::span<const std::uint8_t> parameters, Acknowledgement& acknowledgement) {
    bacnet::Reader in(parameters);
    std::span<const std::uint8_t> source;
    std::span<const std::uint8_t> ignored;
    const bool read = in.Unsigned(acknowledgement.Process, 0) && in.ObjectId(acknowledgement.Object, 1) &&
                      in.Enumerated(acknowledgement.State, 2) && in.Enclosed(3, acknowledgement.TimeStamp) &&
                      in.CharacterString(source, 4) && in.Enclosed(5, ignored) && in.AtEnd();
    if (read)
        acknowledgement.Source = bacnet::DecodeText(source);
    return read;
}

// The transition is the one that happened last of its kind, as its time stamp tells; where the object is still in a
// state of that kind, it is the one that is acknowledged.
PropertyError Check(const Object& object, const EventStatus& status, const Acknowledgement& acknowledgement) {
    const Transition transition = TransitionTo(acknowledgement.State);
    if (TransitionTo(status.State) == transition && status.State != acknowledgement.State)
        return {CLASS_SERVICES, CODE_INVALID_EVENT_STATE};
    const Value* stamps = object.Find(PROP_EVENT_TIME_STAMPS);
    const auto number = static_cast<std::uint32_t>(transition);
    const auto same = [&](std::span<const std::uint8_t> stamp) {
        return std::ranges::equal(stamp, acknowledgement.TimeStamp);
    };
    if (stamps == nullptr || number >= stamps->Count() || !same(stamps->Element(number)))
        return {CLASS_SERVICES, CODE_INVALID_TIME_STAMP};
    return {};
}

} // namespace

Outcome AcknowledgeAlarm(const ServiceCall& call) {
    Acknowledgement acknowledgement;
    if (!Decode(call.Parameters, acknowledgement))
        return Malformed(call.Parameters);
    Object* object = call.Dut.Find(acknowledgement.Object);
    if (object == nullptr)
        return Outcome::Error(UNKNOWN_OBJECT);
    const auto status = StatusOf(*object);
    if (!status)
        return Outcome::Error({CLASS_OBJECT, CODE_NO_ALARM_CONFIGURED});
    const PropertyError error = Check(*object, *status, acknowledgement);
    if (error.Ok())
        call.Dut.Events().Acknowledge(*object, TransitionTo(acknowledgement.State), acknowledgement.Source);
    return Outcome::Of(error);
}

Outcome GetAlarmSummary(const ServiceCall& call) {
    if (!call.Parameters.empty())
        return Outcome::Reject(REJECT_TOO_MANY_ARGUMENTS);
    bacnet::Writer writer = AnswerWriter(call);
    for (const BACSTAC_OBJECT_ID& id : call.Dut.Objects()) {
        const auto status = StatusOf(*call.Dut.Find(id));
        if (status && status->State != EVENT_NORMAL && status->NotifyType == NOTIFY_ALARM)
            bacnet::EncodeAlarmSummary({id, status->State, Bits(status->Acked)}, writer);
    }
    return Written(writer, call.Room);
}

Outcome GetEnrollmentSummary(const ServiceCall& call) {
    BACSTAC_ENROLLMENT_FILTER filter{};
    if (!bacnet::DecodeGetEnrollmentSummary(call.Parameters, filter))
        return Malformed(call.Parameters);
    const BACSTAC_RECIPIENT* recipient = (filter.Mask & BACSTAC_FILTER_RECIPIENT) != 0 ? &filter.Recipient : nullptr;
    bacnet::Writer writer = AnswerWriter(call);
    for (const BACSTAC_OBJECT_ID& id : call.Dut.Objects()) {
        const auto status = StatusOf(*call.Dut.Find(id));
        if (!status)
            continue;
        const NotificationClass notifications =
            call.Dut.ClassOf(status->NotificationClass, recipient, filter.RecipientProcess);
        const std::uint32_t priority = notifications.Priorities[static_cast<std::size_t>(TransitionTo(status->State))];
        if (!IsWanted(filter, *status, notifications, priority))
            continue;
        BACSTAC_ENROLLMENT_SUMMARY summary{};
        summary.ObjectId = id;
        summary.EventType = status->Type;
        summary.EventState = status->State;
        summary.Priority = priority;
        summary.NotificationClassPresent = 1;
        summary.NotificationClass = status->NotificationClass;
        bacnet::EncodeEnrollmentSummary(summary, writer);
    }
    return Written(writer, call.Room);
}

// Events that are not normal, or that have an unacknowledged transition (clause 13.12), behind the object that the
// asker had last.
Outcome GetEventInformation(const ServiceCall& call) {
    bool continued = false;
    BACSTAC_OBJECT_ID last{};
    if (!bacnet::DecodeGetEventInformation(call.Parameters, continued, last))
        return Malformed(call.Parameters);
    const auto& objects = call.Dut.Objects();
    auto at = objects.begin();
    if (continued) {
        at = std::find(objects.begin(), objects.end(), last);
        if (at == objects.end())
            return Outcome::Error(UNKNOWN_OBJECT);
        ++at;
    }
    const std::uint32_t limit = call.Dut.Config().EventsPerAnswer;
    bacnet::Writer writer = AnswerWriter(call);
    bacnet::BeginEventInformationAck(writer);
    std::uint32_t count = 0;
    bool more = false;
    for (; at != objects.end() && !more; ++at) {
        const auto status = StatusOf(*call.Dut.Find(*at));
        if (!status || (status->State == EVENT_NORMAL && status->IsAcked()))
            continue;
        const std::size_t before = writer.Size();
        bacnet::EncodeEventSummary(SummaryOf(call.Dut, *at, *status), writer);
        more = writer.Room() < END_OF_LIST || (limit != 0 && count == limit);
        if (more)
            writer.Rewind(before);
        else
            ++count;
    }
    if (more && count == 0)
        return TooLong(call.Room); // not even one fits
    bacnet::EndEventInformationAck(more, writer);
    return Written(writer, call.Room);
}

} // namespace sim
