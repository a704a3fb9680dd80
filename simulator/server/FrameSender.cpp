#include "simulator/server/FrameSender.h"

namespace sim {

bacnet::Frame& FrameSender::Begin() {
    if (m_count == CAPACITY)
        Flush();
    m_frames[m_count].Clear();
    return m_frames[m_count];
}

void FrameSender::SetSource(const Origin& origin, bacnet::Npdu& npdu) {
    if (origin.Network == 0)
        return;
    npdu.SourceNetwork = origin.Network;
    npdu.Source = bacnet::MacAddress(std::span(&origin.Mac, 1));
}

void FrameSender::Send(const Origin& origin, const Requester& to) {
    bacnet::Npdu npdu;
    npdu.DestinationNetwork = to.Network;
    npdu.Destination = to.Station;
    SetSource(origin, npdu);
    if (bacnet::PrependNpdu(m_frames[m_count], npdu) &&
        bacnet::PrependBvll(m_frames[m_count], bacnet::BvlcFunction::original_unicast))
        Queue(*origin.Socket, to.Link);
}

void FrameSender::Broadcast(const Origin& origin, std::uint16_t network) {
    bacnet::Npdu npdu;
    npdu.DestinationNetwork = network;
    SetSource(origin, npdu);
    if (bacnet::PrependNpdu(m_frames[m_count], npdu) &&
        bacnet::PrependBvll(m_frames[m_count], bacnet::BvlcFunction::original_broadcast))
        Queue(*origin.Socket, m_broadcast);
}

void FrameSender::SendMessage(const bacnet::UdpSocket& socket, bacnet::Npdu npdu, const bacnet::BipAddress* to) {
    npdu.IsNetworkMessage = true;
    const auto function =
        to != nullptr ? bacnet::BvlcFunction::original_unicast : bacnet::BvlcFunction::original_broadcast;
    if (bacnet::PrependNpdu(m_frames[m_count], npdu) && bacnet::PrependBvll(m_frames[m_count], function))
        Queue(socket, to != nullptr ? *to : m_broadcast);
}

void FrameSender::SendDatagram(const bacnet::UdpSocket& socket, const bacnet::BipAddress& to,
                               std::span<const std::uint8_t> datagram) {
    if (Begin().Append(datagram))
        Queue(socket, to);
}

void FrameSender::Queue(const bacnet::UdpSocket& socket, const bacnet::BipAddress& to) {
    if (m_socket != &socket && m_count > 0) {
        // Frames of another socket wait: they go first. The new one keeps its place in memory, since Flush only counts.
        const std::size_t waiting = m_count;
        m_count = 0;
        m_socket->SendMany(std::span(m_datagrams).first(waiting));
        socket.Send(to, m_frames[waiting].Octets());
        return;
    }
    m_socket = &socket;
    m_datagrams[m_count] = {to, m_frames[m_count].Octets()};
    ++m_count;
}

void FrameSender::Flush() {
    if (m_count > 0)
        m_socket->SendMany(std::span(m_datagrams).first(m_count));
    m_count = 0;
}

} // namespace sim
