// How simulated devices misbehave.
#include "tests/unit/simulator/Site.h"

#include <chrono>

namespace sim::testing {
namespace {

using bacnet::ConfirmedService;

const std::string REQUEST = "00 05 07 0C 0C 00 00 00 01 19 55";
const std::string ANSWER = "30 07 0C 0C 00 00 00 01 19 55 3E 44 41 A2 00 00 3F";

class Faulty : public ::testing::Test {
protected:
    void SetUp() override {
        Site.Config.Devices.push_back(SmallDevice(Site.Block));
        Site.Start();
    }
    Device& Dut() { return Site.FirstDevice(); }
    void Send() { Site.Me().Send(Site.DeviceAddress(), Unicast(REQUEST)); }
    std::string Ask() { return Site.Ask(REQUEST); }
    bool Silent() {
        Send();
        return Site.Me().Silence();
    }
    RunningSite Site;
};

TEST_F(Faulty, SilentDeviceAnswersNothing) {
    Dut().SetFault(Fault::Silent());
    EXPECT_TRUE(Silent());
    Site.Me().Send(Site.DeviceAddress(), Unicast("10 08", "01 00")); // Who-Is
    EXPECT_TRUE(Site.Me().Silence());
    EXPECT_EQ(Dut().GetStats()[Counter::withheld], 2U);
    Dut().ClearFaults();
    EXPECT_EQ(Ask(), ANSWER);
}

TEST_F(Faulty, MayFallSilentAfterSomeRequests) {
    Dut().SetFault(Fault::Silent().After(2));
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_TRUE(Silent());
    EXPECT_TRUE(Silent());
}

TEST_F(Faulty, MayRecoverByItself) {
    Dut().SetFault(Fault::Silent().ForTimes(1));
    EXPECT_TRUE(Silent());
    EXPECT_EQ(Ask(), ANSWER);
}

TEST_F(Faulty, SlowDeviceAnswersLater) {
    Dut().SetFault(Fault::Slow(80));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(79));
    // Others are not held up by the one that waits.
    Dut().SetFault(Fault::Slow(80).ForTimes(1));
    Send();
    EXPECT_EQ(Site.Ask("00 05 08 0C 0C 00 00 00 01 19 55").substr(0, 5), "30 08");
    EXPECT_EQ(Site.NextApdu(), ANSWER);
}

TEST_F(Faulty, DropsEveryNthAnswer) {
    Dut().SetFault(Fault::DropEvery(3));
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_TRUE(Silent());
    EXPECT_EQ(Ask(), ANSWER);
}

TEST_F(Faulty, AnswersErrorRejectAndAbort) {
    Dut().SetFault(Fault::Error(1, 31));
    EXPECT_EQ(Ask(), "50 07 0C 91 01 91 1F");
    Dut().SetFault(Fault::Reject(9));
    EXPECT_EQ(Ask(), "60 07 09");
    Dut().SetFault(Fault::Abort(4));
    EXPECT_EQ(Ask(), "71 07 04");
}

TEST_F(Faulty, AFaultMayConcernOneServiceOrOneObject) {
    Dut().SetFault(Fault::Error(1, 31).OnlyFor(ConfirmedService::readRange));
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_EQ(Site.Ask("00 05 01 1A 0C 00 00 00 01 19 55"), "50 01 1A 91 01 91 1F");
    Dut().SetFault(Fault::Reject(1).OnlyOn({OBJ_MULTI_STATE_VALUE, 2}));
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 04 C0 00 02 19 55"), "60 01 01");
}

TEST_F(Faulty, AnswersTwice) {
    Dut().SetFault(Fault::Duplicate());
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_EQ(Site.NextApdu(), ANSWER);
    EXPECT_TRUE(Site.Me().Silence());
}

TEST_F(Faulty, AnswersLateAfterARetry) {
    Dut().SetFault(Fault::LateAfterRetry().ForTimes(1));
    EXPECT_TRUE(Silent());
    EXPECT_EQ(Site.Ask("00 05 08 0C 0C 00 00 00 01 19 55").substr(0, 5), "30 08"); // another request is not concerned
    EXPECT_EQ(Ask(), ANSWER);                                                      // the late one
    EXPECT_EQ(Site.NextApdu(), ANSWER);
    EXPECT_TRUE(Site.Me().Silence());
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_TRUE(Site.Me().Silence());
}

TEST_F(Faulty, AnswersForAnotherInvokeId) {
    Dut().SetFault(Fault::WrongInvokeId());
    EXPECT_EQ(Ask(), "30 08" + ANSWER.substr(5));
}

TEST_F(Faulty, AnswersFromAnotherAddressOrPort) {
    Dut().SetFault(Fault::WrongSource());
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_NE(Site.Me().From().Ip, Site.DeviceAddress().Ip);
    Dut().SetFault(Fault::WrongPort());
    EXPECT_EQ(Ask(), ANSWER);
    EXPECT_EQ(Site.Me().From().Ip, Site.DeviceAddress().Ip);
    EXPECT_NE(Site.Me().From().Port, Site.DeviceAddress().Port);
}

TEST_F(Faulty, CutsItsAnswers) {
    Dut().SetFault(Fault::TruncateTo(5));
    EXPECT_EQ(Ask(), ANSWER.substr(0, 14));
}

TEST_F(Faulty, FallsSilentInTheMiddleOfASegmentedAnswer) {
    for (std::uint32_t i = 10; i < 40; ++i) {
        ObjectConfig object;
        object.Id = {OBJ_ANALOG_VALUE, i};
        Dut().AddObject(object);
    }
    Dut().SetFault(Fault::SilentAfterSegments(2));
    EXPECT_EQ(Site.Ask("02 70 05 0C 0C 02 00 04 D2 19 4C").substr(0, 8), "3C 05 00");
    Site.Me().Send(Site.DeviceAddress(), Unicast("40 05 00 04", "01 00"));
    EXPECT_EQ(Site.NextApdu().substr(0, 8), "3C 05 01");
    EXPECT_TRUE(Site.Me().Silence());
    EXPECT_EQ(Ask(), ANSWER); // an answer of one piece is not concerned
}

TEST_F(Faulty, FaultsWorkTogether) {
    Dut().SetFaults({Fault::Error(2, 32), Fault::Duplicate(), Fault::Slow(10)});
    EXPECT_EQ(Ask(), "50 07 0C 91 02 91 20");
    EXPECT_EQ(Site.NextApdu(), "50 07 0C 91 02 91 20");
}

TEST(FaultyFromTheStart, FaultsOfTheConfigurationHold) {
    RunningSite site;
    DeviceConfig device = SmallDevice(site.Block);
    device.Faults = {Fault::Abort(9)};
    site.Config.Devices.push_back(device);
    site.Start();
    EXPECT_EQ(site.Ask(REQUEST), "71 07 09");
}

} // namespace
} // namespace sim::testing
