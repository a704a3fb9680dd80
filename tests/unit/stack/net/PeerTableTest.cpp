#include "platform/stack/transaction/PeerTable.h"

#include <gtest/gtest.h>

using namespace bacnet;

namespace {

constexpr std::uint8_t WRITE_PROPERTY = 15;

class PromptPeer : public testing::Test, private ITransactionOwner {
protected:
    PromptPeer() {
        m_settings.TimeoutMs = 1000;
        m_settings.Retries = 1;
        m_peer.Length = 6;
    }
    // Begins a request at this time; whether an answer is expected at once.
    bool Ask(Millis now) {
        m_transaction.Owner = this;
        m_transaction.Begin(m_settings, WRITE_PROPERTY, {}, {}, m_answer, now);
        EXPECT_EQ(m_table.Add(m_peer, m_transaction, now, nullptr), PeerTable::Enter::done);
        return m_transaction.PromptPeer;
    }
    void Answer(Millis now) {
        Apdu pdu;
        pdu.Type = PduType::simple_ack;
        pdu.InvokeId = m_transaction.InvokeId;
        pdu.Service = WRITE_PROPERTY;
        EXPECT_TRUE(m_table.OnPdu(m_peer, {}, pdu, now).Matched);
    }
    Transaction::Due Look(Millis now) {
        PeerTable::Dispatched due;
        return m_table.OnTime(m_peer, m_transaction, now, due);
    }

private:
    Waiter* OnFinished(Transaction&) override { return nullptr; }

    TransactionSettings m_settings;
    AnswerBuffer m_answer;
    PeerKey m_peer;
    Transaction m_transaction;
    PeerTable m_table{0};
};

TEST_F(PromptPeer, IsOneThatHasAnsweredWithinATick) {
    EXPECT_FALSE(Ask(0)) << "it was never asked";
    Answer(PeerTable::PROMPT_MS);
    EXPECT_TRUE(Ask(100));
    Answer(101 + PeerTable::PROMPT_MS);
    EXPECT_FALSE(Ask(200));
    Answer(200);
    EXPECT_TRUE(Ask(300));
    Answer(300);
}

TEST_F(PromptPeer, IsNoneWhileItIsSilent) {
    Ask(0);
    Answer(0);
    EXPECT_TRUE(Ask(100));
    EXPECT_EQ(Look(500), Transaction::Due::nothing);
    EXPECT_EQ(Look(1100), Transaction::Due::resend);
    Answer(1100);
    EXPECT_FALSE(Ask(1200)) << "the answer came to a repetition";
    Answer(1200);
    EXPECT_TRUE(Ask(1300));
    EXPECT_EQ(Look(2300), Transaction::Due::resend);
    EXPECT_EQ(Look(3300), Transaction::Due::finished);
    EXPECT_FALSE(Ask(3400));
    EXPECT_EQ(Look(4400), Transaction::Due::resend);
    EXPECT_EQ(Look(5400), Transaction::Due::finished);
}

} // namespace
