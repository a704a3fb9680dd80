#include "platform/stack/network/NetworkLayer.h"
#include "tests/unit/stack/net/FakeLink.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

using namespace bacnet;
using fakes::Mac;

namespace {

BACSTAC_ADDRESS Address(bool remote, std::uint16_t network, std::initializer_list<std::uint8_t> mac) {
    BACSTAC_ADDRESS address{};
    address.Remote = remote ? 1 : 0;
    address.Network = network;
    address.MacLength = static_cast<std::uint8_t>(mac.size());
    std::copy(mac.begin(), mac.end(), address.Mac);
    return address;
}

const MacAddress DEVICE = Mac({10, 0, 0, 5, 0xBA, 0xC0});
const MacAddress ROUTER = Mac({10, 0, 0, 1, 0xBA, 0xC0});
const MacAddress OTHER_ROUTER = Mac({10, 0, 0, 2, 0xBA, 0xC0});

class Networking : public testing::Test, public IApduUser {
protected:
    void SetUp() override {
        m_layer.AddPort(m_first);
        m_layer.AddPort(m_second, 20);
        m_layer.SetUser(this);
    }
    void OnApdu(const ApduIndication& indication) override {
        m_indications.push_back(indication);
        m_apdus.emplace_back(indication.Apdu.begin(), indication.Apdu.end());
    }
    void Receive(std::uint8_t port, const MacAddress& from, const frames::Octets& npdu, bool broadcast = false) {
        m_layer.OnNpdu(port, {from, broadcast, npdu});
    }

