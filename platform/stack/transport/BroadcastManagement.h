// What a BACnet/IP port does about broadcasts beyond its own network (ANSI/ASHRAE 135 annexes J.4 and J.5): it may be a
// foreign device of a broadcast management device elsewhere, or such a device itself, and it reads the tables of
// others. The port hands in what it receives and gives the way to send.
//
// Any thread at any time, once made. No lock is held while sending.
#pragma once

#include "platform/stack/transport/Bbmd.h"
#include "platform/stack/transport/ForeignRegistration.h"
#include "platform/stack/transport/TableQueries.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bacnet {

// How a port stands; what does not apply is empty.
struct BroadcastStatus {
    std::optional<ForeignSettings> Foreign; // registered with
    ForeignRegistration::State Registration = ForeignRegistration::State::asking;
    bool IsBbmd = false;
    std::vector<BdtEntry> Table;
    std::vector<FdtEntry> ForeignDevices;
};

class BroadcastManagement {
public:
    struct Environment {
        BipAddress Local;     // of the port
        BipAddress Broadcast; // of its network
        std::function<bool(const BipAddress&, std::span<const std::uint8_t>)> Send;
        std::function<std::int64_t()> Now; // milliseconds that only grow
        // Told of changes that a user should know of; error says whether it is bad news. May be empty.
        std::function<void(bool error, const std::string& text)> Report;
    };

    // At most one of foreign and bbmd.
    BroadcastManagement(Environment environment, const std::optional<ForeignSettings>& foreign,
                        const std::optional<BbmdSettings>& bbmd);

    bool IsBbmd() const { return m_bbmd.has_value(); }
    // Broadcasts need more than one frame on the port's own network.
    bool Extends() const { return m_bbmd.has_value() || m_foreign.has_value(); }

    // Does what is due by time; milliseconds until it wants to be called again, -1 for never.
    int Attend();
    // The port closes: where this station is registered, its entry is deleted (J.5.2.4), so that nothing is sent to an
    // address that somebody else may have next. One that is bound to all addresses does not know which is entered.
    void Leave();
    // Sends a broadcast of this station to everybody. The frame holds the NPDU.
    bool Broadcast(Frame& npdu);
    // An NPDU that came as a broadcast, or to be distributed as one. channel: it came from the network's broadcast
    // address (the port cannot tell where it has one socket for all). False: not for this station either.
    enum class Channel : std::uint8_t { unknown, directed, broadcast };
    bool OnBroadcast(const BvllMessage& message, const BipAddress& from, Channel channel);
    // Any other function.
    enum class Served : std::uint8_t { yes, ignored, unserved };
    Served OnControl(const BvllMessage& message, const BipAddress& from);

    TableRead ReadTable(const BipAddress& station, std::vector<BdtEntry>& entries, std::chrono::milliseconds wait);
    TableRead ReadTable(const BipAddress& station, std::vector<FdtEntry>& entries, std::chrono::milliseconds wait);
    BroadcastStatus Status();

private:
    TableRead Ask(const BipAddress& station, BvlcFunction function, std::chrono::milliseconds wait,
                  std::vector<std::uint8_t>& payload);
    bool Distribute(Bbmd::Way way, const BipAddress& from, const BipAddress& origin, bool onOwnNetwork,
                    std::span<const std::uint8_t> npdu);
    void SendNak(BvlcResult nak, const BipAddress& to);
    void ReportState();

    const Environment m_environment;
    std::optional<ForeignRegistration> m_foreign;
    std::optional<Bbmd> m_bbmd;
    TableQueries m_queries;
};

} // namespace bacnet
