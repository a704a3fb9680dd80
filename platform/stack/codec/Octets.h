// The contents octets of single primitives to and from the records (clause 20.2). No bounds are checked here: Reader
// and Writer do that.
#pragma once

#include "api/bacnet/Types.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

namespace bacnet {

inline constexpr std::uint32_t MAX_BITS = 8 * sizeof(BACSTAC_BIT_STRING::Bits);

// The first octet of an encoded bit is the most significant one, in the record it is the least significant.
inline constexpr std::uint8_t ReverseBits(std::uint8_t octet) {
    unsigned bits = octet;
    bits = (bits & 0xF0U) >> 4 | (bits & 0x0FU) << 4;
    bits = (bits & 0xCCU) >> 2 | (bits & 0x33U) << 2;
    bits = (bits & 0xAAU) >> 1 | (bits & 0x55U) << 1;
    return static_cast<std::uint8_t>(bits);
}

inline float RealOf(const std::uint8_t* octets) {
    const std::uint32_t bits =
        std::uint32_t{octets[0]} << 24 | std::uint32_t{octets[1]} << 16 | std::uint32_t{octets[2]} << 8 | octets[3];
    return std::bit_cast<float>(bits);
}

inline double DoubleOf(const std::uint8_t* octets) {
    std::uint64_t bits = 0;
    for (int i = 0; i < 8; ++i)
        bits = bits << 8 | octets[i];
    return std::bit_cast<double>(bits);
}

// octets: the unused count, which is at most 7, and the bits.
inline BACSTAC_BIT_STRING BitStringOf(std::span<const std::uint8_t> octets) {
    BACSTAC_BIT_STRING value{};
    const std::uint64_t bits = 8 * (std::uint64_t{octets.size()} - 1) - octets[0];
    value.BitCount = bits < MAX_BITS ? static_cast<std::uint32_t>(bits) : MAX_BITS;
    const std::uint32_t count = (value.BitCount + 7) / 8;
    for (std::uint32_t i = 0; i < count; ++i)
        value.Bits[i] = ReverseBits(octets[1 + i]);
    if (value.BitCount % 8 != 0)
        value.Bits[count - 1] &= static_cast<std::uint8_t>((1U << value.BitCount % 8) - 1);
    return value;
}

inline BACSTAC_DATE DateOf(const std::uint8_t* octets) {
    BACSTAC_DATE value{};
    value.Year = octets[0] == 255 ? BACSTAC_ANY_YEAR : static_cast<std::uint16_t>(1900 + octets[0]);
    value.Month = octets[1] == 255 ? BACSTAC_ANY_MONTH : octets[1];
    value.Day = octets[2]; // 255 is unspecified here too
    value.Weekday = octets[3] == 255 ? BACSTAC_ANY_WEEKDAY : octets[3];
    return value;
}

inline BACSTAC_TIME TimeOf(const std::uint8_t* octets) {
    return {octets[0], octets[1], octets[2], octets[3]};
}

inline BACSTAC_OBJECT_ID ObjectIdOf(const std::uint8_t* octets) {
    const std::uint32_t bits =
        std::uint32_t{octets[0]} << 24 | std::uint32_t{octets[1]} << 16 | std::uint32_t{octets[2]} << 8 | octets[3];
    return {bits >> 22, bits & BACSTAC_MAX_INSTANCE};
}

// A year that the encoding cannot hold goes to its nearest end: a time that is of no use as a reference then reads
// everything rather than nothing.
inline void DateToOctets(const BACSTAC_DATE& value, std::uint8_t* octets) {
    if (value.Year == BACSTAC_ANY_YEAR)
        octets[0] = 255;
    else if (value.Year < 1900)
        octets[0] = 0;
    else
        octets[0] = static_cast<std::uint8_t>(value.Year > 2154 ? 254 : value.Year - 1900);
    octets[1] = static_cast<std::uint8_t>(value.Month == BACSTAC_ANY_MONTH || value.Month > 255 ? 255 : value.Month);
    octets[2] = static_cast<std::uint8_t>(value.Day >= BACSTAC_ANY_DAY ? 255 : value.Day);
    octets[3] =
        static_cast<std::uint8_t>(value.Weekday == BACSTAC_ANY_WEEKDAY || value.Weekday > 255 ? 255 : value.Weekday);
}

} // namespace bacnet
