// BACnet devices on this machine's loopback network, for tests, benchmarks and the demonstration. Constructed from a
// configuration, started once; its own threads serve until it is stopped or destroyed.
//
//     sim::Simulator simulator(sim::GenerateConfig(counts));
//     std::string error;
//     if (!simulator.Start(error)) ...
//     simulator.GetDevice(0).SetFault(sim::Fault::Slow(200));
//
// All functions but Start and Stop may be called by any thread.
#pragma once

#include "simulator/Config.h"
#include "simulator/model/Device.h"

#include <memory>
#include <string>
#include <vector>

namespace sim {

class Simulator {
public:
    // Builds the devices; binds nothing yet. Device instances have to be unique and addresses different: Start tells.
    explicit Simulator(SimulatorConfig config);
    ~Simulator(); // stops
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    // Binds all sockets and starts the threads. On failure error says why and nothing runs.
    bool Start(std::string& error);
    void Stop(); // sockets are closed when it returns; Start again is possible

    // Devices in the order of the configuration, those behind routers last. The references stay good for life.
    std::size_t DeviceCount() const;
    Device& GetDevice(std::size_t index) const;
    Device* FindDevice(std::uint32_t instance) const; // null when there is none
    // As a client addresses it; of a device behind a router with its network and MAC.
    BACSTAC_ADDRESS AddressOf(std::size_t index) const;

    Stats GetStats() const; // the sum of all devices

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace sim
