#include "simulator/model/SimTime.h"

#include <chrono>
#include <ctime>

namespace sim {

namespace {

// Floor division: times before 1970 belong to the day that has begun.
std::chrono::sys_days DayOf(LocalTime time) {
    const LocalTime rest = time % HUNDREDTHS_PER_DAY;
    const LocalTime days = time / HUNDREDTHS_PER_DAY - (rest < 0 ? 1 : 0);
    return std::chrono::sys_days(std::chrono::days(static_cast<int>(days)));
}

LocalTime StartOf(std::chrono::sys_days day) {
    return static_cast<LocalTime>(day.time_since_epoch().count()) * HUNDREDTHS_PER_DAY;
}

} // namespace

BACSTAC_DATE_TIME ToDateTime(LocalTime time) {
    const std::chrono::sys_days day = DayOf(time);
    const std::chrono::year_month_day date(day);
    const auto rest = static_cast<std::uint32_t>(time - StartOf(day));

    BACSTAC_DATE_TIME value{};
    value.Date.Year = static_cast<std::uint16_t>(static_cast<int>(date.year()));
    value.Date.Month = static_cast<unsigned>(date.month());
    value.Date.Day = static_cast<unsigned>(date.day());
    value.Date.Weekday = std::chrono::weekday(day).iso_encoding();
    value.Time.Hour = static_cast<std::uint8_t>(rest / 360000);
    value.Time.Minute = static_cast<std::uint8_t>(rest / 6000 % 60);
    value.Time.Second = static_cast<std::uint8_t>(rest / 100 % 60);
    value.Time.Hundredths = static_cast<std::uint8_t>(rest % 100);
    return value;
}

std::optional<LocalTime> ToLocalTime(const BACSTAC_DATE_TIME& value) {
    const std::chrono::year_month_day date(std::chrono::year(value.Date.Year), std::chrono::month(value.Date.Month),
                                           std::chrono::day(value.Date.Day));
    const BACSTAC_TIME& time = value.Time;
    if (value.Date.Year == BACSTAC_ANY_YEAR || value.Date.Month > 12 || value.Date.Day > 31 || !date.ok())
        return std::nullopt;
    if (time.Hour > 23 || time.Minute > 59 || time.Second > 59 || time.Hundredths > 99)
        return std::nullopt;
    const LocalTime seconds = time.Hour * 3600 + time.Minute * 60 + time.Second;
    return StartOf(std::chrono::sys_days(date)) + seconds * HUNDREDTHS_PER_SECOND + time.Hundredths;
}

LocalTime WallClock() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto part = now - std::chrono::system_clock::from_time_t(seconds);
    const auto hundredths = std::chrono::duration_cast<std::chrono::milliseconds>(part).count() / 10;
    std::tm local{};
#if defined(_WIN32)
    localtime_s(&local, &seconds);
#else
    localtime_r(&seconds, &local);
#endif
    const auto day = std::chrono::sys_days(std::chrono::year_month_day(
        std::chrono::year(local.tm_year + 1900), std::chrono::month(static_cast<unsigned>(local.tm_mon + 1)),
        std::chrono::day(static_cast<unsigned>(local.tm_mday))));
    // A leap second is shown as the one before it.
    const LocalTime inDay = local.tm_hour * 3600 + local.tm_min * 60 + (local.tm_sec > 59 ? 59 : local.tm_sec);
    return StartOf(day) + inDay * HUNDREDTHS_PER_SECOND + hundredths;
}

} // namespace sim
