// Octets as hexadecimal pairs. Pure functions, any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

std::string HexText(const void* data, std::size_t length);
// Upper or lower case, nothing but pairs; bytes is left alone when the text is not of that form.
bool ParseHex(std::string_view text, std::string& bytes);
