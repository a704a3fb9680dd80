// Octets from hexadecimal text with any blanks, for frames that read like the standard's examples.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

inline std::vector<std::uint8_t> Hex(std::string_view text) {
    std::vector<std::uint8_t> octets;
    int high = -1;
    for (const char c : text) {
        int digit = -1;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (c >= 'A' && c <= 'F')
            digit = c - 'A' + 10;
        else if (c >= 'a' && c <= 'f')
            digit = c - 'a' + 10;
        if (digit < 0)
            continue;
        if (high < 0) {
            high = digit;
        } else {
            octets.push_back(static_cast<std::uint8_t>(high * 16 + digit));
            high = -1;
        }
    }
    return octets;
}

inline std::string ToHex(const std::uint8_t* octets, std::size_t size) {
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        if (i != 0)
            text += ' ';
        text += digits[octets[i] >> 4];
        text += digits[octets[i] & 15];
    }
    return text;
}
