// Puts the headers on APDUs and sends them in batches. One thread.
#pragma once

#include "platform/stack/network/Npdu.h"
#include "platform/stack/transport/Frame.h"
#include "platform/stack/transport/UdpSocket.h"
#include "simulator/server/Requester.h"

#include <array>
#include <cstdint>

namespace sim {

// Who sends: a socket of the IP network, and behind a router the network and the station on it.
struct Origin {
    const bacnet::UdpSocket* Socket = nullptr;
    std::uint16_t Network = 0;
    std::uint8_t Mac = 0;
};

class FrameSender {
public:
    explicit FrameSender(const bacnet::BipAddress& broadcast) : m_broadcast(broadcast) {}

    // An empty frame to append an APDU to. It is sent by the next of the three calls below, which may be left out.
    bacnet::Frame& Begin();
    void Send(const Origin& origin, const Requester& to);
    // On the IP network (network 0), or with that destination network, 65535 for all.
    void Broadcast(const Origin& origin, std::uint16_t network);
    // A message of the network layer from a router; npdu tells all but the payload.
    void SendMessage(const bacnet::UdpSocket& socket, bacnet::Npdu npdu, const bacnet::BipAddress* to);

    // An octet string that is a datagram already.
    void SendDatagram(const bacnet::UdpSocket& socket, const bacnet::BipAddress& to,
                      std::span<const std::uint8_t> datagram);

    void Flush();

private:
    static constexpr std::size_t CAPACITY = 32;

    void Queue(const bacnet::UdpSocket& socket, const bacnet::BipAddress& to);
    static void SetSource(const Origin& origin, bacnet::Npdu& npdu);

    bacnet::BipAddress m_broadcast;
    const bacnet::UdpSocket* m_socket = nullptr; // of all frames that wait
    std::size_t m_count = 0;                     // frames that wait
    std::array<bacnet::Frame, CAPACITY> m_frames;
    std::array<bacnet::OutgoingDatagram, CAPACITY> m_datagrams;
};

} // namespace sim
