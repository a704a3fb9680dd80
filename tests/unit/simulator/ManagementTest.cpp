// What clients do to a simulated device as a whole: communication, restarts, the clock, Who-Has.
#include "tests/unit/simulator/Site.h"

#include "simulator/model/Standard.h"

#include <atomic>

namespace sim::testing {
namespace {

constexpr LocalTime START = 178'000'000'000; // 2026-05-28 20:26:40
constexpr LocalTime MINUTE = 6000;
constexpr BACSTAC_OBJECT_ID DEVICE{OBJ_DEVICE, 1234};

const std::string READ = "00 05 01 0C 0C 00 00 00 01 19 1C"; // an unknown property, so that the answer is short
const std::string ANSWER = "50 01 0C 91 02 91 20";

class Management : public ::testing::Test {
protected:
    void SetUp() override {
        Site.Config.Clock = [this] { return m_now.load(); };
        DeviceConfig device = SmallDevice(Site.Block);
        device.Password = "secret";
        device.RestartMs = 80;
        ObjectConfig log;
        log.Id = {OBJ_TREND_LOG, 1};
        device.Objects.push_back(log);
        Configure(device);
        Site.Config.Devices.push_back(device);
        Site.Config.IAm = IAmMode::unicast;
        Site.Start();
    }
    virtual void Configure(DeviceConfig&) {}
    void Pass(LocalTime time) { m_now += time; }
    bool Silence(const std::string& apdu) {
        Site.Me().Send(Site.DeviceAddress(), Unicast(apdu));
        return Site.Me().Silence();
    }
    std::string LocalClock() { return Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 39").substr(33); }

    RunningSite Site;

private:
    std::atomic<LocalTime> m_now{START};
};

// [1] value, [2] password "secret"
const std::string DISABLE = "00 05 01 11 19 01 2D 07 00 73 65 63 72 65 74";
const std::string ENABLE = "00 05 01 11 19 00 2D 07 00 73 65 63 72 65 74";

TEST_F(Management, ADisabledDeviceAnswersNothingUntilItIsEnabled) {
    EXPECT_EQ(Site.Ask(DISABLE), "20 01 11");
    EXPECT_EQ(Site.FirstDevice().CommunicationState(), Communication::disabled);
    EXPECT_TRUE(Silence(READ));
    EXPECT_TRUE(Silence("10 08")); // Who-Is
    EXPECT_TRUE(Silence("10 07 2C 00 00 00 01"));
    EXPECT_EQ(Site.Ask(ENABLE), "20 01 11");
    EXPECT_EQ(Site.Ask(READ), ANSWER);
}

TEST_F(Management, ADisabledDeviceComesBackByItself) {
    EXPECT_EQ(Site.Ask("00 05 01 11 09 05 19 01 2D 07 00 73 65 63 72 65 74"), "20 01 11"); // 5 minutes
    Pass(5 * MINUTE - 1);
    EXPECT_TRUE(Silence(READ));
    Pass(1);
    EXPECT_EQ(Site.Ask(READ), ANSWER);
}

TEST_F(Management, DisabledInitiationStillAnswers) {
    EXPECT_EQ(Site.Ask("00 05 01 11 19 02 2D 07 00 73 65 63 72 65 74"), "20 01 11");
    EXPECT_EQ(Site.FirstDevice().CommunicationState(), Communication::initiationDisabled);
    EXPECT_EQ(Site.Ask(READ), ANSWER);
    EXPECT_EQ(Site.Ask("10 08"), "10 00 C4 02 00 04 D2 22 05 C4 91 01 22 03 E7");
}

TEST_F(Management, WantsThePassword) {
    EXPECT_EQ(Site.Ask("00 05 01 11 19 01 2D 07 00 73 65 63 72 65 78"), "50 01 11 91 04 91 1A");
    EXPECT_EQ(Site.Ask("00 05 01 11 19 01"), "50 01 11 91 04 91 1A");
    EXPECT_EQ(Site.Ask("00 05 01 14 09 00"), "50 01 14 91 04 91 1A");
    EXPECT_EQ(Site.Ask("00 05 01 11 19 03 2D 07 00 73 65 63 72 65 74"), "60 01 08");
    EXPECT_EQ(Site.Ask("00 05 01 11"), "60 01 05");
    EXPECT_EQ(Site.Ask(READ), ANSWER);
}

TEST_F(Management, ARestartTakesItsTimeAndEndsWithAnIAm) {
    Station all(Site.BroadcastAddress(), true);
    EXPECT_EQ(Site.Ask(DISABLE), "20 01 11");
    EXPECT_EQ(Site.Ask("00 05 01 14 09 01 1D 07 00 73 65 63 72 65 74"), "20 01 14"); // warmstart
    EXPECT_TRUE(Silence(READ));
    EXPECT_EQ(all.ReceiveHex(), "81 0B 00 15 01 00 10 00 C4 02 00 04 D2 22 05 C4 91 01 22 03 E7");
    EXPECT_EQ(Site.Ask(READ), ANSWER); // communication is enabled again
    EXPECT_EQ(Site.FirstDevice().GetProperty(DEVICE, PROP_LAST_RESTART_REASON), Value::Enumerated(2));
}

TEST_F(Management, StatesThatItDoesNotHaveAreRefused) {
    EXPECT_EQ(Site.Ask("00 05 01 14 09 07 1D 07 00 73 65 63 72 65 74"), "50 01 14 91 05 91 2D");
    EXPECT_EQ(Site.Ask("00 05 01 14 09 08 1D 07 00 73 65 63 72 65 74"), "60 01 08");
    EXPECT_EQ(Site.Ask("00 05 01 14 09 02 1D 07 00 73 65 63 72 65 74"), "50 01 14 91 05 91 2D"); // no backup here
}

TEST_F(Management, ARestartInTheMiddleLosesTheRequest) {
    Site.FirstDevice().SetFault(Fault::Restart(50).After(1).ForTimes(1));
    Station all(Site.BroadcastAddress(), true);
    EXPECT_EQ(Site.Ask(READ), ANSWER);
    EXPECT_TRUE(Silence(READ));
    EXPECT_EQ(all.ReceiveHex().substr(0, 23), "81 0B 00 15 01 00 10 00");
    EXPECT_EQ(Site.Ask(READ), ANSWER);
}

TEST_F(Management, SetsItsClockAndLogsTheChange) {
    EXPECT_EQ(LocalClock(), "B4 14 1A 28 00 3F");
    // Time synchronization: Thursday 28 May 2026, 20:27:40.00
    Site.Me().Send(Site.DeviceAddress(), Unicast("10 06 A4 7E 05 1C 04 B4 14 1B 28 00"));
    EXPECT_EQ(LocalClock(), "B4 14 1B 28 00 3F");
    const auto records = Site.FirstDevice().Records({OBJ_TREND_LOG, 1});
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].Data[0].Kind, BACSTAC_LOG_TIME_CHANGE);
    EXPECT_EQ(records[0].Data[0].Value.TimeChange, 60.0F);
    EXPECT_EQ(records[0].Time, START + MINUTE);
}

TEST_F(Management, SetsItsClockByUtc) {
    // Two hours east of Greenwich, one of them for the summer.
    ASSERT_TRUE(Site.FirstDevice().SetProperty(DEVICE, PROP_UTC_OFFSET, Value::Signed(-60)));
    ASSERT_TRUE(Site.FirstDevice().SetProperty(DEVICE, PROP_DAYLIGHT_SAVINGS_STATUS, Value::Boolean(true)));
    Site.Me().Send(Site.DeviceAddress(), Unicast("10 09 A4 7E 05 1C 04 B4 17 1B 28 00"));
    EXPECT_EQ(LocalClock(), "B4 01 1B 28 00 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 38"), "30 01 0C 0C 02 00 04 D2 19 38 3E A4 7E 05 1D 05 3F");
}

