#include "platform/stack/transport/BipPort.h"

#include <algorithm>
#include <array>

namespace bacnet {

namespace {

// Whether a socket that is bound to one address misses the broadcasts of its network.
#if defined(__linux__)
constexpr bool SECOND_SOCKET = true;
#else
constexpr bool SECOND_SOCKET = false;
#endif

} // namespace

BipPort::BipPort() = default;
BipPort::~BipPort() = default;

std::string BipPort::Open(const BipSettings& settings) {
    if (!m_waiter.Valid())
        return "no descriptor left to wait with";
    UdpSocket::Options options;
    options.ReceiveBuffer = settings.ReceiveBuffer;
    options.ReceiveTimeoutMs = TICK;
    std::string reason = m_directed.Open({settings.Ip, settings.Port}, options);
    if (!reason.empty())
        return reason;
    m_recorder = settings.Recorder;
    m_local = m_directed.LocalAddress();
    const std::uint32_t broadcast = settings.BroadcastIp != 0 ? settings.BroadcastIp
                                    : settings.Ip != 0        ? BroadcastAddressOf(settings.Ip)
                                                              : 0xFFFFFFFFU;
    m_broadcast = {broadcast, m_local.Port};

    if (settings.Ip == 0) {
        for (const InterfaceAddress& item : ListInterfaces())
            m_ownIps.push_back(item.Ip);
    } else if (SECOND_SOCKET && broadcast != settings.Ip) {
        options.Shared = true;
        options.ReceiveTimeoutMs = 0;
        reason = m_broadcasts.Open(m_broadcast, options);
        if (!reason.empty())
            m_directed.Close();
    }
    return reason;
}

bool BipPort::Send(const MacAddress& destination, Frame& npdu) {
    BipAddress to;
    if (npdu.Size() > MaxNpdu() || !FromMac(destination, to) || !PrependBvll(npdu, BvlcFunction::original_unicast))
        return false;
    RecordSent(to, npdu.Octets());
    return m_directed.Send(to, npdu.Octets());
}

bool BipPort::Broadcast(Frame& npdu) {
    if (npdu.Size() > MaxNpdu() || !PrependBvll(npdu, BvlcFunction::original_broadcast))
        return false;
    RecordSent(m_broadcast, npdu.Octets());
    return m_directed.Send(m_broadcast, npdu.Octets());
}

std::size_t BipPort::SendMany(std::span<OutgoingNpdu> frames) {
    std::size_t sent = 0;
    while (!frames.empty()) {
        std::array<OutgoingDatagram, DatagramBatch::CAPACITY> datagrams;
        const std::size_t count = std::min(frames.size(), datagrams.size());
        std::size_t ready = 0;
        for (OutgoingNpdu& frame : frames.first(count)) {
            const bool broadcast = frame.Destination.Empty();
            BipAddress to = m_broadcast;
            if (frame.Npdu->Size() > MaxNpdu() || (!broadcast && !FromMac(frame.Destination, to)) ||
                !PrependBvll(*frame.Npdu,
                             broadcast ? BvlcFunction::original_broadcast : BvlcFunction::original_unicast))
                continue;
            RecordSent(to, frame.Npdu->Octets());
            datagrams[ready++] = {to, frame.Npdu->Octets()};
        }
        sent += m_directed.SendMany({datagrams.data(), ready});
        frames = frames.subspan(count);
    }
    return sent;
}

std::size_t BipPort::ReceiveDirected(NpduBatch& batch, std::size_t limit, Wait wait) {
    const std::size_t count = m_directed.Receive(m_directedBatch, limit, wait == Wait::tick);
    Take(m_directedBatch, m_local, batch);
    return count;
}

std::size_t BipPort::ReceiveBroadcasts(NpduBatch& batch) {
    batch.Count = 0;
    if (!m_broadcasts.IsOpen())
        return 0;
    const std::size_t count = m_broadcasts.Receive(m_broadcastBatch, DatagramBatch::CAPACITY, false);
    Take(m_broadcastBatch, m_broadcast, batch);
    return count;
}

unsigned BipPort::WaitReadable(unsigned sources, int timeoutMs) {
    const std::array<const UdpSocket*, 2> sockets{(sources & DIRECTED) != 0 ? &m_directed : nullptr,
                                                  (sources & BROADCASTS) != 0 ? &m_broadcasts : nullptr};
    static_assert(DIRECTED == 1U << 0 && BROADCASTS == 1U << 1);
    return m_waiter.Wait(sockets, timeoutMs);
}

void BipPort::Interrupt() {
    m_waiter.Interrupt();
}

std::size_t BipPort::IdentityLength(const MacAddress& station) const {
    return station.Length() == BIP_ADDRESS_LENGTH ? 4 : 0;
}

void BipPort::Take(const DatagramBatch& datagrams, const BipAddress& to, NpduBatch& batch) {
    batch.Count = 0;
    for (std::size_t i = 0; i < datagrams.Count(); ++i) {
        // Our own broadcasts were recorded when they were sent.
        if (m_recorder && !IsOwn(datagrams.From(i)))
            m_recorder->Record(datagrams.From(i), to, datagrams.Octets(i));
        if (datagrams.Truncated(i))
            m_counters.Truncated.Add();
        else
            TakeOne(datagrams.Octets(i), datagrams.From(i), batch);
    }
}

void BipPort::TakeOne(std::span<const std::uint8_t> datagram, const BipAddress& from, NpduBatch& batch) {
    if (IsOwn(from)) {
        m_counters.Own.Add();
        return;
    }
    BvllMessage message;
    const BvllError error = DecodeBvll(datagram, message);
    if (error == BvllError::unknown_function) {
        m_counters.Unserved.Add();
        return;
    }
    if (error != BvllError::none) {
        m_counters.Malformed.Add();
        return;
    }
    switch (message.Function) {
    case BvlcFunction::original_unicast:
    case BvlcFunction::original_broadcast:
        batch.Items[batch.Count++] = {ToMac(from), message.Function == BvlcFunction::original_broadcast,
                                      message.Payload};
        return;
    case BvlcFunction::forwarded_npdu:
        // Our own broadcast comes back to us when a broadcast management device serves this network.
        if (IsOwn(message.Origin))
            m_counters.Own.Add();
        else
            batch.Items[batch.Count++] = {ToMac(message.Origin), true, message.Payload};
        return;
    case BvlcFunction::result:
        if (message.ResultCode != 0)
            m_counters.Results.Add();
        return;
    default:
        break;
    }
    m_counters.Unserved.Add();
    BvlcResult nak{};
    if (NakFor(message.Function, nak)) {
        std::array<std::uint8_t, 6> octets;
        EncodeResult(nak, octets);
        RecordSent(from, octets);
        m_directed.Send(from, octets);
    }
}

bool BipPort::IsOwn(const BipAddress& address) const {
    if (address.Port != m_local.Port)
        return false;
    if (m_local.Ip != 0)
        return address.Ip == m_local.Ip;
    return std::find(m_ownIps.begin(), m_ownIps.end(), address.Ip) != m_ownIps.end();
}

} // namespace bacnet
