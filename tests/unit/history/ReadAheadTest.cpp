// A long log's next block is read while the one in hand is stored, and nobody can tell by anything but the time.
#include "api/bacnet/Enums.h"
#include "tests/unit/history/TransferSite.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class HistoryReadAhead : public TransferSite {
protected:
    HistoryReadAhead() {
        driver.m_transferChunk = 10;
        bacnet.OnCall([this](const std::string& event) {
            if (event.rfind("ReadRange", 0) != 0)
                return;
            int read = 0;
            {
                const std::lock_guard guard(m_mutex);
                read = ++m_reads;
            }
            m_changed.notify_all();
            if (onRead)
                onRead(read);
        });
        kernel.onWrite = [this](std::uint32_t, const VfiRecord*) { return onWrite ? onWrite(++m_writes) : QL_OK; };
    }

    void AddLog(unsigned records) {
        AddTrend(1234, 5, "T1");
        bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, records));
    }
    void Limit(std::int32_t kind, std::int32_t value) {
        settings.devices[0]->limitEnabled = 1;
        settings.devices[0]->limitKind = kind;
        settings.devices[0]->limitValue = value;
    }
    int Reads() {
        const std::lock_guard guard(m_mutex);
        return m_reads;
    }
    // True when so many reads have begun, false when they do not within the time that any machine needs.
    bool WaitForReads(int count) {
        std::unique_lock guard(m_mutex);
        return m_changed.wait_for(guard, std::chrono::seconds(20), [&] { return m_reads >= count; });
    }
    // The lines behind "Starting at".
    std::vector<std::string> Course() {
        std::vector<std::string> lines = TakeLog();
        lines.erase(lines.begin(), lines.begin() + 7);
        return lines;
    }
    static std::vector<double> Numbers(unsigned count) {
        std::vector<double> numbers;
        for (unsigned i = 1; i <= count; ++i)
            numbers.push_back(i);
        return numbers;
    }

    std::function<void(int read)> onRead;       // with the number of the read, from 1
    std::function<QLResult(int write)> onWrite; // with the number of the write, from 1

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_reads = 0;  // m_mutex
    int m_writes = 0; // of the transfer's thread
};

TEST_F(HistoryReadAhead, FetchesTheNextBlockWhileOneIsStored) {
    AddLog(50);
    onWrite = [this](int write) {
        if (write >= 2 && write < 5) {
            EXPECT_TRUE(WaitForReads(write + 1)) << "write " << write;
        }
        return QL_OK;
    };
    Transfer();
    EXPECT_EQ(StoredValues(), Numbers(50));
    EXPECT_EQ(Reads(), 5);
    EXPECT_THAT(Course(), ElementsAre("I: History: Reading 10 records from trend T1",    //
                                      "I: History: Reading 10 records from trend T1",    //
                                      "I: History: Reading 10 records from trend T1",    //
                                      "I: History: Reading 10 records from trend T1",    //
                                      "I: History: Reading 10 records from trend T1",    //
                                      "I: History: No more items for T1",                //
                                      "I: History: Stopping at 10/06/2026 00:50:00.000", //
                                      "I: History: End of transfer"));
}

TEST_F(HistoryReadAhead, LeavesOneAnswerUnusedWhenABlockCannotBeStored) {
    AddLog(60);
    onWrite = [this](int write) {
        if (write != 3)
            return QL_OK;
        EXPECT_TRUE(WaitForReads(4));
        return QL_STORE_FAILURE;
    };
    Transfer();
    EXPECT_THAT(Course(), ElementsAre("I: History: Reading 10 records from trend T1",    //
                                      "I: History: Reading 10 records from trend T1",    //
                                      "I: History: Reading 10 records from trend T1",    //
                                      "E: History: Error writing to VFI",                //
                                      "I: History: Stopping at 10/06/2026 00:20:00.000", //
                                      "I: History: End of transfer"));
    EXPECT_EQ(Reads(), 4);
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:20:00.000");
    onWrite = {};
    Transfer();
    EXPECT_EQ(StoredValues(), Numbers(60));
}

