// The walk of a history transfer: its lines, its calls, and what becomes of the positions.
#include "api/bacnet/Enums.h"
#include "module/history/HistoryState.h"
#include "tests/unit/history/TransferSite.h"

#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HistoryTransfer : public TransferSite {};

TEST_F(HistoryTransfer, TellsItsWholeCourse) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 150));
    EXPECT_TRUE(Transfer());

    std::string lines;
    for (const std::string& line : TakeLog())
        lines += line + "\n";
    EXPECT_EQ(lines, ReadBytes(BDC_SOURCE_DIR "/tests/golden/history/full-transfer.log"));
    EXPECT_THAT(kernel.GetTrace(), ElementsAre("0x20 HistoryManagerTransfer: begin of thread",
                                               "0x20 HistoryManagerTransfer: end of thread"));
    EXPECT_EQ(StateText(), "[Trend position]\r\nT1=10/06/2026 02:30:00.000\r\n"
                           "[HistoryManager]\r\nLastTransferTime=21/11/2026 09:08:07.654\r\n");
    const SYSTEM_TIME last = manager->GetLastTransferTime();
    EXPECT_EQ(std::memcmp(&last, &clock.localTime, sizeof last), 0);
    EXPECT_THAT(kernel.GetBlocks(), ElementsAre(100U, 50U));
    EXPECT_THAT(StoredTags(), testing::Each(17U));
    EXPECT_EQ(StoredValues().front(), 1.0);
    EXPECT_EQ(StoredValues().back(), 150.0);
    EXPECT_EQ(manager->GetStatus().Get().errorCount, 0U);
}

TEST_F(HistoryTransfer, CallsKernelAndDeviceInItsOrder) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 2));
    driver.m_transferChunk = 1;
    Transfer();
    std::vector<std::string> calls;
    for (const std::string& line : all.Get())
        if (line[1] != ':')
            calls.push_back(line);
    EXPECT_THAT(calls, ElementsAre("329(0x20, HistoryManagerTransfer: begin of thread)", //
                                   "27(BACnetHistoryManager, 1, 0)",                     //
                                   "3(7)",                                               //
                                   "236(7, 0, 2, 0, 0)",                                 //
                                   "GetDevLst(65535)",                                   //
                                   "GetObjLst(1234, -1)",                                //
                                   "ReadProperty(1234, (20, 5), 132, -1)",               //
                                   "7(7, 0, 0, 0, 0, 0)",                                //
                                   "102(7, 17)",                                         //
                                   "143(7, LOCAL:TK)",                                   //
                                   "ReadProperty(1234, (8, 1234), 98, -1)",              //
                                   "ReadProperty(1234, (8, 1234), 139, -1)",             //
                                   "ReadRange(1234, (20, 5), 131, -1, 5, 01/01/1900 00:00:00.00, 1)",
                                   "239(42, 0, 1, -1)", //
                                   "ReadRange(1234, (20, 5), 131, -1, 5, 10/06/2026 00:01:00.00, 1)",
                                   "239(42, 0, 1, -1)", //
                                   "214(42)",           //
                                   "216(42)",           //
                                   "29(7)",             //
                                   "329(0x20, HistoryManagerTransfer: end of thread)"));
    EXPECT_GT(kernel.GetReceiveCount(), 0);
    EXPECT_EQ(lock.locked, 1);
}

TEST_F(HistoryTransfer, StopsTheReceiveThreadBetweenChannelAndConnection) {
    AddTrend(1234, 5, "T1");
    std::atomic<int> receivesAtDisconnect{-1};
    kernel.onDisconnect = [&] { receivesAtDisconnect = kernel.GetReceiveCount(); };
    Transfer();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(receivesAtDisconnect, kernel.GetReceiveCount());
}

TEST_F(HistoryTransfer, GoesOnWhereTheLastOneStopped) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 10));
    Transfer();
    TakeLog();
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(11, 3));
    Transfer();
    EXPECT_EQ(StoredValues().size(), 13U);
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:13:00.000");
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Starting at 10/06/2026 00:10:00.000"));
    Transfer();
    EXPECT_EQ(StoredValues().size(), 13U);
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Reading 0 records from trend T1"));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:13:00.000");
}

TEST_F(HistoryTransfer, PrintsTheRequestWithSignedNumbers) {
    Transfer(Request(1234, OBJ_TREND_LOG, 5));
    EXPECT_EQ(TakeLog().front(), "I: Transfer request for trend-log (1234, (20, 5))");
    Transfer(Request(1234, OBJ_TREND_LOG, 0xFFFFFFFF));
    EXPECT_EQ(TakeLog().front(), "I: Transfer request for trend-log (1234, (20, -1))");
}

