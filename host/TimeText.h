// Points in time as people type them on a command line. Pure functions; no locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// "YYYY-MM-DD", "YYYY-MM-DD hh:mm", "YYYY-MM-DD hh:mm:ss" (also with "T") in local time, with a "Z" behind it in UTC,
// or
// "@SECONDS" since 1970. Seconds since 1970; refuses a date that does not exist.
std::optional<std::uint32_t> ParseTime(std::string_view text);

// "YYYY-MM-DDThh:mm:ss.mmm+hh:mm", local time.
std::string FormatTime(std::uint32_t seconds, unsigned milliseconds);
