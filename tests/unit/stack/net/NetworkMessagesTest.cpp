// What routers and others say to a station about networks, and what it makes of that.
#include "platform/stack/network/NetworkLayer.h"
#include "platform/stack/transaction/AsyncCaller.h"
#include "platform/stack/transaction/TransactionLayer.h"
#include "tests/unit/stack/net/FakeLink.h"
#include "tests/unit/stack/net/Frames.h"

#include <gtest/gtest.h>

using namespace bacnet;
using fakes::Mac;

namespace {

BACSTAC_ADDRESS Remote(std::uint16_t network, std::initializer_list<std::uint8_t> mac) {
    BACSTAC_ADDRESS address{};
    address.Remote = 1;
    address.Network = network;
    address.MacLength = static_cast<std::uint8_t>(mac.size());
    std::copy(mac.begin(), mac.end(), address.Mac);
    return address;
}

const MacAddress ROUTER = Mac({10, 0, 0, 1, 0xBA, 0xC0});
const MacAddress OTHER = Mac({10, 0, 0, 2, 0xBA, 0xC0});
const BACSTAC_ADDRESS STATION = Remote(2001, {7});

class NetworkMessages : public testing::Test {
protected:
    void SetUp() override {
        m_layer.AddPort(m_first);
        m_layer.AddPort(m_second, 20);
        m_layer.SetClock([this] { return m_clock.Now(); });
        m_layer.SetReport([this](const std::string& text) { m_reports.push_back(text); });
    }
    void Receive(std::uint8_t port, const MacAddress& from, const frames::Octets& npdu) {
        m_layer.OnNpdu(port, {from, true, npdu});
    }
    NetworkLayer::Route RouteTo(const BACSTAC_ADDRESS& address) const {
        Station station;
        return m_layer.Resolve(address, station);
    }
    std::size_t MaxApdu() const {
        Station station;
        EXPECT_EQ(m_layer.Resolve(STATION, station), NetworkLayer::Route::found);
        return m_layer.MaxApdu(station);
    }
    std::vector<frames::Octets> TakeSent(fakes::FakeLink& link) {
        std::vector<frames::Octets> sent;
        for (const fakes::Sent& frame : link.Frames) {
            EXPECT_TRUE(frame.To.Empty()) << "all of these are broadcasts";
            sent.push_back(frame.Npdu);
        }
        link.Frames.clear();
        return sent;
    }

