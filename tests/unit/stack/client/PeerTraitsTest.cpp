// What is remembered about devices, and when it is forgotten.
#include "platform/stack/client/PeerTraits.h"

#include <gtest/gtest.h>

namespace {

using bacnet::Millis;
using bacnet::PeerTraits;

class FakeClock : public bacnet::IClock {
public:
    Millis Now() const override { return Time; }
    Millis Time = 1000;
};

class PeerTraitsTest : public testing::Test {
protected:
    static BACSTAC_ADDRESS Address(unsigned number) {
        return {0, 0, 0, {10, 0, static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number), 1, 1}, 6};
    }
    unsigned Limit(unsigned number) const { return m_traits.MultipleReadLimit(Address(number)); }

    FakeClock m_clock;
    PeerTraits m_traits{m_clock};
};

TEST_F(PeerTraitsTest, KeepsNothingOfDevicesWithoutLimits) {
    EXPECT_EQ(Limit(1), PeerTraits::UNLIMITED);
    m_traits.MultipleReadWorked(Address(1), 500);
    EXPECT_EQ(m_traits.Count(), 0U);
}

TEST_F(PeerTraitsTest, HalvesTheLimitDownToOne) {
    const unsigned expected[] = {8, 4, 2, 1, 1};
    unsigned count = 17;
    for (const unsigned limit : expected) {
        m_traits.MultipleReadFailed(Address(1), count);
        count = Limit(1);
        EXPECT_EQ(count, limit);
    }
    m_traits.MultipleReadFailed(Address(1), 100);
    EXPECT_EQ(Limit(1), 1U) << "a longer one that failed tells nothing new";
    EXPECT_EQ(Limit(2), PeerTraits::UNLIMITED);
}

TEST_F(PeerTraitsTest, TriesMoreAfterANumberOfSuccessesAtTheLimit) {
    m_traits.MultipleReadFailed(Address(1), 8);
    for (int i = 0; i < 15; ++i)
        m_traits.MultipleReadWorked(Address(1), 4);
    m_traits.MultipleReadWorked(Address(1), 3); // below the limit: proves nothing
    EXPECT_EQ(Limit(1), 4U);
    m_traits.MultipleReadWorked(Address(1), 4);
    EXPECT_EQ(Limit(1), 8U);
}

TEST_F(PeerTraitsTest, ForgetsALessonAfterItsLifetime) {
    m_traits.SetNoMultipleRead(Address(1));
    m_clock.Time += PeerTraits::LIFETIME_MS - 1;
    EXPECT_EQ(Limit(1), 0U);
    m_clock.Time += 1;
    EXPECT_EQ(Limit(1), PeerTraits::UNLIMITED);
    m_traits.MultipleReadFailed(Address(1), 10);
    EXPECT_EQ(Limit(1), 5U) << "the former lesson is gone, not combined with the new one";
}

TEST_F(PeerTraitsTest, ForgetsADeviceThatIsReplaced) {
    m_traits.SetNoMultipleRead(Address(1));
    m_traits.SetNoMultipleRead(Address(2));
    m_traits.Forget(Address(1));
    m_traits.Forget(Address(3));
    EXPECT_EQ(Limit(1), PeerTraits::UNLIMITED);
    EXPECT_EQ(Limit(2), 0U);
}

TEST_F(PeerTraitsTest, KeepsABoundedNumberAndTheYoungest) {
    for (unsigned i = 0; i < PeerTraits::MAX_PEERS; ++i) {
        m_clock.Time += 1;
        m_traits.SetNoMultipleRead(Address(i));
    }
    m_traits.SetNoMultipleRead(Address(0)); // learnt again
    for (unsigned i = 0; i < 10; ++i)
        m_traits.SetNoMultipleRead(Address(20000 + i));
    EXPECT_EQ(m_traits.Count(), PeerTraits::MAX_PEERS);
    EXPECT_EQ(Limit(0), 0U);
    for (unsigned i = 1; i <= 10; ++i)
        EXPECT_EQ(Limit(i), PeerTraits::UNLIMITED) << i;
    EXPECT_EQ(Limit(11), 0U);
    EXPECT_EQ(Limit(20009), 0U);
}

} // namespace
