#include "tests/unit/historian/SqliteTestSupport.h"

#include <limits>
#include <thread>

namespace {

class SqliteStore : public testing::Test {
protected:
    // Writes and says why it failed.
    static std::string WriteError(HistoryStore& store, const std::vector<VfiRecord>& records) {
        HistoryError error;
        EXPECT_FALSE(store.Write(records, error));
        EXPECT_FALSE(error.recordIndex);
        return error.text;
    }

    static void Write(HistoryStore& store, const std::vector<VfiRecord>& records) {
        HistoryError error;
        ASSERT_TRUE(store.Write(records, error)) << error.text;
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder / "history.db";
};

} // namespace

TEST_F(SqliteStore, RecordsAreThereAfterReopening) {
    Write(*OpenGood(m_path), Block(7, 1000, 130));
    const auto store = OpenGood(m_path);
    EXPECT_EQ(All(*store, 7).size(), 130U);
    Write(*store, Block(7, 1000, 130));
    EXPECT_EQ(Total(*store), 260U);
}

TEST_F(SqliteStore, ALockedDatabaseRefusesTheBlockAndTakesItLater) {
    SqliteHistoryStore::Settings settings;
    settings.busyTimeout = std::chrono::milliseconds(20);
    const auto store = OpenGood(m_path, settings);
    Write(*store, Block(7, 1000, 100));
    OtherProgram other(m_path);
    other.Execute("BEGIN EXCLUSIVE");
    EXPECT_NE(WriteError(*store, Block(7, 2000, 100)).find("is locked by another program"), std::string::npos);
    other.Execute("ROLLBACK");
    EXPECT_EQ(Total(*store), 100U);
    Write(*store, Block(7, 2000, 100));
    EXPECT_EQ(Total(*store), 200U);
}

TEST_F(SqliteStore, ADatabaseThatIsLockedAltogetherCannotBeOpened) {
    OpenGood(m_path);
    OtherProgram other(m_path);
    other.Execute("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT");
    SqliteHistoryStore::Settings settings;
    settings.busyTimeout = std::chrono::milliseconds(20);
    EXPECT_NE(OpenError(m_path, settings).find("is locked by another program"), std::string::npos);
}

TEST_F(SqliteStore, AShortLockOnlyDelaysTheBlock) {
    const auto store = OpenGood(m_path);
    OtherProgram other(m_path);
    other.Execute("BEGIN EXCLUSIVE");
    std::jthread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        other.Execute("ROLLBACK");
    });
    Write(*store, Block(7, 1000, 100));
}

