#include "platform/stack/services/Summaries.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/codec/Writer.h"

#include <algorithm>

namespace bacnet {

namespace {

// Context tags of GetEnrollmentSummary-Request.
constexpr int ackFilterTag = 0;
constexpr unsigned enrollmentFilterTag = 1;
constexpr unsigned recipientTag = 0;
constexpr int processTag = 1;
constexpr int stateFilterTag = 2;
constexpr int typeFilterTag = 3;
constexpr unsigned priorityFilterTag = 4;
constexpr int minPriorityTag = 0;
constexpr int maxPriorityTag = 1;
constexpr int classFilterTag = 5;

// BACnetRecipient.
constexpr int deviceTag = 0;
constexpr unsigned addressTag = 1;

// GetEventInformation.
constexpr int lastReceivedTag = 0;
constexpr unsigned eventListTag = 0;
constexpr int moreTag = 1;
constexpr int eventObjectTag = 0;
constexpr int eventStateTag = 1;
constexpr int eventAckedTag = 2;
constexpr unsigned eventTimesTag = 3;
constexpr int eventNotifyTag = 4;
constexpr int eventEnableTag = 5;
constexpr unsigned eventPrioritiesTag = 6;

// BACnetTimeStamp.
constexpr int stampTimeTag = 0;
constexpr int stampSequenceTag = 1;
constexpr unsigned stampDateTimeTag = 2;

void PutRecipient(const BACSTAC_RECIPIENT& recipient, Writer& writer) {
    if (recipient.Choice == 0) {
        writer.ObjectId(recipient.Device, deviceTag);
        return;
    }
    const std::size_t length = std::min<std::size_t>(recipient.Address.MacLength, sizeof recipient.Address.Mac);
    writer.Opening(addressTag);
    writer.Unsigned(recipient.Address.Network);
    writer.OctetString({recipient.Address.Mac, length});
    writer.Closing(addressTag);
}

void GetRecipient(Reader& reader, BACSTAC_RECIPIENT& recipient) {
    if (reader.IsContext(deviceTag)) {
        recipient.Choice = 0;
        reader.ObjectId(recipient.Device, deviceTag);
        return;
    }
    std::uint32_t network = 0;
    std::span<const std::uint8_t> mac;
    BACSTAC_ADDRESS address{};
    reader.Open(addressTag);
    reader.Unsigned(network);
    reader.OctetString(mac);
    reader.Close(addressTag);
    if (network > UINT16_MAX || mac.size() > sizeof address.Mac) {
        reader.Fail(DecodeError::badLength);
        return;
    }
    address.Remote = network != 0;
    address.Network = static_cast<std::uint16_t>(network);
    address.MacLength = static_cast<std::uint8_t>(mac.size());
    std::copy(mac.begin(), mac.end(), address.Mac);
    recipient.Choice = 1;
    recipient.Address = address;
}

void PutTimeStamp(const BACSTAC_TIME_STAMP& stamp, Writer& writer) {
    switch (stamp.Choice) {
    case 0:
        return writer.Time(stamp.Time, stampTimeTag);
    case 1:
        return writer.Unsigned(stamp.SequenceNumber, stampSequenceTag);
    default:
        writer.Opening(stampDateTimeTag);
        writer.Date(stamp.DateTime.Date);
        writer.Time(stamp.DateTime.Time);
        writer.Closing(stampDateTimeTag);
    }
}

void GetTimeStamp(Reader& reader, BACSTAC_TIME_STAMP& stamp) {
    if (reader.IsContext(stampTimeTag)) {
        stamp.Choice = 0;
        reader.Time(stamp.Time, stampTimeTag);
    } else if (reader.IsContext(stampSequenceTag)) {
        stamp.Choice = 1;
        reader.Unsigned(stamp.SequenceNumber, stampSequenceTag);
    } else {
        stamp.Choice = 2;
        stamp.DateTime = {};
        reader.Open(stampDateTimeTag);
        reader.Date(stamp.DateTime.Date);
        reader.Time(stamp.DateTime.Time);
        reader.Close(stampDateTimeTag);
    }
}

std::uint8_t ToPriority(std::uint32_t number) {
    return static_cast<std::uint8_t>(std::min<std::uint32_t>(number, UINT8_MAX));
}

} // namespace

void EncodeAlarmSummary(const BACSTAC_ALARM_SUMMARY& summary, Writer& writer) {
    writer.ObjectId(summary.ObjectId);
    writer.Enumerated(summary.AlarmState);
    writer.BitString(summary.AckedTransitions);
}

bool NextAlarmSummary(Reader& answer, BACSTAC_ALARM_SUMMARY& summary) {
    summary = {};
    return !answer.AtEnd() && answer.ObjectId(summary.ObjectId) && answer.Enumerated(summary.AlarmState) &&
           answer.BitString(summary.AckedTransitions);
}

void EncodeGetEnrollmentSummary(const BACSTAC_ENROLLMENT_FILTER& filter, Writer& writer) {
    writer.Enumerated(filter.Acked, ackFilterTag);
    if ((filter.Mask & BACSTAC_FILTER_RECIPIENT) != 0) {
        writer.Opening(enrollmentFilterTag);
        writer.Opening(recipientTag);
        PutRecipient(filter.Recipient, writer);
        writer.Closing(recipientTag);
        writer.Unsigned(filter.RecipientProcess, processTag);
        writer.Closing(enrollmentFilterTag);
    }
    if ((filter.Mask & BACSTAC_FILTER_EVENT_STATE) != 0)
        writer.Enumerated(filter.EventState, stateFilterTag);
    if ((filter.Mask & BACSTAC_FILTER_EVENT_TYPE) != 0)
        writer.Enumerated(filter.EventType, typeFilterTag);
    if ((filter.Mask & BACSTAC_FILTER_PRIORITY) != 0) {
        writer.Opening(priorityFilterTag);
        writer.Unsigned(filter.MinPriority, minPriorityTag);
        writer.Unsigned(filter.MaxPriority, maxPriorityTag);
        writer.Closing(priorityFilterTag);
    }
    if ((filter.Mask & BACSTAC_FILTER_NOTIFICATION_CLASS) != 0)
        writer.Unsigned(filter.NotificationClass, classFilterTag);
}

bool DecodeGetEnrollmentSummary(std::span<const std::uint8_t> parameters, BACSTAC_ENROLLMENT_FILTER& filter) {
    Reader reader(parameters);
    BACSTAC_ENROLLMENT_FILTER decoded{};
    reader.Enumerated(decoded.Acked, ackFilterTag);
    if (reader.IsOpening(enrollmentFilterTag)) {
        decoded.Mask |= BACSTAC_FILTER_RECIPIENT;
        reader.Open(enrollmentFilterTag);
        reader.Open(recipientTag);
        GetRecipient(reader, decoded.Recipient);
        reader.Close(recipientTag);
        reader.Unsigned(decoded.RecipientProcess, processTag);
        reader.Close(enrollmentFilterTag);
    }
    if (reader.IsContext(stateFilterTag)) {
        decoded.Mask |= BACSTAC_FILTER_EVENT_STATE;
        reader.Enumerated(decoded.EventState, stateFilterTag);
    }
    if (reader.IsContext(typeFilterTag)) {
        decoded.Mask |= BACSTAC_FILTER_EVENT_TYPE;
        reader.Enumerated(decoded.EventType, typeFilterTag);
    }
    if (reader.IsOpening(priorityFilterTag)) {
        decoded.Mask |= BACSTAC_FILTER_PRIORITY;
        std::uint32_t least = 0;
        std::uint32_t most = 0;
        reader.Open(priorityFilterTag);
        reader.Unsigned(least, minPriorityTag);
        reader.Unsigned(most, maxPriorityTag);
        reader.Close(priorityFilterTag);
        decoded.MinPriority = ToPriority(least);
        decoded.MaxPriority = ToPriority(most);
    }
    if (reader.IsContext(classFilterTag)) {
        decoded.Mask |= BACSTAC_FILTER_NOTIFICATION_CLASS;
        reader.Unsigned(decoded.NotificationClass, classFilterTag);
    }
    if (!reader.Ok() || !reader.AtEnd())
        return false;
    filter = decoded;
    return true;
}

void EncodeEnrollmentSummary(const BACSTAC_ENROLLMENT_SUMMARY& summary, Writer& writer) {
    writer.ObjectId(summary.ObjectId);
    writer.Enumerated(summary.EventType);
    writer.Enumerated(summary.EventState);
    writer.Unsigned(summary.Priority);
    if (summary.NotificationClassPresent != 0)
        writer.Unsigned(summary.NotificationClass);
}

bool NextEnrollmentSummary(Reader& answer, BACSTAC_ENROLLMENT_SUMMARY& summary) {
    summary = {};
    if (answer.AtEnd() || !answer.ObjectId(summary.ObjectId) || !answer.Enumerated(summary.EventType) ||
        !answer.Enumerated(summary.EventState) || !answer.Unsigned(summary.Priority))
        return false;
    if (!answer.IsApplication(TAG_UNSIGNED))
        return true;
    summary.NotificationClassPresent = 1;
    return answer.Unsigned(summary.NotificationClass);
}

void EncodeGetEventInformation(const BACSTAC_OBJECT_ID* lastReceived, Writer& writer) {
    if (lastReceived != nullptr)
        writer.ObjectId(*lastReceived, lastReceivedTag);
}

bool DecodeGetEventInformation(std::span<const std::uint8_t> parameters, bool& continued,
                               BACSTAC_OBJECT_ID& lastReceived) {
    continued = !parameters.empty();
    Reader reader(parameters);
    return !continued || (reader.ObjectId(lastReceived, lastReceivedTag) && reader.AtEnd());
}

void BeginEventInformationAck(Writer& writer) {
    writer.Opening(eventListTag);
}

void EncodeEventSummary(const BACSTAC_EVENT_SUMMARY& event, Writer& writer) {
    writer.ObjectId(event.ObjectId, eventObjectTag);
    writer.Enumerated(event.EventState, eventStateTag);
    writer.BitString(event.AckedTransitions, eventAckedTag);
    writer.Opening(eventTimesTag);
    for (const BACSTAC_TIME_STAMP& stamp : event.TimeStamps)
        PutTimeStamp(stamp, writer);
    writer.Closing(eventTimesTag);
    writer.Enumerated(event.NotifyType, eventNotifyTag);
    writer.BitString(event.EventEnable, eventEnableTag);
    writer.Opening(eventPrioritiesTag);
    for (const std::uint32_t priority : event.Priorities)
        writer.Unsigned(priority);
    writer.Closing(eventPrioritiesTag);
}

void EndEventInformationAck(bool more, Writer& writer) {
    writer.Closing(eventListTag);
    writer.Boolean(more, moreTag);
}

bool DecodeEventInformationAck(std::span<const std::uint8_t> parameters, std::span<const std::uint8_t>& entries,
                               bool& more) {
    Reader reader(parameters);
    return reader.Enclosed(eventListTag, entries) && reader.Boolean(more, moreTag) && reader.AtEnd();
}

bool NextEventSummary(Reader& entries, BACSTAC_EVENT_SUMMARY& event) {
    event = {};
    if (entries.AtEnd())
        return false;
    entries.ObjectId(event.ObjectId, eventObjectTag);
    entries.Enumerated(event.EventState, eventStateTag);
    entries.BitString(event.AckedTransitions, eventAckedTag);
    entries.Open(eventTimesTag);
    for (BACSTAC_TIME_STAMP& stamp : event.TimeStamps)
        GetTimeStamp(entries, stamp);
    entries.Close(eventTimesTag);
    entries.Enumerated(event.NotifyType, eventNotifyTag);
    entries.BitString(event.EventEnable, eventEnableTag);
    entries.Open(eventPrioritiesTag);
    for (std::uint32_t& priority : event.Priorities)
        entries.Unsigned(priority);
    return entries.Close(eventPrioritiesTag);
}

} // namespace bacnet
