// BACnet/IP virtual link layer (ANSI/ASHRAE 135 annex J.2): pure functions over octets, used by the BACnet/IP port and
// by the simulator. Octets are of unknown origin: a frame is taken only when its length field is that of the datagram.
#pragma once

#include "platform/stack/transport/Frame.h"
#include "platform/stack/transport/MacAddress.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace bacnet {

inline constexpr std::uint16_t BACNET_IP_PORT = 47808; // X'BAC0'

// B/IP address: IPv4 address (as a number, most significant octet first written) and UDP port.
struct BipAddress {
    std::uint32_t Ip = 0;
    std::uint16_t Port = 0;
    friend bool operator==(const BipAddress&, const BipAddress&) = default;
};

inline constexpr std::size_t BIP_ADDRESS_LENGTH = 6;

MacAddress ToMac(const BipAddress& address);
// False unless the MAC has 6 octets.
bool FromMac(const MacAddress& mac, BipAddress& address);
// "192.168.1.20:47808"
std::string ToString(const BipAddress& address);
// "a.b.c.d" as a number; false when it is not one.
bool ParseIpV4(const std::string& text, std::uint32_t& ip);
// "a.b.c.d" or "a.b.c.d:port", port 1..65535; without one it is BACNET_IP_PORT.
bool ParseBipAddress(const std::string& text, BipAddress& address);

// The 6 octets of an address in a message.
void WriteBipAddress(std::uint8_t* at, const BipAddress& address);
BipAddress ReadBipAddress(const std::uint8_t* at);

enum class BvlcFunction : std::uint8_t {
    result = 0x00,
    write_bdt = 0x01,
    read_bdt = 0x02,
    read_bdt_ack = 0x03,
    forwarded_npdu = 0x04,
    register_foreign_device = 0x05,
    read_fdt = 0x06,
    read_fdt_ack = 0x07,
    delete_fdt_entry = 0x08,
    distribute_broadcast = 0x09,
    original_unicast = 0x0A,
    original_broadcast = 0x0B,
    secure_bvll = 0x0C,
};

// J.2.1.
enum class BvlcResult : std::uint16_t {
    success = 0x0000,
    write_bdt_nak = 0x0010,
    read_bdt_nak = 0x0020,
    register_foreign_device_nak = 0x0030,
    read_fdt_nak = 0x0040,
    delete_fdt_entry_nak = 0x0050,
    distribute_broadcast_nak = 0x0060,
};

enum class BvllError : std::uint8_t {
    none,
    too_short,        // less than the header, or than the function's fixed part
    not_bacnet_ip,    // first octet is not X'81'
    wrong_length,     // the length field is not the datagram's length
    unknown_function, // Function holds it
};

struct BvllMessage {
    BvlcFunction Function = BvlcFunction::result;
    // NPDU of the functions that carry one (original unicast and broadcast, forwarded, distribute broadcast); otherwise
    // what follows the header.
    std::span<const std::uint8_t> Payload;
    BipAddress Origin;            // forwarded NPDU: the station that sent it first
    std::uint16_t ResultCode = 0; // result
};

inline constexpr std::size_t BVLL_HEADER = 4;

// On a failure other than unknown_function message is left alone.
BvllError DecodeBvll(std::span<const std::uint8_t> datagram, BvllMessage& message);
const char* ToString(BvllError error);

// The 4 octets of the header; length is that of the whole frame.
void WriteBvllHeader(std::uint8_t* at, BvlcFunction function, std::size_t length);
// Puts the header in front of the frame's NPDU. False when the frame has no room.
bool PrependBvll(Frame& frame, BvlcFunction function);
bool PrependForwarded(Frame& frame, const BipAddress& origin);
// A whole BVLC-Result in 6 octets.
void EncodeResult(BvlcResult result, std::span<std::uint8_t, 6> octets);
// The NAK that answers a function this station does not serve; false when the function gets no answer.
bool NakFor(BvlcFunction function, BvlcResult& result);

} // namespace bacnet
