#include "module/history/RowConverter.h"

#include "api/bacnet/Enums.h"
#include "module/history/HistoryModel.h"
#include "tests/support/FakeLogBuffer.h"
#include "tests/unit/history/LogEntries.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace {

using testing::ElementsAre;

class RowConverter : public testing::Test {
protected:
    std::vector<VfiRecord> Convert(BACSTAC_OBJECT_TYPE type, const std::vector<FakeLogEntry>& log) {
        FillLogBuffer(type, log, 0, log.size(), buffer.Get());
        CTrendRows rows(100);
        rows.AppendBlock(type, buffer.Get());
        CFixedArray<VfiRecord> records(1000);
        CRowConverter(tags).Convert(rows, buffer.Get(), records);
        return {records.GetData(), records.GetData() + records.GetSize()};
    }
    VfiRecord ConvertOne(const FakeLogEntry& entry) {
        const auto records = Convert(OBJ_TREND_LOG, {entry});
        EXPECT_EQ(records.size(), 1U);
        return records.empty() ? VfiRecord{} : records[0];
    }
    double Number(std::uint32_t type, const BACSTAC_LOG_VALUE& value) {
        const VfiRecord record = ConvertOne(Entry(Minute(1), type, value));
        EXPECT_EQ(record.valueType, VFI_NUMBER);
        return VfiValue(record);
    }
    std::string TextOf(const FakeLogEntry& entry) {
        const VfiRecord record = ConvertOne(entry);
        EXPECT_EQ(record.valueType, VFI_TEXT);
        return record.text;
    }
    static std::vector<std::uint32_t> TagsOf(const std::vector<VfiRecord>& records) {
        std::vector<std::uint32_t> ids;
        for (const VfiRecord& record : records)
            ids.push_back(record.tagId);
        return ids;
    }

    std::vector<HistoryTagRecord> tags{{7, "T", false, {NO_TAG, NO_TAG, NO_TAG, NO_TAG}}};
    CContentsBuffer buffer;
};

TEST_F(RowConverter, TurnsNumbersIntoDoubles) {
    EXPECT_EQ(Number(BACSTAC_LOG_BOOLEAN, BooleanValue(true)), 1.0);
    EXPECT_EQ(Number(BACSTAC_LOG_BOOLEAN, BooleanValue(false)), 0.0);
    EXPECT_EQ(Number(BACSTAC_LOG_REAL, RealValue(0.1F)), static_cast<double>(0.1F));
    EXPECT_EQ(Number(BACSTAC_LOG_ENUMERATED, UnsignedValue(0xFFFFFFFF)), 4294967295.0);
    EXPECT_EQ(Number(BACSTAC_LOG_UNSIGNED, UnsignedValue(0xFFFFFFFF)), 4294967295.0);
    EXPECT_EQ(Number(BACSTAC_LOG_SIGNED, SignedValue(-5)), -5.0);
    EXPECT_TRUE(std::isnan(Number(BACSTAC_LOG_REAL, RealValue(std::numeric_limits<float>::quiet_NaN()))));
    EXPECT_EQ(Number(BACSTAC_LOG_REAL, RealValue(std::numeric_limits<float>::infinity())),
              std::numeric_limits<double>::infinity());
}

TEST_F(RowConverter, PrintsTheOtherKinds) {
    char bits[256] = {};
    CBacGeneral::PrintBitString(bits, sizeof bits, Bits({true, false, true}), ENUM_NONE);
    EXPECT_EQ(TextOf(Entry(Minute(1), BACSTAC_LOG_BITSTRING, BitsValue({true, false, true}))), bits);
    EXPECT_EQ(TextOf(Entry(Minute(1), BACSTAC_LOG_NULL)), "null");
    EXPECT_EQ(TextOf(Entry(Minute(1), BACSTAC_LOG_FAILURE, FailureValue(1, 31))), "(1, 31)");
    EXPECT_EQ(TextOf(Entry(Minute(1), BACSTAC_LOG_FAILURE, FailureValue(0xFFFFFFFF, 0))), "(-1, 0)");
}

