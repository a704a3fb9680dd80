// Well-formed UTF-8 (RFC 3629): shortest forms, no surrogates, at most U+10FFFF. Pure functions, any thread.
#pragma once

#include <cstddef>
#include <string_view>

struct Utf8Character {
    char32_t point = 0;
    std::size_t length = 0; // octets, 1..4; 0 where no well-formed character stands
};

// The character that the text begins with.
Utf8Character FirstUtf8(std::string_view text);
