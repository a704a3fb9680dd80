// The limits of a history transfer session: by record count and by time, for all trends of a device together.
#include "api/bacnet/Enums.h"
#include "tests/unit/history/TransferSite.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class HistoryLimits : public TransferSite {
protected:
    void Limit(std::int32_t kind, std::int32_t value, std::size_t device = 0) {
        settings.devices[device]->limitEnabled = 1;
        settings.devices[device]->limitKind = kind;
        settings.devices[device]->limitValue = value;
    }
    // The lines of reads and ends, without those of tags and positions.
    std::vector<std::string> Course() {
        std::vector<std::string> lines;
        for (const std::string& line : log.Take())
            if (line.find("Reading") != std::string::npos || line.find("Transfer for") != std::string::npos ||
                line[0] == 'E')
                lines.push_back(line.substr(0, 3) + line.substr(std::string("I: History: ").size()));
        return lines;
    }
};

TEST_F(HistoryLimits, StopADeviceBehindTheBlockThatReachesTheRecordCount) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    AddTrend(99, 5, "T3");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 300));
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 6}, Minutes(1, 300));
    bacnet.AddLogEntries(99, {OBJ_TREND_LOG, 5}, Minutes(1, 90));
    driver.m_transferChunk = 60;
    Limit(HISTORY_LIMIT_BY_RECORDS, 100, 0);
    Limit(HISTORY_LIMIT_BY_RECORDS, 100, 1);
    Transfer();
    EXPECT_THAT(Course(), ElementsAre("I: Transfer for device 1234",                   //
                                      "I: Transfer for object T1",                     //
                                      "I: Reading 60 records from trend T1",           //
                                      "I: Reading 60 records from trend T1",           //
                                      "E: Record count limit reached for device 1234", //
                                      "I: Transfer for device 99",                     //
                                      "I: Transfer for object T3",                     //
                                      "I: Reading 60 records from trend T3",           //
                                      "I: Reading 30 records from trend T3"));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 02:00:00.000");
    EXPECT_EQ(StoredPosition("T2"), "");
    EXPECT_EQ(manager->GetStatus().Get().errorCount, 1U);
    EXPECT_EQ(manager->GetStatus().Get().lastError, "Record count limit reached for device 1234");
}

TEST_F(HistoryLimits, CountTheRowsOfAllTrendsOfADevice) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    AddTrend(1234, 7, "T3");
    for (const unsigned instance : {5U, 6U, 7U})
        bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, instance}, Minutes(1, 45));
    driver.m_transferChunk = 20;
    Limit(HISTORY_LIMIT_BY_RECORDS, 70);
    Transfer();
    // A trend's last block does not count: 40 of the first, 40 of the second.
    EXPECT_THAT(Course(), ElementsAre("I: Transfer for device 1234",         //
                                      "I: Transfer for object T1",           //
                                      "I: Reading 20 records from trend T1", //
                                      "I: Reading 20 records from trend T1", //
                                      "I: Reading 5 records from trend T1",  //
                                      "I: Transfer for object T2",           //
                                      "I: Reading 20 records from trend T2", //
                                      "I: Reading 20 records from trend T2", //
                                      "E: Record count limit reached for device 1234"));
}

TEST_F(HistoryLimits, DoNotCountTrendsThatFitIntoOneBlock) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 10));
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 6}, Minutes(1, 10));
    driver.m_transferChunk = 60;
    Limit(HISTORY_LIMIT_BY_RECORDS, 10);
    Transfer();
    EXPECT_EQ(kernel.GetRecords().size(), 20U);
    EXPECT_EQ(manager->GetStatus().Get().errorCount, 0U);
}

TEST_F(HistoryLimits, BoundABlockByASmallerRecordCount) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 100));
    Limit(HISTORY_LIMIT_BY_RECORDS, 30);
    Transfer();
    EXPECT_THAT(events.Get(), Contains("ReadRange(1234, (20, 5), 131, -1, 5, 01/01/1900 00:00:00.00, 30)"));
    EXPECT_THAT(kernel.GetBlocks(), ElementsAre(30U));
}

