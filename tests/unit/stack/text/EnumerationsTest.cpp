// The tables of enumerations.
#include "platform/stack/schema/Enumerations.h"

#include "platform/stack/schema/ObjectTypes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using namespace bacnet;

namespace {

std::vector<std::string> Names(ENUM_TYPE_ID type) {
    std::vector<std::string> names;
    for (std::uint32_t value = 0; value < EnumCount(type); ++value)
        names.push_back(FindEnumName(type, value));
    return names;
}

} // namespace

TEST(Enumerations, EveryOneHasDistinctNamesWithoutAGap) {
    for (ENUM_TYPE_ID type = 1; type <= ENUM_LAST; ++type) {
        if (type == ENUM_NONE || type == ENUM_PROPERTY_ID)
            continue;
        const std::vector<std::string> names = Names(type);
        EXPECT_GE(names.size(), 2U) << type;
        EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size()) << type;
        for (const std::string& name : names)
            EXPECT_EQ(name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string::npos) << name;
        EXPECT_EQ(FindEnumName(type, EnumCount(type)), nullptr) << type;
    }
}

TEST(Enumerations, WithoutNamesCountNothing) {
    for (const ENUM_TYPE_ID type : {-1, 0, ENUM_NONE, ENUM_LAST + 1, 0x7FFFFFFF}) {
        EXPECT_EQ(EnumCount(type), 0U);
        EXPECT_EQ(FindEnumName(type, 0), nullptr);
    }
    EXPECT_EQ(EnumCount(ENUM_PROPERTY_ID), 0U);
    EXPECT_STREQ(FindEnumName(ENUM_PROPERTY_ID, 85), "present-value");
}

TEST(Enumerations, HaveTheIdentifiersThatCallersPass) {
    EXPECT_EQ(Names(8), (std::vector<std::string>{"normal", "fault", "offnormal", "high-limit", "low-limit",
                                                  "life-safety-alarm"}));
    EXPECT_EQ(Names(9), (std::vector<std::string>{"to-offnormal", "to-fault", "to-normal"}));
    EXPECT_STREQ(FindEnumName(10, 5), "out-of-range");
    EXPECT_EQ(Names(12), (std::vector<std::string>{"alarm", "event", "ack-notification"}));
    EXPECT_EQ(Names(20), (std::vector<std::string>{"in-alarm", "fault", "overridden", "out-of-service"}));
    EXPECT_EQ(Names(31), (std::vector<std::string>{"log-disabled", "buffer-purged", "log-interrupted"}));
    EXPECT_EQ(EnumCount(42), 0U);
}

TEST(Enumerations, HaveTheirNumbers) {
    EXPECT_STREQ(FindEnumName(ENUM_UNITS, 62), "degrees-celsius");
    EXPECT_STREQ(FindEnumName(ENUM_UNITS, 95), "no-units");
    EXPECT_STREQ(FindEnumName(ENUM_UNITS, 166), "meters-per-second-per-second");
    EXPECT_STREQ(FindEnumName(ENUM_UNITS, 254), "million-standard-cubic-feet-per-minute");
    EXPECT_STREQ(FindEnumName(ENUM_UNITS, 47812), "pounds-mass-per-day");
    EXPECT_EQ(FindEnumName(ENUM_UNITS, 255), nullptr);
    EXPECT_STREQ(FindEnumName(ENUM_ERROR_CODE, 31), "unknown-object");
    EXPECT_STREQ(FindEnumName(ENUM_ERROR_CODE, 32), "unknown-property");
    EXPECT_STREQ(FindEnumName(ENUM_ERROR_CODE, 40), "write-access-denied");
    EXPECT_STREQ(FindEnumName(ENUM_ERROR_CODE, 142), "invalid-data-encoding");
    EXPECT_STREQ(FindEnumName(ENUM_REJECT_REASON, 9), "unrecognized-service");
    EXPECT_STREQ(FindEnumName(ENUM_ABORT_REASON, 4), "segmentation-not-supported");
    EXPECT_STREQ(FindEnumName(ENUM_SERVICES_SUPPORTED, 35), "read-range");
    EXPECT_STREQ(FindEnumName(ENUM_OBJECT_TYPES_SUPPORTED, 20), "trend-log");
    EXPECT_STREQ(FindEnumName(ENUM_RELIABILITY, 12), "communication-failure");
    EXPECT_STREQ(FindEnumName(ENUM_ACCESS_EVENT, 164), "denied-other");
    EXPECT_EQ(FindEnumName(ENUM_ACCESS_EVENT, 100), nullptr);
}