    fakes::FakeClock m_clock;
    fakes::FakeLink m_first{m_clock};
    fakes::FakeLink m_second{m_clock};
    NetworkLayer m_layer;
    std::vector<ApduIndication> m_indications;
    std::vector<frames::Octets> m_apdus;
};

TEST_F(Networking, LocalAddressesAreOnThePortWithTheirNumber) {
    Station station;
    ASSERT_EQ(m_layer.Resolve(Address(false, 0, {10, 0, 0, 5, 0xBA, 0xC0}), station), NetworkLayer::Route::found);
    EXPECT_EQ(station, (Station{0, 0, DEVICE, {}}));
    ASSERT_EQ(m_layer.Resolve(Address(false, 20, {10, 0, 0, 5, 0xBA, 0xC0}), station), NetworkLayer::Route::found);
    EXPECT_EQ(station.Port, 1);
    ASSERT_EQ(m_layer.Resolve(Address(true, 20, {10, 0, 0, 5, 0xBA, 0xC0}), station), NetworkLayer::Route::found);
    EXPECT_EQ(station, (Station{1, 0, DEVICE, {}})) << "a remote address on a connected network is local there";
}

TEST_F(Networking, WhatIsNoStationIsNotResolved) {
    Station station;
    for (const BACSTAC_ADDRESS& address :
         {Address(false, 0, {}), Address(false, 0, {7}), Address(false, 99, {10, 0, 0, 5, 0xBA, 0xC0}),
          Address(true, 0, {7}), Address(true, BACSTAC_ALL_NETWORKS, {7}), Address(true, 5, {})})
        EXPECT_EQ(m_layer.Resolve(address, station), NetworkLayer::Route::invalid);
    BACSTAC_ADDRESS tooLong = Address(true, 5, {1, 2, 3, 4, 5, 6, 7});
    tooLong.MacLength = 8;
    EXPECT_EQ(m_layer.Resolve(tooLong, station), NetworkLayer::Route::invalid);
}

TEST_F(Networking, RoutersAreLearntFromTheirAnnouncement) {
    Station station;
    EXPECT_EQ(m_layer.Resolve(Address(true, 2001, {7}), station), NetworkLayer::Route::unknown_router);
    Receive(0, ROUTER, frames::I_AM_ROUTER, true);
    for (const std::uint16_t network : {std::uint16_t{2001}, std::uint16_t{2002}}) {
        ASSERT_EQ(m_layer.Resolve(Address(true, network, {7}), station), NetworkLayer::Route::found);
        EXPECT_EQ(station, (Station{0, network, ROUTER, Mac({7})}));
    }
    EXPECT_EQ(m_layer.Routers().size(), 2U);
    Receive(1, OTHER_ROUTER, frames::I_AM_ROUTER, true);
    ASSERT_EQ(m_layer.Resolve(Address(true, 2001, {7}), station), NetworkLayer::Route::found);
    EXPECT_EQ(station.Mac, OTHER_ROUTER) << "the latest announcement holds";
    EXPECT_EQ(station.Port, 1);
}

TEST_F(Networking, ARouterThatNeverAnnouncesItselfIsLearntFromWhatItForwards) {
    // NPDU from station 3 of network 77; unconfirmed request I-Am.
    Receive(0, ROUTER, {0x01, 0x08, 0x00, 0x4D, 0x01, 0x03, 0x10, 0x00}, true);
    Station station;
    ASSERT_EQ(m_layer.Resolve(Address(true, 77, {3}), station), NetworkLayer::Route::found);
    EXPECT_EQ(station.Mac, ROUTER);
    ASSERT_EQ(m_indications.size(), 1U);
    EXPECT_EQ(m_indications[0].Source, (Station{0, 77, ROUTER, Mac({3})}));
    BACSTAC_ADDRESS source{};
    ASSERT_TRUE(m_layer.ToAddress(m_indications[0].Source, source));
    EXPECT_EQ(source, Address(true, 77, {3}));
}

TEST_F(Networking, AConnectedNetworkNeverGetsARouter) {
    // I-Am-Router-To-Network: 20, which is the second port's own, 0 and 65535, which are no networks.
    Receive(0, ROUTER, {0x01, 0x80, 0x01, 0x00, 0x14, 0x00, 0x00, 0xFF, 0xFF});
    EXPECT_TRUE(m_layer.Routers().empty());
}

TEST_F(Networking, ARouterThatLostTheNetworkIsForgotten) {
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    // Reject-Message-To-Network, not connected, network 2001; from one who is not the router, then from the router.
    const frames::Octets reject{0x01, 0x80, 0x03, 0x01, 0x07, 0xD1};
    Receive(0, OTHER_ROUTER, reject);
    EXPECT_EQ(m_layer.Routers().size(), 2U);
    Receive(0, ROUTER, reject);
    ASSERT_EQ(m_layer.Routers().size(), 1U);
    EXPECT_EQ(m_layer.Routers()[0].Network, 2002);
    // Busy is no loss.
    Receive(0, ROUTER, {0x01, 0x80, 0x03, 0x02, 0x07, 0xD2});
    EXPECT_EQ(m_layer.Routers().size(), 1U);
}

TEST_F(Networking, MessagesForOtherNetworksAreNotTaken) {
    // For network 5 station 1; for network 20, which is the second port's; for all networks.
    Receive(0, DEVICE, {0x01, 0x20, 0x00, 0x05, 0x01, 0x01, 0xFF, 0x10, 0x08});
    EXPECT_TRUE(m_apdus.empty());
    Receive(1, DEVICE, {0x01, 0x20, 0x00, 0x14, 0x00, 0xFF, 0x10, 0x08});
    Receive(0, DEVICE, {0x01, 0x20, 0xFF, 0xFF, 0x00, 0xFF, 0x10, 0x08});
    ASSERT_EQ(m_apdus.size(), 2U);
    EXPECT_TRUE(m_indications[0].Broadcast);
    EXPECT_TRUE(m_indications[1].Broadcast);
    EXPECT_EQ(m_layer.Counters().NotForUs.Value(), 1U);
}

TEST_F(Networking, MalformedMessagesAreCountedAndLeaveNoTrace) {
    frames::CutAtEveryOctet(frames::Octets{0x01, 0x08, 0x00, 0x4D, 0x01, 0x03}, [this](auto cut) {
        Receive(0, ROUTER, {cut.begin(), cut.end()});
    });
    EXPECT_EQ(m_layer.Counters().Malformed.Value(), 6U);
    EXPECT_TRUE(m_layer.Routers().empty());
    EXPECT_TRUE(m_apdus.empty());
}

TEST_F(Networking, BroadcastsGoWhereTheyAreMeantTo) {
    const frames::Octets whoIs{0x10, 0x08};
    const auto send = [&](const BACSTAC_ADDRESS& to) {
        m_first.Frames.clear();
        m_second.Frames.clear();
        Frame frame;
        frame.Append(whoIs);
        return m_layer.SendBroadcast(to, frame);
    };
    ASSERT_TRUE(send(Address(false, 0, {})));
    ASSERT_EQ(m_first.Frames.size(), 1U);
    ASSERT_EQ(m_second.Frames.size(), 1U);
    EXPECT_EQ(m_first.Frames[0].Npdu, (frames::Octets{0x01, 0x00, 0x10, 0x08}));
    EXPECT_TRUE(m_first.Frames[0].To.Empty());

    ASSERT_TRUE(send(Address(true, BACSTAC_ALL_NETWORKS, {})));
    ASSERT_EQ(m_first.Frames.size(), 1U);
    ASSERT_EQ(m_second.Frames.size(), 1U);
    EXPECT_EQ(m_second.Frames[0].Npdu, (frames::Octets{0x01, 0x20, 0xFF, 0xFF, 0x00, 0xFF, 0x10, 0x08}));

    ASSERT_TRUE(send(Address(true, 20, {})));
    EXPECT_TRUE(m_first.Frames.empty());
    ASSERT_EQ(m_second.Frames.size(), 1U);
    EXPECT_EQ(m_second.Frames[0].Npdu, (frames::Octets{0x01, 0x00, 0x10, 0x08}));

    ASSERT_TRUE(send(Address(true, 5, {})));
    ASSERT_EQ(m_first.Frames.size(), 1U) << "no router is known: the one there is will hear it";
    EXPECT_EQ(m_first.Frames[0].Npdu, (frames::Octets{0x01, 0x20, 0x00, 0x05, 0x00, 0xFF, 0x10, 0x08}));
    EXPECT_EQ(m_second.Frames.size(), 1U);

    Receive(0, ROUTER, {0x01, 0x80, 0x01, 0x00, 0x05});
    ASSERT_TRUE(send(Address(true, 5, {})));
    ASSERT_EQ(m_first.Frames.size(), 1U);
    EXPECT_EQ(m_first.Frames[0].To, ROUTER);
    EXPECT_TRUE(m_second.Frames.empty());
}

TEST_F(Networking, ARemoteStationIsSentToThroughItsRouter) {
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    Station station;
    ASSERT_EQ(m_layer.Resolve(Address(true, 2001, {7}), station), NetworkLayer::Route::found);
    Frame frame;
    frame.Append(frames::Octets{0x42});
    ASSERT_TRUE(m_layer.Send(station, frame, true));
    ASSERT_EQ(m_first.Frames.size(), 1U);
    EXPECT_EQ(m_first.Frames[0].To, ROUTER);
    EXPECT_EQ(m_first.Frames[0].Npdu, (frames::Octets{0x01, 0x24, 0x07, 0xD1, 0x01, 0x07, 0xFF, 0x42}));
    EXPECT_EQ(m_layer.MaxApdu(station), 1497U - 7U);
}

TEST_F(Networking, WhoIsRouterIsSentOnceASecond) {
    m_layer.AskForRouter(5, 10000);
    m_layer.AskForRouter(5, 10999);
    m_layer.AskForRouter(6, 10999);
    ASSERT_EQ(m_first.Frames.size(), 2U);
    EXPECT_EQ(m_first.Frames[0].Npdu, (frames::Octets{0x01, 0x80, 0x00, 0x00, 0x05}));
    EXPECT_EQ(m_first.Frames[1].Npdu, (frames::Octets{0x01, 0x80, 0x00, 0x00, 0x06}));
    EXPECT_EQ(m_second.Frames.size(), 2U);
    m_layer.AskForRouter(5, 11000);
    EXPECT_EQ(m_first.Frames.size(), 3U);
    m_layer.AskForRouter(0, 20000);
    m_layer.AskForRouter(GLOBAL_BROADCAST, 20000);
    EXPECT_EQ(m_first.Frames.size(), 3U);
}

TEST_F(Networking, WaitingForARouteEndsWithTheAnnouncement) {
    EXPECT_FALSE(m_layer.WaitForRoute(2001, 1));
    std::thread announcer([this] { Receive(0, ROUTER, frames::I_AM_ROUTER); });
    EXPECT_TRUE(m_layer.WaitForRoute(2001, 60000));
    announcer.join();
}

TEST_F(Networking, AnAddressTooLongForTheContractIsNotMadeUp) {
    BACSTAC_ADDRESS address{};
    EXPECT_FALSE(m_layer.ToAddress({0, 5, ROUTER, Mac({1, 2, 3, 4, 5, 6, 7, 8})}, address));
    EXPECT_TRUE(m_layer.ToAddress({1, 0, DEVICE, {}}, address));
    EXPECT_EQ(address, Address(false, 20, {10, 0, 0, 5, 0xBA, 0xC0}));
}

} // namespace
