// What devices with profiles do, as seen from the wire.
#include "simulator/Profiles.h"

#include "simulator/model/Standard.h"
#include "tests/unit/simulator/Site.h"

#include <set>

namespace sim::testing {
namespace {

// Multi-state value 2: its state text, second element; and its number of elements. Device 1234: its object list.
const std::string READ_VALUE = "00 05 01 0C 0C 00 00 00 01 19 55";
const std::string VALUE = "30 01 0C 0C 00 00 00 01 19 55 3E ";
const std::string READ_TEXT = "00 05 01 0C 0C 04 C0 00 02 19 6E 29 02";
const std::string TEXT = "30 01 0C 0C 04 C0 00 02 19 6E 29 02 3E ";
const std::string LIST_SIZE = "00 05 01 0C 0C 02 00 04 D2 19 4C 29 00";
const std::string SIZE = "30 01 0C 0C 02 00 04 D2 19 4C 29 00 3E ";

class Profiles : public ::testing::Test {
protected:
    void Start(const std::string& name, const std::function<void(DeviceConfig&)>& change = {}) {
        DeviceConfig device = SmallDevice(Site.Block);
        if (change)
            change(device);
        const Profile* profile = FindProfile(name);
        ASSERT_NE(profile, nullptr) << name;
        profile->Apply(device);
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    bool Silence(const std::string& apdu) {
        Site.Me().Send(Site.DeviceAddress(), Unicast(apdu));
        return Site.Me().Silence();
    }
    RunningSite Site;
};

TEST(ProfileTable, HasEachNameOnceAndALineForEach) {
    std::set<std::string> names;
    for (const Profile& profile : AllProfiles()) {
        EXPECT_TRUE(names.insert(profile.Name).second) << profile.Name;
        EXPECT_FALSE(std::string(profile.What).empty());
        EXPECT_EQ(FindProfile(profile.Name), &profile);
        // Each one changes something.
        DeviceConfig device;
        profile.Apply(device);
        const bool changed = !device.Faults.empty() || device.Quirks.Any() || device.Quirks.SecondClaimant ||
                             !device.LacksServices.empty() || !device.Password.empty() ||
                             device.Segmentation != DeviceConfig{}.Segmentation;
        EXPECT_TRUE(changed) << profile.Name;
    }
    EXPECT_GE(names.size(), 30U);
    EXPECT_EQ(FindProfile("polite"), nullptr);
}

TEST_F(Profiles, NoMultipleReads) {
    Start("no-multiple-reads");
    EXPECT_EQ(Site.Ask("00 05 01 0E 0C 00 00 00 01 1E 09 55 1F"), "60 01 09");
    EXPECT_EQ(Site.Ask(READ_VALUE), VALUE + "44 41 A2 00 00 3F");
}

TEST_F(Profiles, NoSegmentationAndFiftyOctets) {
    Start("apdu-50");
    // Segmented answers are accepted, 1476 octets: all the same.
    EXPECT_EQ(Site.Ask("02 75 01 0E 0C 04 C0 00 02 1E 09 08 1F"), "71 01 04");
}

TEST_F(Profiles, OneFailedItem) {
    Start("one-failed-item");
    EXPECT_EQ(Site.Ask("00 05 01 0E 0C 00 00 00 01 1E 09 6F 09 51 1F"),
              "30 01 0E 0C 00 00 00 01 1E 29 6F 5E 91 02 91 1B 5F 29 51 4E 10 4F 1F");
}

TEST_F(Profiles, WrongCharacterSet) {
    Start("wrong-character-set");
    EXPECT_EQ(Site.Ask(READ_TEXT), TEXT + "74 04 6C 6F 77 3F"); // three octets of UCS-2
    EXPECT_EQ(Site.Ask(READ_VALUE), VALUE + "44 41 A2 00 00 3F");
}

TEST_F(Profiles, WrongTypes) {
    Start("wrong-types");
    EXPECT_EQ(Site.Ask(READ_TEXT), TEXT + "21 2A 3F");
    EXPECT_EQ(Site.Ask(READ_VALUE), VALUE + "75 0B 00 77 72 6F 6E 67 20 74 79 70 65 3F");
}

TEST_F(Profiles, TruncatedTags) {
    Start("truncated-tags");
    EXPECT_EQ(Site.Ask(READ_VALUE), VALUE + "44 41 A2 00 3F");
}

TEST_F(Profiles, NestedForever) {
    Start("nested-forever");
    const std::string answer = Site.Ask(READ_VALUE);
    EXPECT_TRUE(answer.starts_with(VALUE + "0E 0E 0E"));
    EXPECT_EQ(answer.size(), VALUE.size() + 200 * 3 + 2);
}

TEST_F(Profiles, LyingCounts) {
    Start("lying-counts", [](DeviceConfig& device) {
        ObjectConfig records;
        records.Id = {OBJ_FILE, 2};
        records.File.emplace().OfRecords = true;
        records.File->Records = {"one"};
        device.Objects.push_back(records);
    });
    EXPECT_EQ(Site.Ask(LIST_SIZE), SIZE + "21 07 3F"); // of four
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 02 1E 31 00 21 01 1F"), "30 01 06 11 1E 31 00 21 04 63 6F 6E 65 1F");
}

TEST_F(Profiles, GrowingObjectList) {
    Start("growing-object-list");
    EXPECT_EQ(Site.Ask(LIST_SIZE), SIZE + "21 04 3F");
    EXPECT_EQ(Site.Ask(LIST_SIZE), SIZE + "21 05 3F");
    EXPECT_EQ(Site.FirstDevice().ObjectList().size(), 5U);
}

TEST_F(Profiles, ObjectListOfFourBillion) {
    Start("object-list-4-billion");
    EXPECT_EQ(Site.Ask(LIST_SIZE), SIZE + "24 EE 6B 28 00 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C"), "71 01 04"); // cannot be answered
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C 29 02"),
              "30 01 0C 0C 02 00 04 D2 19 4C 29 02 3E C4 00 00 00 01 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 00 04 D2 19 4C 2C 77 35 94 00").substr(0, 5), "30 01");
}