// ---- early ends

TEST_F(HistoryTransfer, EndsEarlyWithoutAConnection) {
    AddTrend(1234, 5, "T1");
    kernel.connectResult = QL_NO_RESOURCES;
    Transfer();
    EXPECT_THAT(TakeLog(), ElementsAre("I: Transfer request for all trend-log", //
                                       "I: History: Start of transfer",         //
                                       "E: History: Connection failure"));
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("27(BACnetHistoryManager, 1, 0)"));
    EXPECT_FALSE(std::filesystem::exists(statePath));
    EXPECT_EQ(manager->GetLastTransferTime().Year, 0);
}

TEST_F(HistoryTransfer, EndsEarlyOnAPassiveStation) {
    AddTrend(1234, 5, "T1");
    kernel.stationStatus = 1;
    Transfer();
    EXPECT_THAT(TakeLog(), ElementsAre("I: Transfer request for all trend-log", //
                                       "I: History: Start of transfer",         //
                                       "E: History: Transfer aborted because station is passive"));
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("27(BACnetHistoryManager, 1, 0)", "3(7)", "29(7)"));
    EXPECT_EQ(kernel.GetReceiveCount(), 0);
    EXPECT_FALSE(std::filesystem::exists(statePath));
}

TEST_F(HistoryTransfer, EndsEarlyWithoutAChannel) {
    AddTrend(1234, 5, "T1");
    kernel.openResult = QL_NO_RESOURCES;
    Transfer();
    EXPECT_THAT(TakeLog(), ElementsAre("I: Transfer request for all trend-log", //
                                       "I: History: Start of transfer",         //
                                       "E: History: VFI open failure"));
    EXPECT_THAT(kernel.GetCalls(),
                ElementsAre("27(BACnetHistoryManager, 1, 0)", "3(7)", "236(7, 0, 2, 0, 0)", "29(7)"));
    EXPECT_FALSE(std::filesystem::exists(statePath));
    EXPECT_THAT(events.Get(), IsEmpty());
}

// ---- devices and objects

TEST_F(HistoryTransfer, PassesOverAnUnknownDevice) {
    AddDeviceSettings("99", {"X"});
    AddTrend(1234, 5, "T1");
    Transfer();
    const std::vector<std::string> lines = TakeLog();
    EXPECT_EQ(lines[2], "I: History: Transfer for device 99");
    EXPECT_EQ(lines[3], "E: History: Device not found: 99");
    EXPECT_EQ(lines[4], "I: History: Transfer for device 1234");
    EXPECT_EQ(lines.back(), "I: History: End of transfer");
    EXPECT_EQ(manager->GetStatus().Get().errorCount, 1U);
    EXPECT_EQ(manager->GetStatus().Get().lastError, "Device not found: 99");
}

TEST_F(HistoryTransfer, FindsADeviceByItsExactText) {
    bacnet.AddDevice(99);
    AddDeviceSettings("099", {"X"});
    Transfer();
    EXPECT_THAT(TakeLog(), testing::Contains("E: History: Device not found: 099"));
}

TEST_F(HistoryTransfer, HasNothingToDoOnADeviceWithoutObjects) {
    AddDeviceSettings("99");
    Transfer();
    EXPECT_THAT(TakeLog(), ElementsAre("I: Transfer request for all trend-log",  //
                                       "I: History: Start of transfer",          //
                                       "I: History: Transfer for device 99",     //
                                       "I: History: Nothing to do on device 99", //
                                       "I: History: End of transfer"));
}

TEST_F(HistoryTransfer, PassesOverAnEmptyEntryOfTheSettings) {
    settings.devices.push_back(nullptr);
    AddTrend(1234, 5, "T1");
    Transfer();
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Transfer for device 1234"));
    EXPECT_EQ(manager->GetStatus().Get().total, 1U);
}

