// A simulated site for tests of whole transfers, and what a station has to store of it, worked out from the devices'
// buffers by rules of its own. Equal counts give equal sites, also in another process.
#pragma once

#include "api/bacnet/Types.h"
#include "api/kernel/HistoryStore.h"
#include "module/console/Tag.h"
#include "simulator/Generate.h"
#include "simulator/Simulator.h"

#include <string>
#include <vector>

namespace integration {

// As the simulator generates it, but that no two logs share a logged property and that every kind of datum occurs
// unless the counts ask for reals only.
sim::SimulatorConfig MakeSite(const sim::Counts& counts);

// All devices of a site with their addresses, those behind routers last.
struct SiteDevice {
    const sim::DeviceConfig& Config;
    BACSTAC_ADDRESS Address;
};
std::vector<SiteDevice> DevicesOf(const sim::SimulatorConfig& site);

// A tag of the station, by name, and what it is bound to; binding.tagId is left to the kernel.
struct PlannedTag {
    std::string name;
    CTag binding;
};
enum class StatusTags { none, all };
// One tag for each logged property, in the order of the site, with four status tags behind it if asked for.
std::vector<PlannedTag> PlanTags(const sim::SimulatorConfig& site, StatusTags statusTags = StatusTags::none);

// Stored records as text, "tag 65536 at 1767225600.010: 21.5", sorted; two equal lists hold equal records.
using RecordLines = std::vector<std::string>;
std::string Line(const VfiRecord& record);
// What a station of number 1 stores of the last `newest` records of each log (all without it).
RecordLines ExpectedRecords(const sim::Simulator& simulator, const sim::SimulatorConfig& site,
                            const std::vector<PlannedTag>& tags, std::size_t newest = ~std::size_t{0});
// Empty when equal, otherwise how many are missing or too many, with the first of each. Both are sorted.
std::string Difference(const RecordLines& expected, const RecordLines& actual);

} // namespace integration
