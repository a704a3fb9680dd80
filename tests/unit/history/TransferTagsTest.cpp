// Which tags the values of a history transfer go to.
#include "api/bacnet/Enums.h"
#include "tests/unit/history/TransferSite.h"

#include <ctime>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HistoryTags : public TransferSite {};

TEST_F(HistoryTags, NamesTheTagsOfStatusFlagsWithTheirStation) {
    AddTrend(1234, 5, "T1", 16);
    kernel.tagIds["LOCAL:TK"] = 0x00010010;
    AddTag(17, 1234, {OBJ_ANALOG_INPUT, 1}, PROP_STATUS_FLAGS, 2, "FLAG");
    bacnet.AddLogEntry(1234, {OBJ_TREND_LOG, 5}, WithStatus(RealEntry(Minute(1), 3), {true, false, true, false}));
    Transfer();
    const auto lines = TakeLog();
    EXPECT_EQ(lines[5], "I: History: Using tag name LOCAL:TK");
    EXPECT_EQ(lines[6], "I: History: Tag (1:17) found to store status_flags[2]");
    EXPECT_EQ(lines[7], "I: History: Starting at 01/01/1900 00:00:00.000");
    EXPECT_THAT(StoredTags(), ElementsAre(0x00010010U, 0x00010011U));
    EXPECT_THAT(StoredValues(), ElementsAre(3.0, 1.0));
}

TEST_F(HistoryTags, ThrowsValuesWithoutATagAwayAndMovesOn) {
    AddTrend(1234, 5, "T1");
    SetReferences(1234, {OBJ_TREND_LOG, 5}, {Reference({OBJ_BINARY_VALUE, 3})});
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 2));
    Transfer();
    const auto lines = TakeLog();
    EXPECT_EQ(lines[5], "E: History: No corresponding tag for " +
                            Printed(Reference({OBJ_BINARY_VALUE, 3}, PROP_PRESENT_VALUE, 1234)));
    EXPECT_THAT(kernel.GetBlocks(), ElementsAre(0U));
    EXPECT_EQ(StoredPosition("T1"), "10/06/2026 00:02:00.000");
}

TEST_F(HistoryTags, UsesATagWhoseHistoryTheKernelKeepsItself) {
    AddTrend(1234, 5, "T1");
    kernel.AddTag(17, "TK", true);
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 2));
    Transfer();
    const auto lines = TakeLog();
    EXPECT_EQ(lines[5], "I: History: Using tag name LOCAL:TK");
    EXPECT_EQ(lines[6], "E: History: History is already enabled for LOCAL:TK");
    EXPECT_THAT(StoredTags(), ElementsAre(17U, 17U));
}

TEST_F(HistoryTags, UsesATagWithoutADefinition) {
    AddTrend(1234, 5, "T1");
    kernel.definitions.clear();
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 1));
    Transfer();
    EXPECT_EQ(TakeLog()[5], "E: History: Fail to read tag definition for tag 17");
    EXPECT_THAT(StoredTags(), ElementsAre(17U));
}

TEST_F(HistoryTags, UsesATagAsFoundWhenItsStationsNameLeadsNowhere) {
    AddTrend(1234, 5, "T1");
    kernel.tagIds.clear();
    bacnet.AddLogEntries(1234, {OBJ_TREND_LOG, 5}, Minutes(1, 1));
    Transfer();
    const auto lines = TakeLog();
    EXPECT_EQ(lines[5], "E: History: Fail to get tag id with station name for LOCAL:TK");
    EXPECT_EQ(lines[6], "I: History: Using tag name LOCAL:TK");
    EXPECT_THAT(StoredTags(), ElementsAre(17U));
}

TEST_F(HistoryTags, NamesATagWithoutAStation) {
    AddTrend(1234, 5, "T1");
    kernel.stationName = "";
    Transfer();
    EXPECT_EQ(TakeLog()[5], "I: History: Using tag name TK");
    for (const std::string& call : kernel.GetCalls())
        EXPECT_NE(call.substr(0, 3), "143");
}

} // namespace
