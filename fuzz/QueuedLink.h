// A data link without a network, and a clock without time: what is sent goes to whoever overrides Sent, what is queued
// is received, and where nothing is queued, time passes at once. For targets that drive the stack from one thread.
#pragma once

#include "platform/stack/transaction/Clock.h"
#include "platform/stack/transport/DataLink.h"

#include <deque>
#include <utility>
#include <vector>

class QueuedClock final : public bacnet::IClock {
public:
    bacnet::Millis Now() const override { return Time; }
    bacnet::Millis Time = 1000;
};

class QueuedLink : public bacnet::IDataLink {
public:
    using Octets = std::vector<std::uint8_t>;
    using Mac = bacnet::MacAddress;

    explicit QueuedLink(QueuedClock& clock) : m_clock(clock) {}

    void Queue(Octets npdu, const Mac& from) { m_queue.push_back({from, std::move(npdu)}); }

    bool Send(const Mac& destination, bacnet::Frame& npdu) override {
        Sent(destination, npdu.Octets());
        return true;
    }
    bool Broadcast(bacnet::Frame& npdu) override { return Send({}, npdu); }
    std::size_t SendMany(std::span<bacnet::OutgoingNpdu> frames) override {
        for (const bacnet::OutgoingNpdu& frame : frames)
            Send(frame.Destination, *frame.Npdu);
        return frames.size();
    }
    std::size_t ReceiveDirected(bacnet::NpduBatch& batch, std::size_t, Wait wait) override {
        batch.Count = 0;
        if (m_queue.empty()) {
            m_clock.Time += wait == Wait::tick ? TICK : 0;
            return 0;
        }
        m_held = std::move(m_queue.front());
        m_queue.pop_front();
        batch.Items[batch.Count++] = {m_held.From, false, m_held.Npdu};
        return 1;
    }
    std::size_t ReceiveBroadcasts(bacnet::NpduBatch& batch) override { return batch.Count = 0; }
    unsigned WaitReadable(unsigned, int) override {
        m_clock.Time += TICK;
        return 0;
    }
    void Interrupt() override {}
    std::size_t IdentityLength(const Mac& station) const override { return station.Length() == 6 ? 4 : 0; }
    std::size_t MaxNpdu() const override { return 1497; }

protected:
    virtual void Sent(const Mac& destination, std::span<const std::uint8_t> npdu) {
        static_cast<void>(destination);
        static_cast<void>(npdu);
    }

private:
    struct Received {
        Mac From;
        Octets Npdu;
    };
    QueuedClock& m_clock;
    std::deque<Received> m_queue;
    Received m_held;
};
