// The kernel's description of one tag, 1468 bytes. The caller clears the record and sets size before each call; a call
// with another size fails.
#pragma once

#include <cstddef>
#include <cstdint>

inline constexpr std::uint16_t TAG_TYPE_ANALOG = 1;
inline constexpr std::uint16_t TAG_TYPE_COUNTER = 2;
inline constexpr std::uint16_t TAG_TYPE_TEXT = 4;
inline constexpr std::uint16_t TAG_TYPE_DIGITAL = 6;

struct TagDefinition {
    std::uint16_t size;    // sizeof(TagDefinition)
    char name[48];         // NUL-terminated UTF-8
    std::uint16_t type;    // TAG_TYPE_*
    char description[128]; // NUL-terminated UTF-8
    char unit[32];         // NUL-terminated UTF-8
    std::uint8_t reserved1[100];
    std::uint32_t historyEnabled; // not 0 when the kernel itself records the tag
    std::uint8_t reserved2[388];
    std::uint8_t flags; // TAG_FLAG_*
    std::uint8_t reserved3[763];
};

inline constexpr std::uint8_t TAG_FLAG_HISTORY_COPY = 0x04; // bit 2, handed through with a history transfer's tags

static_assert(sizeof(TagDefinition) == 1468);
static_assert(offsetof(TagDefinition, name) == 2 && offsetof(TagDefinition, type) == 50);
static_assert(offsetof(TagDefinition, historyEnabled) == 312 && offsetof(TagDefinition, flags) == 704);