TEST_F(RowConverter, PrintsAnyValue) {
    FakeValue value = FakeValue::Unsigned(4711);
    const BACSTAC_PROPERTY_CONTENTS contents{value.type, value.bytes.data(),
                                             static_cast<std::uint32_t>(value.bytes.size()), value.count};
    char text[256] = {};
    CBacGeneral::PrintContents(text, sizeof text, contents, 0x3FF, 0x3FFFFF, -1);
    EXPECT_EQ(TextOf(AnyEntry(Minute(1), value)), text);
    EXPECT_STREQ(text, "4711");

    FakeLogEntry undecoded = Entry(Minute(1), BACSTAC_LOG_ANY);
    undecoded.value.Any = {-1, 0, 0, 0};
    EXPECT_EQ(TextOf(undecoded), "");
    undecoded.value.Any = {TYPE_STRING, 0xFFFFFFF0, 0xFF, 1};
    EXPECT_EQ(TextOf(undecoded), "");
}

TEST_F(RowConverter, CutsALongTextToTheRecord) {
    const VfiRecord record = ConvertOne(AnyEntry(Minute(1), FakeValue::Text(std::string(2000, 'x'))));
    ASSERT_NE(std::memchr(record.text, 0, sizeof record.text), nullptr);
    EXPECT_EQ(record.text, std::string(255, 'x'));
}

TEST_F(RowConverter, StoresNothingForATimeChange) {
    EXPECT_TRUE(Convert(OBJ_TREND_LOG, {Entry(Minute(1), BACSTAC_LOG_TIME_CHANGE, RealValue(3600))}).empty());
}

TEST_F(RowConverter, StoresTheStatusFlagsOfATimeChangeAsNumbers) {
    tags[0].statusTagIds = {21, NO_TAG, NO_TAG, 24};
    const auto records =
        Convert(OBJ_TREND_LOG, {WithStatus(Entry(Minute(1), BACSTAC_LOG_TIME_CHANGE), {true, true, true, false})});
    ASSERT_THAT(TagsOf(records), ElementsAre(21U, 24U));
    EXPECT_EQ(VfiValue(records[0]), 1.0);
    EXPECT_EQ(VfiValue(records[1]), 0.0);
    EXPECT_EQ(records[0].valueType, VFI_NUMBER);
    EXPECT_EQ(records[0].time, records[1].time);
}

TEST_F(RowConverter, LeavesTheStatusFlagsOfATextTheTypeOfTheText) {
    tags[0].statusTagIds = {21, NO_TAG, NO_TAG, NO_TAG};
    const auto records =
        Convert(OBJ_TREND_LOG, {WithStatus(Entry(Minute(1), BACSTAC_LOG_NULL), {true, false, false, false})});
    ASSERT_THAT(TagsOf(records), ElementsAre(7U, 21U));
    EXPECT_EQ(records[1].valueType, VFI_TEXT);
    EXPECT_EQ(VfiValue(records[1]), 1.0);
    EXPECT_STREQ(records[1].text, "null");
}

TEST_F(RowConverter, WritesStatusFlagsWithoutATagForTheValue) {
    tags[0].tagId = NO_TAG;
    tags[0].statusTagIds = {NO_TAG, NO_TAG, 23, NO_TAG};
    const auto records = Convert(
        OBJ_TREND_LOG, {WithStatus(RealEntry(Minute(1), 5), {false, false, true, false}), RealEntry(Minute(2), 6)});
    ASSERT_THAT(TagsOf(records), ElementsAre(23U));
    EXPECT_EQ(VfiValue(records[0]), 1.0);
}

