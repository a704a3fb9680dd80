// What the host tells the stack when it makes the client.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/transaction/Settings.h"
#include "platform/stack/transport/BroadcastSettings.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace bacnet {

// One BACnet/IP port.
struct ClientPort {
    // The number that local devices of this port carry in their addresses; 0 where there is one port only.
    std::uint16_t Network = 0;
    std::string BindAddress; // "a.b.c.d" of this machine; empty: all of its addresses
    std::uint16_t UdpPort = BACNET_IP_PORT;
    std::string BroadcastAddress; // empty: that of the bound address' network
    // At most one of these; Bbmd needs a BindAddress.
    std::optional<ForeignSettings> Foreign = std::nullopt;
    std::optional<BbmdSettings> Bbmd = std::nullopt;
};

// The station as a BACnet device of its own.
struct OwnDevice {
    std::uint32_t Instance = BACSTAC_ALL_INSTANCES; // none: the station does not answer as a device
    std::string Name;                               // UTF-8, as are all texts here
    std::uint32_t VendorId = 0;
    std::string VendorName;
    std::string ModelName;
    std::string FirmwareRevision;
    std::string ApplicationVersion;
    std::string Description;
    std::string Location;
};

struct ClientConfig {
    std::vector<ClientPort> Ports;
    TransactionSettings Transactions; // APDU timeout and retries among them
    OwnDevice Device;
    // Devices by instance whose text is of another encoding than it says, each as FindEncoding knows it
    // (platform/stack/codec/CodePage.h).
    std::map<std::uint32_t, std::string> TextEncodings;
    // Where the datagrams of all ports are recorded, for network analysers (pcap); empty: nowhere. A file that is there
    // is overwritten.
    std::string CaptureFile;
    std::uint64_t CaptureLimit = 64U * 1024 * 1024; // octets; recording ends there
};

} // namespace bacnet
