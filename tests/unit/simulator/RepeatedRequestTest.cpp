// A request that a client repeats because it lost the answer is executed once.
#include "simulator/server/RecentRequests.h"
#include "tests/unit/simulator/Site.h"

namespace sim::testing {
namespace {

constexpr BACSTAC_OBJECT_ID FILE_OBJECT{OBJ_FILE, 1};
constexpr std::size_t FIRST_OBJECTS = 4; // the device, two of its points, the file

// Invoke id 1. CreateObject of an analog value, any instance; AtomicWriteFile that appends "ab"; WriteProperty of the
// multi-state value 2; ReadProperty of its value.
const char CREATE[] = "00 05 01 0A 0E 09 02 0F";
const char APPEND[] = "00 05 01 07 C4 02 80 00 01 0E 31 FF 62 61 62 0F";
const char WRITE_3[] = "00 05 01 0F 0C 04 C0 00 02 19 55 3E 21 03 3F";
const char WRITE_2[] = "00 05 01 0F 0C 04 C0 00 02 19 55 3E 21 02 3F";
const char READ[] = "00 05 01 0C 0C 04 C0 00 02 19 55";

class RepeatedRequest : public ::testing::Test {
protected:
    void SetUp() override {
        DeviceConfig device = SmallDevice(Site.Block);
        ObjectConfig file;
        file.Id = FILE_OBJECT;
        file.File.emplace();
        device.Objects.push_back(file);
        Site.Config.Devices = {device};
        Site.Start();
    }
    std::size_t Objects() { return Site.FirstDevice().ObjectList().size(); }

    RunningSite Site;
};

TEST_F(RepeatedRequest, GetsTheSameAnswerAgain) {
    const std::string created = Site.Ask(CREATE);
    EXPECT_EQ(created, "30 01 0A C4 00 80 00 01");
    EXPECT_EQ(Site.Ask(CREATE), created);
    EXPECT_EQ(Objects(), FIRST_OBJECTS + 1);

    const std::string appended = Site.Ask(APPEND);
    EXPECT_EQ(appended, "30 01 07 09 00");
    EXPECT_EQ(Site.Ask(APPEND), appended);
    EXPECT_EQ(Site.FirstDevice().FileOctets(FILE_OBJECT), "ab");
}

TEST_F(RepeatedRequest, OfAnErrorGetsTheErrorAgain) {
    const char unknown[] = "00 05 01 0B C4 00 80 00 09"; // DeleteObject of an analog value that is not there
    EXPECT_EQ(Site.Ask(unknown), "50 01 0B 91 01 91 1F");
    ObjectConfig object;
    object.Id = {OBJ_ANALOG_VALUE, 9};
    Site.FirstDevice().AddObject(object);
    EXPECT_EQ(Site.Ask(unknown), "50 01 0B 91 01 91 1F");
    EXPECT_EQ(Objects(), FIRST_OBJECTS + 1);
}

TEST_F(RepeatedRequest, IsAnotherOneOfAnotherInvokeIdOrOtherOctets) {
    Site.Ask(CREATE);
    Site.Ask("00 05 02 0A 0E 09 02 0F");
    EXPECT_EQ(Objects(), FIRST_OBJECTS + 2);
    EXPECT_EQ(Site.Ask(APPEND), "30 01 07 09 00");
    EXPECT_EQ(Site.Ask(CREATE), "30 01 0A C4 00 80 00 03");
}

TEST_F(RepeatedRequest, IsAnotherOneOfAnotherStation) {
    Site.Ask(CREATE);
    Station other(Site.DeviceAddress(STATION_HOST - 1));
    EXPECT_EQ(other.Ask(Site.DeviceAddress(), Unicast(CREATE)), "81 0A 00 0E 01 00 30 01 0A C4 00 80 00 02");
}

TEST_F(RepeatedRequest, IsAnotherOneOnceTheInvokeIdWasUsedForSomethingElse) {
    EXPECT_EQ(Site.Ask(WRITE_3), "20 01 0F");
    EXPECT_EQ(Site.Ask(WRITE_2), "20 01 0F");
    EXPECT_EQ(Site.Ask(WRITE_3), "20 01 0F");
    EXPECT_EQ(Site.FirstDevice().GetProperty({OBJ_MULTI_STATE_VALUE, 2}, PROP_PRESENT_VALUE), Value::Unsigned(3));
    EXPECT_EQ(Site.Ask(READ), "30 01 0C 0C 04 C0 00 02 19 55 3E 21 03 3F");
    Site.FirstDevice().SetProperty({OBJ_MULTI_STATE_VALUE, 2}, PROP_PRESENT_VALUE, Value::Unsigned(1));
    EXPECT_EQ(Site.Ask(WRITE_3), "20 01 0F");
    EXPECT_EQ(Site.FirstDevice().GetProperty({OBJ_MULTI_STATE_VALUE, 2}, PROP_PRESENT_VALUE), Value::Unsigned(3));
}

TEST_F(RepeatedRequest, ReadsAreAnsweredFromWhatIsThere) {
    EXPECT_EQ(Site.Ask(READ), "30 01 0C 0C 04 C0 00 02 19 55 3E 21 03 3F");
    Site.FirstDevice().SetProperty({OBJ_MULTI_STATE_VALUE, 2}, PROP_PRESENT_VALUE, Value::Unsigned(1));
    EXPECT_EQ(Site.Ask(READ), "30 01 0C 0C 04 C0 00 02 19 55 3E 21 01 3F");
}

// The device keeps its answer back until the request is repeated.
TEST_F(RepeatedRequest, OfALateDeviceIsAnsweredTwiceAndExecutedOnce) {
    Site.FirstDevice().SetFault(Fault::LateAfterRetry());
    Site.Me().Send(Site.DeviceAddress(), Unicast(CREATE));
    EXPECT_TRUE(Site.Me().Silence());
    EXPECT_EQ(Site.Ask(CREATE), "30 01 0A C4 00 80 00 01");
    EXPECT_EQ(Site.NextApdu(), "30 01 0A C4 00 80 00 01");
    EXPECT_EQ(Objects(), FIRST_OBJECTS + 1);
}

} // namespace

TEST(RecentRequests, AreForgottenInTime) {
    RecentRequests recent(9000);
    const Requester from{{0x7F000001, 47808}, 0, {}};
    bacnet::Apdu request;
    request.Service = static_cast<std::uint8_t>(bacnet::ConfirmedService::writeProperty);
    recent.Keep(from, request, Outcome::Done(), 1000);
    EXPECT_NE(recent.Find(from, request, 9999), nullptr);
    EXPECT_EQ(recent.Find(from, request, 10000), nullptr);
}

} // namespace sim::testing
