// WriteProperty, WritePropertyMultiple and the list services of a simulated device, octet by octet.
#include "tests/unit/simulator/Site.h"

#include "simulator/model/Standard.h"

namespace sim::testing {
namespace {

constexpr BACSTAC_OBJECT_ID INPUT{OBJ_ANALOG_INPUT, 1};
constexpr BACSTAC_OBJECT_ID STATES{OBJ_MULTI_STATE_VALUE, 2};
constexpr BACSTAC_OBJECT_ID OUTPUT{OBJ_ANALOG_OUTPUT, 3};
constexpr BACSTAC_OBJECT_ID LOG{OBJ_TREND_LOG, 4};

const std::string WRITTEN = "20 01 0F"; // simple ack, invoke id 1, WriteProperty
const std::string DENIED = "50 01 0F 91 02 91 28";
const std::string WRONG_TYPE = "50 01 0F 91 02 91 09";
const std::string OUT_OF_RANGE = "50 01 0F 91 02 91 25";

// WriteProperty of the present value: [0] object, [1] property 85, [3] value.
std::string WriteValue(const std::string& object, const std::string& value, const std::string& priority = "") {
    return "00 05 01 0F 0C" + object + " 19 55 3E " + value + " 3F " + priority;
}

class Write : public ::testing::Test {
protected:
    void SetUp() override {
        DeviceConfig device = SmallDevice(Site.Block);
        ObjectConfig output;
        output.Id = OUTPUT;
        output.Properties.emplace_back(PROP_PRESENT_VALUE, Value::Real(5.0F));
        output.Properties.emplace_back(PROP_CURRENT_COMMAND_PRIORITY, Value::Null());
        output.Properties.emplace_back(PROP_MAX_PRES_VALUE, Value::Real(100.0F));
        device.Objects.push_back(output);
        ObjectConfig log;
        log.Id = LOG;
        device.Objects.push_back(log);
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    std::optional<Value> Present(BACSTAC_OBJECT_ID object, BACSTAC_PROPERTY_ID property = PROP_PRESENT_VALUE) {
        return Site.FirstDevice().GetProperty(object, property);
    }
    RunningSite Site;
};

TEST_F(Write, ReplacesAValue) {
    EXPECT_EQ(Site.Ask(WriteValue("04 C0 00 02", "21 04")), WRITTEN);
    EXPECT_EQ(Present(STATES), Value::Unsigned(4));
    EXPECT_EQ(Site.FirstDevice().GetStats()[Counter::writeProperty], 1U);
}

TEST_F(Write, RefusesAnotherTypeAndWhatIsOutOfRange) {
    EXPECT_EQ(Site.Ask(WriteValue("04 C0 00 02", "44 3F 80 00 00")), WRONG_TYPE);
    EXPECT_EQ(Site.Ask(WriteValue("04 C0 00 02", "21 01 21 02")), WRONG_TYPE);
    EXPECT_EQ(Site.Ask(WriteValue("04 C0 00 02", "21 05")), OUT_OF_RANGE); // it has four states
    EXPECT_EQ(Site.Ask(WriteValue("04 C0 00 02", "21 00")), OUT_OF_RANGE);
    EXPECT_EQ(Site.Ask(WriteValue("04 C0 00 02", "00")), WRONG_TYPE);               // null, and nothing to relinquish
    EXPECT_EQ(Site.Ask(WriteValue("00 40 00 03", "44 42 CA 00 00")), OUT_OF_RANGE); // 101.0
    EXPECT_EQ(Present(STATES), Value::Unsigned(3));
}

TEST_F(Write, RefusesWhatIsNotThere) {
    EXPECT_EQ(Site.Ask(WriteValue("00 00 00 63", "21 01")), "50 01 0F 91 01 91 1F");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 00 00 00 01 19 0B 3E 21 01 3F"), "50 01 0F 91 02 91 20");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 55 29 01 3E 21 01 3F"), "50 01 0F 91 02 91 32");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 6E 29 05 3E 72 00 61 3F"), "50 01 0F 91 02 91 2A");
}

TEST_F(Write, RefusesWhatTellsWhatTheObjectIs) {
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 4F 3E 91 01 3F"), DENIED);                // object-type
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 00 40 00 03 19 57 29 08 3E 00 3F"), DENIED);             // priority-array[8]
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 00 04 D2 19 4C 29 01 3E C4 00 00 00 01 3F"), DENIED); // object-list[1]
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 02 00 04 D2 19 39 3E B4 0C 00 00 00 3F"), DENIED);       // local-time
}

TEST_F(Write, AnInputTakesAValueOnlyWhileItIsOutOfService) {
    EXPECT_EQ(Site.Ask(WriteValue("00 00 00 01", "44 40 00 00 00")), DENIED);
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 00 00 00 01 19 51 3E 11 3F"), WRITTEN);
    EXPECT_EQ(Present(INPUT, PROP_STATUS_FLAGS), Value::BitString(4, {3}));
    EXPECT_EQ(Site.Ask(WriteValue("00 00 00 01", "44 40 00 00 00")), WRITTEN);
    EXPECT_EQ(Present(INPUT), Value::Real(2.0F));
}

TEST_F(Write, CommandsByPriorityAndRelinquishes) {
    EXPECT_EQ(Present(OUTPUT, PROP_RELINQUISH_DEFAULT), Value::Real(5.0F));
    EXPECT_EQ(Site.Ask(WriteValue("00 40 00 03", "44 40 00 00 00")), WRITTEN);          // at 16
    EXPECT_EQ(Site.Ask(WriteValue("00 40 00 03", "44 40 40 00 00", "49 08")), WRITTEN); // 3.0 at 8
    EXPECT_EQ(Present(OUTPUT), Value::Real(3.0F));
    EXPECT_EQ(Present(OUTPUT, PROP_CURRENT_COMMAND_PRIORITY), Value::Unsigned(8));
    // priority-array[8] and [16]
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 00 40 00 03 19 57 29 08"),
              "30 01 0C 0C 00 40 00 03 19 57 29 08 3E 44 40 40 00 00 3F");
    EXPECT_EQ(Site.Ask("00 05 01 0C 0C 00 40 00 03 19 57 29 10"),
              "30 01 0C 0C 00 40 00 03 19 57 29 10 3E 44 40 00 00 00 3F");
    EXPECT_EQ(Site.Ask(WriteValue("00 40 00 03", "00", "49 08")), WRITTEN);
    EXPECT_EQ(Present(OUTPUT), Value::Real(2.0F));
    EXPECT_EQ(Site.Ask(WriteValue("00 40 00 03", "00")), WRITTEN);
    EXPECT_EQ(Present(OUTPUT), Value::Real(5.0F));
    EXPECT_EQ(Present(OUTPUT, PROP_CURRENT_COMMAND_PRIORITY), Value::Null());
}