TEST_F(SqliteStore, AFullDatabaseRefusesTheBlockAndKeepsTheOthers) {
    SqliteHistoryStore::Settings settings;
    settings.maximumBytes = 64 * 1024;
    const auto store = OpenGood(m_path, settings);
    std::uint32_t time = 0;
    HistoryError error;
    while (time < 100'000 && store->Write(Block(7, time, 100), error)) {
        time += 100;
    }
    EXPECT_GT(time, 1000U);
    EXPECT_LT(time, 10'000U);
    EXPECT_NE(error.text.find("has no room to grow"), std::string::npos) << error.text;
    EXPECT_EQ(Total(*store), time);
    EXPECT_NE(WriteError(*store, Block(7, time, 100)), "");
    EXPECT_EQ(Total(*store), time);
}

TEST_F(SqliteStore, AFullDatabaseRefusesRepeatedInstantsToo) {
    SqliteHistoryStore::Settings settings;
    settings.maximumBytes = 64 * 1024;
    const auto store = OpenGood(m_path, settings);
    std::uint64_t stored = 0;
    HistoryError error;
    while (stored < 100'000 && store->Write(Block(7, 1000, 100), error)) {
        stored += 100;
    }
    EXPECT_NE(error.text.find("has no room to grow"), std::string::npos) << error.text;
    EXPECT_EQ(Total(*store), stored);
}

TEST_F(SqliteStore, ADatabaseWithRoomAgainTakesTheBlock) {
    SqliteHistoryStore::Settings settings;
    settings.maximumBytes = 1; // not even the first page more
    auto store = OpenGood(m_path, settings);
    HistoryError error;
    std::uint32_t time = 0;
    while (time < 10'000 && store->Write(Block(7, time, 100), error)) {
        time += 100;
    }
    EXPECT_LT(time, 1000U);
    store.reset();
    store = OpenGood(m_path);
    EXPECT_EQ(Total(*store), time);
    Write(*store, Block(7, time, 100));
}

TEST_F(SqliteStore, AStoreOpenForReadingOnlyQueriesBesideTheWriter) {
    SqliteHistoryStore::Settings readOnly;
    readOnly.readOnly = true;
    const auto writer = OpenGood(m_path);
    const auto reader = OpenGood(m_path, readOnly);
    Write(*writer, Block(7, 1000, 100));
    EXPECT_EQ(All(*reader, 7).size(), 100U);
    EXPECT_EQ(WriteError(*reader, Block(7, 2000, 1)), "history database is open for reading only");
    Write(*writer, Block(7, 2000, 100));
    EXPECT_EQ(Total(*reader), 200U);
}

TEST_F(SqliteStore, AStoreOpenForReadingOnlyQueriesWithoutTheWriter) {
    Write(*OpenGood(m_path), Block(7, 1000, 100));
    SqliteHistoryStore::Settings readOnly;
    readOnly.readOnly = true;
    EXPECT_EQ(Total(*OpenGood(m_path, readOnly)), 100U);
}

TEST_F(SqliteStore, ALongQuerySeesWhatWasStoredWhenItBegan) {
    const auto store = OpenGood(m_path);
    Write(*store, Block(7, 1000, 100));
    HistoryQuery query;
    query.tagId = 7;
    std::size_t given = 0;
    HistoryError error;
    EXPECT_TRUE(store->Query(
        query,
        [&](const VfiRecord&) {
            if (++given == 1) {
                Write(*store, Block(7, 2000, 100));
            }
            return true;
        },
        error));
    EXPECT_EQ(given, 100U);
    EXPECT_EQ(All(*store, 7).size(), 200U);
}

TEST_F(SqliteStore, AThousandRecordsOfOneInstantAreKept) {
    const auto store = OpenGood(m_path);
    for (int block = 0; block < 10; ++block) {
        std::vector<VfiRecord> records;
        for (int i = 0; i < 100; ++i) {
            records.push_back(Number(7, VFI_NO_TIME, block * 100 + i));
        }
        Write(*store, records);
    }
    const auto values = Values(All(*store, 7));
    ASSERT_EQ(values.size(), 1000U);
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
}

TEST_F(SqliteStore, ABlockThatFailsInTheMiddleLeavesNoTransactionBehind) {
    const auto store = OpenGood(m_path);
    Write(*store, Block(7, 1000, 1)); // the block below repeats it, and goes the slow way
    OtherProgram(m_path).Execute("CREATE TRIGGER refuse BEFORE INSERT ON record WHEN new.time=1060 "
                                 "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    for (const std::uint32_t from : {1000U, 1050U}) {
        for (int times = 0; times < 2; ++times) {
            EXPECT_NE(WriteError(*store, Block(7, from, 100)).find("refused"), std::string::npos);
            EXPECT_EQ(Total(*store), 1U);
        }
    }
    OtherProgram(m_path).Execute("DROP TRIGGER refuse");
    Write(*store, Block(7, 1000, 100));
    EXPECT_EQ(Total(*store), 101U);
}

TEST_F(SqliteStore, ARecordSpoiltByAnotherProgramIsReported) {
    const auto store = OpenGood(m_path);
    Write(*store, {Number(7, 1000, 1.0)});
    OtherProgram(m_path).Execute("UPDATE record SET value='spoilt'");
    HistoryQuery query;
    query.tagId = 7;
    HistoryError error;
    EXPECT_FALSE(store->Query(
        query, [](const VfiRecord&) { return true; }, error));
    EXPECT_EQ(error.text, "history database: a record of tag 7 at 1000 is damaged");
}

TEST_F(SqliteStore, AMillionRecordsTakeLessThanFortyBytesEach) {
    // A tenth of them: the tree's filling is the same.
    const auto store = OpenGood(m_path);
    for (std::uint32_t block = 0; block < 1000; ++block) {
        Write(*store, Block(0x10000 + block % 20, 1'700'000'000 + block / 20 * 100, 100));
    }
    OtherProgram(m_path).Execute("PRAGMA wal_checkpoint(TRUNCATE)");
    EXPECT_LT(std::filesystem::file_size(m_path), 100'000U * 40U);
}

TEST_F(SqliteStore, TheToolShowsRowsAsTheyAreDescribed) {
    if (!HasSqliteTool()) {
        GTEST_SKIP() << "the sqlite3 tool is not installed";
    }
    const auto store = OpenGood(m_path);
    Write(*store, {Number(7, 1, 21.5, 10), Number(7, 2, std::numeric_limits<double>::quiet_NaN()), Number(7, 3, -0.0),
                   Text(7, 4, "null"), Text(7, 5, "B\xE9ton"), Number(7, 1, 21.5, 10)});
    EXPECT_EQ(
        SqliteTool(m_path, "SELECT tag,time,ms,seq,typeof(value),quote(value),typeof(text),quote(text) FROM record"),
        "7|1|10|0|real|21.5|null|NULL\n"
        "7|1|10|1|real|21.5|null|NULL\n"
        "7|2|0|0|blob|X'000000000000F87F'|null|NULL\n"
        "7|3|0|0|blob|X'0000000000000080'|null|NULL\n"
        "7|4|0|0|real|0.0|text|'null'\n"
        "7|5|0|0|real|0.0|blob|X'42E9746F6E'\n");
    EXPECT_EQ(SqliteTool(m_path, "PRAGMA integrity_check; SELECT count(*) FROM record; PRAGMA journal_mode;"),
              "ok\n6\nwal\n");
}
