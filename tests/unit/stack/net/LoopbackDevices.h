// BACnet/IP devices on loopback that answer every confirmed request, on one thread: each device is one address, and its
// host number says how it behaves. For tests of the stack under real sockets and threads.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "platform/stack/network/Npdu.h"
#include "platform/stack/transport/UdpSocket.h"
#include "tests/support/Loopback.h"

#include <array>
#include <atomic>
#include <cstring>
#include <deque>
#include <map>
#include <stdexcept>
#include <thread>
#include <vector>

namespace fakes {

class LoopbackDevices {
public:
    // Hosts of the block. Every one below answers at once with the octets of the request behind its own host number.
    static constexpr unsigned STATION = 1; // the stack's own
    static constexpr unsigned FIRST = 10;  // to LAST: answer at once
    static constexpr unsigned LAST = 15;
    static constexpr unsigned SLOW = 20;       // after 60 ms
    static constexpr unsigned OTHER_PORT = 21; // from another UDP port of its address
    static constexpr unsigned DEAD = 30;       // never; nobody has the address

    explicit LoopbackDevices(const testing_support::LoopbackBlock& block) : m_block(block) {
        for (unsigned host = FIRST; host <= LAST; ++host)
            Open(host, block.Port());
        Open(SLOW, block.Port());
        Open(OTHER_PORT, block.Port());
        bacnet::UdpSocket::Options options;
        const std::string reason = m_odd.Open({block.Ip(OTHER_PORT), 0}, options);
        if (!reason.empty())
            throw std::runtime_error(reason);
        m_thread = std::thread([this] { Run(); });
    }
    ~LoopbackDevices() {
        m_stop = true;
        m_waiter.Interrupt();
        m_thread.join();
    }
    LoopbackDevices(const LoopbackDevices&) = delete;
    LoopbackDevices& operator=(const LoopbackDevices&) = delete;

    // Devices stop answering, without going away.
    void Mute(bool mute) { m_mute = mute; }
    std::uint64_t Received() const { return m_received; }

private:
    using Clock = std::chrono::steady_clock;
    struct Late {
        Clock::time_point At;
        bacnet::BipAddress To;
        std::vector<std::uint8_t> Octets;
    };

    void Open(unsigned host, std::uint16_t port) {
        bacnet::UdpSocket::Options options;
        options.ReceiveBuffer = 1024 * 1024;
        bacnet::UdpSocket socket;
        const std::string reason = socket.Open({m_block.Ip(host), port}, options);
        if (!reason.empty())
            throw std::runtime_error(reason);
        m_hosts.push_back(host);
        m_sockets.push_back(std::move(socket));
    }

    void Run() {
        std::vector<const bacnet::UdpSocket*> sockets;
        for (const bacnet::UdpSocket& socket : m_sockets)
            sockets.push_back(&socket);
        bacnet::DatagramBatch batch;
        while (!m_stop) {
            const unsigned ready = m_waiter.Wait(sockets, m_late.empty() ? -1 : 5);
            for (std::size_t i = 0; i < m_sockets.size(); ++i) {
                if ((ready >> i & 1U) == 0)
                    continue;
                m_sockets[i].Receive(batch, bacnet::DatagramBatch::CAPACITY, false);
                for (std::size_t n = 0; n < batch.Count(); ++n)
                    OnDatagram(i, batch.Octets(n), batch.From(n));
            }
            while (!m_late.empty() && m_late.front().At <= Clock::now()) {
                m_sockets[SlowSocket()].Send(m_late.front().To, m_late.front().Octets);
                m_late.pop_front();
            }
        }
    }
    std::size_t SlowSocket() const { return LAST - FIRST + 1; }

    void OnDatagram(std::size_t index, std::span<const std::uint8_t> datagram, const bacnet::BipAddress& from) {
        bacnet::BvllMessage message;
        bacnet::Npdu npdu;
        bacnet::Apdu request;
        if (bacnet::DecodeBvll(datagram, message) != bacnet::BvllError::none ||
            bacnet::DecodeNpdu(message.Payload, npdu) != bacnet::NpduError::none || npdu.IsNetworkMessage ||
            bacnet::DecodeApdu(npdu.Payload, request) != bacnet::ApduError::none ||
            request.Type != bacnet::PduType::confirmed_request)
            return;
        ++m_received;
        if (m_mute)
            return;
        const unsigned host = m_hosts[index];
        bacnet::Apdu header;
        header.Type = bacnet::PduType::complex_ack;
        header.InvokeId = request.InvokeId;
        header.Service = request.Service;
        bacnet::Frame frame;
        const std::array<std::uint8_t, 1> number{static_cast<std::uint8_t>(host)};
        frame.Append(number);
        frame.Append(request.Payload);
        bacnet::PrependApdu(frame, header);
        bacnet::PrependNpdu(frame, {});
        bacnet::PrependBvll(frame, bacnet::BvlcFunction::original_unicast);
        if (host == SLOW)
            m_late.push_back(
                {Clock::now() + std::chrono::milliseconds(60), from, {frame.Octets().begin(), frame.Octets().end()}});
        else
            (host == OTHER_PORT ? m_odd : m_sockets[index]).Send(from, frame.Octets());
    }

    const testing_support::LoopbackBlock& m_block;
    std::vector<unsigned> m_hosts;
    std::vector<bacnet::UdpSocket> m_sockets;
    bacnet::UdpSocket m_odd;
    bacnet::SocketWaiter m_waiter;
    std::deque<Late> m_late;
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_mute{false};
    std::atomic<std::uint64_t> m_received{0};
    std::thread m_thread;
};

} // namespace fakes
