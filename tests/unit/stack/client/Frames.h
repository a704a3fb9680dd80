// Octets as a test writes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

using Octets = std::vector<std::uint8_t>;

// "0C 00 1f": pairs of hexadecimal digits; blanks are ignored.
inline Octets Hex(std::string_view text) {
    Octets octets;
    int high = -1;
    for (const char c : text) {
        if (c == ' ')
            continue;
        const int digit = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
        if (high < 0) {
            high = digit;
        } else {
            octets.push_back(static_cast<std::uint8_t>(high * 16 + digit));
            high = -1;
        }
    }
    return octets;
}

inline std::string ToHex(std::span<const std::uint8_t> octets) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t octet : octets) {
        text += text.empty() ? "" : " ";
        text += digits[octet >> 4];
        text += digits[octet & 15];
    }
    return text;
}

// Calls check with the octets cut behind every byte, each time in memory of its own, so that a sanitizer sees any read
// beyond the end.
template <class Check>
void CutAtEveryByte(const Octets& octets, Check check) {
    for (std::size_t length = 0; length < octets.size(); ++length) {
        const Octets cut(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(length));
        check(std::span<const std::uint8_t>(cut));
    }
}

// Calls check with every byte of the octets replaced by every value.
template <class Check>
void CorruptEveryByte(const Octets& octets, Check check) {
    Octets corrupt = octets;
    for (std::size_t i = 0; i < octets.size(); ++i) {
        for (unsigned value = 0; value < 256; ++value) {
            corrupt[i] = static_cast<std::uint8_t>(value);
            check(std::span<const std::uint8_t>(corrupt));
        }
        corrupt[i] = octets[i];
    }
}
