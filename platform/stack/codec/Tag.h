// Tags of the BACnet encoding (ANSI/ASHRAE 135 clause 20.2.1), and what can be wrong with encoded octets.
#pragma once

#include "platform/stack/schema/ApplicationTag.h"

#include <cstddef>
#include <cstdint>

namespace bacnet {

// Where a typed read or write expects the application tag of its type, instead of a context tag 0..254.
inline constexpr int APPLICATION = -1;

// Constructed values nested deeper than this are refused: the standard's own go to about ten.
inline constexpr unsigned MAX_NESTING = 32;

enum class TagKind : std::uint8_t { application, context, opening, closing };

struct Tag {
    std::uint8_t Number = 0; // application: the data type 0..15; else the context tag 0..254
    TagKind Kind = TagKind::application;
    std::uint32_t Length = 0; // octets of the contents; 0 for opening, closing and the application boolean
    bool Value = false;       // of an application boolean, which has no contents
};

enum class DecodeError : std::uint8_t {
    none,
    truncated,  // a length reaches beyond the octets
    badTag,     // not an encoding of any tag
    badLength,  // the contents cannot be a value of that type
    unexpected, // another tag than the grammar has here
    unbalanced, // a closing tag that closes nothing, or not what was opened
    tooDeep,    // nested beyond MAX_NESTING
    tooMany,    // more elements than the caller's cap
};

const char* DecodeErrorText(DecodeError error);

} // namespace bacnet
