// What a user sets about broadcasts beyond a BACnet/IP port's own network; see BroadcastManagement.
#pragma once

#include "platform/stack/transport/BroadcastTables.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace bacnet {

// The port registers as a foreign device.
struct ForeignSettings {
    static constexpr std::uint16_t SHORTEST_TIME_TO_LIVE = 10;

    BipAddress Bbmd;                // the broadcast management device that it registers with
    std::uint16_t TimeToLive = 300; // seconds, at least SHORTEST_TIME_TO_LIVE; renewed at half of it
};

// The port is a broadcast management device.
struct BbmdSettings {
    // The broadcast distribution table, at most MAX_TABLE_ENTRIES; this device itself is added when it is not in it.
    std::vector<BdtEntry> Table;
    std::size_t ForeignDevices = 64; // room for them, 0..MAX_TABLE_ENTRIES
    bool AcceptWrite = false;        // other stations may replace the table until the port is opened anew
};

} // namespace bacnet
