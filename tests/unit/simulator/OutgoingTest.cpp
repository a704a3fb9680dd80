// What devices send by themselves, octet by octet: to recipients by address and by device, confirmed and not.
#include "simulator/server/OutgoingRequests.h"
#include "tests/unit/simulator/Site.h"

namespace sim::testing {
namespace {

constexpr unsigned SENDER_HOST = 1;
constexpr BACSTAC_OBJECT_ID INPUT{OBJ_ANALOG_INPUT, 1};

class Outgoing : public ::testing::Test {
protected:
    Outgoing() {
        EXPECT_EQ(m_socket.Open({Block.Ip(SENDER_HOST), Block.Port()}, {}), "");
        Requests.emplace(Origin{&m_socket, 0, 0}, Awaited);
    }
    Requester Me() const { return {{Block.Ip(STATION_HOST), Block.Port()}, 0, {}}; }
    BACSTAC_RECIPIENT ByAddress() const {
        BACSTAC_RECIPIENT recipient{};
        recipient.Choice = 1;
        const bacnet::MacAddress mac = bacnet::ToMac(Me().Link);
        std::copy(mac.Octets().begin(), mac.Octets().end(), recipient.Address.Mac);
        recipient.Address.MacLength = static_cast<std::uint8_t>(mac.Length());
        return recipient;
    }
    static BACSTAC_RECIPIENT ByDevice(std::uint32_t instance) {
        BACSTAC_RECIPIENT recipient{};
        recipient.Device = {OBJ_DEVICE, instance};
        return recipient;
    }
    void Send(const BACSTAC_RECIPIENT& to, bool confirmed, std::int64_t nowMs) {
        Requests->Send(Out, {to, confirmed, static_cast<std::uint8_t>(confirmed ? 2 : 3), "\x09\x05"}, nowMs);
        Out.Flush();
    }
    // What comes at each of those times; a line each, without the header of the link.
    std::vector<std::string> At(std::initializer_list<std::int64_t> times) {
        std::vector<std::string> lines;
        for (const std::int64_t nowMs : times) {
            Requests->OnTime(Out, nowMs);
            Out.Flush();
            lines.push_back(Next());
        }
        return lines;
    }
    std::string Next() {
        const Octets frame = Mine.Receive(Station::SHORT_MS);
        return frame.empty() ? "nothing" : ToHex(std::span(frame).subspan(4));
    }

    testing_support::LoopbackBlock Block;
    std::atomic<unsigned> Awaited = 0;
    FrameSender Out{{Block.BROADCAST_IP, Block.Port()}};
    std::optional<OutgoingRequests> Requests;
    Station Mine{bacnet::BipAddress{Block.Ip(STATION_HOST), Block.Port()}};

private:
    bacnet::UdpSocket m_socket;
};

TEST_F(Outgoing, AnUnconfirmedRequestGoesOnce) {
    Send(ByAddress(), false, 0);
    EXPECT_EQ(Next(), "01 00 10 03 09 05");
    EXPECT_EQ(At({3000}), (std::vector<std::string>{"nothing"}));
}

TEST_F(Outgoing, AConfirmedRequestIsRepeatedUntilItIsGivenUp) {
    Send(ByAddress(), true, 0);
    const std::string request = "01 00 00 05 00 02 09 05";
    EXPECT_EQ(Next(), request);
    EXPECT_EQ(At({2999, 3000, 6000, 9000, 12000, 15000}),
              (std::vector<std::string>{"nothing", request, request, request, "nothing", "nothing"}));
}

TEST_F(Outgoing, AnAnswerEndsTheRepetitionOfItsRequest) {
    Send(ByAddress(), true, 0);
    Send(ByAddress(), true, 0);
    EXPECT_EQ(Next(), "01 00 00 05 00 02 09 05");
    EXPECT_EQ(Next(), "01 00 00 05 01 02 09 05");
    bacnet::Apdu answer;
    answer.Type = bacnet::PduType::simple_ack;
    answer.Service = 2;
    Requests->OnAnswer(Me(), answer);
    EXPECT_EQ(At({3000}), (std::vector<std::string>{"01 00 00 05 01 02 09 05"}));
    Requester stranger = Me();
    ++stranger.Link.Port;
    answer.InvokeId = 1;
    Requests->OnAnswer(stranger, answer);
    EXPECT_EQ(At({6000}), (std::vector<std::string>{"01 00 00 05 01 02 09 05"}));
}

TEST_F(Outgoing, ADeviceIsLookedForFirst) {
    Station everybody({Block.BROADCAST_IP, Block.Port()}, true);
    Send(ByDevice(77), false, 0);
    EXPECT_EQ(ToHex(everybody.Receive()), "81 0B 00 10 01 20 FF FF 00 FF 10 08 09 4D 19 4D");
    EXPECT_TRUE(Requests->Awaits());
    EXPECT_EQ(Awaited, 1U);
    EXPECT_EQ(At({100}), (std::vector<std::string>{"nothing"}));
    Requests->OnIAm(77, Me());
    EXPECT_EQ(At({200}), (std::vector<std::string>{"01 00 10 03 09 05"}));
    EXPECT_EQ(Awaited, 0U);
    Send(ByDevice(77), true, 300); // is known from now on
    EXPECT_EQ(Next(), "01 00 00 05 01 02 09 05");
}

TEST_F(Outgoing, ADeviceThatIsNotFoundIsGivenUp) {
    Send(ByDevice(77), true, 0);
    At({3000, 6000, 9000});
    EXPECT_EQ(Awaited, 1U);
    At({12000});
    EXPECT_EQ(Awaited, 0U);
    Requests->OnIAm(77, Me());
    EXPECT_EQ(At({15000}), (std::vector<std::string>{"nothing"}));
}

TEST_F(Outgoing, StationsBehindARouterAreReachedTheWayTheyCame) {
    BACSTAC_RECIPIENT remote{};
    remote.Choice = 1;
    remote.Address = {1, 0, 9, {0x21}, 1};
    Requests->LearnRoute({Me().Link, 9, {}});
    Send(remote, false, 0);
    EXPECT_EQ(Next(), "01 20 00 09 01 21 FF 10 03 09 05");
}

TEST_F(Outgoing, ABroadcastGoesUnconfirmedOrNotAtAll) {
    Station everybody({Block.BROADCAST_IP, Block.Port()}, true);
    BACSTAC_RECIPIENT all{};
    all.Choice = 1;
    Send(all, true, 0);
    Send(all, false, 0);
    EXPECT_EQ(ToHex(everybody.Receive()), "81 0B 00 0A 01 00 10 03 09 05");
}

// ---- a device that serves

class Alarming : public ::testing::Test {
protected:
    void SetUp() override {
        DeviceConfig device = SmallDevice(Site.Block);
        device.Objects[0].IntrinsicReporting = true;
        device.Objects[0].Properties.emplace_back(PROP_TIME_DELAY, Value::Unsigned(0));
        ObjectConfig notifications;
        notifications.Id = {OBJ_NOTIFICATION_CLASS, 1};
        // All days and times, device 77, process 5, confirmed, all transitions.
        const Value recipients[] = {
            Value::Encoded(Hex("82 01 FE B4 00 00 00 00 B4 17 3B 3B 63 0C 02 00 00 4D 21 05 11 82 05 E0"))};
        notifications.Properties.emplace_back(PROP_RECIPIENT_LIST, Value::List(recipients));
        device.Objects.push_back(notifications);
        Site.Config.Devices = {device};
        Site.Start();
    }
    // Takes the input out of service and writes 61 to it.
    void RaiseByWriting() {
        Site.Me().Send(Site.DeviceAddress(), Unicast("00 05 01 0F 0C 00 00 00 01 19 51 3E 11 3F"));
        EXPECT_EQ(Site.NextApdu(), "20 01 0F");
        Site.Me().Send(Site.DeviceAddress(), Unicast("00 05 02 0F 0C 00 00 00 01 19 55 3E 44 42 74 00 00 3F"));
        EXPECT_EQ(Site.NextApdu(), "20 02 0F");
    }

