// The bare exchange with a simulated device: its requests sent and its answers received with nothing but the system
// calls around each datagram. What the client and the console add to that is what a figure shows.
#pragma once

#include "platform/stack/services/ServiceChoice.h"
#include "simulator/Config.h"

#include <cstdint>
#include <span>
#include <vector>

namespace bench {

using Datagram = std::vector<std::uint8_t>;

// A unicast BACnet/IP request as the client sends it (Annex J, clauses 6 and 20): invoke id 1, not segmented.
Datagram BareRequest(bacnet::ConfirmedService service, std::span<const std::uint8_t> parameters);

// Rounds a second, over a second, of all requests in turn with the site's first device.
double BareRate(const sim::SimulatorConfig& site, const std::vector<Datagram>& requests);

} // namespace bench
