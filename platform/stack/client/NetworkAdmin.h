// How the stack's networks stand, for those who show it: ports, routers, and the broadcast tables of any station. Any
// thread at any time while the client lives.
#pragma once

#include "platform/stack/transport/BroadcastManagement.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace bacnet {

class BipPort;
class NetworkLayer;

struct PortStatus {
    std::uint16_t Network = 0;     // as configured; 0: none
    std::uint16_t ToldNetwork = 0; // the network's number as others tell it; 0: nobody has
    std::string Address;           // "a.b.c.d:port"; empty where the link is not BACnet/IP, as all below
    std::string BroadcastAddress;
    BroadcastStatus Broadcasting;
    std::uint64_t Malformed = 0; // datagrams that were no frames
    std::uint64_t Refused = 0;   // BVLC-Results other than success
};

struct RouterStatus {
    std::uint16_t Network = 0; // that it leads to
    std::uint8_t Port = 0;     // index of Ports
    std::string Router;        // "a.b.c.d:port", or the octets of its MAC in hexadecimal
    bool Announced = false;    // false: seen to forward only
    bool Busy = false;         // takes nothing for that network at present
    std::uint16_t MaxApdu = 0; // octets, when it has refused longer ones; otherwise 0
};

// Each table is there when its Read is done.
struct BroadcastTables {
    TableRead DistributionRead = TableRead::failed;
    std::vector<BdtEntry> Distribution;
    TableRead ForeignRead = TableRead::failed;
    std::vector<FdtEntry> Foreign;
};

class NetworkAdmin {
public:
    // ports: one for each port of network, null where the link is not BACnet/IP. All are borrowed.
    NetworkAdmin(NetworkLayer& network, std::vector<BipPort*> ports) : m_network(network), m_ports(std::move(ports)) {}

    std::vector<PortStatus> Ports() const;
    // The routers known so far, ascending by network.
    std::vector<RouterStatus> Routers() const;
    // Asks all routers to announce themselves; some seconds later Routers holds who has.
    void AskForRouters();
    // Reads the tables of the station at address, sending from a port (index of Ports). Blocks for at most six times
    // wait. Not on a background thread of the stack.
    BroadcastTables ReadBroadcastTables(std::size_t port, const BipAddress& address,
                                        std::chrono::milliseconds wait) const;

private:
    NetworkLayer& m_network;
    const std::vector<BipPort*> m_ports;
};

// For people: "done", "refused: it is no broadcast management device", "no answer" or "failed".
const char* ToString(TableRead read);

} // namespace bacnet
