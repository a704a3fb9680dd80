// The tables of broadcast management on BACnet/IP as they stand in messages (ANSI/ASHRAE 135 annex J.2.2 to J.2.9):
// pure functions over octets. Encoders give whole datagrams; decoders take what follows the header, of unknown origin.
#pragma once

#include "platform/stack/transport/Bvll.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace bacnet {

// One broadcast management device of the broadcast distribution table.
struct BdtEntry {
    BipAddress Address;
    // Broadcast distribution mask: all ones when the device gets each broadcast as a unicast and repeats it on its
    // network; the network's own mask when routers let a broadcast into that network through.
    std::uint32_t Mask = 0xFFFFFFFF;
    friend bool operator==(const BdtEntry&, const BdtEntry&) = default;
};

// One foreign device. Times in seconds.
struct FdtEntry {
    BipAddress Address;
    std::uint16_t TimeToLive = 0; // as it registered
    std::uint16_t Remaining = 0;  // until the entry is dropped, the grace time included
    friend bool operator==(const FdtEntry&, const FdtEntry&) = default;
};

inline constexpr std::size_t TABLE_ENTRY_LENGTH = 10; // in a message, of either table
// Entries of a table that are kept, and that a message of the longest usual frame can hold.
inline constexpr std::size_t MAX_TABLE_ENTRIES = 128;

// Functions without parameters: the reading of either table.
std::vector<std::uint8_t> EncodeBvllRequest(BvlcFunction function);
std::vector<std::uint8_t> EncodeRegisterForeignDevice(std::uint16_t timeToLive);
std::vector<std::uint8_t> EncodeDeleteFdtEntry(const BipAddress& device);
// function: write_bdt or read_bdt_ack.
std::vector<std::uint8_t> EncodeBdt(BvlcFunction function, std::span<const BdtEntry> entries);
std::vector<std::uint8_t> EncodeReadFdtAck(std::span<const FdtEntry> entries);

// False when the octets are not whole entries, and then nothing is changed. A table may be empty. One that came is
// taken however long it is: the datagram bounds it.
bool DecodeBdt(std::span<const std::uint8_t> payload, std::vector<BdtEntry>& entries);
bool DecodeFdt(std::span<const std::uint8_t> payload, std::vector<FdtEntry>& entries);
bool DecodeRegisterForeignDevice(std::span<const std::uint8_t> payload, std::uint16_t& timeToLive);
bool DecodeDeleteFdtEntry(std::span<const std::uint8_t> payload, BipAddress& device);

} // namespace bacnet
