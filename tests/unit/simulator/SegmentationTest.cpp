// Segmented answers over UDP, octet by octet.
#include "tests/unit/simulator/Site.h"

namespace sim::testing {
namespace {

// The object list of device 1234, which has 21 objects more than itself: 22 * 5 = 110 octets, and 10 octets around it.
class Segmented : public ::testing::Test {
protected:
    void Start(DeviceConfig device) {
        device.Objects.clear();
        for (std::uint32_t i = 1; i <= 21; ++i) {
            ObjectConfig object;
            object.Id = {OBJ_ANALOG_VALUE, i};
            device.Objects.push_back(object);
        }
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    static std::string Expected() {
        std::string octets = "0C 02 00 04 D2 19 4C 3E C4 02 00 04 D2";
        for (std::uint8_t i = 1; i <= 21; ++i)
            octets += " C4 00 80 00 " + ToHex(Octets{i});
        return octets + " 3F";
    }
    // Confirmed request, segments accepted as many as wished; 50 octets, invoke id 5.
    std::string Ask() { return Site.Ask("02 70 05 0C" + OBJECT_LIST); }
    void Ack(const std::string& sequenceAndWindow, const std::string& control = "40") {
        Site.Me().Send(Site.DeviceAddress(), Unicast(control + " 05 " + sequenceAndWindow, "01 00"));
    }

    static inline const std::string OBJECT_LIST = " 0C 02 00 04 D2 19 4C";
    RunningSite Site;
};

TEST_F(Segmented, AnswerGoesOutInWindows) {
    DeviceConfig device = SmallDevice(Site.Block);
    device.WindowSize = 7;
    Start(device);
    // Complex ack, segmented, more follows; invoke id 5, sequence number 0, window 7 proposed; ReadProperty.
    std::string segment = Ask();
    EXPECT_EQ(segment.substr(0, 14), "3C 05 00 07 0C");
    std::string octets = segment.substr(15);
    EXPECT_TRUE(Site.Me().Silence()); // the first one waits for the window
    Ack("00 02");
    segment = Site.NextApdu();
    EXPECT_EQ(segment.substr(0, 14), "3C 05 01 07 0C");
    octets += " " + segment.substr(15);
    segment = Site.NextApdu();
    EXPECT_EQ(segment.substr(0, 14), "38 05 02 07 0C"); // the last one
    octets += " " + segment.substr(15);
    Ack("02 02");
    EXPECT_EQ(octets, Expected());
    EXPECT_TRUE(Site.Me().Silence());
    EXPECT_EQ(Site.FirstDevice().GetStats()[Counter::segments], 3U);
}

TEST_F(Segmented, NegativeAcknowledgementBringsTheLostSegmentsAgain) {
    Start(SmallDevice(Site.Block));
    Ask();
    Ack("00 05");
    const std::string second = Site.NextApdu();
    const std::string third = Site.NextApdu();
    Ack("00 05", "42"); // negative: nothing behind segment 0 arrived
    EXPECT_EQ(Site.NextApdu(), second);
    EXPECT_EQ(Site.NextApdu(), third);
}

TEST_F(Segmented, SegmentsAreRepeatedWhenNothingIsHeard) {
    DeviceConfig device = SmallDevice(Site.Block);
    device.SegmentTimeoutMs = 30;
    device.SegmentRetries = 2;
    Start(device);
    const std::string first = Ask();
    EXPECT_EQ(Site.NextApdu(), first);
    EXPECT_EQ(Site.NextApdu(), first);
    EXPECT_EQ(Site.NextApdu(3 * Station::SHORT_MS), "nothing"); // given up
    Ack("00 05");
    EXPECT_TRUE(Site.Me().Silence());
}

TEST_F(Segmented, ARepeatedRequestBeginsTheAnswerAnew) {
    Start(SmallDevice(Site.Block));
    const std::string first = Ask();
    EXPECT_EQ(Ask(), first);
    Ack("00 05");
    EXPECT_EQ(Site.NextApdu().substr(0, 8), "3C 05 01");
    EXPECT_EQ(Site.NextApdu().substr(0, 8), "38 05 02");
    EXPECT_TRUE(Site.Me().Silence()); // not twice
}

TEST_F(Segmented, TheAskerMayAbort) {
    DeviceConfig device = SmallDevice(Site.Block);
    device.SegmentTimeoutMs = 30;
    Start(device);
    Ask();
    Site.Me().Send(Site.DeviceAddress(), Unicast("70 05 00", "01 00"));
    EXPECT_EQ(Site.NextApdu(3 * Station::SHORT_MS), "nothing");
}

TEST_F(Segmented, AWindowOutOfRangeIsAborted) {
    Start(SmallDevice(Site.Block));
    Ask();
    Ack("00 00");
    EXPECT_EQ(Site.NextApdu(), "71 05 07");
}

TEST_F(Segmented, ADeviceWithoutSegmentationAborts) {
    DeviceConfig device = SmallDevice(Site.Block);
    device.Segmentation = bacnet::Segmentation::none;
    Start(device);
    EXPECT_EQ(Ask(), "71 05 04");
    EXPECT_EQ(Site.Ask("02 75 05 0C" + OBJECT_LIST), "30 05 0C " + Expected()); // 1476 octets hold it
}

TEST_F(Segmented, TheAskersLimitsAreKept) {
    Start(SmallDevice(Site.Block));
    EXPECT_EQ(Site.Ask("00 00 05 0C" + OBJECT_LIST), "71 05 04");               // takes no segments
    EXPECT_EQ(Site.Ask("02 10 05 0C" + OBJECT_LIST), "71 05 01");               // two of three
    EXPECT_EQ(Site.Ask("02 20 05 0C" + OBJECT_LIST).substr(0, 8), "3C 05 00");  // four
    EXPECT_EQ(Site.Ask("02 01 06 0C" + OBJECT_LIST), "30 06 0C " + Expected()); // 128 octets in one
}

TEST_F(Segmented, TheDevicesOwnApduSizeIsKept) {
    DeviceConfig device = SmallDevice(Site.Block);
    device.MaxApdu = 60;
    Start(device);
    const std::string segment = Site.Ask("02 75 05 0C" + OBJECT_LIST);
    EXPECT_EQ(segment.size(), 60U * 3 - 1);
}

TEST_F(Segmented, TwoAskersAreToldApartByInvokeIdAndAddress) {
    Start(SmallDevice(Site.Block));
    Station other(bacnet::BipAddress{Site.Block.Ip(251), Site.Block.Port()});
    Ask();
    EXPECT_EQ(other.Ask(Site.DeviceAddress(), Unicast("02 70 05 0C" + OBJECT_LIST)).substr(18, 8), "3C 05 00");
    Ack("00 05");
    EXPECT_EQ(Site.NextApdu().substr(0, 8), "3C 05 01");
    EXPECT_EQ(Site.NextApdu().substr(0, 8), "38 05 02");
    EXPECT_TRUE(other.Silence());
    other.Send(Site.DeviceAddress(), Unicast("40 06 00 05", "01 00")); // an id that is not under way
    EXPECT_TRUE(other.Silence());
}

} // namespace
} // namespace sim::testing
