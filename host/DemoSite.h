// The demonstration's site: how many devices, logs and records there are, and what follows from that. Equal counts give
// equal sites with equal records, so a later run on the same data folder finds what it stored before; greater counts
// only add.
#pragma once

#include "simulator/Config.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

struct AllPropPages;

namespace sim {
class Simulator;
}

struct DemoCounts {
    unsigned devices = 3;   // of three and more, the last one is behind a router
    unsigned trends = 5;    // logs of a device; of two and more, the last one is a trend-log-multiple
    unsigned records = 250; // in each log

    // Never smaller than before: what is stored stays stored.
    void GrowTo(const DemoCounts& other);
};

// FOLDER/demo.json. A missing file leaves counts as they are.
bool LoadDemoCounts(const std::string& path, DemoCounts& counts, std::string& error);
bool SaveDemoCounts(const std::string& path, const DemoCounts& counts, std::string& error);

class CDemoSite {
public:
    static constexpr const char* FLUSH_TAG = "Flush trend logs";

    CDemoSite(const DemoCounts& counts, std::uint16_t port);

    const sim::SimulatorConfig& Simulation() const { return m_simulation; }
    std::vector<std::uint32_t> Devices() const; // instances

    // The driver's configuration file: the tags of everything that is logged, and the flush tag.
    std::string ConfigText() const;
    // Selects every log of the site for the transfer, beside what is selected already.
    void AddTo(AllPropPages& pages) const;

    // How many records each tag has in the buffers of the running simulation.
    std::map<std::string, std::uint64_t> CountRecords(const sim::Simulator& simulator) const;

private:
    template <class Visitor>
    void VisitDevices(Visitor visitor) const;

    const std::uint16_t m_port;
    sim::SimulatorConfig m_simulation;
};
