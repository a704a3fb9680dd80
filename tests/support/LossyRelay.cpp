#include "tests/support/LossyRelay.h"

#include <algorithm>
#include <stdexcept>

#include <poll.h>

namespace testing_support {

namespace {

constexpr int STOP_MS = 10; // how often the thread looks whether it is to end

// Well mixed, and the same wherever it runs (splitmix64).
std::uint64_t Mix(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9U;
    value = (value ^ value >> 27) * 0x94D049BB133111EBU;
    return value ^ value >> 31;
}

bacnet::UdpSocket Bound(const bacnet::BipAddress& address) {
    bacnet::UdpSocket::Options options;
    options.ReceiveBuffer = 1024 * 1024;
    bacnet::UdpSocket socket;
    const std::string reason = socket.Open(address, options);
    if (!reason.empty())
        throw std::runtime_error(reason);
    return socket;
}

} // namespace

void LossyRelay::Add(const bacnet::BipAddress& front, const bacnet::BipAddress& device) {
    auto lane = std::make_unique<Lane>();
    lane->Front = Bound(front);
    lane->Back = Bound({front.Ip, 0});
    lane->Device = device;
    m_lanes.push_back(std::move(lane));
}

void LossyRelay::Start() {
    m_thread = std::thread([this] { Run(); });
}

void LossyRelay::Stop() {
    m_stop = true;
    if (m_thread.joinable())
        m_thread.join();
}

void LossyRelay::Run() {
    std::vector<pollfd> sockets;
    for (const auto& lane : m_lanes) {
        sockets.push_back({lane->Front.Native(), POLLIN, 0});
        sockets.push_back({lane->Back.Native(), POLLIN, 0});
    }
    while (!m_stop) {
        int wait = STOP_MS;
        if (!m_pending.empty()) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(m_pending.top().At - Clock::now()).count();
            wait = static_cast<int>(std::clamp<std::int64_t>(left, 0, STOP_MS));
        }
        ::poll(sockets.data(), sockets.size(), wait);
        for (std::size_t i = 0; i < sockets.size(); ++i)
            if ((sockets[i].revents & POLLIN) != 0)
                Take(i / 2, i % 2 == 0 ? to_device : to_station);
        SendDue();
    }
}

void LossyRelay::Take(std::size_t lane, Direction where) {
    const bacnet::UdpSocket& socket = where == to_device ? m_lanes[lane]->Front : m_lanes[lane]->Back;
    while (socket.Receive(m_batch, bacnet::DatagramBatch::CAPACITY, false) != 0)
        for (std::size_t i = 0; i < m_batch.Count(); ++i) {
            if (where == to_device)
                m_lanes[lane]->Station = m_batch.From(i);
            Accept(lane, where, m_batch.Octets(i));
        }
}

void LossyRelay::Accept(std::size_t lane, Direction where, std::span<const std::uint8_t> octets) {
    std::uint64_t chance = Mix(m_seed ^ Mix(lane * 2 + where) ^ Mix(m_lanes[lane]->Count[where]++ << 20));
    const auto draw = [&chance](unsigned below) {
        chance = Mix(chance);
        return static_cast<unsigned>(chance % below);
    };
    if (draw(100) < m_faults.LossPercent) {
        ++m_lost;
        return;
    }
    for (int copies = draw(100) < m_faults.DoublePercent ? 2 : 1; copies > 0; --copies) {
        const unsigned limit = draw(100) < m_faults.LatePercent ? m_faults.LateMs : m_faults.UsualMs;
        m_pending.push({Clock::now() + std::chrono::microseconds(draw(limit * 1000 + 1)),
                        m_order++,
                        lane,
                        where,
                        {octets.begin(), octets.end()}});
    }
    ++m_relayed;
}

void LossyRelay::SendDue() {
    while (!m_pending.empty() && m_pending.top().At <= Clock::now()) {
        const Pending& due = m_pending.top();
        const Lane& lane = *m_lanes[due.Lane];
        if (due.Where == to_device)
            lane.Back.Send(lane.Device, due.Octets);
        else
            lane.Front.Send(lane.Station, due.Octets);
        m_pending.pop();
    }
}

} // namespace testing_support
