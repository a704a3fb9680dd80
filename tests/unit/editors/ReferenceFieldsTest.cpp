// The fields of a reference: what they show, what they store, and what is refused in which order.
#include "module/editors/ReferenceFields.h"

#include "api/bacnet/Enums.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace {

constexpr ReferenceGroups ALL{true, true, true};
constexpr std::uint32_t WHOLE = 0xFFFFFFFFU;
constexpr BACSTAC_DEV_OBJ_PROP_REF ZONE{{2, 7}, PROP_PRESENT_VALUE, WHOLE, 0, {OBJ_DEVICE, 0}};

bool AreSame(const BACSTAC_DEV_OBJ_PROP_REF& left, const BACSTAC_DEV_OBJ_PROP_REF& right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

// The value that the texts make of ZONE, with text in the place of one of them.
std::optional<BACSTAC_DEV_OBJ_PROP_REF> Stored(std::string ReferenceTexts::*field, const std::string& text) {
    ReferenceTexts texts = ShowReference(ZONE);
    texts.*field = text;
    BACSTAC_DEV_OBJ_PROP_REF value = ZONE;
    if (StoreReference(texts, ALL, value))
        return std::nullopt;
    return value;
}

std::string Message(std::string ReferenceTexts::*field, const std::string& text) {
    ReferenceTexts texts = ShowReference(ZONE);
    texts.*field = text;
    BACSTAC_DEV_OBJ_PROP_REF value = ZONE;
    const auto fault = StoreReference(texts, ALL, value);
    EXPECT_TRUE(AreSame(value, ZONE) || !fault);
    return fault ? fault->message : "";
}

TEST(ReferenceFields, ShowNothingForNoDeviceAndTheWholeProperty) {
    const ReferenceTexts texts = ShowReference(ZONE);
    EXPECT_EQ(texts.device, "");
    EXPECT_EQ(texts.objectType, "2");
    EXPECT_EQ(texts.instance, "7");
    EXPECT_EQ(texts.property, "85");
    EXPECT_EQ(texts.arrayIndex, "");
}

TEST(ReferenceFields, TakeInstancesUpToTheLastOne) {
    for (const auto field : {&ReferenceTexts::instance, &ReferenceTexts::device}) {
        EXPECT_EQ(Message(field, "4194303"), "");
        EXPECT_EQ(Message(field, "0"), "");
        for (const char* const text : {"4194304", "9999999", "4294967296", "12x", "x", "-1", " "})
            EXPECT_EQ(Message(field, text), "Invalid instance number") << text;
    }
    EXPECT_EQ(Message(&ReferenceTexts::instance, ""), "Invalid instance number");
    EXPECT_EQ(Stored(&ReferenceTexts::instance, "4194303")->ObjectId.Instance, 4194303U);
}

TEST(ReferenceFields, AnEmptyDeviceIsNoneAndADeviceIsOneOfTheDeviceType) {
    const auto some = Stored(&ReferenceTexts::device, "99");
    ASSERT_TRUE(some);
    EXPECT_EQ(some->DevicePresent, 1U);
    EXPECT_EQ(some->DeviceId, (BACSTAC_OBJECT_ID{OBJ_DEVICE, 99}));
    ReferenceTexts texts = ShowReference(*some);
    EXPECT_EQ(texts.device, "99");
    texts.device.clear();
    BACSTAC_DEV_OBJ_PROP_REF none = *some;
    ASSERT_FALSE(StoreReference(texts, ALL, none));
    EXPECT_TRUE(AreSame(none, ZONE));
}

TEST(ReferenceFields, TakeObjectTypesAndPropertiesByNumber) {
    EXPECT_EQ(Stored(&ReferenceTexts::objectType, "1023")->ObjectId.Type, 1023U);
    for (const char* const text : {"1024", "", "analog", "-1", "4294967296"})
        EXPECT_EQ(Message(&ReferenceTexts::objectType, text), "Invalid object type") << text;
    EXPECT_EQ(Stored(&ReferenceTexts::property, "4194303")->Property, 4194303U);
    for (const char* const text : {"4194304", "", "present", "8 5"})
        EXPECT_EQ(Message(&ReferenceTexts::property, text), "Invalid property") << text;
}

TEST(ReferenceFields, AnArrayIndexFits32BitsOrIsEmpty) {
    EXPECT_EQ(Stored(&ReferenceTexts::arrayIndex, "0")->ArrayIndex, 0U);
    EXPECT_EQ(Stored(&ReferenceTexts::arrayIndex, "4294967295")->ArrayIndex, WHOLE);
    for (const char* const text : {"9999999999", "4294967296", "1a", "-1"})
        EXPECT_EQ(Message(&ReferenceTexts::arrayIndex, text), "Invalid array index") << text;
    BACSTAC_DEV_OBJ_PROP_REF value = ZONE;
    value.ArrayIndex = 3;
    ReferenceTexts texts = ShowReference(value);
    EXPECT_EQ(texts.arrayIndex, "3");
    texts.arrayIndex.clear();
    EXPECT_FALSE(StoreReference(texts, ALL, value));
    EXPECT_EQ(value.ArrayIndex, WHOLE);
}

TEST(ReferenceFields, TellTheFirstFaultDeviceFirst) {
    ReferenceTexts texts{"x", "x", "x", "x", "x"};
    BACSTAC_DEV_OBJ_PROP_REF value = ZONE;
    std::vector<ReferenceField> faults;
    for (const auto& [field, text] : {std::pair(&ReferenceTexts::device, "1"),
                                      {&ReferenceTexts::objectType, "3"},
                                      {&ReferenceTexts::instance, "4"},
                                      {&ReferenceTexts::property, "5"},
                                      {&ReferenceTexts::arrayIndex, "6"}}) {
        const auto fault = StoreReference(texts, ALL, value);
        ASSERT_TRUE(fault);
        faults.push_back(fault->field);
        EXPECT_TRUE(AreSame(value, ZONE));
        texts.*field = text;
    }
    EXPECT_THAT(faults,
                testing::ElementsAre(ReferenceField::device, ReferenceField::objectType, ReferenceField::instance,
                                     ReferenceField::property, ReferenceField::arrayIndex));
    EXPECT_FALSE(StoreReference(texts, ALL, value));
    EXPECT_TRUE(AreSame(value, {{3, 4}, 5, 6, 1, {OBJ_DEVICE, 1}}));
}

TEST(ReferenceFields, GroupsThatAreOffAreNeitherReadNorChanged) {
    const ReferenceTexts texts{"x", "x", "x", "44", "x"};
    BACSTAC_DEV_OBJ_PROP_REF value = ZONE;
    EXPECT_FALSE(StoreReference(texts, {false, false, false}, value));
    EXPECT_TRUE(AreSame(value, ZONE));
    const auto fault = StoreReference(texts, {false, false, true}, value);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->field, ReferenceField::arrayIndex);
    EXPECT_TRUE(AreSame(value, ZONE));
}

