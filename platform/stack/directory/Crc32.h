// CRC-32 with the polynomial of Ethernet (IEEE 802.3), reflected, eight bytes at a step.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace bacnet::directory {

namespace detail {

using CrcTables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr CrcTables MakeCrcTables() {
    CrcTables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit)
            value = (value >> 1) ^ ((value & 1U) != 0 ? 0xEDB88320U : 0U);
        tables[0][byte] = value;
    }
    for (std::uint32_t byte = 0; byte < 256; ++byte)
        for (std::size_t table = 1; table < 8; ++table)
            tables[table][byte] = (tables[table - 1][byte] >> 8) ^ tables[0][tables[table - 1][byte] & 0xFFU];
    return tables;
}

inline constexpr CrcTables crcTables = MakeCrcTables();

} // namespace detail

// crc is the result for what came before, 0 at the start.
inline std::uint32_t Crc32(std::string_view data, std::uint32_t crc = 0) {
    const auto& table = detail::crcTables;
    crc = ~crc;
    const auto* at = reinterpret_cast<const unsigned char*>(data.data());
    std::size_t left = data.size();
    for (; left >= 8; left -= 8, at += 8) {
        const std::uint32_t low =
            crc ^ (static_cast<std::uint32_t>(at[0]) | static_cast<std::uint32_t>(at[1]) << 8 |
                   static_cast<std::uint32_t>(at[2]) << 16 | static_cast<std::uint32_t>(at[3]) << 24);
        crc = table[7][low & 0xFFU] ^ table[6][(low >> 8) & 0xFFU] ^ table[5][(low >> 16) & 0xFFU] ^
              table[4][low >> 24] ^ table[3][at[4]] ^ table[2][at[5]] ^ table[1][at[6]] ^ table[0][at[7]];
    }
    for (; left > 0; --left, ++at)
        crc = table[0][(crc ^ *at) & 0xFFU] ^ (crc >> 8);
    return ~crc;
}

} // namespace bacnet::directory