TEST_F(Profiles, EmptyFileAnswers) {
    Start("empty-file-answers", [](DeviceConfig& device) {
        ObjectConfig stream;
        stream.Id = {OBJ_FILE, 1};
        stream.File.emplace().Octets = "abc";
        device.Objects.push_back(stream);
    });
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 01 0E 31 00 21 04 0F"), "30 01 06 10 0E 31 00 60 0F");
}

TEST_F(Profiles, DuplicateInstance) {
    Site.Config.IAm = IAmMode::unicast;
    Start("duplicate-instance");
    const std::string iAm = "10 00 C4 02 00 04 D2 22 05 C4 91 01 22 03 E7";
    EXPECT_EQ(Site.Ask("10 08"), iAm);
    const bacnet::BipAddress first = Site.Me().From();
    EXPECT_EQ(Site.NextApdu(), iAm);
    EXPECT_NE(Site.Me().From(), first);
    EXPECT_EQ(Site.Me().From().Port, first.Port);
}

TEST_F(Profiles, Restarts) {
    Start("restarts");
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(Site.Ask(READ_VALUE), VALUE + "44 41 A2 00 00 3F");
    EXPECT_TRUE(Silence(READ_VALUE));
    EXPECT_TRUE(Silence("10 08"));
}

TEST_F(Profiles, SilentAfterSome) {
    Start("silent-after-n");
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(Site.Ask(READ_VALUE), VALUE + "44 41 A2 00 00 3F");
    EXPECT_TRUE(Silence(READ_VALUE));
    EXPECT_TRUE(Silence(READ_VALUE));
}

TEST_F(Profiles, ReadOnly) {
    Start("read-only");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 55 3E 21 01 3F"), "50 01 0F 91 02 91 28");
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 00 0F"), "50 01 0A 0E 91 01 91 04 0F 19 00");
    EXPECT_EQ(Site.Ask(READ_VALUE), VALUE + "44 41 A2 00 00 3F");
}

TEST_F(Profiles, CanBeChangedWhileTheDeviceRuns) {
    Start("wrong-types");
    Site.FirstDevice().SetQuirks({});
    EXPECT_EQ(Site.Ask(READ_VALUE), VALUE + "44 41 A2 00 00 3F");
}

} // namespace
} // namespace sim::testing
