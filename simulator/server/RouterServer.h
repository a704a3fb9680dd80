// A simulated router between the IP network and networks of one-octet addresses (clause 6): forwards to the devices on
// them and speaks for them. Belongs to one server thread, except where said.
#pragma once

#include "platform/stack/network/Npdu.h"
#include "simulator/server/DeviceServer.h"

#include <map>

namespace sim {

class RouterServer {
public:
    // socket is borrowed and has to be open while frames come. iAmPerMs: see SimulatorConfig.
    RouterServer(const bacnet::UdpSocket& socket, std::uint32_t iAmPerMs) : m_socket(socket), m_iAmPerMs(iAmPerMs) {}

    const bacnet::UdpSocket& Socket() const { return m_socket; }
    // The server is borrowed. False when the address is taken.
    bool Add(std::uint16_t network, std::uint8_t mac, DeviceServer& server);
    void AppendDevices(std::vector<DeviceServer*>& devices) const;
    void AddNetwork(std::uint16_t network) { m_networks[network]; }

    // What came to the router alone.
    void OnNpdu(ServerContext& context, const bacnet::BipAddress& from, const bacnet::Npdu& npdu);
    // What came to all stations of the IP network. Any server thread.
    void OnBroadcast(ServerContext& context, const bacnet::BipAddress& from, const bacnet::Npdu& npdu);
    // I-Am-Router-To-Network for all networks, to all, as a router says when it starts. Any server thread.
    void Announce(FrameSender& out) const;

private:
    using Stations = std::map<std::uint8_t, DeviceServer*>;

    void OnMessage(ServerContext& context, const bacnet::Npdu& npdu) const;
    void SendIAmRouter(FrameSender& out, std::span<const std::uint16_t> networks) const;
    void ForwardBroadcast(ServerContext& context, const Requester& from, const bacnet::Npdu& npdu) const;

    const bacnet::UdpSocket& m_socket;
    std::uint32_t m_iAmPerMs;
    std::map<std::uint16_t, Stations> m_networks; // constant while the simulation runs
};

// The station that sent the frame.
Requester RequesterOf(const bacnet::BipAddress& link, const bacnet::Npdu& npdu);

} // namespace sim
