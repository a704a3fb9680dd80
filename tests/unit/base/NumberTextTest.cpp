#include "base/NumberText.h"

#include <gtest/gtest.h>

TEST(NumberText, U32RefusesEverythingButDigits) {
    EXPECT_EQ(ParseU32("0"), 0U);
    EXPECT_EQ(ParseU32("4294967295"), 4294967295U);
    for (const char* text : {"", "4294967296", "-1", "+1", " 1", "1 ", "1x", "0x1", "1.0"})
        EXPECT_EQ(ParseU32(text), std::nullopt) << text;
}

TEST(NumberText, NumberTakesDecimalAndScientific) {
    EXPECT_EQ(ParseNumber("-2.5"), -2.5);
    EXPECT_EQ(ParseNumber("1e3"), 1000.0);
    for (const char* text : {"", "nan", "inf", "1e999", "1,5", "x", "1 "})
        EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
}

TEST(NumberText, SignedAndNarrowTypesRefuseWhatDoesNotFit) {
    EXPECT_EQ(ParseI32("-2147483648"), INT32_MIN);
    EXPECT_EQ(ParseI32("2147483648"), std::nullopt);
    EXPECT_EQ(ParseI32("--1"), std::nullopt);
    EXPECT_EQ(ParseAs<std::uint8_t>("255"), 255);
    EXPECT_EQ(ParseAs<std::uint8_t>("256"), std::nullopt);
    EXPECT_EQ(ParseAs<float>("1e39"), std::nullopt) << "finite as a double only";
}
