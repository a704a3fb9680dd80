// Log buffers as ReadRange carries them: elements one behind the other (clause 12.25, BACnetLogRecord and its kin).
#include "platform/stack/codec/ValueCodec.h"

#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Records.h"
#include "tests/unit/stack/codec/Hex.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace bacnet;

namespace {

// [0]{ 2026-03-01 Sunday, 12:05:00.50 }
const std::string STAMP = "0E A47E030107 B40C050032 0F";

template <typename Record>
Record At(const BACSTAC_PROPERTY_CONTENTS& contents, std::uint32_t index) {
    Record record{};
    std::memcpy(&record, static_cast<const char*>(contents.Buffer) + index * sizeof(Record), sizeof(Record));
    return record;
}

void ExpectStamp(const BACSTAC_DATE_TIME& time) {
    EXPECT_EQ(time.Date.Year, 2026);
    EXPECT_EQ(time.Date.Month, 3U);
    EXPECT_EQ(time.Date.Day, 1U);
    EXPECT_EQ(time.Date.Weekday, 7U);
    EXPECT_EQ(time.Date.Reserved, 0);
    EXPECT_EQ(time.Time.Hour, 12);
    EXPECT_EQ(time.Time.Minute, 5);
    EXPECT_EQ(time.Time.Second, 0);
    EXPECT_EQ(time.Time.Hundredths, 50);
}

} // namespace

TEST(LogRecords, DecodeEveryDatumOfATrendLog) {
    const auto frame = Hex(STAMP + "1E 0A0502 1F" +               // log-status: log-interrupted is bit 2 of 3
                           STAMP + "1E 1901 1F 2A0480" +          // boolean, status flags in-alarm
                           STAMP + "1E 2C42900000 1F" +           // real 72
                           STAMP + "1E 3903 1F" +                 // enumerated 3
                           STAMP + "1E 4CFFFFFFFF 1F" +           // unsigned 4294967295
                           STAMP + "1E 59FB 1F" +                 // signed -5
                           STAMP + "1E 6A05A0 1F" +               // bit string 101
                           STAMP + "1E 78 1F" +                   // null
                           STAMP + "1E 8E 9101 911F 8F 1F" +      // failure (1, 31)
                           STAMP + "1E 9CC1200000 1F" +           // time-change -10
                           STAMP + "1E AE 7505004869DF21 AF 1F"); // any: text whose octets are no UTF-8
    CPropertyContents contents;
    EXPECT_EQ(DecodeRecords(frame, TYPE_LOG_RECORD, contents), DecodeResult::ok);
    EXPECT_EQ(contents.DataType, TYPE_LOG_RECORD);
    ASSERT_EQ(contents.ElementCount, 11U);
    for (std::uint32_t i = 0; i < 11; ++i) {
        const auto record = At<BACSTAC_LOG_RECORD>(contents, i);
        ExpectStamp(record.TimeStamp);
        EXPECT_EQ(record.DatumType, i);
        EXPECT_EQ(record.HasStatus, i == 1 ? 1 : 0);
    }
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 0).Value.LogStatus.BitCount, 3U);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 0).Value.LogStatus.Bits[0], 0);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 1).Value.Boolean, 1);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 1).StatusFlags.BitCount, 4U);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 1).StatusFlags.Bits[0], 1);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 2).Value.Real, 72.0F);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 3).Value.Enumerated, 3U);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 4).Value.Unsigned, 4294967295U);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 5).Value.Signed, -5);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 6).Value.BitString.BitCount, 3U);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 6).Value.BitString.Bits[0], 5);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 8).Value.Failure.Class, 1U);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 8).Value.Failure.Code, 31U);
    EXPECT_EQ(At<BACSTAC_LOG_RECORD>(contents, 9).Value.TimeChange, -10.0F);
    const BACSTAC_PROPERTY_CONTENTS any = AnyValue(contents, At<BACSTAC_LOG_RECORD>(contents, 10).Value.Any);
    EXPECT_EQ(any.DataType, TYPE_STRING);
    EXPECT_EQ(any.ElementCount, 1U);
    EXPECT_STREQ(static_cast<const char*>(any.Buffer), "Hi\xC3\x9F!"); // taken as Windows-1252
}

