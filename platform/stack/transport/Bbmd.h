// A BACnet/IP broadcast management device (ANSI/ASHRAE 135 annex J.4 and J.5): its two tables, and where each broadcast
// has to go. Sends nothing itself. Any thread at any time; times are milliseconds that only grow.
//
// A broadcast makes at most two steps: from its network to the other devices of the table, and from each of these to
// its own network and foreign devices. What another device of the table has sent is never sent on to the table, and
// what somebody outside of it forwards is not sent on at all, so nothing goes in circles.
#pragma once

#include "platform/stack/transport/BroadcastSettings.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace bacnet {

class Bbmd {
public:
    // Added to a foreign device's time to live (J.5.2.3), milliseconds.
    static constexpr std::int64_t GRACE = 30000;

    // self: the address that the other devices of the table have for this one.
    Bbmd(const BipAddress& self, const BbmdSettings& settings);

    // Answers the functions that are for a broadcast management device; answer is a whole datagram. False: the function
    // gets no answer here.
    bool Serve(const BvllMessage& message, const BipAddress& from, std::int64_t now, std::vector<std::uint8_t>& answer);

    // How a broadcast has reached this device.
    enum class Way : std::uint8_t {
        own_network, // as an original broadcast, or it is this station's own
        table,       // forwarded by another device of the table
        foreign,     // from a foreign device, to be distributed
    };
    // Where to send it as a forwarded NPDU, beside this device's own network. from is who sent it to us, origin who
    // sent it first. False: it must not be sent on.
    bool Targets(Way way, const BipAddress& from, const BipAddress& origin, std::int64_t now,
                 std::vector<BipAddress>& targets);
    // The others of the table send to this device alone, so that it has to repeat on its network what they send.
    bool GetsUnicasts() const;

    std::vector<BdtEntry> Table() const;
    std::vector<FdtEntry> ForeignDevices(std::int64_t now);

private:
    struct Foreign {
        BipAddress Address;
        std::uint16_t TimeToLive = 0; // seconds
        std::int64_t Until = 0;
    };

    BvlcResult Register(const BipAddress& device, std::span<const std::uint8_t> payload, std::int64_t now);
    BvlcResult Delete(std::span<const std::uint8_t> payload);
    BvlcResult Write(std::span<const std::uint8_t> payload);
    // All with m_lock held.
    void Put(std::vector<BdtEntry> table);
    void Expire(std::int64_t now);
    bool InTable(const BipAddress& address) const;
    std::vector<FdtEntry> ListForeign(std::int64_t now);

    const BipAddress m_self;
    const std::size_t m_foreignLimit;
    const bool m_acceptWrite;
    mutable std::mutex m_lock;
    std::vector<BdtEntry> m_table;  // m_lock
    std::vector<Foreign> m_foreign; // m_lock
};

} // namespace bacnet
