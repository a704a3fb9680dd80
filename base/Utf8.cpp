#include "base/Utf8.h"

Utf8Character FirstUtf8(std::string_view text) {
    if (text.empty())
        return {};
    const auto octet = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = octet(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return {};
    // The second octet carries the limits: they exclude longer forms than needed, surrogates and what lies too high.
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (octet(1) < low || octet(1) > high)
        return {};
    char32_t point = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((octet(i) & 0xC0U) != 0x80)
            return {};
        point = point << 6 | (octet(i) & 0x3FU);
    }
    return {point, length};
}
