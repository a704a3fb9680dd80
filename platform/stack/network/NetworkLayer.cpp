#include "platform/stack/network/NetworkLayer.h"

#include "platform/stack/transport/Bvll.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace bacnet {

namespace {

constexpr std::int64_t ASK_INTERVAL = 1000; // between two Who-Is-Router-To-Network for one network, milliseconds
// Reasons of clause 6.4.4: the router has no way to that network, it takes nothing for it for a while, the message was
// too long for it.
constexpr std::uint8_t REJECT_NOT_CONNECTED = 1;
constexpr std::uint8_t REJECT_BUSY = 2;
constexpr std::uint8_t REJECT_TOO_LONG = 4;

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

std::int64_t SystemMilliseconds() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

NetworkLayer::NetworkLayer() : m_now(SystemMilliseconds) {}

std::uint8_t NetworkLayer::AddPort(IDataLink& link, std::uint16_t network) {
    m_ports.emplace_back(&link, network);
    return static_cast<std::uint8_t>(m_ports.size() - 1);
}

bool NetworkLayer::FindConnected(std::uint16_t network, std::uint8_t& port) const {
    for (std::size_t i = 0; network != 0 && i < m_ports.size(); ++i)
        if (m_ports[i].Number() == network) {
            port = static_cast<std::uint8_t>(i);
            return true;
        }
    return false;
}

bool NetworkLayer::FindLocal(std::uint16_t network, std::uint8_t& port) const {
    for (std::size_t i = 0; i < m_ports.size(); ++i)
        if (m_ports[i].Network == network) {
            port = static_cast<std::uint8_t>(i);
            return true;
        }
    port = 0;
    return network == 0; // without a number: the first port, whatever that one's number is
}

NetworkLayer::Route NetworkLayer::Resolve(const BACSTAC_ADDRESS& address, Station& station) const {
    if (m_ports.empty() || address.MacLength == 0 || address.MacLength > sizeof(address.Mac))
        return Route::invalid;
    const MacAddress mac(std::span(address.Mac).first(address.MacLength));
    std::uint8_t port = 0;
    const bool local = address.Remote == 0 ? FindLocal(address.Network, port) : FindConnected(address.Network, port);
    if (local && m_ports[port].Link->IdentityLength(mac) != 0) {
        station = {port, 0, mac, {}};
        return Route::found;
    }
    if (local || address.Remote == 0)
        return Route::invalid;
    if (!IsNetwork(address.Network))
        return Route::invalid;
    const std::shared_lock lock(m_routesMutex);
    const RouterEntry* entry = m_routes.Find(address.Network);
    if (entry == nullptr)
        return Route::unknown_router;
    station = {entry->Port, address.Network, entry->Router, mac};
    return entry->BusyUntil != 0 && m_now() < entry->BusyUntil ? Route::busy : Route::found;
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
        if (network == GLOBAL_BROADCAST && m_gate && !m_gate(m_ports[i].Network))
            continue;
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
    const std::size_t link = m_ports[station.Port].Link->MaxNpdu() - header;
    if (station.Network == 0 || !m_narrow.load(std::memory_order_relaxed))
        return link;
    const std::shared_lock lock(m_routesMutex);
    const RouterEntry* entry = m_routes.Find(station.Network);
    return entry == nullptr || entry->MaxApdu == 0 ? link : std::min<std::size_t>(link, entry->MaxApdu);
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
    const std::uint8_t number[2] = {static_cast<std::uint8_t>(network >> 8), static_cast<std::uint8_t>(network)};
    for (std::size_t i = 0; i < m_ports.size(); ++i)
        BroadcastMessage(static_cast<std::uint8_t>(i), NetworkMessage::who_is_router_to_network, number);
}

void NetworkLayer::AskForRouters() {
    for (std::size_t i = 0; i < m_ports.size(); ++i)
        BroadcastMessage(static_cast<std::uint8_t>(i), NetworkMessage::who_is_router_to_network, {});
}

void NetworkLayer::AskForNumbers() {
    for (std::size_t i = 0; i < m_ports.size(); ++i)
        BroadcastMessage(static_cast<std::uint8_t>(i), NetworkMessage::what_is_network_number, {});
}

NetworkNumber NetworkLayer::NumberOf(std::uint8_t port) const {
    return {m_ports[port].Network, m_ports[port].Told.load()};
}

void NetworkLayer::BroadcastMessage(std::uint8_t port, NetworkMessage message, std::span<const std::uint8_t> payload) {
    Npdu npdu;
    npdu.IsNetworkMessage = true;
    npdu.Message = message;
    Frame frame;
    if (frame.Append(payload) && PrependNpdu(frame, npdu))
        SendOn(port, {}, frame);
}

bool NetworkLayer::WaitForRoute(std::uint16_t network, std::int64_t timeoutMs) {
    const auto known = [this, network] {
        const std::shared_lock lock(m_routesMutex);
        const RouterEntry* entry = m_routes.Find(network);
        return entry != nullptr && (entry->BusyUntil == 0 || entry->BusyUntil <= m_now());
    };
    std::unique_lock lock(m_changeMutex);
    return m_change.wait_for(lock, std::chrono::milliseconds(timeoutMs), known);
}

std::vector<RouterEntry> NetworkLayer::Routers() const {
    const std::int64_t now = m_now();
    const std::shared_lock lock(m_routesMutex);
    std::vector<RouterEntry> routers = m_routes.List();
    for (RouterEntry& entry : routers)
        if (entry.BusyUntil <= now)
            entry.BusyUntil = 0;
    return routers;
}

void NetworkLayer::RoutesChanged() {
    { const std::lock_guard lock(m_changeMutex); }
    m_change.notify_all();
}

void NetworkLayer::LearnRoute(std::uint16_t network, std::uint8_t port, const MacAddress& router, bool announced) {
    std::uint8_t connected = 0;
    if (!IsNetwork(network) || FindConnected(network, connected))
        return;
    {
        // The usual case, each time a router forwards something: known already.
        const std::shared_lock lock(m_routesMutex);
        const RouterEntry* entry = m_routes.Find(network);
        if (entry != nullptr && entry->Port == port && entry->Router == router && !announced)
            return;
    }
    {
        const std::unique_lock lock(m_routesMutex);
        if (!m_routes.Learn(network, port, router, announced))
            return;
        m_asked.erase(network);
    }
    RoutesChanged();
}

void NetworkLayer::OnNpdu(std::uint8_t port, const ReceivedNpdu& received) {
    Npdu npdu;
    if (DecodeNpdu(received.Npdu, npdu) != NpduError::none) {
        m_counters.Malformed.Add();
        return;
    }
    // This station does not route: what is not for its own network or for all is for somebody else.
    if (npdu.DestinationNetwork != 0 && npdu.DestinationNetwork != GLOBAL_BROADCAST &&
        npdu.DestinationNetwork != m_ports[port].Number()) {
        m_counters.NotForUs.Add();
        return;
    }
    if (npdu.SourceNetwork != 0)
        LearnRoute(npdu.SourceNetwork, port, received.Source, false);
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
    // Numbers are a matter of one network: what a router has brought here speaks of another (clauses 6.4.19, 6.4.20).
    const bool ofThisNetwork = npdu.SourceNetwork == 0 && npdu.DestinationNetwork == 0;
    switch (npdu.Message) {
    case NetworkMessage::i_am_router_to_network:
        for (std::size_t at = 0; at + 2 <= payload.size(); at += 2)
            LearnRoute(ReadU16(payload.data() + at), port, received.Source, true);
        return;
    case NetworkMessage::reject_message_to_network:
        m_counters.Rejected.Add();
        OnReject(port, received.Source, payload);
        return;
    case NetworkMessage::router_busy_to_network:
        OnBusy(port, received.Source, payload, true);
        return;
    case NetworkMessage::router_available_to_network:
        OnBusy(port, received.Source, payload, false);
        return;
    case NetworkMessage::what_is_network_number:
        if (ofThisNetwork)
            OnNumberAsked(port);
        return;
    case NetworkMessage::network_number_is:
        if (ofThisNetwork)
            OnNumberTold(port, received.Source, payload);
        return;
    default:
        return; // for routers, or of no consequence to one who only asks
    }
}

void NetworkLayer::OnReject(std::uint8_t port, const MacAddress& router, std::span<const std::uint8_t> payload) {
    if (payload.size() < 3)
        return;
    const std::uint16_t network = ReadU16(payload.data() + 1);
    const std::unique_lock lock(m_routesMutex);
    switch (payload[0]) {
    case REJECT_NOT_CONNECTED: // the next request looks for another router
        m_routes.Forget(network, port, router);
        return;
    case REJECT_BUSY:
        m_routes.SetBusy(network, port, router, m_now() + BUSY_TIME);
        return;
    case REJECT_TOO_LONG:
        if (m_routes.Narrow(network, port, router, m_now()))
            m_narrow.store(true, std::memory_order_relaxed);
        return;
    default:
        return;
    }
}

void NetworkLayer::OnBusy(std::uint8_t port, const MacAddress& router, std::span<const std::uint8_t> networks,
                          bool busy) {
    bool changed = false;
    {
        const std::unique_lock lock(m_routesMutex);
        std::vector<std::uint16_t> concerned;
        for (std::size_t at = 0; at + 2 <= networks.size(); at += 2)
            concerned.push_back(ReadU16(networks.data() + at));
        if (networks.empty()) // all that it leads to
            concerned = m_routes.NetworksOf(port, router);
        for (const std::uint16_t network : concerned)
            changed |= busy ? m_routes.SetBusy(network, port, router, m_now() + BUSY_TIME)
                            : m_routes.SetAvailable(network, port, router);
    }
    if (changed && !busy)
        RoutesChanged();
}

void NetworkLayer::OnNumberAsked(std::uint8_t port) {
    Port& own = m_ports[port];
    const std::uint16_t told = own.Told.load();
    // Whose configuration others contradict keeps quiet: a wrong number spreads to every station that has none.
    if (own.Network == 0 || (told != 0 && told != own.Network))
        return;
    const std::int64_t now = m_now();
    std::int64_t answered = own.AnsweredAt.load();
    if ((answered != 0 && now - answered < ASK_INTERVAL) || !own.AnsweredAt.compare_exchange_strong(answered, now))
        return;
    constexpr std::uint8_t configured = 1;
    const std::uint8_t payload[3] = {static_cast<std::uint8_t>(own.Network >> 8),
                                     static_cast<std::uint8_t>(own.Network), configured};
    BroadcastMessage(port, NetworkMessage::network_number_is, payload);
}

void NetworkLayer::OnNumberTold(std::uint8_t port, const MacAddress& teller, std::span<const std::uint8_t> payload) {
    if (payload.size() < 3 || !IsNetwork(ReadU16(payload.data())))
        return;
    const std::uint16_t number = ReadU16(payload.data());
    const bool configured = payload[2] != 0;
    Port& own = m_ports[port];
    // What somebody has only learnt counts for nothing against what somebody is configured to.
    if (!configured && (own.Network != 0 || own.ToldByConfigured.load()))
        return;
    own.ToldByConfigured.store(configured);
    if (own.Told.exchange(number) == number)
        return;
    if (own.Network == 0) {
        // It may have been taken for a network behind a router.
        const std::unique_lock lock(m_routesMutex);
        if (const RouterEntry* entry = m_routes.Find(number))
            m_routes.Forget(number, entry->Port, MacAddress(entry->Router));
    } else if (number != own.Network && m_report) {
        std::string text = "The network that is configured as number " + std::to_string(own.Network) + " is number " +
                           std::to_string(number);
        BipAddress address;
        if (FromMac(teller, address))
            text += " by what " + ToString(address) + " says";
        m_report(text);
    }
}

} // namespace bacnet
