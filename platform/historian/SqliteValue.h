// Doubles in SQL: every double that a REAL column gives back as it was is stored as one. SQLite turns NaN into NULL and
// forgets the sign of -0.0; these are stored as a blob of their eight bytes, little-endian.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

inline bool IsSqlReal(double value) {
    return !std::isnan(value) && !(value == 0.0 && std::signbit(value));
}

inline std::array<std::uint8_t, sizeof(double)> BitsOfValue(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    std::array<std::uint8_t, sizeof(double)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(bits >> (8 * i));
    }
    return bytes;
}

// bytes holds eight bytes.
inline double ValueOfBits(std::string_view bytes) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(double); ++i) {
        bits |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    }
    return std::bit_cast<double>(bits);
}
