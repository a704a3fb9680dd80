#include "host/bacnet/ValueText.h"

#include "api/bacnet/BacGeneral.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace {

using testing::HasSubstr;

// The value as the library prints it, with its type before it; or the error.
std::string Parsed(std::string_view text, const ValueType& type) {
    CTypedValue value;
    std::string error;
    if (!ParseValue(text, type, value, error))
        return "error: " + error;
    char printed[512] = "";
    BACSTAC_PROPERTY_CONTENTS contents = value.Contents();
    CBacGeneral::PrintContents(printed, sizeof printed, contents, OBJ_NO_TYPE, PROP_NO_PROPERTY, BACSTAC_NO_INDEX);
    return std::to_string(value.Type()) + " " + printed;
}

std::string Parsed(std::string_view text, BACSTAC_DATA_TYPE type) {
    return Parsed(text, ValueType{type, false, ENUM_NONE});
}

// As a property of an object takes it.
std::string Written(const char* text, BACSTAC_OBJECT_TYPE object, BACSTAC_PROPERTY_ID property,
                    int index = BACSTAC_NO_INDEX) {
    return Parsed(text, StandardType(object, property, index));
}

struct Row {
    const char* text;
    BACSTAC_DATA_TYPE type;
    const char* expected;
};

} // namespace

