#include "simulator/server/Site.h"

#include "simulator/server/Poller.h"

namespace sim {

namespace {

constexpr int BROADCAST_BUFFER = 4 * 1024 * 1024; // all devices hear each other's I-Am there

} // namespace

std::string Site::Bind(std::uint32_t ip, std::uint16_t port, Endpoint*& endpoint) {
    Endpoints.push_back(std::make_unique<Endpoint>());
    endpoint = Endpoints.back().get();
    return endpoint->Socket.Open({ip, port}, {});
}

std::string Site::Open(const SimulatorConfig& config, const std::vector<std::unique_ptr<Device>>& devices) {
    std::string error = AllowOpenSockets(config.Devices.size() + config.Routers.size() + 1);
    if (!error.empty())
        return error;
    BroadcastAddress = {config.BroadcastIp, config.Port};
    IAmPerMs = config.IAmPerMs;
    bacnet::UdpSocket::Options shared;
    shared.Shared = true;
    shared.ReceiveBuffer = BROADCAST_BUFFER;
    error = Broadcasts.Socket.Open(BroadcastAddress, shared);
    if (!error.empty())
        return error;

    std::size_t next = 0;
    const auto portOf = [&](std::uint16_t port) { return port != 0 ? port : config.Port; };
    for (const DeviceConfig& device : config.Devices) {
        Endpoint* endpoint = nullptr;
        error = Bind(device.Ip, portOf(device.Port), endpoint);
        if (!error.empty())
            return "device " + std::to_string(device.Instance) + ": " + error;
        Devices.push_back(
            std::make_unique<DeviceServer>(*devices[next++], Origin{&endpoint->Socket, 0, 0}, config.IAm, Awaited));
        endpoint->Device = Devices.back().get();
        LocalDevices.push_back(endpoint->Device);
    }
    for (const RouterConfig& router : config.Routers) {
        Endpoint* endpoint = nullptr;
        error = Bind(router.Ip, portOf(router.Port), endpoint);
        if (!error.empty())
            return "router: " + error;
        Routers.push_back(std::make_unique<RouterServer>(endpoint->Socket, IAmPerMs));
        endpoint->Router = Routers.back().get();
        for (const NetworkConfig& network : router.Networks) {
            endpoint->Router->AddNetwork(network.Number);
            for (const DeviceConfig& device : network.Devices) {
                const Origin origin{&endpoint->Socket, network.Number, device.Mac};
                Devices.push_back(std::make_unique<DeviceServer>(*devices[next++], origin, config.IAm, Awaited));
                if (!endpoint->Router->Add(network.Number, device.Mac, *Devices.back()))
                    return "device " + std::to_string(device.Instance) + ": address " + std::to_string(device.Mac) +
                           " on network " + std::to_string(network.Number) + " is taken";
            }
        }
    }
    return {};
}

} // namespace sim
