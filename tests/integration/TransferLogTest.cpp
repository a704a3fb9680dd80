// What a full transfer logs, line by line, and that it stores what the devices hold, over the whole stack and UDP.
#include "tests/integration/TransferFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>

namespace integration {
namespace {

using ::testing::IsEmpty;

class TransferLogTest : public TransferFixture {
protected:
    // All records are stored, none twice, by a transfer without errors; a second one stores none, and a third one
    // those that came since.
    void ExpectExactTransfers() {
        const auto station = NewStation();
        RecordLines expected = Expected();
        EXPECT_THAT(ErrorsOf(station->Transfer()), IsEmpty());
        EXPECT_EQ(Difference(expected, station->Stored()), "");
        EXPECT_THAT(ErrorsOf(station->Transfer()), IsEmpty());
        EXPECT_EQ(Difference(expected, station->Stored()), "");
        for (std::size_t i = 0; i < simulator->DeviceCount(); ++i)
            Device(i).GenerateAll(7);
        EXPECT_THAT(ErrorsOf(station->Transfer()), IsEmpty());
        std::ranges::copy(Expected(7), std::back_inserter(expected));
        std::ranges::sort(expected);
        EXPECT_EQ(Difference(expected, station->Stored()), "");
        EXPECT_EQ(station->Stored(false).size(), expected.size()) << "some records are equal";
    }
};

TEST_F(TransferLogTest, LogsAFullTransferLineByLine) {
    StartSmallSite();
    const auto station = NewStation();
    const CEventList::Lines expected{
        "I: Transfer request for all trend-log",
        "T: HistoryManagerTransfer: begin of thread",
        "I: History: Start of transfer",
        "I: History: Transfer for device 1234",
        "I: History: Transfer for object T1",
        "I: History: Using tag address (device, 1234, analog-input, 100, present-value)",
        "I: History: Using tag name LOCAL:TK",
        "I: History: Starting at 01/01/1900 00:00:00.000",
        "I: History: Reading 100 records from trend T1",
        "I: History: Reading 50 records from trend T1",
        "I: History: No more items for T1",
        "I: History: Stopping at 01/01/2026 02:29:00.010",
        "I: History: End of transfer",
        "T: HistoryManagerTransfer: end of thread",
    };
    EXPECT_EQ(station->Transfer(), expected);
    EXPECT_EQ(Difference(Expected(), station->Stored()), "");
    EXPECT_EQ(station->Position("T1"), "01/01/2026 02:29:00.010");
}

TEST_F(TransferLogTest, LogsASecondTransferThatFindsNothingNew) {
    StartSmallSite();
    const auto station = NewStation();
    station->Transfer();
    const CEventList::Lines expected{
        "I: Transfer request for all trend-log",
        "T: HistoryManagerTransfer: begin of thread",
        "I: History: Start of transfer",
        "I: History: Transfer for device 1234",
        "I: History: Transfer for object T1",
        "I: History: Using tag address (device, 1234, analog-input, 100, present-value)",
        "I: History: Using tag name LOCAL:TK",
        "I: History: Starting at 01/01/2026 02:29:00.010",
        "I: History: Reading 0 records from trend T1",
        "I: History: Stopping at 01/01/2026 02:29:00.010",
        "I: History: End of transfer",
        "T: HistoryManagerTransfer: end of thread",
    };
    EXPECT_EQ(station->Transfer(), expected);
    EXPECT_EQ(Difference(Expected(), station->Stored()), "");
}

TEST_F(TransferLogTest, LogsATransferOfALogMultiple) {
    counts.Trends = 0;
    counts.Multiples = 1;
    StartSite(StatusTags::none, [](sim::SimulatorConfig& made) { made.Devices[0].Objects.back().Name = "M1"; });
    const auto station = NewStation();
    const CEventList::Lines expected{
        "I: Transfer request for trend-log (1234, (27, 1))",
        "T: HistoryManagerTransfer: begin of thread",
        "I: History: Start of transfer",
        "I: History: Transfer for device 1234",
        "I: History: Transfer for object M1",
        "I: History: Using tag address (device, 1234, analog-input, 100100, present-value)",
        "I: History: Using tag name LOCAL:1234 100100",
        "I: History: Using tag address (device, 1234, analog-input, 100101, present-value)",
        "I: History: Using tag name LOCAL:1234 100101",
        "I: History: Using tag address (device, 1234, analog-input, 100102, present-value)",
        "I: History: Using tag name LOCAL:1234 100102",
        "I: History: Starting at 01/01/1900 00:00:00.000",
        "I: History: Reading 100 records from trend M1",
        "I: History: Reading 50 records from trend M1",
        "I: History: No more items for M1",
        "I: History: Stopping at 01/01/2026 02:29:00.010",
        "I: History: End of transfer",
        "T: HistoryManagerTransfer: end of thread",
    };
    EXPECT_EQ(station->Transfer(new TransferRequest{{OBJ_TREND_LOG_MULTIPLE, 1}, 1, {OBJ_DEVICE, 1234}}), expected);
    EXPECT_EQ(Difference(Expected(), station->Stored()), "");
}

TEST_F(TransferLogTest, StoresEveryKindOfDatumWithItsStatusFlags) {
    counts.Trends = 3;
    counts.Multiples = 2;
    StartSite(StatusTags::all);
    ExpectExactTransfers();
}

TEST_F(TransferLogTest, StoresTheLogsOfDevicesOfTheFormerStandard) {
    counts.Devices = 2;
    counts.ProtocolRevision = 1;
    counts.Multiples = 1;
    StartSite(StatusTags::all);
    ExpectExactTransfers();
}

TEST_F(TransferLogTest, StoresTheLogsOfDevicesBehindARouter) {
    counts.Networks = {7, 2001};
    counts.Multiples = 1;
    StartSite();
    ASSERT_EQ(simulator->DeviceCount(), 5U);
    ExpectExactTransfers();
}

TEST_F(TransferLogTest, StoresWhatComesInManySmallSegments) {
    counts.MaxApdu = 128;
    counts.Trends = 2;
    counts.Multiples = 1;
    StartSite(StatusTags::all);
    ExpectExactTransfers();
    EXPECT_GT(simulator->GetStats()[sim::Counter::segments], 60U);
}

TEST_F(TransferLogTest, StoresInBlocksAsSmallAsADeviceWithoutSegmentationGivesThem) {
    counts.MaxApdu = 128;
    StartSite(StatusTags::none, [](sim::SimulatorConfig& made) {
        for (sim::DeviceConfig& device : made.Devices)
            device.Segmentation = bacnet::Segmentation::none;
    });
    ExpectExactTransfers();
    EXPECT_EQ(simulator->GetStats()[sim::Counter::segments], 0U);
}

// A ring that has overwritten its first records, in the middle of the sequence numbers.
TEST_F(TransferLogTest, StoresWhatIsLeftOfAnOverwrittenRing) {
    counts.Records = 700;
    counts.Capacity = 250;
    StartSite();
    ASSERT_EQ(Device().Records(FIRST_TREND).size(), 250U);
    ExpectExactTransfers();
}

TEST_F(TransferLogTest, LeavesLogStatusRecordsOut) {
    counts.StatusEvery = 10;
    counts.Multiples = 1;
    StartSite();
    ExpectExactTransfers();
}

} // namespace
} // namespace integration
