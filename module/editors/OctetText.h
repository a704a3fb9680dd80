// Octet strings as their editor shows them: two hexadecimal digits to an octet, nothing between. Pure functions.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

std::string FormatOctets(std::span<const unsigned char> octets); // upper case
// Both cases. Nothing for an odd number of characters and for any other character.
std::optional<std::vector<unsigned char>> ParseOctets(std::string_view text);
