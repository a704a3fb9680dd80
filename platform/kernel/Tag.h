// A tag as the kernel's owner defines it and as the kernel shows it. Values: no thread rules of their own.
#pragma once

#include "api/kernel/TagDefinition.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

// No value yet, the value of an analog, counter or digital tag, or the UTF-8 text of a text tag.
using TagValue = std::variant<std::monostate, double, std::string>;

struct TagSettings {
    std::string name;        // UTF-8, 1..47 bytes, unique; no ":" (it ends a station's name), no control characters
    std::uint16_t type = 0;  // TAG_TYPE_*
    std::string description; // UTF-8, given as far as 127 bytes go
    std::string unit;        // UTF-8, given as far as 31 bytes go
    bool historyEnabled = false;
    bool historyCopy = false; // TAG_FLAG_HISTORY_COPY
    TagValue value;           // to begin with; a number or a text as the type asks, or none
    // The tag's number, for an owner that keeps numbers over restarts: they stand in the historical store. None: the
    // number behind the last one. Numbers that are passed over are deleted slots.
    std::optional<std::uint16_t> number;
};

struct TagInfo {
    std::uint32_t id;     // the tag's number: a local id without a station
    TagSettings settings; // its value is the present one
};

enum class AddTagResult {
    Added,
    BadName,
    BadType,
    BadValue, // the value is not of the tag's type
    NameTaken,
    NumberTaken, // by a tag that is there, or by another one that was: numbers are not given twice
    Full,        // 65535 numbers were given, or the number is 65535
};

// One line about a result, for the owner's error message. UTF-8, static.
const char* AddTagResultText(AddTagResult result);
