// The fields of an action command.
#include "module/editors/ActionFields.h"

#include <gtest/gtest.h>

namespace {

TEST(ActionFields, NoPriorityIsTheFirstItem) {
    EXPECT_EQ(PriorityItem(BACSTAC_NO_PRIORITY), 0);
    EXPECT_EQ(PriorityOfItem(0), BACSTAC_NO_PRIORITY);
    EXPECT_EQ(PriorityOfItem(-1), BACSTAC_NO_PRIORITY);
    for (int priority = 1; priority <= 16; ++priority) {
        EXPECT_EQ(PriorityItem(priority), priority);
        EXPECT_EQ(PriorityOfItem(priority), priority);
    }
}

TEST(ActionFields, OtherPrioritiesHaveNoItem) {
    for (const int priority : {0, 17, -2, 0x7FFFFFFF})
        EXPECT_EQ(PriorityItem(priority), -1) << priority;
}

TEST(ActionFields, AnEmptyDelayIsNone) {
    BACSTAC_ACTION_COMMAND command{};
    command.Mask = 0x81 | BACSTAC_POST_DELAY;
    command.PostDelay = 9;
    EXPECT_EQ(ShowPostDelay(command), "9");
    ASSERT_TRUE(StorePostDelay("", command));
    EXPECT_EQ(command.Mask, 0x81U);
    EXPECT_EQ(command.PostDelay, 0U);
    EXPECT_EQ(ShowPostDelay(command), "");
}

TEST(ActionFields, ADelayOfZeroIsOne) {
    BACSTAC_ACTION_COMMAND command{};
    ASSERT_TRUE(StorePostDelay("0", command));
    EXPECT_EQ(command.Mask, BACSTAC_POST_DELAY);
    EXPECT_EQ(ShowPostDelay(command), "0");
    ASSERT_TRUE(StorePostDelay("4294967295", command));
    EXPECT_EQ(command.PostDelay, 4294967295U);
}

TEST(ActionFields, AnyOtherTextIsNoDelay) {
    BACSTAC_ACTION_COMMAND command{};
    command.PostDelay = 7;
    for (const char* const text : {"12x", "x", "4294967296", "-1", "1 2"}) {
        EXPECT_FALSE(StorePostDelay(text, command)) << text;
        EXPECT_EQ(command.Mask, 0U);
        EXPECT_EQ(command.PostDelay, 7U);
    }
}

} // namespace
