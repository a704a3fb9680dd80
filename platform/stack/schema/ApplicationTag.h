// Application tag numbers of the primitive types (ANSI/ASHRAE 135 clause 20.2.1.4).
#pragma once

#include <cstdint>

namespace bacnet {

enum ApplicationTag : std::uint8_t {
    TAG_NULL = 0,
    TAG_BOOLEAN = 1,
    TAG_UNSIGNED = 2,
    TAG_SIGNED = 3,
    TAG_REAL = 4,
    TAG_DOUBLE = 5,
    TAG_OCTET_STRING = 6,
    TAG_CHARACTER_STRING = 7,
    TAG_BIT_STRING = 8,
    TAG_ENUMERATED = 9,
    TAG_DATE = 10,
    TAG_TIME = 11,
    TAG_OBJECT_ID = 12,
};

inline constexpr std::uint8_t TAG_OF_NO_TYPE = 255;

} // namespace bacnet