TEST_F(HistoryLimits, OfNoRecordsReadNothing) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 10));
    for (const std::int32_t value : {0, -5}) {
        Limit(HISTORY_LIMIT_BY_RECORDS, value);
        Transfer();
        EXPECT_THAT(Course(), ElementsAre("I: Transfer for device 1234",        //
                                          "I: Transfer for object T1",          //
                                          "I: Reading 0 records from trend T1", //
                                          "I: Transfer for object T2",          //
                                          "I: Reading 0 records from trend T2"));
        EXPECT_EQ(StoredPosition("T1"), "01/01/1900 00:00:00.000");
    }
    EXPECT_THAT(events.Get(), Contains("ReadRange(1234, (20, 5), 131, -1, 5, 01/01/1900 00:00:00.00, 0)"));
    EXPECT_THAT(kernel.GetBlocks(), IsEmpty());
}

TEST_F(HistoryLimits, TakeAChunkBelowOneForNone) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 10));
    driver.m_transferChunk = -1;
    Transfer();
    EXPECT_THAT(Course(), Contains("I: Reading 0 records from trend T1"));
}

TEST_F(HistoryLimits, TakeAHugeChunkWithoutItsMemory) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 5000));
    driver.m_transferChunk = 0x7FFFFFFF;
    Transfer();
    EXPECT_EQ(kernel.GetRecords().size(), 5000U);
}

TEST_F(HistoryLimits, OfNoTimeStopBehindTheFirstBlock) {
    AddTrend(1234, 5, "T1");
    AddTrend(1234, 6, "T2");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 100));
    driver.m_transferChunk = 10;
    Limit(HISTORY_LIMIT_BY_TIME, 0);
    Transfer();
    EXPECT_THAT(Course(), ElementsAre("I: Transfer for device 1234",         //
                                      "I: Transfer for object T1",           //
                                      "I: Reading 10 records from trend T1", //
                                      "E: Time limit reached for device 1234"));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:10:00.000");
}

TEST_F(HistoryLimits, CountWholeSecondsAcrossTheWrapOfTheTickCounter) {
    AddTrend(1234, 5, "T1");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 100));
    driver.m_transferChunk = 10;
    Limit(HISTORY_LIMIT_BY_TIME, 2);
    clock.tick = 0xFFFFFC00; // 1024 ms before the wrap
    bacnet.OnCall([&](const std::string& event) {
        if (event.rfind("ReadRange", 0) == 0)
            clock.tick += 999;
    });
    Transfer();
    EXPECT_THAT(Course(), ElementsAre("I: Transfer for device 1234",         //
                                      "I: Transfer for object T1",           //
                                      "I: Reading 10 records from trend T1", // 0.999 s
                                      "I: Reading 10 records from trend T1", // 1.998 s
                                      "I: Reading 10 records from trend T1", // 2.997 s
                                      "E: Time limit reached for device 1234"));
}

TEST_F(HistoryLimits, BeginAnewWithEachDevice) {
    AddTrend(1, 5, "T1");
    AddTrend(2, 5, "T2");
    bacnet.AddLogEntries(1, {OBJ_TREND_LOG, 5}, Minutes(1, 20));
    bacnet.AddLogEntries(2, {OBJ_TREND_LOG, 5}, Minutes(1, 20));
    driver.m_transferChunk = 10;
    Limit(HISTORY_LIMIT_BY_TIME, 5, 0);
    Limit(HISTORY_LIMIT_BY_TIME, 5, 1);
    bacnet.OnCall([&](const std::string& event) {
        if (event.rfind("ReadRange", 0) == 0)
            clock.tick += 3000;
    });
    Transfer();
    EXPECT_EQ(kernel.GetRecords().size(), 40U);
    EXPECT_THAT(Course(), Not(Contains("E: Time limit reached for device 1")));
}

TEST_F(HistoryLimits, ThatAreDisabledOrOfAnUnknownKindBoundNothing) {
    AddTrend(1, 5, "T1");
    AddTrend(2, 5, "T2");
    bacnet.AddLogEntries(1, {OBJ_TREND_LOG, 5}, Minutes(1, 20));
    bacnet.AddLogEntries(2, {OBJ_TREND_LOG, 5}, Minutes(1, 20));
    driver.m_transferChunk = 10;
    Limit(HISTORY_LIMIT_BY_RECORDS, 1, 0);
    settings.devices[0]->limitEnabled = 0;
    Limit(7, 1, 1);
    Transfer();
    EXPECT_EQ(kernel.GetRecords().size(), 40U);
}

} // namespace
