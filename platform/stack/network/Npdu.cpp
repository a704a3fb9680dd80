#include "platform/stack/network/Npdu.h"

#include <cstring>

namespace bacnet {

namespace {

// Control octet, clause 6.2.2.
constexpr std::uint8_t NETWORK_MESSAGE = 0x80;
constexpr std::uint8_t DESTINATION_PRESENT = 0x20;
constexpr std::uint8_t SOURCE_PRESENT = 0x08;
constexpr std::uint8_t EXPECTING_REPLY = 0x04;
constexpr std::uint8_t PRIORITY = 0x03;
// First type of network message that a vendor defines.
constexpr std::uint8_t PROPRIETARY_MESSAGE = 0x80;

// Takes octets off the front; once there are too few, all later reads fail too.
class Cursor {
public:
    explicit Cursor(std::span<const std::uint8_t> octets) : m_rest(octets) {}

    bool U8(std::uint8_t& value) {
        if (m_rest.empty())
            return false;
        value = m_rest[0];
        m_rest = m_rest.subspan(1);
        return true;
    }
    bool U16(std::uint16_t& value) {
        if (m_rest.size() < 2)
            return false;
        value = static_cast<std::uint16_t>(m_rest[0] << 8 | m_rest[1]);
        m_rest = m_rest.subspan(2);
        return true;
    }
    bool Mac(std::size_t length, MacAddress& mac) {
        if (m_rest.size() < length)
            return false;
        mac = MacAddress(m_rest.first(length));
        m_rest = m_rest.subspan(length);
        return true;
    }
    std::span<const std::uint8_t> Rest() const { return m_rest; }

private:
    std::span<const std::uint8_t> m_rest;
};

// Network number, length and address of a destination or source.
NpduError ReadStation(Cursor& cursor, std::uint16_t& network, MacAddress& mac) {
    std::uint8_t length = 0;
    if (!cursor.U16(network) || !cursor.U8(length))
        return NpduError::too_short;
    if (length > MacAddress::MAX_LENGTH)
        return NpduError::bad_length;
    return cursor.Mac(length, mac) ? NpduError::none : NpduError::too_short;
}

std::size_t StationSize(std::uint16_t network, const MacAddress& mac) {
    return network == 0 ? 0 : 3 + mac.Length();
}

std::uint8_t* WriteU16(std::uint8_t* at, std::uint16_t value) {
    at[0] = static_cast<std::uint8_t>(value >> 8);
    at[1] = static_cast<std::uint8_t>(value);
    return at + 2;
}

std::uint8_t* WriteStation(std::uint8_t* at, std::uint16_t network, const MacAddress& mac) {
    if (network == 0)
        return at;
    at = WriteU16(at, network);
    *at++ = static_cast<std::uint8_t>(mac.Length());
    std::memcpy(at, mac.Data(), mac.Length());
    return at + mac.Length();
}

} // namespace

NpduError DecodeNpdu(std::span<const std::uint8_t> octets, Npdu& npdu) {
    Cursor cursor(octets);
    std::uint8_t version = 0;
    std::uint8_t control = 0;
    if (!cursor.U8(version) || !cursor.U8(control))
        return NpduError::too_short;
    if (version != NPDU_VERSION)
        return NpduError::wrong_version;

    npdu = {};
    npdu.IsNetworkMessage = (control & NETWORK_MESSAGE) != 0;
    npdu.ExpectingReply = (control & EXPECTING_REPLY) != 0;
    npdu.Priority = static_cast<NpduPriority>(control & PRIORITY);
    if ((control & DESTINATION_PRESENT) != 0) {
        const NpduError error = ReadStation(cursor, npdu.DestinationNetwork, npdu.Destination);
        if (error != NpduError::none)
            return error;
        if (npdu.DestinationNetwork == 0)
            return NpduError::bad_destination;
    }
    if ((control & SOURCE_PRESENT) != 0) {
        const NpduError error = ReadStation(cursor, npdu.SourceNetwork, npdu.Source);
        if (error != NpduError::none)
            return error;
        if (npdu.SourceNetwork == 0 || npdu.SourceNetwork == GLOBAL_BROADCAST || npdu.Source.Empty())
            return NpduError::bad_source;
    }
    if ((control & DESTINATION_PRESENT) != 0 && !cursor.U8(npdu.HopCount))
        return NpduError::too_short;
    if (npdu.IsNetworkMessage) {
        std::uint8_t type = 0;
        if (!cursor.U8(type))
            return NpduError::too_short;
        npdu.Message = static_cast<NetworkMessage>(type);
        if (type >= PROPRIETARY_MESSAGE && !cursor.U16(npdu.VendorId))
            return NpduError::too_short;
    }
    npdu.Payload = cursor.Rest();
    return NpduError::none;
}

const char* ToString(NpduError error) {
    switch (error) {
    case NpduError::none:
        return "no error";
    case NpduError::too_short:
        return "too short";
    case NpduError::wrong_version:
        return "unknown version";
    case NpduError::bad_source:
        return "impossible source";
    case NpduError::bad_destination:
        return "impossible destination";
    case NpduError::bad_length:
        return "address too long";
    }
    return "?";
}

bool PrependNpdu(Frame& frame, const Npdu& npdu) {
    const bool proprietary = npdu.IsNetworkMessage && static_cast<std::uint8_t>(npdu.Message) >= PROPRIETARY_MESSAGE;
    const std::size_t size = 2 + StationSize(npdu.DestinationNetwork, npdu.Destination) +
                             StationSize(npdu.SourceNetwork, npdu.Source) + (npdu.DestinationNetwork != 0 ? 1 : 0) +
                             (npdu.IsNetworkMessage ? 1 : 0) + (proprietary ? 2 : 0);
    std::uint8_t* at = frame.Prepend(size);
    if (at == nullptr)
        return false;
    *at++ = NPDU_VERSION;
    *at++ = static_cast<std::uint8_t>(
        (npdu.IsNetworkMessage ? NETWORK_MESSAGE : 0) | (npdu.DestinationNetwork != 0 ? DESTINATION_PRESENT : 0) |
        (npdu.SourceNetwork != 0 ? SOURCE_PRESENT : 0) | (npdu.ExpectingReply ? EXPECTING_REPLY : 0) |
        static_cast<std::uint8_t>(npdu.Priority));
    at = WriteStation(at, npdu.DestinationNetwork, npdu.Destination);
    at = WriteStation(at, npdu.SourceNetwork, npdu.Source);
    if (npdu.DestinationNetwork != 0)
        *at++ = npdu.HopCount;
    if (npdu.IsNetworkMessage)
        *at++ = static_cast<std::uint8_t>(npdu.Message);
    if (proprietary)
        WriteU16(at, npdu.VendorId);
    return true;
}

} // namespace bacnet
