// Header of the network layer (ANSI/ASHRAE 135 clause 6.2): pure functions over octets, used by the network layer and
// by the simulator's router. Octets are of unknown origin.
#pragma once

#include "platform/stack/transport/Frame.h"
#include "platform/stack/transport/MacAddress.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace bacnet {

inline constexpr std::uint8_t NPDU_VERSION = 1;
inline constexpr std::uint16_t GLOBAL_BROADCAST = 0xFFFF; // DNET of all networks
inline constexpr std::uint8_t MAX_HOPS = 255;

enum class NpduPriority : std::uint8_t { normal, urgent, critical_equipment, life_safety };

// Clause 6.2.4. From X'80' on the message is a vendor's and has a vendor id.
enum class NetworkMessage : std::uint8_t {
    who_is_router_to_network = 0x00,
    i_am_router_to_network = 0x01,
    i_could_be_router_to_network = 0x02,
    reject_message_to_network = 0x03,
    router_busy_to_network = 0x04,
    router_available_to_network = 0x05,
    initialize_routing_table = 0x06,
    initialize_routing_table_ack = 0x07,
    establish_connection_to_network = 0x08,
    disconnect_connection_to_network = 0x09,
    challenge_request = 0x0A,
    what_is_network_number = 0x12,
    network_number_is = 0x13,
};

enum class NpduError : std::uint8_t {
    none,
    too_short,
    wrong_version,
    bad_source,      // SNET 0 or 65535, or SLEN 0
    bad_destination, // DNET 0
    bad_length,      // DLEN or SLEN longer than any MAC
};

struct Npdu {
    bool IsNetworkMessage = false;
    bool ExpectingReply = false;
    NpduPriority Priority = NpduPriority::normal;
    std::uint16_t DestinationNetwork = 0; // 0: none given; the message is for this network's station
    MacAddress Destination;               // empty with a network: broadcast there
    std::uint16_t SourceNetwork = 0;      // 0: none given; sent by a station of this network
    MacAddress Source;
    std::uint8_t HopCount = MAX_HOPS; // counts only with a destination network
    NetworkMessage Message = NetworkMessage::who_is_router_to_network;
    std::uint16_t VendorId = 0;            // proprietary network messages
    std::span<const std::uint8_t> Payload; // APDU, or what follows the message type
};

// On failure npdu is left in part set.
NpduError DecodeNpdu(std::span<const std::uint8_t> octets, Npdu& npdu);
const char* ToString(NpduError error);

// Puts the header in front of the frame, which holds npdu.Payload's octets already (Payload itself is not looked at).
// False when the frame has no room.
bool PrependNpdu(Frame& frame, const Npdu& npdu);

} // namespace bacnet
