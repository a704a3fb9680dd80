#include "module/history/ConsoleHistory.h"

#include "api/bacnet/Enums.h"
#include "module/console/Globals.h"
#include "tests/unit/history/TransferSite.h"

namespace {

// The module's own objects around the site: its manager, its settings, its BACnet, and the process's current directory.
class ConsoleHistory : public TransferSite {
protected:
    ConsoleHistory() {
        std::filesystem::current_path(folder.GetPath());
        BACnet = &bacnet;
        BDCManager.Start(&driver, 0);
    }
    ~ConsoleHistory() override {
        EXPECT_TRUE(WaitForTransfers(20000));
        BDCManager.WaitEnd(0);
        allPropPages.history = {};
        BACnet = nullptr;
        std::filesystem::current_path(m_oldPath);
    }

private:
    const std::filesystem::path m_oldPath = std::filesystem::current_path();
};

TEST_F(ConsoleHistory, TransfersWhatTheModulesSettingsName) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 3));
    allPropPages.history = settings;
    const std::unique_ptr<IHistoryStarter> starter = NewHistoryStarter();
    EXPECT_TRUE(starter->StartTransfer(false, Request(1234, OBJ_TREND_LOG, 0xFFFFFFFF)));
    ASSERT_TRUE(WaitForTransfers(20000));
    EXPECT_EQ(kernel.GetRecords().size(), 3U);
    EXPECT_TRUE(std::filesystem::exists(folder.GetFile("BAC_Hist.ini")));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:03:00.000");
    EXPECT_EQ(TakeLog().front(), "I: Transfer request for trend-log (1234, (20, -1))");
}

TEST_F(ConsoleHistory, WaitsForTheModuleLockToReadTheSettings) {
    const std::unique_ptr<IHistoryStarter> starter = NewHistoryStarter();
    BDCManager.Lock();
    EXPECT_TRUE(starter->StartTransfer(false, nullptr));
    EXPECT_FALSE(WaitForTransfers(50));
    AddTrend(1234, 5, "T1");
    allPropPages.history = settings;
    BDCManager.Unlock();
    ASSERT_TRUE(WaitForTransfers(20000));
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Transfer for object T1"));
}

TEST_F(ConsoleHistory, RefusesASecondTransfer) {
    const std::unique_ptr<IHistoryStarter> starter = NewHistoryStarter();
    BDCManager.Lock();
    EXPECT_TRUE(starter->StartTransfer(false, nullptr));
    EXPECT_FALSE(starter->StartTransfer(false, Request(1, OBJ_TREND_LOG, 1)));
    BDCManager.Unlock();
}

} // namespace
