// CreateObject and DeleteObject of a simulated device, octet by octet.
#include "tests/unit/simulator/Site.h"

#include "simulator/model/Standard.h"

namespace sim::testing {
namespace {

class Create : public ::testing::Test {
protected:
    void SetUp() override {
        DeviceConfig device = SmallDevice(Site.Block);
        device.Objects[1].Permanent = true;
        Configure(device);
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    virtual void Configure(DeviceConfig&) {}
    std::optional<Value> Read(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property) {
        return Site.FirstDevice().GetProperty(object, property);
    }
    RunningSite Site;
};

TEST_F(Create, ByTypeTakesTheFirstFreeInstance) {
    // [0] { [0] analog input }: instance 1 is there, so 2 it is.
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 00 0F"), "30 01 0A C4 00 00 00 02");
    EXPECT_EQ(Site.FirstDevice().ObjectList().size(), 4U);
    EXPECT_EQ(Read({OBJ_ANALOG_INPUT, 2}, PROP_OBJECT_NAME), Value::String("Analog Input 2"));
    EXPECT_EQ(Read({OBJ_DEVICE, 1234}, PROP_DATABASE_REVISION), Value::Unsigned(2));
}

TEST_F(Create, ByIdentifierWithInitialValues) {
    // [0] { [1] calendar 5 }, [1] { name "c", Date_List of 24 December 2026 }
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 1C 01 80 00 05 0F 1E 09 4D 2E 72 00 63 2F 09 17 2E 0C 7E 0C 18 04 2F 1F"),
              "30 01 0A C4 01 80 00 05");
    EXPECT_EQ(Read({OBJ_CALENDAR, 5}, PROP_OBJECT_NAME), Value::String("c"));
    EXPECT_EQ(Read({OBJ_CALENDAR, 5}, PROP_DATE_LIST)->Count(), 1U);
}

TEST_F(Create, AFileGetsTheAccessItIsGiven) {
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 1C 02 80 00 07 0F 1E 09 29 2E 91 01 2F 1F"), "30 01 0A C4 02 80 00 07");
    EXPECT_EQ(Site.FirstDevice().FileOctets({OBJ_FILE, 7}), "");
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 1C 02 80 00 08 0F 1E 09 29 2E 91 00 2F 1F"), "30 01 0A C4 02 80 00 08");
    EXPECT_TRUE(Site.FirstDevice().FileRecords({OBJ_FILE, 8}).has_value());
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 1C 02 80 00 09 0F 1E 09 29 2E 91 02 2F 1F"), "50 01 0A 0E 91 02 91 25 0F 19 01");
}

TEST_F(Create, ALogGetsItsBufferSize) {
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 14 0F 1E 09 7E 2E 21 05 2F 09 85 2E 10 2F 1F"), "30 01 0A C4 05 00 00 01");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 05 00 00 01 19 7E"), "30 01 0C 0C 05 00 00 01 19 7E 3E 21 05 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 05 00 00 01 19 85"), "30 01 0C 0C 05 00 00 01 19 85 3E 10 3F");
}

TEST_F(Create, TellsWhichValueIsWrongAndCreatesNothing) {
    // The second of: description "d", name null.
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 06 0F 1E 09 1C 2E 72 00 64 2F 09 4D 2E 00 2F 1F"),
              "50 01 0A 0E 91 02 91 09 0F 19 02");
    // A calendar has no units.
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 06 0F 1E 09 75 2E 91 3E 2F 1F"), "50 01 0A 0E 91 02 91 20 0F 19 01");
    // The name is that of the device.
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 06 0F 1E 09 4D 2E 75 0C 00 44 65 76 69 63 65 20 31 32 33 34 2F 1F"),
              "50 01 0A 0E 91 02 91 30 0F 19 01");
    // An identifier is given otherwise.
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 06 0F 1E 09 4B 2E C4 01 80 00 09 2F 1F"), "50 01 0A 0E 91 02 91 28 0F 19 01");
    EXPECT_EQ(Site.FirstDevice().ObjectList().size(), 3U);
}

TEST_F(Create, RefusesWhatExistsAndWhatNobodyCreates) {
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 1C 00 00 00 01 0F"), "50 01 0A 0E 91 01 91 18 0F 19 00");
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 08 0F"), "50 01 0A 0E 91 01 91 04 0F 19 00");    // a device
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 0A 03 E7 0F"), "50 01 0A 0E 91 01 91 24 0F 19 00"); // type 999
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 06 0F 1E 09 4D 2E 72 00 63 2F"), "60 01 04");
    EXPECT_EQ(Site.Ask("00 05 01 0A"), "60 01 05");
}

TEST_F(Create, DeletesWhatMayBeDeleted) {
    EXPECT_EQ(Site.Ask("00 05 01 0B C4 00 00 00 01"), "20 01 0B");
    EXPECT_EQ(Site.Ask("00 05 02 0B C4 00 00 00 01"), "50 02 0B 91 01 91 1F");
    EXPECT_EQ(Site.Ask("00 05 01 0B C4 04 C0 00 02"), "50 01 0B 91 01 91 17"); // permanent
    EXPECT_EQ(Site.Ask("00 05 01 0B C4 02 00 04 D2"), "50 01 0B 91 01 91 17"); // the device itself
    EXPECT_EQ(Site.FirstDevice().ObjectList().size(), 2U);
}

class CreateLimited : public Create {
protected:
    void Configure(DeviceConfig& device) override {
        device.Creates = std::vector<BACSTAC_OBJECT_TYPE>{OBJ_CALENDAR};
        device.MaxObjects = 4;
    }
};

TEST_F(CreateLimited, TypesAndNumberOfObjects) {
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 00 0F"), "50 01 0A 0E 91 01 91 04 0F 19 00");
    EXPECT_EQ(Site.Ask("00 05 01 0B C4 00 00 00 01"), "50 01 0B 91 01 91 17");
    EXPECT_EQ(Site.Ask("00 05 01 0A 0E 09 06 0F"), "30 01 0A C4 01 80 00 01");
    EXPECT_EQ(Site.Ask("00 05 02 0A 0E 09 06 0F"), "50 02 0A 0E 91 03 91 12 0F 19 00");
}

} // namespace
} // namespace sim::testing
