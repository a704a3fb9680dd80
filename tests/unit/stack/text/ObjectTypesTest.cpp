// The tables of object types and properties.
#include "platform/stack/schema/ObjectTypes.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/schema/PropertyNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace bacnet;
using testing::IsSupersetOf;

namespace {

constexpr BACSTAC_OBJECT_TYPE PROPRIETARY = 128;

std::set<BACSTAC_PROPERTY_ID> Required(BACSTAC_OBJECT_TYPE type) {
    std::set<BACSTAC_PROPERTY_ID> required;
    for (const PropertyInfo& property : ObjectProperties(type)) {
        if (property.Required)
            required.insert(property.Property);
    }
    return required;
}

struct Shaped {
    BACSTAC_DATA_TYPE Type;
    PropertyShape Shape;
    bool operator==(const Shaped&) const = default;
};

Shaped ShapeOf(BACSTAC_OBJECT_TYPE type, BACSTAC_PROPERTY_ID property) {
    const PropertyInfo* const info = FindProperty(type, property);
    return info == nullptr ? Shaped{-100, PropertyShape::single} : Shaped{info->Type, info->Shape};
}

constexpr PropertyShape SINGLE = PropertyShape::single;
constexpr PropertyShape LIST = PropertyShape::list;
constexpr PropertyShape ARRAY = PropertyShape::array;

} // namespace

TEST(ObjectTypes, AreAllOfTheStandardWithDistinctNames) {
    std::set<std::string> names;
    for (const ObjectTypeInfo& type : AllObjectTypes()) {
        EXPECT_EQ(FindObjectType(type.Type), &type);
        names.insert(type.Name);
    }
    EXPECT_EQ(AllObjectTypes().size(), 65U);
    EXPECT_EQ(names.size(), 65U);
    EXPECT_EQ(FindObjectType(65), nullptr);
    EXPECT_EQ(FindObjectType(PROPRIETARY), nullptr);
    EXPECT_EQ(FindObjectType(0xFFFFFFFFU), nullptr);
}

TEST(ObjectTypes, HaveTheirNumbers) {
    const std::pair<BACSTAC_OBJECT_TYPE, const char*> pinned[] = {
        {0, "analog-input"},       {8, "device"},        {9, "event-enrollment"}, {15, "notification-class"},
        {19, "multi-state-value"}, {20, "trend-log"},    {25, "event-log"},       {27, "trend-log-multiple"},
        {30, "access-door"},       {31, "timer"},        {39, "bitstring-value"}, {51, "notification-forwarder"},
        {54, "lighting-output"},   {56, "network-port"}, {62, "audit-reporter"},
    };
    for (const auto& [type, name] : pinned)
        EXPECT_STREQ(FindObjectType(type)->Name, name);
}

TEST(ObjectTypes, EveryTypeHasWhatEveryObjectHas) {
    for (const ObjectTypeInfo& type : AllObjectTypes())
        EXPECT_THAT(Required(type.Type), IsSupersetOf({75U, 77U, 79U, 371U})) << type.Name;
}

TEST(ObjectTypes, PropertiesAreNamed) {
    for (const ObjectTypeInfo& type : AllObjectTypes()) {
        for (const PropertyInfo& property : type.Properties)
            EXPECT_NE(FindPropertyName(property.Property), nullptr) << type.Name << ' ' << property.Property;
    }
}

TEST(ObjectTypes, RequiredPropertiesAreThere) {
    EXPECT_THAT(Required(OBJ_ANALOG_INPUT), IsSupersetOf({85U, 111U, 36U, 81U, 117U}));
    EXPECT_THAT(Required(OBJ_ANALOG_OUTPUT), IsSupersetOf({85U, 111U, 36U, 81U, 117U, 87U, 104U}));
    EXPECT_THAT(Required(OBJ_BINARY_INPUT), IsSupersetOf({85U, 111U, 36U, 81U, 84U}));
    EXPECT_THAT(Required(OBJ_MULTI_STATE_VALUE), IsSupersetOf({85U, 111U, 36U, 81U, 74U}));
    EXPECT_THAT(Required(OBJ_DEVICE), IsSupersetOf({112U, 121U, 120U, 70U, 44U, 12U, 98U, 139U, 97U, 96U, 76U, 62U,
                                                    107U, 11U, 73U, 30U, 155U}));
    EXPECT_THAT(Required(OBJ_TREND_LOG), IsSupersetOf({133U, 144U, 126U, 131U, 141U, 145U, 197U, 36U, 111U}));
    EXPECT_THAT(Required(OBJ_TREND_LOG_MULTIPLE), IsSupersetOf({133U, 132U, 197U, 134U, 131U, 141U, 145U}));
    EXPECT_THAT(Required(OBJ_EVENT_LOG), IsSupersetOf({133U, 131U, 126U, 141U, 145U}));
    EXPECT_THAT(Required(15), IsSupersetOf({17U, 86U, 1U, 102U}));
    EXPECT_THAT(Required(17), IsSupersetOf({85U, 32U, 174U, 54U, 88U, 111U, 103U, 81U}));
}

