// GetAlarmSummary, GetEnrollmentSummary and GetEventInformation.
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/client/RequestBuffer.h"
#include "platform/stack/services/Summaries.h"

#include "api/bacnet/Log.h"

namespace bacnet {

namespace {

// Entries of an answer into the caller's array. What does not fit is cut, with a line in the log; next reads one entry.
template <class Entry, class Next>
BACSTAC_STATUS TakeEntries(std::span<const std::uint8_t> octets, Next next, Entry* entries, unsigned capacity,
                           unsigned* count, const char* service, unsigned device) {
    Reader reader(octets);
    Entry entry;
    unsigned taken = 0;
    while (next(reader, entry)) {
        if (taken == capacity) {
            ::LogInf("%s: device %u has more entries than the %u that there is room for", service, device, capacity);
            break;
        }
        entries[taken++] = entry;
    }
    if (!reader.Ok())
        return BACSTAC_STATUS_INVALID_ANSWER;
    *count = taken;
    return BACSTAC_OK;
}

} // namespace

BACSTAC_STATUS BacnetClient::GetAlarmSummary(unsigned device, BACSTAC_ALARM_SUMMARY* summaries, unsigned capacity,
                                             unsigned* count, BACSTAC_ERROR* error) {
    if (count == nullptr || (capacity != 0 && summaries == nullptr))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    *count = 0;
    const RequestBuffer request; // without parameters
    AnswerBuffer answer;
    const BACSTAC_STATUS status = Query(device, ConfirmedService::getAlarmSummary, request, answer, error);
    if (status != BACSTAC_OK)
        return status;
    return TakeEntries(answer.Octets(), NextAlarmSummary, summaries, capacity, count, "GetAlarmSummary", device);
}

BACSTAC_STATUS BacnetClient::GetEnrollmentSummary(unsigned device, BACSTAC_ENROLLMENT_FILTER const& filter,
                                                  BACSTAC_ENROLLMENT_SUMMARY* summaries, unsigned capacity,
                                                  unsigned* count, BACSTAC_ERROR* error) {
    if (count == nullptr || (capacity != 0 && summaries == nullptr))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    *count = 0;
    RequestBuffer request;
    EncodeGetEnrollmentSummary(filter, request.Out);
    AnswerBuffer answer;
    const BACSTAC_STATUS status = Query(device, ConfirmedService::getEnrollmentSummary, request, answer, error);
    if (status != BACSTAC_OK)
        return status;
    return TakeEntries(answer.Octets(), NextEnrollmentSummary, summaries, capacity, count, "GetEnrollmentSummary",
                       device);
}

// One page. What does not fit is not lost: more says so, and the last entry taken is where to go on from.
BACSTAC_STATUS BacnetClient::GetEventInformation(unsigned device, BACSTAC_OBJECT_ID const* lastReceived,
                                                 BACSTAC_EVENT_SUMMARY* events, unsigned capacity, unsigned* count,
                                                 bool* more, BACSTAC_ERROR* error) {
    if (count == nullptr || more == nullptr || (capacity != 0 && events == nullptr))
        return BACSTAC_STATUS_INVALID_ARGUMENT;
    *count = 0;
    *more = false;
    RequestBuffer request;
    EncodeGetEventInformation(lastReceived, request.Out);
    AnswerBuffer answer;
    const BACSTAC_STATUS status = Query(device, ConfirmedService::getEventInformation, request, answer, error);
    if (status != BACSTAC_OK)
        return status;
    std::span<const std::uint8_t> entries;
    bool further = false;
    if (!DecodeEventInformationAck(answer.Octets(), entries, further))
        return BACSTAC_STATUS_INVALID_ANSWER;
    Reader reader(entries);
    BACSTAC_EVENT_SUMMARY event{};
    unsigned taken = 0;
    while (NextEventSummary(reader, event)) {
        if (taken == capacity) {
            further = true;
            break;
        }
        events[taken++] = event;
    }
    if (!reader.Ok())
        return BACSTAC_STATUS_INVALID_ANSWER;
    *count = taken;
    *more = further;
    return BACSTAC_OK;
}

} // namespace bacnet
