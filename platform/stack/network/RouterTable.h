// Which router leads to which network: learnt from I-Am-Router-To-Network and from the source networks of what routers
// forward (some never announce themselves). No lock of its own: the network layer's lock covers it.
#pragma once

#include "platform/stack/transport/MacAddress.h"

#include <cstdint>
#include <map>
#include <vector>

namespace bacnet {

struct RouterEntry {
    std::uint16_t Network = 0;
    std::uint8_t Port = 0;
    MacAddress Router;
};

class RouterTable {
public:
    // True when this was new or has changed.
    bool Learn(std::uint16_t network, std::uint8_t port, const MacAddress& router);
    // Only when the network is still reached through that router.
    bool Forget(std::uint16_t network, std::uint8_t port, const MacAddress& router);
    const RouterEntry* Find(std::uint16_t network) const;
    std::vector<RouterEntry> List() const;

private:
    std::map<std::uint16_t, RouterEntry> m_entries; // at most one for each of 65534 networks
};

} // namespace bacnet
