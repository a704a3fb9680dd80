#include "platform/stack/transaction/ReceiveRole.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace bacnet;

namespace {

class Role : public testing::Test {
protected:
    Waiter m_waiters[3];
    ReceiveRole m_role;
    ReceiveRole::Candidate m_a{m_waiters[0]};
    ReceiveRole::Candidate m_b{m_waiters[1]};
    ReceiveRole::Candidate m_c{m_waiters[2]};
};

TEST_F(Role, PassesToTheCandidatesInTurn) {
    EXPECT_TRUE(m_role.TryLead(m_a));
    EXPECT_FALSE(m_role.TryLead(m_b));
    EXPECT_FALSE(m_role.TryLead(m_c));
    m_role.Leave(m_a);
    EXPECT_TRUE(m_role.TryLead(m_b)) << "was made the leader";
    EXPECT_FALSE(m_role.TryLead(m_c));
    m_role.Leave(m_b);
    EXPECT_TRUE(m_role.TryLead(m_c));
    m_role.Leave(m_c);
    EXPECT_TRUE(m_role.TryLead(m_a));
    m_role.Leave(m_a);
}

TEST_F(Role, ACandidateWhoLeftIsPassedOver) {
    EXPECT_TRUE(m_role.TryLead(m_a));
    EXPECT_FALSE(m_role.TryLead(m_b));
    EXPECT_FALSE(m_role.TryLead(m_c));
    m_role.Leave(m_b);
    m_role.Leave(m_a);
    EXPECT_TRUE(m_role.TryLead(m_c));
    m_role.Leave(m_c);
    m_role.Leave(m_c); // harmless
    EXPECT_TRUE(m_role.TryTake());
    m_role.Release();
}

TEST_F(Role, ALeaderChosenTooLatePassesItOn) {
    EXPECT_TRUE(m_role.TryLead(m_a));
    EXPECT_FALSE(m_role.TryLead(m_b));
    EXPECT_FALSE(m_role.TryLead(m_c));
    m_role.Leave(m_a); // b leads now, but its answer came meanwhile
    m_role.Leave(m_b);
    EXPECT_TRUE(m_role.TryLead(m_c));
    m_role.Leave(m_c);
}

TEST_F(Role, TheBackgroundThreadKeepsOffWhileCallersLead) {
    EXPECT_TRUE(m_role.Idle(false));
    EXPECT_TRUE(m_role.TryLead(m_a));
    EXPECT_FALSE(m_role.TryTake());
    EXPECT_FALSE(m_role.Idle(false));
    EXPECT_FALSE(m_role.Idle(true)) << "even when asked to take over, while somebody leads";
    m_role.Leave(m_a);
    EXPECT_TRUE(m_role.Idle(false)) << "nobody has led since the last look";
    EXPECT_TRUE(m_role.TryLead(m_a));
    m_role.Leave(m_a);
    EXPECT_FALSE(m_role.Idle(false)) << "somebody has led in between";
    EXPECT_TRUE(m_role.TryLead(m_a));
    m_role.Leave(m_a);
    EXPECT_TRUE(m_role.Idle(true));
}

TEST_F(Role, ACallerThatComesDuringABackgroundRoundLeadsAfterIt) {
    EXPECT_TRUE(m_role.TryTake());
    EXPECT_FALSE(m_role.TryLead(m_a));
    m_role.Release();
    EXPECT_TRUE(m_role.TryLead(m_a));
    m_role.Leave(m_a);
}

TEST(RoleUnderLoad, IsHeldByOneAtATimeAndNeverLost) {
    ReceiveRole role;
    std::atomic<int> holders{0};
    std::atomic<int> rounds{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            Waiter& waiter = Waiter::OfThisThread();
            for (int round = 0; round < 2000; ++round) {
                ReceiveRole::Candidate candidate(waiter);
                while (!role.TryLead(candidate))
                    waiter.Wait(10000);
                EXPECT_EQ(holders.fetch_add(1), 0);
                holders.fetch_sub(1);
                rounds.fetch_add(1);
                role.Leave(candidate);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(rounds.load(), 16000);
    EXPECT_TRUE(role.TryTake());
    role.Release();
}

} // namespace