TEST_F(RowConverter, TakesBitsPastTheEndOfTheFlagsForClear) {
    tags[0].statusTagIds = {21, 22, 23, 24};
    const auto records = Convert(OBJ_TREND_LOG, {WithStatus(RealEntry(Minute(1), 5), {true})});
    ASSERT_THAT(TagsOf(records), ElementsAre(7U, 21U, 22U, 23U, 24U));
    EXPECT_EQ(VfiValue(records[1]), 1.0);
    EXPECT_EQ(VfiValue(records[4]), 0.0);
}

TEST_F(RowConverter, PairsValuesAndTagsByTheirPlace) {
    tags = {{1, "", false, {NO_TAG, NO_TAG, NO_TAG, NO_TAG}},
            {NO_TAG, "", false, {NO_TAG, NO_TAG, NO_TAG, NO_TAG}},
            {3, "", false, {NO_TAG, NO_TAG, NO_TAG, NO_TAG}}};
    const auto records =
        Convert(OBJ_TREND_LOG_MULTIPLE, {MultipleEntry(Minute(1), {Item(1, RealValue(10)), Item(1, RealValue(20)),
                                                                   Item(1, RealValue(30)), Item(1, RealValue(40))}),
                                         MultipleEntry(Minute(2), {Item(1, RealValue(50))})});
    ASSERT_THAT(TagsOf(records), ElementsAre(1U, 3U, 1U));
    EXPECT_EQ(VfiValue(records[0]), 10.0);
    EXPECT_EQ(VfiValue(records[1]), 30.0);
    EXPECT_EQ(VfiValue(records[2]), 50.0);
}

TEST_F(RowConverter, KeepsInARowWhatAValueDoesNotSetAndClearsItBetweenRows) {
    tags = {{1, "", false, {NO_TAG, NO_TAG, NO_TAG, NO_TAG}}, {2, "", false, {NO_TAG, NO_TAG, NO_TAG, NO_TAG}}};
    const auto records = Convert(OBJ_TREND_LOG_MULTIPLE, {MultipleEntry(Minute(1), {Item(1, RealValue(10)), Item(6)}),
                                                          MultipleEntry(Minute(2), {Item(6), Item(1, RealValue(20))}),
                                                          MultipleEntry(Minute(3), {Item(1, RealValue(30))})});
    ASSERT_EQ(records.size(), 5U);
    EXPECT_EQ(VfiValue(records[1]), 10.0);
    EXPECT_STREQ(records[1].text, "null");
    EXPECT_EQ(VfiValue(records[2]), 0.0);
    EXPECT_STREQ(records[3].text, "null");
    EXPECT_EQ(records[3].valueType, VFI_NUMBER);
    EXPECT_STREQ(records[4].text, "");
}

TEST_F(RowConverter, DropsRecordsBeyondTheRoom) {
    const std::vector<FakeLogEntry> log = Minutes(1, 5);
    FillLogBuffer(OBJ_TREND_LOG, log, 0, log.size(), buffer.Get());
    CTrendRows rows(100);
    rows.AppendBlock(OBJ_TREND_LOG, buffer.Get());
    CFixedArray<VfiRecord> records(3);
    CRowConverter(tags).Convert(rows, buffer.Get(), records);
    EXPECT_EQ(records.GetSize(), 3U);
}

TEST_F(RowConverter, KeepsMillisecondsWithinASecond) {
    EXPECT_EQ(ConvertOne(RealEntry(Time(2026, 1, 1, 0, 0, 0, 99), 1)).milliseconds, 990);
    EXPECT_EQ(ConvertOne(RealEntry(Time(2026, 1, 1, 0, 0, 0, 255), 1)).milliseconds, 0) << "unspecified";
}

TEST_F(RowConverter, StoresARecordWhoseTimeHasNoPlace) {
    EXPECT_EQ(ConvertOne(RealEntry(Time(1900, 1, 1), 1)).time, VFI_NO_TIME);
    EXPECT_EQ(ConvertOne(RealEntry(Time(65535, 1, 1), 1)).time, VFI_NO_TIME);
}

} // namespace
