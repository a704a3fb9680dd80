// How a history transfer reads a log buffer block by block, and what ends it.
#include "api/bacnet/Enums.h"
#include "tests/unit/history/TransferSite.h"

#include <algorithm>
#include <ctime>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HistoryBlocks : public TransferSite {};

TEST_F(HistoryBlocks, ReadsByTimeInTheFormOfTheDevicesRevision) {
    for (const unsigned device : {1U, 2U, 3U, 4U, 5U})
        AddTrend(device, 5, "T" + std::to_string(device));
    bacnet.SetProtocol(1, 1, 4);
    bacnet.SetProtocol(2, 1, 3);
    bacnet.SetProtocol(3, 2, 0);
    bacnet.SetProtocol(4, 1, 14);
    settings.devices[3]->force2001 = 1;
    bacnet.SetFault("ReadProperty(5, (8, 5), 98", BACSTAC_STATUS_TIMEOUT);
    driver.m_transferChunk = 7;
    Transfer();
    std::vector<std::string> ranges;
    for (const std::string& event : events.Get())
        if (event.rfind("ReadRange", 0) == 0)
            ranges.push_back(event);
    EXPECT_THAT(ranges, ElementsAre("ReadRange(1, (20, 5), 131, -1, 5, 01/01/1900 00:00:00.00, 7)",
                                    "ReadRange(2, (20, 5), 131, -1, 2, 01/01/1900 00:00:00.00, 7)",
                                    "ReadRange(3, (20, 5), 131, -1, 5, 01/01/1900 00:00:00.00, 7)",
                                    "ReadRange(4, (20, 5), 131, -1, 2, 01/01/1900 00:00:00.00, 7)",
                                    "ReadRange(5, (20, 5), 131, -1, 2, 01/01/1900 00:00:00.00, 7)"));
}

TEST_F(HistoryBlocks, AsksADeviceAgainThatDidNotTellItsProtocol) {
    AddTrend(5, 5, "T");
    bacnet.AddLogEntries(5, {OBJ_TREND_LOG, 5}, Minutes(1, 2));
    bacnet.SetFault("ReadProperty(5, (8, 5), 98", BACSTAC_STATUS_TIMEOUT, {}, 0, 1);
    driver.m_transferChunk = 1;
    Transfer();
    std::vector<std::string> calls = events.Get();
    calls.erase(calls.begin(), calls.begin() + 3);
    EXPECT_THAT(calls, ElementsAre("ReadProperty(5, (8, 5), 98, -1)",
                                   "ReadRange(5, (20, 5), 131, -1, 2, 01/01/1900 00:00:00.00, 1)",
                                   "ReadProperty(5, (8, 5), 98, -1)", "ReadProperty(5, (8, 5), 139, -1)",
                                   "ReadRange(5, (20, 5), 131, -1, 5, 10/06/2026 00:01:00.00, 1)"));
}

TEST_F(HistoryBlocks, WordsAReadErrorAndSavesThePosition) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 3));
    driver.m_transferChunk = 1;
    const auto readLine = [&](BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
        bacnet.ClearFaults();
        bacnet.SetFault("ReadRange", status, error);
        TakeLog();
        Transfer();
        const auto lines = TakeLog();
        EXPECT_EQ(lines[8], "I: History: Stopping at 01/01/1900 00:00:00.000");
        return lines[7];
    };
    const auto text = [](const std::string& name, unsigned number) {
        return name + " (" + std::to_string(number) + ")";
    };
    const std::string begin = "E: History: Error reading trend T1: ";
    EXPECT_EQ(readLine(64, {2, 1, 31}), begin + text(CBacGeneral::GetStatusString(64), 64) + " - " +
                                            text(CBacGeneral::GetErrorCodeString(31U), 31));
    EXPECT_EQ(readLine(65, {1, 4, 0}), begin + text(CBacGeneral::GetStatusString(65), 65) + " - " +
                                           text(CBacGeneral::GetRejectReasonString(4), 4));
    EXPECT_EQ(readLine(66, {1, 5, 0}), begin + text(CBacGeneral::GetStatusString(66), 66) + " - " +
                                           text(CBacGeneral::GetAbortReasonString(5), 5));
    EXPECT_EQ(readLine(5, {}), begin + text(CBacGeneral::GetStatusString(5), 5));
    EXPECT_EQ(StoredPosition("T1"), "01/01/1900 00:00:00.000");
}