TEST(LogRecords, DecodeRecordsOfATrendLogMultiple) {
    const auto frame = Hex(STAMP + "1E 0A0560 1F" + // log-status: buffer-purged, log-interrupted
                           STAMP +                  // values: boolean, real, null, failure, any double, signed
                           "1E 1E 0901 1C3F800000 68 7E 9102 9120 7F 8E 55083FF0000000000000 8F 4A8000 1F 1F" + STAMP +
                           "1E 1E 1F 1F" +              // no value at all
                           STAMP + "1E 2C40A00000 1F"); // time-change 5
    CPropertyContents contents;
    EXPECT_EQ(DecodeRecords(frame, TYPE_LOG_MULTIPLE_RECORD, contents), DecodeResult::ok);
    ASSERT_EQ(contents.ElementCount, 4U);

    const auto status = At<BACSTAC_LOG_MULTIPLE_RECORD>(contents, 0);
    ExpectStamp(status.TimeStamp);
    EXPECT_EQ(status.RecordType, BACSTAC_LOG_MULTIPLE_STATUS);
    EXPECT_EQ(status.LogStatus.Bits[0], 6);

    const auto data = At<BACSTAC_LOG_MULTIPLE_RECORD>(contents, 1);
    EXPECT_EQ(data.RecordType, BACSTAC_LOG_MULTIPLE_DATA);
    ASSERT_EQ(data.Data.ItemCount, 6U);
    const BACSTAC_LOG_ITEM* items = LogItems(contents, data);
    ASSERT_NE(items, nullptr);
    const std::uint32_t kinds[] = {0, 1, 6, 7, 8, 4};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(items[i].Kind, kinds[i]);
    EXPECT_EQ(items[0].Value.Boolean, 1);
    EXPECT_EQ(items[1].Value.Real, 1.0F);
    EXPECT_EQ(items[3].Value.Failure.Class, 2U);
    EXPECT_EQ(items[3].Value.Failure.Code, 32U);
    EXPECT_EQ(items[5].Value.Signed, -32768);
    const BACSTAC_PROPERTY_CONTENTS any = AnyValue(contents, items[4].Value.Any);
    ASSERT_EQ(any.DataType, TYPE_DOUBLE);
    double wide = 0;
    std::memcpy(&wide, any.Buffer, sizeof(wide));
    EXPECT_EQ(wide, 1.0);

    const auto empty = At<BACSTAC_LOG_MULTIPLE_RECORD>(contents, 2);
    EXPECT_EQ(empty.RecordType, BACSTAC_LOG_MULTIPLE_DATA);
    EXPECT_EQ(empty.Data.ItemCount, 0U);
    EXPECT_EQ(LogItems(contents, empty), nullptr);

    EXPECT_EQ(At<BACSTAC_LOG_MULTIPLE_RECORD>(contents, 3).TimeChange, 5.0F);
}

// A copy of the contents is whole: references are offsets.
TEST(LogRecords, SurviveTheCopyOfTheirContents) {
    const auto frame = Hex(STAMP + "1E 1E 0901 1C3F800000 1F 1F");
    auto first = std::make_unique<CPropertyContents>();
    ASSERT_EQ(DecodeRecords(frame, TYPE_LOG_MULTIPLE_RECORD, *first), DecodeResult::ok);
    const CPropertyContents second(*first);
    first.reset();
    const BACSTAC_LOG_ITEM* items = LogItems(second, At<BACSTAC_LOG_MULTIPLE_RECORD>(second, 0));
    ASSERT_NE(items, nullptr);
    EXPECT_EQ(items[1].Value.Real, 1.0F);
}

