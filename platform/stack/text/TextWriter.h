// Writes text into a caller's buffer of limited size. One thread uses one writer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bacnet {

class TextWriter {
public:
    // size: of the buffer in bytes, with the NUL. With 0 nothing is written, buffer may then be null.
    TextWriter(char* buffer, std::size_t size);

    // Appends UTF-8. What does not fit is cut at a character boundary, and all that would follow is dropped.
    void Put(std::string_view text);
    // Appends text from outside, which may be anything: what is not UTF-8 is taken as Windows-1252.
    void PutForeign(std::string_view text);
    void PutUnsigned(std::uint64_t value, int minimalDigits = 1);
    void PutSigned(std::int64_t value);
    // General notation with so many significant digits, without trailing zeros; "nan", "inf".
    void PutReal(double value, int digits);
    void PutHex(const std::uint8_t* octets, std::size_t count); // two capital digits each

    bool Full() const { return m_full; } // something was cut
    int Length() const { return static_cast<int>(m_length); }

private:
    char* m_buffer;
    std::size_t m_capacity; // without the NUL
    std::size_t m_length = 0;
    bool m_full;
};

} // namespace bacnet
