// Names, tables and failures as the contract offers them.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "api/bacnet/Enums.h"

#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/TypeTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

std::string ErrorText(BACSTAC_STATUS status, BACSTAC_ERROR error) {
    return CBacGeneral::GetErrorText(status, &error);
}

} // namespace

TEST(FailureText, NamesEveryStatusOfTheLibrary) {
    std::set<std::string> texts;
    for (const BACSTAC_STATUS status : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 64, 65, 66}) {
        const std::string text = CBacGeneral::GetStatusString(status);
        EXPECT_EQ(text.find("S("), std::string::npos) << status;
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), 17U);
    EXPECT_STREQ(CBacGeneral::GetStatusString(0), "success");
    EXPECT_STREQ(CBacGeneral::GetStatusString(1), "timeout");
    EXPECT_STREQ(CBacGeneral::GetStatusString(64), "error");
    EXPECT_STREQ(CBacGeneral::GetStatusString(65), "reject");
    EXPECT_STREQ(CBacGeneral::GetStatusString(66), "abort");
    EXPECT_STREQ(CBacGeneral::GetStatusString(14), "S(14)");
    EXPECT_STREQ(CBacGeneral::GetStatusString(0xFFFFFFFFU), "S(4294967295)");
}

TEST(FailureText, IsOneLineWithTheDeviceDetail) {
    EXPECT_EQ(ErrorText(64, {2, 1, 31}), "error: unknown-object (object)");
    EXPECT_EQ(ErrorText(64, {2, 0, 0}), "error: other (device)");
    EXPECT_EQ(ErrorText(64, {2, 99, 300}), "error: unknown (300) (unknown (99))");
    EXPECT_EQ(ErrorText(65, {1, 9, 0}), "reject: unrecognized-service");
    EXPECT_EQ(ErrorText(65, {1, 0, 0}), "reject: other");
    EXPECT_EQ(ErrorText(66, {1, 4, 0}), "abort: segmentation-not-supported");
    EXPECT_EQ(ErrorText(66, {1, 200, 0}), "abort: unknown (200)");
    EXPECT_EQ(ErrorText(1, {0, 0, 0}), "timeout");
    EXPECT_EQ(ErrorText(64, {0, 0, 0}), "error");
    EXPECT_EQ(CBacGeneral::GetErrorText(65, nullptr), "reject");
    EXPECT_EQ(CBacGeneral::GetErrorText(77, nullptr), "S(77)");
}

TEST(FixedStrings, AreTheStandardsNames) {
    EXPECT_STREQ(CBacGeneral::GetErrorCodeString(32U), "unknown-property");
    EXPECT_STREQ(CBacGeneral::GetErrorCodeString(BACSTAC_ERROR{2, 2, 32}), "unknown-property");
    EXPECT_STREQ(CBacGeneral::GetErrorClassString(5), "services");
    EXPECT_STREQ(CBacGeneral::GetRejectReasonString(4), "invalid-tag");
    EXPECT_STREQ(CBacGeneral::GetAbortReasonString(10), "tsm-timeout");
    EXPECT_STREQ(CBacGeneral::GetEventStateString(3), "high-limit");
    EXPECT_STREQ(CBacGeneral::GetEventTypeString(10), "buffer-ready");
    EXPECT_STREQ(CBacGeneral::GetNotifyTypeString(0), "alarm");
    EXPECT_STREQ(CBacGeneral::GetNotifyTypeString(3), "unknown (3)");
    EXPECT_STREQ(CBacGeneral::GetErrorCodeString(70000U), "unknown (70000)");
}

TEST(FixedStrings, OfUnknownNumbersStayForAWhile) {
    const char* const first = CBacGeneral::GetStatusString(1000);
    const char* const second = CBacGeneral::GetErrorCodeString(1001U);
    for (unsigned number = 2000; number < 2062; ++number)
        CBacGeneral::GetStatusString(number);
    EXPECT_STREQ(first, "S(1000)");
    EXPECT_STREQ(second, "unknown (1001)");
}

