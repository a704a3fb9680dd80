// What is left in the file when the program dies or the medium fails.
#include "tests/unit/historian/FaultyVfs.h"
#include "tests/unit/historian/SqliteTestSupport.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::uint32_t BLOCK = 100;

// A process of its own that runs body and ends without closing anything. Its result is body's.
template <typename Body>
pid_t Spawn(Body body) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(body());
    }
    EXPECT_GT(child, 0);
    return child;
}

int ExitCode(pid_t child) {
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class SqliteDurability : public testing::Test {
protected:
    TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder / "history.db";
};

} // namespace

TEST_F(SqliteDurability, ABlockThatWasAcceptedOutlivesTheProgram) {
    const pid_t child = Spawn([&] {
        HistoryError error;
        const auto store = SqliteHistoryStore::Open(m_path, {}, error);
        return store && store->Write(Block(7, 1000, BLOCK), error) ? 0 : 1;
    });
    ASSERT_EQ(ExitCode(child), 0);
    const auto store = OpenGood(m_path);
    EXPECT_EQ(All(*store, 7).size(), BLOCK);
}

TEST_F(SqliteDurability, AKilledProgramLeavesWholeBlocksAndAllThatItAccepted) {
    for (const std::uint32_t killAfter : {1U, 7U, 40U}) {
        const std::uint32_t tag = killAfter;
        int accepted[2];
        ASSERT_EQ(::pipe(accepted), 0);
        const pid_t child = Spawn([&] {
            HistoryError error;
            const auto store = SqliteHistoryStore::Open(m_path, {}, error);
            for (std::uint32_t block = 0; store; ++block) {
                if (!store->Write(Block(tag, block * BLOCK, BLOCK), error)) {
                    break;
                }
                if (::write(accepted[1], &block, sizeof block) != sizeof block) {
                    break;
                }
            }
            return 1;
        });
        ::close(accepted[1]);
        std::uint32_t last = 0;
        while (last + 1 < killAfter && ::read(accepted[0], &last, sizeof last) == sizeof last) {}
        ::kill(child, SIGKILL);
        EXPECT_EQ(ExitCode(child), -1);
        while (::read(accepted[0], &last, sizeof last) == sizeof last) {}
        ::close(accepted[0]);

        const auto store = OpenGood(m_path);
        const auto found = All(*store, tag);
        EXPECT_EQ(found.size() % BLOCK, 0U);
        EXPECT_GE(found.size(), killAfter == 1 ? 0 : (last + 1) * BLOCK);
        EXPECT_LE(found.size(), (last + 2) * BLOCK);
        for (std::size_t i = 0; i < found.size(); ++i) {
            ASSERT_EQ(found[i].time, i);
        }
    }
    if (HasSqliteTool()) {
        EXPECT_EQ(SqliteTool(m_path, "PRAGMA integrity_check"), "ok\n");
    }
}

TEST_F(SqliteDurability, AMediumThatTakesNoMoreRefusesTheBlockAndKeepsTheOthers) {
    // The limit on a file's size stands for the full disk: a write beyond it fails.
    int counts[2];
    ASSERT_EQ(::pipe(counts), 0);
    const pid_t child = Spawn([&] {
        const rlimit limit{200'000, 200'000};
        ::signal(SIGXFSZ, SIG_IGN);
        HistoryError error;
        const auto store = SqliteHistoryStore::Open(m_path, {}, error);
        if (!store || ::setrlimit(RLIMIT_FSIZE, &limit) != 0) {
            return 1;
        }
        std::uint32_t time = 0;
        while (time < 1'000'000 && store->Write(Block(7, time, BLOCK), error)) {
            time += BLOCK;
        }
        if (time == 1'000'000 || error.text.empty() || error.recordIndex) {
            return 2;
        }
        return ::write(counts[1], &time, sizeof time) == sizeof time ? 0 : 3;
    });
    ASSERT_EQ(ExitCode(child), 0);
    std::uint32_t stored = 0;
    ASSERT_EQ(::read(counts[0], &stored, sizeof stored), static_cast<ssize_t>(sizeof stored));
    ::close(counts[0]);
    ::close(counts[1]);
    EXPECT_GT(stored, 0U);
    const auto store = OpenGood(m_path);
    EXPECT_EQ(Total(*store), stored);
    HistoryError error;
    EXPECT_TRUE(store->Write(Block(7, stored, BLOCK), error)) << error.text;
}

TEST_F(SqliteDurability, EveryBlockIsSyncedBeforeItIsAccepted) {
    FaultyVfs files;
    const auto store = OpenGood(m_path);
    for (std::uint32_t block = 0; block < 20; ++block) {
        const int before = files.Syncs();
        HistoryError error;
        // Every second block repeats the first one, and so goes the slow way.
        ASSERT_TRUE(store->Write(Block(7, block % 2 == 0 ? block * BLOCK : 0, BLOCK), error));
        EXPECT_GT(files.Syncs(), before) << block;
    }
}

TEST_F(SqliteDurability, AFailureAtAnyWriteOrSyncStoresNothingAndLosesNothing) {
    for (const int code : {SQLITE_FULL, SQLITE_IOERR_WRITE, SQLITE_IOERR_FSYNC}) {
        FaultyVfs files;
        const auto path = m_folder / std::to_string(code).c_str();
        auto store = OpenGood(path);
        HistoryError error;
        ASSERT_TRUE(store->Write(Block(7, 0, BLOCK), error));
        std::uint32_t stored = BLOCK;
        int passed = 0;
        for (bool good = false; !good; ++passed) {
            files.FailAfter(passed, code);
            good = store->Write(Block(7, stored, 5 * BLOCK), error);
            files.Heal();
            EXPECT_EQ(good, error.text.empty());
            if (good) {
                stored += 5 * BLOCK;
            }
            ASSERT_EQ(Total(*store), stored) << passed;
        }
        EXPECT_GT(passed, 3);
        store.reset();
        store = OpenGood(path);
        EXPECT_EQ(All(*store, 7).size(), stored);
        EXPECT_TRUE(store->Write(Block(7, stored, BLOCK), error)) << error.text;
    }
}
