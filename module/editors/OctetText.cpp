#include "module/editors/OctetText.h"

#include <charconv>

namespace {

constexpr std::string_view DIGITS = "0123456789ABCDEF";
constexpr int HEXADECIMAL = 16;

} // namespace

std::string FormatOctets(std::span<const unsigned char> octets) {
    std::string text;
    text.reserve(2 * octets.size());
    for (const unsigned char octet : octets) {
        text += DIGITS[octet / HEXADECIMAL];
        text += DIGITS[octet % HEXADECIMAL];
    }
    return text;
}

std::optional<std::vector<unsigned char>> ParseOctets(std::string_view text) {
    if (text.size() % 2 != 0)
        return std::nullopt;
    std::vector<unsigned char> octets(text.size() / 2);
    for (unsigned char& octet : octets) {
        const char* const end = text.data() + 2;
        if (std::from_chars(text.data(), end, octet, HEXADECIMAL).ptr != end)
            return std::nullopt;
        text.remove_prefix(2);
    }
    return octets;
}
