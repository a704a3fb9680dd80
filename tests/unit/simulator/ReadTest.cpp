// ReadProperty and ReadPropertyMultiple of a simulated device, octet by octet.
#include "tests/unit/simulator/Site.h"

namespace sim::testing {
namespace {

class Read : public ::testing::Test {
protected:
    void SetUp() override {
        Site.Config.Devices.push_back(SmallDevice(Site.Block));
        Site.Start();
    }
    RunningSite Site;
};

// Confirmed request, 1476 octets accepted, invoke id 7, ReadProperty; [0] object, [1] property.
const std::string READ_PRESENT_VALUE = "00 05 07 0C 0C 00 00 00 01 19 55";

TEST_F(Read, AnswersWithTheValue) {
    // Complex ack, invoke id 7, ReadProperty; the same parameters; [3] Real 20.25.
    EXPECT_EQ(Site.Ask(READ_PRESENT_VALUE), "30 07 0C 0C 00 00 00 01 19 55 3E 44 41 A2 00 00 3F");
}

TEST_F(Read, AnswersTheWholeFrame) {
    EXPECT_EQ(Site.Me().Ask(Site.DeviceAddress(), Unicast(READ_PRESENT_VALUE)),
              "81 0A 00 17 01 00 30 07 0C 0C 00 00 00 01 19 55 3E 44 41 A2 00 00 3F");
    EXPECT_EQ(Site.Me().From(), Site.DeviceAddress());
}

TEST_F(Read, SeesWhatATestSets) {
    ASSERT_TRUE(Site.FirstDevice().SetProperty({OBJ_ANALOG_INPUT, 1}, PROP_PRESENT_VALUE, Value::Real(-1.0F)));
    EXPECT_EQ(Site.Ask(READ_PRESENT_VALUE), "30 07 0C 0C 00 00 00 01 19 55 3E 44 BF 80 00 00 3F");
    EXPECT_FALSE(Site.FirstDevice().SetProperty({OBJ_ANALOG_INPUT, 9}, PROP_PRESENT_VALUE, Value::Real(0)));
}

TEST_F(Read, RefusesWhatIsNotThere) {
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 00 00 00 63 19 55"), "50 01 0C 91 01 91 1F");       // unknown object
    EXPECT_EQ(Site.Ask("00 05 02 0C 0C 00 00 00 01 19 0B"), "50 02 0C 91 02 91 20");       // unknown property
    EXPECT_EQ(Site.Ask("00 05 03 0C 0C 00 00 00 01 19 55 29 01"), "50 03 0C 91 02 91 32"); // not an array
    EXPECT_EQ(Site.Ask("00 05 04 0C 0C 04 C0 00 02 19 6E 29 05"), "50 04 0C 91 02 91 2A"); // invalid array index
}

TEST_F(Read, ReadsArraysWholeByElementAndTheirSize) {
    // State_Text of multi-state value 2: "off", "low", "high", "auto".
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 04 C0 00 02 19 6E 29 00"), "30 01 0C 0C 04 C0 00 02 19 6E 29 00 3E 21 04 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 04 C0 00 02 19 6E 29 02"),
              "30 01 0C 0C 04 C0 00 02 19 6E 29 02 3E 74 00 6C 6F 77 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 04 C0 00 02 19 6E"),
              "30 01 0C 0C 04 C0 00 02 19 6E 3E 74 00 6F 66 66 74 00 6C 6F 77 75 05 00 68 69 67 68 75 05 00 61 75 74 "
              "6F 3F");
}

TEST_F(Read, ReadsTheObjectList) {
    // Device 1234 is X'020004D2'.
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C"), "30 01 0C 0C 02 00 04 D2 19 4C 3E C4 02 00 04 D2 C4 00 00 "
                                                            "00 01 C4 04 C0 00 02 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C 29 00"), "30 01 0C 0C 02 00 04 D2 19 4C 29 00 3E 21 03 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C 29 03"),
              "30 01 0C 0C 02 00 04 D2 19 4C 29 03 3E C4 04 C0 00 02 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C 29 04"), "50 01 0C 91 02 91 2A");
    ObjectConfig added;
    added.Id = {OBJ_BINARY_VALUE, 5};
    ASSERT_TRUE(Site.FirstDevice().AddObject(added));
    EXPECT_FALSE(Site.FirstDevice().AddObject(added));
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C 29 00"), "30 01 0C 0C 02 00 04 D2 19 4C 29 00 3E 21 04 3F");
    EXPECT_TRUE(Site.FirstDevice().RemoveObject(added.Id));
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C 29 00"), "30 01 0C 0C 02 00 04 D2 19 4C 29 00 3E 21 03 3F");
}