    fakes::FakeClock m_clock;
    fakes::FakeLink m_first{m_clock};
    fakes::FakeLink m_second{m_clock};
    NetworkLayer m_layer;
    std::vector<std::string> m_reports;
};

using List = std::vector<frames::Octets>;

TEST_F(NetworkMessages, ABusyRouterIsSparedUntilItIsAvailable) {
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    // Router-Busy-To-Network 2001, from one who is not its router, then from its router.
    Receive(0, OTHER, {0x01, 0x80, 0x04, 0x07, 0xD1});
    EXPECT_EQ(RouteTo(STATION), NetworkLayer::Route::found);
    Receive(0, ROUTER, {0x01, 0x80, 0x04, 0x07, 0xD1});
    EXPECT_EQ(RouteTo(STATION), NetworkLayer::Route::busy);
    EXPECT_EQ(RouteTo(Remote(2002, {7})), NetworkLayer::Route::found);
    Receive(0, ROUTER, {0x01, 0x80, 0x05, 0x07, 0xD1});
    EXPECT_EQ(RouteTo(STATION), NetworkLayer::Route::found);
    // Without a list: all that it leads to.
    Receive(0, ROUTER, {0x01, 0x80, 0x04});
    EXPECT_EQ(RouteTo(STATION), NetworkLayer::Route::busy);
    EXPECT_EQ(RouteTo(Remote(2002, {7})), NetworkLayer::Route::busy);
    Receive(0, ROUTER, {0x01, 0x80, 0x05});
    EXPECT_EQ(RouteTo(STATION), NetworkLayer::Route::found);
    EXPECT_EQ(RouteTo(Remote(2002, {7})), NetworkLayer::Route::found);
}

TEST_F(NetworkMessages, BusynessEndsByItself) {
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    // Reject-Message-To-Network says it as well: reason 2.
    Receive(0, ROUTER, {0x01, 0x80, 0x03, 0x02, 0x07, 0xD1});
    m_clock.Advance(NetworkLayer::BUSY_TIME - 1);
    EXPECT_EQ(RouteTo(STATION), NetworkLayer::Route::busy);
    m_clock.Advance(1);
    EXPECT_EQ(RouteTo(STATION), NetworkLayer::Route::found);
    // A router that announces the network is ready for it.
    Receive(0, ROUTER, {0x01, 0x80, 0x04, 0x07, 0xD1});
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    EXPECT_EQ(RouteTo(STATION), NetworkLayer::Route::found);
}

TEST_F(NetworkMessages, ANetworkThatTakesLessIsSentLess) {
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    EXPECT_EQ(MaxApdu(), 1490U);
    const frames::Octets tooLong{0x01, 0x80, 0x03, 0x04, 0x07, 0xD1};
    std::vector<std::size_t> sizes;
    for (int i = 0; i < 6; ++i) {
        Receive(0, ROUTER, tooLong);
        Receive(0, ROUTER, tooLong); // of another message that was under way
        m_clock.Advance(RouterTable::NARROW_MS);
        sizes.push_back(MaxApdu());
    }
    EXPECT_EQ(sizes, (std::vector<std::size_t>{1024, 480, 206, 128, 50, 50}));
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    EXPECT_EQ(MaxApdu(), 50U) << "the same router has the same network behind it";
    Receive(0, OTHER, frames::I_AM_ROUTER);
    EXPECT_EQ(MaxApdu(), 1490U);
    Receive(0, ROUTER, tooLong);
    EXPECT_EQ(MaxApdu(), 1490U) << "not its router any more";
}

TEST_F(NetworkMessages, RoutersTellWhetherTheyHaveAnnouncedThemselves) {
    Receive(0, ROUTER, {0x01, 0x08, 0x07, 0xD1, 0x01, 0x07, 0x10, 0x00}); // forwards from network 2001
    ASSERT_EQ(m_layer.Routers().size(), 1U);
    EXPECT_FALSE(m_layer.Routers()[0].Announced);
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    EXPECT_TRUE(m_layer.Routers()[0].Announced);
    m_layer.AskForRouters();
    EXPECT_EQ(TakeSent(m_first), List({{0x01, 0x80, 0x00}}));
    EXPECT_EQ(TakeSent(m_second), List({{0x01, 0x80, 0x00}}));
}

TEST_F(NetworkMessages, ThePortsNumberIsLearnt) {
    m_layer.AskForNumbers();
    EXPECT_EQ(TakeSent(m_first), List({{0x01, 0x80, 0x12}}));
    EXPECT_EQ(TakeSent(m_second), List({{0x01, 0x80, 0x12}}));
    // It was taken for a network behind a router before.
    Receive(0, ROUTER, {0x01, 0x80, 0x01, 0x00, 0x1E});
    EXPECT_EQ(m_layer.Routers().size(), 1U);
    Receive(0, ROUTER, {0x01, 0x80, 0x13, 0x00, 0x1E, 0x01}); // Network-Number-Is 30, configured
    EXPECT_EQ(m_layer.NumberOf(0).Told, 30);
    EXPECT_EQ(m_layer.NumberOf(0).Configured, 0);
    EXPECT_TRUE(m_layer.Routers().empty());
    Station station;
    ASSERT_EQ(m_layer.Resolve(Remote(30, {10, 0, 0, 5, 0xBA, 0xC0}), station), NetworkLayer::Route::found);
    EXPECT_EQ(station, (Station{0, 0, Mac({10, 0, 0, 5, 0xBA, 0xC0}), {}})) << "it is local";
    BACSTAC_ADDRESS address{};
    ASSERT_TRUE(m_layer.ToAddress(station, address));
    EXPECT_EQ(address.Network, 0) << "local addresses stay as they are";
    Receive(0, ROUTER, {0x01, 0x80, 0x01, 0x00, 0x1E});
    EXPECT_TRUE(m_layer.Routers().empty());
    // What somebody has merely learnt does not change it; what somebody else is configured to does.
    Receive(0, OTHER, {0x01, 0x80, 0x13, 0x00, 0x1F, 0x00});
    EXPECT_EQ(m_layer.NumberOf(0).Told, 30);
    Receive(0, OTHER, {0x01, 0x80, 0x13, 0x00, 0x1F, 0x01});
    EXPECT_EQ(m_layer.NumberOf(0).Told, 31);
    EXPECT_TRUE(m_reports.empty());
}

TEST_F(NetworkMessages, NumbersOfOtherNetworksAndDamagedOnesAreNotTaken) {
    Receive(0, ROUTER, {0x01, 0x88, 0x07, 0xD1, 0x01, 0x07, 0x13, 0x00, 0x1E, 0x01}); // with a source network
    Receive(0, ROUTER, {0x01, 0xA0, 0xFF, 0xFF, 0x00, 0xFF, 0x13, 0x00, 0x1E, 0x01}); // to all networks
    Receive(0, ROUTER, {0x01, 0x80, 0x13, 0x00, 0x00, 0x01});
    Receive(0, ROUTER, {0x01, 0x80, 0x13, 0xFF, 0xFF, 0x01});
    const frames::Octets whole{0x01, 0x80, 0x13, 0x00, 0x1E, 0x01};
    frames::CutAtEveryOctet(whole, [this](std::span<const std::uint8_t> cut) {
        Receive(0, ROUTER, {cut.begin(), cut.end()});
    });
    EXPECT_EQ(m_layer.NumberOf(0).Told, 0);
    Receive(0, ROUTER, whole);
    EXPECT_EQ(m_layer.NumberOf(0).Told, 30);
}

TEST_F(NetworkMessages, AConfiguredNumberIsToldToWhoAsks) {
    const frames::Octets ask{0x01, 0x80, 0x12};
    Receive(0, OTHER, ask);
    EXPECT_TRUE(m_first.Frames.empty()) << "it has none";
    Receive(1, OTHER, ask);
    EXPECT_EQ(TakeSent(m_second), List({{0x01, 0x80, 0x13, 0x00, 0x14, 0x01}}));
    Receive(1, OTHER, ask);
    EXPECT_TRUE(m_second.Frames.empty()) << "once a second";
    m_clock.Advance(1000);
    Receive(1, OTHER, {0x01, 0x88, 0x07, 0xD1, 0x01, 0x07, 0x12});
    EXPECT_TRUE(m_second.Frames.empty()) << "asked from another network";
    Receive(1, OTHER, ask);
    EXPECT_EQ(TakeSent(m_second).size(), 1U);
}

TEST_F(NetworkMessages, AConfiguredNumberThatOthersContradictIsReportedAndNotSpread) {
    Receive(1, ROUTER, {0x01, 0x80, 0x13, 0x00, 0x1E, 0x00});
    EXPECT_TRUE(m_reports.empty()) << "merely learnt";
    for (int i = 0; i < 3; ++i)
        Receive(1, ROUTER, {0x01, 0x80, 0x13, 0x00, 0x1E, 0x01});
    EXPECT_EQ(m_reports, std::vector<std::string>{
                             "The network that is configured as number 20 is number 30 by what 10.0.0.1:47808 says"});
    EXPECT_EQ(m_layer.NumberOf(1).Configured, 20);
    Receive(1, OTHER, {0x01, 0x80, 0x12});
    EXPECT_TRUE(m_second.Frames.empty());
}

TEST_F(NetworkMessages, HostileMessagesOfEveryTypeLeaveTheTableBounded) {
    Receive(0, ROUTER, frames::I_AM_ROUTER);
    std::uint32_t state = 1;
    for (int type = 0; type < 256; ++type)
        for (std::size_t length = 0; length < 12; ++length) {
            frames::Octets npdu{0x01, 0x80, static_cast<std::uint8_t>(type)};
            for (std::size_t i = 0; i < length; ++i) {
                state = state * 1664525 + 1013904223;
                npdu.push_back(static_cast<std::uint8_t>(state >> 24));
            }
            Receive(0, OTHER, npdu);
        }
    // All networks there can be, announced by one station.
    for (std::uint32_t first = 0; first < 65536; first += 512) {
        frames::Octets npdu{0x01, 0x80, 0x01};
        for (std::uint32_t network = first; network < first + 512; ++network) {
            npdu.push_back(static_cast<std::uint8_t>(network >> 8));
            npdu.push_back(static_cast<std::uint8_t>(network));
        }
        Receive(0, OTHER, npdu);
    }
    EXPECT_LE(m_layer.Routers().size(), 65534U);
    EXPECT_EQ(RouteTo(Remote(20, {10, 0, 0, 5, 0xBA, 0xC0})), NetworkLayer::Route::found) << "local all the same";
}

// Calls to a station behind a router that is busy, over one scripted link.
class CallsBehindABusyRouter : public testing::Test {
protected:
    CallsBehindABusyRouter() {
        m_layer.AddPort(m_link);
        m_settings.BackgroundThread = false;
        m_settings.RouterWaitMs = 3000;
        m_transactions.emplace(m_layer, m_settings, nullptr, m_clock);
        m_link.OnSend = [this](const fakes::Sent& sent) {
            const std::uint8_t id = sent.Npdu.at(9); // behind NPCI of 7 octets
            m_link.Deliver(ROUTER, {0x01, 0x08, 0x07, 0xD1, 0x01, 0x07, 0x20, id, 0x0F});
        };
        m_layer.OnNpdu(0, {ROUTER, true, frames::I_AM_ROUTER});
        m_layer.OnNpdu(0, {ROUTER, true, frames::Octets{0x01, 0x80, 0x04}});
    }
    // Of one who does not block.
    Millis Submit() {
        struct Request final : AsyncRequest {
            void OnDone(const CallResult& result) override { EXPECT_EQ(result.How, Outcome::simple_ack); }
        } request;
        const Millis begun = m_clock.Now();
        AsyncCaller caller(*m_transactions);
        request.Destination = STATION;
        request.Service = 15;
        request.Parameters = PARAMETERS;
        caller.Submit(request);
        while (caller.Outstanding() != 0)
            caller.Poll(100);
        return m_link.Frames.empty() ? -1 : m_link.Frames.front().At - begun;
    }
    // When the request was sent, milliseconds after the call; -1 when it was not.
    Millis Call() {
        const Millis begun = m_clock.Now();
        AnswerBuffer answer;
        const CallResult result = m_transactions->Call(STATION, 15, PARAMETERS, answer);
        EXPECT_EQ(result.How, Outcome::simple_ack);
        return m_link.Frames.empty() ? -1 : m_link.Frames.front().At - begun;
    }

    inline static const frames::Octets PARAMETERS{0x0C};

    fakes::FakeClock m_clock;
    fakes::FakeLink m_link{m_clock};
    NetworkLayer m_layer;
    TransactionSettings m_settings;
    std::optional<TransactionLayer> m_transactions;
};

TEST_F(CallsBehindABusyRouter, WaitUntilItIsAvailable) {
    m_link.Deliver(ROUTER, {0x01, 0x80, 0x05}, 500);
    EXPECT_EQ(Call(), 500);
}

TEST_F(CallsBehindABusyRouter, AreMadeAllTheSameAfterAWhile) {
    EXPECT_EQ(Call(), 3000);
    EXPECT_EQ(m_link.Frames.size(), 1U) << "nobody was asked for another router";
}

TEST_F(CallsBehindABusyRouter, WaitWithoutBlockingToo) {
    m_link.Deliver(ROUTER, {0x01, 0x80, 0x05}, 500);
    EXPECT_EQ(Submit(), 500);
}

TEST_F(CallsBehindABusyRouter, AreMadeAllTheSameWithoutBlockingToo) {
    EXPECT_EQ(Submit(), 3000);
    EXPECT_EQ(m_link.Frames.size(), 1U);
}

} // namespace
