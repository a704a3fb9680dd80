#include "platform/stack/transport/Bvll.h"

#include <array>
#include <charconv>

namespace bacnet {

namespace {

constexpr std::uint8_t BACNET_IP = 0x81;
constexpr std::size_t ORIGIN = BIP_ADDRESS_LENGTH; // in front of a forwarded NPDU

} // namespace

void WriteBvllHeader(std::uint8_t* at, BvlcFunction function, std::size_t length) {
    at[0] = BACNET_IP;
    at[1] = static_cast<std::uint8_t>(function);
    at[2] = static_cast<std::uint8_t>(length >> 8);
    at[3] = static_cast<std::uint8_t>(length);
}

void WriteBipAddress(std::uint8_t* at, const BipAddress& address) {
    at[0] = static_cast<std::uint8_t>(address.Ip >> 24);
    at[1] = static_cast<std::uint8_t>(address.Ip >> 16);
    at[2] = static_cast<std::uint8_t>(address.Ip >> 8);
    at[3] = static_cast<std::uint8_t>(address.Ip);
    at[4] = static_cast<std::uint8_t>(address.Port >> 8);
    at[5] = static_cast<std::uint8_t>(address.Port);
}

BipAddress ReadBipAddress(const std::uint8_t* at) {
    BipAddress address;
    address.Ip = static_cast<std::uint32_t>(at[0]) << 24 | static_cast<std::uint32_t>(at[1]) << 16 |
                 static_cast<std::uint32_t>(at[2]) << 8 | at[3];
    address.Port = static_cast<std::uint16_t>(at[4] << 8 | at[5]);
    return address;
}

MacAddress ToMac(const BipAddress& address) {
    std::array<std::uint8_t, BIP_ADDRESS_LENGTH> octets{};
    WriteBipAddress(octets.data(), address);
    return MacAddress(octets);
}

bool FromMac(const MacAddress& mac, BipAddress& address) {
    if (mac.Length() != BIP_ADDRESS_LENGTH)
        return false;
    address = ReadBipAddress(mac.Data());
    return true;
}

std::string ToString(const BipAddress& address) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += std::to_string(address.Ip >> shift & 0xFF);
        text += shift != 0 ? '.' : ':';
    }
    return text + std::to_string(address.Port);
}

bool ParseIpV4(const std::string& text, std::uint32_t& ip) {
    std::uint32_t value = 0;
    const char* at = text.data();
    const char* const end = at + text.size();
    for (int part = 0; part < 4; ++part) {
        if (part != 0 && (at == end || *at++ != '.'))
            return false;
        unsigned number = 0;
        const auto [next, error] = std::from_chars(at, end, number);
        if (error != std::errc() || number > 255)
            return false;
        value = value << 8 | number;
        at = next;
    }
    if (at != end)
        return false;
    ip = value;
    return true;
}

bool ParseBipAddress(const std::string& text, BipAddress& address) {
    const std::size_t colon = text.find(':');
    BipAddress parsed{0, BACNET_IP_PORT};
    if (colon != std::string::npos) {
        const char* const end = text.data() + text.size();
        const auto [next, error] = std::from_chars(text.data() + colon + 1, end, parsed.Port);
        if (error != std::errc() || next != end || parsed.Port == 0)
            return false;
    }
    if (!ParseIpV4(text.substr(0, colon), parsed.Ip))
        return false;
    address = parsed;
    return true;
}

BvllError DecodeBvll(std::span<const std::uint8_t> datagram, BvllMessage& message) {
    if (datagram.size() < BVLL_HEADER)
        return BvllError::too_short;
    if (datagram[0] != BACNET_IP)
        return BvllError::not_bacnet_ip;
    const std::size_t length = static_cast<std::size_t>(datagram[2] << 8 | datagram[3]);
    if (length != datagram.size())
        return BvllError::wrong_length;

    const auto function = static_cast<BvlcFunction>(datagram[1]);
    const auto rest = datagram.subspan(BVLL_HEADER);
    switch (function) {
    case BvlcFunction::result:
        if (rest.size() != 2)
            return BvllError::too_short;
        message = {function, rest, {}, static_cast<std::uint16_t>(rest[0] << 8 | rest[1])};
        return BvllError::none;
    case BvlcFunction::forwarded_npdu:
        if (rest.size() < ORIGIN)
            return BvllError::too_short;
        message = {function, rest.subspan(ORIGIN), ReadBipAddress(rest.data()), 0};
        return BvllError::none;
    case BvlcFunction::write_bdt:
    case BvlcFunction::read_bdt:
    case BvlcFunction::read_bdt_ack:
    case BvlcFunction::register_foreign_device:
    case BvlcFunction::read_fdt:
    case BvlcFunction::read_fdt_ack:
    case BvlcFunction::delete_fdt_entry:
    case BvlcFunction::distribute_broadcast:
    case BvlcFunction::original_unicast:
    case BvlcFunction::original_broadcast:
    case BvlcFunction::secure_bvll:
        message = {function, rest, {}, 0};
        return BvllError::none;
    }
    message = {function, rest, {}, 0};
    return BvllError::unknown_function;
}

const char* ToString(BvllError error) {
    switch (error) {
    case BvllError::none:
        return "no error";
    case BvllError::too_short:
        return "too short";
    case BvllError::not_bacnet_ip:
        return "not BACnet/IP";
    case BvllError::wrong_length:
        return "the length field is not the datagram's length";
    case BvllError::unknown_function:
        return "unknown function";
    }
    return "?";
}

bool PrependBvll(Frame& frame, BvlcFunction function) {
    std::uint8_t* at = frame.Prepend(BVLL_HEADER);
    if (at == nullptr)
        return false;
    WriteBvllHeader(at, function, frame.Size());
    return true;
}

bool PrependForwarded(Frame& frame, const BipAddress& origin) {
    std::uint8_t* at = frame.Prepend(BVLL_HEADER + ORIGIN);
    if (at == nullptr)
        return false;
    WriteBvllHeader(at, BvlcFunction::forwarded_npdu, frame.Size());
    WriteBipAddress(at + BVLL_HEADER, origin);
    return true;
}

void EncodeResult(BvlcResult result, std::span<std::uint8_t, 6> octets) {
    WriteBvllHeader(octets.data(), BvlcFunction::result, octets.size());
    octets[4] = static_cast<std::uint8_t>(static_cast<std::uint16_t>(result) >> 8);
    octets[5] = static_cast<std::uint8_t>(result);
}

bool NakFor(BvlcFunction function, BvlcResult& result) {
    switch (function) {
    case BvlcFunction::write_bdt:
        result = BvlcResult::write_bdt_nak;
        return true;
    case BvlcFunction::read_bdt:
        result = BvlcResult::read_bdt_nak;
        return true;
    case BvlcFunction::register_foreign_device:
        result = BvlcResult::register_foreign_device_nak;
        return true;
    case BvlcFunction::read_fdt:
        result = BvlcResult::read_fdt_nak;
        return true;
    case BvlcFunction::delete_fdt_entry:
        result = BvlcResult::delete_fdt_entry_nak;
        return true;
    case BvlcFunction::distribute_broadcast:
        result = BvlcResult::distribute_broadcast_nak;
        return true;
    default:
        return false; // acknowledgements and NPDUs
    }
}

} // namespace bacnet
