// The network layer of a station (ANSI/ASHRAE 135 clause 6): turns addresses of the contract into a port and a MAC,
// finds routers, and hands APDUs up with their source. It has no thread; whoever receives from a port calls OnNpdu. It
// does not route between its ports.
//
// All functions may be called by any thread at any time once the ports are added. No lock is held while sending, while
// calling the user, or over a wait.
#pragma once

#include "api/bacnet/Types.h"
#include "platform/stack/network/Npdu.h"
#include "platform/stack/network/RouterTable.h"
#include "platform/stack/transport/Counter.h"
#include "platform/stack/transport/DataLink.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace bacnet {

// A station as seen from here: the port, the next hop on it, and the final station when that is behind a router.
struct Station {
    std::uint8_t Port = 0;
    std::uint16_t Network = 0; // 0: on the port's own network
    MacAddress Mac;            // on the port: the station, or the router to it
    MacAddress Remote;         // on Network; empty when Network is 0
    friend bool operator==(const Station&, const Station&) = default;
};

// An APDU that came. Octets are valid until the call returns.
struct ApduIndication {
    Station Source;
    bool Broadcast = false;
    bool ExpectingReply = false;
    std::span<const std::uint8_t> Apdu;
};

class IApduUser {
public:
    virtual ~IApduUser() = default;
    // On the thread that received; must not block.
    virtual void OnApdu(const ApduIndication& indication) = 0;
};

struct NetworkCounters {
    Counter Malformed; // not an NPDU
    Counter NotForUs;  // for another network, or a source that no address can hold
    Counter Rejected;  // Reject-Message-To-Network
    Counter SendFailures;
};

// The number of a port's own network: as configured, and as others tell it (clause 6.4.20). 0: none.
struct NetworkNumber {
    std::uint16_t Configured = 0;
    std::uint16_t Told = 0;
};

class NetworkLayer {
public:
    enum class Route : std::uint8_t {
        found,
        busy,           // found, but its router has said that it takes nothing for that network for a while
        unknown_router, // the network is known to nobody yet: AskForRouter, WaitForRoute
        invalid,        // not an address of a station: no such port, length out of range, a broadcast
    };

    // How long a router that has said that it is busy is taken to be so, milliseconds (clause 6.6.3.6).
    static constexpr std::int64_t BUSY_TIME = 30000;

    NetworkLayer();
    NetworkLayer(const NetworkLayer&) = delete;
    NetworkLayer& operator=(const NetworkLayer&) = delete;

    // Before anything else, on one thread. Ports are numbered from 0 in the order added, at most 255. The link is
    // borrowed and must outlive this object. network is the number that local addresses on this port carry in the
    // contract's Network field with Remote 0, and that is taken as directly connected; 0 when there is one port or no
    // number.
    std::uint8_t AddPort(IDataLink& link, std::uint16_t network = 0);
    void SetUser(IApduUser* user) { m_user = user; }
    // Milliseconds that only grow; the system's unless given. Before anything is received.
    void SetClock(std::function<std::int64_t()> now) { m_now = std::move(now); }
    // Whether a port's network is switched on, by its number as configured: a broadcast to all networks leaves out
    // ports for which it says no. Before anything is sent; called by sending threads. Without it all are on.
    void SetGate(std::function<bool(std::uint16_t network)> gate) { m_gate = std::move(gate); }
    // Told of what a user should know. Before anything is received; called on receiving threads.
    void SetReport(std::function<void(const std::string& text)> report) { m_report = std::move(report); }
    std::size_t PortCount() const { return m_ports.size(); }
    IDataLink& Link(std::uint8_t port) const { return *m_ports[port].Link; }

    // Address of the contract to station. A local address (Remote 0) with network 0 is on the first port whose number
    // is 0, or on the first port; a remote address on a directly connected network is local there.
    Route Resolve(const BACSTAC_ADDRESS& address, Station& station) const;
    // And back; false when the MAC is longer than the contract's 7 octets.
    bool ToAddress(const Station& station, BACSTAC_ADDRESS& address) const;

