#include "module/history/LocalTime.h"

#include "api/kernel/VfiRecord.h"
#include "tests/unit/history/LogEntries.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>

namespace {

// Sets the process's time zone for one test.
class LocalTime : public testing::Test {
protected:
    LocalTime() {
        if (const char* zone = std::getenv("TZ"))
            m_old = zone;
    }
    ~LocalTime() override {
        if (m_old)
            ::setenv("TZ", m_old->c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }
    static void SetZone(const char* zone) {
        ::setenv("TZ", zone, 1);
        ::tzset();
    }

private:
    std::optional<std::string> m_old;
};

std::uint32_t ByLibrary(const BACSTAC_DATE_TIME& time) {
    std::tm fields{};
    fields.tm_year = time.Date.Year - 1900;
    fields.tm_mon = static_cast<int>(time.Date.Month) - 1;
    fields.tm_mday = static_cast<int>(time.Date.Day);
    fields.tm_hour = time.Time.Hour;
    fields.tm_min = time.Time.Minute;
    fields.tm_sec = time.Time.Second;
    fields.tm_isdst = -1;
    const std::time_t seconds = std::mktime(&fields);
    return seconds >= 0 && seconds < 0xFFFFFFFF ? static_cast<std::uint32_t>(seconds) : 0xFFFFFFFF;
}

// Rule texts, so that no zone database is needed: Central Europe, New York, a half-hour change, no change.
constexpr const char* CENTRAL_EUROPE = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* NEW_YORK = "EST5EDT,M3.2.0,M11.1.0";
constexpr const char* LORD_HOWE = "LHST-10:30LHDT-11,M10.1.0,M4.1.0";
constexpr const char* INDIA = "IST-5:30";

TEST_F(LocalTime, AgreesWithTheLibraryAllYear) {
    for (const char* zone : {"UTC0", CENTRAL_EUROPE, NEW_YORK, LORD_HOWE, INDIA}) {
        SetZone(zone);
        CLocalTimeConverter converter;
        // In ascending order the library takes the first of two hours, as the converter does.
        for (unsigned month = 1; month <= 12; ++month)
            for (unsigned day = 1; day <= 31; ++day)
                for (unsigned hour = 0; hour < 24; ++hour)
                    for (const unsigned minute : {0U, 29U, 30U, 59U}) {
                        const BACSTAC_DATE_TIME time = Time(2026, month, day, hour, minute, minute);
                        ASSERT_EQ(converter.ToSeconds(time), ByLibrary(time))
                            << zone << " " << month << "-" << day << " " << hour << ":" << minute;
                    }
    }
}

TEST_F(LocalTime, TakesTheFirstOfTwoHoursWhateverCameBefore) {
    SetZone(CENTRAL_EUROPE);
    const std::uint32_t first = 1792888200; // 25 October 2026 02:30 with daylight saving time
    for (const unsigned month : {1U, 7U}) {
        CLocalTimeConverter converter;
        ByLibrary(Time(2026, month, 15));
        converter.ToSeconds(Time(2026, month, 15));
        EXPECT_EQ(converter.ToSeconds(Time(2026, 10, 25, 2, 30)), first);
        EXPECT_EQ(converter.ToSeconds(Time(2026, 10, 25, 1, 59, 59)), first - 1801);
        EXPECT_EQ(converter.ToSeconds(Time(2026, 10, 25, 3, 0)), first + 1800 + 3600);
    }
    SetZone(LORD_HOWE);
    for (const unsigned month : {1U, 7U}) {
        CLocalTimeConverter converter;
        ByLibrary(Time(2026, month, 15));
        EXPECT_EQ(converter.ToSeconds(Time(2026, 4, 5, 1, 45)), 1775313900U);
    }
}

TEST_F(LocalTime, CountsOnThroughALeapOfTheClock) {
    SetZone(CENTRAL_EUROPE);
    for (const unsigned month : {1U, 7U}) {
        CLocalTimeConverter converter;
        ByLibrary(Time(2026, month, 15));
        EXPECT_EQ(converter.ToSeconds(Time(2026, 3, 29, 1, 59, 59)), 1774745999U);
        EXPECT_EQ(converter.ToSeconds(Time(2026, 3, 29, 2, 30)), 1774747800U);
        EXPECT_EQ(converter.ToSeconds(Time(2026, 3, 29, 3, 0)), 1774746000U);
    }
}

TEST_F(LocalTime, GivesOneResultInAnyOrder) {
    SetZone(LORD_HOWE);
    CLocalTimeConverter forth;
    CLocalTimeConverter back;
    std::vector<BACSTAC_DATE_TIME> times;
    for (const unsigned month : {4U, 10U})
        for (unsigned day = 3; day <= 6; ++day)
            for (unsigned minute = 0; minute < 1440; minute += 7)
                times.push_back(Time(2026, month, day, minute / 60, minute % 60));
    std::vector<std::uint32_t> results;
    for (const auto& time : times)
        results.push_back(forth.ToSeconds(time));
    for (std::size_t i = times.size(); i-- > 0;)
        ASSERT_EQ(back.ToSeconds(times[i]), results[i]) << i;
}

TEST_F(LocalTime, CarriesFieldsOutOfTheirRange) {
    SetZone(CENTRAL_EUROPE);
    CLocalTimeConverter converter;
    for (const BACSTAC_DATE_TIME& time :
         {Time(2026, 0, 1), Time(2026, 13, 1), Time(2026, 6, 0), Time(2026, 6, 255), Time(2026, 6, 31),
          Time(2026, 2, 30), Time(2026, 6, 10, 255, 255, 255), Time(2026, 6, 10, 24), Time(2026, 6, 10, 23, 60),
          Time(2026, 6, 10, 23, 59, 60)})
        EXPECT_EQ(converter.ToSeconds(time), ByLibrary(time)) << time.Date.Month << "-" << time.Date.Day;
}

TEST_F(LocalTime, HasNoTimeBeyond32Bits) {
    SetZone("UTC0");
    CLocalTimeConverter converter;
    EXPECT_EQ(converter.ToSeconds(Time(1900, 1, 1)), VFI_NO_TIME);
    EXPECT_EQ(converter.ToSeconds(Time(65535, 1, 1)), VFI_NO_TIME);
    EXPECT_EQ(converter.ToSeconds(Time(0, 0, 0)), VFI_NO_TIME);
    EXPECT_EQ(converter.ToSeconds(Time(1969, 12, 31, 23, 59, 59)), VFI_NO_TIME);
    EXPECT_EQ(converter.ToSeconds(Time(1970, 1, 1)), 0U);
    EXPECT_EQ(converter.ToSeconds(Time(2106, 2, 7, 6, 28, 14)), 0xFFFFFFFEU);
    EXPECT_EQ(converter.ToSeconds(Time(2106, 2, 7, 6, 28, 15)), VFI_NO_TIME);
    BACSTAC_DATE_TIME huge = Time(2026, 1, 1);
    huge.Date.Month = 0xFFFFFFFF;
    huge.Date.Day = 0x80000000;
    EXPECT_EQ(converter.ToSeconds(huge), VFI_NO_TIME);
    huge.Date.Month = 0x80000000;
    huge.Date.Day = 0xFFFFFFFF;
    EXPECT_EQ(converter.ToSeconds(huge), VFI_NO_TIME);
}

} // namespace
