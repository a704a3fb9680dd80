// What the figures measure against: simulated devices in a process of their own, and a client of them here.
#pragma once

#include "bench/Child.h"
#include "platform/stack/client/BacnetClient.h"
#include "simulator/Generate.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace bench {

// First address of a block of 127/8 that no other process of this program uses at the same time.
std::uint32_t LoopbackBlock();

// One device in that block, with analog inputs.
sim::SimulatorConfig OneDevice(std::uint32_t inputs);

// Devices in a child process on one processor (-1: any). They answer when the constructor returns.
class SimulatedSite {
public:
    SimulatedSite(sim::SimulatorConfig config, int processor);
    SimulatedSite(const sim::Counts& counts, int processor) : SimulatedSite(sim::GenerateConfig(counts), processor) {}

private:
    std::array<int, 2> m_ready; // pipe; before the child, which writes to it
    Child m_child;
};

// A client bound to an address of the block, with the site's devices in its directory.
std::unique_ptr<bacnet::BacnetClient> OpenClient(const sim::SimulatorConfig& site,
                                                 const bacnet::TransactionSettings& transactions = {});
std::unique_ptr<bacnet::BacnetClient> OpenClient(const sim::Counts& counts);

// Ends the program with the reason: a figure that cannot be measured is none.
[[noreturn]] void Fail(const std::string& reason);

} // namespace bench
