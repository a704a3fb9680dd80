// How the product presents an alarm that a BACnet event raises: its text, where it goes, and what happens around it. A
// plain record, copied in and out by the editors. Text is in the narrow code page (UTF-8).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

// AlarmDefinition::targetFlags. Bits 0 to 15 are the user class: one bit, whose number is the index of the class.
inline constexpr std::uint32_t ALARM_TARGET_USER_CLASSES = 0x0000FFFF;
inline constexpr std::uint32_t ALARM_TARGET_POPUP_BUZZ = 1u << 16;
inline constexpr std::uint32_t ALARM_TARGET_POPUP = 1u << 29;
inline constexpr std::uint32_t ALARM_TARGET_SUMMARY = 1u << 30;
inline constexpr std::uint32_t ALARM_TARGET_PRINTER = 1u << 31;

// AlarmDefinition::attributeFlags.
inline constexpr std::uint8_t ALARM_ATTRIBUTE_DISCARD = 1u << 0;
inline constexpr std::uint8_t ALARM_ATTRIBUTE_AUTO_ACKNOWLEDGE = 1u << 1;
inline constexpr std::uint8_t ALARM_ATTRIBUTE_AUTO_END = 1u << 2;
inline constexpr std::uint8_t ALARM_ATTRIBUTE_HAS_HELP_FILE = 1u << 3; // set when helpFile is not empty
inline constexpr std::uint8_t ALARM_ATTRIBUTE_RECORD_TO_FILE = 1u << 4;
inline constexpr std::uint8_t ALARM_ATTRIBUTE_SYSTEM_WIDE = 1u << 5;
inline constexpr std::uint8_t ALARM_ATTRIBUTE_CLASS_AT_ACKNOWLEDGE = 1u << 6;

// AlarmDefinition::actionFlags.
inline constexpr std::uint32_t ALARM_ACTION_STARTED = 1u << 0;
inline constexpr std::uint32_t ALARM_ACTION_ACKNOWLEDGED = 1u << 1;
inline constexpr std::uint32_t ALARM_ACTION_ENDED = 1u << 2;
inline constexpr std::uint32_t ALARM_ACTION_NO_PRINTING = 1u << 5;
inline constexpr std::uint32_t ALARM_ACTION_PRINT_HELP_FILE = 1u << 6;
inline constexpr std::uint32_t ALARM_ACTION_FORCE_COMMENT = 1u << 11;
inline constexpr std::uint32_t ALARM_ACTION_FORCE_SIGN_IN = 1u << 12;

inline constexpr const char* ALARM_AUTO = "<auto>"; // a text that the product finds by itself
inline constexpr std::size_t ALARM_USER_FIELDS = 5;

struct AlarmDefinition {
    std::string text;     // may hold macros
    std::string family;   // may hold macros
    std::string helpFile; // a file name of at most 8 characters, or ALARM_AUTO
    std::uint16_t severity = 0;
    std::uint16_t zoneNumber = 0;
    std::uint32_t accessList = 1; // value of the access list dialog
    std::uint32_t targetFlags = ALARM_TARGET_SUMMARY;
    std::uint8_t attributeFlags = ALARM_ATTRIBUTE_DISCARD;
    std::uint32_t actionFlags = 0;
    std::array<std::string, ALARM_USER_FIELDS> userFields;
    std::string image = ALARM_AUTO;    // "Go to zone"
    std::string zoneName = ALARM_AUTO; // "Go to zone"
    std::string window;                // "Go to zone"
    std::string context;               // "Go to zone"
    std::string macroStarted;          // macro id, hexadecimal
    std::string macroAcknowledged;     // macro id, hexadecimal
    std::string macroEnded;            // macro id, hexadecimal
    std::uint32_t alertList = 0;       // value of the alert list dialog
    std::string printFile;             // for printer, fax and email
    std::string voiceFile;
    bool synthesizedText = true;
    std::uint16_t kept = 0; // copied with the record, no meaning here

    bool operator==(const AlarmDefinition&) const = default;
};
