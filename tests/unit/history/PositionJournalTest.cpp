#include "module/history/PositionJournal.h"

#include "api/bacnet/Enums.h"
#include "module/history/HistoryState.h"
#include "tests/unit/history/TransferSite.h"

#include <stdexcept>

namespace {

using testing::ElementsAre;

class PositionJournal : public testing::Test {
protected:
    BACSTAC_DATE_TIME Stored(const std::string& name) const {
        BACSTAC_DATE_TIME position;
        state.LoadTrendPosition(name, position);
        return position;
    }
    bool IsThere() const { return std::filesystem::exists(state.GetPath() + ".run"); }
    void Recover() { CPositionJournal(state).Recover(); }

    TemporaryFolder folder;
    const CHistoryState state{folder.GetFile("BAC_Hist.ini")};
};

TEST_F(PositionJournal, GivesTheLastNoteToTheStateFile) {
    const std::string name = "odd\tname\nof [a] log=";
    CPositionJournal(state).Note(name, Minute(1));
    {
        CPositionJournal journal(state);
        journal.Note(name, Minute(2));
        journal.Note(name, Minute(3));
    }
    EXPECT_TRUE(IsThere());
    Recover();
    EXPECT_TRUE(Same(Stored(name), Minute(3)));
    EXPECT_FALSE(IsThere());
}

TEST_F(PositionJournal, LeavesNothingBehindOnceTheStateFileHasThePosition) {
    CPositionJournal journal(state);
    journal.Clear();
    journal.Note("T", Minute(1));
    journal.Clear();
    EXPECT_FALSE(IsThere());
    journal.Note("U", Minute(2));
    EXPECT_TRUE(IsThere());
}

TEST_F(PositionJournal, NeverMovesAPositionBack) {
    CPositionJournal(state).Note("T", Minute(1));
    state.SaveTrendPosition("T", Minute(2));
    Recover();
    EXPECT_TRUE(Same(Stored("T"), Minute(2)));
    EXPECT_FALSE(IsThere());
}

TEST_F(PositionJournal, KeepsItsNoteUntilTheStateFileCanBeWritten) {
    CPositionJournal(state).Note("T", Minute(1));
    std::filesystem::create_directory(state.GetPath());
    Recover();
    EXPECT_TRUE(IsThere());
    std::filesystem::remove(state.GetPath());
    Recover();
    EXPECT_TRUE(Same(Stored("T"), Minute(1)));
}

TEST_F(PositionJournal, ShrinksWithItsNote) {
    {
        CPositionJournal journal(state);
        journal.Note("T", Time(65535, 10, 10));
        journal.Note("T", Minute(1));
    }
    Recover();
    EXPECT_TRUE(Same(Stored("T"), Minute(1)));
}

TEST_F(PositionJournal, TakesNoNoteThatIsNotWhole) {
    CPositionJournal(state).Note("T", Minute(1));
    const std::string whole = ReadBytes(state.GetPath() + ".run");
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        WriteBytes(state.GetPath() + ".run", whole.substr(0, cut));
        Recover();
        EXPECT_FALSE(std::filesystem::exists(state.GetPath())) << cut;
        std::string changed = whole;
        changed[cut] = static_cast<char>(changed[cut] ^ 1);
        WriteBytes(state.GetPath() + ".run", changed);
        Recover();
        EXPECT_FALSE(std::filesystem::exists(state.GetPath())) << cut;
    }
    WriteBytes(state.GetPath() + ".run", whole);
    Recover();
    EXPECT_TRUE(Same(Stored("T"), Minute(1)));
}

TEST_F(PositionJournal, DoesWithoutAFileThatItCannotWrite) {
    std::filesystem::create_directory(state.GetPath() + ".run");
    CPositionJournal journal(state);
    journal.Note("T", Minute(1));
    journal.Clear();
    journal.Recover();
    EXPECT_FALSE(std::filesystem::exists(state.GetPath()));
}

// A transfer that is cut off in the middle of a trend, as by a kill: nothing behind the cut is done.
class CutTransfer : public TransferSite {
protected:
    CutTransfer() {
        AddTrend(1234, 5, "T1");
        bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 100));
        driver.m_transferChunk = 10;
    }
};

TEST_F(CutTransfer, RepeatsOneBlockThatWasStoredBeforeItWasNoted) {
    int writes = 0;
    std::vector<VfiRecord> lost;
    kernel.onWrite = [&](std::uint32_t count, const VfiRecord* records) {
        if (++writes == 7) {
            lost.assign(records, records + count);
            throw std::runtime_error("cut");
        }
        return QL_OK;
    };
    Transfer();
    EXPECT_EQ(StoredPosition("T1"), "");
    EXPECT_EQ(TakeLog().back(), "E: History: Transfer ended: cut");
    EXPECT_EQ(kernel.GetCalls().back(), "29(7)");
    EXPECT_EQ(manager->GetLastTransferTime().Year, 0);
    Transfer();
    const auto values = StoredValues();
    ASSERT_EQ(values.size(), 100U);
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(values[i], static_cast<double>(i + 1));
    EXPECT_EQ(VfiValue(lost.front()), 61.0) << "the one block that a store would have twice";
    EXPECT_FALSE(std::filesystem::exists(statePath + ".run"));
}

TEST_F(CutTransfer, GoesOnAfterACutAtAnyCallOfTheDevice) {
    for (int cut = 1; cut <= 11; ++cut) {
        std::filesystem::remove(statePath);
        int calls = 0;
        bacnet.OnCall([&](const std::string& event) {
            if (event.rfind("ReadRange", 0) == 0 && ++calls == cut)
                throw std::runtime_error("cut");
        });
        const std::size_t before = kernel.GetRecords().size();
        Transfer();
        bacnet.OnCall(nullptr);
        Transfer();
        EXPECT_EQ(kernel.GetRecords().size() - before, 100U) << cut;
        EXPECT_EQ(StoredPosition("T1"), "10/06/2026 01:40:00.000");
    }
}

TEST_F(CutTransfer, LeavesNoJournalAfterAGoodTransfer) {
    Transfer();
    EXPECT_EQ(kernel.GetRecords().size(), 100U);
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder.GetPath()))
        files.push_back(entry.path().filename().string());
    EXPECT_THAT(files, ElementsAre("BAC_Hist.ini"));
}

TEST_F(CutTransfer, KeepsThePositionOfATrendThatOthersFollow) {
    AddTrend(1234, 6, "T2");
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 6}, Minutes(1, 100));
    int calls = 0;
    bacnet.OnCall([&](const std::string& event) {
        if (event.rfind("ReadRange(1234, (20, 6)", 0) == 0 && ++calls == 4)
            throw std::runtime_error("cut");
    });
    Transfer();
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 01:40:00.000");
    EXPECT_EQ(StoredPosition("T2"), "");
    bacnet.OnCall(nullptr);
    TakeLog();
    Transfer();
    EXPECT_THAT(TakeLog(), testing::Contains("I: History: Starting at 10/06/2026 00:30:00.000"));
    EXPECT_EQ(kernel.GetRecords().size(), 200U);
}

} // namespace
