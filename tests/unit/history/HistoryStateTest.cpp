#include "module/history/HistoryState.h"

#include "tests/unit/history/LogEntries.h"
#include "tests/unit/history/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

class HistoryState : public testing::Test {
protected:
    BACSTAC_DATE_TIME Load(const std::string& name) const {
        BACSTAC_DATE_TIME position;
        std::memset(&position, 0xEE, sizeof position);
        state.LoadTrendPosition(name, position);
        return position;
    }
    BACSTAC_DATE_TIME Parse(const std::string& value) {
        WriteBytes(path, "[Trend position]\r\nT=" + value + "\r\n");
        return Load("T");
    }

    TemporaryFolder folder;
    const std::string path = folder.GetFile("BAC_Hist.ini");
    CHistoryState state{path};
};

TEST_F(HistoryState, IsEmptyWithoutAFile) {
    const SYSTEM_TIME never{};
    const SYSTEM_TIME last = state.LoadLastTransferTime();
    EXPECT_EQ(std::memcmp(&last, &never, sizeof last), 0);
    EXPECT_TRUE(Same(Load("x"), Time(1900, 1, 1)));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(HistoryState, StandsInTheCurrentDirectoryUnderItsLiteralName) {
    EXPECT_STREQ(HISTORY_STATE_PATH, ".//BAC_Hist.ini");
}

TEST_F(HistoryState, FormatsAPositionDayFirst) {
    EXPECT_EQ(FormatPosition(Time(2026, 3, 1, 12, 5, 0, 50)), "01/03/2026 12:05:00.500");
    EXPECT_EQ(FormatPosition(Time(1900, 1, 1)), "01/01/1900 00:00:00.000");
    EXPECT_EQ(FormatPosition(Time(0, 3, 1, 12, 5, 0, 50)), "");
    EXPECT_EQ(FormatPosition(Time(65535, 0, 255, 255, 255, 255, 255)), "255/00/65535 255:255:255.2550");
}

TEST_F(HistoryState, WritesTheFileThatWasAgreed) {
    ASSERT_TRUE(state.SaveLastTransferTime({2026, 3, 0, 2, 4, 5, 6, 78}));
    ASSERT_TRUE(state.SaveTrendPosition("AHU 1 Temp", Time(2026, 3, 1, 12, 5, 0, 50)));
    ASSERT_TRUE(state.SaveTrendPosition("AHU 1 Hum", Time(2026, 3, 1, 12, 10)));
    EXPECT_EQ(ReadBytes(path), ReadBytes(BDC_SOURCE_DIR "/tests/golden/history/BAC_Hist.ini"));
}

TEST_F(HistoryState, SavesAPositionIntoAnEmptyFolder) {
    ASSERT_TRUE(state.SaveTrendPosition("AHU 1 Temp", Time(2026, 3, 1, 12, 5, 0, 50)));
    EXPECT_EQ(ReadBytes(path), "[Trend position]\r\nAHU 1 Temp=01/03/2026 12:05:00.500\r\n");
    EXPECT_TRUE(Same(Load("AHU 1 Temp"), Time(2026, 3, 1, 12, 5, 0, 50)));
}

TEST_F(HistoryState, GivesBackTheLastTransferTimeWithoutAWeekday) {
    ASSERT_TRUE(state.SaveLastTransferTime({2026, 11, 6, 21, 9, 8, 7, 654}));
    const SYSTEM_TIME expected{2026, 11, 0, 21, 9, 8, 7, 654};
    const SYSTEM_TIME loaded = state.LoadLastTransferTime();
    EXPECT_EQ(std::memcmp(&loaded, &expected, sizeof loaded), 0);
    EXPECT_EQ(FormatTransferTime(loaded), "21/11/2026 09:08:07.654");
}

TEST_F(HistoryState, DoesNotSaveATransferTimeThatNeverWas) {
    EXPECT_TRUE(state.SaveLastTransferTime(SYSTEM_TIME{}));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(FormatTransferTime(SYSTEM_TIME{}), "");
}

TEST_F(HistoryState, ReadsDecimalNumbers) {
    EXPECT_TRUE(Same(Parse("31/12/2025 23:59:59.999"), Time(2025, 12, 31, 23, 59, 59, 99)));
    EXPECT_TRUE(Same(Parse("08/09/2026 08:09:08.080"), Time(2026, 9, 8, 8, 9, 8, 8)));
    EXPECT_TRUE(Same(Parse(" 1/ 2/ 2026  3:  4: 5. 60"), Time(2026, 2, 1, 3, 4, 5, 6)));
    EXPECT_TRUE(Same(Parse("1/2/202603:4:5.60"), Time(202603 & 0xFFFF, 2, 1)));
}

TEST_F(HistoryState, StopsAtTheFirstMismatch) {
    EXPECT_TRUE(Same(Parse("31/12/2025"), Time(2025, 12, 31)));
    EXPECT_TRUE(Same(Parse("31/12/2025 7"), Time(2025, 12, 31, 7)));
    EXPECT_TRUE(Same(Parse("31/12/2025 7-8"), Time(2025, 12, 31, 7)));
    EXPECT_TRUE(Same(Parse("31 /12/2025"), Time(0, 0, 31)));
    EXPECT_TRUE(Same(Parse("garbage"), Time(0, 0, 0)));
    EXPECT_TRUE(Same(Parse(""), Time(1900, 1, 1)));
}

TEST_F(HistoryState, TakesHugeNumbersWithoutFault) {
    const BACSTAC_DATE_TIME time = Parse("99999999999999999999/-5/2026 1:2:3.4");
    EXPECT_EQ(time.Date.Day, 0x7FFFFFFFU);
    EXPECT_EQ(time.Date.Month, 0xFFFFFFFBU);
    EXPECT_EQ(time.Date.Year, 2026);
}

TEST_F(HistoryState, UsesFortyCharactersOfAValue) {
    // The 40th character is the first digit of the milliseconds.
    const std::string blanks(20, ' ');
    EXPECT_TRUE(
        Same(Parse("31/12/2025" + blanks + "23:59:59.999 and twenty more.."), Time(2025, 12, 31, 23, 59, 59, 0)));
    EXPECT_TRUE(Same(Parse("31/12/2025" + std::string(50, ' ') + "23:59:59.999"), Time(2025, 12, 31)));
}

TEST_F(HistoryState, HealsAUselessPositionByStartingAnew) {
    const BACSTAC_DATE_TIME useless = Parse("garbage");
    ASSERT_TRUE(state.SaveTrendPosition("T", useless));
    EXPECT_EQ(ReadBytes(path), "[Trend position]\r\nT=\r\n");
    EXPECT_TRUE(Same(Load("T"), Time(1900, 1, 1)));
}

TEST_F(HistoryState, SurvivesACutAtEveryByte) {
    const std::string whole = ReadBytes(BDC_SOURCE_DIR "/tests/golden/history/BAC_Hist.ini");
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        WriteBytes(path, whole.substr(0, cut));
        state.LoadLastTransferTime();
        Load("AHU 1 Temp");
        ASSERT_TRUE(state.SaveTrendPosition("AHU 1 Hum", Time(2027, 1, 2)));
        EXPECT_TRUE(Same(Load("AHU 1 Hum"), Time(2027, 1, 2))) << cut;
    }
}

TEST_F(HistoryState, KeepsPositionsOfOddNames) {
    const std::vector<std::string> names{"[x",
                                         ";y",
                                         "a=b",
                                         "line\nbreak",
                                         "[HistoryManager]",
                                         "[Trend position]",
                                         "LastTransferTime",
                                         " ",
                                         "R\xC3\xA4ume/1%d",
                                         "\xFF\xFE"};
    state.SaveLastTransferTime({2026, 1, 0, 2, 3, 4, 5, 6});
    for (std::size_t i = 0; i < names.size(); ++i)
        ASSERT_TRUE(state.SaveTrendPosition(names[i], Time(2000 + static_cast<unsigned>(i), 1, 1)));
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(Load(names[i]).Date.Year, 2000 + i) << names[i];
    EXPECT_EQ(state.LoadLastTransferTime().Year, 2026);
}

TEST_F(HistoryState, SaysWhenItCannotSave) {
    const CHistoryState nowhere(folder.GetFile("no/such.ini"));
    EXPECT_FALSE(nowhere.SaveTrendPosition("T", Time(2026, 1, 1)));
    EXPECT_FALSE(nowhere.SaveLastTransferTime({2026, 1, 0, 2, 3, 4, 5, 6}));
}

} // namespace