TEST_F(Write, APriorityOutOfRangeIsRejectedAndTheReservedOneDenied) {
    EXPECT_EQ(Site.Ask(WriteValue("00 40 00 03", "00", "49 00")), "60 01 06");
    EXPECT_EQ(Site.Ask(WriteValue("00 40 00 03", "00", "49 11")), "60 01 06");
    EXPECT_EQ(Site.Ask(WriteValue("00 40 00 03", "44 40 00 00 00", "49 06")), DENIED);
}

TEST_F(Write, TheDefaultCountsAtOnceWhereNothingIsCommanded) {
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 00 40 00 03 19 68 3E 44 41 20 00 00 3F"), WRITTEN);
    EXPECT_EQ(Present(OUTPUT), Value::Real(10.0F));
}

TEST_F(Write, ElementsAndSizeOfAnArray) {
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 6E 29 02 3E 21 05 3F"), WRONG_TYPE);
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 6E 29 02 3E 74 00 6D 69 64 3F"), WRITTEN);
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 6E 29 00 3E 21 02 3F"), WRITTEN);
    const Value texts[] = {Value::String("off"), Value::String("mid")};
    EXPECT_EQ(Present(STATES, PROP_STATE_TEXT), Value::Array(texts));
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 6E 3E 72 00 61 72 00 62 72 00 63 3F"), WRITTEN);
    EXPECT_EQ(Present(STATES, PROP_STATE_TEXT)->Count(), 3U);
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 6E 29 00 3E 24 FF FF FF FF 3F"), "50 01 0F 91 03 91 14");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 00 40 00 03 19 57 29 00 3E 21 03 3F"), DENIED);
}

TEST_F(Write, ANameIsUniqueAndChangesTheDatabaseRevision) {
    // "Analog Input 1" is taken by the first object.
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 4D 3E 75 0F 00 41 6E 61 6C 6F 67 20 49 6E 70 75 74 20 31 3F"),
              "50 01 0F 91 02 91 30");
    EXPECT_EQ(Present({OBJ_DEVICE, 1234}, PROP_DATABASE_REVISION), Value::Unsigned(1));
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 4D 3E 72 00 61 3F"), WRITTEN);
    EXPECT_EQ(Present({OBJ_DEVICE, 1234}, PROP_DATABASE_REVISION), Value::Unsigned(2));
}

TEST_F(Write, SwitchesAndPurgesALog) {
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 05 00 00 04 19 85 3E 10 3F"), WRITTEN); // log-enable false
    EXPECT_FALSE(Site.FirstDevice().Append(LOG, {0, {LogDatum::Real(1)}, {}}));
    EXPECT_EQ(Site.FirstDevice().Records(LOG).size(), 1U);                             // "log disabled"
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 05 00 00 04 19 8D 3E 21 05 3F"), OUT_OF_RANGE); // record-count
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 05 00 00 04 19 8D 3E 21 00 3F"), WRITTEN);
    ASSERT_EQ(Site.FirstDevice().Records(LOG).size(), 1U); // "buffer purged"
    EXPECT_EQ(Site.FirstDevice().Records(LOG)[0].Data[0].Value.LogStatus.Bits[0], 3U);
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 05 00 00 04 19 7E 3E 21 05 3F"), DENIED); // buffer-size
}