TEST(ReferenceFields, WhatNobodyTouchedStaysWhateverItIs) {
    std::mt19937 random(4711);
    for (int round = 0; round < 1000; ++round) {
        BACSTAC_DEV_OBJ_PROP_REF value;
        auto* const octets = reinterpret_cast<unsigned char*>(&value);
        std::generate_n(octets, sizeof value, [&] { return static_cast<unsigned char>(random()); });
        value.DevicePresent = round % 2 == 0 ? value.DevicePresent : 0;
        const BACSTAC_DEV_OBJ_PROP_REF before = value;
        EXPECT_FALSE(StoreReference(ShowReference(value), ALL, value));
        EXPECT_TRUE(AreSame(value, before));
    }
}

TEST(ReferenceFields, ListThePropertiesOfATypeAndAllNamesForATypeWithoutAny) {
    EXPECT_THAT(PropertiesOf(OBJ_ANALOG_INPUT), testing::Contains(PROP_PRESENT_VALUE));
    EXPECT_THAT(PropertiesOf(OBJ_DEVICE), testing::Not(testing::Contains(PROP_PRESENT_VALUE)));
    const auto all = PropertiesOf(OBJ_NO_TYPE);
    EXPECT_GT(all.size(), 400U);
    EXPECT_THAT(all, testing::IsSupersetOf({PROP_PRESENT_VALUE, PROP_OBJECT_LIST, PROP_LOG_BUFFER}));
    EXPECT_TRUE(std::ranges::is_sorted(all));
}

} // namespace
