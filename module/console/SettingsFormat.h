// Constants of the settings file. docs/settings-file.md describes the format in prose.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The file begins with the version line, "VERSION=05" and a NUL. A file without one is version 0 and begins with a
// section.
inline constexpr std::string_view SETTINGS_VERSION_KEY = "VERSION=";
inline constexpr std::string_view SETTINGS_HEADER{"VERSION=05\0", 11};
inline constexpr int SETTINGS_NO_HEADER = 0;

// The first version that has a field. Files of a later version than the current one are read as the current one.
inline constexpr int SETTINGS_VERSION_HEADER = 1;
inline constexpr int SETTINGS_VERSION_FORCE_2001 = 1;
inline constexpr int SETTINGS_VERSION_LONG_ALARM_RECORD = 2;
inline constexpr int SETTINGS_VERSION_BACKUP_PASSWORD = 3;
inline constexpr int SETTINGS_VERSION_RESTORE_TAG = 4;
inline constexpr int SETTINGS_VERSION_FILTER_SELECTIONS = 5;
inline constexpr int SETTINGS_VERSION_HELP_FILE_FORMAT = 5;
inline constexpr int SETTINGS_VERSION_CURRENT = 5;

// A section is its number, the payload's length (both u32) and the payload.
enum class SettingsSection : std::uint32_t {
    Log = 1,
    TimeSync = 2,
    EventFilters = 4, // read, never written
    History = 5,
    General = 7,
    Backup = 8,
};
inline constexpr std::uint32_t SETTINGS_LOG_SIZE = 28; // section 1 is refused with another length

// Length of a text: one byte below TEXT_LONG; else TEXT_LONG and a u16; else TEXT_LONG, TEXT_VERY_LONG and a u32. A u16
// of TEXT_WIDE is no length: behind it the length form begins anew and counts UTF-16 units. Wide text is read, never
// written.
inline constexpr std::uint8_t SETTINGS_TEXT_LONG = 0xFF;
inline constexpr std::uint16_t SETTINGS_TEXT_WIDE = 0xFFFE;
inline constexpr std::uint16_t SETTINGS_TEXT_VERY_LONG = 0xFFFF;

// Bytes that the file is read and written in.
inline constexpr std::size_t SETTINGS_BUFFER_SIZE = 4096;
