// Who-Is to many devices.
#include "simulator/Generate.h"
#include "tests/unit/simulator/Site.h"

#include <algorithm>
#include <chrono>
#include <set>

namespace sim::testing {
namespace {

// The instance in an I-Am, of which nothing but the instance changes; nothing for another frame.
std::optional<std::uint32_t> InstanceOf(const Octets& frame, const std::string& npdu) {
    const Octets head = Hex(npdu + "10 00 C4");
    if (frame.size() != 4 + head.size() + 4 + 8 || !std::equal(head.begin(), head.end(), frame.begin() + 4))
        return std::nullopt;
    const std::uint8_t* id = frame.data() + 4 + head.size();
    return (std::uint32_t{id[1]} << 16 | std::uint32_t{id[2]} << 8 | id[3]) & BACSTAC_MAX_INSTANCE;
}

class Discovery : public ::testing::Test {
protected:
    void Start(std::uint32_t devices, IAmMode mode = IAmMode::broadcast, unsigned threads = 1) {
        Counts counts;
        counts.Devices = devices;
        counts.Trends = 0;
        counts.FirstIp = FIRST_IP; // outside the block; its port keeps them apart from others
        Site.Config.Devices = GenerateConfig(counts).Devices;
        Site.Config.IAm = mode;
        Site.Config.Threads = threads;
        Site.Config.IAmPerMs = std::min(Site.Config.IAmPerMs, SLOW_ENOUGH);
        Site.Start();
    }
    std::set<std::uint32_t> Collect(Station& ears) {
        std::set<std::uint32_t> found;
        for (Octets frame = ears.Receive(1000); !frame.empty(); frame = ears.Receive(200))
            if (const auto instance = InstanceOf(frame, "01 00")) {
                EXPECT_TRUE(found.insert(*instance).second) << "twice: " << *instance;
            }
        return found;
    }
    static constexpr std::uint32_t SLOW_ENOUGH = 10; // for a receive buffer of the usual size on a busy machine
    static constexpr std::uint32_t FIRST_IP = 0x7F010001;
    RunningSite Site;
};

TEST_F(Discovery, AThousandDevicesAnswerOneWhoIs) {
    Start(1000);
    Station ears(Site.BroadcastAddress(), true);
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08"));
    const std::set<std::uint32_t> found = Collect(ears);
    ASSERT_EQ(found.size(), 1000U);
    EXPECT_EQ(*found.begin(), 1000U);
    EXPECT_EQ(*found.rbegin(), 1999U);
}

TEST_F(Discovery, AThousandDevicesOfFourThreadsAnswerTheAskerAlone) {
    Start(1000, IAmMode::unicast, 4);
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08"));
    EXPECT_EQ(Collect(Site.Me()).size(), 1000U);
}

TEST_F(Discovery, AnswersAreSpreadOverTime) {
    Site.Config.IAmPerMs = 1;
    Start(60, IAmMode::unicast);
    const auto start = std::chrono::steady_clock::now();
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08"));
    for (int i = 0; i < 60; ++i)
        EXPECT_FALSE(Site.Me().Receive().empty());
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(58));
}

TEST_F(Discovery, OnlyThoseInTheRangeAnswer) {
    Start(20, IAmMode::unicast);
    // Who-Is [0] 1003, [1] 1006.
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08 0A 03 EB 1A 03 EE"));
    EXPECT_EQ(Collect(Site.Me()), (std::set<std::uint32_t>{1003, 1004, 1005, 1006}));
    EXPECT_EQ(Site.Sim().GetStats()[Counter::whoIs], 4U);
}

TEST_F(Discovery, AWhoIsToOneDeviceIsAnsweredToTheAsker) {
    Start(2);
    Site.Me().Send({FIRST_IP, Site.Block.Port()}, Unicast("10 08", "01 00"));
    EXPECT_EQ(Site.NextApdu(), "10 00 C4 02 00 03 E8 22 05 C4 91 01 22 03 E7");
    EXPECT_TRUE(Site.Me().Silence());
}

TEST_F(Discovery, MalformedWhoIsIsIgnored) {
    Start(2, IAmMode::unicast);
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08 0A 03 EB"));
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08 FF"));
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10"));
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("00 05 07 0C 0C 00 00 00 01 19 55")); // confirmed, to all
    EXPECT_TRUE(Site.Me().Silence());
}

} // namespace
} // namespace sim::testing