TEST(ObjectTypes, WritableImpliesRequired) {
    for (const ObjectTypeInfo& type : AllObjectTypes()) {
        for (const PropertyInfo& property : type.Properties)
            EXPECT_TRUE(property.Required || !property.Writable) << type.Name << ' ' << property.Property;
    }
    EXPECT_TRUE(FindProperty(OBJ_ANALOG_OUTPUT, 85)->Writable);
    EXPECT_FALSE(FindProperty(OBJ_ANALOG_INPUT, 85)->Writable);
}

TEST(ObjectTypes, CommandabilityFollowsThePriorityArray) {
    std::set<BACSTAC_OBJECT_TYPE> always;
    std::set<BACSTAC_OBJECT_TYPE> possibly;
    for (const ObjectTypeInfo& type : AllObjectTypes()) {
        if (type.IsCommandable == Commandable::always)
            always.insert(type.Type);
        if (type.IsCommandable == Commandable::possibly)
            possibly.insert(type.Type);
    }
    EXPECT_EQ(always, (std::set<BACSTAC_OBJECT_TYPE>{1, 4, 14, 30, 54, 55}));
    EXPECT_EQ(possibly, (std::set<BACSTAC_OBJECT_TYPE>{2, 5, 19, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50}));
}

TEST(FindProperty, GivesTypeAndShape) {
    EXPECT_EQ(ShapeOf(OBJ_ANALOG_INPUT, PROP_PRESENT_VALUE), (Shaped{TYPE_REAL, SINGLE}));
    EXPECT_EQ(ShapeOf(OBJ_BINARY_VALUE, PROP_PRESENT_VALUE), (Shaped{TYPE_ENUMERATED, SINGLE}));
    EXPECT_EQ(ShapeOf(11, PROP_PRESENT_VALUE), (Shaped{TYPE_READ_ACCESS_RESULT, LIST}));
    EXPECT_EQ(ShapeOf(OBJ_DEVICE, PROP_OBJECT_LIST), (Shaped{TYPE_OBJECT_ID, ARRAY}));
    EXPECT_EQ(ShapeOf(OBJ_DEVICE, 30), (Shaped{TYPE_ADDRESS_BINDING, LIST}));
    EXPECT_EQ(ShapeOf(OBJ_TREND_LOG, PROP_LOG_DEVICE_OBJECT_PROPERTY), (Shaped{TYPE_DEV_OBJ_PROP_REF, SINGLE}));
    EXPECT_EQ(ShapeOf(OBJ_TREND_LOG_MULTIPLE, PROP_LOG_DEVICE_OBJECT_PROPERTY), (Shaped{TYPE_DEV_OBJ_PROP_REF, ARRAY}));
    EXPECT_EQ(ShapeOf(OBJ_TREND_LOG, PROP_LOG_BUFFER), (Shaped{TYPE_LOG_RECORD, LIST}));
    EXPECT_EQ(ShapeOf(OBJ_EVENT_LOG, PROP_LOG_BUFFER), (Shaped{TYPE_EVENT_LOG_RECORD, LIST}));
    EXPECT_EQ(ShapeOf(OBJ_TREND_LOG_MULTIPLE, PROP_LOG_BUFFER), (Shaped{TYPE_LOG_MULTIPLE_RECORD, LIST}));
    EXPECT_EQ(ShapeOf(9, 83), (Shaped{TYPE_EVENT_PARAMETER, SINGLE}));
    EXPECT_EQ(ShapeOf(46, 22), (Shaped{TYPE_DOUBLE, SINGLE}));
    EXPECT_EQ(ShapeOf(45, 25), (Shaped{TYPE_UNSIGNED, SINGLE}));
}

