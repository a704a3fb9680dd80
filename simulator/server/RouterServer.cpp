#include "simulator/server/RouterServer.h"

namespace sim {

namespace {

constexpr std::uint8_t REASON_UNKNOWN_NETWORK = 1; // clause 6.4.4: the router knows no way there

void AppendNumber(bacnet::Frame& frame, std::uint16_t number) {
    const std::uint8_t octets[] = {static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
    frame.Append(octets);
}

} // namespace

Requester RequesterOf(const bacnet::BipAddress& link, const bacnet::Npdu& npdu) {
    return {link, npdu.SourceNetwork, npdu.Source};
}

bool RouterServer::Add(std::uint16_t network, std::uint8_t mac, DeviceServer& server) {
    return m_networks[network].emplace(mac, &server).second;
}

void RouterServer::AppendDevices(std::vector<DeviceServer*>& devices) const {
    for (const auto& [number, stations] : m_networks)
        for (const auto& [mac, server] : stations)
            devices.push_back(server);
}

void RouterServer::OnNpdu(ServerContext& context, const bacnet::BipAddress& from, const bacnet::Npdu& npdu) {
    if (npdu.IsNetworkMessage) {
        OnMessage(context, npdu);
        return;
    }
    // The router is no device itself; and a frame whose hops are used up goes no further.
    if (npdu.DestinationNetwork == 0 || npdu.HopCount == 0)
        return;
    const Requester requester = RequesterOf(from, npdu);
    if (npdu.DestinationNetwork == bacnet::GLOBAL_BROADCAST) {
        ForwardBroadcast(context, requester, npdu);
        return;
    }
    const auto network = m_networks.find(npdu.DestinationNetwork);
    if (network == m_networks.end()) {
        bacnet::Frame& frame = context.Out.Begin();
        frame.Append(std::span(&REASON_UNKNOWN_NETWORK, 1));
        AppendNumber(frame, npdu.DestinationNetwork);
        bacnet::Npdu refusal;
        refusal.Message = bacnet::NetworkMessage::reject_message_to_network;
        refusal.DestinationNetwork = npdu.SourceNetwork;
        refusal.Destination = npdu.Source;
        context.Out.SendMessage(m_socket, refusal, &from);
        return;
    }
    if (npdu.Destination.Empty()) {
        ForwardBroadcast(context, requester, npdu);
        return;
    }
    if (npdu.Destination.Length() != 1)
        return; // no station of such a network
    const auto station = network->second.find(npdu.Destination.Octets()[0]);
    if (station != network->second.end())
        station->second->OnApdu(context, requester, npdu.Payload);
}

void RouterServer::OnBroadcast(ServerContext& context, const bacnet::BipAddress& from, const bacnet::Npdu& npdu) {
    if (npdu.IsNetworkMessage)
        OnMessage(context, npdu);
    else if (npdu.DestinationNetwork != 0 && npdu.HopCount != 0 && npdu.Destination.Empty())
        ForwardBroadcast(context, RequesterOf(from, npdu), npdu);
}

void RouterServer::ForwardBroadcast(ServerContext& context, const Requester& from, const bacnet::Npdu& npdu) const {
    UnconfirmedRequest request;
    if (!ReadUnconfirmed(npdu.Payload, request))
        return;
    const bool globally = npdu.DestinationNetwork == bacnet::GLOBAL_BROADCAST;
    Pacer pacer(m_iAmPerMs);
    for (const auto& [number, stations] : m_networks) {
        if (!globally && number != npdu.DestinationNetwork)
            continue;
        for (const auto& [mac, server] : stations)
            server->OnBroadcast(context, from, request, globally, pacer);
    }
}

void RouterServer::OnMessage(ServerContext& context, const bacnet::Npdu& npdu) const {
    if (npdu.Message != bacnet::NetworkMessage::who_is_router_to_network)
        return;
    if (npdu.Payload.size() < 2) {
        Announce(context.Out);
        return;
    }
    const auto wanted = static_cast<std::uint16_t>(npdu.Payload[0] << 8 | npdu.Payload[1]);
    if (m_networks.contains(wanted))
        SendIAmRouter(context.Out, std::span(&wanted, 1));
}

void RouterServer::Announce(FrameSender& out) const {
    std::vector<std::uint16_t> numbers;
    numbers.reserve(m_networks.size());
    for (const auto& [number, stations] : m_networks)
        numbers.push_back(number);
    SendIAmRouter(out, numbers);
}

void RouterServer::SendIAmRouter(FrameSender& out, std::span<const std::uint16_t> networks) const {
    bacnet::Frame& frame = out.Begin();
    for (const std::uint16_t number : networks)
        AppendNumber(frame, number);
    bacnet::Npdu message;
    message.Message = bacnet::NetworkMessage::i_am_router_to_network;
    out.SendMessage(m_socket, message, nullptr);
}

} // namespace sim
