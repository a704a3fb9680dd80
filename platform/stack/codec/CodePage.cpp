#include "platform/stack/codec/CodePage.h"

#include "base/NumberText.h"

#include <iconv.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <vector>

namespace bacnet {
namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;
constexpr const char* BARE_JIS = "jis-x-0208";
// What puts ISO-2022-JP into the set that bare JIS X 0208 is, and back.
constexpr std::uint8_t TO_JIS[] = {0x1B, '$', 'B'};
constexpr std::uint8_t TO_ASCII[] = {0x1B, '(', 'B'};

struct PageName {
    unsigned Page;
    const char* Name;
};

// Those that the system does not know as "CP" and their number.
constexpr PageName PAGE_NAMES[] = {
    {1200, "UTF-16LE"}, {1201, "UTF-16BE"},     {10000, "MACINTOSH"}, {12000, "UTF-32LE"}, {12001, "UTF-32BE"},
    {20127, "ASCII"},   {20866, "KOI8-R"},      {20932, "EUC-JP"},    {20936, "GB2312"},   {20949, "EUC-KR"},
    {21866, "KOI8-U"},  {50220, "ISO-2022-JP"}, {51932, "EUC-JP"},    {51936, "GB2312"},   {51949, "EUC-KR"},
    {54936, "GB18030"}, {65001, "UTF-8"},
};

class Converter {
public:
    Converter() = default;
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() { Close(); }

    bool Open(const std::string& encoding) {
        if (encoding != m_encoding) {
            Close();
            m_encoding = encoding;
            m_handle = ::iconv_open("UTF-32LE", encoding.c_str());
        }
        if (IsOpen())
            ::iconv(m_handle, nullptr, nullptr, nullptr, nullptr); // to the initial state
        return IsOpen();
    }

    // Takes octets from the front and gives the characters that they are. False at one that is wrong or cut.
    bool Convert(std::span<const std::uint8_t>& octets, std::vector<char32_t>& characters) {
        char* from = const_cast<char*>(reinterpret_cast<const char*>(octets.data())); // iconv does not write there
        std::size_t left = octets.size();
        bool good = true;
        while (left > 0 && good) {
            char32_t buffer[64];
            char* to = reinterpret_cast<char*>(buffer);
            std::size_t room = sizeof(buffer);
            const std::size_t result = ::iconv(m_handle, &from, &left, &to, &room);
            characters.insert(characters.end(), buffer, buffer + (sizeof(buffer) - room) / sizeof(char32_t));
            good = result != static_cast<std::size_t>(-1) || errno == E2BIG;
        }
        octets = octets.last(left);
        return good;
    }

private:
    bool IsOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }
    void Close() {
        if (IsOpen())
            ::iconv_close(m_handle);
        m_handle = reinterpret_cast<iconv_t>(-1);
    }

    std::string m_encoding;
    iconv_t m_handle = reinterpret_cast<iconv_t>(-1);
};

thread_local Converter lastUsed;

} // namespace

std::string EncodingOfCodePage(unsigned page) {
    if (page == 0 || page == 65535)
        return {};
    const auto* const named = std::find_if(std::begin(PAGE_NAMES), std::end(PAGE_NAMES),
                                           [page](const PageName& row) { return row.Page == page; });
    if (named != std::end(PAGE_NAMES))
        return named->Name;
    if (page > 28590 && page <= 28606)
        return "ISO-8859-" + std::to_string(page - 28590);
    return "CP" + std::to_string(page);
}

std::string FindEncoding(const std::string& name) {
    std::string lower;
    for (const char c : name)
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower == BARE_JIS)
        return BARE_JIS;
    std::string encoding = lower == "ucs-2" ? "UTF-16BE" : lower == "ucs-4" ? "UTF-32BE" : name;
    const auto page = ParseU32(lower.starts_with("cp") ? std::string_view(lower).substr(2) : std::string_view(lower));
    if (page)
        encoding = EncodingOfCodePage(*page);
    // The empty name is the locale's encoding, and a slash starts options.
    if (encoding.empty() || encoding.find('/') != std::string::npos || !Converter().Open(encoding))
        return {};
    return encoding;
}

bool DecodeEncoding(const std::string& encoding, std::span<const std::uint8_t> octets, bool strict,
                    const std::function<void(char32_t)>& put) {
    std::vector<std::uint8_t> framed;
    if (encoding == BARE_JIS) {
        framed.assign(std::begin(TO_JIS), std::end(TO_JIS));
        framed.insert(framed.end(), octets.begin(), octets.end());
        framed.insert(framed.end(), std::begin(TO_ASCII), std::end(TO_ASCII));
        octets = framed;
    }
    if (!lastUsed.Open(encoding == BARE_JIS ? "ISO-2022-JP" : encoding))
        return false;
    std::vector<char32_t> characters;
    while (!octets.empty()) {
        if (lastUsed.Convert(octets, characters))
            continue;
        if (strict)
            break;
        characters.push_back(REPLACEMENT);
        octets = octets.subspan(1);
    }
    for (const char32_t c : characters)
        put(c);
    return octets.empty();
}

} // namespace bacnet
