// Answers and requests of the services whose decoders are small: announcements, errors, files, summaries, device
// management. The first octet chooses one.
#include "platform/stack/services/DeviceManagement.h"
#include "platform/stack/services/ErrorAnswer.h"
#include "platform/stack/services/FileAccess.h"
#include "platform/stack/services/Objects.h"
#include "platform/stack/services/Summaries.h"
#include "platform/stack/services/WhoIs.h"
#include "platform/stack/services/WriteProperty.h"

#include <cstddef>
#include <cstdlib>

namespace {

using namespace bacnet;
using Octets = std::span<const std::uint8_t>;

// Walks entries to their end; more of them than octets would be no progress.
template <class Entry, class Next>
void Walk(Octets octets, Next next) {
    Reader reader(octets);
    Entry entry{};
    for (std::size_t entries = 0; next(reader, entry); ++entries)
        if (entries > octets.size())
            std::abort();
}

void Announcements(Octets octets) {
    WhoIs request;
    DecodeWhoIs(octets, request);
    IAm announcement;
    if (DecodeIAm(octets, announcement) && announcement.Device > BACSTAC_MAX_INSTANCE)
        std::abort();
}

void Errors(Octets octets) {
    ErrorAnswer error;
    for (const auto service :
         {ConfirmedService::readProperty, ConfirmedService::createObject, ConfirmedService::writePropertyMultiple})
        DecodeErrorAnswer(service, octets, error);
}

void Files(Octets octets) {
    bool end = false;
    FileData data;
    if (DecodeReadFileAck(octets, end, data))
        Walk<Octets>(data.Records, NextRecord);
    FileReadRequest read;
    DecodeReadFile(octets, read);
    BACSTAC_OBJECT_ID file{};
    DecodeWriteFile(octets, file, data);
    std::int32_t start = 0;
    DecodeWriteFileAck(octets, start);
}

void Lists(Octets octets) {
    Walk<BACSTAC_ALARM_SUMMARY>(octets, NextAlarmSummary);
    Walk<BACSTAC_ENROLLMENT_SUMMARY>(octets, NextEnrollmentSummary);
    BACSTAC_ENROLLMENT_FILTER filter{};
    DecodeGetEnrollmentSummary(octets, filter);
    Octets entries;
    bool more = false;
    if (DecodeEventInformationAck(octets, entries, more))
        Walk<BACSTAC_EVENT_SUMMARY>(entries, NextEventSummary);
    BACSTAC_OBJECT_ID last{};
    DecodeGetEventInformation(octets, more, last);
}

void Management(Octets octets) {
    CommunicationRequest communication;
    DecodeCommunicationControl(octets, communication);
    ReinitializeRequest reinitialize;
    DecodeReinitialize(octets, reinitialize);
    BACSTAC_DATE_TIME time{};
    DecodeTimeSynchronization(octets, time);
    BACSTAC_OBJECT_ID object{};
    DecodeCreateObjectAck(octets, object);
    DecodeDeleteObject(octets, object);
    CreateRequest create;
    if (DecodeCreateObject(octets, create))
        Walk<WriteRequest>(create.Values, [](Reader& reader, WriteRequest& value) {
            return !reader.AtEnd() && DecodePropertyValue(reader, value);
        });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static constexpr void (*decoders[])(Octets) = {Announcements, Errors, Files, Lists, Management};
    if (size != 0)
        decoders[data[0] % std::size(decoders)]({data + 1, size - 1});
    return 0;
}