TEST(FindProperty, FallsBackToThePropertyWhenAllTypesAgree) {
    EXPECT_EQ(ShapeOf(PROPRIETARY, PROP_STATUS_FLAGS), (Shaped{TYPE_BIT_STRING, SINGLE}));
    EXPECT_EQ(ShapeOf(PROPRIETARY, 130), (Shaped{TYPE_TIME_STAMP, ARRAY}));
    EXPECT_EQ(ShapeOf(OBJ_CALENDAR, PROP_STATUS_FLAGS), (Shaped{TYPE_BIT_STRING, SINGLE}));
    EXPECT_FALSE(FindProperty(PROPRIETARY, PROP_OBJECT_NAME)->Required);
}

TEST(FindProperty, IsNullWhereTypesDisagreeOrNoneHasIt) {
    EXPECT_EQ(FindProperty(PROPRIETARY, PROP_PRESENT_VALUE), nullptr);
    EXPECT_EQ(FindProperty(9, PROP_PRESENT_VALUE), nullptr);
    EXPECT_EQ(FindProperty(PROPRIETARY, PROP_LOG_BUFFER), nullptr);
    EXPECT_EQ(FindProperty(OBJ_ANALOG_INPUT, PROP_ALL), nullptr);
    EXPECT_EQ(FindProperty(OBJ_ANALOG_INPUT, 600), nullptr);
    EXPECT_EQ(FindProperty(OBJ_NO_TYPE, PROP_NO_PROPERTY), nullptr);
}

TEST(PropertyNames, AreFoundBothWays) {
    EXPECT_STREQ(FindPropertyName(0), "acked-transitions");
    EXPECT_STREQ(FindPropertyName(PROP_PRESENT_VALUE), "present-value");
    EXPECT_STREQ(FindPropertyName(133), "log-enable");
    EXPECT_STREQ(FindPropertyName(PROP_TOTAL_RECORD_COUNT), "total-record-count");
    EXPECT_STREQ(FindPropertyName(371), "property-list");
    EXPECT_STREQ(FindPropertyName(511), "issuer-certificate-files");
    EXPECT_STREQ(FindPropertyName(4194304), "max-bvlc-length-accepted");
    EXPECT_EQ(FindPropertyName(18), nullptr);
    EXPECT_EQ(FindPropertyName(512), nullptr);
    EXPECT_EQ(FindPropertyName(0xFFFFFFFFU), nullptr);
    EXPECT_EQ(FindPropertyId("present-value"), PROP_PRESENT_VALUE);
    EXPECT_EQ(FindPropertyId("zone-to"), 321U);
    EXPECT_EQ(FindPropertyId("present"), std::nullopt);
    EXPECT_EQ(FindPropertyId(""), std::nullopt);
}

TEST(PropertyNames, KnowEveryNumberThatCodeSpells) {
    const std::pair<BACSTAC_PROPERTY_ID, const char*> spelt[] = {
        {PROP_ALL, "all"},
        {PROP_DESCRIPTION, "description"},
        {PROP_MAX_APDU_LENGTH_ACCEPTED, "max-apdu-length-accepted"},
        {PROP_OBJECT_IDENTIFIER, "object-identifier"},
        {PROP_OBJECT_LIST, "object-list"},
        {PROP_OBJECT_NAME, "object-name"},
        {PROP_OBJECT_TYPE, "object-type"},
        {PROP_OPTIONAL, "optional"},
        {PROP_PROTOCOL_VERSION, "protocol-version"},
        {PROP_REQUIRED, "required"},
        {PROP_SEGMENTATION_SUPPORTED, "segmentation-supported"},
        {PROP_STATUS_FLAGS, "status-flags"},
        {PROP_VENDOR_IDENTIFIER, "vendor-identifier"},
        {PROP_LOG_BUFFER, "log-buffer"},
        {PROP_LOG_DEVICE_OBJECT_PROPERTY, "log-device-object-property"},
        {PROP_PROTOCOL_REVISION, "protocol-revision"},
        {PROP_RECORD_COUNT, "record-count"},
    };
    for (const auto& [property, name] : spelt)
        EXPECT_STREQ(FindPropertyName(property), name);
}
