// BACnet/IP (ANSI/ASHRAE 135 annex J) as a data link: one UDP socket bound to an address of this machine, and on Linux
// a second one bound to the network's broadcast address, since a socket that is bound to one address receives no
// broadcasts there. Every process and port of a machine may have that second socket; each gets its copy.
//
// Speaks original unicast, original broadcast and forwarded NPDU. Beyond that it may register as a foreign device, or
// be a broadcast management device itself; otherwise the functions that only such a device serves are answered with the
// NAK of annex J.2.
#pragma once

#include "platform/stack/transport/BroadcastManagement.h"
#include "platform/stack/transport/Bvll.h"
#include "platform/stack/transport/Capture.h"
#include "platform/stack/transport/Counter.h"
#include "platform/stack/transport/DataLink.h"
#include "platform/stack/transport/UdpSocket.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bacnet {

struct BipSettings {
    std::uint32_t Ip = 0; // of this machine; 0: all of its addresses
    std::uint16_t Port = BACNET_IP_PORT;
    std::uint32_t BroadcastIp = 0;       // 0: taken from the machine's network settings
    int ReceiveBuffer = 4 * 1024 * 1024; // octets, best effort
    // Records what the port sends and receives; may be shared by ports. Null: nothing is recorded.
    std::shared_ptr<Capture> Recorder = nullptr;

    // At most one of these two: broadcasts go to a broadcast management device elsewhere, or this port is one, which
    // needs an Ip.
    std::optional<ForeignSettings> Foreign = std::nullopt;
    std::optional<BbmdSettings> Bbmd = std::nullopt;
    // Told of what a user should know; see BroadcastManagement. Any thread of the port.
    std::function<void(bool error, const std::string& text)> Report = nullptr;
    std::function<std::int64_t()> Now = nullptr; // milliseconds that only grow; empty: the system's
};

// What came and was not used. Written by the receiving threads, read by anybody.
struct BipCounters {
    Counter Malformed; // not a BVLL frame
    Counter Truncated; // longer than any frame of the standard
    Counter Own;       // our own broadcasts
    Counter Unserved;  // functions that this port does not serve
    Counter Results;   // BVLC-Result other than success
};

class BipPort final : public IDataLink {
public:
    BipPort();
    ~BipPort() override;

    // Empty text on success, otherwise the reason. Once in a life.
    std::string Open(const BipSettings& settings);

    BipAddress LocalAddress() const { return m_local; }         // Ip 0 when bound to all addresses
    BipAddress BroadcastAddress() const { return m_broadcast; } // where broadcasts go
    const BipCounters& Counters() const { return m_counters; }
    BroadcastStatus Broadcasting() { return m_management->Status(); }
    // Reads a table of another station, up to three times as long as wait. Something else has to receive meanwhile: the
    // port's own thread does.
    TableRead ReadTable(const BipAddress& station, std::vector<BdtEntry>& entries, std::chrono::milliseconds wait) {
        return m_management->ReadTable(station, entries, wait);
    }
    TableRead ReadTable(const BipAddress& station, std::vector<FdtEntry>& entries, std::chrono::milliseconds wait) {
        return m_management->ReadTable(station, entries, wait);
    }

    bool Send(const MacAddress& destination, Frame& npdu) override;
    bool Broadcast(Frame& npdu) override;
    std::size_t SendMany(std::span<OutgoingNpdu> frames) override;
    std::size_t ReceiveDirected(NpduBatch& batch, std::size_t limit, Wait wait) override;
    std::size_t ReceiveBroadcasts(NpduBatch& batch) override;
    unsigned WaitReadable(unsigned sources, int timeoutMs) override;
    void Interrupt() override;
    int Attend() override { return m_management->Attend(); }
    std::size_t IdentityLength(const MacAddress& station) const override;
    std::size_t MaxNpdu() const override { return 1497; }

private:
    using Channel = BroadcastManagement::Channel;

    std::string OpenBroadcasts(const BipSettings& settings, UdpSocket::Options options);
    bool SendDatagram(const BipAddress& to, std::span<const std::uint8_t> datagram) const;
    void Take(const DatagramBatch& datagrams, Channel channel, NpduBatch& batch);
    void TakeOne(std::span<const std::uint8_t> datagram, const BipAddress& from, Channel channel, NpduBatch& batch);
    // Before they are sent, so that no answer stands before its request.
    void RecordSent(const BipAddress& to, std::span<const std::uint8_t> datagram) const {
        if (m_recorder)
            m_recorder->Record(m_local, to, datagram);
    }
    bool IsOwn(const BipAddress& address) const;

    UdpSocket m_directed;
    UdpSocket m_broadcasts; // closed where one socket receives all
    SocketWaiter m_waiter;
    DatagramBatch m_directedBatch;
    DatagramBatch m_broadcastBatch;
    BipAddress m_local;
    BipAddress m_broadcast;
    std::vector<std::uint32_t> m_ownIps; // all addresses of this machine, when bound to all
    BipCounters m_counters;
    std::shared_ptr<Capture> m_recorder;
    std::unique_ptr<BroadcastManagement> m_management; // from Open on
};

} // namespace bacnet
