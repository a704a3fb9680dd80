// File objects of a simulated device: AtomicReadFile and AtomicWriteFile in both access forms, and what their
// properties do.
#include "tests/unit/simulator/Site.h"

#include "simulator/model/Standard.h"

namespace sim::testing {
namespace {

constexpr BACSTAC_OBJECT_ID STREAM{OBJ_FILE, 1};
constexpr BACSTAC_OBJECT_ID RECORDS{OBJ_FILE, 2};

using Lines = std::vector<std::string>;

class File : public ::testing::Test {
protected:
    void SetUp() override {
        DeviceConfig device = SmallDevice(Site.Block);
        ObjectConfig stream;
        stream.Id = STREAM;
        stream.File.emplace().Octets = "abcdef";
        stream.File->MaxSize = 20;
        device.Objects.push_back(stream);
        ObjectConfig records;
        records.Id = RECORDS;
        records.File.emplace().OfRecords = true;
        records.File->Records = {"one", "two"};
        device.Objects.push_back(records);
        ObjectConfig locked;
        locked.Id = {OBJ_FILE, 3};
        locked.File.emplace().ReadOnly = true;
        device.Objects.push_back(locked);
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    std::optional<std::string> Octets() { return Site.FirstDevice().FileOctets(STREAM); }
    std::optional<Lines> Records() { return Site.FirstDevice().FileRecords(RECORDS); }
    RunningSite Site;
};

TEST_F(File, ReadsAStreamInPiecesUpToItsEnd) {
    // File 1, [0] stream access: start 0, 4 octets. The answer: not the end, start 0, "abcd".
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 01 0E 31 00 21 04 0F"), "30 01 06 10 0E 31 00 64 61 62 63 64 0F");
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 01 0E 31 04 21 04 0F"), "30 01 06 11 0E 31 04 62 65 66 0F");
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 01 0E 31 06 21 04 0F"), "30 01 06 11 0E 31 06 60 0F");
}

TEST_F(File, RefusesToReadWhereThereIsNothing) {
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 01 0E 31 07 21 04 0F"), "50 01 06 91 05 91 0B");
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 01 0E 31 FF 21 04 0F"), "50 01 06 91 05 91 0B");
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 09 0E 31 00 21 04 0F"), "50 01 06 91 01 91 1F"); // unknown object
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 00 00 00 01 0E 31 00 21 04 0F"), "50 01 06 91 05 91 82"); // no file
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 01 1E 31 00 21 01 1F"), "50 01 06 91 05 91 0A"); // by records
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 01 0E 31 00 21 04"), "60 01 04");
}

TEST_F(File, ReadsRecords) {
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 02 1E 31 00 21 01 1F"), "30 01 06 10 1E 31 00 21 01 63 6F 6E 65 1F");
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 02 1E 31 01 21 05 1F"), "30 01 06 11 1E 31 01 21 01 63 74 77 6F 1F");
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 02 1E 31 02 21 01 1F"), "30 01 06 11 1E 31 02 21 00 1F");
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 02 1E 31 03 21 01 1F"), "50 01 06 91 05 91 0B");
    EXPECT_EQ(Site.Ask("00 05 01 06 C4 02 80 00 02 0E 31 00 21 01 0F"), "50 01 06 91 05 91 0A");
}

TEST_F(File, WritesAStreamInPlaceBehindItsEndAndAppends) {
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 01 0E 31 02 62 58 59 0F"), "30 01 07 09 02");
    EXPECT_EQ(Octets(), "abXYef");
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 01 0E 31 FF 62 67 68 0F"), "30 01 07 09 06");
    EXPECT_EQ(Octets(), "abXYefgh");
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 01 0E 31 0A 61 21 0F"), "30 01 07 09 0A");
    EXPECT_EQ(Octets(), std::string("abXYefgh\0\0!", 11));
}

TEST_F(File, RefusesWritesThatItCannotTake) {
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 01 0E 31 14 61 21 0F"), "50 01 07 91 05 91 80"); // beyond 20 octets
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 01 0E 31 FE 61 21 0F"), "50 01 07 91 05 91 0B"); // start -2
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 03 0E 31 00 61 21 0F"), "50 01 07 91 05 91 05"); // read-only
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 02 1E 31 00 21 02 61 21 1F"), "60 01 04");       // two of one
    EXPECT_EQ(Octets(), "abcdef");
    EXPECT_EQ(Records(), (Lines{"one", "two"}));
}

TEST_F(File, WritesRecords) {
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 02 1E 31 01 21 02 61 41 61 42 1F"), "30 01 07 19 01");
    EXPECT_EQ(Records(), (Lines{"one", "A", "B"}));
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 02 1E 31 FF 21 01 60 1F"), "30 01 07 19 03");
    EXPECT_EQ(Records(), (Lines{"one", "A", "B", ""}));
}

TEST_F(File, TellsItsSizeAndIsCutByIt) {
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 80 00 01 19 2A"), "30 01 0C 0C 02 80 00 01 19 2A 3E 21 06 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 80 00 01 19 2A 3E 21 02 3F"), "20 01 0F");
    EXPECT_EQ(Octets(), "ab");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 80 00 01 19 2A 3E 21 00 3F"), "20 01 0F");
    EXPECT_EQ(Octets(), "");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 80 00 01 19 2A 3E 21 15 3F"), "50 01 0F 91 02 91 25");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 80 00 03 19 2A 3E 21 00 3F"), "50 01 0F 91 02 91 28");
}

TEST_F(File, TellsItsFormAndTheNumberOfItsRecords) {
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 80 00 01 19 29"), "30 01 0C 0C 02 80 00 01 19 29 3E 91 01 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 80 00 02 19 29"), "30 01 0C 0C 02 80 00 02 19 29 3E 91 00 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 80 00 02 19 8D"), "30 01 0C 0C 02 80 00 02 19 8D 3E 21 02 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 80 00 01 19 8D"), "50 01 0C 91 02 91 20");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 80 00 02 19 8D 3E 21 01 3F"), "20 01 0F");
    EXPECT_EQ(Records(), Lines{"one"});
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 80 00 02 19 2A 3E 21 00 3F"), "20 01 0F");
    EXPECT_EQ(Records(), Lines{});
}

TEST_F(File, AWriteSetsTheDateAndClearsTheArchiveFlag) {
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 80 00 01 19 0D 3E 11 3F"), "20 01 0F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 80 00 01 19 0D"), "30 01 0C 0C 02 80 00 01 19 0D 3E 11 3F");
    EXPECT_EQ(Site.Ask("00 05 01 07 C4 02 80 00 01 0E 31 00 61 21 0F"), "30 01 07 09 00");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 80 00 01 19 0D"), "30 01 0C 0C 02 80 00 01 19 0D 3E 10 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 02 80 00 01 19 95"),
              "30 01 0C 0C 02 80 00 01 19 95 3E A4 7E 05 1C 04 B4 14 1A 28 00 3F");
}

TEST_F(File, AnAnswerThatDoesNotFitIsAborted) {
    // 50 octets and no segmentation: 60 octets do not fit.
    ASSERT_TRUE(Site.FirstDevice().RemoveObject(STREAM));
    ObjectConfig longer;
    longer.Id = STREAM;
    longer.File.emplace().Octets = std::string(60, 'x');
    ASSERT_TRUE(Site.FirstDevice().AddObject(longer));
    EXPECT_EQ(Site.Ask("00 00 01 06 C4 02 80 00 01 0E 31 00 21 3C 0F"), "71 01 04");
}

} // namespace
} // namespace sim::testing
