// Character strings of all encodings to UTF-8 (ANSI/ASHRAE 135 clause 20.2.9). Whatever the octets are, the result is
// valid UTF-8 without NUL: a wrong or unknown character set spoils its own string at most. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace bacnet {

enum CharacterSet : std::uint8_t {
    CHARSET_UTF8 = 0, // ANSI X3.4 before protocol revision 12; other octets are taken as Windows-1252
    CHARSET_DBCS = 1, // two octets of code page, then the text; of pages that the system does not know ASCII is kept
    CHARSET_JIS = 2,  // JIS X 0208, with escapes (ISO 2022) or as Shift-JIS or EUC; else Latin letters
    CHARSET_UCS4 = 3,
    CHARSET_UCS2 = 4,
    CHARSET_LATIN1 = 5,
};

// octets: the character set and the text. Writes at most capacity - 1 bytes, cut at a character boundary, and a NUL;
// returns the length without the NUL that the whole text has. The text ends at the first NUL character.
std::size_t DecodeText(std::span<const std::uint8_t> octets, char* text, std::size_t capacity);
std::string DecodeText(std::span<const std::uint8_t> octets);

// While it lives, text that this thread decodes is of that encoding, whatever it says of itself: for devices that say
// one thing and send another. encoding: as FindEncoding gives it, and it lives as long; null: text is what it says. A
// scope within another one counts alone.
class TextScope {
public:
    explicit TextScope(const std::string* encoding);
    ~TextScope();
    TextScope(const TextScope&) = delete;
    TextScope& operator=(const TextScope&) = delete;

private:
    const std::string* m_former;
};

// Bytes that DecodeText does not exceed with the character sets of the standard, the NUL included.
inline constexpr std::size_t DecodedTextBound(std::size_t octets) {
    return 3 * octets + 1;
}

bool IsUtf8(std::string_view text);
// Length of the longest prefix of at most limit bytes that does not split a character.
std::size_t CutUtf8(std::string_view text, std::size_t limit);
// Valid UTF-8 as it is, all else taken as Windows-1252.
std::string ToUtf8(std::string_view text);

} // namespace bacnet
