// What the log file page shows and what it does with it, without its controls. The logger's calls follow the settings
// only when they are saved. Pure but for ApplyLog; the caller holds the module lock.
#pragma once

#include "module/console/Settings.h"

#include <cstdint>
#include <string>

class CQilBAC_ErrLog;

// The flags of LogSettings, each with a check box.
enum LOG_CHECK { CHECK_ONLINE, CHECK_ONLINE_SIZE, CHECK_HISTORICAL, CHECK_HISTORICAL_SIZE, CHECK_SESSIONS };
inline constexpr int LOG_CHECK_COUNT = 5;
// The limits, each with a text.
enum LOG_LIMIT { LIMIT_ONLINE_SIZE, LIMIT_HISTORICAL_SIZE, LIMIT_SESSIONS };
inline constexpr int LOG_LIMIT_COUNT = 3;

inline constexpr int LOG_LEVEL_COUNT = 4;
inline constexpr int NO_LOG_LEVEL = -1;

struct LogPageFields {
    bool checks[LOG_CHECK_COUNT] = {};
    std::string limits[LOG_LIMIT_COUNT];
    int level = NO_LOG_LEVEL; // also for a level of the file that has no choice

    bool operator==(const LogPageFields&) const = default;
};

LogPageFields ShowLog(const LogSettings& settings);
// Texts that are no numbers count as 0, and a number is taken whatever it is: only the arrows have a range. Without a
// chosen level that of the settings stays.
void TakeLog(const LogPageFields& fields, LogSettings& settings);

// What can be changed for the present checks.
struct LogPageEnabled {
    bool checks[LOG_CHECK_COUNT] = {};
    bool limits[LOG_LIMIT_COUNT] = {};

    bool operator==(const LogPageEnabled&) const = default;
};
LogPageEnabled EnabledFor(const LogPageFields& fields);

// The logger's filter word: categories 0 to 11 stay in their places, category 12 goes to bit 31. SetFilter takes the
// low 16 bits, so that it never hears of the thirteenth category: this gap is deliberate.
constexpr std::uint32_t FilterOfMask(std::uint32_t categoryMask) {
    return (categoryMask & 0xFFFU) | (categoryMask >> 12 & 1U) << 31;
}

// Gives the logger all settings, in the order that it is used to.
void ApplyLog(const LogSettings& settings, CQilBAC_ErrLog& log);