TEST(ValueText, OfEveryTypeThatCanBeWritten) {
    const Row rows[] = {
        {"null", TYPE_REAL, "0 null"},
        {"null", TYPE_STRING, "0 null"},
        {"null", TYPE_NULL, "0 null"},
        {"true", TYPE_BOOLEAN, "1 true"},
        {"0", TYPE_BOOLEAN, "1 false"},
        {"4294967295", TYPE_UNSIGNED, "2 4294967295"},
        {"-2147483648", TYPE_SIGNED, "3 -2147483648"},
        {"21.5", TYPE_REAL, "4 21.5"},
        {"-1e3", TYPE_REAL, "4 -1000"},
        {"21", TYPE_REAL, "4 21"},
        {"1e300", TYPE_DOUBLE, "5 1e+300"},
        {"0a1B2c", TYPE_OCTET_STRING, "6 0A1B2C"},
        {"0x0a", TYPE_OCTET_STRING, "6 0A"},
        {"", TYPE_OCTET_STRING, "6 "},
        {"Room 5", TYPE_STRING, "13 Room 5"},
        {"\"null\"", TYPE_STRING, "13 null"},
        {"\"a \\\"b\\\" \\\\\"", TYPE_STRING, "13 a \"b\" \\"},
        {"", TYPE_STRING, "13 "},
        {"\xC3\xBC", TYPE_STRING, "13 \xC3\xBC"},
        {"0100", TYPE_BIT_STRING, "8 {bit-1}"},
        {"{}", TYPE_BIT_STRING, "8 {}"},
        {"{1, bit-3}", TYPE_BIT_STRING, "8 {bit-1, bit-3}"},
        {"7", TYPE_ENUMERATED, "9 7"},
        {"2026-11-21", TYPE_DATE, "10 21/11/2026"},
        {"14:30:05.25", TYPE_TIME, "11 14:30:05.25"},
        {"14:30", TYPE_TIME, "11 14:30:00.00"},
        {"14:30:05.5", TYPE_TIME, "11 14:30:05.50"},
        {"ai:1", TYPE_OBJECT_ID, "12 (analog-input, 1)"},
        {"2026-11-21 14:30:05", TYPE_DATE_TIME, "21 (21/11/2026, 14:30:05.00)"},
        {"2026-11-21T14:30", TYPE_DATE_TIME, "21 (21/11/2026, 14:30:00.00)"},
        {"ai:1/pv", TYPE_OBJ_PROP_REF, "22 (analog-input, 1, present-value)"},
        {"1000/ai:1/pa[8]", TYPE_DEV_OBJ_PROP_REF, "37 (device, 1000, analog-input, 1, priority-array[8])"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Parsed(row.text, row.type), row.expected) << row.text << " as type " << row.type;
}

TEST(ValueText, WithoutATypeIsWhatItLooksLike) {
    const Row rows[] = {
        {"null", TYPE_NONE, "0 null"},
        {"true", TYPE_NONE, "1 true"},
        {"21", TYPE_NONE, "2 21"},
        {"-21", TYPE_NONE, "3 -21"},
        {"21.5", TYPE_ANY, "4 21.5"},
        {"\"21\"", TYPE_NONE, "13 21"},
        {"{1}", TYPE_NONE, "8 {bit-1}"},
        {"2026-11-21", TYPE_NONE, "10 21/11/2026"},
        {"14:30:00", TYPE_NONE, "11 14:30:00.00"},
        {"2026-11-21 14:30", TYPE_NONE, "21 (21/11/2026, 14:30:00.00)"},
        {"ai:1", TYPE_NONE, "12 (analog-input, 1)"},
        {"text", TYPE_NONE, "error: what \"text\" is to be is not clear: put text into double quotes, or give --type"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Parsed(row.text, row.type), row.expected) << row.text;
}

TEST(ValueText, ThatDoesNotFitItsTypeIsRefusedWithWhatIsExpected) {
    const Row rows[] = {
        {"maybe", TYPE_BOOLEAN, "error: \"maybe\" is not true or false"},
        {"-1", TYPE_UNSIGNED, "error: \"-1\" is not a whole number from 0 to 4294967295"},
        {"4294967296", TYPE_UNSIGNED, "error: \"4294967296\" is not a whole number from 0 to 4294967295"},
        {"21.5", TYPE_UNSIGNED, "error: \"21.5\" is not a whole number from 0 to 4294967295"},
        {"2147483648", TYPE_SIGNED, "error: \"2147483648\" is not a whole number from -2147483648 to 2147483647"},
        {"21,5", TYPE_REAL, "error: \"21,5\" is not a number that a real can hold, as 21.5"},
        {"1e39", TYPE_REAL, "error: \"1e39\" is not a number that a real can hold, as 21.5"},
        {"1e309", TYPE_DOUBLE, "error: \"1e309\" is not a number, as 21.5"},
        {"0a1", TYPE_OCTET_STRING, "error: \"0a1\" is not octets in hexadecimal pairs, as 0a1b2c"},
        {"0g", TYPE_OCTET_STRING, "error: \"0g\" is not octets in hexadecimal pairs, as 0a1b2c"},
        {"active", TYPE_ENUMERATED, "error: \"active\" is not a number"},
        {"{96}", TYPE_BIT_STRING, "error: \"96\" is not a bit: a number from 0 to 95"},
        {"12", TYPE_BIT_STRING,
         "error: \"12\" is not a bit string: give the names of its bits in braces, as {in-alarm, fault}, or every bit, "
         "as 0100"},
        {"2026-02-29", TYPE_DATE, "error: \"2026-02-29\" is not a date, as 2026-11-21 or *-12-25"},
        {"24:00", TYPE_TIME, "error: \"24:00\" is not a time, as 14:30:00.00 or *:00"},
        {"2026-11-21", TYPE_DATE_TIME, "error: \"2026-11-21\" is not a date and time, as 2026-11-21 14:30:00"},
        {"1000/ai:1/pv", TYPE_OBJ_PROP_REF, "error: \"1000/ai:1/pv\" is not a reference within the device, as ai:1/pv"},
        {"1", TYPE_NULL, "error: \"1\" is not null"},
        {"1", TYPE_DESTINATION,
         "error: a value of type destination cannot be written as text: give it as JSON, in the form that "
         "read --json shows"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Parsed(row.text, row.type), row.expected) << row.text;
    EXPECT_THAT(Parsed("axe:1", TYPE_OBJECT_ID), HasSubstr("\"axe\" is no object type"));
    EXPECT_THAT(Parsed("ai:1", TYPE_DEV_OBJ_PROP_REF), HasSubstr("is no reference"));
}

TEST(ValueText, TakesTheTypeAndTheNamesOfTheProperty) {
    EXPECT_EQ(Written("21.5", OBJ_ANALOG_VALUE, PROP_PRESENT_VALUE), "4 21.5");
    EXPECT_EQ(Written("active", OBJ_BINARY_VALUE, PROP_PRESENT_VALUE), "9 1");
    EXPECT_EQ(Written("1", OBJ_BINARY_VALUE, PROP_PRESENT_VALUE), "9 1");
    EXPECT_EQ(Written("on", OBJ_BINARY_VALUE, PROP_PRESENT_VALUE),
              "error: \"on\" is not one of inactive, active, or a number");
    EXPECT_EQ(Written("degrees-celsius", OBJ_ANALOG_VALUE, 117), "9 62");
    EXPECT_EQ(Written("celsius", OBJ_ANALOG_VALUE, 117),
              "error: \"celsius\" is not one of the names of this property, or a number");
    EXPECT_EQ(Written("3", OBJ_MULTI_STATE_VALUE, PROP_PRESENT_VALUE), "2 3");
    EXPECT_EQ(Written("Boiler", OBJ_ANALOG_VALUE, PROP_OBJECT_NAME), "13 Boiler");
    EXPECT_EQ(Written("true", OBJ_ANALOG_VALUE, 81), "1 true");
    EXPECT_EQ(Written("{high-limit-enable}", OBJ_ANALOG_VALUE, 52), "8 {bit-1}");
    EXPECT_EQ(Written("{low-limit-enable}", OBJ_ANALOG_VALUE, 52), "8 {bit-0}");
    EXPECT_EQ(Written("null", OBJ_ANALOG_OUTPUT, PROP_PRESENT_VALUE), "0 null");
}

TEST(ValueText, ABitStringHasAllBitsOfItsProperty) {
    CTypedValue value;
    std::string error;
    ASSERT_TRUE(ParseValue("{fault}", StandardType(OBJ_ANALOG_VALUE, PROP_STATUS_FLAGS, -1), value, error)) << error;
    BACSTAC_BIT_STRING bits;
    std::memcpy(&bits, value.Contents().Buffer, sizeof bits);
    EXPECT_EQ(bits.BitCount, 4U);
    EXPECT_TRUE(CBacGeneral::TestBitStringBit(bits, 1));
}

TEST(ValueText, OfAnArrayIsAListAndOfItsElementsIsNot) {
    constexpr BACSTAC_PROPERTY_ID STATE_TEXT = 110;
    EXPECT_EQ(Written("{off, \"on, fast\", }", OBJ_MULTI_STATE_VALUE, STATE_TEXT), "13 {off, on, fast}");
    EXPECT_EQ(Written("{}", OBJ_MULTI_STATE_VALUE, STATE_TEXT), "13 {}");
    EXPECT_EQ(Written("off", OBJ_MULTI_STATE_VALUE, STATE_TEXT),
              "error: \"off\" is not a list in braces, as in {1, 2}");
    EXPECT_EQ(Written("off", OBJ_MULTI_STATE_VALUE, STATE_TEXT, 1), "13 off");
    EXPECT_EQ(Written("3", OBJ_MULTI_STATE_VALUE, STATE_TEXT, 0), "2 3") << "element 0 is the size";
    EXPECT_EQ(Parsed("{{1}, {2}}", {TYPE_BIT_STRING, true, ENUM_NONE}), "8 {{bit-1}, {bit-2}}");
    EXPECT_EQ(Parsed("{1, x}", {TYPE_UNSIGNED, true, ENUM_NONE}),
              "error: \"x\" is not a whole number from 0 to 4294967295");
    EXPECT_EQ(Parsed("{01, 0203040506}", {TYPE_OCTET_STRING, true, ENUM_NONE}), "6 {01, 0203040506}");
}

TEST(ValueText, KnowsTheTypesByTheirNames) {
    EXPECT_EQ(DataTypeByName("real"), TYPE_REAL);
    EXPECT_EQ(DataTypeByName("character-string"), TYPE_STRING);
    EXPECT_EQ(DataTypeByName("date-time"), TYPE_DATE_TIME);
    EXPECT_EQ(DataTypeByName("destination"), std::nullopt);
    EXPECT_EQ(DataTypeByName(""), std::nullopt);
}

TEST(DateText, TakesPatternsAndComputesTheWeekday) {
    BACSTAC_DATE date{};
    ASSERT_TRUE(ParseDate("2026-11-21", date));
    EXPECT_EQ(date.Weekday, 6U) << "a Saturday";
    ASSERT_TRUE(ParseDate("2026-11-22", date));
    EXPECT_EQ(date.Weekday, 7U) << "a Sunday";
    ASSERT_TRUE(ParseDate("*-*-*", date));
    EXPECT_EQ(date.Year, BACSTAC_ANY_YEAR);
    EXPECT_EQ(date.Month, BACSTAC_ANY_MONTH);
    EXPECT_EQ(date.Day, BACSTAC_ANY_DAY);
    EXPECT_EQ(date.Weekday, BACSTAC_ANY_WEEKDAY);
    ASSERT_TRUE(ParseDate("*-odd-last fri", date));
    EXPECT_EQ(date.Month, 13U);
    EXPECT_EQ(date.Day, 32U);
    EXPECT_EQ(date.Weekday, 5U);
    EXPECT_TRUE(ParseDate("2026-11-21 sat", date));
    for (const char* text : {"2026-11-21 sun", "2026-11-31", "2026-13-01", "2026-11-0", "1899-01-01", "2155-01-01",
                             "2026-11", "2026-11-21-1", "2026-11-21 someday", "", "*", "26-11-21"})
        EXPECT_FALSE(ParseDate(text, date)) << text;
}

TEST(TimeText, OfDayTakesPatterns) {
    BACSTAC_TIME time{};
    ASSERT_TRUE(ParseTimeOfDay("*:30:*.*", time));
    EXPECT_EQ(time.Hour, 255);
    EXPECT_EQ(time.Minute, 30);
    EXPECT_EQ(time.Second, 255);
    EXPECT_EQ(time.Hundredths, 255);
    for (const char* text :
         {"", "14", "14:60", "14:30:60", "14:30:00.100", "14:30:00.", "14:30.5", "14:30:00:00", "1 4:30"})
        EXPECT_FALSE(ParseTimeOfDay(text, time)) << text;
}