TEST_F(HistoryReadAhead, DropsTheBlockThatAnAbortFindsUnderWay) {
    AddLog(60);
    onWrite = [this](int write) {
        if (write == 3) {
            EXPECT_TRUE(WaitForReads(4));
            manager->Abort();
        }
        return QL_OK;
    };
    Transfer();
    EXPECT_THAT(Course(), ElementsAre("I: History: Reading 10 records from trend T1",    //
                                      "I: History: Reading 10 records from trend T1",    //
                                      "I: History: Reading 10 records from trend T1",    //
                                      "I: History: Stopping at 10/06/2026 00:30:00.000", //
                                      "E: History: Transfer aborted",                    //
                                      "I: History: End of transfer"));
    EXPECT_EQ(Reads(), 4);
    onWrite = {};
    Transfer();
    EXPECT_EQ(StoredValues(), Numbers(60));
}

TEST_F(HistoryReadAhead, TellsAReadErrorBehindTheBlockThatWasStoredMeanwhile) {
    AddLog(60);
    bacnet.SetFault("ReadRange", BACSTAC_STATUS_TIMEOUT, {}, 3);
    onWrite = [this](int write) {
        if (write == 3) {
            EXPECT_TRUE(WaitForReads(4));
        }
        return QL_OK;
    };
    Transfer();
    const std::vector<std::string> lines = Course();
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[2], "I: History: Reading 10 records from trend T1");
    EXPECT_EQ(lines[3].rfind("E: History: Error reading trend T1: ", 0), 0U) << lines[3];
    EXPECT_EQ(lines[4], "I: History: Stopping at 10/06/2026 00:30:00.000");
    EXPECT_EQ(StoredValues(), Numbers(30));
}

TEST_F(HistoryReadAhead, NeverReadsBeyondALimitByRecords) {
    AddLog(60);
    Limit(HISTORY_LIMIT_BY_RECORDS, 40);
    Transfer();
    EXPECT_EQ(Reads(), 4);
    EXPECT_EQ(StoredValues(), Numbers(40));
    EXPECT_THAT(TakeLog(), Contains("E: History: Record count limit reached for device 1234"));
}

TEST_F(HistoryReadAhead, StaysAwayWhereTimeDecidesAboutTheNextBlock) {
    AddLog(50);
    Limit(HISTORY_LIMIT_BY_TIME, 1000);
    onWrite = [this](int write) {
        EXPECT_EQ(Reads(), write);
        return QL_OK;
    };
    Transfer();
    EXPECT_EQ(Reads(), 5);
    EXPECT_EQ(StoredValues(), Numbers(50));
}

TEST_F(HistoryReadAhead, StaysAwayFromADeviceWhoseProtocolIsAskedForEachTime) {
    AddLog(50);
    bacnet.SetProtocol(1234, 1, 3);
    onWrite = [this](int write) {
        EXPECT_EQ(Reads(), write);
        return QL_OK;
    };
    Transfer();
    EXPECT_EQ(Reads(), 5);
    EXPECT_EQ(StoredValues(), Numbers(50));
}

TEST_F(HistoryReadAhead, StaysAwayFromALogThatEndsWithItsSecondBlock) {
    AddLog(20);
    onWrite = [this](int write) {
        EXPECT_EQ(Reads(), write);
        return QL_OK;
    };
    Transfer();
    EXPECT_EQ(Reads(), 2);
    EXPECT_EQ(StoredValues(), Numbers(20));
}

TEST_F(HistoryReadAhead, StaysAwayBehindABlockThatDoesNotGetAhead) {
    AddLog(20);
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, std::vector<FakeLogEntry>(10, RealEntry(Minute(20), 1)));
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(21, 10));
    bacnet.SetReferenceIncluded(true);
    driver.m_transferChunk = 7;
    Transfer();
    // 1 to 7, 7 to 13, 13 to 19, 19 and 20, and only 20.
    EXPECT_EQ(Reads(), 5);
    EXPECT_THAT(TakeLog(), Contains("I: History: Next buffer position is before current position T1"));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:20:00.000");
}

TEST_F(HistoryReadAhead, EndsTheTransferWhenThereIsNoMemoryForTheBlock) {
    AddLog(60);
    onRead = [](int read) {
        if (read == 4)
            throw std::runtime_error("out of memory");
    };
    onWrite = [this](int write) {
        if (write == 3) {
            EXPECT_TRUE(WaitForReads(4));
        }
        return QL_OK;
    };
    Transfer();
    EXPECT_EQ(TakeLog().back(), "E: History: Transfer ended: out of memory");
    EXPECT_EQ(StoredValues(), Numbers(30));
    onRead = {};
    onWrite = {};
    Transfer();
    EXPECT_THAT(TakeLog(), Not(Contains("E: History: Transfer ended: out of memory")));
}

} // namespace
