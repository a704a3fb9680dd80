// Decimal text to a number, the same on every platform.
#pragma once

#include <cstdint>
#include <string_view>

// The number that the text begins with, behind blanks and a sign, as 32 bits: 0 without a digit, the largest number
// when it is too large. A negative number gives the bits of its two's complement.
constexpr std::uint32_t DecToU32(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || (text.front() >= '\t' && text.front() <= '\r')))
        text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
        text.remove_prefix(1);
    std::uint64_t value = 0;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1)) {
        value = value * 10 + static_cast<std::uint64_t>(text.front() - '0');
        if (value > 0xFFFFFFFFU)
            return 0xFFFFFFFFU;
    }
    return static_cast<std::uint32_t>(negative ? 0 - value : value);
}
