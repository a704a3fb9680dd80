// What a simulated device sends to others by itself: finds a recipient that is known by its device instance only, and
// repeats confirmed requests until they are answered or given up (clauses 5.4.4 and 16.10). Belongs to one server
// thread, except OnIAm.
#pragma once

#include "platform/stack/network/Apdu.h"
#include "simulator/model/Message.h"
#include "simulator/server/FrameSender.h"

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace sim {

class OutgoingRequests {
public:
    // awaited: how many recipients all devices together wait for, so that I-Am need not be looked at otherwise.
    OutgoingRequests(const Origin& origin, std::atomic<unsigned>& awaited) : m_origin(origin), m_awaited(awaited) {}
    ~OutgoingRequests() { Forget(); }

    void Send(FrameSender& out, Message message, std::int64_t nowMs);
    // Repeats what is due and drops what nobody answers.
    void OnTime(FrameSender& out, std::int64_t nowMs);
    // A SimpleACK, Error, Reject or Abort.
    void OnAnswer(const Requester& from, const bacnet::Apdu& answer);
    // The way to a network that a request came from.
    void LearnRoute(const Requester& from) { m_routes[from.Network] = from.Link; }
    void Forget(); // after a restart

    // Any thread: whether a device's I-Am is waited for, and that it came.
    bool Awaits() const { return m_unknown != 0; }
    void OnIAm(std::uint32_t instance, const Requester& from);

private:
    struct Pending {
        Message What;
        std::optional<Requester> To; // once it is known
        std::uint8_t InvokeId = 0;
        unsigned Attempts = 0; // of finding the recipient, then of asking it
        std::int64_t DueMs = 0;
    };

    bool Attempt(FrameSender& out, Pending& pending, std::int64_t nowMs); // false when there is nothing left to do
    std::optional<Requester> Resolve(const BACSTAC_RECIPIENT& recipient);
    void AskWhoIs(FrameSender& out, std::uint32_t instance) const;
    void SendTo(FrameSender& out, const Pending& pending) const;
    void CountUnknown();

    Origin m_origin;
    std::vector<Pending> m_pending;
    std::uint8_t m_nextInvokeId = 0;
    std::map<std::uint16_t, bacnet::BipAddress> m_routes;
    std::atomic<unsigned>& m_awaited;
    std::atomic<unsigned> m_unknown = 0; // recipients that this device waits for
    mutable std::mutex m_mutex;
    std::map<std::uint32_t, Requester> m_known; // by m_mutex: devices by instance
};

} // namespace sim
