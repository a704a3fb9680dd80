// Every request and answer that the stack's encoders make, as an independent decoder reads them: its whole reading is
// kept in tests/golden/interop/services.txt.
#include "api/bacnet/Enums.h"
#include "api/bacnet/Services.h"
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/DeviceManagement.h"
#include "platform/stack/services/ErrorAnswer.h"
#include "platform/stack/services/FileAccess.h"
#include "platform/stack/services/Objects.h"
#include "platform/stack/services/ReadConditional.h"
#include "platform/stack/services/ReadPropertyMultiple.h"
#include "platform/stack/services/ReadRange.h"
#include "platform/stack/services/Summaries.h"
#include "platform/stack/services/WhoHas.h"
#include "platform/stack/services/WhoIs.h"
#include "platform/stack/services/WriteProperty.h"
#include "tests/interop/Recording.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace interop {
namespace {

using bacnet::ConfirmedService;
using bacnet::PduType;
using bacnet::PropertyTarget;
using bacnet::UnconfirmedService;
using bacnet::Writer;

constexpr BACSTAC_OBJECT_ID POINT{OBJ_ANALOG_INPUT, 1};
constexpr BACSTAC_OBJECT_ID FILE_OBJECT{OBJ_FILE, 3};
constexpr BACSTAC_OBJECT_ID LOG{OBJ_TREND_LOG, 2};
constexpr BACSTAC_DATE_TIME TIME{{2026, 0, 11, 21, 6}, {14, 30, 5, 99}};
constexpr BACSTAC_BIT_STRING TWO_OF_THREE{3, {0x05}};
constexpr int NO_INDEX = BACSTAC_NO_INDEX;
constexpr std::uint32_t WHOLE = 0xFFFFFFFF; // of a property reference: no index

struct Entry {
    std::string Name;
    bacnet::Apdu Header;
    std::function<void(Writer&)> Parameters;
};

bacnet::Apdu Header(PduType type, std::uint8_t service) {
    bacnet::Apdu header;
    header.Type = type;
    header.Service = service;
    header.InvokeId = 7;
    header.MaxApduCode = 5;
    return header;
}

Entry Request(const std::string& name, ConfirmedService service, std::function<void(Writer&)> parameters) {
    return {name + " request", Header(PduType::confirmed_request, static_cast<std::uint8_t>(service)),
            std::move(parameters)};
}

Entry Ack(const std::string& name, ConfirmedService service, std::function<void(Writer&)> parameters) {
    return {name + " answer", Header(PduType::complex_ack, static_cast<std::uint8_t>(service)), std::move(parameters)};
}

Entry Broadcast(const std::string& name, UnconfirmedService service, std::function<void(Writer&)> parameters) {
    return {name, Header(PduType::unconfirmed_request, static_cast<std::uint8_t>(service)), std::move(parameters)};
}

Entry Failure(const std::string& name, ConfirmedService service, bacnet::ErrorAnswer error) {
    return {name + " error", Header(PduType::error, static_cast<std::uint8_t>(service)),
            [=](Writer& writer) { bacnet::EncodeErrorAnswer(service, error, writer); }};
}

BACSTAC_READ_RANGE_SPEC RangeByIndex(std::uint32_t kind, std::uint32_t reference, std::int32_t count) {
    BACSTAC_READ_RANGE_SPEC range{};
    range.Kind = kind;
    range.ByIndex = {reference, count};
    return range;
}

BACSTAC_READ_RANGE_SPEC RangeByTime(std::uint32_t kind, std::int32_t count) {
    BACSTAC_READ_RANGE_SPEC range{};
    range.Kind = kind;
    range.ByTime.Reference = TIME;
    range.ByTime.Count = count;
    return range;
}

// ---- reading and writing

void AddReading(std::vector<Entry>& entries) {
    const PropertyTarget value{POINT, PROP_PRESENT_VALUE, NO_INDEX};
    const PropertyTarget element{{OBJ_DEVICE, 1000}, PROP_OBJECT_LIST, 4};
    entries.push_back(Request("ReadProperty", ConfirmedService::readProperty,
                              [=](Writer& w) { bacnet::EncodeReadProperty(value, w); }));
    entries.push_back(Request("ReadProperty element", ConfirmedService::readProperty,
                              [=](Writer& w) { bacnet::EncodeReadProperty(element, w); }));
    entries.push_back(Ack("ReadProperty", ConfirmedService::readProperty, [=](Writer& w) {
        bacnet::BeginReadPropertyAck(element, w);
        w.ObjectId(POINT);
        bacnet::EndReadPropertyAck(w);
    }));
    entries.push_back(Request("ReadPropertyMultiple", ConfirmedService::readPropertyMultiple, [=](Writer& w) {
        bacnet::RpmRequestWriter request(w);
        request.Add(value);
        request.Add({POINT, PROP_STATUS_FLAGS, NO_INDEX});
        request.Add(element);
        request.Finish();
    }));
    entries.push_back(Ack("ReadPropertyMultiple", ConfirmedService::readPropertyMultiple, [=](Writer& w) {
        bacnet::RpmAckWriter answer(w);
        answer.BeginValue(value);
        w.Real(21.5F);
        answer.EndValue();
        answer.Error({POINT, PROP_DESCRIPTION, NO_INDEX}, 2, 32);
        answer.BeginValue(element);
        w.ObjectId(POINT);
        answer.EndValue();
        answer.Finish();
    }));
    entries.push_back(Request("ReadPropertyConditional", ConfirmedService::readPropertyConditional, [](Writer& w) {
        float limit = 21.5F;
        BACSTAC_SELECTION_CRITERION criterion{};
        criterion.Property = {PROP_PRESENT_VALUE, WHOLE};
        criterion.Relation = 3;
        criterion.Value = {TYPE_REAL, &limit, sizeof limit, 1};
        const BACSTAC_PROPERTY_REF name{PROP_OBJECT_NAME, WHOLE};
        ASSERT_TRUE(bacnet::EncodeReadConditional({0, 1, &criterion, 1, &name}, w));
    }));
    for (const BACSTAC_READ_RANGE_SPEC& range :
         {RangeByIndex(BACSTAC_RANGE_ALL, 0, 0), RangeByIndex(BACSTAC_RANGE_BY_POSITION, 4000000000U, -5),
          RangeByIndex(BACSTAC_RANGE_BY_SEQUENCE, 70000, 100), RangeByTime(BACSTAC_RANGE_BY_TIME_2001, 10),
          RangeByTime(BACSTAC_RANGE_BY_TIME, -10)})
        entries.push_back(
            Request("ReadRange of kind " + std::to_string(range.Kind), ConfirmedService::readRange, [=](Writer& w) {
                ASSERT_TRUE(bacnet::EncodeReadRange({{LOG, PROP_LOG_BUFFER, NO_INDEX}, range}, w));
            }));
    entries.push_back(Ack("ReadRange", ConfirmedService::readRange, [](Writer& w) {
        bacnet::BeginReadRangeAck({LOG, PROP_LOG_BUFFER, NO_INDEX}, TWO_OF_THREE, 1, w);
        w.Opening(0);
        w.Date(TIME.Date);
        w.Time(TIME.Time);
        w.Closing(0);
        w.Opening(1);
        w.Real(21.5F, 2);
        w.Closing(1);
        bacnet::EndReadRangeAck(true, 70000, w);
    }));
}

void AddWriting(std::vector<Entry>& entries) {
    entries.push_back(Request("WriteProperty", ConfirmedService::writeProperty, [](Writer& w) {
        bacnet::BeginWriteProperty({POINT, PROP_PRESENT_VALUE, NO_INDEX}, w);
        w.Real(-1.5F);
        bacnet::EndWriteProperty(8, w);
    }));
    entries.push_back(Request("WriteProperty relinquishing", ConfirmedService::writeProperty, [](Writer& w) {
        bacnet::BeginWriteProperty({POINT, PROP_PRESENT_VALUE, NO_INDEX}, w);
        w.Null();
        bacnet::EndWriteProperty(16, w);
    }));
    entries.push_back(Request("WritePropertyMultiple", ConfirmedService::writePropertyMultiple, [](Writer& w) {
        bacnet::BeginWriteObject(POINT, w);
        bacnet::BeginPropertyValue(PROP_PRESENT_VALUE, NO_INDEX, w);
        w.Real(3.25F);
        bacnet::EndPropertyValue(9, w);
        bacnet::BeginPropertyValue(PROP_DESCRIPTION, NO_INDEX, w);
        w.CharacterString("Room");
        bacnet::EndPropertyValue(BACSTAC_NO_PRIORITY, w);
        bacnet::EndWriteObject(w);
        bacnet::BeginWriteObject({OBJ_DEVICE, 1000}, w);
        bacnet::BeginPropertyValue(PROP_OBJECT_NAME, NO_INDEX, w);
        w.CharacterString("Plant");
        bacnet::EndPropertyValue(BACSTAC_NO_PRIORITY, w);
        bacnet::EndWriteObject(w);
    }));
    for (const bool byIdentifier : {true, false})
        entries.push_back(
            Request(byIdentifier ? "CreateObject by identifier" : "CreateObject by type",
                    ConfirmedService::createObject, [=](Writer& w) {
                        const BACSTAC_OBJECT_SPECIFIER specifier{byIdentifier ? 1U : 0U, OBJ_ANALOG_VALUE, 12};
                        bacnet::BeginCreateObject(specifier, byIdentifier, w);
                        if (byIdentifier) {
                            bacnet::BeginPropertyValue(PROP_OBJECT_NAME, NO_INDEX, w);
                            w.CharacterString("New");
                            bacnet::EndPropertyValue(BACSTAC_NO_PRIORITY, w);
                        }
                        bacnet::EndCreateObject(byIdentifier, w);
                    }));
    entries.push_back(Ack("CreateObject", ConfirmedService::createObject, [](Writer& w) {
        bacnet::EncodeCreateObjectAck({OBJ_ANALOG_VALUE, 12}, w);
    }));
    entries.push_back(Request("DeleteObject", ConfirmedService::deleteObject, [](Writer& w) {
        bacnet::EncodeDeleteObject({OBJ_ANALOG_VALUE, 12}, w);
    }));
}

// ---- files

void AddFiles(std::vector<Entry>& entries) {
    static const std::uint8_t octets[] = {1, 2, 3, 4, 5, 6};
    static BACSTAC_BUFFER records[2] = {{const_cast<std::uint8_t*>(octets), 2, 2},
                                        {const_cast<std::uint8_t*>(octets + 2), 4, 4}};
    for (const std::uint32_t access : {BACSTAC_FILE_STREAM, BACSTAC_FILE_RECORD}) {
        const std::string of = access == BACSTAC_FILE_STREAM ? " of octets" : " of records";
        entries.push_back(Request("AtomicReadFile" + of, ConfirmedService::atomicReadFile, [=](Writer& w) {
            ASSERT_TRUE(bacnet::EncodeReadFile({FILE_OBJECT, {access, -7, 1000}}, w));
        }));
        entries.push_back(Ack("AtomicReadFile" + of, ConfirmedService::atomicReadFile, [=](Writer& w) {
            std::uint8_t encoded[32];
            Writer inner(encoded);
            inner.OctetString({octets, 2});
            inner.OctetString({octets + 2, 4});
            bacnet::FileData data;
            data.Access = access;
            data.Start = 40;
            data.Stream = octets;
            data.RecordCount = 2;
            data.Records = inner.Written();
            bacnet::EncodeReadFileAck(true, data, w);
        }));
        entries.push_back(Request("AtomicWriteFile" + of, ConfirmedService::atomicWriteFile, [=](Writer& w) {
            BACSTAC_WRITE_FILE_SPEC spec{};
            spec.Access = access;
            spec.Start = -1;
            if (access == BACSTAC_FILE_STREAM)
                spec.Stream = {const_cast<std::uint8_t*>(octets), 6, 6};
            else
                spec.Records = {2, records};
            ASSERT_TRUE(bacnet::EncodeWriteFile(FILE_OBJECT, spec, w));
        }));
        entries.push_back(Ack("AtomicWriteFile" + of, ConfirmedService::atomicWriteFile,
                              [=](Writer& w) { bacnet::EncodeWriteFileAck(access, 46, w); }));
    }
}

// ---- alarms

void AddSummaries(std::vector<Entry>& entries) {
    entries.push_back(Request("GetAlarmSummary", ConfirmedService::getAlarmSummary, [](Writer&) {}));
    entries.push_back(Ack("GetAlarmSummary", ConfirmedService::getAlarmSummary, [](Writer& w) {
        bacnet::EncodeAlarmSummary({POINT, 3, TWO_OF_THREE}, w);
        bacnet::EncodeAlarmSummary({{OBJ_BINARY_INPUT, 9}, 1, TWO_OF_THREE}, w);
    }));
    BACSTAC_ENROLLMENT_FILTER filter{};
    filter.Acked = 2;
    entries.push_back(Request("GetEnrollmentSummary", ConfirmedService::getEnrollmentSummary,
                              [=](Writer& w) { bacnet::EncodeGetEnrollmentSummary(filter, w); }));
    filter.Mask = BACSTAC_FILTER_RECIPIENT | BACSTAC_FILTER_EVENT_STATE | BACSTAC_FILTER_EVENT_TYPE |
                  BACSTAC_FILTER_PRIORITY | BACSTAC_FILTER_NOTIFICATION_CLASS;
    filter.Recipient.Choice = 0;
    filter.Recipient.Device = {OBJ_DEVICE, 55};
    filter.RecipientProcess = 12;
    filter.EventState = 1;
    filter.EventType = 5;
    filter.MinPriority = 3;
    filter.MaxPriority = 250;
    filter.NotificationClass = 77;
    entries.push_back(Request("GetEnrollmentSummary filtered", ConfirmedService::getEnrollmentSummary,
                              [=](Writer& w) { bacnet::EncodeGetEnrollmentSummary(filter, w); }));
    entries.push_back(Ack("GetEnrollmentSummary", ConfirmedService::getEnrollmentSummary, [](Writer& w) {
        bacnet::EncodeEnrollmentSummary({POINT, 5, 3, 200, 1, 77}, w);
        bacnet::EncodeEnrollmentSummary({{OBJ_BINARY_INPUT, 9}, 1, 0, 3, 0, 0}, w);
    }));
    entries.push_back(Request("GetEventInformation", ConfirmedService::getEventInformation,
                              [](Writer& w) { bacnet::EncodeGetEventInformation(nullptr, w); }));
    entries.push_back(Request("GetEventInformation continued", ConfirmedService::getEventInformation,
                              [](Writer& w) { bacnet::EncodeGetEventInformation(&POINT, w); }));
    entries.push_back(Ack("GetEventInformation", ConfirmedService::getEventInformation, [](Writer& w) {
        BACSTAC_EVENT_SUMMARY event{};
        event.ObjectId = POINT;
        event.EventState = 3;
        event.AckedTransitions = TWO_OF_THREE;
        event.TimeStamps[0].Choice = 0;
        event.TimeStamps[0].Time = TIME.Time;
        event.TimeStamps[1].Choice = 1;
        event.TimeStamps[1].SequenceNumber = 513;
        event.TimeStamps[2].Choice = 2;
        event.TimeStamps[2].DateTime = TIME;
        event.NotifyType = 0;
        event.EventEnable = TWO_OF_THREE;
        event.Priorities[0] = 10;
        event.Priorities[1] = 20;
        event.Priorities[2] = 255;
        bacnet::BeginEventInformationAck(w);
        bacnet::EncodeEventSummary(event, w);
        bacnet::EndEventInformationAck(true, w);
    }));
}

// ---- devices

void AddManagement(std::vector<Entry>& entries) {
    for (const std::uint32_t value : {0U, 1U, 2U})
        entries.push_back(Request(
            "DeviceCommunicationControl " + std::to_string(value), ConfirmedService::deviceCommunicationControl,
            [=](Writer& w) { bacnet::EncodeCommunicationControl(value * 300, value, value != 0 ? "secret" : "", w); }));
    for (std::uint32_t state = 0; state <= 6; ++state)
        entries.push_back(
            Request("ReinitializeDevice " + std::to_string(state), ConfirmedService::reinitializeDevice,
                    [=](Writer& w) { bacnet::EncodeReinitialize(state, state % 2 != 0 ? "filister" : "", w); }));
    entries.push_back(
        Broadcast("Who-Is for all", UnconfirmedService::whoIs, [](Writer& w) { bacnet::EncodeWhoIs({}, w); }));
    entries.push_back(Broadcast("Who-Is", UnconfirmedService::whoIs, [](Writer& w) {
        bacnet::EncodeWhoIs({5, 4194302}, w);
    }));
    entries.push_back(Broadcast("I-Am", UnconfirmedService::iAm, [](Writer& w) {
        bacnet::EncodeIAm({4194302, 1476, 0, 999}, w);
    }));
    entries.push_back(Broadcast("TimeSynchronization", UnconfirmedService::timeSynchronization,
                                [](Writer& w) { bacnet::EncodeTimeSynchronization(TIME, w); }));
    entries.push_back(Broadcast("UTCTimeSynchronization", UnconfirmedService::utcTimeSynchronization,
                                [](Writer& w) { bacnet::EncodeTimeSynchronization(TIME, w); }));
}

void AddWhoHas(std::vector<Entry>& entries) {
    bacnet::WhoHas whoHas;
    whoHas.Object = POINT;
    entries.push_back(Broadcast("Who-Has by identifier", UnconfirmedService::whoHas,
                                [=](Writer& w) { bacnet::EncodeWhoHas(whoHas, w); }));
    whoHas.Object.reset();
    whoHas.Name = "Zürich";
    whoHas.Devices = {1, 1000};
    entries.push_back(
        Broadcast("Who-Has by name", UnconfirmedService::whoHas, [=](Writer& w) { bacnet::EncodeWhoHas(whoHas, w); }));
    entries.push_back(Broadcast("I-Have", UnconfirmedService::iHave, [](Writer& w) {
        bacnet::EncodeIHave({1000, POINT, "Zürich"}, w);
    }));
}

// ---- answers without a value

void AddPlainAnswers(std::vector<Entry>& entries) {
    for (const ConfirmedService service :
         {ConfirmedService::writeProperty, ConfirmedService::writePropertyMultiple, ConfirmedService::deleteObject,
          ConfirmedService::deviceCommunicationControl, ConfirmedService::reinitializeDevice})
        entries.push_back({"simple ack " + std::to_string(static_cast<int>(service)),
                           Header(PduType::simple_ack, static_cast<std::uint8_t>(service)), [](Writer&) {}});
    entries.push_back(Failure("ReadProperty", ConfirmedService::readProperty, {2, 32, 0}));
    entries.push_back(Failure("vendor's", ConfirmedService::readProperty, {300, 40000, 0}));
    entries.push_back(Failure("CreateObject", ConfirmedService::createObject, {2, 37, 4}));
    bacnet::Apdu reject = Header(PduType::reject, 0);
    reject.Reason = 9;
    entries.push_back({"reject", reject, [](Writer&) {}});
    bacnet::Apdu abort = Header(PduType::abort, 0);
    abort.Reason = 4;
    abort.FromServer = true;
    entries.push_back({"abort", abort, [](Writer&) {}});
    bacnet::Apdu segmentAck = Header(PduType::segment_ack, 0);
    segmentAck.Negative = true;
    segmentAck.SequenceNumber = 200;
    segmentAck.WindowSize = 16;
    entries.push_back({"segment ack", segmentAck, [](Writer&) {}});
}

// Single segments; the decoder waits for the others.
void AddSegments(std::vector<Entry>& entries) {
    bacnet::Apdu request = Header(PduType::confirmed_request, 16);
    request.Segmented = true;
    request.MoreFollows = true;
    request.SegmentedResponseAccepted = true;
    request.SegmentsAccepted = bacnet::MaxSegments::sixty_four;
    request.MaxApduCode = 3;
    request.InvokeId = 8;
    request.SequenceNumber = 255;
    request.WindowSize = 127;
    entries.push_back({"segment of a request", request, [](Writer& w) { w.U8(0x0C); }});
    bacnet::Apdu answer = Header(PduType::complex_ack, 14);
    answer.Segmented = true;
    answer.MoreFollows = true;
    answer.InvokeId = 9;
    answer.SequenceNumber = 128;
    answer.WindowSize = 2;
    entries.push_back({"segment of an answer", answer, [](Writer& w) { w.U8(0x0C); }});
}

TEST(ServiceFrames, AreReadAsTheyAreMeant) {
    if (!HasDecoder())
        GTEST_SKIP() << "tshark is not installed: nothing decodes the frames independently";
    std::vector<Entry> entries;
    AddReading(entries);
    AddWriting(entries);
    AddFiles(entries);
    AddSummaries(entries);
    AddManagement(entries);
    AddWhoHas(entries);
    AddPlainAnswers(entries);
    AddSegments(entries);
    Recording recording;
    std::vector<std::uint8_t> octets(2000);
    for (const Entry& entry : entries) {
        Writer writer(octets);
        entry.Parameters(writer);
        recording.AddApdu(entry.Header, writer.Written());
    }
    const std::vector<Frame> frames = recording.DecodeAll();
    ASSERT_EQ(frames.size(), entries.size());
    std::string reading;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_EQ(Objection(frames[i]), "") << entries[i].Name << "\n" << frames[i].Text();
        reading += entries[i].Name + "\n" + Reading(frames[i], "bacapp");
    }
    ExpectGolden("services.txt", reading);
}

} // namespace
} // namespace interop