TEST_F(HistoryTransfer, CountsObjectsThatItCannotTransfer) {
    AddTrend(1234, 5, "no references");
    SetReferences(1234, {OBJ_TREND_LOG, 5}, {});
    bacnet.AddObject(1234, {OBJ_ANALOG_INPUT, 1}, "AI");
    settings.devices[0]->objects = {"missing", "AI", "no references"};
    Transfer();
    EXPECT_THAT(TakeLog(),
                ElementsAre("I: Transfer request for all trend-log",        //
                            "I: History: Start of transfer",                //
                            "I: History: Transfer for device 1234",         //
                            "I: History: Transfer for object missing",      //
                            "E: History: Trend object not found (missing)", //
                            "I: History: Transfer for object AI",           //
                            "E: History: Trend object not found (AI)",      //
                            "I: History: Transfer for object no references",
                            "E: History: No log reference found for trend (no references)",
                            "I: History: End of transfer"));
    const TransferStatus::VALUES status = manager->GetStatus().Get();
    EXPECT_EQ(status.current, 3U);
    EXPECT_EQ(status.errorCount, 3U);
    EXPECT_EQ(status.device, "1234");
    EXPECT_EQ(status.object, "no references");
    EXPECT_EQ(StoredPosition("no references"), "");
}

TEST_F(HistoryTransfer, SharesOnePositionAmongTrendsOfOneName) {
    AddTrend(1, 5, "T");
    AddTrend(2, 5, "T");
    bacnet.AddLogEntries(1, {OBJ_TREND_LOG, 5}, Minutes(1, 10));
    bacnet.AddLogEntries(2, {OBJ_TREND_LOG, 5}, Minutes(6, 10));
    Transfer();
    EXPECT_EQ(kernel.GetBlocks(), (std::vector<std::uint32_t>{10, 5}));
    EXPECT_EQ(StoredPosition("T"), "10/06/2026 00:15:00.000");
    const std::string state = StateText();
    EXPECT_EQ(state.find("T="), state.rfind("T="));
}

TEST_F(HistoryTransfer, SurvivesNamesThatLookLikeFormats) {
    AddTrend(1234, 5, "50%s %n");
    kernel.AddTag(17, "%s%n");
    Transfer();
    const std::vector<std::string> lines = TakeLog();
    EXPECT_EQ(lines[3], "I: History: Transfer for object 50%s %n");
    EXPECT_THAT(lines, testing::Contains("I: History: Using tag name LOCAL:%s%n"));
}

// ---- requests

TEST_F(HistoryTransfer, TransfersTheInstanceThatWasAskedForWhateverItsType) {
    AddTrend(1234, 5, "log");
    AddTrend(1234, 6, "other");
    AddTrend(77, 5, "elsewhere");
    const BACSTAC_OBJECT_ID multiple{OBJ_TREND_LOG_MULTIPLE, 5};
    bacnet.AddObject(1234, multiple, "multiple");
    SetReferences(1234, multiple, {Reference({OBJ_ANALOG_INPUT, 1})});
    settings.devices[0]->objects = {"log", "other", "multiple"};
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 1));
    bacnet.AddLogEntry(1234, multiple, MultipleEntry(Minute(1), {Item(1, RealValue(7))}));
    Transfer(Request(1234, OBJ_TREND_LOG, 5));
    std::vector<std::string> lines;
    for (const std::string& line : TakeLog())
        if (line.find("tag") == std::string::npos)
            lines.push_back(line);
    EXPECT_THAT(lines, ElementsAre("I: Transfer request for trend-log (1234, (20, 5))", //
                                   "I: History: Start of transfer",                     //
                                   "I: History: Transfer for device 1234",              //
                                   "I: History: Transfer for object log",               //
                                   "I: History: Starting at 01/01/1900 00:00:00.000",   //
                                   "I: History: Reading 1 records from trend log",      //
                                   "I: History: No more items for log",                 //
                                   "I: History: Stopping at 10/06/2026 00:01:00.000",   //
                                   "I: History: Transfer for object other",             //
                                   "I: History: Skipping other",                        //
                                   "I: History: Transfer for object multiple",          //
                                   "I: History: Starting at 01/01/1900 00:00:00.000",   //
                                   "I: History: Reading 1 records from trend multiple", //
                                   "I: History: No more items for multiple",            //
                                   "I: History: Stopping at 10/06/2026 00:01:00.000",   //
                                   "I: History: End of transfer"));
    const TransferStatus::VALUES status = manager->GetStatus().Get();
    EXPECT_EQ(status.total, 4U) << "the whole configuration counts";
    EXPECT_EQ(status.current, 3U);
    EXPECT_EQ(status.GetPercent(), 75U);
    EXPECT_EQ(StoredPosition("other"), "");
}

