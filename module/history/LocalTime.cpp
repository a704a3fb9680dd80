#include "module/history/LocalTime.h"

#include "api/kernel/VfiRecord.h"

#include <ctime>
#include <initializer_list>

namespace {

constexpr std::int64_t DAY = 86400;
constexpr std::int64_t NO_TIME = -1;

struct Civil {
    int year;
    int month; // 1..12
    int day;
    int hour;
    int minute;
    int second;
};

bool LocalTime(std::int64_t seconds, std::tm& local) {
    const auto time = static_cast<std::time_t>(seconds);
#if defined(_WIN32)
    return ::localtime_s(&local, &time) == 0;
#else
    return ::localtime_r(&time, &local) != nullptr;
#endif
}

// Seconds that a clock without any changes counts from 1 January 1970 to this time. Fields may be out of their range.
std::int64_t CountSeconds(std::int64_t year, std::int64_t month, std::int64_t day, std::int64_t hour,
                          std::int64_t minute, std::int64_t second) {
    std::int64_t months = year * 12 + (month - 1);
    std::int64_t y = months / 12;
    std::int64_t m = months % 12;
    if (m < 0) {
        m += 12;
        --y;
    }
    // Days of the proleptic Gregorian calendar, with years that begin in March.
    if (m < 2)
        --y;
    const std::int64_t monthFromMarch = (m + 10) % 12;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yearOfEra = y - era * 400;
    const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5;
    const std::int64_t days =
        era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468 + (day - 1);
    return days * DAY + hour * 3600 + minute * 60 + second;
}

bool LocalOffset(std::int64_t seconds, std::int64_t& offset) {
    std::tm local{};
    if (!LocalTime(seconds, local))
        return false;
    offset = CountSeconds(local.tm_year + std::int64_t{1900}, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                          local.tm_min, local.tm_sec) -
             seconds;
    return true;
}

std::int64_t Convert(const Civil& civil) {
    std::tm fields{};
    fields.tm_year = civil.year - 1900;
    fields.tm_mon = static_cast<int>(static_cast<unsigned>(civil.month) - 1U); // any 32 bits may come from a device
    fields.tm_mday = civil.day;
    fields.tm_hour = civil.hour;
    fields.tm_min = civil.minute;
    fields.tm_sec = civil.second;
    fields.tm_wday = -1;
    fields.tm_yday = -1;
    fields.tm_isdst = -1;
    const std::int64_t seconds = std::mktime(&fields);
    std::int64_t before = 0;
    std::int64_t after = 0;
    if (seconds == NO_TIME || !LocalOffset(seconds - DAY, before) || !LocalOffset(seconds + DAY, after) ||
        before == after)
        return seconds;
    const std::int64_t counted =
        CountSeconds(civil.year, civil.month, civil.day, civil.hour, civil.minute, civil.second);
    for (const std::int64_t offset : {before, after}) {
        std::int64_t there = 0;
        if (LocalOffset(counted - offset, there) && there == offset)
            return counted - offset;
    }
    return counted - before;
}

std::uint32_t Narrow(std::int64_t seconds) {
    return seconds >= 0 && seconds < VFI_NO_TIME ? static_cast<std::uint32_t>(seconds) : VFI_NO_TIME;
}

} // namespace

std::uint32_t CLocalTimeConverter::ToSeconds(const BACSTAC_DATE_TIME& time) {
    const Civil civil{time.Date.Year,
                      static_cast<int>(time.Date.Month),
                      static_cast<int>(time.Date.Day),
                      time.Time.Hour,
                      time.Time.Minute,
                      time.Time.Second};
    if (civil.hour > 23 || civil.minute > 59 || civil.second > 59 || civil.month < 1 || civil.month > 12 ||
        civil.day < 1 || civil.day > 31)
        return Narrow(Convert(civil));
    const std::int64_t inHour = civil.minute * 60 + civil.second;

    const std::uint64_t day = (std::uint64_t{time.Date.Year} * 16 + time.Date.Month) * 32 + time.Date.Day;
    if (m_day.key != day) {
        m_day.key = day;
        m_day.begin = Convert({civil.year, civil.month, civil.day, 0, 0, 0});
        std::int64_t before = 0;
        std::int64_t after = 0;
        m_day.even = m_day.begin != NO_TIME && LocalOffset(m_day.begin - DAY, before) &&
                     LocalOffset(m_day.begin + 2 * DAY, after) && before == after;
    }
    if (m_day.even)
        return Narrow(m_day.begin + civil.hour * 3600 + inHour);

    const std::uint64_t hour = day * 32 + time.Time.Hour;
    if (m_hour.key != hour) {
        m_hour.key = hour;
        m_hour.begin = Convert({civil.year, civil.month, civil.day, civil.hour, 0, 0});
        m_hour.even = m_hour.begin != NO_TIME &&
                      Convert({civil.year, civil.month, civil.day, civil.hour, 59, 59}) == m_hour.begin + 3599;
    }
    if (m_hour.even)
        return Narrow(m_hour.begin + inHour);
    return Narrow(Convert(civil));
}
