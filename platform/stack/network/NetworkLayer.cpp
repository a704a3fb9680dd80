#include "platform/stack/network/NetworkLayer.h"

#include <chrono>
#include <cstring>

namespace bacnet {

namespace {

constexpr std::int64_t ASK_INTERVAL = 1000; // between two Who-Is-Router-To-Network for one network, milliseconds
// Clause 6.4.4: the router has no way to that network.
constexpr std::uint8_t REJECT_NOT_CONNECTED = 1;

std::uint16_t ReadU16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>(at[0] << 8 | at[1]);
}

bool IsNetwork(std::uint16_t number) {
    return number != 0 && number != GLOBAL_BROADCAST;
}

// The network layer's header for a station, or for a broadcast there.
Npdu HeaderFor(std::uint16_t network, const MacAddress& remote, bool expectingReply) {
    Npdu npdu;
    npdu.ExpectingReply = expectingReply;
    npdu.DestinationNetwork = network;
    npdu.Destination = remote;
    return npdu;
}

} // namespace

std::uint8_t NetworkLayer::AddPort(IDataLink& link, std::uint16_t network) {
    m_ports.push_back({&link, network});
    return static_cast<std::uint8_t>(m_ports.size() - 1);
}

bool NetworkLayer::FindConnected(std::uint16_t network, std::uint8_t& port) const {
    for (std::size_t i = 0; i < m_ports.size(); ++i)
        if (m_ports[i].Network == network) {
            port = static_cast<std::uint8_t>(i);
            return true;
        }
    return false;
}

NetworkLayer::Route NetworkLayer::Resolve(const BACSTAC_ADDRESS& address, Station& station) const {
    if (m_ports.empty() || address.MacLength == 0 || address.MacLength > sizeof(address.Mac))
        return Route::invalid;
    const MacAddress mac(std::span(address.Mac).first(address.MacLength));
    std::uint8_t port = 0;
    const bool connected = FindConnected(address.Network, port);
    if (address.Remote == 0 || (connected && address.Network != 0)) {
        // A local address without a number means the first port, whatever that one's number is.
        if (!connected && address.Network != 0)
            return Route::invalid;
        if (m_ports[port].Link->IdentityLength(mac) == 0)
            return Route::invalid;
        station = {port, 0, mac, {}};
        return Route::found;
    }
    if (!IsNetwork(address.Network))
        return Route::invalid;
    const std::shared_lock lock(m_routesMutex);
    const RouterEntry* entry = m_routes.Find(address.Network);
    if (entry == nullptr)
        return Route::unknown_router;
    station = {entry->Port, address.Network, entry->Router, mac};
    return Route::found;
}

bool NetworkLayer::ToAddress(const Station& station, BACSTAC_ADDRESS& address) const {
    const MacAddress& mac = station.Network != 0 ? station.Remote : station.Mac;
    if (mac.Empty() || mac.Length() > sizeof(address.Mac))
        return false;
    address = {};
    address.Remote = station.Network != 0 ? 1 : 0;
    address.Network = station.Network != 0 ? station.Network : m_ports[station.Port].Network;
    address.MacLength = static_cast<std::uint8_t>(mac.Length());
    std::memcpy(address.Mac, mac.Data(), mac.Length());
    return true;
}

bool NetworkLayer::SendOn(std::uint8_t port, const MacAddress& mac, Frame& npdu) {
    IDataLink& link = *m_ports[port].Link;
    const bool sent = mac.Empty() ? link.Broadcast(npdu) : link.Send(mac, npdu);
    if (!sent)
        m_counters.SendFailures.Add();
    return sent;
}

bool NetworkLayer::Send(const Station& destination, Frame& apdu, bool expectingReply) {
    return PrependNpdu(apdu, HeaderFor(destination.Network, destination.Remote, expectingReply)) &&
           SendOn(destination.Port, destination.Mac, apdu);
}

bool NetworkLayer::Prepare(const Station& destination, Frame& apdu, bool expectingReply, OutgoingNpdu& outgoing) {
    outgoing = {destination.Mac, &apdu};
    return PrependNpdu(apdu, HeaderFor(destination.Network, destination.Remote, expectingReply));
}

std::size_t NetworkLayer::SendPrepared(std::uint8_t port, std::span<OutgoingNpdu> frames) {
    IDataLink& link = *m_ports[port].Link;
    const std::size_t sent =
        frames.size() == 1 ? (link.Send(frames[0].Destination, *frames[0].Npdu) ? 1U : 0U) : link.SendMany(frames);
    for (std::size_t i = sent; i < frames.size(); ++i)
        m_counters.SendFailures.Add();
    return sent;
}

bool NetworkLayer::SendBroadcast(const BACSTAC_ADDRESS& destination, Frame& apdu) {
    const std::size_t size = apdu.Size();
    const std::uint16_t network = destination.Network;
    std::uint8_t port = 0;
    if (network != 0 && network != GLOBAL_BROADCAST) {
        if (FindConnected(network, port))
            return PrependNpdu(apdu, Npdu{}) && SendOn(port, {}, apdu);
        MacAddress router;
        {
            const std::shared_lock lock(m_routesMutex);
            if (const RouterEntry* entry = m_routes.Find(network)) {
                port = entry->Port;
                router = entry->Router;
            }
        }
        if (!router.Empty())
            return PrependNpdu(apdu, HeaderFor(network, {}, false)) && SendOn(port, router, apdu);
    }
    bool sent = false;
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        apdu.DropHeaders(size);
        if (PrependNpdu(apdu, HeaderFor(network, {}, false)) && SendOn(static_cast<std::uint8_t>(i), {}, apdu))
            sent = true;
    }
    return sent;
}