TEST_F(HistoryTransfer, TransfersAllTrendsOfADeviceThatWasAskedFor) {
    AddTrend(1234, 5, "a");
    AddTrend(1234, 6, "b");
    Transfer(Request(1234, OBJ_TREND_LOG, 0xFFFFFFFF));
    const auto lines = TakeLog();
    EXPECT_THAT(lines, testing::Contains("I: History: Reading 0 records from trend a"));
    EXPECT_THAT(lines, testing::Contains("I: History: Reading 0 records from trend b"));
}

TEST_F(HistoryTransfer, HasNothingToSayOfADeviceThatIsNotConfigured) {
    AddTrend(1234, 5, "T1");
    Transfer(Request(99, OBJ_TREND_LOG, 5));
    EXPECT_THAT(TakeLog(), ElementsAre("I: Transfer request for trend-log (99, (20, 5))", //
                                       "I: History: Start of transfer",                   //
                                       "I: History: End of transfer"));
    EXPECT_THAT(kernel.GetRecords(), IsEmpty());
}

TEST_F(HistoryTransfer, TakesTheNumberOfADevicesTextForARequest) {
    AddDeviceSettings(" 01234x");
    Transfer(Request(1234, OBJ_TREND_LOG, 5));
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Nothing to do on device  01234x"));
}

TEST_F(HistoryTransfer, RefusesASecondTransferAndOwnsItsRequest) {
    AddTrend(1234, 5, "T1");
    std::mutex gate;
    gate.lock();
    bacnet.OnCall([&](const std::string& event) {
        if (event == "GetDevLst(65535)")
            const std::lock_guard wait(gate);
    });
    EXPECT_TRUE(manager->StartTransfer(false, nullptr));
    EXPECT_TRUE(manager->IsRunning());
    EXPECT_FALSE(manager->StartTransfer(false, Request(1234, OBJ_TREND_LOG, 5)));
    const TransferStatus::VALUES status = manager->GetStatus().Get();
    EXPECT_EQ(status.errorCount, 1U);
    EXPECT_EQ(status.lastError, "Can't start transfer because already running");
    gate.unlock();
    ASSERT_TRUE(WaitForTransfers(20000));
    const auto lines = TakeLog();
    EXPECT_THAT(lines, testing::Contains("I: Transfer request for trend-log (1234, (20, 5))"));
    EXPECT_THAT(lines, testing::Contains("E: History: Can't start transfer because already running"));
    EXPECT_EQ(lines.back(), "I: History: End of transfer");
}

TEST_F(HistoryTransfer, RunsAgainAndResetsItsStatus) {
    AddDeviceSettings("99", {"X"});
    Transfer();
    EXPECT_EQ(manager->GetStatus().Get().errorCount, 1U);
    settings.devices.clear();
    Transfer();
    const TransferStatus::VALUES status = manager->GetStatus().Get();
    EXPECT_EQ(status.errorCount, 0U);
    EXPECT_EQ(status.lastError, "");
    EXPECT_EQ(status.total, 0U);
}

TEST_F(HistoryTransfer, WorksOnACopyOfTheSettings) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    bacnet.OnCall([&](const std::string& event) {
        if (event == "GetDevLst(65535)")
            settings.devices.clear();
    });
    Transfer();
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Transfer for object T2"));
}

TEST_F(HistoryTransfer, RunsOutWithoutItsManager) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 3));
    std::mutex gate;
    gate.lock();
    bacnet.OnCall([&](const std::string& event) {
        if (event.rfind("ReadRange", 0) == 0)
            const std::lock_guard wait(gate);
    });
    EXPECT_TRUE(manager->StartTransfer(false, nullptr));
    EXPECT_FALSE(WaitForTransfers(1));
    manager.reset();
    gate.unlock();
    ASSERT_TRUE(WaitForTransfers(20000));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:03:00.000");
    EXPECT_EQ(TakeLog().back(), "I: History: End of transfer");
}

TEST_F(HistoryTransfer, ReadsTheLastTransferTimeWhenItIsMade) {
    WriteBytes(statePath, "[HistoryManager]\r\nLastTransferTime=02/03/2026 04:05:06.078\r\n");
    const CBACnetHistoryManager other(&settings, HistoryServices{bacnet, driver, lock, clock}, statePath);
    const SYSTEM_TIME expected{2026, 3, 0, 2, 4, 5, 6, 78};
    const SYSTEM_TIME last = other.GetLastTransferTime();
    EXPECT_EQ(std::memcmp(&last, &expected, sizeof last), 0);
}

} // namespace
