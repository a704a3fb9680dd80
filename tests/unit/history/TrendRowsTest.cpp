#include "module/history/TrendRows.h"

#include "api/bacnet/Enums.h"
#include "module/history/HistoryModel.h"
#include "tests/support/FakeLogBuffer.h"
#include "tests/unit/history/LogEntries.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class TrendRows : public testing::Test {
protected:
    // The rows of a log buffer with these entries.
    void Read(BACSTAC_OBJECT_TYPE type, const std::vector<FakeLogEntry>& log) {
        buffer = std::make_unique<CContentsBuffer>();
        FillLogBuffer(type, log, 0, log.size(), buffer->Get());
        rows.AppendBlock(type, buffer->Get());
    }
    std::vector<std::uint32_t> Types(std::size_t row) const {
        std::vector<std::uint32_t> types;
        for (const TrendLogRecord& value : rows[row])
            types.push_back(value.datumType);
        return types;
    }

    CTrendRows rows{100};
    std::unique_ptr<CContentsBuffer> buffer;
};

TEST_F(TrendRows, TakeTheDataOfATrendLogOnly) {
    std::vector<FakeLogEntry> log;
    for (std::uint32_t type = 0; type <= 12; ++type)
        log.push_back(Entry(Minute(type), type));
    log.push_back(Entry(Minute(13), 0xFFFFFFFF));
    Read(OBJ_TREND_LOG, log);
    ASSERT_EQ(rows.GetSize(), 10U);
    for (std::size_t row = 0; row < 10; ++row) {
        EXPECT_THAT(Types(row), ElementsAre(row + 1));
        EXPECT_TRUE(Same(rows[row][0].timeStamp, Minute(static_cast<unsigned>(row) + 1)));
    }
}

TEST_F(TrendRows, KeepValuesAndStatusFlagsOfATrendLog) {
    Read(OBJ_TREND_LOG, {RealEntry(Minute(1), 2.5F), WithStatus(RealEntry(Minute(2), 3), {true, false, false, true})});
    ASSERT_EQ(rows.GetSize(), 2U);
    EXPECT_EQ(rows[0][0].value.Real, 2.5F);
    EXPECT_FALSE(rows[0][0].hasStatus);
    EXPECT_TRUE(rows[1][0].hasStatus);
    EXPECT_EQ(rows[1][0].statusFlags, Bits({true, false, false, true}));
}

TEST_F(TrendRows, NormaliseTheItemsOfAMultipleLog) {
    FakeLogItem any = Item(8);
    any.any = FakeValue::Text("x");
    Read(OBJ_TREND_LOG_MULTIPLE,
         {MultipleEntry(Minute(1), {Item(0, BooleanValue(true)), Item(1, RealValue(1.5F)), Item(2, UnsignedValue(3)),
                                    Item(3, UnsignedValue(4)), Item(4, SignedValue(-5)), Item(5, BitsValue({true})),
                                    Item(6), Item(7, FailureValue(1, 31)), any})});
    ASSERT_EQ(rows.GetSize(), 1U);
    EXPECT_THAT(Types(0), ElementsAre(1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 10U));
    const TrendRow row = rows[0];
    EXPECT_EQ(row[0].value.Boolean, 1);
    EXPECT_EQ(row[0].value.Unsigned, 1U) << "of a boolean one byte is the value";
    EXPECT_EQ(row[1].value.Real, 1.5F);
    EXPECT_EQ(row[2].value.Enumerated, 3U);
    EXPECT_EQ(row[3].value.Unsigned, 4U);
    EXPECT_EQ(row[4].value.Signed, -5);
    EXPECT_EQ(row[5].value.BitString, Bits({true}));
    EXPECT_EQ(row[7].value.Failure.Class, 1U);
    EXPECT_EQ(row[7].value.Failure.Code, 31U);
    const BACSTAC_PROPERTY_CONTENTS text = AnyValue(buffer->Get(), row[8].value.Any);
    EXPECT_EQ(text.DataType, TYPE_STRING);
    EXPECT_STREQ(static_cast<const char*>(text.Buffer), "x");
    for (const TrendLogRecord& value : row) {
        EXPECT_TRUE(Same(value.timeStamp, Minute(1)));
        EXPECT_FALSE(value.hasStatus);
    }
}

