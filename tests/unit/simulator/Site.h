// A running simulation for one test, on addresses of its own, and a station to ask it.
#pragma once

#include "simulator/Simulator.h"
#include "tests/unit/simulator/Station.h"

#include <memory>

namespace sim::testing {

inline constexpr unsigned DEVICE_HOST = 1; // last octet of the first device
inline constexpr unsigned ROUTER_HOST = 200;
inline constexpr unsigned STATION_HOST = 250;

// Device 1234 with an analog input 1, a multi-state value 2 and what a test adds.
inline DeviceConfig SmallDevice(const testing_support::LoopbackBlock& block) {
    DeviceConfig device;
    device.Instance = 1234;
    device.Ip = block.Ip(DEVICE_HOST);
    ObjectConfig input;
    input.Id = {OBJ_ANALOG_INPUT, 1};
    device.Objects.push_back(input);
    ObjectConfig value;
    value.Id = {OBJ_MULTI_STATE_VALUE, 2};
    device.Objects.push_back(value);
    return device;
}

class RunningSite {
public:
    RunningSite() : m_station(bacnet::BipAddress{Block.Ip(STATION_HOST), Block.Port()}) {
        Config.Port = Block.Port();
        Config.Clock = [] { return LocalTime{178'000'000'000}; }; // 2026-05-28
    }

    void Start() {
        m_simulator = std::make_unique<Simulator>(Config);
        std::string error;
        ASSERT_TRUE(m_simulator->Start(error)) << error;
    }
    Simulator& Sim() { return *m_simulator; }
    Device& FirstDevice() { return m_simulator->GetDevice(0); }

    bacnet::BipAddress DeviceAddress(unsigned host = DEVICE_HOST) const { return {Block.Ip(host), Block.Port()}; }
    bacnet::BipAddress RouterAddress() const { return {Block.Ip(ROUTER_HOST), Block.Port()}; }
    bacnet::BipAddress BroadcastAddress() const { return {Block.BROADCAST_IP, Block.Port()}; }
    Station& Me() { return m_station; }

    // Sends an APDU to the first device; the answer's APDU, without the six octets in front of it.
    std::string Ask(const std::string& apdu) {
        m_station.Send(DeviceAddress(), Unicast(apdu));
        return NextApdu();
    }
    std::string NextApdu(int timeoutMs = Station::LONG_MS) {
        const Octets frame = m_station.Receive(timeoutMs);
        if (frame.empty())
            return "nothing";
        EXPECT_EQ(ToHex(std::span(frame).first(2)), "81 0A");
        EXPECT_EQ(ToHex(std::span(frame).subspan(4, 2)), "01 00");
        return ToHex(std::span(frame).subspan(6));
    }

    testing_support::LoopbackBlock Block;
    SimulatorConfig Config;

private:
    Station m_station;
    std::unique_ptr<Simulator> m_simulator;
};

} // namespace sim::testing
