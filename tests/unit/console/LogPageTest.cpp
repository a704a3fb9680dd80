#include "module/console/LogPage.h"

#include "api/bacnet/BacGeneral.h"
#include "tests/support/FakeLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace {

LogPageFields Shown(std::uint32_t flags) {
    LogSettings settings;
    settings.flags = flags;
    return ShowLog(settings);
}

} // namespace

TEST(LogPage, ShowsTheDefaults) {
    const LogPageFields fields = ShowLog(LogSettings());
    EXPECT_THAT(fields.checks, ElementsAre(true, true, true, true, false));
    EXPECT_THAT(fields.limits, ElementsAre("1", "10", "100"));
    EXPECT_EQ(fields.level, 2);
}

TEST(LogPage, GivesBackWhatItShows) {
    LogSettings settings;
    settings.flags = 0xFFFFFFE0 | LOG_HISTORICAL_LIMIT_SESSIONS; // the bits that nobody knows stay
    settings.level = 0;
    settings.historicalSizeLimit = 77;
    LogSettings taken = settings;
    TakeLog(ShowLog(settings), taken);
    EXPECT_EQ(taken, settings);
}

TEST(LogPage, TakesAnyNumberAndCountsOtherTextsAsNone) {
    LogPageFields fields = ShowLog(LogSettings());
    fields.limits[LIMIT_ONLINE_SIZE] = "5000";
    fields.limits[LIMIT_HISTORICAL_SIZE] = "abc";
    fields.limits[LIMIT_SESSIONS] = "";
    LogSettings settings;
    TakeLog(fields, settings);
    EXPECT_EQ(settings.onlineSizeLimit, 5000);
    EXPECT_EQ(settings.historicalSizeLimit, 0);
    EXPECT_EQ(settings.historicalSessionLimit, 0);
}

TEST(LogPage, KeepsALevelThatHasNoChoice) {
    LogSettings settings;
    settings.level = 9;
    LogPageFields fields = ShowLog(settings);
    EXPECT_EQ(fields.level, NO_LOG_LEVEL);
    TakeLog(fields, settings);
    EXPECT_EQ(settings.level, 9U);
    fields.level = 1;
    TakeLog(fields, settings);
    EXPECT_EQ(settings.level, 1U);
}

TEST(LogPage, ALimitNeedsItsCheckAndThatItsLog) {
    constexpr std::uint32_t ALL = 0x1F;
    const LogPageEnabled all = EnabledFor(Shown(ALL));
    EXPECT_THAT(all.checks, ElementsAre(true, true, true, true, true));
    EXPECT_THAT(all.limits, ElementsAre(true, true, true));
    const LogPageEnabled none = EnabledFor(Shown(0));
    EXPECT_THAT(none.checks, ElementsAre(true, false, true, false, false));
    EXPECT_THAT(none.limits, ElementsAre(false, false, false));
    const LogPageEnabled noOnline = EnabledFor(Shown(ALL & ~LOG_ONLINE_ENABLED));
    EXPECT_THAT(noOnline.checks, ElementsAre(true, false, true, true, true));
    EXPECT_THAT(noOnline.limits, ElementsAre(false, true, true));
    const LogPageEnabled noHistorical = EnabledFor(Shown(ALL & ~LOG_HISTORICAL_ENABLED));
    EXPECT_THAT(noHistorical.checks, ElementsAre(true, true, true, false, false));
    EXPECT_THAT(noHistorical.limits, ElementsAre(true, false, false));
    const LogPageEnabled noSessions = EnabledFor(Shown(ALL & ~LOG_HISTORICAL_LIMIT_SESSIONS));
    EXPECT_THAT(noSessions.checks, ElementsAre(true, true, true, true, true));
    EXPECT_THAT(noSessions.limits, ElementsAre(true, true, false));
}

TEST(LogPage, TheThirteenthCategoryGoesToTheHighestBit) {
    EXPECT_EQ(FilterOfMask(0x1FFF), 0x80000FFFU);
    EXPECT_EQ(FilterOfMask(0x0FFF), 0x00000FFFU);
    EXPECT_EQ(FilterOfMask(0x1000), 0x80000000U);
    EXPECT_EQ(FilterOfMask(0xFFFFE000), 0U);
}

TEST(LogPage, GivesTheLoggerAllItsSettingsInTheirOrder) {
    CEventList events;
    const CFakeLog log(events);
    LogSettings settings;
    settings.flags = LOG_HISTORICAL_ENABLED | LOG_HISTORICAL_LIMIT_SESSIONS;
    settings.level = 1;
    settings.filter = 0x80000FFF;
    ApplyLog(settings, CBacGeneral::Log());
    EXPECT_THAT(events.Take(), ElementsAre("EnableLog(false)", "SetLogSizeLimit(false, 1)", "EnableHisLog(true)",
                                           "SetHisLogSizeLimit(false, 10)", "SetHisLogSessionLimit(true, 100)",
                                           "SetLevel(1)", "SetFilter(4095)"));
}
