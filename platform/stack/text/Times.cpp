// Times of BACnet and of the platform: order, text, conversion.
#include "api/bacnet/BacGeneral.h"
#include "platform/stack/text/Phrases.h"

#include <algorithm>
#include <chrono>
#include <optional>

using namespace bacnet;

namespace {

constexpr std::size_t TIME_TEXT_SIZE = 50;

// Fields of a time, the most significant first; unspecified ones have no value.
using Field = std::optional<std::uint32_t>;

Field Specified(std::uint32_t value, bool specified) {
    return specified ? Field(value) : std::nullopt;
}

struct Fields {
    explicit Fields(const BACSTAC_DATE_TIME& time)
        : Values{Specified(time.Date.Year, time.Date.Year != BACSTAC_ANY_YEAR),
                 Specified(time.Date.Month, time.Date.Month != BACSTAC_ANY_MONTH),
                 Specified(time.Date.Day, time.Date.Day < BACSTAC_ANY_DAY),
                 Specified(time.Time.Hour, time.Time.Hour != BACSTAC_ANY_TIME),
                 Specified(time.Time.Minute, time.Time.Minute != BACSTAC_ANY_TIME),
                 Specified(time.Time.Second, time.Time.Second != BACSTAC_ANY_TIME),
                 Specified(time.Time.Hundredths, time.Time.Hundredths != BACSTAC_ANY_TIME)} {}
    Field Values[7];
};

// 1 Monday to 7 Sunday; nothing for a day that the calendar does not have.
std::optional<unsigned> WeekdayOf(std::uint32_t year, std::uint32_t month, std::uint32_t day) {
    if (year == 0 || year > 9999 || month > 12 || day > 31) // the calendar's types would wrap
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(year)), std::chrono::month(month),
                                           std::chrono::day(day)};
    if (!date.ok())
        return std::nullopt;
    return std::chrono::weekday(std::chrono::sys_days(date)).iso_encoding();
}

std::uint16_t Narrow(std::uint32_t value) {
    return static_cast<std::uint16_t>(value);
}

std::uint16_t OrZero(std::uint8_t timeField) {
    return timeField == BACSTAC_ANY_TIME ? std::uint16_t{0} : timeField;
}

} // namespace

COMPARAISON Compare(BACSTAC_DATE_TIME const& left, BACSTAC_DATE_TIME const& right) {
    const Fields leftFields(left);
    const Fields rightFields(right);
    for (std::size_t i = 0; i < std::size(leftFields.Values); ++i) {
        const Field& one = leftFields.Values[i];
        const Field& other = rightFields.Values[i];
        if (!one || !other || *one == *other)
            continue;
        return *one < *other ? COMPARE_LESS : COMPARE_GREATER;
    }
    return COMPARE_EQUAL;
}

char* ToText(BACSTAC_DATE_TIME const* value, char* buffer) {
    TextWriter out(buffer, TIME_TEXT_SIZE);
    if (value != nullptr) {
        PutDateFields(out, value->Date);
        out.Put(" ");
        PutTime(out, value->Time);
    }
    return buffer;
}

void BACstacTimeToSystemTime(BACSTAC_DATE_TIME const& from, SYSTEM_TIME& to) {
    const BACSTAC_DATE& date = from.Date;
    to = {};
    to.Year = date.Year == BACSTAC_ANY_YEAR ? std::uint16_t{0} : date.Year;
    to.Month = date.Month > 12 ? std::uint16_t{0} : Narrow(date.Month);
    to.Day = date.Day > 31 ? std::uint16_t{0} : Narrow(date.Day);
    const auto weekday = WeekdayOf(to.Year, to.Month, to.Day);
    to.DayOfWeek = Narrow(weekday.value_or(date.Weekday <= 7 ? date.Weekday : BACSTAC_ANY_WEEKDAY) % 7);
    to.Hour = OrZero(from.Time.Hour);
    to.Minute = OrZero(from.Time.Minute);
    to.Second = OrZero(from.Time.Second);
    to.Milliseconds = Narrow(OrZero(from.Time.Hundredths) * 10U);
}

void SystemTimeToBACstacTime(SYSTEM_TIME const& from, BACSTAC_DATE_TIME& to) {
    const auto octet = [](std::uint32_t value) {
        return static_cast<std::uint8_t>(std::min<std::uint32_t>(value, BACSTAC_ANY_TIME));
    };
    to = {};
    to.Date.Year = from.Year == 0 ? BACSTAC_ANY_YEAR : from.Year;
    to.Date.Month = from.Month;
    to.Date.Day = from.Day == 0 ? BACSTAC_ANY_DAY : from.Day;
    to.Date.Weekday = WeekdayOf(from.Year, from.Month, from.Day).value_or(BACSTAC_ANY_WEEKDAY);
    to.Time.Hour = octet(from.Hour);
    to.Time.Minute = octet(from.Minute);
    to.Time.Second = octet(from.Second);
    to.Time.Hundredths = octet(from.Milliseconds / 10U);
}