TEST_F(Write, MalformedRequestsAreRejectedAndChangeNothing) {
    EXPECT_EQ(Site.Ask("00 05 01 0F"), "60 01 05");
    EXPECT_EQ(Site.Ask("00 05 01 0F 0C 04 C0 00 02 19 55 3E 21 04"), "60 01 04");
    EXPECT_EQ(Site.Ask("00 05 01 10 0C 04 C0 00 02 1E 09 55 2E 21 04 2F 09 55 2E 21 02"), "60 01 04");
    EXPECT_EQ(Present(STATES), Value::Unsigned(3));
}

TEST_F(Write, SeveralPropertiesOfSeveralObjects) {
    // State_Text[1] of one, the present value of the other at priority 5.
    EXPECT_EQ(Site.Ask("00 05 01 10 0C 04 C0 00 02 1E 09 6E 19 01 2E 72 00 78 2F 1F "
                       "0C 00 40 00 03 1E 09 55 2E 44 40 00 00 00 2F 39 05 1F"),
              "20 01 10");
    EXPECT_EQ(Present(OUTPUT, PROP_CURRENT_COMMAND_PRIORITY), Value::Unsigned(5));
    EXPECT_EQ(ToHex(Present(STATES, PROP_STATE_TEXT)->Element(0)), "72 00 78");
}

TEST_F(Write, StopsAtTheFirstFailureAndNamesIt) {
    // Present value 1, then State_Text[9], then present value 2.
    EXPECT_EQ(
        Site.Ask("00 05 01 10 0C 04 C0 00 02 1E 09 55 2E 21 01 2F 09 6E 19 09 2E 72 00 78 2F 09 55 2E 21 02 2F 1F"),
        "50 01 10 0E 91 02 91 2A 0F 1E 0C 04 C0 00 02 19 6E 29 09 1F");
    EXPECT_EQ(Present(STATES), Value::Unsigned(1));
}

class WriteList : public ::testing::Test {
protected:
    void SetUp() override {
        DeviceConfig device = SmallDevice(Site.Block);
        ObjectConfig calendar;
        calendar.Id = {OBJ_CALENDAR, 1};
        calendar.Properties.emplace_back(PROP_DATE_LIST, Value::List({}));
        device.Objects.push_back(calendar);
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    std::string DateList() { return ToHex(Site.FirstDevice().GetProperty({OBJ_CALENDAR, 1}, PROP_DATE_LIST)->Wire()); }
    RunningSite Site;
};

// [0] date 24 December 2026; [2] week-n-day: any month, last week, Monday.
const std::string CHRISTMAS = "0C 7E 0C 18 04";
const std::string MONDAYS = "2B FF 06 01";
const std::string CALENDAR = "0C 01 80 00 01 19 17 ";

TEST_F(WriteList, TakesElementsOnce) {
    EXPECT_EQ(Site.Ask("00 05 01 08 " + CALENDAR + "3E " + CHRISTMAS + " " + MONDAYS + " 3F"), "20 01 08");
    EXPECT_EQ(Site.Ask("00 05 01 08 " + CALENDAR + "3E " + MONDAYS + " 3F"), "20 01 08");
    EXPECT_EQ(DateList(), CHRISTMAS + " " + MONDAYS);
    EXPECT_EQ(Site.Ask("00 05 01 09 " + CALENDAR + "3E " + CHRISTMAS + " 3F"), "20 01 09");
    EXPECT_EQ(DateList(), MONDAYS);
}

TEST_F(WriteList, TellsWhichElementIsWrongAndTakesNone) {
    EXPECT_EQ(Site.Ask("00 05 01 08 " + CALENDAR + "3E " + CHRISTMAS + " 21 05 3F"),
              "50 01 08 0E 91 02 91 09 0F 19 02");
    EXPECT_EQ(Site.Ask("00 05 01 09 " + CALENDAR + "3E " + CHRISTMAS + " 3F"), "50 01 09 0E 91 05 91 51 0F 19 01");
    EXPECT_EQ(DateList(), "");
}

TEST_F(WriteList, WantsAList) {
    EXPECT_EQ(Site.Ask("00 05 01 08 0C 04 C0 00 02 19 6E 3E 72 00 61 3F"), "50 01 08 0E 91 05 91 16 0F 19 00");
    EXPECT_EQ(Site.Ask("00 05 01 08 0C 00 00 00 63 19 6E 3E 72 00 61 3F"), "50 01 08 0E 91 01 91 1F 0F 19 00");
    EXPECT_EQ(Site.Ask("00 05 01 08 " + CALENDAR + "3E " + CHRISTMAS), "60 01 04");
}

TEST_F(WriteList, WritesTheWholeList) {
    EXPECT_EQ(Site.Ask("00 05 01 0F " + CALENDAR + "3E " + CHRISTMAS + " " + MONDAYS + " 3F"), "20 01 0F");
    EXPECT_EQ(Site.FirstDevice().GetProperty({OBJ_CALENDAR, 1}, PROP_DATE_LIST)->Count(), 2U);
    EXPECT_EQ(Site.Ask("00 05 01 0F " + CALENDAR + "3E 3F"), "20 01 0F");
    EXPECT_EQ(DateList(), "");
}

} // namespace
} // namespace sim::testing
