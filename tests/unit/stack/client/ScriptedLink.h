// A data link whose other end is the test: each device is a function from request APDU to answer APDUs. Answers come at
// once, later by Deliver, or never.
#pragma once

#include "platform/stack/transport/DataLink.h"
#include "tests/unit/stack/client/Frames.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

class ScriptedLink final : public bacnet::IDataLink {
public:
    // Any number of answers, none for silence. Called on the sending thread, one call at a time.
    using Device = std::function<std::vector<Octets>(const Octets& apdu)>;

    struct Sent {
        bacnet::MacAddress Destination; // empty: broadcast
        Octets Npdu;
    };

    static bacnet::MacAddress Mac(std::uint8_t last) {
        const std::uint8_t octets[] = {127, 0, 0, last, 0xBA, 0xC0};
        return bacnet::MacAddress(octets);
    }

    void SetDevice(std::uint8_t last, Device device) {
        const std::lock_guard lock(m_lock);
        m_devices[last] = std::move(device);
    }
    // An NPDU from a device of this network; an APDU behind the plain header 01 00 unless npdu.
    void Deliver(std::uint8_t from, const Octets& apdu, bool broadcast = false, bool npdu = false) {
        const std::lock_guard lock(m_lock);
        Enqueue(from, apdu, broadcast, npdu);
    }
    std::vector<Sent> TakeSent() {
        const std::lock_guard lock(m_lock);
        return std::exchange(m_sent, {});
    }
    // APDUs sent to one device, as text.
    std::vector<std::string> RequestsTo(std::uint8_t last) {
        const std::lock_guard lock(m_lock);
        std::vector<std::string> requests;
        for (const Sent& sent : m_sent)
            if (sent.Destination == Mac(last))
                requests.push_back(ToHex(std::span(sent.Npdu).subspan(2)));
        return requests;
    }

    bool Send(const bacnet::MacAddress& destination, bacnet::Frame& npdu) override {
        const std::lock_guard lock(m_lock);
        const Octets octets(npdu.Octets().begin(), npdu.Octets().end());
        m_sent.push_back({destination, octets});
        if (destination.Empty())
            return true;
        const std::uint8_t last = destination.Data()[3];
        const auto device = m_devices.find(last);
        const bool plain = octets.size() > 2 && octets[0] == 1 && (octets[1] & 0xA8U) == 0;
        if (device == m_devices.end() || !plain)
            return true;
        for (const Octets& answer : device->second(Octets(octets.begin() + 2, octets.end())))
            Enqueue(last, answer, false, false);
        return true;
    }
    bool Broadcast(bacnet::Frame& npdu) override { return Send({}, npdu); }
    std::size_t SendMany(std::span<bacnet::OutgoingNpdu> frames) override {
        for (const bacnet::OutgoingNpdu& frame : frames)
            Send(frame.Destination, *frame.Npdu);
        return frames.size();
    }
    std::size_t ReceiveDirected(bacnet::NpduBatch& batch, std::size_t limit, Wait wait) override {
        std::unique_lock lock(m_lock);
        if (wait == Wait::tick)
            m_arrived.wait_for(lock, std::chrono::milliseconds(TICK), [this] { return !m_directed.empty(); });
        return Take(m_directed, m_directedHeld, batch, limit);
    }
    std::size_t ReceiveBroadcasts(bacnet::NpduBatch& batch) override {
        const std::lock_guard lock(m_lock);
        return Take(m_broadcasts, m_broadcastsHeld, batch, bacnet::NpduBatch::CAPACITY);
    }
    unsigned WaitReadable(unsigned sources, int timeoutMs) override {
        std::unique_lock lock(m_lock);
        const auto ready = [&] {
            return (m_directed.empty() ? 0U : DIRECTED & sources) | (m_broadcasts.empty() ? 0U : BROADCASTS & sources);
        };
        const auto done = [&] { return ready() != 0 || m_interrupted; };
        if (timeoutMs < 0)
            m_arrived.wait(lock, done);
        else
            m_arrived.wait_for(lock, std::chrono::milliseconds(timeoutMs), done);
        m_interrupted = false;
        return ready();
    }
    void Interrupt() override {
        const std::lock_guard lock(m_lock);
        m_interrupted = true;
        m_arrived.notify_all();
    }
    std::size_t IdentityLength(const bacnet::MacAddress& station) const override {
        return station.Length() == 6 ? 4 : station.Length();
    }
    std::size_t MaxNpdu() const override { return 1497; }

private:
    struct Received {
        bacnet::MacAddress From;
        bool Broadcast = false;
        Octets Npdu;
    };

    void Enqueue(std::uint8_t from, const Octets& octets, bool broadcast, bool npdu) {
        Received received{Mac(from), broadcast, npdu ? Octets{} : Octets{1, 0}};
        received.Npdu.insert(received.Npdu.end(), octets.begin(), octets.end());
        (broadcast ? m_broadcasts : m_directed).push_back(std::move(received));
        m_arrived.notify_all();
    }
    static std::size_t Take(std::deque<Received>& queue, std::vector<Received>& held, bacnet::NpduBatch& batch,
                            std::size_t limit) {
        held.clear();
        batch.Count = 0;
        while (!queue.empty() && held.size() < limit) {
            held.push_back(std::move(queue.front()));
            queue.pop_front();
        }
        for (const Received& received : held)
            batch.Items[batch.Count++] = {received.From, received.Broadcast, received.Npdu};
        return held.size();
    }

    std::mutex m_lock; // guards all below
    std::condition_variable m_arrived;
    std::map<std::uint8_t, Device> m_devices;
    std::vector<Sent> m_sent;
    std::deque<Received> m_directed;
    std::deque<Received> m_broadcasts;
    std::vector<Received> m_directedHeld; // the octets of the batch handed out last
    std::vector<Received> m_broadcastsHeld;
    bool m_interrupted = false;
};
