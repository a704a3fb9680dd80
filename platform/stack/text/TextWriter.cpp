#include "platform/stack/text/TextWriter.h"

#include "platform/stack/codec/CharacterSet.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace bacnet {

TextWriter::TextWriter(char* buffer, std::size_t size)
    : m_buffer(buffer), m_capacity(size == 0 ? 0 : size - 1), m_full(size == 0) {
    if (size != 0)
        m_buffer[0] = '\0';
}

void TextWriter::Put(std::string_view text) {
    if (m_full || text.empty())
        return;
    const std::size_t room = m_capacity - m_length;
    m_full = text.size() > room;
    const std::size_t length = m_full ? CutUtf8(text, room) : text.size();
    std::memcpy(m_buffer + m_length, text.data(), length);
    m_length += length;
    m_buffer[m_length] = '\0';
}

void TextWriter::PutForeign(std::string_view text) {
    if (IsUtf8(text))
        Put(text);
    else
        Put(ToUtf8(text));
}

void TextWriter::PutUnsigned(std::uint64_t value, int minimalDigits) {
    char digits[std::numeric_limits<std::uint64_t>::digits10 + 1];
    const char* const end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    for (auto length = static_cast<int>(end - digits); length < minimalDigits; ++length)
        Put("0");
    Put(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void TextWriter::PutSigned(std::int64_t value) {
    char digits[std::numeric_limits<std::int64_t>::digits10 + 2];
    const char* const end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    Put(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void TextWriter::PutReal(double value, int digits) {
    if (std::isnan(value)) {
        Put("nan"); // whatever its sign bit
        return;
    }
    char text[32];
    const char* const end =
        std::to_chars(std::begin(text), std::end(text), value, std::chars_format::general, digits).ptr;
    Put(std::string_view(text, static_cast<std::size_t>(end - text)));
}

void TextWriter::PutHex(const std::uint8_t* octets, std::size_t count) {
    static constexpr char DIGITS[] = "0123456789ABCDEF";
    for (std::size_t i = 0; i < count && !m_full; ++i) {
        const char pair[] = {DIGITS[octets[i] >> 4], DIGITS[octets[i] & 15]};
        Put(std::string_view(pair, sizeof pair));
    }
}

} // namespace bacnet
