// Station address as a data link has it: 6 octets on BACnet/IP (IPv4 address and port), 1 on MS/TP and ARCNET, up to 18
// on links to come. Wider than the address of the contract, which holds 7. A value; empty means broadcast where a
// destination is asked for.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace bacnet {

class MacAddress {
public:
    static constexpr std::size_t MAX_LENGTH = 18;

    constexpr MacAddress() = default;
    // More than MAX_LENGTH octets are cut; decoders check the length before.
    constexpr explicit MacAddress(std::span<const std::uint8_t> octets) {
        m_length = static_cast<std::uint8_t>(std::min(octets.size(), MAX_LENGTH));
        std::copy_n(octets.begin(), m_length, m_octets.begin());
    }

    constexpr std::size_t Length() const { return m_length; }
    constexpr bool Empty() const { return m_length == 0; }
    constexpr const std::uint8_t* Data() const { return m_octets.data(); }
    constexpr std::span<const std::uint8_t> Octets() const { return {m_octets.data(), m_length}; }

    // Unused octets are always zero, so that equality is that of the whole value.
    friend constexpr bool operator==(const MacAddress&, const MacAddress&) = default;

private:
    std::array<std::uint8_t, MAX_LENGTH> m_octets{};
    std::uint8_t m_length = 0;
};

} // namespace bacnet
