// Start, stop and life of a simulation.
#include "tests/unit/simulator/Site.h"

#include <chrono>
#include <thread>

namespace sim::testing {
namespace {

const std::string REQUEST = "00 05 07 0C 0C 00 00 00 01 19 55";

std::string StartError(const SimulatorConfig& config) {
    Simulator simulator(config);
    std::string error;
    return simulator.Start(error) ? "" : error;
}

class Starting : public ::testing::Test {
protected:
    void SetUp() override {
        Config.Port = Block.Port();
        Config.Devices.push_back(SmallDevice(Block));
    }
    testing_support::LoopbackBlock Block;
    SimulatorConfig Config;
};

TEST_F(Starting, RefusesWhatCannotBe) {
    EXPECT_EQ(StartError(Config), "");
    SimulatorConfig config = Config;
    config.Devices[0].Instance = 4194303;
    EXPECT_EQ(StartError(config), "device 4194303: the instance has to be below 4194303");
    config = Config;
    config.Devices[0].MaxApdu = 49;
    EXPECT_EQ(StartError(config), "device 1234: the APDU size has to be 50 to 1476");
    config = Config;
    config.Devices[0].WindowSize = 0;
    EXPECT_EQ(StartError(config), "device 1234: the window size has to be 1 to 127");
    config = Config;
    config.Routers.resize(1);
    config.Routers[0].Ip = Block.Ip(2);
    config.Routers[0].Networks.resize(2);
    EXPECT_EQ(StartError(config), "network 1 is there twice");
    config.Routers[0].Networks.resize(1);
    config.Routers[0].Networks[0].Number = 65535;
    EXPECT_EQ(StartError(config), "a network number has to be 1 to 65534");
    config.Routers[0].Networks[0].Number = 3;
    config.Routers[0].Networks[0].Devices = {Config.Devices[0], Config.Devices[0]};
    EXPECT_EQ(StartError(config), "device 1234: address 0 on network 3 is taken");
}

TEST_F(Starting, SaysWhichAddressIsInUse) {
    Simulator first(Config);
    std::string error;
    ASSERT_TRUE(first.Start(error)) << error;
    EXPECT_FALSE(first.Start(error));
    EXPECT_EQ(error, "the simulation is running already");
    const std::string second = StartError(Config);
    EXPECT_EQ(second.substr(0, second.find(": ", 20)),
              "device 1234: cannot bind to " + Block.Text(1) + ":" + std::to_string(Block.Port()));
}

TEST_F(Starting, StopsAndStartsAgain) {
    Simulator simulator(Config);
    Station me(bacnet::BipAddress{Block.Ip(STATION_HOST), Block.Port()});
    std::string error;
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(simulator.Start(error)) << error;
        EXPECT_NE(me.Ask({Block.Ip(1), Block.Port()}, Unicast(REQUEST)), "");
        simulator.Stop();
        me.Send({Block.Ip(1), Block.Port()}, Unicast(REQUEST));
        EXPECT_TRUE(me.Silence());
    }
    EXPECT_EQ(simulator.GetStats().Requests(), 3U);
}

TEST_F(Starting, TwoProcessesWorthOfSimulatorsShareTheBroadcasts) {
    Simulator first(Config);
    SimulatorConfig other = Config;
    other.Devices[0].Ip = Block.Ip(2);
    other.Devices[0].Instance = 4321;
    Simulator second(other);
    std::string error;
    ASSERT_TRUE(first.Start(error)) << error;
    ASSERT_TRUE(second.Start(error)) << error;
    Station ears(bacnet::BipAddress{Block.BROADCAST_IP, Block.Port()}, true);
    Station me(bacnet::BipAddress{Block.Ip(STATION_HOST), Block.Port()});
    me.Send({Block.BROADCAST_IP, Block.Port()}, Broadcast("10 08"));
    EXPECT_NE(ears.ReceiveHex(), ""); // the question
    EXPECT_NE(ears.ReceiveHex(), "");
    EXPECT_NE(ears.ReceiveHex(), "");
    EXPECT_TRUE(ears.Silence());
}

TEST_F(Starting, LogsGrowWhileItRuns) {
    ObjectConfig trend;
    trend.Id = {OBJ_TREND_LOG, 1};
    trend.Log.emplace();
    trend.Log->Generator.emplace();
    trend.Log->Generated = 5;
    Config.Devices[0].Objects.push_back(trend);
    Config.AppendEveryMs = 5;
    Simulator simulator(Config);
    std::string error;
    ASSERT_TRUE(simulator.Start(error)) << error;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (*simulator.GetDevice(0).TotalRecordCount(trend.Id) < 8 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_GE(*simulator.GetDevice(0).TotalRecordCount(trend.Id), 8U);
}

TEST_F(Starting, FindsDevicesByInstance) {
    const Simulator simulator(Config);
    EXPECT_EQ(simulator.DeviceCount(), 1U);
    EXPECT_EQ(simulator.FindDevice(1234), &simulator.GetDevice(0));
    EXPECT_EQ(simulator.FindDevice(1), nullptr);
}

// Requests, changes of the model and of the faults all at once; the sanitizers look on.
TEST_F(Starting, ServesWhileTheModelChanges) {
    Config.Threads = 2;
    DeviceConfig second = SmallDevice(Block);
    second.Instance = 2;
    second.Ip = Block.Ip(2);
    Config.Devices.push_back(second);
    ObjectConfig trend;
    trend.Id = {OBJ_TREND_LOG, 1};
    trend.Log.emplace();
    trend.Log->Generator.emplace();
    for (DeviceConfig& device : Config.Devices)
        device.Objects.push_back(trend);
    Simulator simulator(Config);
    std::string error;
    ASSERT_TRUE(simulator.Start(error)) << error;

    std::atomic<bool> stop{false};
    std::thread changes([&] {
        for (int i = 0; !stop; ++i) {
            Device& device = simulator.GetDevice(static_cast<std::size_t>(i % 2));
            device.SetProperty({OBJ_ANALOG_INPUT, 1}, PROP_PRESENT_VALUE, Value::Real(static_cast<float>(i)));
            device.Generate(trend.Id, 3);
            device.SetFault(i % 4 < 2 ? Fault::Duplicate() : Fault::Slow(1));
            device.ClearFaults();
            simulator.GetStats();
        }
    });
    std::vector<std::thread> askers;
    for (unsigned n = 0; n < 2; ++n) {
        askers.emplace_back([&, n] {
            Station me(bacnet::BipAddress{Block.Ip(STATION_HOST + n), Block.Port()});
            for (int i = 0; i < 300; ++i) {
                const bacnet::BipAddress to{Block.Ip(1 + (n + static_cast<unsigned>(i)) % 2), Block.Port()};
                EXPECT_NE(me.Ask(to, Unicast(i % 3 == 0 ? "00 05 07 1A 0C 05 00 00 01 19 83" : REQUEST)), "");
            }
        });
    }
    for (std::thread& asker : askers)
        asker.join();
    stop = true;
    changes.join();
}

} // namespace
} // namespace sim::testing
