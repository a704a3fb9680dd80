#include "platform/stack/codec/CharacterSet.h"

#include "platform/stack/codec/CodePage.h"

#include "base/Utf8.h"

#include <algorithm>
#include <array>

namespace bacnet {
namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

thread_local const std::string* givenEncoding = nullptr; // of the innermost TextScope

// Characters 0x80..0x9F of Windows-1252; the five that it leaves open are controls.
constexpr std::array<char16_t, 32> WINDOWS_1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Characters 0x80..0xFF of code page 850.
constexpr std::array<char16_t, 128> CODE_PAGE_850 = {
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8, 0x00EF, 0x00EE,
    0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9, 0x00FF, 0x00D6,
    0x00DC, 0x00F8, 0x00A3, 0x00D8, 0x00D7, 0x0192, 0x00E1, 0x00ED, 0x00F3, 0x00FA, 0x00F1, 0x00D1, 0x00AA,
    0x00BA, 0x00BF, 0x00AE, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB, 0x2591, 0x2592, 0x2593, 0x2502,
    0x2524, 0x00C1, 0x00C2, 0x00C0, 0x00A9, 0x2563, 0x2551, 0x2557, 0x255D, 0x00A2, 0x00A5, 0x2510, 0x2514,
    0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x00E3, 0x00C3, 0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550,
    0x256C, 0x00A4, 0x00F0, 0x00D0, 0x00CA, 0x00CB, 0x00C8, 0x0131, 0x00CD, 0x00CE, 0x00CF, 0x2518, 0x250C,
    0x2588, 0x2584, 0x00A6, 0x00CC, 0x2580, 0x00D3, 0x00DF, 0x00D4, 0x00D2, 0x00F5, 0x00D5, 0x00B5, 0x00FE,
    0x00DE, 0x00DA, 0x00DB, 0x00D9, 0x00FD, 0x00DD, 0x00AF, 0x00B4, 0x00AD, 0x00B1, 0x2017, 0x00BE, 0x00B6,
    0x00A7, 0x00F7, 0x00B8, 0x00B0, 0x00A8, 0x00B7, 0x00B9, 0x00B3, 0x00B2, 0x25A0, 0x00A0};

// Collects characters as UTF-8 up to a capacity, and counts all of them.
class Utf8Out {
public:
    Utf8Out(char* text, std::size_t capacity) : m_text(text), m_capacity(capacity) {}

    void Put(char32_t c) {
        char octets[4];
        std::size_t length = 0;
        if (c > 0x10FFFF || (c >= 0xD800 && c < 0xE000))
            c = REPLACEMENT;
        if (c < 0x80) {
            octets[length++] = static_cast<char>(c);
        } else if (c < 0x800) {
            octets[length++] = static_cast<char>(0xC0 | c >> 6);
            octets[length++] = static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            octets[length++] = static_cast<char>(0xE0 | c >> 12);
            octets[length++] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
            octets[length++] = static_cast<char>(0x80 | (c & 0x3F));
        } else {
            octets[length++] = static_cast<char>(0xF0 | c >> 18);
            octets[length++] = static_cast<char>(0x80 | (c >> 12 & 0x3F));
            octets[length++] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
            octets[length++] = static_cast<char>(0x80 | (c & 0x3F));
        }
        Put(std::string_view(octets, length));
    }
    // Many characters, known to be well-formed.
    void PutAll(std::string_view text) {
        if (m_cut)
            return;
        m_length += text.size();
        const std::size_t room = m_written < m_capacity ? m_capacity - m_written - 1 : 0;
        const std::size_t kept = CutUtf8(text, room);
        m_cut = kept < text.size();
        std::copy_n(text.data(), kept, m_text + m_written);
        m_written += kept;
    }
    // Whole characters only are kept.
    void Put(std::string_view character) {
        m_length += character.size();
        if (m_cut || m_written + character.size() >= m_capacity) {
            m_cut = true;
            return;
        }
        for (const char octet : character)
            m_text[m_written++] = octet;
    }
    std::size_t Finish() {
        if (m_capacity != 0)
            m_text[m_written] = '\0';
        return m_length;
    }

private:
    char* m_text;
    std::size_t m_capacity;
    std::size_t m_written = 0;
    std::size_t m_length = 0;
    bool m_cut = false;
};

using Octets = std::span<const std::uint8_t>;

// Octet by octet, with a table for 0x80 + 0.. that may be shorter than 128: the rest is Latin-1.
void PutTable(Octets octets, std::span<const char16_t> table, Utf8Out& out) {
    for (const std::uint8_t octet : octets) {
        if (octet == 0)
            return;
        const std::size_t index = octet - std::size_t{0x80};
        out.Put(octet < 0x80 || index >= table.size() ? char32_t{octet} : char32_t{table[index]});
    }
}

// Of a code page that is not known here only ASCII means the same.
void PutAscii(Octets octets, Utf8Out& out) {
    for (const std::uint8_t octet : octets) {
        if (octet == 0)
            return;
        const bool printable = octet >= 0x20 && octet < 0x7F;
        out.Put(printable || octet == '\t' || octet == '\r' || octet == '\n' ? char32_t{octet} : U'?');
    }
}

void PutUtf8(Octets octets, Utf8Out& out) {
    std::string_view text(reinterpret_cast<const char*>(octets.data()), octets.size());
    text = text.substr(0, text.find('\0'));
    if (!IsUtf8(text)) {
        PutTable(octets, WINDOWS_1252, out);
        return;
    }
    out.PutAll(text);
}

void PutUcs2(Octets octets, Utf8Out& out) {
    for (std::size_t i = 0; i + 1 < octets.size(); i += 2) {
        char32_t c = static_cast<char32_t>(octets[i] << 8 | octets[i + 1]);
        if (c == 0)
            return;
        if (c >= 0xD800 && c < 0xDC00 && i + 3 < octets.size()) {
            const char32_t low = static_cast<char32_t>(octets[i + 2] << 8 | octets[i + 3]);
            if (low >= 0xDC00 && low < 0xE000) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            }
        }
        out.Put(c);
    }
}

