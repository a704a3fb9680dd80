#include "host/bacnet/HexText.h"

#include <charconv>
#include <cstdint>

std::string HexText(const void* data, std::size_t length) {
    constexpr const char* DIGITS = "0123456789abcdef";
    std::string text;
    text.reserve(2 * length);
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned octet = static_cast<const std::uint8_t*>(data)[i];
        text += DIGITS[octet >> 4];
        text += DIGITS[octet & 15];
    }
    return text;
}

bool ParseHex(std::string_view text, std::string& bytes) {
    if (text.size() % 2 != 0)
        return false;
    std::string parsed;
    parsed.reserve(text.size() / 2);
    for (; !text.empty(); text.remove_prefix(2)) {
        std::uint8_t octet = 0;
        const auto result = std::from_chars(text.data(), text.data() + 2, octet, 16);
        if (result.ec != std::errc() || result.ptr != text.data() + 2)
            return false;
        parsed += static_cast<char>(octet);
    }
    bytes = std::move(parsed);
    return true;
}
