// Which days patterns, ranges and weeks of the month mean.
#include "simulator/model/DatePattern.h"
#include "simulator/model/SimTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace sim {
namespace {

constexpr std::uint16_t ANY_YEAR = BACSTAC_ANY_YEAR;
constexpr std::uint32_t ANY = 0; // month and weekday
constexpr std::uint32_t ANY_DAY = BACSTAC_ANY_DAY;

BACSTAC_DATE Day(std::uint16_t year, std::uint32_t month, std::uint32_t day) {
    return ToDateTime(*ToLocalTime({{year, 0, month, day, 0}, {0, 0, 0, 0}})).Date;
}

// The days of 2026, as "month/day", that the test picks.
template <typename Test>
std::string DaysOf2026(Test test) {
    std::string days;
    const LocalTime first = *ToLocalTime({{2026, 0, 1, 1, 0}, {0, 0, 0, 0}});
    for (int i = 0; i < 365; ++i) {
        const BACSTAC_DATE day = ToDateTime(first + i * HUNDREDTHS_PER_DAY).Date;
        if (test(day))
            days += (days.empty() ? "" : " ") + std::to_string(day.Month) + "/" + std::to_string(day.Day);
    }
    return days;
}

std::string DaysOfPattern(const BACSTAC_DATE& pattern) {
    return DaysOf2026([&](const BACSTAC_DATE& day) { return IsDayOf(pattern, day); });
}

std::string DaysOfWeekNDay(const std::vector<std::uint8_t>& octets) {
    return DaysOf2026([&](const BACSTAC_DATE& day) { return IsDayOfWeekNDay(octets, day); });
}

TEST(DatePattern, CertainDate) {
    EXPECT_EQ(DaysOfPattern({2026, 0, 11, 21, 6}), "11/21");
    EXPECT_EQ(DaysOfPattern({2026, 0, 11, 21, 5}), ""); // it is no Friday
    EXPECT_EQ(DaysOfPattern({2025, 0, 11, 21, ANY}), "");
    EXPECT_EQ(DaysOfPattern({ANY_YEAR, 0, 12, 24, ANY}), "12/24");
}

TEST(DatePattern, EveryFieldMayBeUnspecified) {
    const std::string all = DaysOfPattern({ANY_YEAR, 0, ANY, ANY_DAY, ANY});
    EXPECT_EQ(std::count(all.begin(), all.end(), '/'), 365);
    EXPECT_EQ(DaysOfPattern({ANY_YEAR, 0, 2, ANY_DAY, 7}), "2/1 2/8 2/15 2/22");
}

TEST(DatePattern, OddAndEvenMonthsAndDaysAndTheLastDay) {
    EXPECT_EQ(DaysOfPattern({2026, 0, 13, 2, ANY}), "1/2 3/2 5/2 7/2 9/2 11/2");
    EXPECT_EQ(DaysOfPattern({2026, 0, 14, 32, ANY}), "2/28 4/30 6/30 8/31 10/31 12/31");
    EXPECT_TRUE(IsDayOf(BACSTAC_DATE{2028, 0, 2, 32, ANY}, Day(2028, 2, 29)));
    EXPECT_FALSE(IsDayOf(BACSTAC_DATE{2028, 0, 2, 32, ANY}, Day(2028, 2, 28)));
    EXPECT_EQ(DaysOfPattern({2026, 0, 2, 33, 1}), "2/9 2/23");
    EXPECT_EQ(DaysOfPattern({2026, 0, 2, 34, 1}), "2/2 2/16");
}

TEST(DateRange, BothEndsBelongToIt) {
    const auto days = [](const BACSTAC_DATE_RANGE& range) {
        return DaysOf2026([&](const BACSTAC_DATE& day) { return IsDayOf(range, day); });
    };
    EXPECT_EQ(days({{2026, 0, 4, 29, ANY}, {2026, 0, 5, 2, ANY}}), "4/29 4/30 5/1 5/2");
    EXPECT_EQ(days({{2025, 0, 12, 24, ANY}, {2026, 0, 1, 2, ANY}}), "1/1 1/2");
    EXPECT_EQ(days({{2026, 0, 5, 2, ANY}, {2026, 0, 5, 1, ANY}}), "");
}

TEST(DateRange, UnspecifiedEndsAreOpen) {
    const BACSTAC_DATE open{ANY_YEAR, 0, ANY, ANY_DAY, ANY};
    EXPECT_TRUE(IsDayOf(BACSTAC_DATE_RANGE{open, open}, Day(2026, 1, 1)));
    EXPECT_TRUE(IsDayOf(BACSTAC_DATE_RANGE{open, {2026, 0, 5, 1, ANY}}, Day(2026, 5, 1)));
    EXPECT_TRUE(IsDayOf(BACSTAC_DATE_RANGE{{2026, 0, 5, 1, ANY}, open}, Day(2026, 12, 31)));
    EXPECT_FALSE(IsDayOf(BACSTAC_DATE_RANGE{{2026, 0, 5, 1, ANY}, open}, Day(2026, 4, 30)));
}

TEST(WeekNDay, CountsFromTheFirstDayAndFromTheLast) {
    EXPECT_EQ(DaysOfWeekNDay({11, 1, 255}), "11/1 11/2 11/3 11/4 11/5 11/6 11/7");
    EXPECT_EQ(DaysOfWeekNDay({11, 5, 255}), "11/29 11/30");
    EXPECT_EQ(DaysOfWeekNDay({2, 5, 255}), "");
    EXPECT_EQ(DaysOfWeekNDay({11, 6, 255}), "11/24 11/25 11/26 11/27 11/28 11/29 11/30");
    EXPECT_EQ(DaysOfWeekNDay({11, 7, 1}), "11/23");
    EXPECT_EQ(DaysOfWeekNDay({11, 9, 255}), "11/3 11/4 11/5 11/6 11/7 11/8 11/9");
    EXPECT_EQ(DaysOfWeekNDay({11, 10, 255}), "");
}

TEST(WeekNDay, EveryFieldMayBeUnspecified) {
    EXPECT_EQ(DaysOfWeekNDay({255, 1, 1}), "1/5 2/2 3/2 4/6 5/4 6/1 7/6 8/3 9/7 10/5 11/2 12/7");
    EXPECT_EQ(DaysOfWeekNDay({14, 6, 7}), "2/22 4/26 6/28 8/30 10/25 12/27");
    EXPECT_EQ(DaysOfWeekNDay({255, 1}), ""); // too short
}

TEST(CalendarEntry, IsReadInItsThreeForms) {
    const auto isDay = [](std::vector<std::uint8_t> octets) {
        bacnet::Reader in(octets);
        return IsDayOfEntry(in, Day(2026, 11, 21));
    };
    EXPECT_TRUE(isDay({0x0C, 0xFF, 11, 21, 0xFF}));
    EXPECT_FALSE(isDay({0x0C, 0xFF, 11, 22, 0xFF}));
    EXPECT_TRUE(isDay({0x1E, 0xA4, 126, 11, 20, 0xFF, 0xA4, 126, 11, 22, 0xFF, 0x1F}));
    EXPECT_TRUE(isDay({0x2B, 11, 3, 6})); // Saturday of the third week
    EXPECT_FALSE(isDay({0x2B, 11, 3}));
    EXPECT_FALSE(isDay({0x3B, 11, 3, 6}));
}

} // namespace
} // namespace sim
