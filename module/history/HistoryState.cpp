#include "module/history/HistoryState.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string_view>

namespace {

constexpr const char* MANAGER_SECTION = "HistoryManager";
constexpr const char* LAST_TRANSFER_KEY = "LastTransferTime";
constexpr const char* POSITION_SECTION = "Trend position";

// Values are read into a buffer of 41 bytes, which holds so many characters.
constexpr std::size_t MAX_VALUE_LENGTH = 40;

// The fields of a time stamp in the order of its text.
enum FIELD { DAY, MONTH, YEAR, HOUR, MINUTE, SECOND, MILLISECONDS, FIELD_COUNT };
using Fields = std::array<std::int32_t, FIELD_COUNT>;

std::string Format(const Fields& f) {
    char text[96];
    std::snprintf(text, sizeof text, "%02d/%02d/%04d %02d:%02d:%02d.%03d", f[DAY], f[MONTH], f[YEAR], f[HOUR],
                  f[MINUTE], f[SECOND], f[MILLISECONDS]);
    return text;
}

void SkipBlanks(std::string_view& text) {
    while (!text.empty() && (text.front() == ' ' || (text.front() >= '\t' && text.front() <= '\r')))
        text.remove_prefix(1);
}

// A decimal number with blanks and a sign in front, saturating; leading zeros do not make it octal.
bool ParseNumber(std::string_view& text, std::int32_t& number) {
    SkipBlanks(text);
    std::string_view rest = text;
    const bool negative = !rest.empty() && rest.front() == '-';
    if (!rest.empty() && (rest.front() == '-' || rest.front() == '+'))
        rest.remove_prefix(1);
    if (rest.empty() || rest.front() < '0' || rest.front() > '9')
        return false;
    std::int64_t value = 0;
    for (; !rest.empty() && rest.front() >= '0' && rest.front() <= '9'; rest.remove_prefix(1))
        value = std::min<std::int64_t>(value * 10 + (rest.front() - '0'), std::int64_t{1} << 40);
    value = std::clamp<std::int64_t>(negative ? -value : value, std::numeric_limits<std::int32_t>::min(),
                                     std::numeric_limits<std::int32_t>::max());
    number = static_cast<std::int32_t>(value);
    text = rest;
    return true;
}

// Stops at the first mismatch; the fields behind it stay as they are.
void Parse(const std::string& value, Fields& fields) {
    constexpr char SEPARATORS[FIELD_COUNT] = {'/', '/', ' ', ':', ':', '.', '\0'}; // behind each field
    std::string_view text = std::string_view(value).substr(0, MAX_VALUE_LENGTH);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!ParseNumber(text, fields[i]))
            return;
        if (SEPARATORS[i] == ' ')
            continue; // blanks in front of a number do not count
        if (text.empty() || text.front() != SEPARATORS[i])
            return;
        text.remove_prefix(1);
    }
}

} // namespace

BACSTAC_DATE_TIME ParsePosition(const std::string& text) {
    BACSTAC_DATE_TIME position{};
    if (text.empty()) {
        position.Date.Year = 1900;
        position.Date.Month = 1;
        position.Date.Day = 1;
        return position;
    }
    Fields fields{};
    Parse(text, fields);
    position.Date.Day = static_cast<std::uint32_t>(fields[DAY]);
    position.Date.Month = static_cast<std::uint32_t>(fields[MONTH]);
    position.Date.Year = static_cast<std::uint16_t>(fields[YEAR]);
    position.Time.Hour = static_cast<std::uint8_t>(fields[HOUR]);
    position.Time.Minute = static_cast<std::uint8_t>(fields[MINUTE]);
    position.Time.Second = static_cast<std::uint8_t>(fields[SECOND]);
    position.Time.Hundredths = static_cast<std::uint8_t>(fields[MILLISECONDS] / 10);
    return position;
}

std::string FormatPosition(const BACSTAC_DATE_TIME& position) {
    if (position.Date.Year == 0)
        return {};
    return Format({static_cast<std::int32_t>(position.Date.Day), static_cast<std::int32_t>(position.Date.Month),
                   position.Date.Year, position.Time.Hour, position.Time.Minute, position.Time.Second,
                   position.Time.Hundredths * 10});
}

std::string FormatTransferTime(const SYSTEM_TIME& time) {
    if (time.Year == 0)
        return {};
    return Format({time.Day, time.Month, time.Year, time.Hour, time.Minute, time.Second, time.Milliseconds});
}

CHistoryState::CHistoryState(std::string path) : m_file(std::move(path), POSITION_SECTION) {}

SYSTEM_TIME CHistoryState::LoadLastTransferTime() const {
    Fields fields{};
    Parse(m_file.Read(MANAGER_SECTION, LAST_TRANSFER_KEY), fields);
    SYSTEM_TIME time{};
    time.Day = static_cast<std::uint16_t>(fields[DAY]);
    time.Month = static_cast<std::uint16_t>(fields[MONTH]);
    time.Year = static_cast<std::uint16_t>(fields[YEAR]);
    time.Hour = static_cast<std::uint16_t>(fields[HOUR]);
    time.Minute = static_cast<std::uint16_t>(fields[MINUTE]);
    time.Second = static_cast<std::uint16_t>(fields[SECOND]);
    time.Milliseconds = static_cast<std::uint16_t>(fields[MILLISECONDS]);
    return time;
}

bool CHistoryState::SaveLastTransferTime(const SYSTEM_TIME& time) const {
    return time.Year == 0 || m_file.Write(MANAGER_SECTION, LAST_TRANSFER_KEY, FormatTransferTime(time));
}

void CHistoryState::LoadTrendPosition(const std::string& objectName, BACSTAC_DATE_TIME& position) const {
    position = ParsePosition(m_file.Read(POSITION_SECTION, objectName));
}

bool CHistoryState::SaveTrendPosition(const std::string& objectName, const BACSTAC_DATE_TIME& position) const {
    return m_file.Write(POSITION_SECTION, objectName, FormatPosition(position));
}
