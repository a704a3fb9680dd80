#include "platform/kernel/users/LoginDelay.h"

#include <gtest/gtest.h>

namespace {

constexpr std::int64_t NOW = 1'795'000'000;

} // namespace

TEST(LoginDelay, DoublesUpToItsLongest) {
    EXPECT_EQ(LoginDelay({0, NOW}, NOW), 0);
    const std::int64_t expected[] = {1, 2, 4, 8, 16, 32, 64, 128, 256, 300, 300};
    std::uint32_t count = 0;
    for (const std::int64_t delay : expected) {
        ++count;
        EXPECT_EQ(LoginDelay({count, NOW}, NOW), delay) << count;
        EXPECT_EQ(LoginDelay({count, NOW}, NOW + delay - 1), 1) << count;
        EXPECT_EQ(LoginDelay({count, NOW}, NOW + delay), 0) << count;
    }
    EXPECT_EQ(LoginDelay({0xFFFFFFFF, NOW}, NOW), LONGEST_LOGIN_DELAY);
}

TEST(LoginDelay, AClockThatWasSetBackDelaysNoLonger) {
    EXPECT_EQ(LoginDelay({3, NOW + 1'000'000}, NOW), 4);
}

TEST(LoginDelay, ADayForgets) {
    EXPECT_FALSE(AreForgotten({20, NOW}, NOW + LOGIN_FAILURES_FORGOTTEN - 1));
    EXPECT_TRUE(AreForgotten({20, NOW}, NOW + LOGIN_FAILURES_FORGOTTEN));
    EXPECT_EQ(LoginDelay({20, NOW}, NOW + LOGIN_FAILURES_FORGOTTEN), 0);
}