bool NetworkLayer::SendVia(const BACSTAC_ADDRESS& destination, Frame& apdu) {
    if (destination.MacLength == 0 || destination.MacLength > sizeof(destination.Mac) ||
        !IsNetwork(destination.Network))
        return false;
    const std::size_t size = apdu.Size();
    const MacAddress remote(std::span(destination.Mac).first(destination.MacLength));
    bool sent = false;
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        apdu.DropHeaders(size);
        if (PrependNpdu(apdu, HeaderFor(destination.Network, remote, false)) &&
            SendOn(static_cast<std::uint8_t>(i), {}, apdu))
            sent = true;
    }
    return sent;
}

std::size_t NetworkLayer::MaxApdu(const Station& station) const {
    // Version and control; DNET, DLEN, DADR and hop count.
    const std::size_t header = 2 + (station.Network != 0 ? 4 + station.Remote.Length() : 0);
    return m_ports[station.Port].Link->MaxNpdu() - header;
}

void NetworkLayer::AskForRouter(std::uint16_t network, std::int64_t nowMs) {
    if (!IsNetwork(network))
        return;
    {
        const std::unique_lock lock(m_routesMutex);
        const auto [asked, first] = m_asked.try_emplace(network, nowMs);
        if (!first && nowMs - asked->second < ASK_INTERVAL)
            return;
        asked->second = nowMs;
    }
    Npdu npdu;
    npdu.IsNetworkMessage = true;
    npdu.Message = NetworkMessage::who_is_router_to_network;
    const std::uint8_t number[2] = {static_cast<std::uint8_t>(network >> 8), static_cast<std::uint8_t>(network)};
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        Frame frame;
        if (frame.Append(number) && PrependNpdu(frame, npdu))
            SendOn(static_cast<std::uint8_t>(i), {}, frame);
    }
}

bool NetworkLayer::WaitForRoute(std::uint16_t network, std::int64_t timeoutMs) {
    const auto known = [this, network] {
        const std::shared_lock lock(m_routesMutex);
        return m_routes.Find(network) != nullptr;
    };
    std::unique_lock lock(m_changeMutex);
    return m_change.wait_for(lock, std::chrono::milliseconds(timeoutMs), known);
}

std::vector<RouterEntry> NetworkLayer::Routers() const {
    const std::shared_lock lock(m_routesMutex);
    return m_routes.List();
}

void NetworkLayer::LearnRoute(std::uint16_t network, std::uint8_t port, const MacAddress& router) {
    std::uint8_t connected = 0;
    if (!IsNetwork(network) || FindConnected(network, connected))
        return;
    {
        // The usual case, each time a router forwards something: known already.
        const std::shared_lock lock(m_routesMutex);
        const RouterEntry* entry = m_routes.Find(network);
        if (entry != nullptr && entry->Port == port && entry->Router == router)
            return;
    }
    {
        const std::unique_lock lock(m_routesMutex);
        if (!m_routes.Learn(network, port, router))
            return;
        m_asked.erase(network);
    }
    { const std::lock_guard lock(m_changeMutex); }
    m_change.notify_all();
}

void NetworkLayer::OnNpdu(std::uint8_t port, const ReceivedNpdu& received) {
    Npdu npdu;
    if (DecodeNpdu(received.Npdu, npdu) != NpduError::none) {
        m_counters.Malformed.Add();
        return;
    }
    // This station does not route: what is not for its own network or for all is for somebody else.
    if (npdu.DestinationNetwork != 0 && npdu.DestinationNetwork != GLOBAL_BROADCAST &&
        npdu.DestinationNetwork != m_ports[port].Network) {
        m_counters.NotForUs.Add();
        return;
    }
    if (npdu.SourceNetwork != 0)
        LearnRoute(npdu.SourceNetwork, port, received.Source);
    if (npdu.IsNetworkMessage) {
        OnNetworkMessage(port, received, npdu);
        return;
    }
    if (m_user == nullptr)
        return;
    ApduIndication indication;
    indication.Source = {port, npdu.SourceNetwork, received.Source, npdu.Source};
    indication.Broadcast = received.Broadcast || (npdu.DestinationNetwork != 0 && npdu.Destination.Empty());
    indication.ExpectingReply = npdu.ExpectingReply;
    indication.Apdu = npdu.Payload;
    m_user->OnApdu(indication);
}

void NetworkLayer::OnNetworkMessage(std::uint8_t port, const ReceivedNpdu& received, const Npdu& npdu) {
    const auto payload = npdu.Payload;
    switch (npdu.Message) {
    case NetworkMessage::i_am_router_to_network:
        for (std::size_t at = 0; at + 2 <= payload.size(); at += 2)
            LearnRoute(ReadU16(payload.data() + at), port, received.Source);
        return;
    case NetworkMessage::reject_message_to_network:
        m_counters.Rejected.Add();
        // The router has lost that network: the next request looks for another one.
        if (payload.size() >= 3 && payload[0] == REJECT_NOT_CONNECTED) {
            const std::unique_lock lock(m_routesMutex);
            m_routes.Forget(ReadU16(payload.data() + 1), port, received.Source);
        }
        return;
    default:
        return; // for routers, or of no consequence to one who only asks
    }
}

} // namespace bacnet
