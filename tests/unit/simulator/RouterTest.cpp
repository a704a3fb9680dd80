// Devices behind a simulated router, octet by octet.
#include "tests/unit/simulator/Site.h"

#include <set>

namespace sim::testing {
namespace {

class Router : public ::testing::Test {
protected:
    void SetUp() override {
        Site.Config.Devices.push_back(SmallDevice(Site.Block));
        RouterConfig router;
        router.Ip = Site.Block.Ip(ROUTER_HOST);
        for (const std::uint16_t number : {std::uint16_t{5}, std::uint16_t{6}}) {
            NetworkConfig network;
            network.Number = number;
            for (std::uint8_t mac = 1; mac <= 2; ++mac) {
                DeviceConfig device = SmallDevice(Site.Block);
                device.Instance = number * 100U + mac;
                device.Ip = 0;
                device.Mac = mac;
                device.MaxApdu = 480;
                network.Devices.push_back(device);
            }
            router.Networks.push_back(network);
        }
        Site.Config.Routers.push_back(router);
        Ears = std::make_unique<Station>(Site.BroadcastAddress(), true);
        Site.Start();
        // The router announces itself: I-Am-Router-To-Network 5 and 6.
        EXPECT_EQ(Ears->ReceiveHex(), "81 0B 00 0B 01 80 01 00 05 00 06");
    }
    // All datagrams that come to the broadcast address, until it is quiet.
    std::multiset<std::string> Heard() {
        std::multiset<std::string> heard;
        for (Octets frame = Ears->Receive(500); !frame.empty(); frame = Ears->Receive(Station::SHORT_MS))
            heard.insert(ToHex(frame));
        return heard;
    }
    RunningSite Site;
    std::unique_ptr<Station> Ears; // on the broadcast address
};

TEST_F(Router, ForwardsToTheStationAndAnswersWithItsSource) {
    // NPDU with DNET 5, DADR 2, hop count 255; the object name of whichever device: "Device 502".
    EXPECT_EQ(Site.Me().Ask(Site.RouterAddress(), Unicast("00 05 07 0C 0C 02 3F FF FF 19 4D", "01 24 00 05 01 02 FF")),
              // NPDU with SNET 5, SADR 2.
              "81 0A 00 23 01 08 00 05 01 02 30 07 0C 0C 02 00 01 F6 19 4D 3E 75 0B 00 44 65 76 69 63 65 20 35 30 32 "
              "3F");
    EXPECT_EQ(Site.Me().From(), Site.RouterAddress());
}

TEST_F(Router, AnswersAStationBehindAnotherRouter) {
    // SNET 9, SADR 0A0B: they become DNET and DADR of the answer.
    EXPECT_EQ(Site.Me().Ask(Site.RouterAddress(),
                            Unicast("00 05 07 0C 0C 00 00 00 01 19 55", "01 2C 00 05 01 02 00 09 02 0A 0B FE")),
              "81 0A 00 21 01 28 00 09 02 0A 0B 00 05 01 02 FF 30 07 0C 0C 00 00 00 01 19 55 3E 44 41 A2 00 00 3F");
}

TEST_F(Router, DropsWhatHasNoHopsLeftAndWhatIsForNobody) {
    Site.Me().Send(Site.RouterAddress(), Unicast("00 05 07 0C 0C 00 00 00 01 19 55", "01 24 00 05 01 02 00"));
    Site.Me().Send(Site.RouterAddress(), Unicast("00 05 07 0C 0C 00 00 00 01 19 55", "01 24 00 05 01 63 FF"));
    Site.Me().Send(Site.RouterAddress(), Unicast("00 05 07 0C 0C 00 00 00 01 19 55", "01 24 00 05 02 00 02 FF"));
    Site.Me().Send(Site.RouterAddress(), Unicast("00 05 07 0C 0C 00 00 00 01 19 55"));
    EXPECT_TRUE(Site.Me().Silence());
}

TEST_F(Router, RejectsAMessageToANetworkItDoesNotKnow) {
    // Reject-Message-To-Network, reason 1, network 7.
    EXPECT_EQ(Site.Me().Ask(Site.RouterAddress(), Unicast("00 05 07 0C 0C 00 00 00 01 19 55", "01 24 00 07 01 02 FF")),
              "81 0A 00 0A 01 80 03 01 00 07");
}

TEST_F(Router, TellsItsNetworksWhenAsked) {
    // Who-Is-Router-To-Network, to all, for 6, for 7, for any.
    Site.Me().Send(Site.BroadcastAddress(), Hex("81 0B 00 09 01 80 00 00 06"));
    EXPECT_TRUE(Heard().contains("81 0B 00 09 01 80 01 00 06"));
    Site.Me().Send(Site.BroadcastAddress(), Hex("81 0B 00 09 01 80 00 00 07"));
    EXPECT_EQ(Heard().size(), 1U); // the question
    Site.Me().Send(Site.BroadcastAddress(), Hex("81 0B 00 07 01 80 00"));
    EXPECT_TRUE(Heard().contains("81 0B 00 0B 01 80 01 00 05 00 06"));
    // To the router alone; the answer is for all.
    Site.Me().Send(Site.RouterAddress(), Hex("81 0A 00 07 01 80 00"));
    EXPECT_TRUE(Heard().contains("81 0B 00 0B 01 80 01 00 05 00 06"));
}

TEST_F(Router, GlobalWhoIsReachesAllDevices) {
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08", "01 20 FF FF 00 FF"));
    auto heard = Heard();
    heard.erase(heard.find("81 0B 00 0C 01 20 FF FF 00 FF 10 08"));
    EXPECT_EQ(heard, (std::multiset<std::string>{
                         // DNET 65535; I-Am: device, 1476 octets, segmented transmit, vendor 999.
                         "81 0B 00 19 01 20 FF FF 00 FF 10 00 C4 02 00 04 D2 22 05 C4 91 01 22 03 E7",
                         // SNET 5, SADR 1, and so on; 480 octets.
                         "81 0B 00 1D 01 28 FF FF 00 00 05 01 01 FF 10 00 C4 02 00 01 F5 22 01 E0 91 01 22 03 E7",
                         "81 0B 00 1D 01 28 FF FF 00 00 05 01 02 FF 10 00 C4 02 00 01 F6 22 01 E0 91 01 22 03 E7",
                         "81 0B 00 1D 01 28 FF FF 00 00 06 01 01 FF 10 00 C4 02 00 02 59 22 01 E0 91 01 22 03 E7",
                         "81 0B 00 1D 01 28 FF FF 00 00 06 01 02 FF 10 00 C4 02 00 02 5A 22 01 E0 91 01 22 03 E7",
                     }));
}

TEST_F(Router, RemoteBroadcastReachesItsNetworkAndALocalOneTheIpDevices) {
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08", "01 20 00 06 00 FF"));
    auto heard = Heard();
    heard.erase(heard.find("81 0B 00 0C 01 20 00 06 00 FF 10 08"));
    EXPECT_EQ(heard, (std::multiset<std::string>{
                         "81 0B 00 19 01 08 00 06 01 01 10 00 C4 02 00 02 59 22 01 E0 91 01 22 03 E7",
                         "81 0B 00 19 01 08 00 06 01 02 10 00 C4 02 00 02 5A 22 01 E0 91 01 22 03 E7",
                     }));
    Site.Me().Send(Site.BroadcastAddress(), Broadcast("10 08"));
    heard = Heard();
    heard.erase(heard.find("81 0B 00 08 01 00 10 08"));
    EXPECT_EQ(heard, (std::multiset<std::string>{"81 0B 00 15 01 00 10 00 C4 02 00 04 D2 22 05 C4 91 01 22 03 E7"}));
}

TEST_F(Router, SegmentsAnAnswerOfARoutedDevice) {
    const std::string request = "02 70 05 0C 0C 02 00 01 F5 19 4C";
    for (std::uint32_t i = 10; i < 30; ++i) {
        ObjectConfig object;
        object.Id = {OBJ_ANALOG_VALUE, i};
        Site.Sim().FindDevice(501)->AddObject(object);
    }
    const std::string first = Site.Me().Ask(Site.RouterAddress(), Unicast(request, "01 24 00 05 01 01 FF"));
    EXPECT_EQ(first.substr(12, 33), "01 08 00 05 01 01 3C 05 00 10 0C ");
    EXPECT_EQ(Site.Me().Ask(Site.RouterAddress(), Unicast("40 05 00 01", "01 20 00 05 01 01 FF")).substr(12, 33),
              "01 08 00 05 01 01 3C 05 01 10 0C ");
}

TEST_F(Router, AddressesAreThoseAClientUses) {
    const BACSTAC_ADDRESS local = Site.Sim().AddressOf(0);
    EXPECT_EQ(local.Remote, 0);
    EXPECT_EQ(local.MacLength, 6);
    EXPECT_EQ(local.Mac[0], 127);
    const BACSTAC_ADDRESS remote = Site.Sim().AddressOf(4);
    EXPECT_EQ(Site.Sim().GetDevice(4).Instance(), 602U);
    EXPECT_EQ(remote.Remote, 1);
    EXPECT_EQ(remote.Network, 6);
    EXPECT_EQ(remote.MacLength, 1);
    EXPECT_EQ(remote.Mac[0], 2);
}

} // namespace
} // namespace sim::testing
