#include "platform/stack/transaction/InvokeIds.h"

#include <gtest/gtest.h>

#include <set>

using namespace bacnet;

namespace {

TEST(InvokeIds, AreGivenOutInTurn) {
    InvokeIds ids;
    std::uint8_t id = 99;
    for (unsigned i = 0; i < 600; ++i) {
        ASSERT_TRUE(ids.Take(0, id));
        EXPECT_EQ(id, i % 256) << "one that was just freed comes last";
        ids.Free(id, 0, 0);
    }
}

TEST(InvokeIds, MayBeginAnywhere) {
    InvokeIds ids(254);
    std::uint8_t id = 0;
    for (const unsigned expected : {254U, 255U, 0U, 1U}) {
        ASSERT_TRUE(ids.Take(0, id));
        EXPECT_EQ(id, expected);
    }
}

TEST(InvokeIds, ThereAre256AndNoMore) {
    InvokeIds ids;
    std::set<unsigned> taken;
    std::uint8_t id = 0;
    for (unsigned i = 0; i < 256; ++i) {
        ASSERT_TRUE(ids.Take(0, id));
        taken.insert(id);
    }
    EXPECT_EQ(taken.size(), 256U);
    EXPECT_FALSE(ids.Take(0, id));
    ids.Free(17, 0, 0);
    ASSERT_TRUE(ids.Take(0, id));
    EXPECT_EQ(id, 17);
}

TEST(InvokeIds, OneAtRestIsNotGivenOutBeforeItsTime) {
    InvokeIds ids;
    std::uint8_t id = 0;
    for (unsigned i = 0; i < 256; ++i)
        ASSERT_TRUE(ids.Take(0, id));
    ids.Free(3, 0, 1000);
    ids.Free(4, 0, 2000);
    EXPECT_FALSE(ids.Take(999, id));
    ASSERT_TRUE(ids.Take(1000, id));
    EXPECT_EQ(id, 3);
    EXPECT_FALSE(ids.Take(1999, id));
    ASSERT_TRUE(ids.Take(2000, id));
    EXPECT_EQ(id, 4);
}

} // namespace
