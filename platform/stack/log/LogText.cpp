#include "platform/stack/log/LogText.h"

#include "base/Utf8.h"

#include <cstdint>
#include <cstdio>

namespace bacnet::log {

namespace {

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
        const Utf8Character character = FirstUtf8(text.substr(i));
        if (character.length != 0 && !IsHarmful(character.point)) {
            out.append(text, i, character.length);
            i += character.length;
            continue;
        }
        const std::size_t bytes = character.length == 0 ? 1 : character.length;
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
