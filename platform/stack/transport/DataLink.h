// A BACnet data link port: sends and receives NPDUs. BACnet/IP stands behind it now; other links fit behind it without
// a change above.
//
// Sending may be done by any thread at any time. Receiving has two ways, each for one thread at a time: directed
// traffic for whoever holds the port's receive role (see transaction/ReceiveRole.h), broadcasts for the port's own
// thread. A link that receives both on one channel delivers all of it as directed traffic.
#pragma once

#include "platform/stack/transport/Frame.h"
#include "platform/stack/transport/MacAddress.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace bacnet {

// An NPDU as it came. The octets belong to the link.
struct ReceivedNpdu {
    MacAddress Source;
    bool Broadcast = false; // was sent to all stations of this network
    std::span<const std::uint8_t> Npdu;
};

struct NpduBatch {
    static constexpr std::size_t CAPACITY = 32;
    std::size_t Count = 0;
    std::array<ReceivedNpdu, CAPACITY> Items;
};

struct OutgoingNpdu {
    MacAddress Destination; // empty: broadcast
    Frame* Npdu = nullptr;  // borrowed until the call returns; gets the link's header
};

class IDataLink {
public:
    enum class Wait : std::uint8_t { none, tick };
    // A blocking receive returns after this time at the latest, in milliseconds, give or take a tick of the system.
    static constexpr int TICK = 10;

    // Bits of WaitReadable.
    static constexpr unsigned DIRECTED = 1;
    static constexpr unsigned BROADCASTS = 2;

    virtual ~IDataLink() = default;

    // The frame holds the NPDU and gets the link's header. False: the system refused, or the frame is too long.
    virtual bool Send(const MacAddress& destination, Frame& npdu) = 0;
    virtual bool Broadcast(Frame& npdu) = 0;
    // Sends all with as few system calls as can be; the number that was sent, from the first on.
    virtual std::size_t SendMany(std::span<OutgoingNpdu> frames) = 0;

    // Receives directed traffic into batch, replacing what it held: at most limit datagrams (1..CAPACITY), blocking
    // until there is one with Wait::tick. Malformed and own frames are dropped here, so that batch may stay empty
    // though datagrams came. Returns the number of datagrams taken, 0 when none came in time. The octets of batch stay
    // valid until the next call of the same function.
    virtual std::size_t ReceiveDirected(NpduBatch& batch, std::size_t limit, Wait wait) = 0;
    // The same for broadcasts; never blocks.
    virtual std::size_t ReceiveBroadcasts(NpduBatch& batch) = 0;
    // Blocks until one of sources (DIRECTED, BROADCASTS) can be received, Interrupt was called, or timeoutMs passed
    // (-1: without limit). Returns the bits that are ready. One thread at a time.
    virtual unsigned WaitReadable(unsigned sources, int timeoutMs) = 0;
    // Ends the present or the next WaitReadable. Any thread.
    virtual void Interrupt() = 0;

    // Does what the link has to do by time, such as renewing a registration. Milliseconds until it wants to be called
    // again at the latest, -1 for never. The port's own thread.
    virtual int Attend() { return -1; }

    // How many octets of a station's MAC tell it from others when its answers are matched: on BACnet/IP the IP address
    // without the port, since devices are met that answer from another port than they were asked on. 0: not the
    // address of a station of this link.
    virtual std::size_t IdentityLength(const MacAddress& station) const = 0;
    // The longest NPDU that the link carries.
    virtual std::size_t MaxNpdu() const = 0;
};

} // namespace bacnet