TEST(EnumTypes, OfPropertyStatesAreFoundThroughTheEventEnrollment) {
    const std::pair<BACSTAC_PROPERTY_ID, ENUM_TYPE_ID> states[] = {
        {85, ENUM_BINARY_PV},       {37, ENUM_EVENT_TYPE},        {84, ENUM_POLARITY},
        {90, ENUM_PROGRAM_REQUEST}, {92, ENUM_PROGRAM_STATE},     {100, ENUM_PROGRAM_ERROR},
        {103, ENUM_RELIABILITY},    {36, ENUM_EVENT_STATE},       {112, ENUM_DEVICE_STATUS},
        {117, ENUM_UNITS},          {160, ENUM_LIFE_SAFETY_MODE}, {164, ENUM_LIFE_SAFETY_STATE},
        {196, ENUM_RESTART_REASON}, {226, ENUM_DOOR_ALARM_STATE},
    };
    for (const auto& [property, type] : states)
        EXPECT_EQ(FindEnumType(9, property), type) << property;
}

TEST(EnumTypes, OfAValueFollowTheObjectType) {
    EXPECT_EQ(FindEnumType(OBJ_BINARY_OUTPUT, PROP_PRESENT_VALUE), ENUM_BINARY_PV);
    EXPECT_EQ(FindEnumType(OBJ_BINARY_OUTPUT, 104), ENUM_BINARY_PV);
    EXPECT_EQ(FindEnumType(OBJ_BINARY_OUTPUT, 87), ENUM_BINARY_PV);
    EXPECT_EQ(FindEnumType(OBJ_BINARY_INPUT, 6), ENUM_BINARY_PV);
    EXPECT_EQ(FindEnumType(OBJ_LIFE_SAFETY_ZONE, PROP_PRESENT_VALUE), ENUM_LIFE_SAFETY_STATE);
    EXPECT_EQ(FindEnumType(OBJ_ACCESS_DOOR, PROP_PRESENT_VALUE), ENUM_DOOR_VALUE);
    EXPECT_EQ(FindEnumType(OBJ_ACCESS_DOOR, 7), ENUM_DOOR_ALARM_STATE);
    EXPECT_EQ(FindEnumType(OBJ_ANALOG_INPUT, PROP_PRESENT_VALUE), ENUM_NONE);
    EXPECT_EQ(FindEnumType(128, PROP_PRESENT_VALUE), ENUM_NONE);
    EXPECT_EQ(FindEnumType(128, PROP_STATUS_FLAGS), ENUM_STATUS_FLAGS);
    EXPECT_EQ(FindEnumType(OBJ_NO_TYPE, PROP_NO_PROPERTY), ENUM_NONE);
}

TEST(EnumTypes, EveryEnumeratedPropertyOfTheStandardHasOne) {
    // These bits have no names: a bit string's own value and masks, and one flag for each priority.
    const std::set<BACSTAC_PROPERTY_ID> unnamed{7, PROP_PRESENT_VALUE, 104, 342, 500};
    for (const ObjectTypeInfo& type : AllObjectTypes()) {
        for (const PropertyInfo& property : type.Properties) {
            const bool named = property.Type == TYPE_ENUMERATED ||
                               (property.Type == TYPE_BIT_STRING && unnamed.count(property.Property) == 0);
            if (named) {
                EXPECT_NE(FindEnumType(type.Type, property.Property), ENUM_NONE)
                    << type.Name << ' ' << property.Property;
            }
        }
    }
}
