// Who a request came from, and so where its answer goes.
#pragma once

#include "platform/stack/transport/Bvll.h"

#include <cstdint>

namespace sim {

struct Requester {
    bacnet::BipAddress Link;   // on the IP network: the station, or the router in front of it
    std::uint16_t Network = 0; // of the station when it is behind a router, else 0
    bacnet::MacAddress Station;

    friend bool operator==(const Requester&, const Requester&) = default;
};

} // namespace sim
