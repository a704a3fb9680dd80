#include "platform/stack/transport/BroadcastTables.h"

namespace bacnet {

namespace {

// A datagram with its header; the parameters are left to the caller, who begins at BVLL_HEADER.
std::vector<std::uint8_t> Datagram(BvlcFunction function, std::size_t parameters) {
    std::vector<std::uint8_t> octets(BVLL_HEADER + parameters);
    WriteBvllHeader(octets.data(), function, octets.size());
    return octets;
}

void WriteU16(std::uint8_t* at, std::uint16_t value) {
    at[0] = static_cast<std::uint8_t>(value >> 8);
    at[1] = static_cast<std::uint8_t>(value);
}

std::uint16_t ReadU16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>(at[0] << 8 | at[1]);
}

} // namespace

std::vector<std::uint8_t> EncodeBvllRequest(BvlcFunction function) {
    return Datagram(function, 0);
}

std::vector<std::uint8_t> EncodeRegisterForeignDevice(std::uint16_t timeToLive) {
    auto octets = Datagram(BvlcFunction::register_foreign_device, 2);
    WriteU16(octets.data() + BVLL_HEADER, timeToLive);
    return octets;
}

std::vector<std::uint8_t> EncodeDeleteFdtEntry(const BipAddress& device) {
    auto octets = Datagram(BvlcFunction::delete_fdt_entry, BIP_ADDRESS_LENGTH);
    WriteBipAddress(octets.data() + BVLL_HEADER, device);
    return octets;
}

std::vector<std::uint8_t> EncodeBdt(BvlcFunction function, std::span<const BdtEntry> entries) {
    auto octets = Datagram(function, entries.size() * TABLE_ENTRY_LENGTH);
    std::uint8_t* at = octets.data() + BVLL_HEADER;
    for (const BdtEntry& entry : entries) {
        WriteBipAddress(at, entry.Address);
        WriteU16(at + 6, static_cast<std::uint16_t>(entry.Mask >> 16));
        WriteU16(at + 8, static_cast<std::uint16_t>(entry.Mask));
        at += TABLE_ENTRY_LENGTH;
    }
    return octets;
}

std::vector<std::uint8_t> EncodeReadFdtAck(std::span<const FdtEntry> entries) {
    auto octets = Datagram(BvlcFunction::read_fdt_ack, entries.size() * TABLE_ENTRY_LENGTH);
    std::uint8_t* at = octets.data() + BVLL_HEADER;
    for (const FdtEntry& entry : entries) {
        WriteBipAddress(at, entry.Address);
        WriteU16(at + 6, entry.TimeToLive);
        WriteU16(at + 8, entry.Remaining);
        at += TABLE_ENTRY_LENGTH;
    }
    return octets;
}

bool DecodeBdt(std::span<const std::uint8_t> payload, std::vector<BdtEntry>& entries) {
    if (payload.size() % TABLE_ENTRY_LENGTH != 0)
        return false;
    entries.clear();
    for (; !payload.empty(); payload = payload.subspan(TABLE_ENTRY_LENGTH)) {
        const std::uint32_t high = ReadU16(payload.data() + 6);
        entries.push_back({ReadBipAddress(payload.data()), high << 16 | ReadU16(payload.data() + 8)});
    }
    return true;
}

bool DecodeFdt(std::span<const std::uint8_t> payload, std::vector<FdtEntry>& entries) {
    if (payload.size() % TABLE_ENTRY_LENGTH != 0)
        return false;
    entries.clear();
    for (; !payload.empty(); payload = payload.subspan(TABLE_ENTRY_LENGTH))
        entries.push_back({ReadBipAddress(payload.data()), ReadU16(payload.data() + 6), ReadU16(payload.data() + 8)});
    return true;
}

bool DecodeRegisterForeignDevice(std::span<const std::uint8_t> payload, std::uint16_t& timeToLive) {
    if (payload.size() != 2)
        return false;
    timeToLive = ReadU16(payload.data());
    return true;
}

bool DecodeDeleteFdtEntry(std::span<const std::uint8_t> payload, BipAddress& device) {
    if (payload.size() != BIP_ADDRESS_LENGTH)
        return false;
    device = ReadBipAddress(payload.data());
    return true;
}

} // namespace bacnet
