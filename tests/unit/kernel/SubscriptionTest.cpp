#include "tests/unit/kernel/KernelFixture.h"

#include <limits>

using testing::ElementsAre;
using testing::IsEmpty;

using KernelSubscriptions = KernelFixture;

TEST_F(KernelSubscriptions, OnlyChangesAreTold) {
    const std::uint32_t tag = Add(Tag("A", TAG_TYPE_ANALOG, 0.0));
    const std::uint8_t gate = Connect();
    EXPECT_EQ(Request(gate, tag, QL_GATE_SUBSCRIBE), QL_OK);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double value : {0.0, -0.0, 1.0, 1.0, nan, nan, -nan, 2.0, 0.0}) {
        EXPECT_EQ(m_kernel.SetTagValue(tag, value), QL_OK);
    }
    const auto messages = Drain(gate);
    ASSERT_EQ(messages.size(), 4U);
    EXPECT_EQ(messages[0], Change(tag, 1.0));
    EXPECT_NE(messages[1].value, messages[1].value);
    EXPECT_EQ(messages[2], Change(tag, 2.0));
    EXPECT_EQ(messages[3], Change(tag, 0.0));
}

TEST_F(KernelSubscriptions, TheFirstValueIsAChange) {
    const std::uint32_t tag = Add(Tag("A"));
    const std::uint8_t gate = Connect();
    Request(gate, tag, QL_GATE_SUBSCRIBE);
    m_kernel.SetTagValue(tag, 0.0);
    EXPECT_THAT(Drain(gate), ElementsAre(Change(tag, 0.0)));
}

TEST_F(KernelSubscriptions, EachConnectionHearsOfItsTagsOnly) {
    const std::uint32_t a = Add(Tag("A"));
    const std::uint32_t b = Add(Tag("B"));
    const std::uint8_t first = Connect();
    const std::uint8_t second = Connect();
    const std::uint8_t third = Connect();
    const std::uint32_t both[]{a, b};
    EXPECT_EQ(m_kernel.RqGateMsg(first, 2, both, QL_GATE_SUBSCRIBE), QL_OK);
    EXPECT_EQ(Request(second, b, QL_GATE_SUBSCRIBE), QL_OK);
    m_kernel.SetTagValue(a, 1.0);
    m_kernel.SetTagValue(b, 1.0);
    m_kernel.SetTagValue(a, 0.0);
    EXPECT_THAT(Drain(first), ElementsAre(Change(a, 1.0), Change(b, 1.0), Change(a, 0.0)));
    EXPECT_THAT(Drain(second), ElementsAre(Change(b, 1.0)));
    EXPECT_THAT(Drain(third), IsEmpty());
}

TEST_F(KernelSubscriptions, ATagWithItsStationIsTheSameTag) {
    const std::uint32_t tag = Add(Tag("A"));
    const std::uint8_t gate = Connect();
    EXPECT_EQ(Request(gate, 0x00030000 | tag, QL_GATE_SUBSCRIBE), QL_OK);
    m_kernel.SetTagValue(tag, 1.0);
    EXPECT_THAT(Drain(gate), ElementsAre(Change(tag, 1.0)));
    EXPECT_EQ(Request(gate, tag, QL_GATE_CANCEL), QL_OK);
    m_kernel.SetTagValue(tag, 0.0);
    EXPECT_THAT(Drain(gate), IsEmpty());
}

TEST_F(KernelSubscriptions, WhoAsksTwiceCancelsTwiceAndHearsOnce) {
    const std::uint32_t tag = Add(Tag("A"));
    const std::uint8_t gate = Connect();
    Request(gate, tag, QL_GATE_SUBSCRIBE);
    Request(gate, tag, QL_GATE_SUBSCRIBE);
    m_kernel.SetTagValue(tag, 1.0);
    EXPECT_THAT(Drain(gate), ElementsAre(Change(tag, 1.0)));
    EXPECT_EQ(Request(gate, tag, QL_GATE_CANCEL), QL_OK);
    m_kernel.SetTagValue(tag, 0.0);
    EXPECT_THAT(Drain(gate), ElementsAre(Change(tag, 0.0)));
    EXPECT_EQ(Request(gate, tag, QL_GATE_CANCEL), QL_OK);
    m_kernel.SetTagValue(tag, 1.0);
    EXPECT_THAT(Drain(gate), IsEmpty());
}

