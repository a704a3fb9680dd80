#include "platform/stack/transport/BipPort.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace bacnet {

namespace {

// Whether a socket that is bound to one address misses the broadcasts of its network.
#if defined(__linux__)
constexpr bool SECOND_SOCKET = true;
#else
constexpr bool SECOND_SOCKET = false;
#endif

std::int64_t SystemMilliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

BipPort::BipPort() = default;
BipPort::~BipPort() {
    if (m_management)
        m_management->Leave();
}

std::string BipPort::Open(const BipSettings& settings) {
    if (!m_waiter.Valid())
        return "no descriptor left to wait with";
    if (settings.Bbmd && settings.Ip == 0)
        return "a broadcast management device needs one address to be bound to";
    if (settings.Bbmd && settings.Foreign)
        return "a broadcast management device is no foreign device";
    UdpSocket::Options options;
    options.ReceiveBuffer = settings.ReceiveBuffer;
    options.ReceiveTimeoutMs = TICK;
    std::string reason = m_directed.Open({settings.Ip, settings.Port}, options);
    if (!reason.empty())
        return reason;
    m_recorder = settings.Recorder;
    m_local = m_directed.LocalAddress();
    reason = OpenBroadcasts(settings, options);
    if (reason.empty() && settings.Foreign && IsOwn(settings.Foreign->Bbmd))
        reason = "a port cannot be a foreign device of itself";
    if (!reason.empty()) {
        m_directed.Close();
        m_broadcasts.Close();
        return reason;
    }
    BroadcastManagement::Environment environment;
    environment.Local = m_local;
    environment.Broadcast = m_broadcast;
    environment.Send = [this](const BipAddress& to, std::span<const std::uint8_t> datagram) {
        return SendDatagram(to, datagram);
    };
    environment.Now = settings.Now ? settings.Now : SystemMilliseconds;
    environment.Report = settings.Report;
    m_management = std::make_unique<BroadcastManagement>(std::move(environment), settings.Foreign, settings.Bbmd);
    m_management->Attend(); // a registration goes out before anything that needs it
    return {};
}

std::string BipPort::OpenBroadcasts(const BipSettings& settings, UdpSocket::Options options) {
    const std::uint32_t broadcast = settings.BroadcastIp != 0 ? settings.BroadcastIp
                                    : settings.Ip != 0        ? BroadcastAddressOf(settings.Ip)
                                                              : 0xFFFFFFFFU;
    m_broadcast = {broadcast, m_local.Port};
    if (settings.Ip == 0) {
        for (const InterfaceAddress& item : ListInterfaces())
            m_ownIps.push_back(item.Ip);
        return {};
    }
    if (!SECOND_SOCKET || broadcast == settings.Ip)
        return {};
    options.Shared = true;
    options.ReceiveTimeoutMs = 0;
    return m_broadcasts.Open(m_broadcast, options);
}

bool BipPort::SendDatagram(const BipAddress& to, std::span<const std::uint8_t> datagram) const {
    RecordSent(to, datagram);
    return m_directed.Send(to, datagram);
}

bool BipPort::Send(const MacAddress& destination, Frame& npdu) {
    BipAddress to;
    return npdu.Size() <= MaxNpdu() && FromMac(destination, to) && PrependBvll(npdu, BvlcFunction::original_unicast) &&
           SendDatagram(to, npdu.Octets());
}

bool BipPort::Broadcast(Frame& npdu) {
    return npdu.Size() <= MaxNpdu() && m_management->Broadcast(npdu);
}

std::size_t BipPort::SendMany(std::span<OutgoingNpdu> frames) {
    std::size_t sent = 0;
    while (!frames.empty()) {
        std::array<OutgoingDatagram, DatagramBatch::CAPACITY> datagrams;
        const std::size_t count = std::min(frames.size(), datagrams.size());
        std::size_t ready = 0;
        for (OutgoingNpdu& frame : frames.first(count)) {
            const bool broadcast = frame.Destination.Empty();
            if (broadcast && m_management->Extends()) {
                sent += Broadcast(*frame.Npdu) ? 1 : 0;
                continue;
            }
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
    Take(m_directedBatch, m_broadcasts.IsOpen() ? Channel::directed : Channel::unknown, batch);
    return count;
}

std::size_t BipPort::ReceiveBroadcasts(NpduBatch& batch) {
    batch.Count = 0;
    if (!m_broadcasts.IsOpen())
        return 0;
    const std::size_t count = m_broadcasts.Receive(m_broadcastBatch, DatagramBatch::CAPACITY, false);
    Take(m_broadcastBatch, Channel::broadcast, batch);
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

void BipPort::Take(const DatagramBatch& datagrams, Channel channel, NpduBatch& batch) {
    const BipAddress& to = channel == Channel::broadcast ? m_broadcast : m_local;
    batch.Count = 0;
    for (std::size_t i = 0; i < datagrams.Count(); ++i) {
        // Our own broadcasts were recorded when they were sent.
        if (m_recorder && !IsOwn(datagrams.From(i)))
            m_recorder->Record(datagrams.From(i), to, datagrams.Octets(i));
        if (datagrams.Truncated(i))
            m_counters.Truncated.Add();
        else
            TakeOne(datagrams.Octets(i), datagrams.From(i), channel, batch);
    }
}

void BipPort::TakeOne(std::span<const std::uint8_t> datagram, const BipAddress& from, Channel channel,
                      NpduBatch& batch) {
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
        batch.Items[batch.Count++] = {ToMac(from), false, message.Payload};
        return;
    case BvlcFunction::original_broadcast:
    case BvlcFunction::distribute_broadcast:
        if (m_management->OnBroadcast(message, from, channel))
            batch.Items[batch.Count++] = {ToMac(from), true, message.Payload};
        else
            m_counters.Unserved.Add();
        return;
    case BvlcFunction::forwarded_npdu:
        // Our own broadcast comes back to us when a broadcast management device serves this network.
        if (IsOwn(message.Origin))
            m_counters.Own.Add();
        else if (m_management->OnBroadcast(message, from, channel))
            batch.Items[batch.Count++] = {ToMac(message.Origin), true, message.Payload};
        return;
    case BvlcFunction::result:
        if (message.ResultCode != 0)
            m_counters.Results.Add();
        m_management->OnControl(message, from);
        return;
    default:
        if (m_management->OnControl(message, from) != BroadcastManagement::Served::yes)
            m_counters.Unserved.Add();
        return;
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