void PutUcs4(Octets octets, Utf8Out& out) {
    for (std::size_t i = 0; i + 3 < octets.size(); i += 4) {
        const char32_t c = char32_t{octets[i]} << 24 | char32_t{octets[i + 1]} << 16 | char32_t{octets[i + 2]} << 8 |
                           char32_t{octets[i + 3]};
        if (c == 0)
            return;
        out.Put(c);
    }
}

// False when the system does not know the encoding, and when it is strict and an octet is wrong.
bool PutEncoding(const std::string& encoding, Octets octets, bool strict, Utf8Out& out) {
    bool ended = false;
    return DecodeEncoding(encoding, octets, strict, [&](char32_t c) {
        ended = ended || c == 0;
        if (!ended)
            out.Put(c);
    });
}

void PutDbcs(Octets octets, Utf8Out& out) {
    if (octets.size() < 2)
        return;
    const unsigned page = static_cast<unsigned>(octets[0] << 8 | octets[1]);
    const Octets text = octets.subspan(2);
    if (page == 1252)
        PutTable(text, WINDOWS_1252, out);
    else if (page == 850)
        PutTable(text, CODE_PAGE_850, out);
    else if (page == 28591)
        PutTable(text, {}, out);
    else if (page == 65001)
        PutUtf8(text, out);
    else if (!PutEncoding(EncodingOfCodePage(page), text, false, out))
        PutAscii(text, out);
}

// The standard does not say how the characters of JIS X 0208 become octets: with escapes, or as Japanese systems keep
// them, is what devices do. Seven-bit octets without an escape are Latin letters.
void PutJis(Octets octets, Utf8Out& out) {
    const bool escapes = std::find(octets.begin(), octets.end(), 0x1B) != octets.end();
    if (escapes && PutEncoding("ISO-2022-JP", octets, false, out))
        return;
    const bool eightBits = std::any_of(octets.begin(), octets.end(), [](std::uint8_t octet) { return octet >= 0x80; });
    if (eightBits) {
        for (const char* const encoding : {"CP932", "EUC-JP"}) {
            if (DecodeEncoding(encoding, octets, true, [](char32_t) {}))
                return static_cast<void>(PutEncoding(encoding, octets, true, out));
        }
    }
    PutAscii(octets, out);
}

// As octets of the encoding that the user gave the device.
bool PutOverridden(Octets octets, Utf8Out& out) {
    if (octets[0] == CHARSET_DBCS)
        octets = octets.subspan(std::min<std::size_t>(octets.size(), 3)); // with the code page
    else
        octets = octets.subspan(1);
    return PutEncoding(*givenEncoding, octets, false, out);
}

} // namespace

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = FirstUtf8(text).length;
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::size_t CutUtf8(std::string_view text, std::size_t limit) {
    if (text.size() <= limit)
        return text.size();
    std::size_t cut = limit;
    while (cut > 0 && limit - cut < 4 && (static_cast<unsigned char>(text[cut]) & 0xC0U) == 0x80)
        --cut;
    return cut;
}

TextScope::TextScope(const std::string* encoding) : m_former(givenEncoding) {
    givenEncoding = encoding;
}

TextScope::~TextScope() {
    givenEncoding = m_former;
}

std::size_t DecodeText(std::span<const std::uint8_t> octets, char* text, std::size_t capacity) {
    Utf8Out out(text, capacity);
    if (!octets.empty() && !(givenEncoding != nullptr && PutOverridden(octets, out))) {
        const Octets rest = octets.subspan(1);
        switch (octets[0]) {
        case CHARSET_DBCS:
            PutDbcs(rest, out);
            break;
        case CHARSET_JIS:
            PutJis(rest, out);
            break;
        case CHARSET_UCS4:
            PutUcs4(rest, out);
            break;
        case CHARSET_UCS2:
            PutUcs2(rest, out);
            break;
        case CHARSET_LATIN1:
            PutTable(rest, {}, out);
            break;
        default: // UTF-8, and what the standard does not know yet
            PutUtf8(rest, out);
            break;
        }
    }
    return out.Finish();
}

std::string DecodeText(std::span<const std::uint8_t> octets) {
    std::string text(DecodedTextBound(octets.size()), '\0');
    std::size_t length = DecodeText(octets, text.data(), text.size());
    if (length >= text.size()) { // an encoding of the system that makes several characters of one
        text.resize(length + 1);
        length = DecodeText(octets, text.data(), text.size());
    }
    text.resize(length);
    return text;
}

std::string ToUtf8(std::string_view text) {
    if (IsUtf8(text))
        return std::string(text);
    std::string result(DecodedTextBound(text.size()), '\0');
    Utf8Out out(result.data(), result.size());
    PutTable({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, WINDOWS_1252, out);
    result.resize(out.Finish());
    return result;
}

} // namespace bacnet
