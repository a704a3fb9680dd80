#include "platform/stack/log/LogText.h"

#include <cstdint>
#include <cstdio>

namespace bacnet::log {

namespace {

struct Decoded {
    char32_t Point;
    std::size_t Length; // 0: not UTF-8
};

bool IsContinuation(std::string_view text, std::size_t index) {
    return index < text.size() && (static_cast<unsigned char>(text[index]) & 0xC0U) == 0x80U;
}

// One character of well-formed UTF-8 (RFC 3629): shortest form, no surrogates, at most U+10FFFF.
Decoded DecodeUtf8(std::string_view text, std::size_t index) {
    const auto lead = static_cast<unsigned char>(text[index]);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4)
        return {0, 0};
    char32_t point = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text, index + i))
            return {0, 0};
        point = (point << 6) | (static_cast<unsigned char>(text[index + i]) & 0x3FU);
    }
    const bool overlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
    if (overlong || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF))
        return {0, 0};
    return {point, length};
}

bool IsHarmful(char32_t point) {
    return point < 0x20 || (point >= 0x7F && point < 0xA0) || point == 0x2028 || point == 0x2029 ||
           (point >= 0x202A && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);
}

void AppendHex(std::string& out, unsigned char byte) {
    static constexpr char digits[] = "0123456789abcdef";
    out += "\\x";
    out += digits[byte >> 4];
    out += digits[byte & 15];
}

} // namespace

std::string FormatLine(const char* format, std::va_list arguments) {
    std::string line(256, '\0');
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
    if (length >= 0 && static_cast<std::size_t>(length) >= line.size()) {
        line.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(line.data(), line.size(), format, again);
    }
    va_end(again);
    if (length < 0)
        return "(unprintable log line)";
    line.resize(static_cast<std::size_t>(length));
    return line;
}

std::string EscapeLine(std::string_view text) {
    std::string out;
    out.reserve(text.size() + 8);
    for (std::size_t i = 0; i < text.size();) {
        const Decoded character = DecodeUtf8(text, i);
        if (character.Length != 0 && !IsHarmful(character.Point)) {
            out.append(text, i, character.Length);
            i += character.Length;
            continue;
        }
        const std::size_t bytes = character.Length == 0 ? 1 : character.Length;
        for (std::size_t end = i + bytes; i < end; ++i) {
            switch (text[i]) {
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                AppendHex(out, static_cast<unsigned char>(text[i]));
            }
        }
    }
    return out;
}

} // namespace bacnet::log
