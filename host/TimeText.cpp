#include "host/TimeText.h"

#include "base/NumberText.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace {

// Takes a field of exactly `digits` digits off the front.
bool TakeField(std::string_view& text, std::size_t digits, int& value) {
    const auto number = ParseU32(text.substr(0, digits));
    if (text.size() < digits || !number)
        return false;
    value = static_cast<int>(*number);
    text.remove_prefix(digits);
    return true;
}

bool TakeOneOf(std::string_view& text, std::string_view characters) {
    if (text.empty() || characters.find(text.front()) == std::string_view::npos)
        return false;
    text.remove_prefix(1);
    return true;
}

bool IsSameDay(const std::tm& left, const std::tm& right) {
    return left.tm_year == right.tm_year && left.tm_mon == right.tm_mon && left.tm_mday == right.tm_mday;
}

} // namespace

std::optional<std::uint32_t> ParseTime(std::string_view text) {
    if (!text.empty() && text.front() == '@')
        return ParseU32(text.substr(1));
    const bool isUtc = !text.empty() && text.back() == 'Z';
    if (isUtc)
        text.remove_suffix(1);
    std::tm time{};
    bool isGood = TakeField(text, 4, time.tm_year) && TakeOneOf(text, "-") && TakeField(text, 2, time.tm_mon) &&
                  TakeOneOf(text, "-") && TakeField(text, 2, time.tm_mday);
    if (isGood && !text.empty())
        isGood = TakeOneOf(text, " T") && TakeField(text, 2, time.tm_hour) && TakeOneOf(text, ":") &&
                 TakeField(text, 2, time.tm_min);
    if (isGood && !text.empty())
        isGood = TakeOneOf(text, ":") && TakeField(text, 2, time.tm_sec);
    if (!isGood || !text.empty() || time.tm_hour > 23 || time.tm_min > 59 || time.tm_sec > 59)
        return std::nullopt;
    time.tm_year -= 1900;
    time.tm_mon -= 1;
    time.tm_isdst = -1;
    std::tm normal = time;
    const std::time_t seconds = isUtc ? timegm(&normal) : std::mktime(&normal);
    if (!IsSameDay(normal, time) || seconds < 0 || seconds > 0xFFFFFFFELL)
        return std::nullopt;
    return static_cast<std::uint32_t>(seconds);
}

std::string FormatTime(std::uint32_t seconds, unsigned milliseconds) {
    const std::time_t time = seconds;
    std::tm local{};
    localtime_r(&time, &local);
    const long offset = local.tm_gmtoff / 60;
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03u%c%02ld:%02ld", local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, milliseconds,
                  offset < 0 ? '-' : '+', std::labs(offset) / 60, std::labs(offset) % 60);
    return text.data();
}
