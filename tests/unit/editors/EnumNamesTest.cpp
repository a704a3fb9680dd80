#include "module/editors/EnumNames.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(EnumNames, StandInTheOrderOfTheirValues) {
    EXPECT_THAT(EnumNames(ENUM_BINARY_PV), ElementsAre("inactive", "active"));
    EXPECT_THAT(EnumNames(ENUM_NONE), IsEmpty());
    EXPECT_THAT(EnumNames(-1), IsEmpty());
    EXPECT_THAT(EnumNames(ENUM_LAST + 1), IsEmpty());
}

TEST(EnumNames, AreNumberedWhereABitHasNone) {
    EXPECT_EQ(BitName(ENUM_STATUS_FLAGS, 0), "in-alarm");
    EXPECT_EQ(BitName(ENUM_STATUS_FLAGS, 4), "bit-4");
    EXPECT_EQ(BitName(ENUM_NONE, 0), "bit-0");
}

TEST(EnumNames, AreSignedNumbersForValuesBeyondThem) {
    EXPECT_EQ(NumberOfEnum(512), "512");
    EXPECT_EQ(NumberOfEnum(0x7FFFFFFF), "2147483647");
    EXPECT_EQ(NumberOfEnum(0xFFFFFFFF), "-1");
}

} // namespace
