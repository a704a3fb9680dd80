// Transfers into a historical store that fails: the position stays, and the next transfer stores everything.
#include "tests/integration/TransferFixture.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <memory>

namespace integration {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* WRITE_LINE = "E: History: Error writing to VFI";

// Another program that holds the store's file.
class ForeignLock {
public:
    explicit ForeignLock(const std::filesystem::path& file) {
        sqlite3* handle = nullptr;
        EXPECT_EQ(sqlite3_open(file.c_str(), &handle), SQLITE_OK);
        m_handle.reset(handle);
        sqlite3_busy_timeout(handle, 10'000);
        EXPECT_EQ(sqlite3_exec(handle, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    }

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

class StoreFaultTest : public TransferFixture {
protected:
    StoreFaultTest() {
        counts.Records = 3000;
        settings.store.busyTimeout = std::chrono::milliseconds(50);
    }
    // Whole blocks from the oldest record on are stored, and the position is behind the last of them.
    void ExpectWholeBlocks(const Station& station) {
        RecordLines stored = station.Stored();
        EXPECT_EQ(stored.size() % 100, 0U);
        RecordLines expected = Expected();
        ASSERT_LT(stored.size(), expected.size());
        expected.resize(stored.size());
        EXPECT_EQ(Difference(expected, stored), "");
        const std::vector<sim::LogRecord> records = Device().Records(FIRST_TREND);
        BACSTAC_DATE_TIME last = ParsePosition("");
        if (!stored.empty())
            last = sim::ToDateTime(records[stored.size() - 1].Time);
        EXPECT_EQ(station.Position("T1"), FormatPosition(last));
    }
    void ExpectCompletion(Station& station) {
        EXPECT_THAT(ErrorsOf(station.Transfer()), IsEmpty());
        EXPECT_EQ(Difference(Expected(), station.Stored()), "");
    }
};

TEST_F(StoreFaultTest, AFullStoreKeepsThePositionBehindTheLastBlockStored) {
    StartSmallSite();
    settings.store.maximumBytes = 40'000;
    {
        const auto station = NewStation();
        EXPECT_THAT(ErrorsOf(station->Transfer()), ElementsAre(WRITE_LINE));
        EXPECT_FALSE(station->Stored().empty());
        ExpectWholeBlocks(*station);
        EXPECT_THAT(ErrorsOf(station->Transfer()), ElementsAre(WRITE_LINE)) << "it is full still";
        ExpectWholeBlocks(*station);
    }
    settings.store.maximumBytes = 0;
    ExpectCompletion(*NewStation());
}

TEST_F(StoreFaultTest, ALockedStoreKeepsThePosition) {
    StartSmallSite();
    const auto station = NewStation();
    {
        const ForeignLock lock(settings.folder / STORE_FILE);
        EXPECT_THAT(ErrorsOf(station->Transfer()), ElementsAre(WRITE_LINE));
    }
    EXPECT_THAT(station->Stored(), IsEmpty());
    ExpectWholeBlocks(*station);
    ExpectCompletion(*station);
}

TEST_F(StoreFaultTest, AStoreThatIsLockedDuringATransferKeepsThePositionBehindTheLastBlockStored) {
    StartSmallSite();
    Device().SetFault(sim::Fault::Slow(20));
    const auto station = NewStation();
    station->Start();
    station->WaitForLines("I: History: Reading ", 5);
    {
        const ForeignLock lock(settings.folder / STORE_FILE);
        EXPECT_THAT(ErrorsOf(station->Finish()), ElementsAre(WRITE_LINE));
    }
    EXPECT_FALSE(station->Stored().empty());
    ExpectWholeBlocks(*station);
    Device().ClearFaults();
    ExpectCompletion(*station);
}

// Shorter than the store waits: nobody notices.
TEST_F(StoreFaultTest, AStoreThatIsLockedForAMomentCostsNothing) {
    StartSmallSite();
    settings.store.busyTimeout = std::chrono::seconds(20);
    const auto station = NewStation();
    auto lock = std::make_unique<ForeignLock>(settings.folder / STORE_FILE);
    station->Start();
    station->WaitForLines("I: History: Reading ", 1);
    lock.reset();
    EXPECT_THAT(ErrorsOf(station->Finish()), IsEmpty());
    EXPECT_EQ(Difference(Expected(), station->Stored()), "");
}

} // namespace
} // namespace integration