    RunningSite Site;
};

TEST_F(Alarming, AWrittenValueRaisesTellsAndIsAcknowledged) {
    RaiseByWriting();
    EXPECT_EQ(Site.Ask("00 05 03 03"), "30 03 03 C4 00 00 00 01 91 03 82 05 60"); // alarm summary
    // The recipient announces itself, and gets the notification.
    Site.Me().Send(Site.DeviceAddress(), Unicast("10 00 C4 02 00 00 4D 22 05 C4 91 00 21 01"));
    const std::string told = Site.NextApdu();
    EXPECT_EQ(told.substr(0, 47), "00 05 00 02 09 05 1C 02 00 04 D2 2C 00 00 00 01");
    EXPECT_NE(told.find("CE 5E 0C 42 74 00 00 1A 04 90"), std::string::npos) << told; // in alarm, out of service
    Site.Me().Send(Site.DeviceAddress(), Unicast("20 00 02"));

    // AcknowledgeAlarm of the transition to high limit with its time stamp.
    const Octets stamp = [this] {
        const Value stamps = Site.FirstDevice().GetProperty(INPUT, PROP_EVENT_TIME_STAMPS).value();
        const auto element = stamps.Element(0);
        return Octets(element.begin(), element.end());
    }();
    const std::string head = "00 05 04 00 09 05 1C 00 00 00 01 29 03 3E ";
    const std::string tail = " 3F 4D 03 00 6D 65 5E 0C 06 00 00 00 5F";
    EXPECT_EQ(Site.Ask(head + "2E A4 7E 01 01 FF B4 00 00 00 00 2F" + tail), "50 04 00 91 05 91 0E");
    EXPECT_EQ(Site.Ask("00 05 05 00 09 05 1C 00 00 00 01 29 04 3E " + ToHex(stamp) + tail), "50 05 00 91 05 91 49");
    EXPECT_EQ(Site.Ask("00 05 06 00 09 05 1C 00 00 00 63 29 03 3E " + ToHex(stamp) + tail), "50 06 00 91 01 91 1F");
    EXPECT_EQ(Site.Ask("00 05 07" + head.substr(8) + ToHex(stamp) + tail), "20 07 00");
    EXPECT_EQ(Site.Ask("00 05 08 03").substr(0, 8), "00 05 01"); // the acknowledgement is told, too
    EXPECT_EQ(Site.NextApdu(), "30 08 03 C4 00 00 00 01 91 03 82 05 E0");
}

TEST_F(Alarming, ADeviceThatMayNotInitiateTellsNobody) {
    EXPECT_EQ(Site.Ask("00 05 01 11 19 02"), "20 01 11"); // disable initiation
    RaiseByWriting();
    Site.Me().Send(Site.DeviceAddress(), Unicast("10 00 C4 02 00 00 4D 22 05 C4 91 00 21 01"));
    EXPECT_EQ(Site.NextApdu(300), "nothing");
}

} // namespace
} // namespace sim::testing
