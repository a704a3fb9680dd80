// A bad network: relays UDP datagrams between one BACnet/IP station and devices, and loses, doubles, delays and so
// reorders them on the way, in both directions. The station talks to an address of the relay for each device. What
// happens to the n-th datagram of a direction depends on the seed alone.
//
//     LossyRelay relay(seed, {});
//     relay.Add(front, device);
//     relay.Start();
#pragma once

#include "platform/stack/transport/UdpSocket.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <queue>
#include <span>
#include <thread>
#include <vector>

namespace testing_support {

struct NetworkFaults {
    unsigned LossPercent = 10;
    unsigned DoublePercent = 10;
    unsigned LatePercent = 5; // so late that others overtake it
    unsigned UsualMs = 4;     // at most, for the rest
    unsigned LateMs = 40;     // at most
};

class LossyRelay {
public:
    LossyRelay(std::uint64_t seed, const NetworkFaults& faults) : m_seed(seed), m_faults(faults) {}
    ~LossyRelay() { Stop(); }
    LossyRelay(const LossyRelay&) = delete;
    LossyRelay& operator=(const LossyRelay&) = delete;

    // Before Start. Throws when front cannot be bound.
    void Add(const bacnet::BipAddress& front, const bacnet::BipAddress& device);
    void Start();
    void Stop();

    std::uint64_t Relayed() const { return m_relayed; }
    std::uint64_t Lost() const { return m_lost; }

private:
    using Clock = std::chrono::steady_clock;
    enum Direction : std::uint8_t { to_device, to_station };

    struct Lane {
        bacnet::UdpSocket Front; // faces the station
        bacnet::UdpSocket Back;  // faces the device; its port is its own, so that no earlier relay's answers come in
        bacnet::BipAddress Device;
        bacnet::BipAddress Station; // where the last datagram came from
        std::array<std::uint64_t, 2> Count{};
    };
    struct Pending {
        Clock::time_point At;
        std::uint64_t Order = 0;
        std::size_t Lane = 0;
        Direction Where = to_device;
        std::vector<std::uint8_t> Octets;
        bool operator<(const Pending& other) const { // the earliest is the largest
            return At != other.At ? At > other.At : Order > other.Order;
        }
    };

    void Run();
    void Take(std::size_t lane, Direction where);
    void Accept(std::size_t lane, Direction where, std::span<const std::uint8_t> octets);
    void SendDue();

    const std::uint64_t m_seed;
    const NetworkFaults m_faults;
    std::vector<std::unique_ptr<Lane>> m_lanes;
    bacnet::DatagramBatch m_batch;
    std::priority_queue<Pending> m_pending;
    std::uint64_t m_order = 0;
    std::atomic<std::uint64_t> m_relayed{0};
    std::atomic<std::uint64_t> m_lost{0};
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace testing_support