TEST_F(TrendRows, LeaveUnknownItemsOutAndMoveTheOthersUp) {
    Read(OBJ_TREND_LOG_MULTIPLE,
         {MultipleEntry(Minute(1), {Item(9), Item(1, RealValue(1)), Item(0xFFFFFFFF), Item(3, UnsignedValue(2))})});
    EXPECT_THAT(Types(0), ElementsAre(2U, 4U));
}

TEST_F(TrendRows, DropMultipleRecordsWithoutData) {
    Read(OBJ_TREND_LOG_MULTIPLE,
         {Entry(Minute(1), BACSTAC_LOG_MULTIPLE_STATUS), MultipleEntry(Minute(2), {}),
          Entry(Minute(3), BACSTAC_LOG_MULTIPLE_TIME_CHANGE), MultipleEntry(Minute(4), {Item(9)}), Entry(Minute(5), 77),
          MultipleEntry(Minute(6), {Item(6)})});
    ASSERT_EQ(rows.GetSize(), 1U);
    EXPECT_TRUE(Same(rows[0][0].timeStamp, Minute(6)));
}

TEST_F(TrendRows, DropWhatIsBeyondTheirCapacity) {
    rows = CTrendRows(2);
    Read(OBJ_TREND_LOG, Minutes(1, 5));
    ASSERT_EQ(rows.GetSize(), 2U);
    EXPECT_TRUE(Same(rows[1][0].timeStamp, Minute(2)));
    rows = CTrendRows(0);
    Read(OBJ_TREND_LOG, Minutes(1, 5));
    EXPECT_EQ(rows.GetSize(), 0U);
    rows = CTrendRows(1);
    Read(OBJ_TREND_LOG_MULTIPLE, {MultipleEntry(Minute(1), {Item(6), Item(6)}), MultipleEntry(Minute(2), {Item(6)})});
    ASSERT_EQ(rows.GetSize(), 1U);
    EXPECT_EQ(rows[0].size(), 2U);
}

TEST_F(TrendRows, TakeOnlyTheRecordsOfTheirObjectType) {
    Read(OBJ_TREND_LOG, Minutes(1, 2));
    rows.Clear();
    rows.AppendBlock(OBJ_TREND_LOG_MULTIPLE, buffer->Get());
    rows.AppendBlock(OBJ_EVENT_LOG, buffer->Get());
    EXPECT_EQ(rows.GetSize(), 0U);
    rows.AppendBlock(OBJ_TREND_LOG, {TYPE_NONE, nullptr, 0, 5});
    EXPECT_EQ(rows.GetSize(), 0U);
}

TEST_F(TrendRows, StayInsideTheBuffer) {
    Read(OBJ_TREND_LOG, Minutes(1, 2));
    rows.Clear();
    BACSTAC_PROPERTY_CONTENTS cut = buffer->Get();
    cut.BufferSize = 119;
    cut.ElementCount = 0xFFFFFFFF;
    rows.AppendBlock(OBJ_TREND_LOG, cut);
    EXPECT_EQ(rows.GetSize(), 1U);

    rows.Clear();
    Read(OBJ_TREND_LOG_MULTIPLE, {MultipleEntry(Minute(1), {Item(6), Item(6)})});
    rows.Clear();
    cut = buffer->Get();
    cut.BufferSize = 70; // the items lie behind
    rows.AppendBlock(OBJ_TREND_LOG_MULTIPLE, cut);
    EXPECT_EQ(rows.GetSize(), 0U);
}

} // namespace
