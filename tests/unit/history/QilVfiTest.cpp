#include "module/history/QilVfi.h"

#include "module/history/QilClient.h"
#include "tests/unit/history/RecordingKernel.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class QilVfi : public testing::Test {
protected:
    QilVfi() {
        client.Connect();
        kernel.ClearCalls();
    }

    RecordingKernel kernel;
    CQilClient client{kernel, "x"};
};

TEST_F(QilVfi, OpensWithModeAndOptionAndFourZeros) {
    CQilVFI vfi;
    EXPECT_TRUE(vfi.Open(client, 2, 0));
    EXPECT_EQ(vfi.GetHandle(), 42U);
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("236(7, 0, 2, 0, 0)"));
}

TEST_F(QilVfi, StaysClosedWhenOpenFails) {
    kernel.openResult = QL_NO_RESOURCES;
    CQilVFI vfi;
    EXPECT_FALSE(vfi.Open(client, 2, 0));
    EXPECT_EQ(vfi.GetHandle(), 0U);
    EXPECT_EQ(vfi.GetLastResult(), QL_NO_RESOURCES);
    EXPECT_FALSE(vfi.Write(0, nullptr));
    EXPECT_FALSE(vfi.Flush());
    EXPECT_EQ(kernel.GetCalls().size(), 1U);
}

TEST_F(QilVfi, WritesABlockWithItsWordSet) {
    CQilVFI vfi;
    vfi.Open(client, 2, 0);
    kernel.ClearCalls();
    const VfiRecord records[3] = {};
    EXPECT_TRUE(vfi.Write(3, records));
    kernel.onWrite = [](std::uint32_t, const VfiRecord*) { return QL_STORE_FAILURE; };
    EXPECT_FALSE(vfi.Write(2, records));
    EXPECT_EQ(vfi.GetLastResult(), QL_STORE_FAILURE);
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("239(42, 0, 3, -1)", "239(42, 0, 2, -1)"));
}

TEST_F(QilVfi, ClosesOnce) {
    {
        CQilVFI vfi;
        EXPECT_TRUE(vfi.Close());
        vfi.Open(client, 2, 0);
        EXPECT_TRUE(vfi.Flush());
        EXPECT_TRUE(vfi.Close());
        EXPECT_TRUE(vfi.Close());
    }
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("236(7, 0, 2, 0, 0)", "214(42)", "216(42)"));
}

TEST_F(QilVfi, ClosesInItsDestructorAndLosesItsHandleWhateverTheAnswer) {
    kernel.closeResult = QL_NO_CHANNEL;
    {
        CQilVFI vfi;
        vfi.Open(client, 2, 0);
    }
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("236(7, 0, 2, 0, 0)", "216(42)"));
    CQilVFI other;
    other.Open(client, 2, 0);
    EXPECT_FALSE(other.Close());
    EXPECT_EQ(other.GetHandle(), 0U);
}

TEST(VfiLayout, IsWhatTheKernelReads) {
    EXPECT_EQ(sizeof(VfiRecord), 276U);
    EXPECT_EQ(offsetof(VfiRecord, tagId), 0U);
    EXPECT_EQ(offsetof(VfiRecord, time), 4U);
    EXPECT_EQ(offsetof(VfiRecord, milliseconds), 8U);
    EXPECT_EQ(offsetof(VfiRecord, valueType), 10U);
    EXPECT_EQ(offsetof(VfiRecord, value), 12U);
    EXPECT_EQ(offsetof(VfiRecord, text), 20U);
    EXPECT_EQ(sizeof(TagDefinition), 1468U);
    EXPECT_EQ(offsetof(TagDefinition, name), 2U);
    EXPECT_EQ(offsetof(TagDefinition, historyEnabled), 312U);
    EXPECT_EQ(offsetof(TagDefinition, flags), 704U);
}

} // namespace