TEST(LogRecords, DecodeAnEventLog) {
    const auto frame =
        Hex(STAMP + "1E 0A0540 1F" + // log-status: buffer-purged
            STAMP +
            "1E 1E 0901 1C02000457 2C00000007 3E 1903 3F 4905 5964 6905"  // process 1, device 1111, analog-input 7,
                                                                          // sequence 3, class 5, priority 100,
                                                                          // out-of-range
            "7D04 00 486900 8900 9901 A900 B903"                          // "Hi", alarm, ack required, normal to high
            "CE 5E 0C42480000 1A0400 2C3F800000 3C42200000 5F CF 1F 1F" + // 50, flags, 1, 40
            STAMP +
            "1E 2CC1200000 1F");
    CPropertyContents contents;
    EXPECT_EQ(DecodeRecords(frame, TYPE_EVENT_LOG_RECORD, contents), DecodeResult::ok);
    ASSERT_EQ(contents.ElementCount, 3U);
    EXPECT_EQ(At<BACSTAC_EVENT_LOG_RECORD>(contents, 0).LogStatus.Bits[0], 2);
    const auto record = At<BACSTAC_EVENT_LOG_RECORD>(contents, 1);
    ExpectStamp(record.TimeStamp);
    ASSERT_EQ(record.RecordType, BACSTAC_EVENT_LOG_NOTIFICATION);
    const BACSTAC_EVENT_NOTIF& notif = record.Notification;
    EXPECT_EQ(notif.ProcessId, 1U);
    EXPECT_EQ(notif.Device, (BACSTAC_OBJECT_ID{8, 1111}));
    EXPECT_EQ(notif.Object, (BACSTAC_OBJECT_ID{0, 7}));
    EXPECT_EQ(notif.TimeStamp.Choice, 1U);
    EXPECT_EQ(notif.TimeStamp.SequenceNumber, 3U);
    EXPECT_EQ(notif.NotificationClass, 5U);
    EXPECT_EQ(notif.Priority, 100U);
    EXPECT_EQ(notif.EventType, 5U);
    EXPECT_EQ(notif.Mask,
              BACSTAC_NOTIF_MESSAGE | BACSTAC_NOTIF_ACK_REQUIRED | BACSTAC_NOTIF_FROM_STATE | BACSTAC_NOTIF_PARAMETERS);
    EXPECT_STREQ(static_cast<const char*>(contents.Buffer) + notif.MessageOffset, "Hi");
    EXPECT_EQ(notif.AckRequired, 1);
    EXPECT_EQ(notif.ToState, 3U);
    ASSERT_EQ(notif.Parameters.Parameters.DataType, TYPE_NOTIFICATION_PARAMETER_FIRST + 5);
    BACSTAC_NP_OUT_OF_RANGE values{};
    std::memcpy(&values, static_cast<const char*>(contents.Buffer) + notif.Parameters.Parameters.Offset,
                sizeof(values));
    EXPECT_EQ(values.ExceedingValue, 50.0F);
    EXPECT_EQ(values.ExceededLimit, 40.0F);
}

TEST(LogRecords, KeepWhatFitsWhenTheBufferIsTooSmall) {
    std::string text;
    for (int i = 0; i < 10; ++i)
        text += STAMP + "1E 1E 0901 1F 1F";
    const auto frame = Hex(text);
    CPropertyContents contents(200); // three records of 40 with an item of 20 each, and a bit
    EXPECT_EQ(DecodeRecords(frame, TYPE_LOG_MULTIPLE_RECORD, contents), DecodeResult::noRoom);
    EXPECT_EQ(contents.ElementCount, 3U);
    for (std::uint32_t i = 0; i < 3; ++i) {
        const BACSTAC_LOG_ITEM* items = LogItems(contents, At<BACSTAC_LOG_MULTIPLE_RECORD>(contents, i));
        ASSERT_NE(items, nullptr);
        EXPECT_EQ(items[0].Value.Boolean, 1);
    }
}

TEST(LogRecords, KeepWhatStoodBeforeAFault) {
    const auto frame = Hex(STAMP + "1E 2C42900000 1F" + STAMP + "1E 2B429000 1F");
    CPropertyContents contents;
    DecodeFault fault;
    EXPECT_EQ(DecodeRecords(frame, TYPE_LOG_RECORD, contents, &fault), DecodeResult::malformed);
    EXPECT_EQ(contents.ElementCount, 1U);
    EXPECT_EQ(fault.Error, DecodeError::badLength);
    EXPECT_EQ(fault.Offset, frame.size() - 4); // behind the tag of the real
}

TEST(LogRecords, DecodeWithoutHarmWhenCutAnywhere) {
    const std::string first = STAMP + "1E 1E 0901 1C3F800000 68 7E 9102 9120 7F 8E 55083FF0000000000000 8F 1F 1F";
    const auto frame = Hex(first + STAMP + "1E 0A0560 1F");
    for (std::size_t size = 0; size < frame.size(); ++size) {
        const std::vector<std::uint8_t> cut(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(size));
        CPropertyContents contents(256);
        const DecodeResult result = DecodeRecords(cut, TYPE_LOG_MULTIPLE_RECORD, contents);
        const bool whole = size == 0 || size == Hex(first).size();
        EXPECT_EQ(result, whole ? DecodeResult::ok : DecodeResult::malformed) << size;
        EXPECT_LE(contents.ElementCount, 1U);
    }
}