TEST_F(KernelSubscriptions, CancellingWithoutASubscriptionDoesNothing) {
    const std::uint32_t tag = Add(Tag("A"));
    const std::uint8_t first = Connect();
    const std::uint8_t second = Connect();
    Request(second, tag, QL_GATE_SUBSCRIBE);
    EXPECT_EQ(Request(first, tag, QL_GATE_CANCEL), QL_OK);
    m_kernel.SetTagValue(tag, 1.0);
    EXPECT_THAT(Drain(second), ElementsAre(Change(tag, 1.0)));
}

TEST_F(KernelSubscriptions, OneBadTagRefusesAllOfThem) {
    const std::uint32_t good = Add(Tag("A"));
    const std::uint32_t text = Add(Tag("T", TAG_TYPE_TEXT));
    const std::uint32_t gone = Add(Tag("G"));
    m_kernel.RemoveTag(gone);
    const std::uint8_t gate = Connect();
    const auto request = [&](std::uint32_t bad) {
        const std::uint32_t ids[]{good, bad};
        return m_kernel.RqGateMsg(gate, 2, ids, QL_GATE_SUBSCRIBE);
    };
    EXPECT_EQ(request(text), QL_WRONG_TYPE);
    EXPECT_EQ(request(gone), QL_DELETED_TAG);
    EXPECT_EQ(request(3), QL_NO_SUCH_TAG);
    EXPECT_EQ(request(0x00040000), QL_NO_SUCH_TAG);
    m_kernel.SetTagValue(good, 1.0);
    EXPECT_THAT(Drain(gate), IsEmpty());
}

TEST_F(KernelSubscriptions, ArgumentsAreChecked) {
    const std::uint32_t tag = Add(Tag("A"));
    const std::uint8_t gate = Connect();
    EXPECT_EQ(m_kernel.RqGateMsg(gate, 1, nullptr, QL_GATE_SUBSCRIBE), QL_INVALID_ARGUMENT);
    EXPECT_EQ(m_kernel.RqGateMsg(gate, -1, &tag, QL_GATE_SUBSCRIBE), QL_INVALID_ARGUMENT);
    EXPECT_EQ(m_kernel.RqGateMsg(gate, 1, &tag, 0), QL_INVALID_ARGUMENT);
    EXPECT_EQ(m_kernel.RqGateMsg(gate, 1, &tag, 3), QL_INVALID_ARGUMENT);
    EXPECT_EQ(m_kernel.RqGateMsg(gate, 0, nullptr, QL_GATE_SUBSCRIBE), QL_OK);
    EXPECT_EQ(m_kernel.RqGateMsg(0, 1, &tag, QL_GATE_SUBSCRIBE), QL_NO_CONNECTION);
}

TEST_F(KernelSubscriptions, ADisconnectEndsThem) {
    const std::uint32_t tag = Add(Tag("A"));
    const std::uint8_t gone = Connect();
    const std::uint8_t stays = Connect();
    Request(gone, tag, QL_GATE_SUBSCRIBE);
    Request(gone, tag, QL_GATE_SUBSCRIBE);
    Request(stays, tag, QL_GATE_SUBSCRIBE);
    m_kernel.Disconnect(gone);
    m_kernel.SetTagValue(tag, 1.0);
    EXPECT_THAT(Drain(stays), ElementsAre(Change(tag, 1.0)));
    // The handle goes round to a new owner, who hears nothing of the old one's tags.
    std::uint8_t handle = 0;
    while (handle != gone) {
        handle = Connect();
    }
    m_kernel.SetTagValue(tag, 0.0);
    EXPECT_THAT(Drain(handle), IsEmpty());
}

TEST_F(KernelSubscriptions, ARemovedTagEndsThem) {
    const std::uint32_t tag = Add(Tag("A"));
    const std::uint8_t gate = Connect();
    Request(gate, tag, QL_GATE_SUBSCRIBE);
    m_kernel.RemoveTag(tag);
    EXPECT_EQ(m_kernel.SetTagValue(tag, 1.0), QL_DELETED_TAG);
    TagSettings again = Tag("A");
    again.number = static_cast<std::uint16_t>(tag);
    Add(again);
    m_kernel.SetTagValue(tag, 1.0);
    EXPECT_THAT(Drain(gate), IsEmpty());
    EXPECT_EQ(m_kernel.Disconnect(gate), QL_OK);
}