    // The frame holds the APDU and gets all headers. False: the system refused.
    bool Send(const Station& destination, Frame& apdu, bool expectingReply);
    // Send in two steps, so that several frames can go out together. First the headers of the network layer; outgoing
    // refers to apdu. Then the sending, all on one port; returns how many the system took.
    bool Prepare(const Station& destination, Frame& apdu, bool expectingReply, OutgoingNpdu& outgoing);
    std::size_t SendPrepared(std::uint8_t port, std::span<OutgoingNpdu> frames);
    // destination is a broadcast of the contract (MacLength 0): local (network 0: on each port), one network, or all. A
    // network whose router is unknown is asked through a broadcast on each port. True when one port at least sent.
    bool SendBroadcast(const BACSTAC_ADDRESS& destination, Frame& apdu);
    // To a remote station whose router is unknown, by a broadcast on each port that its router will pick up.
    bool SendVia(const BACSTAC_ADDRESS& destination, Frame& apdu);
    // The longest APDU that fits to this station.
    std::size_t MaxApdu(const Station& station) const;

    // Sends Who-Is-Router-To-Network on each port; no more than one a second for each network, others do nothing.
    void AskForRouter(std::uint16_t network, std::int64_t nowMs);
    // Waits until a router to the network is known, at most this long. False when none is.
    bool WaitForRoute(std::uint16_t network, std::int64_t timeoutMs);
    std::vector<RouterEntry> Routers() const;
    // Asks all routers what networks they lead to. Answers come when they come.
    void AskForRouters();
    // Asks on each port for the number of its network: one that has none learns it, and one that is configured finds
    // out when others are configured otherwise. Answers come when they come.
    void AskForNumbers();
    NetworkNumber NumberOf(std::uint8_t port) const;

    // What a port has received.
    void OnNpdu(std::uint8_t port, const ReceivedNpdu& received);

    const NetworkCounters& Counters() const { return m_counters; }

private:
    struct Port {
        Port(IDataLink* link, std::uint16_t network) : Link(link), Network(network) {}

        IDataLink* const Link;
        const std::uint16_t Network;
        std::atomic<std::uint16_t> Told{0};        // by Network-Number-Is, also when it is not Network
        std::atomic<bool> ToldByConfigured{false}; // by one who has it from its configuration
        std::atomic<std::int64_t> AnsweredAt{0};   // What-Is-Network-Number, last
        // What the station takes its network to be; what is configured goes before what is told.
        std::uint16_t Number() const { return Network != 0 ? Network : Told.load(std::memory_order_relaxed); }
    };

    // The first port whose network has this number.
    bool FindConnected(std::uint16_t network, std::uint8_t& port) const;
    // The port for local addresses with this number in the contract.
    bool FindLocal(std::uint16_t network, std::uint8_t& port) const;
    bool SendOn(std::uint8_t port, const MacAddress& mac, Frame& npdu);
    void BroadcastMessage(std::uint8_t port, NetworkMessage message, std::span<const std::uint8_t> payload);
    void OnNetworkMessage(std::uint8_t port, const ReceivedNpdu& received, const Npdu& npdu);
    void OnReject(std::uint8_t port, const MacAddress& router, std::span<const std::uint8_t> payload);
    void OnBusy(std::uint8_t port, const MacAddress& router, std::span<const std::uint8_t> networks, bool busy);
    void OnNumberAsked(std::uint8_t port);
    void OnNumberTold(std::uint8_t port, const MacAddress& teller, std::span<const std::uint8_t> payload);
    void LearnRoute(std::uint16_t network, std::uint8_t port, const MacAddress& router, bool announced);
    void RoutesChanged();

    std::deque<Port> m_ports; // constant after AddPort, but for its atomic members
    std::function<std::int64_t()> m_now;
    std::function<bool(std::uint16_t network)> m_gate;
    std::function<void(const std::string& text)> m_report;
    IApduUser* m_user = nullptr;
    NetworkCounters m_counters;

    mutable std::shared_mutex m_routesMutex;
    RouterTable m_routes;                          // m_routesMutex
    std::atomic<bool> m_narrow{false};             // some route has a limit
    std::map<std::uint16_t, std::int64_t> m_asked; // m_routesMutex: when a router to the network was asked for last

    // Signalled at each change of m_routes.
    std::mutex m_changeMutex;
    std::condition_variable m_change;
};

} // namespace bacnet
