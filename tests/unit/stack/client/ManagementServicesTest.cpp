// Requests and answers of the writing, managing, file and summary services: golden octets both ways, cut at every byte,
// corrupted at every byte.
#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/DeviceManagement.h"
#include "platform/stack/services/FileAccess.h"
#include "platform/stack/services/Objects.h"
#include "platform/stack/services/ReadConditional.h"
#include "platform/stack/services/Summaries.h"
#include "platform/stack/services/WriteProperty.h"
#include "tests/unit/stack/client/Frames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace bacnet {
namespace {

template <class Encode>
std::string Encoded(Encode encode) {
    std::uint8_t buffer[1476];
    Writer writer(buffer);
    encode(writer);
    EXPECT_FALSE(writer.Overflow());
    return ToHex(writer.Written());
}

// Cut at every byte the octets are refused, but for the lengths in whole; corrupted they do no harm.
template <class Decode>
void Sweep(const char* golden, Decode decode, const std::vector<std::size_t>& whole = {}) {
    CutAtEveryByte(Hex(golden), [&](std::span<const std::uint8_t> cut) {
        const bool expected = std::find(whole.begin(), whole.end(), cut.size()) != whole.end();
        EXPECT_EQ(decode(cut), expected) << golden << " cut to " << cut.size();
    });
    CorruptEveryByte(Hex(golden), decode);
}

std::string Text(std::span<const std::uint8_t> octets) {
    return {octets.begin(), octets.end()};
}

// ---- writing

// [0] analog-value 1, [1] present-value, [3] real 180.0, [4] priority 8
constexpr const char* write = "0C 00 80 00 01 19 55 3E 44 43 34 00 00 3F 49 08";

TEST(WritePropertyTest, CarriesValueAndPriority) {
    const PropertyTarget target{{2, 1}, 85, -1};
    const auto encoded = [&](int priority) {
        return Encoded([&](Writer& w) {
            BeginWriteProperty(target, w);
            w.Real(180.0F);
            EndWriteProperty(priority, w);
        });
    };
    EXPECT_EQ(encoded(8), write);
    EXPECT_EQ(encoded(-1), "0C 00 80 00 01 19 55 3E 44 43 34 00 00 3F");
    WriteRequest request;
    const Octets octets = Hex(write);
    ASSERT_TRUE(DecodeWriteProperty(octets, request));
    EXPECT_EQ(request.Target, target);
    EXPECT_EQ(request.Priority, 8);
    EXPECT_EQ(ToHex(request.Value), "44 43 34 00 00");
    Sweep(write,
          [](std::span<const std::uint8_t> cut) {
              WriteRequest partial;
              return DecodeWriteProperty(cut, partial);
          },
          {14});
}

// [0] analog-value 5 [1]{ [0] present-value [2]{ real 67.0 } [0] priority-array [1] 3 [2]{ null } [3] 8 }
// [0] analog-value 6 [1]{ [0] present-value [2]{ real 67.0 } }
constexpr const char* writeMultiple = "0C 00 80 00 05 1E 09 55 2E 44 42 86 00 00 2F 09 57 19 03 2E 00 2F 39 08 1F "
                                      "0C 00 80 00 06 1E 09 55 2E 44 42 86 00 00 2F 1F";

TEST(WritePropertyMultipleTest, WritesAndWalksRequests) {
    EXPECT_EQ(Encoded([](Writer& w) {
                  BeginWriteObject({2, 5}, w);
                  BeginPropertyValue(85, -1, w);
                  w.Real(67.0F);
                  EndPropertyValue(-1, w);
                  BeginPropertyValue(87, 3, w);
                  w.Null();
                  EndPropertyValue(8, w);
                  EndWriteObject(w);
                  BeginWriteObject({2, 6}, w);
                  BeginPropertyValue(85, -1, w);
                  w.Real(67.0F);
                  EndPropertyValue(-1, w);
                  EndWriteObject(w);
              }),
              writeMultiple);
    const Octets octets = Hex(writeMultiple);
    WpmRequestReader reader(octets);
    WriteRequest request;
    ASSERT_TRUE(reader.Next(request));
    EXPECT_EQ(request.Target, (PropertyTarget{{2, 5}, 85, -1}));
    EXPECT_EQ(request.Priority, -1);
    ASSERT_TRUE(reader.Next(request));
    EXPECT_EQ(request.Target, (PropertyTarget{{2, 5}, 87, 3}));
    EXPECT_EQ(request.Priority, 8);
    EXPECT_EQ(ToHex(request.Value), "00");
    ASSERT_TRUE(reader.Next(request));
    EXPECT_EQ(request.Target, (PropertyTarget{{2, 6}, 85, -1}));
    EXPECT_FALSE(reader.Next(request));
    EXPECT_TRUE(reader.Ok());
    Sweep(writeMultiple,
          [](std::span<const std::uint8_t> cut) {
              WpmRequestReader partial(cut);
              WriteRequest each;
              while (partial.Next(each)) {}
              return partial.Ok();
          },
          {0, 25});
}

// ---- objects

// [0]{ [0] file } [1]{ [0] object-name [2]{ "Trend 1" } [0] file-access-method [2]{ 0 } }
constexpr const char* createByType = "0E 09 0A 0F 1E 09 4D 2E 75 08 00 54 72 65 6E 64 20 31 2F 09 29 2E 91 00 2F 1F";
// [0]{ [1] file 13 }
constexpr const char* createById = "0E 1C 02 80 00 0D 0F";

TEST(CreateObjectTest, NamesTheTypeOrTheObject) {
    EXPECT_EQ(Encoded([](Writer& w) {
                  BeginCreateObject({0, 10, 99}, true, w);
                  BeginPropertyValue(77, -1, w);
                  w.CharacterString("Trend 1");
                  EndPropertyValue(-1, w);
                  BeginPropertyValue(41, -1, w);
                  w.Enumerated(0);
                  EndPropertyValue(-1, w);
                  EndCreateObject(true, w);
              }),
              createByType)
        << "the instance is not sent";
    EXPECT_EQ(Encoded([](Writer& w) {
                  BeginCreateObject({1, 10, 13}, false, w);
                  EndCreateObject(false, w);
              }),
              createById);
    CreateRequest request;
    const Octets octets = Hex(createByType);
    ASSERT_TRUE(DecodeCreateObject(octets, request));
    EXPECT_EQ(request.Specifier.ByIdentifier, 0U);
    EXPECT_EQ(request.Specifier.Type, 10U);
    Reader values(request.Values);
    WriteRequest value;
    ASSERT_TRUE(DecodePropertyValue(values, value));
    EXPECT_EQ(value.Target.Property, 77U);
    ASSERT_TRUE(DecodePropertyValue(values, value));
    EXPECT_TRUE(values.AtEnd());
    ASSERT_TRUE(DecodeCreateObject(Hex(createById), request));
    EXPECT_EQ(request.Specifier.ByIdentifier, 1U);
    EXPECT_EQ(request.Specifier.Instance, 13U);
    const auto decode = [](std::span<const std::uint8_t> cut) {
        CreateRequest partial;
        return DecodeCreateObject(cut, partial);
    };
    Sweep(createByType, decode, {4});
    Sweep(createById, decode);
}

TEST(CreateObjectTest, IsAnsweredByTheObject) {
    EXPECT_EQ(Encoded([](Writer& w) { EncodeCreateObjectAck({10, 13}, w); }), "C4 02 80 00 0D");
    BACSTAC_OBJECT_ID object{};
    ASSERT_TRUE(DecodeCreateObjectAck(Hex("C4 02 80 00 0D"), object));
    EXPECT_EQ(object, (BACSTAC_OBJECT_ID{10, 13}));
    Sweep("C4 02 80 00 0D", [](std::span<const std::uint8_t> cut) {
        BACSTAC_OBJECT_ID partial{};
        return DecodeCreateObjectAck(cut, partial);
    });
}

TEST(DeleteObjectTest, NamesTheObject) {
    EXPECT_EQ(Encoded([](Writer& w) { EncodeDeleteObject({11, 6}, w); }), "C4 02 C0 00 06");
    BACSTAC_OBJECT_ID object{};
    ASSERT_TRUE(DecodeDeleteObject(Hex("C4 02 C0 00 06"), object));
    EXPECT_EQ(object, (BACSTAC_OBJECT_ID{11, 6}));
}

// ---- managing

// [0] 5 minutes, [1] disable, [2] "#egbdf!"
constexpr const char* communication = "09 05 19 01 2D 08 00 23 65 67 62 64 66 21";
// [0] warmstart, [1] "AbCdEfGh"
constexpr const char* reinitialize = "09 01 1D 09 00 41 62 43 64 45 66 47 68";
// Tuesday 17 November 1992, 22:45:30.70
constexpr const char* timeSynchronization = "A4 5C 0B 11 02 B4 16 2D 1E 46";

TEST(DeviceManagementTest, SendsNeitherZeroMinutesNorAnEmptyPassword) {
    EXPECT_EQ(Encoded([](Writer& w) { EncodeCommunicationControl(5, 1, "#egbdf!", w); }), communication);
    EXPECT_EQ(Encoded([](Writer& w) { EncodeCommunicationControl(0, 0, "", w); }), "19 00");
    EXPECT_EQ(Encoded([](Writer& w) { EncodeReinitialize(1, "AbCdEfGh", w); }), reinitialize);
    EXPECT_EQ(Encoded([](Writer& w) { EncodeReinitialize(6, "", w); }), "09 06");
    CommunicationRequest control;
    const Octets octets = Hex(communication);
    ASSERT_TRUE(DecodeCommunicationControl(octets, control));
    EXPECT_EQ(control.Minutes, 5U);
    EXPECT_EQ(control.Value, 1U);
    EXPECT_EQ(Text(control.Password.subspan(1)), "#egbdf!");
    ASSERT_TRUE(DecodeCommunicationControl(Hex("19 00"), control));
    EXPECT_EQ(control.Minutes, 0U);
    EXPECT_TRUE(control.Password.empty());
    ReinitializeRequest request;
    ASSERT_TRUE(DecodeReinitialize(Hex("09 06"), request));
    EXPECT_EQ(request.State, 6U);
    Sweep(communication,
          [](std::span<const std::uint8_t> cut) {
              CommunicationRequest partial;
              return DecodeCommunicationControl(cut, partial);
          },
          {4});
    Sweep(reinitialize,
          [](std::span<const std::uint8_t> cut) {
              ReinitializeRequest partial;
              return DecodeReinitialize(cut, partial);
          },
          {2});
}

TEST(DeviceManagementTest, ComputesTheWeekdayOfATime) {
    const BACSTAC_DATE_TIME time{{1992, 0, 11, 17, 0}, {22, 45, 30, 70}};
    EXPECT_EQ(Encoded([&](Writer& w) { EncodeTimeSynchronization(time, w); }), timeSynchronization);
    BACSTAC_DATE_TIME decoded{};
    ASSERT_TRUE(DecodeTimeSynchronization(Hex(timeSynchronization), decoded));
    EXPECT_EQ(decoded.Date.Weekday, 2U);
    EXPECT_EQ(decoded.Time.Hundredths, 70);
    Sweep(timeSynchronization, [](std::span<const std::uint8_t> cut) {
        BACSTAC_DATE_TIME partial{};
        return DecodeTimeSynchronization(cut, partial);
    });
}

// ---- files

// file 1, [0]{ start 0, 27 octets }
constexpr const char* readStream = "C4 02 80 00 01 0E 31 00 21 1B 0F";
// no end of file, [0]{ start 0, "Chiller01 On-Time=4.3 Hours" }
constexpr const char* readStreamAck = "10 0E 31 00 65 1B 43 68 69 6C 6C 65 72 30 31 20 4F 6E 2D 54 69 6D 65 3D 34 2E "
                                      "33 20 48 6F 75 72 73 0F";
// file 2, [1]{ start 14, 3 records }
constexpr const char* readRecords = "C4 02 80 00 02 1E 31 0E 21 03 1F";
// end of file, [1]{ start 14, 2 records, "ab", "c" }
constexpr const char* readRecordsAck = "11 1E 31 0E 21 02 62 61 62 61 63 1F";
// file 1, [0]{ start 30, "abc" }
constexpr const char* writeStream = "C4 02 80 00 01 0E 31 1E 63 61 62 63 0F";
// file 2, [1]{ start -1, 2 records, "ab", "" }
constexpr const char* writeRecords = "C4 02 80 00 02 1E 31 FF 21 02 62 61 62 60 1F";

TEST(FileAccessTest, ReadsInBothForms) {
    EXPECT_EQ(Encoded([](Writer& w) { EXPECT_TRUE(EncodeReadFile({{10, 1}, {0, 0, 27}}, w)); }), readStream);
    EXPECT_EQ(Encoded([](Writer& w) { EXPECT_TRUE(EncodeReadFile({{10, 2}, {1, 14, 3}}, w)); }), readRecords);
    EXPECT_EQ(Encoded([](Writer& w) { EXPECT_FALSE(EncodeReadFile({{10, 2}, {2, 14, 3}}, w)); }), "");
    for (const char* golden : {readStream, readRecords}) {
        FileReadRequest request;
        ASSERT_TRUE(DecodeReadFile(Hex(golden), request));
        EXPECT_EQ(Encoded([&](Writer& w) { EncodeReadFile(request, w); }), golden);
        Sweep(golden, [](std::span<const std::uint8_t> cut) {
            FileReadRequest partial;
            return DecodeReadFile(cut, partial);
        });
    }
    bool endOfFile = true;
    FileData data;
    const Octets stream = Hex(readStreamAck);
    ASSERT_TRUE(DecodeReadFileAck(stream, endOfFile, data));
    EXPECT_FALSE(endOfFile);
    EXPECT_EQ(Text(data.Stream), "Chiller01 On-Time=4.3 Hours");
    EXPECT_EQ(Encoded([&](Writer& w) { EncodeReadFileAck(endOfFile, data, w); }), readStreamAck);
    const Octets records = Hex(readRecordsAck);
    ASSERT_TRUE(DecodeReadFileAck(records, endOfFile, data));
    EXPECT_TRUE(endOfFile);
    EXPECT_EQ(data.Start, 14);
    EXPECT_EQ(data.RecordCount, 2U);
    Reader reader(data.Records);
    std::span<const std::uint8_t> record;
    ASSERT_TRUE(NextRecord(reader, record));
    EXPECT_EQ(Text(record), "ab");
    ASSERT_TRUE(NextRecord(reader, record));
    EXPECT_EQ(Text(record), "c");
    EXPECT_FALSE(NextRecord(reader, record));
    EXPECT_EQ(Encoded([&](Writer& w) { EncodeReadFileAck(endOfFile, data, w); }), readRecordsAck);
    for (const char* golden : {readStreamAck, readRecordsAck})
        Sweep(golden, [](std::span<const std::uint8_t> cut) {
            bool end = false;
            FileData partial;
            if (!DecodeReadFileAck(cut, end, partial))
                return false;
            Reader each(partial.Records);
            std::span<const std::uint8_t> octets;
            while (NextRecord(each, octets)) {}
            return true;
        });
}

TEST(FileAccessTest, WritesInBothForms) {
    char abc[] = "abc";
    char ab[] = "ab";
    BACSTAC_WRITE_FILE_SPEC stream{};
    stream.Access = BACSTAC_FILE_STREAM;
    stream.Start = 30;
    stream.Stream = {abc, 0, 3};
    EXPECT_EQ(Encoded([&](Writer& w) { EXPECT_TRUE(EncodeWriteFile({10, 1}, stream, w)); }), writeStream);
    const BACSTAC_BUFFER buffers[] = {{ab, 0, 2}, {nullptr, 0, 0}};
    BACSTAC_WRITE_FILE_SPEC records{};
    records.Access = BACSTAC_FILE_RECORD;
    records.Start = -1;
    records.Records = {2, buffers};
    EXPECT_EQ(Encoded([&](Writer& w) { EXPECT_TRUE(EncodeWriteFile({10, 2}, records, w)); }), writeRecords);
    records.Access = 7;
    EXPECT_EQ(Encoded([&](Writer& w) { EXPECT_FALSE(EncodeWriteFile({10, 2}, records, w)); }), "");
    for (const char* golden : {writeStream, writeRecords})
        Sweep(golden, [](std::span<const std::uint8_t> cut) {
            BACSTAC_OBJECT_ID file{};
            FileData partial;
            return DecodeWriteFile(cut, file, partial);
        });
    EXPECT_EQ(Encoded([](Writer& w) { EncodeWriteFileAck(BACSTAC_FILE_STREAM, 30, w); }), "09 1E");
    EXPECT_EQ(Encoded([](Writer& w) { EncodeWriteFileAck(BACSTAC_FILE_RECORD, 14, w); }), "19 0E");
    std::int32_t start = 0;
    EXPECT_TRUE(DecodeWriteFileAck(Hex("09 1E"), start));
    EXPECT_EQ(start, 30);
    EXPECT_TRUE(DecodeWriteFileAck(Hex("19 FF"), start));
    EXPECT_EQ(start, -1);
    EXPECT_FALSE(DecodeWriteFileAck(Hex("09"), start));
    EXPECT_FALSE(DecodeWriteFileAck({}, start));
}

// ---- summaries

// analog-input 2, high-limit, 0 1 1; analog-input 3, low-limit, 1 1 1
constexpr const char* alarms = "C4 00 00 00 02 91 03 82 05 60 C4 00 00 00 03 91 04 82 05 E0";
// analog-input 2, change-of-state, high-limit, priority 100, class 4; analog-input 3, the same without class
constexpr const char* enrollments = "C4 00 00 00 02 91 01 91 03 21 64 21 04 C4 00 00 00 03 91 01 91 03 21 64";

TEST(SummariesTest, WalkAlarms) {
    const Octets octets = Hex(alarms);
    Reader reader(octets);
    BACSTAC_ALARM_SUMMARY summary{};
    std::string again;
    while (NextAlarmSummary(reader, summary))
        again += (again.empty() ? "" : " ") + Encoded([&](Writer& w) { EncodeAlarmSummary(summary, w); });
    EXPECT_TRUE(reader.Ok());
    EXPECT_EQ(again, alarms);
    EXPECT_EQ(summary.ObjectId, (BACSTAC_OBJECT_ID{}));
    Sweep(alarms,
          [](std::span<const std::uint8_t> cut) {
              Reader partial(cut);
              BACSTAC_ALARM_SUMMARY each{};
              while (NextAlarmSummary(partial, each)) {}
              return partial.Ok();
          },
          {0, 10});
}

TEST(SummariesTest, WalkEnrollments) {
    const Octets octets = Hex(enrollments);
    Reader reader(octets);
    BACSTAC_ENROLLMENT_SUMMARY summary{};
    ASSERT_TRUE(NextEnrollmentSummary(reader, summary));
    EXPECT_EQ(summary.NotificationClassPresent, 1U);
    EXPECT_EQ(summary.NotificationClass, 4U);
    EXPECT_EQ(summary.Priority, 100U);
    ASSERT_TRUE(NextEnrollmentSummary(reader, summary));
    EXPECT_EQ(summary.NotificationClassPresent, 0U);
    EXPECT_FALSE(NextEnrollmentSummary(reader, summary));
    EXPECT_TRUE(reader.Ok());
    Sweep(enrollments,
          [](std::span<const std::uint8_t> cut) {
              Reader partial(cut);
              BACSTAC_ENROLLMENT_SUMMARY each{};
              while (NextEnrollmentSummary(partial, each)) {}
              return partial.Ok();
          },
          {0, 11, 13});
}

TEST(SummariesTest, SendTheFiltersThatApply) {
    BACSTAC_ENROLLMENT_FILTER filter{};
    filter.Acked = 2;
    EXPECT_EQ(Encoded([&](Writer& w) { EncodeGetEnrollmentSummary(filter, w); }), "09 02");
    filter.Mask = 31;
    filter.Recipient.Choice = 0;
    filter.Recipient.Device = {8, 17};
    filter.RecipientProcess = 9;
    filter.EventState = 3;
    filter.EventType = 5;
    filter.MinPriority = 6;
    filter.MaxPriority = 10;
    filter.NotificationClass = 7;
    const char* const all = "09 02 1E 0E 0C 02 00 00 11 0F 19 09 1F 29 03 39 05 4E 09 06 19 0A 4F 59 07";
    EXPECT_EQ(Encoded([&](Writer& w) { EncodeGetEnrollmentSummary(filter, w); }), all);
    BACSTAC_ENROLLMENT_FILTER decoded{};
    ASSERT_TRUE(DecodeGetEnrollmentSummary(Hex(all), decoded));
    EXPECT_EQ(decoded.Mask, 31U);
    EXPECT_EQ(Encoded([&](Writer& w) { EncodeGetEnrollmentSummary(decoded, w); }), all);
    filter.Mask = BACSTAC_FILTER_RECIPIENT;
    filter.Recipient.Choice = 1;
    filter.Recipient.Address = {1, 0, 5, {1, 2}, 2};
    EXPECT_EQ(Encoded([&](Writer& w) { EncodeGetEnrollmentSummary(filter, w); }),
              "09 02 1E 0E 1E 21 05 62 01 02 1F 0F 19 09 1F");
    Sweep(all,
          [](std::span<const std::uint8_t> cut) {
              BACSTAC_ENROLLMENT_FILTER partial{};
              return DecodeGetEnrollmentSummary(cut, partial);
          },
          {2, 13, 15, 17, 23});
}

// [0]{ [0] analog-input 2, [1] high-limit, [2] 0 1 1, [3]{ time 15:35:00.0, sequence 5, date and time unspecified },
// [4] alarm, [5] 1 1 1, [6]{ 15, 15, 20 } }, [1] more
constexpr const char* events = "0E 0C 00 00 00 02 19 03 2A 05 60 3E 0C 0F 23 00 00 19 05 2E A4 FF FF FF FF B4 FF FF FF "
                               "FF 2F 3F 49 00 5A 05 E0 6E 21 0F 21 0F 21 14 6F 0F 19 01";

TEST(SummariesTest, WalkEvents) {
    const Octets octets = Hex(events);
    std::span<const std::uint8_t> entries;
    bool more = false;
    ASSERT_TRUE(DecodeEventInformationAck(octets, entries, more));
    EXPECT_TRUE(more);
    Reader reader(entries);
    BACSTAC_EVENT_SUMMARY event{};
    ASSERT_TRUE(NextEventSummary(reader, event));
    EXPECT_EQ(event.TimeStamps[0].Choice, 0U);
    EXPECT_EQ(event.TimeStamps[1].SequenceNumber, 5U);
    EXPECT_EQ(event.TimeStamps[2].DateTime.Date.Year, BACSTAC_ANY_YEAR);
    EXPECT_EQ(event.Priorities[2], 20U);
    EXPECT_EQ(Encoded([&](Writer& w) {
                  BeginEventInformationAck(w);
                  EncodeEventSummary(event, w);
                  EndEventInformationAck(true, w);
              }),
              events);
    EXPECT_FALSE(NextEventSummary(reader, event));
    EXPECT_TRUE(reader.Ok());
    Sweep(events, [](std::span<const std::uint8_t> cut) {
        std::span<const std::uint8_t> list;
        bool further = false;
        if (!DecodeEventInformationAck(cut, list, further))
            return false;
        Reader each(list);
        BACSTAC_EVENT_SUMMARY summary{};
        while (NextEventSummary(each, summary)) {}
        return true;
    });
    EXPECT_EQ(Encoded([](Writer& w) { EncodeGetEventInformation(nullptr, w); }), "");
    const BACSTAC_OBJECT_ID last{0, 2};
    EXPECT_EQ(Encoded([&](Writer& w) { EncodeGetEventInformation(&last, w); }), "0C 00 00 00 02");
    bool continued = true;
    BACSTAC_OBJECT_ID from{};
    EXPECT_TRUE(DecodeGetEventInformation({}, continued, from));
    EXPECT_FALSE(continued);
    EXPECT_TRUE(DecodeGetEventInformation(Hex("0C 00 00 00 02"), continued, from));
    EXPECT_TRUE(continued);
    EXPECT_EQ(from, last);
}

// ---- conditional read

TEST(ReadConditionalTest, SendsCriteriaAndProperties) {
    float limit = 100.0F;
    BACSTAC_SELECTION_CRITERION criterion{};
    criterion.Property = {85, 0xFFFFFFFFU};
    criterion.Relation = 3;
    criterion.Value = {4, &limit, sizeof limit, 1};
    const BACSTAC_PROPERTY_REF references[] = {{77, 0xFFFFFFFFU}, {87, 4}};
    BACSTAC_READ_CON_INFO info{};
    info.SelectionLogic = 2;
    EXPECT_EQ(Encoded([&](Writer& w) { EXPECT_TRUE(EncodeReadConditional(info, w)); }), "0E 09 02 0F");
    info = {0, 1, &criterion, 2, references};
    // [0]{ [0] and [1]{ [0] present-value [2] greater-than [3]{ real 100.0 } } } [1]{ [0] 77, [0] 87 [1] 4 }
    EXPECT_EQ(Encoded([&](Writer& w) { EXPECT_TRUE(EncodeReadConditional(info, w)); }),
              "0E 09 00 1E 09 55 29 03 3E 44 42 C8 00 00 3F 1F 0F 1E 09 4D 09 57 19 04 1F");
    criterion.Value = {-1, nullptr, 0, 0};
    std::uint8_t buffer[64];
    Writer writer(buffer);
    EXPECT_FALSE(EncodeReadConditional(info, writer)) << "no value to compare with";
}

} // namespace
} // namespace bacnet