TEST_F(HistoryBlocks, KeepsWhatItStoredBeforeADeviceWentSilent) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 30));
    driver.m_transferChunk = 10;
    bacnet.SetFault("ReadRange(1234, (20, 5)", BACSTAC_STATUS_TIMEOUT, {}, 2);
    Transfer();
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:20:00.000");
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Reading 0 records from trend T2"));
    bacnet.ClearFaults();
    Transfer();
    EXPECT_EQ(StoredValues().size(), 30U);
}

TEST_F(HistoryBlocks, StopsAtABlockThatDoesNotGetAhead) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 1));
    bacnet.SetReferenceIncluded(true);
    WriteBytes(statePath, "[Trend position]\r\nT1=10/06/2026 00:01:00.000\r\n");
    Transfer();
    EXPECT_THAT(StoredValues(), ElementsAre(1.0));
    const auto lines = TakeLog();
    EXPECT_EQ(lines[7], "I: History: Reading 1 records from trend T1");
    EXPECT_EQ(lines[8], "I: History: Next buffer position is before current position T1");
    EXPECT_EQ(lines[9], "I: History: Stopping at 10/06/2026 00:01:00.000");
    Transfer();
    EXPECT_THAT(StoredValues(), ElementsAre(1.0, 1.0)) << "the next transfer stores them again";
}

TEST_F(HistoryBlocks, StopsForGoodAtABlockOfLogStatusRecords) {
    AddTrend(1234, 5, "T1");
    for (unsigned i = 1; i <= 3; ++i)
        bacnet.AddLogEntry(1234, {OBJ_TREND_LOG, 5}, Entry(Minute(i), BACSTAC_LOG_STATUS));
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(4, 3));
    driver.m_transferChunk = 3;
    for (int round = 0; round < 2; ++round) {
        Transfer();
        const auto lines = TakeLog();
        EXPECT_EQ(lines[7], "I: History: Reading 0 records from trend T1");
        EXPECT_EQ(lines[8], "I: History: Stopping at 01/01/1900 00:00:00.000");
    }
    EXPECT_THAT(kernel.GetBlocks(), IsEmpty());
}

TEST_F(HistoryBlocks, ReadsABlockAgainThatCouldNotBeStored) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 30));
    driver.m_transferChunk = 10;
    int writes = 0;
    kernel.onWrite = [&](std::uint32_t, const VfiRecord*) { return ++writes == 2 ? QL_STORE_FAILURE : QL_OK; };
    Transfer();
    auto lines = TakeLog();
    EXPECT_EQ(lines[8], "I: History: Reading 10 records from trend T1");
    EXPECT_EQ(lines[9], "E: History: Error writing to VFI");
    EXPECT_EQ(lines[10], "I: History: Stopping at 10/06/2026 00:10:00.000");
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:10:00.000");
    Transfer();
    const auto values = StoredValues();
    ASSERT_EQ(values.size(), 30U);
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(values[i], static_cast<double>(i + 1));
}

