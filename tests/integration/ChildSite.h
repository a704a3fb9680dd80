// The site that a test and the station in its child process agree on.
#pragma once

#include "tests/integration/Site.h"

#include <cstdint>

namespace integration {

inline constexpr int CHILD_CHUNK = 20;

// One device 1234 at that address, with so many trend logs of reals and so many records in each; the logs have room
// for a hundred thousand.
inline sim::SimulatorConfig MakeChildSite(std::uint32_t ip, std::uint16_t port, std::uint32_t trends,
                                          std::uint64_t records) {
    sim::Counts counts;
    counts.BaseInstance = 1234;
    counts.FirstIp = ip;
    counts.Port = port;
    counts.Trends = trends;
    counts.Records = records;
    counts.Capacity = 100'000;
    counts.OnlyReal = true;
    return MakeSite(counts);
}

} // namespace integration
