// A data link without a network: records what is sent, delivers what a script gives it, and moves a clock by one tick
// whenever there is nothing to receive. For one thread.
#pragma once

#include "platform/stack/transaction/Clock.h"
#include "platform/stack/transport/DataLink.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <initializer_list>
#include <vector>

namespace fakes {

using Octets = std::vector<std::uint8_t>;

class FakeClock final : public bacnet::IClock {
public:
    bacnet::Millis Now() const override { return m_now; }
    void Advance(bacnet::Millis by) { m_now += by; }

private:
    bacnet::Millis m_now = 1000000;
};

inline bacnet::MacAddress Mac(std::initializer_list<std::uint8_t> octets) {
    return bacnet::MacAddress(std::span(octets.begin(), octets.size()));
}

struct Sent {
    bacnet::Millis At = 0;
    bacnet::MacAddress To; // empty: broadcast
    Octets Npdu;
};

class FakeLink final : public bacnet::IDataLink {
public:
    explicit FakeLink(FakeClock& clock) : m_clock(clock) {}

    // Called after each frame was recorded; may deliver.
    std::function<void(const Sent&)> OnSend;
    std::function<void()> OnReceive; // before each receive: what a script does as time passes
    bool Refuse = false;             // the system refuses to send
    std::vector<Sent> Frames;

    void Deliver(const bacnet::MacAddress& from, Octets npdu, bacnet::Millis delay = 0) {
        m_incoming.push_back({m_clock.Now() + delay, from, false, std::move(npdu)});
    }
    void DeliverBroadcast(const bacnet::MacAddress& from, Octets npdu, bacnet::Millis delay = 0) {
        m_incoming.push_back({m_clock.Now() + delay, from, true, std::move(npdu)});
    }

    bool Send(const bacnet::MacAddress& destination, bacnet::Frame& npdu) override {
        if (Refuse)
            return false;
        Frames.push_back({m_clock.Now(), destination, {npdu.Octets().begin(), npdu.Octets().end()}});
        if (OnSend)
            OnSend(Sent(Frames.back()));
        return true;
    }
    bool Broadcast(bacnet::Frame& npdu) override { return Send({}, npdu); }
    std::size_t SendMany(std::span<bacnet::OutgoingNpdu> frames) override {
        std::size_t sent = 0;
        for (bacnet::OutgoingNpdu& frame : frames)
            sent += Send(frame.Destination, *frame.Npdu) ? 1 : 0;
        return sent;
    }
    std::size_t ReceiveDirected(bacnet::NpduBatch& batch, std::size_t limit, Wait wait) override {
        if (OnReceive)
            OnReceive();
        batch.Count = 0;
        m_delivered.clear();
        for (auto at = m_incoming.begin(); at != m_incoming.end() && batch.Count < limit;) {
            if (at->At > m_clock.Now()) {
                ++at;
                continue;
            }
            m_delivered.push_back(std::move(*at));
            at = m_incoming.erase(at);
            const Incoming& item = m_delivered.back();
            batch.Items[batch.Count++] = {item.From, item.Broadcast, item.Npdu};
        }
        if (batch.Count == 0 && wait == Wait::tick)
            m_clock.Advance(TICK);
        return batch.Count;
    }
    std::size_t ReceiveBroadcasts(bacnet::NpduBatch& batch) override { return batch.Count = 0; }
    unsigned WaitReadable(unsigned, int) override { return 0; }
    void Interrupt() override {}
    // The first four octets tell stations apart, as on BACnet/IP.
    std::size_t IdentityLength(const bacnet::MacAddress& station) const override {
        return station.Length() == 6 ? 4 : 0;
    }
    std::size_t MaxNpdu() const override { return 1497; }

private:
    struct Incoming {
        bacnet::Millis At;
        bacnet::MacAddress From;
        bool Broadcast;
        Octets Npdu;
    };
    FakeClock& m_clock;
    std::vector<Incoming> m_incoming;
    std::deque<Incoming> m_delivered; // keeps the octets that the last batch points to
};

} // namespace fakes
