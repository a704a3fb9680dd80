// BACnet/IP devices on loopback that send what a script says, octet by octet: nothing of the code under test stands
// between the script and the wire. One thread serves them all; each device is one address.
#pragma once

#include "tests/support/Loopback.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace catalogue {

using Octets = std::vector<std::uint8_t>;

// What a device sends.
struct Datagram {
    enum class From : std::uint8_t { itself, other_port, stranger };
    enum class Form : std::uint8_t { apdu, npdu, whole };
    Octets Bytes;
    Form Layer = Form::apdu; // that Bytes begin at; the headers below are put before them
    unsigned AfterMs = 0;
    unsigned Times = 1;
    From Sender = From::itself;
};

// Called on the thread of the devices with each APDU that one receives: what it sends for that.
using Script = std::function<std::vector<Datagram>(const Octets& apdu)>;

// A script from text. Steps stand between semicolons: the first answers the first confirmed request, and so on; the
// last answers all that follow. Datagrams of a step stand between bars, "-" is none. A datagram is octets in
// hexadecimal digits, beside
//   ID       the invoke id of the request; ID+1 the one after it
//   SV       the service choice of the request
//   OBJ      the object of the request, with its tag
//   GOOD     the right answer to ReadProperty of analog-input 5's present-value, 72.3
//   XX*N     the octet XX, N times
// and before them
//   npdu     what follows is an NPDU; raw: a whole datagram. Otherwise it is an APDU, and the headers are put before
//   it. after=MS, times=N, from=port, from=stranger
Script FromText(std::string text);
// The APDU as octets for a request that came as apdu.
Octets AssembleOctets(std::string_view tokens, const Octets& apdu);
Datagram ApduDatagram(const Octets& apdu);

class RawPeers {
public:
    explicit RawPeers(const testing_support::LoopbackBlock& block);
    ~RawPeers();
    RawPeers(const RawPeers&) = delete;
    RawPeers& operator=(const RawPeers&) = delete;

    // Opens the device with this host number.
    void Open(unsigned host, Script script);
    // The device answers as it should from now on.
    void Behave(unsigned host);
    // The device, a router, says to the station which network it leads to.
    void AnnounceNetwork(unsigned host, unsigned stationHost, std::uint16_t network);

private:
    using Clock = std::chrono::steady_clock;
    struct Peer {
        int Socket = -1;
        int OtherPort = -1;
        Script Answer;
        bool Good = false;
    };
    // Where an answer goes.
    struct Asker {
        std::uint32_t Ip = 0;
        std::uint16_t Port = 0;
        Octets Asked; // network, length and address of the remote station that was asked; empty: the device itself
    };
    struct Later {
        unsigned Host = 0;
        Datagram What;
        Asker To;
    };

    int NewSocket(unsigned host, std::uint16_t port) const;
    void Run();
    void Receive(unsigned host);
    void Send(unsigned host, const Datagram& datagram, const Asker& to);

    const testing_support::LoopbackBlock& m_block;
    int m_stranger = -1;
    int m_wake[2] = {-1, -1};
    std::mutex m_lock; // guards all below
    std::map<unsigned, Peer> m_peers;
    std::multimap<Clock::time_point, Later> m_later;
    bool m_stop = false;
    std::thread m_thread;
};

} // namespace catalogue
