// All that a running simulation has: sockets and the servers behind them. Built before the server threads start and
// constant while they run.
#pragma once

#include "simulator/server/RouterServer.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace sim {

// A socket and who is behind it.
struct Endpoint {
    bacnet::UdpSocket Socket;
    DeviceServer* Device = nullptr;
    RouterServer* Router = nullptr; // neither of the two: the broadcast address
    std::size_t Batch = 1;          // datagrams to ask for at once; follows the traffic
};

struct Site {
    // Opens every socket. Empty text on success, otherwise the reason.
    std::string Open(const SimulatorConfig& config, const std::vector<std::unique_ptr<Device>>& devices);

    bacnet::BipAddress BroadcastAddress;
    std::uint32_t IAmPerMs = 0;
    std::atomic<unsigned> Awaited = 0; // devices whose I-Am is waited for
    Endpoint Broadcasts;
    std::vector<std::unique_ptr<Endpoint>> Endpoints; // of devices and routers
    std::vector<std::unique_ptr<DeviceServer>> Devices;
    std::vector<std::unique_ptr<RouterServer>> Routers;
    std::vector<DeviceServer*> LocalDevices; // on the IP network

private:
    std::string Bind(std::uint32_t ip, std::uint16_t port, Endpoint*& endpoint);
};

} // namespace sim