TEST_F(HistoryBlocks, DropsRowsBeyondWhatItAskedForAndStopsAtTheLastKept) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 10));
    bacnet.SetSurplus(3);
    driver.m_transferChunk = 4;
    Transfer();
    const auto lines = TakeLog();
    EXPECT_EQ(lines[7], "I: History: Reading 4 records from trend T1");
    EXPECT_EQ(lines[8], "I: History: Reading 4 records from trend T1");
    // The last item lay in the surplus of the second block: the device said so, and what was dropped waits for the next
    // transfer.
    EXPECT_THAT(kernel.GetBlocks(), ElementsAre(4U, 4U));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:08:00.000");
    Transfer();
    EXPECT_THAT(StoredValues(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(HistoryBlocks, WritesOneBlockPerReadWithItsStatusFlags) {
    AddTrend(1234, 5, "T1");
    for (int bit = 0; bit < 4; ++bit)
        AddTag(20 + static_cast<unsigned>(bit), 1234, {OBJ_ANALOG_INPUT, 1}, PROP_STATUS_FLAGS, bit, "F");
    for (unsigned i = 1; i <= 5; ++i)
        bacnet.AddLogEntry(1234, {OBJ_TREND_LOG, 5}, WithStatus(RealEntry(Minute(i), 1), {false, true, false, true}));
    driver.m_transferChunk = 3;
    Transfer();
    EXPECT_THAT(kernel.GetBlocks(), ElementsAre(15U, 10U));
    const auto tags = StoredTags();
    const auto values = StoredValues();
    EXPECT_EQ(std::vector<std::uint32_t>(tags.begin(), tags.begin() + 5),
              (std::vector<std::uint32_t>{17, 20, 21, 22, 23}));
    EXPECT_EQ(std::vector<double>(values.begin(), values.begin() + 5), (std::vector<double>{1, 0, 1, 0, 1}));
}

TEST_F(HistoryBlocks, PairsTheItemsOfAMultipleLogWithTheirTags) {
    AddTrend(1234, 5, "unused");
    const BACSTAC_OBJECT_ID multiple{OBJ_TREND_LOG_MULTIPLE, 1};
    bacnet.AddObject(1234, multiple, "M");
    settings.devices[0]->objects = {"M"};
    SetReferences(1234, multiple,
                  {Reference({OBJ_ANALOG_INPUT, 1}), Reference({OBJ_ANALOG_INPUT, 2}),
                   Reference({OBJ_ANALOG_INPUT, 3}, PROP_PRESENT_VALUE, 1234)});
    AddTag(31, 1234, {OBJ_ANALOG_INPUT, 3}, PROP_PRESENT_VALUE, TAG_WHOLE_VALUE, "TK3");
    kernel.tagIds["LOCAL:TK3"] = 31;
    bacnet.AddLogEntry(1234, multiple,
                       MultipleEntry(Minute(1), {Item(1, RealValue(1.5)), Item(1, RealValue(2.5)),
                                                 Item(3, UnsignedValue(3)), Item(3, UnsignedValue(4))}));
    Transfer();
    EXPECT_THAT(StoredTags(), ElementsAre(17U, 31U));
    EXPECT_THAT(StoredValues(), ElementsAre(1.5, 3.0));
    EXPECT_EQ(StoredPosition("M"), "10/06/2026 00:01:00.000");
}

TEST_F(HistoryBlocks, StoresTheTimeOfEachRecord) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntry(1234, {OBJ_TREND_LOG, 5}, RealEntry(Time(2026, 1, 2, 3, 4, 5, 67), 1));
    Transfer();
    std::tm fields{};
    fields.tm_year = 126;
    fields.tm_mday = 2;
    fields.tm_hour = 3;
    fields.tm_min = 4;
    fields.tm_sec = 5;
    fields.tm_isdst = -1;
    const auto records = kernel.GetRecords();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].time, static_cast<std::uint32_t>(std::mktime(&fields)));
    EXPECT_EQ(records[0].milliseconds, 670);
}

// ---- abort, exit, faults around

TEST_F(HistoryBlocks, AbortsBehindTheBlockInWork) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    AddTrend(99, 5, "T3");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 50));
    driver.m_transferChunk = 10;
    bacnet.OnCall([&](const std::string& event) {
        if (event.rfind("ReadRange", 0) == 0)
            manager->Abort();
    });
    all.Take();
    Transfer();
    std::vector<std::string> lines = TakeLog();
    lines.erase(lines.begin(), lines.begin() + 7);
    EXPECT_THAT(lines, ElementsAre("I: History: Reading 10 records from trend T1",    //
                                   "I: History: Stopping at 10/06/2026 00:10:00.000", //
                                   "E: History: Transfer aborted",                    //
                                   "I: History: End of transfer"));
    EXPECT_THAT(kernel.GetBlocks(), ElementsAre(10U));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:10:00.000");
    EXPECT_EQ(manager->GetLastTransferTime().Year, 2026);
    EXPECT_EQ(manager->GetStatus().Get().errorCount, 1U);

    const auto order = all.Get();
    const auto at = [&](const std::string& line) { return std::find(order.begin(), order.end(), line); };
    EXPECT_LT(at("214(42)"), at("E: History: Transfer aborted"));
    EXPECT_LT(at("I: History: End of transfer"), at("216(42)"));
}

