// Real numbers as integers.
#include "module/editors/Saturate.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

constexpr double NAN_VALUE = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

TEST(Saturate, CutsTheFractionOff) {
    EXPECT_EQ(Saturate<std::int32_t>(21.9), 21);
    EXPECT_EQ(Saturate<std::int32_t>(-21.9), -21);
    EXPECT_EQ(Saturate<std::uint32_t>(4294967294.5), 4294967294U);
}

TEST(Saturate, TakesTheNearestLimitForWhatLiesBeyond) {
    EXPECT_EQ(Saturate<std::int32_t>(1e10), INT32_MAX);
    EXPECT_EQ(Saturate<std::int32_t>(-1e10), INT32_MIN);
    EXPECT_EQ(Saturate<std::uint32_t>(-0.5), 0U);
    EXPECT_EQ(Saturate<std::uint32_t>(-1e300), 0U);
    EXPECT_EQ(Saturate<std::uint32_t>(INFINITE), UINT32_MAX);
    EXPECT_EQ(Saturate<std::int32_t>(-INFINITE), INT32_MIN);
}

TEST(Saturate, WhatIsNoNumberIsZero) {
    EXPECT_EQ(Saturate<std::int32_t>(NAN_VALUE), 0);
}

} // namespace
