#include "host/TimeText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace {

class CTimeZone {
public:
    explicit CTimeZone(const char* name) {
        setenv("TZ", name, 1);
        tzset();
    }
    ~CTimeZone() {
        unsetenv("TZ");
        tzset();
    }
};

} // namespace

TEST(TimeText, TimeIsLocalUnlessItSaysOtherwise) {
    const CTimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(ParseTime("2026-01-05"), 1767567600U);
    EXPECT_EQ(ParseTime("2026-01-05 12:30"), 1767612600U);
    EXPECT_EQ(ParseTime("2026-01-05T12:30:15"), 1767612615U);
    EXPECT_EQ(ParseTime("2026-07-05 12:00"), 1783245600U);
    EXPECT_EQ(ParseTime("2026-01-05 12:30:15Z"), 1767616215U);
    EXPECT_EQ(ParseTime("@1767616215"), 1767616215U);
}

TEST(TimeText, TimeRefusesWhatIsNoPointInTime) {
    for (const char* text : {"", "2026", "2026-13-01", "2026-02-29", "2026-1-05", "2026-01-05 24:00", "2026-01-05 12",
                             "2026-01-05 12:60", "2026-01-05 12:30:60", "2026-01-05x", "2026-01-05 12:30:15+01:00",
                             "1969-12-31Z", "2107-01-01", "@-1", "@4294967296", "-026-01-05"})
        EXPECT_EQ(ParseTime(text), std::nullopt) << text;
}

TEST(TimeText, FormattedTimeCarriesItsOffset) {
    const CTimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(FormatTime(1767612615, 40), "2026-01-05T12:30:15.040+01:00");
    EXPECT_EQ(FormatTime(1783245600, 999), "2026-07-05T12:00:00.999+02:00");
    const CTimeZone other("NST3:30");
    EXPECT_EQ(FormatTime(0, 0), "1969-12-31T20:30:00.000-03:30");
}