TEST_F(HistoryBlocks, BeginsANewWithoutTheAbortOfTheLastOne) {
    AddTrend(1234, 5, "T1");
    manager->Abort();
    Transfer();
    EXPECT_EQ(TakeLog().back(), "I: History: End of transfer");
    EXPECT_EQ(manager->GetStatus().Get().errorCount, 0U);
}

TEST_F(HistoryBlocks, EndsBehindTheTrendInWorkWhenTheKernelShutsDown) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    AddTrend(99, 5, "T3");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 30));
    driver.m_transferChunk = 10;
    bool posted = false;
    bacnet.OnCall([&](const std::string& event) {
        if (event.rfind("ReadRange", 0) != 0 || posted)
            return;
        posted = true;
        kernel.Post(QL_MSG_EXIT);
        // The receive thread has taken the message once it asks no more.
        for (int count = -1; count != kernel.GetReceiveCount();) {
            count = kernel.GetReceiveCount();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    });
    Transfer();
    std::vector<std::string> lines = TakeLog();
    lines.erase(lines.begin(), lines.begin() + 7);
    EXPECT_THAT(lines, ElementsAre("I: History: Reading 10 records from trend T1",    //
                                   "I: History: Reading 10 records from trend T1",    //
                                   "I: History: Reading 10 records from trend T1",    //
                                   "I: History: No more items for T1",                //
                                   "I: History: Stopping at 10/06/2026 00:30:00.000", //
                                   "I: History: End of transfer"));
    EXPECT_EQ(manager->GetLastTransferTime().Year, 2026);
}

TEST_F(HistoryBlocks, EndsAsAlwaysWhenItsStateCannotBeSaved) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 3));
    std::filesystem::create_directory(statePath);
    Transfer();
    EXPECT_EQ(TakeLog().back(), "I: History: End of transfer");
    EXPECT_EQ(kernel.GetRecords().size(), 3U);
}

TEST_F(HistoryBlocks, ReadsTheWholeLogAgainForAUselessPosition) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 3));
    WriteBytes(statePath, "[Trend position]\r\nT1=who knows\r\n");
    Transfer();
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Starting at "));
    EXPECT_EQ(kernel.GetRecords().size(), 3U);
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:03:00.000");
}

TEST_F(HistoryBlocks, GoesOnWithoutAnObserverThatThrows) {
    driver.observed = true;
    driver.observerThrows = true;
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 3));
    Transfer();
    const auto lines = TakeLog();
    EXPECT_EQ(std::ranges::count(lines, "E: History: the driver's observer failed: no observer"), 1);
    EXPECT_EQ(std::ranges::count(lines, "I: History: End of transfer"), 1);
    EXPECT_EQ(driver.statuses.size(), 1U) << "it is told no more";
}

TEST_F(HistoryBlocks, TellsTheDriversObserver) {
    driver.observed = true;
    AddTrend(1234, 5, "T1");
    settings.devices[0]->objects.push_back("missing");
    Transfer();
    std::vector<std::string> told;
    for (const HistoryStatus& status : driver.statuses)
        told.push_back(std::to_string(status.running) + " " + std::to_string(status.current) + "/" +
                       std::to_string(status.total) + " " + status.device + " " + status.object + " " +
                       std::to_string(status.errorCount) + " " + status.lastError + " " + status.lastTransferTime);
    EXPECT_THAT(told, ElementsAre("1 0/0   0  ", //
                                  "1 0/2   0  ", //
                                  "1 1/2 1234 T1 0  ", "1 2/2 1234 missing 0  ",
                                  "1 2/2 1234 missing 1 Trend object not found (missing) ",
                                  "0 2/2 1234 missing 1 Trend object not found (missing) 21/11/2026 09:08:07.654"));
}

} // namespace
