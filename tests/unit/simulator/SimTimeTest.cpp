#include "simulator/model/SimTime.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

BACSTAC_DATE_TIME Make(unsigned year, unsigned month, unsigned day, unsigned hour, unsigned minute, unsigned second,
                       unsigned hundredths) {
    BACSTAC_DATE_TIME value{};
    value.Date.Year = static_cast<std::uint16_t>(year);
    value.Date.Month = month;
    value.Date.Day = day;
    value.Time = {static_cast<std::uint8_t>(hour), static_cast<std::uint8_t>(minute), static_cast<std::uint8_t>(second),
                  static_cast<std::uint8_t>(hundredths)};
    return value;
}

TEST(SimTime, CountsHundredthsFrom1970) {
    EXPECT_EQ(ToLocalTime(Make(1970, 1, 1, 0, 0, 0, 0)), 0);
    EXPECT_EQ(ToLocalTime(Make(1970, 1, 2, 0, 0, 1, 7)), HUNDREDTHS_PER_DAY + 107);
    EXPECT_EQ(ToLocalTime(Make(1969, 12, 31, 23, 59, 59, 99)), -1);
}

TEST(SimTime, ConversionsAreInverseOverTheYearsOfTheWire) {
    for (LocalTime time = *ToLocalTime(Make(1900, 1, 1, 0, 0, 0, 0));
         time < *ToLocalTime(Make(2154, 12, 31, 0, 0, 0, 0)); time += 12345678901) {
        const BACSTAC_DATE_TIME value = ToDateTime(time);
        ASSERT_EQ(ToLocalTime(value), time);
    }
}

TEST(SimTime, KnowsWeekdays) {
    EXPECT_EQ(ToDateTime(*ToLocalTime(Make(2026, 11, 22, 12, 0, 0, 0))).Date.Weekday, 7U); // a Sunday
    EXPECT_EQ(ToDateTime(*ToLocalTime(Make(1969, 12, 31, 12, 0, 0, 0))).Date.Weekday, 3U); // a Wednesday
}

TEST(SimTime, RefusesUnspecifiedAndImpossibleFields) {
    EXPECT_FALSE(ToLocalTime(Make(BACSTAC_ANY_YEAR, 1, 1, 0, 0, 0, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, BACSTAC_ANY_MONTH, 1, 0, 0, 0, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, 13, 1, 0, 0, 0, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, 1, BACSTAC_ANY_DAY, 0, 0, 0, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, 1, 257, 0, 0, 0, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, 2, 29, 0, 0, 0, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, 1, 1, 24, 0, 0, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, 1, 1, 0, 60, 0, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, 1, 1, 0, 0, 60, 0)));
    EXPECT_FALSE(ToLocalTime(Make(2026, 1, 1, 0, 0, 0, BACSTAC_ANY_TIME)));
    EXPECT_TRUE(ToLocalTime(Make(2028, 2, 29, 23, 59, 59, 99)));
}

TEST(SimTime, WallClockIsALocalTimeOfThisCentury) {
    const BACSTAC_DATE_TIME now = ToDateTime(WallClock());
    EXPECT_GE(now.Date.Year, 2024);
    EXPECT_LT(now.Date.Year, 2100);
}

} // namespace
} // namespace sim
