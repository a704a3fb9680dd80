#include "host/bacnet/PointText.h"

#include "api/bacnet/BacGeneral.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

std::string AddressOf(const char* text) {
    DeviceText device;
    std::string error;
    if (!ParseDevice(text, device, error))
        return "refused";
    if (device.instance)
        return "instance " + std::to_string(*device.instance);
    char printed[64];
    CBacGeneral::PrintAddress(printed, sizeof printed, device.address);
    return (device.address.Remote != 0 ? "remote " : "local ") + std::string(printed);
}

std::string ErrorOf(bool (*parse)(std::string_view, BACSTAC_OBJECT_ID&, std::string&), const char* text) {
    BACSTAC_OBJECT_ID object{};
    std::string error;
    return parse(text, object, error) ? "taken" : error;
}

} // namespace

TEST(DeviceText, IsAnInstanceAnAddressOrAStationOfANetwork) {
    EXPECT_EQ(AddressOf("0"), "instance 0");
    EXPECT_EQ(AddressOf("4194302"), "instance 4194302");
    EXPECT_EQ(AddressOf("10.0.0.5"), "local 10.0.0.5:47808");
    EXPECT_EQ(AddressOf("10.0.0.5:47809"), "local 10.0.0.5:47809");
    EXPECT_EQ(AddressOf("7:21"), "remote 7/21");
    EXPECT_EQ(AddressOf("7/21"), "remote 7/21");
    EXPECT_EQ(AddressOf("65534:0"), "remote 65534/0");
    EXPECT_EQ(AddressOf("7:10.0.0.5"), "remote 7/10.0.0.5:47808");
    EXPECT_EQ(AddressOf("7/10.0.0.5:47809"), "remote 7/10.0.0.5:47809");
    EXPECT_EQ(AddressOf("7:0a1B0c"), "remote 7/0A1B0C");
}

TEST(DeviceText, TakesAddressesAsTheyArePrinted) {
    for (const char* text : {"7/21", "7/10.0.0.5:47809", "7/0A1B0C"}) {
        DeviceText device;
        std::string error;
        ASSERT_TRUE(ParseDevice(text, device, error)) << error;
        char printed[64];
        CBacGeneral::PrintAddress(printed, sizeof printed, device.address);
        EXPECT_STREQ(printed, text);
    }
}

TEST(DeviceText, RefusesEverythingElse) {
    for (const char* text :
         {"",          "4194303", "-1",      "x",         "10.0.0", "10.0.0.256", "10.0.0.5:0", "10.0.0.5:65536",
          "10.0.0.5:", "0:1",     "65535:1", "65536:1",   "7:",     "7:256x",     "7:0a1",      "7:0102030405060708",
          "7:1.2.3",   ":1",      "1000 ",   "10.0.0.5.6"})
        EXPECT_EQ(AddressOf(text), "refused") << text;
    DeviceText device;
    std::string error;
    ParseDevice("4194303", device, error);
    EXPECT_EQ(error, "a device instance is a number from 0 to 4194302, not 4194303");
    ParseDevice("boiler", device, error);
    EXPECT_EQ(error, "\"boiler\" is no device: give its instance (1000), its address (10.0.0.5 or 10.0.0.5:47808), or "
                     "network and station (7:21)");
}

TEST(ObjectText, TakesEveryWayOfWritingIt) {
    for (const char* text : {"analog-input:1", "ai:1", "AI:1", "analog-input,1", "0:1", "0,1", "analog-input, 1",
                             "(analog-input, 1)", " ai : 1 "}) {
        BACSTAC_OBJECT_ID object{99, 99};
        std::string error;
        EXPECT_TRUE(ParseObject(text, object, error)) << error;
        EXPECT_EQ(object, (BACSTAC_OBJECT_ID{0, 1})) << text;
    }
    BACSTAC_OBJECT_ID object{};
    std::string error;
    ASSERT_TRUE(ParseObject("1023:4194303", object, error));
    EXPECT_EQ(object, (BACSTAC_OBJECT_ID{1023, 4194303}));
}

