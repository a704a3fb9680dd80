#include "simulator/model/DatePattern.h"

#include <chrono>

namespace sim {

namespace {

constexpr std::uint32_t ODD_MONTHS = 13;
constexpr std::uint32_t EVEN_MONTHS = 14;
constexpr std::uint32_t LAST_DAY = 32;
constexpr std::uint32_t ODD_DAYS = 33;
constexpr std::uint32_t EVEN_DAYS = 34;
constexpr std::uint8_t ANY = 255; // in the octets of a week-n-day
constexpr unsigned DAYS_PER_WEEK = 7;
constexpr unsigned LAST_WEEK = 6; // of the month; the weeks before it follow
constexpr unsigned WEEKS_FROM_THE_END = 4;

std::uint32_t DaysOfMonth(const BACSTAC_DATE& day) {
    const std::chrono::year_month_day_last last(std::chrono::year(day.Year) / std::chrono::month(day.Month) /
                                                std::chrono::last);
    return static_cast<unsigned>(last.day());
}

bool IsMonth(std::uint32_t pattern, const BACSTAC_DATE& day) {
    switch (pattern) {
    case BACSTAC_ANY_MONTH:
        return true;
    case ODD_MONTHS:
        return day.Month % 2 == 1;
    case EVEN_MONTHS:
        return day.Month % 2 == 0;
    default:
        return pattern == day.Month;
    }
}

bool IsDayOfMonth(std::uint32_t pattern, const BACSTAC_DATE& day) {
    switch (pattern) {
    case LAST_DAY:
        return day.Day == DaysOfMonth(day);
    case ODD_DAYS:
        return day.Day % 2 == 1;
    case EVEN_DAYS:
        return day.Day % 2 == 0;
    default:
        return pattern >= BACSTAC_ANY_DAY || pattern == day.Day;
    }
}

bool IsWeekOfMonth(unsigned week, const BACSTAC_DATE& day) {
    if (week == ANY)
        return true;
    if (week < LAST_WEEK)
        return week == (day.Day - 1) / DAYS_PER_WEEK + 1;
    const unsigned fromTheEnd = (DaysOfMonth(day) - day.Day) / DAYS_PER_WEEK;
    return fromTheEnd < WEEKS_FROM_THE_END && week == LAST_WEEK + fromTheEnd;
}

// A number that orders days. What is unspecified is that of the day, or the given end of the month and the year.
std::uint32_t Order(const BACSTAC_DATE& date, const BACSTAC_DATE& day, std::uint32_t month, std::uint32_t dayOfMonth) {
    const std::uint32_t year = date.Year == BACSTAC_ANY_YEAR ? day.Year : date.Year;
    const std::uint32_t ofYear = date.Month == BACSTAC_ANY_MONTH ? month : date.Month;
    return year << 16 | ofYear << 8 | (date.Day >= BACSTAC_ANY_DAY ? dayOfMonth : date.Day);
}

} // namespace

bool IsDayOf(const BACSTAC_DATE& pattern, const BACSTAC_DATE& day) {
    return (pattern.Year == BACSTAC_ANY_YEAR || pattern.Year == day.Year) && IsMonth(pattern.Month, day) &&
           IsDayOfMonth(pattern.Day, day) && (pattern.Weekday == BACSTAC_ANY_WEEKDAY || pattern.Weekday == day.Weekday);
}

bool IsDayOf(const BACSTAC_DATE_RANGE& range, const BACSTAC_DATE& day) {
    const std::uint32_t today = Order(day, day, 0, 0);
    return Order(range.Start, day, 1, 1) <= today && today <= Order(range.End, day, 12, 31);
}

bool IsDayOfWeekNDay(std::span<const std::uint8_t> octets, const BACSTAC_DATE& day) {
    return octets.size() == 3 && IsMonth(octets[0] == ANY ? BACSTAC_ANY_MONTH : octets[0], day) &&
           IsWeekOfMonth(octets[1], day) && (octets[2] == ANY || octets[2] == day.Weekday);
}

bool IsDayOfEntry(bacnet::Reader& entry, const BACSTAC_DATE& day) {
    enum Choice : unsigned { date, range, weekNDay };
    if (entry.IsContext(date)) {
        BACSTAC_DATE pattern{};
        return entry.Date(pattern, date) && IsDayOf(pattern, day);
    }
    if (entry.IsOpening(range)) {
        BACSTAC_DATE_RANGE days{};
        return entry.Open(range) && entry.Date(days.Start) && entry.Date(days.End) && entry.Close(range) &&
               IsDayOf(days, day);
    }
    std::span<const std::uint8_t> octets;
    return entry.OctetString(octets, weekNDay) && IsDayOfWeekNDay(octets, day);
}

} // namespace sim