TEST_F(Read, FindsTheDeviceObjectByTheInstanceThatMeansWhichever) {
    // Device 4194303; answered with the device's own instance. Vendor identifier 999.
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 3F FF FF 19 78"), "30 01 0C 0C 02 00 04 D2 19 78 3E 22 03 E7 3F");
}

TEST_F(Read, ReadsTheClock) {
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 38"), "30 01 0C 0C 02 00 04 D2 19 38 3E A4 7E 05 1C 04 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 39"), "30 01 0C 0C 02 00 04 D2 19 39 3E B4 14 1A 28 00 3F");
}

TEST_F(Read, ListsItsProperties) {
    // Property_List of multi-state value 2, its size and the first: Present_Value.
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 04 C0 00 02 1A 01 73 29 00"),
              "30 01 0C 0C 04 C0 00 02 1A 01 73 29 00 3E 21 07 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 04 C0 00 02 1A 01 73 29 01"),
              "30 01 0C 0C 04 C0 00 02 1A 01 73 29 01 3E 91 55 3F");
}

TEST_F(Read, RejectsMalformedRequests) {
    EXPECT_EQ(Site.Ask("00 05 01 0C"), "60 01 05");                         // no parameters
    EXPECT_EQ(Site.Ask("00 05 02 0C 0C 00 00 00"), "60 02 04");             // cut
    EXPECT_EQ(Site.Ask("00 05 03 0C 1C 00 00 00 01 19 55"), "60 03 04");    // wrong tag
    EXPECT_EQ(Site.Ask("00 05 04 0C 0C 00 00 00 01 19 55 3E"), "60 04 04"); // more than there should be
    EXPECT_EQ(Site.Ask("00 05 05 12 0C 00 00 00 01 19 55"), "60 05 09");    // SubscribeCOV: not served
    EXPECT_EQ(Site.Ask("00 05 06 0E"), "60 06 05");                         // multiple read of nothing
    EXPECT_EQ(Site.Ask("00 05 07 0E 0C 00 00 00 01 1E 1F"), "60 07 05");
    EXPECT_EQ(Site.Ask("00 05 08 0E 0C 00 00 00 01 1E 09 55"), "60 08 04");
    EXPECT_EQ(Site.FirstDevice().GetStats()[Counter::rejects], 8U);
}

TEST_F(Read, DoesNotServeSegmentedRequests) {
    EXPECT_EQ(Site.Ask("0C 05 09 00 04 0E 0C 00 00 00 01 1E 09 55"), "71 09 04");
}

TEST_F(Read, MultipleReadAnswersEachPropertyForItself) {
    // Analog input 1: present value, proprietary property 600; analog input 99: present value; units of input 1 [1].
    EXPECT_EQ(Site.Ask("00 05 01 0E 0C 00 00 00 01 1E 09 55 0A 02 58 1F 0C 00 00 00 63 1E 09 55 1F 0C 00 00 00 01 1E "
                       "09 75 19 01 1F"),
              "30 01 0E 0C 00 00 00 01 1E 29 55 4E 44 41 A2 00 00 4F 2A 02 58 5E 91 02 91 20 5F 1F"
              " 0C 00 00 00 63 1E 29 55 5E 91 01 91 1F 5F 1F"
              " 0C 00 00 00 01 1E 29 75 39 01 5E 91 02 91 32 5F 1F");
}

TEST_F(Read, MultipleReadExpandsAllRequiredAndOptional) {
    // Analog input 1 has no optional property but Reliability.
    const std::string required = "29 4B 4E C4 00 00 00 01 4F"
                                 " 29 4D 4E 75 0F 00 41 6E 61 6C 6F 67 20 49 6E 70 75 74 20 31 4F"
                                 " 29 4F 4E 91 00 4F"
                                 " 29 55 4E 44 41 A2 00 00 4F"
                                 " 29 6F 4E 82 04 00 4F"
                                 " 29 24 4E 91 00 4F";
    const std::string reliability = " 29 67 4E 91 00 4F";
    const std::string rest = " 29 51 4E 10 4F 29 75 4E 91 3E 4F";
    const std::string head = "30 01 0E 0C 00 00 00 01 1E ";
    EXPECT_EQ(Site.Ask("00 05 01 0E 0C 00 00 00 01 1E 09 08 1F"), head + required + reliability + rest + " 1F");
    EXPECT_EQ(Site.Ask("00 05 01 0E 0C 00 00 00 01 1E 09 69 1F"), head + required + rest + " 1F");
    EXPECT_EQ(Site.Ask("00 05 01 0E 0C 00 00 00 01 1E 09 50 1F"), head + reliability.substr(1) + " 1F");
    EXPECT_EQ(Site.Ask("00 05 01 0E 0C 00 00 00 63 1E 09 08 1F"),
              "30 01 0E 0C 00 00 00 63 1E 29 08 5E 91 01 91 1F 5F 1F");
}