TEST(FixedStrings, OfUnknownNumbersAreEachThreadsOwn) {
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (unsigned i = 0; i < 2000; ++i) {
                const unsigned number = 100000 * (thread + 1) + i;
                const char* const status = CBacGeneral::GetStatusString(number);
                const char* const name = CBACnetDir::GetStdObjTypeName(number);
                const std::string text = CBacGeneral::GetErrorText(64, nullptr);
                ASSERT_EQ(status, "S(" + std::to_string(number) + ")");
                ASSERT_EQ(name, std::to_string(number));
                ASSERT_EQ(text, "error");
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(EnumTables, AreWalkedByCountAndString) {
    const ENUM_TYPE_ID type = CBacGeneral::GetEnumTypeId(37, 9);
    ASSERT_EQ(type, ENUM_EVENT_TYPE);
    ASSERT_EQ(CBacGeneral::GetEnumCount(type), 23U);
    for (unsigned value = 0; value < 23; ++value)
        EXPECT_NE(CBacGeneral::GetEnumString(type, value), nullptr);
    EXPECT_STREQ(CBacGeneral::GetEnumString(type, 11), "unsigned-range");
    EXPECT_EQ(CBacGeneral::GetEnumString(type, 23), nullptr);
    EXPECT_EQ(CBacGeneral::GetEnumTypeId(85, 9), ENUM_BINARY_PV);
    EXPECT_EQ(CBacGeneral::GetEnumTypeId(85, OBJ_ANALOG_INPUT), ENUM_NONE);
    EXPECT_EQ(CBacGeneral::GetEnumCount(ENUM_NONE), 0U);
    EXPECT_EQ(CBacGeneral::GetEnumString(ENUM_NONE, 0), nullptr);
    EXPECT_EQ(CBacGeneral::GetEnumString(ENUM_UNITS, 47808), nullptr) << "beyond the count";
}

TEST(PropertyLists, AreTheStandards) {
    const unsigned count = CBacGeneral::GetObjectPropsNumber(OBJ_TREND_LOG);
    const BACSTAC_PROPERTY_ID* const list = CBacGeneral::GetObjectPropList(OBJ_TREND_LOG);
    const std::set<BACSTAC_PROPERTY_ID> properties(list, list + count);
    EXPECT_EQ(properties.size(), count);
    EXPECT_THAT(properties, testing::IsSupersetOf({75U, 77U, 79U, 131U, 132U, 133U, 141U, 145U}));
    EXPECT_EQ(CBacGeneral::GetObjectPropsNumber(128), 0U);
    EXPECT_NE(CBacGeneral::GetObjectPropList(128), nullptr);
    for (const bacnet::ObjectTypeInfo& type : bacnet::AllObjectTypes()) {
        const BACSTAC_PROPERTY_ID* const ids = CBacGeneral::GetObjectPropList(type.Type);
        ASSERT_EQ(CBacGeneral::GetObjectPropsNumber(type.Type), type.Properties.size());
        for (std::size_t i = 0; i < type.Properties.size(); ++i)
            EXPECT_EQ(ids[i], type.Properties[i].Property);
    }
}

TEST(PropertyLists, OfferWhatReportsCanRead) {
    // The pairs that reports leave out or read by index are on the lists that this is about.
    const std::pair<BACSTAC_OBJECT_TYPE, BACSTAC_PROPERTY_ID> pairs[] = {
        {6, 23},   {8, 116},  {8, 30},   {8, 152},  {8, 170},  {8, 171},  {11, 53},  {11, 85},  {21, 175},
        {21, 166}, {21, 7},   {21, 39},  {21, 159}, {22, 175}, {22, 166}, {22, 7},   {22, 39},  {22, 165},
        {22, 159}, {13, 7},   {13, 39},  {19, 7},   {19, 39},  {15, 102}, {17, 54},  {20, 131}, {15, 86},
        {17, 123}, {7, 2},    {7, 3},    {8, 76},   {8, 209},  {8, 154},  {8, 172},  {8, 169},  {13, 110},
        {14, 110}, {19, 110}, {17, 38},  {27, 132}, {28, 220}, {28, 221}, {29, 210}, {29, 211}, {30, 228},
        {0, 130},  {9, 130},  {20, 130}, {25, 130}, {27, 130}, {30, 130}, {12, 130},
    };
    for (const auto& [type, property] : pairs) {
        const BACSTAC_PROPERTY_ID* const list = CBacGeneral::GetObjectPropList(type);
        const BACSTAC_PROPERTY_ID* const end = list + CBacGeneral::GetObjectPropsNumber(type);
        EXPECT_NE(std::find(list, end, property), end) << type << ' ' << property;
    }
}

TEST(StandardTables, EveryDataTypeOfAPropertyIsInTheTypeTable) {
    for (const bacnet::ObjectTypeInfo& type : bacnet::AllObjectTypes()) {
        for (const bacnet::PropertyInfo& property : type.Properties) {
            if (property.Type != TYPE_NONE) {
                EXPECT_NE(bacnet::FindType(property.Type), nullptr) << type.Name << ' ' << property.Property;
            }
        }
    }
}

TEST(StandardTables, NameNumbersThatHaveNoNameByThemselves) {
    EXPECT_STREQ(CBACnetDir::GetStdObjTypeName(20), "trend-log");
    EXPECT_STREQ(CBACnetDir::GetStdObjTypeName(200), "200");
    EXPECT_STREQ(CBACnetDir::GetStdPropName(85), "present-value");
    EXPECT_STREQ(CBACnetDir::GetStdPropName(512), "512");
    std::string name;
    EXPECT_TRUE(CBACnetDir::GetObjTypeName(8, name, 0));
    EXPECT_EQ(name, "device");
    EXPECT_FALSE(CBACnetDir::GetObjTypeName(128, name, 7));
    EXPECT_EQ(name, "128");
    EXPECT_TRUE(CBACnetDir::GetPropName(131, name, 0));
    EXPECT_EQ(name, "log-buffer");
    EXPECT_FALSE(CBACnetDir::GetPropName(9999, name, 7));
    EXPECT_EQ(name, "9999");
    EXPECT_STREQ(CBACnetDir::GetDataTypeString(TYPE_REAL), "real");
    EXPECT_STREQ(CBACnetDir::GetDataTypeString(TYPE_STRING), "character-string");
    EXPECT_STREQ(CBACnetDir::GetDataTypeString(TYPE_DEV_OBJ_PROP_REF), "device-object-property-reference");
    EXPECT_STREQ(CBACnetDir::GetDataTypeString(TYPE_ANY_PRIMITIVE), "any-primitive");
    EXPECT_STREQ(CBACnetDir::GetDataTypeString(TYPE_NONE), "");
    EXPECT_STREQ(CBACnetDir::GetDataTypeString(999), "999");
}

TEST(StandardTables, GiveTheTypeOfAProperty) {
    EXPECT_EQ(CBACnetDir::GetStdPropType(PROP_PRESENT_VALUE, OBJ_ANALOG_INPUT), TYPE_REAL);
    EXPECT_EQ(CBACnetDir::GetStdPropType(PROP_OBJECT_NAME, OBJ_DEVICE), TYPE_STRING);
    EXPECT_EQ(CBACnetDir::GetStdPropType(PROP_OBJECT_LIST, OBJ_DEVICE), TYPE_OBJECT_ID);
    EXPECT_EQ(CBACnetDir::GetStdPropType(600, OBJ_DEVICE), -1);
    EXPECT_EQ(CBACnetDir::GetStdPropType(PROP_PRESENT_VALUE, 128), -1);
    EXPECT_EQ(CBACnetDir::GetStdPropType(380, 54), TYPE_LIGHTING_COMMAND);
}

TEST(StandardTables, GiveEventTypesAndCommandability) {
    EXPECT_EQ(CBACnetDir::GetStdEventType(OBJ_ANALOG_INPUT), 5);
    EXPECT_EQ(CBACnetDir::GetStdEventType(OBJ_BINARY_OUTPUT), 3);
    EXPECT_EQ(CBACnetDir::GetStdEventType(12), 4);
    EXPECT_EQ(CBACnetDir::GetStdEventType(OBJ_TREND_LOG), 10);
    EXPECT_EQ(CBACnetDir::GetStdEventType(OBJ_LIFE_SAFETY_POINT), 8);
    EXPECT_EQ(CBACnetDir::GetStdEventType(23), 11);
    EXPECT_EQ(CBACnetDir::GetStdEventType(OBJ_DEVICE), -1);
    EXPECT_EQ(CBACnetDir::GetStdEventType(17), -1);
    EXPECT_EQ(CBACnetDir::GetStdEventType(128), -1);
    EXPECT_TRUE(CBACnetDir::IsObjectTypeAlwaysCommandable(OBJ_ANALOG_OUTPUT));
    EXPECT_FALSE(CBACnetDir::IsObjectTypePossiblyCommandable(OBJ_ANALOG_OUTPUT));
    EXPECT_TRUE(CBACnetDir::IsObjectTypePossiblyCommandable(OBJ_BINARY_VALUE));
    EXPECT_FALSE(CBACnetDir::IsObjectTypeAlwaysCommandable(OBJ_BINARY_VALUE));
    EXPECT_FALSE(CBACnetDir::IsObjectTypePossiblyCommandable(OBJ_ANALOG_INPUT));
    EXPECT_FALSE(CBACnetDir::IsObjectTypePossiblyCommandable(4711));
}

TEST(StandardTables, AddressesAsText) {
    BACSTAC_ADDRESS address{};
    std::string text = "before";
    CBACnetDir::AddrToStr(address, text);
    EXPECT_EQ(text, "broadcast");
    address = {1, 0, 65534, {255, 255, 255, 255, 255, 255, 0}, 6};
    CBACnetDir::AddrToStr(address, text);
    EXPECT_EQ(text, "65534/255.255.255.255:65535");
}
