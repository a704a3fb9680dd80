#include "platform/stack/transport/ForeignRegistration.h"

#include <gtest/gtest.h>

#include <string>

using namespace bacnet;

namespace {

constexpr std::uint16_t SUCCESS = 0x0000;
constexpr std::uint16_t REGISTER_NAK = 0x0030;
constexpr std::uint16_t DISTRIBUTE_NAK = 0x0060;

class Registering : public testing::Test {
protected:
    // Lets time pass as a port's thread does, waking when told to and no later; answers each registration as the script
    // says. The list of what happens, times in seconds.
    std::string Run(std::int64_t seconds, int answer) {
        std::string events;
        for (const std::int64_t end = m_now + seconds * 1000; m_now < end;) {
            std::int64_t wait = 0;
            bool changed = false;
            const bool due = m_registration.IsDue(m_now, wait, changed);
            if (due)
                events += "ask@" + std::to_string(m_now / 1000) + " ";
            if (changed)
                events += std::string(ToString(m_registration.Current())) + "@" + std::to_string(m_now / 1000) + " ";
            if (due && answer >= 0 && m_registration.OnResult(static_cast<std::uint16_t>(answer), m_now))
                events += std::string(ToString(m_registration.Current())) + "@" + std::to_string(m_now / 1000) + " ";
            EXPECT_GT(wait, 0);
            m_now += wait > 0 ? std::min(wait, end - m_now) : end - m_now;
        }
        return events;
    }
    static constexpr int SILENCE = -1;

    ForeignRegistration m_registration{{{0x0A000101, 47808}, 60}};
    std::int64_t m_now = 0;
};

TEST_F(Registering, IsRenewedAtHalfItsTime) {
    EXPECT_EQ(Run(100, SUCCESS), "ask@0 registered@0 ask@30 ask@60 ask@90 ");
    EXPECT_EQ(m_registration.Current(), ForeignRegistration::State::registered);
}

TEST_F(Registering, WithoutAnAnswerIsSilentAfterThreeTriesAndGoesOnTrying) {
    EXPECT_EQ(Run(22, SILENCE), "ask@0 ask@5 ask@10 ask@15 no answer@15 ask@20 ");
    EXPECT_EQ(Run(10, SUCCESS), "ask@25 registered@25 ");
}

TEST_F(Registering, StaysRegisteredWhileARenewalIsLate) {
    Run(1, SUCCESS);
    EXPECT_EQ(Run(46, SILENCE), "ask@30 ask@35 ask@40 ask@45 ");
    EXPECT_EQ(m_registration.Current(), ForeignRegistration::State::registered);
    EXPECT_EQ(Run(14, SILENCE), "ask@50 ask@55 ask@60 no answer@60 ") << "its time is over";
}

TEST_F(Registering, ARefusalIsTriedAgainAfterAWhile) {
    EXPECT_EQ(Run(59, REGISTER_NAK), "ask@0 refused@0 ask@30 ");
    EXPECT_EQ(Run(10, SUCCESS), "ask@60 registered@60 ");
    EXPECT_EQ(Run(25, REGISTER_NAK), "ask@90 refused@90 ");
}

TEST_F(Registering, ADeviceThatHasForgottenUsIsAskedAgainAtOnce) {
    Run(10, SUCCESS);
    EXPECT_FALSE(m_registration.OnResult(DISTRIBUTE_NAK, m_now));
    EXPECT_EQ(Run(1, SUCCESS), "ask@10 ");
    // No more often than every five seconds, however many broadcasts are refused.
    std::string events;
    for (int i = 0; i < 8; ++i) {
        m_registration.OnResult(DISTRIBUTE_NAK, m_now);
        events += Run(1, SUCCESS);
    }
    EXPECT_EQ(events, "ask@15 ");
}

TEST(RegisteringForNoTime, IsForTheShortestThatIsAllowed) {
    ForeignRegistration registration({{0x0A000101, 47808}, 0});
    EXPECT_EQ(registration.TimeToLive(), 10);
    std::int64_t wait = 0;
    bool changed = false;
    ASSERT_TRUE(registration.IsDue(1000, wait, changed));
    registration.OnResult(SUCCESS, 1000);
    EXPECT_FALSE(registration.IsDue(1001, wait, changed));
    EXPECT_EQ(wait, 4999);
}

TEST_F(Registering, OnlyTheAnswerToARegistrationCounts) {
    EXPECT_FALSE(m_registration.OnResult(0x0010, 0)) << "of another function";
    EXPECT_FALSE(m_registration.OnResult(SUCCESS, 0)) << "nothing was asked yet";
    EXPECT_EQ(m_registration.Current(), ForeignRegistration::State::asking);
    Run(1, SUCCESS);
    EXPECT_FALSE(m_registration.OnResult(SUCCESS, 20000)) << "answered already";
    m_now = 20000;
    EXPECT_EQ(Run(12, SUCCESS), "ask@30 ");
}

} // namespace