TEST(ObjectText, SaysWhichPartIsWrong) {
    EXPECT_EQ(ErrorOf(ParseObject, "ai1"),
              "\"ai1\" is no object: give type and instance, as in analog-input:1, ai:1 or 0:1");
    EXPECT_EQ(ErrorOf(ParseObject, "axe:1"),
              "\"axe\" is no object type: give its name (analog-input), its abbreviation "
              "(ai) or its number, 0 to 1023");
    for (const char* text : {"ai:", "ai:4194304", "ai:-1", "ai:x", "ai:1:2", "ai:1,2"})
        EXPECT_THAT(ErrorOf(ParseObject, text), HasSubstr("an object's instance is a number from 0 to 4194303, not"));
    for (const char* text : {":1", "1024:1", "-1:1"})
        EXPECT_THAT(ErrorOf(ParseObject, text), HasSubstr("is no object type")) << text;
}

TEST(PropertyTextTest, TakesNamesAbbreviationsNumbersAndAnIndex) {
    const std::tuple<const char*, BACSTAC_PROPERTY_ID, int> good[] = {
        {"present-value", 85, -1},    {"pv", 85, -1},     {"85", 85, -1},   {"Present-Value", 85, -1},
        {"priority-array[8]", 87, 8}, {"87[16]", 87, 16}, {"pa[0]", 87, 0}, {"4194303", 4194303, -1},
    };
    for (const auto& [text, property, index] : good) {
        PropertyText parsed;
        std::string error;
        ASSERT_TRUE(ParseProperty(text, parsed, error)) << error;
        EXPECT_EQ(parsed.property, property) << text;
        EXPECT_EQ(parsed.index, index) << text;
    }
}

TEST(PropertyTextTest, SaysWhichPartIsWrong) {
    PropertyText property;
    std::string error;
    EXPECT_FALSE(ParseProperty("presentvalue", property, error));
    EXPECT_EQ(error, "\"presentvalue\" is no property: give its name (present-value), its abbreviation (pv) or its "
                     "number, 0 to 4194303");
    for (const char* text : {"pa[", "pa[]", "pa[x]", "pa[-1]", "pa[1", "pa[1]x", "pa[4294967296]"}) {
        EXPECT_FALSE(ParseProperty(text, property, error)) << text;
        EXPECT_THAT(error, HasSubstr("is no array index")) << text;
    }
    EXPECT_FALSE(ParseProperty("", property, error));
    EXPECT_FALSE(ParseProperty("[1]", property, error));
}

TEST(ReferenceText, NamesADeviceOrNone) {
    BACSTAC_DEV_OBJ_PROP_REF reference;
    std::string error;
    ASSERT_TRUE(ParseReference("ai:1/pv", reference, error)) << error;
    EXPECT_EQ(reference.ObjectId, (BACSTAC_OBJECT_ID{0, 1}));
    EXPECT_EQ(reference.Property, 85U);
    EXPECT_EQ(reference.ArrayIndex, 0xFFFFFFFFU);
    EXPECT_EQ(reference.DevicePresent, 0U);
    EXPECT_EQ(reference.DeviceId, (BACSTAC_OBJECT_ID{8, 0}));
    ASSERT_TRUE(ParseReference("1000/ao:2/priority-array[8]", reference, error)) << error;
    EXPECT_EQ(reference.DevicePresent, 1U);
    EXPECT_EQ(reference.DeviceId, (BACSTAC_OBJECT_ID{8, 1000}));
    EXPECT_EQ(reference.ArrayIndex, 8U);
    for (const char* text : {"", "ai:1", "/ai:1/pv", "x/ai:1/pv", "4194303/ai:1/pv", "ai:1/", "1/2/ai:1/pv"}) {
        error.clear();
        EXPECT_FALSE(ParseReference(text, reference, error)) << text;
        EXPECT_NE(error, "") << text;
    }
}
