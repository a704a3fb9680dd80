#include "base/Decimal.h"

#include <gtest/gtest.h>

namespace {

TEST(Decimal, ReadsTheNumberThatATextBeginsWith) {
    EXPECT_EQ(DecToI64(""), 0);
    EXPECT_EQ(DecToI64("x12"), 0);
    EXPECT_EQ(DecToI64(" \t\r\n-12x"), -12);
    EXPECT_EQ(DecToI64("+7"), 7);
    EXPECT_EQ(DecToI64("- 7"), 0);
    EXPECT_EQ(DecToI64("4294967295"), 4294967295);
    EXPECT_EQ(DecToI64("-4294967295"), -4294967295);
}

TEST(Decimal, SaysWhenItDoesNotFit32Bits) {
    for (const char* const text : {"4294967296", "99999999999999999999999999"})
        EXPECT_EQ(DecToI64(text), DEC_TOO_LARGE) << text;
    EXPECT_EQ(DecToI64("-4294967296"), -DEC_TOO_LARGE);
}

TEST(Decimal, HasTheLargestNumberOf32BitsForLargerOnes) {
    EXPECT_EQ(DecToU32("12"), 12U);
    EXPECT_EQ(DecToU32("4294967295"), 4294967295U);
    EXPECT_EQ(DecToU32("4294967296"), 4294967295U);
    EXPECT_EQ(DecToU32("-99999999999"), 4294967295U);
    EXPECT_EQ(DecToU32("-1"), 4294967295U) << "the bits of its two's complement";
    EXPECT_EQ(DecToU32("-4294967295"), 1U);
}

} // namespace
