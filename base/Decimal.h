// Decimal text to a number, the same on every platform.
#pragma once

#include <cstdint>
#include <string_view>

// Larger than any number of 32 bits.
inline constexpr std::int64_t DEC_TOO_LARGE = 0x100000000;

// The number that the text begins with, behind blanks and a sign: 0 without a digit, plus or minus DEC_TOO_LARGE when
// its digits do not fit 32 bits.
constexpr std::int64_t DecToI64(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || (text.front() >= '\t' && text.front() <= '\r')))
        text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
        text.remove_prefix(1);
    std::int64_t value = 0;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1)) {
        value = value * 10 + (text.front() - '0');
        if (value >= DEC_TOO_LARGE) {
            value = DEC_TOO_LARGE;
            break;
        }
    }
    return negative ? -value : value;
}

// The same as 32 bits: the largest number when it is too large. A negative number gives the bits of its two's
// complement.
constexpr std::uint32_t DecToU32(std::string_view text) {
    const std::int64_t value = DecToI64(text);
    const bool fits = value > -DEC_TOO_LARGE && value < DEC_TOO_LARGE;
    return fits ? static_cast<std::uint32_t>(value) : 0xFFFFFFFFU;
}
