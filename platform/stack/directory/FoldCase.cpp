#include "platform/stack/directory/FoldCase.h"

#include <array>
#include <cstdint>

namespace bacnet::directory {

namespace {

// Small letter of a character that UTF-8 spells in two bytes (U+0080 to U+07FF).
constexpr std::uint32_t Fold(std::uint32_t c) {
    if (c >= 0xC0 && c <= 0xDE)
        return c == 0xD7 ? c : c + 0x20; // not the multiplication sign
    const bool evenIsCapital = (c >= 0x100 && c <= 0x12F) || (c >= 0x132 && c <= 0x137) || (c >= 0x14A && c <= 0x177);
    const bool oddIsCapital = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    if ((evenIsCapital && c % 2 == 0) || (oddIsCapital && c % 2 == 1))
        return c + 1;
    if (c == 0x178)
        return 0xFF;
    if (c == 0x386)
        return 0x3AC;
    if (c >= 0x388 && c <= 0x38A)
        return c + 0x25;
    if (c == 0x38C)
        return 0x3CC;
    if (c == 0x38E || c == 0x38F)
        return c + 0x3F;
    if (c >= 0x391 && c <= 0x3AB)
        return c + 0x20;
    if (c == 0x3C2) // final sigma
        return 0x3C3;
    if (c >= 0x410 && c <= 0x42F)
        return c + 0x20;
    if (c >= 0x400 && c <= 0x40F)
        return c + 0x50;
    if (c >= 0x460 && c <= 0x481 && c % 2 == 0)
        return c + 1;
    return c;
}

constexpr std::array<char, 256> MakeAsciiTable() {
    std::array<char, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<char>(i >= 'A' && i <= 'Z' ? i + ('a' - 'A') : i);
    return table;
}

constexpr std::array<char, 256> asciiTable = MakeAsciiTable();

} // namespace

void AppendFolded(std::string& out, std::string_view text) {
    const std::size_t start = out.size();
    out.resize(start + text.size());
    char* to = out.data() + start;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const bool pair = lead >= 0xC2 && lead <= 0xDF && i + 1 < text.size() &&
                          (static_cast<unsigned char>(text[i + 1]) & 0xC0U) == 0x80U;
        if (!pair) {
            *to++ = asciiTable[lead];
            continue;
        }
        const std::uint32_t folded =
            Fold((static_cast<std::uint32_t>(lead & 0x1FU) << 6) | (static_cast<unsigned char>(text[++i]) & 0x3FU));
        *to++ = static_cast<char>(0xC0U | (folded >> 6)); // folding stays within two bytes
        *to++ = static_cast<char>(0x80U | (folded & 0x3FU));
    }
}

} // namespace bacnet::directory
