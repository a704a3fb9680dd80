// Which router leads to which network: learnt from I-Am-Router-To-Network and from the source networks of what routers
// forward (some never announce themselves). No lock of its own: the network layer's lock covers it. Times are
// milliseconds that only grow.
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
    bool Announced = false;      // by itself; otherwise seen to forward
    std::int64_t BusyUntil = 0;  // takes nothing for the network before; 0: not busy
    std::uint16_t MaxApdu = 0;   // octets that get through, as it has told by refusing more; 0: no limit is known
    std::int64_t NarrowedAt = 0; // when MaxApdu was set
};

class RouterTable {
public:
    // True when this was new or has changed: another router, or one that is not busy any more.
    bool Learn(std::uint16_t network, std::uint8_t port, const MacAddress& router, bool announced);
    // The following only when the network is still reached through that router; true when something has changed.
    bool Forget(std::uint16_t network, std::uint8_t port, const MacAddress& router);
    bool SetBusy(std::uint16_t network, std::uint8_t port, const MacAddress& router, std::int64_t until);
    bool SetAvailable(std::uint16_t network, std::uint8_t port, const MacAddress& router);
    // A message was too long: the next smaller size of clause 20.1.2.5 is the limit from now on. Of many that were
    // under way at once, as calls to several stations are, the first counts: it takes NARROW_MS to make the next step.
    static constexpr std::int64_t NARROW_MS = 1000;
    bool Narrow(std::uint16_t network, std::uint8_t port, const MacAddress& router, std::int64_t now);

    const RouterEntry* Find(std::uint16_t network) const;
    std::vector<RouterEntry> List() const;
    // The networks that one router leads to.
    std::vector<std::uint16_t> NetworksOf(std::uint8_t port, const MacAddress& router) const;

private:
    RouterEntry* Of(std::uint16_t network, std::uint8_t port, const MacAddress& router);

    std::map<std::uint16_t, RouterEntry> m_entries; // at most one for each of 65534 networks
};

} // namespace bacnet