TEST_F(Management, ATimeThatIsNoTimeChangesNothing) {
    Site.Me().Send(Site.DeviceAddress(), Unicast("10 06 A4 FF FF FF FF B4 14 1B 28 00"));
    Site.Me().Send(Site.DeviceAddress(), Unicast("10 06 A4 7E 05 1C"));
    EXPECT_EQ(LocalClock(), "B4 14 1A 28 00 3F");
}

// I-Have: device, object, "Analog Input 1".
const std::string I_HAVE = "10 01 C4 02 00 04 D2 C4 00 00 00 01 75 0F 00 41 6E 61 6C 6F 67 20 49 6E 70 75 74 20 31";

TEST_F(Management, TellsWhoHasAnObject) {
    EXPECT_EQ(Site.Ask("10 07 2C 00 00 00 01"), I_HAVE);
    EXPECT_EQ(Site.Ask("10 07 3D 0F 00 41 6E 61 6C 6F 67 20 49 6E 70 75 74 20 31"), I_HAVE);
    EXPECT_EQ(Site.Ask("10 07 0A 04 D2 1A 04 D2 2C 00 00 00 01"), I_HAVE);
    EXPECT_TRUE(Silence("10 07 0A 04 D3 1A 04 D4 2C 00 00 00 01")); // other devices are meant
    EXPECT_TRUE(Silence("10 07 2C 00 00 00 63"));
    EXPECT_TRUE(Silence("10 07 3D 02 00 41"));
    EXPECT_TRUE(Silence("10 07"));
}

class NewerManagement : public Management {
protected:
    void Configure(DeviceConfig& device) override { device.ProtocolRevision = 20; }
};

TEST_F(NewerManagement, RefusesToBeDisabled) {
    EXPECT_EQ(Site.Ask(DISABLE), "50 01 11 91 05 91 1D");
    EXPECT_EQ(Site.Ask("00 05 01 11 19 02 2D 07 00 73 65 63 72 65 74"), "20 01 11");
}

TEST(ManagementBehindARouter, TakesTimeAndWhoHasFromABroadcast) {
    RunningSite site;
    RouterConfig router;
    router.Ip = site.Block.Ip(ROUTER_HOST);
    NetworkConfig network;
    network.Number = 5;
    DeviceConfig device = SmallDevice(site.Block);
    device.Mac = 9;
    network.Devices.push_back(device);
    router.Networks.push_back(network);
    site.Config.Routers.push_back(router);
    site.Config.IAm = IAmMode::unicast;
    site.Start();
    // DNET 5, broadcast, hop count 255.
    site.Me().Send(site.RouterAddress(), Unicast("10 07 2C 00 00 00 01", "01 20 00 05 00 FF"));
    // From network 5, station 9.
    const Octets answer = site.Me().Receive();
    ASSERT_GT(answer.size(), 4U);
    EXPECT_EQ(ToHex(std::span(answer).subspan(4)), "01 08 00 05 01 09 " + I_HAVE);
}

} // namespace
} // namespace sim::testing