TEST_F(Read, AnswerThatDoesNotFitIsAborted) {
    // All properties of the device for an asker that takes 50 octets and no segments.
    EXPECT_EQ(Site.Ask("00 00 01 0E 0C 02 00 04 D2 1E 09 08 1F"), "71 01 04");
    // And two segments of 50 octets.
    EXPECT_EQ(Site.Ask("02 10 02 0E 0C 02 00 04 D2 1E 09 08 1F"), "71 02 01");
}

TEST_F(Read, GarbageIsIgnoredAndTheNextRequestWorks) {
    const Octets whole = Unicast("00 05 07 0C 0C 00 00 00 01 19 55");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        Octets cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        Site.Me().Send(Site.DeviceAddress(), cut); // its length field is wrong: no answer
        if (length >= 4) {
            cut[3] = static_cast<std::uint8_t>(length);
            Site.Me().Send(Site.DeviceAddress(), cut);
        }
    }
    Site.Me().Send(Site.DeviceAddress(), Octets(2047, 0xFF));
    Site.Me().Send(Site.DeviceAddress(), Unicast("00 05 08 0C 0C 00 00 00 01 19 55"));
    std::string last;
    // Cut within the service parameters they are rejected; nothing else is answered.
    while ((last = Site.NextApdu()).substr(0, 2) == "60") {}
    EXPECT_EQ(last, "30 08 0C 0C 00 00 00 01 19 55 3E 44 41 A2 00 00 3F");
}

TEST_F(Read, ForwardedRequestIsAnsweredToItsOrigin) {
    Station relay(bacnet::BipAddress{Site.Block.Ip(251), Site.Block.Port()});
    Octets frame = Hex("81 04 00 1B");
    const std::uint32_t ip = Site.Block.Ip(STATION_HOST);
    for (int shift = 24; shift >= 0; shift -= 8)
        frame.push_back(static_cast<std::uint8_t>(ip >> shift));
    frame.push_back(static_cast<std::uint8_t>(Site.Block.Port() >> 8));
    frame.push_back(static_cast<std::uint8_t>(Site.Block.Port()));
    const Octets npdu = Hex("01 04" + READ_PRESENT_VALUE);
    frame.insert(frame.end(), npdu.begin(), npdu.end());
    frame[3] = static_cast<std::uint8_t>(frame.size());
    relay.Send(Site.DeviceAddress(), frame);
    EXPECT_EQ(Site.NextApdu(), "30 07 0C 0C 00 00 00 01 19 55 3E 44 41 A2 00 00 3F");
}

TEST_F(Read, RefusesToBeABroadcastManagementDevice) {
    EXPECT_EQ(Site.Me().Ask(Site.DeviceAddress(), Hex("81 05 00 06 00 3C")), "81 00 00 06 00 30");
}

TEST_F(Read, CountsRequests) {
    Site.Ask(READ_PRESENT_VALUE);
    Site.Ask("00 05 01 0E 0C 00 00 00 01 1E 09 55 1F");
    Site.Ask("00 05 01 0C 0C 00 00 00 63 19 55");
    const Stats stats = Site.Sim().GetStats();
    EXPECT_EQ(stats[Counter::readProperty], 2U);
    EXPECT_EQ(stats[Counter::readPropertyMultiple], 1U);
    EXPECT_EQ(stats[Counter::errors], 1U);
    EXPECT_EQ(stats[Counter::answers], 3U);
    EXPECT_EQ(stats.Requests(), 3U);
}

TEST(ReadWithout, MultipleReadIsRejectedByADeviceThatLacksIt) {
    RunningSite site;
    DeviceConfig device = SmallDevice(site.Block);
    device.LacksServices = {bacnet::ConfirmedService::readPropertyMultiple};
    site.Config.Devices.push_back(device);
    site.Start();
    EXPECT_EQ(site.Ask("00 05 01 0E 0C 00 00 00 01 1E 09 55 1F"), "60 01 09");
    // Protocol_Services_Supported has bit 12 and not bit 14.
    const std::optional<Value> services = site.FirstDevice().GetProperty({OBJ_DEVICE, 1234}, 97);
    ASSERT_TRUE(services.has_value());
    EXPECT_EQ(services->Wire()[4] & 0x0A, 0x08);
}

TEST(ReadWithout, PropertyListIsUnknownBeforeRevisionFourteen) {
    RunningSite site;
    DeviceConfig device = SmallDevice(site.Block);
    device.ProtocolRevision = 13;
    site.Config.Devices.push_back(device);
    site.Start();
    EXPECT_EQ(site.Ask("00 05 01 0C 0C 04 C0 00 02 1A 01 73"), "50 01 0C 91 02 91 20");
}

} // namespace
} // namespace sim::testing
