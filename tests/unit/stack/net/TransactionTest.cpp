#include "platform/stack/transaction/Transaction.h"

#include <gtest/gtest.h>

#include <array>

using namespace bacnet;

namespace {

constexpr std::uint8_t READ_PROPERTY = 12;
constexpr std::uint8_t WRITE_PROPERTY = 15;

class OneTransaction : public testing::Test {
protected:
    void Begin(const CallOptions& options = {}) {
        m_transaction.InvokeId = 9;
        m_transaction.Begin(m_settings, READ_PROPERTY, m_request, options, m_answer, 0);
    }
    static Apdu Pdu(PduType type, std::uint8_t service = READ_PROPERTY, std::span<const std::uint8_t> payload = {}) {
        Apdu pdu;
        pdu.Type = type;
        pdu.InvokeId = 9;
        pdu.Service = service;
        pdu.Payload = payload;
        return pdu;
    }
    static Apdu Segment(std::uint8_t number, bool more, std::span<const std::uint8_t> payload) {
        Apdu pdu = Pdu(PduType::complex_ack, READ_PROPERTY, payload);
        pdu.Segmented = true;
        pdu.MoreFollows = more;
        pdu.SequenceNumber = number;
        pdu.WindowSize = 4;
        return pdu;
    }
    bool Feed(const Apdu& pdu, Millis now = 0) {
        m_reply = {};
        return m_transaction.OnPdu(pdu, now, m_reply);
    }
    Transaction::Due Tick(Millis now) {
        m_reply = {};
        return m_transaction.OnTime(now, m_reply);
    }

    const std::array<std::uint8_t, 3> m_request{1, 2, 3};
    const std::array<std::uint8_t, 4> m_payload{0x0C, 0, 0, 1};
    TransactionSettings m_settings;
    AnswerBuffer m_answer;
    Transaction m_transaction;
    Reply m_reply;
};

TEST_F(OneTransaction, EachKindOfAnswerEndsIt) {
    Begin();
    ASSERT_TRUE(Feed(Pdu(PduType::complex_ack, READ_PROPERTY, m_payload)));
    EXPECT_EQ(m_transaction.Result().How, Outcome::complex_ack);
    EXPECT_EQ(m_answer.Size(), 4U);
    EXPECT_FALSE(m_transaction.NeedsRest());

    Begin();
    ASSERT_TRUE(Feed(Pdu(PduType::simple_ack)));
    EXPECT_EQ(m_transaction.Result().How, Outcome::simple_ack);
    EXPECT_EQ(m_answer.Size(), 0U);

    Begin();
    ASSERT_TRUE(Feed(Pdu(PduType::error, READ_PROPERTY, m_payload)));
    EXPECT_EQ(m_transaction.Result().How, Outcome::error);
    EXPECT_EQ(m_answer.Size(), 4U) << "what follows the service choice is handed up as it came";

    for (const PduType type : {PduType::reject, PduType::abort}) {
        Begin();
        Apdu pdu = Pdu(type);
        pdu.Reason = 63;
        ASSERT_TRUE(Feed(pdu));
        EXPECT_EQ(m_transaction.Result().How, type == PduType::reject ? Outcome::reject : Outcome::abort);
        EXPECT_EQ(m_transaction.Result().Reason, 63) << "unknown reasons pass through";
        EXPECT_TRUE(m_transaction.Result().Answered());
    }
}

TEST_F(OneTransaction, AnswersToAnotherServiceAreNotTaken) {
    Begin();
    EXPECT_FALSE(Feed(Pdu(PduType::complex_ack, WRITE_PROPERTY, m_payload)));
    EXPECT_FALSE(Feed(Pdu(PduType::simple_ack, WRITE_PROPERTY)));
    EXPECT_FALSE(Feed(Pdu(PduType::error, WRITE_PROPERTY, m_payload)));
    EXPECT_FALSE(Feed(Pdu(PduType::segment_ack)));
    EXPECT_FALSE(m_transaction.Done());
}

TEST_F(OneTransaction, AnAnswerThatTheCheckRefusesIsNotTaken) {
    CallOptions options;
    options.Check = [](std::span<const std::uint8_t> request, std::span<const std::uint8_t> answer) {
        return !answer.empty() && answer[0] == request[0];
    };
    Begin(options);
    EXPECT_FALSE(Feed(Pdu(PduType::complex_ack, READ_PROPERTY, m_payload)));
    EXPECT_FALSE(Feed(Segment(0, true, m_payload)));
    EXPECT_EQ(m_transaction.Now(), Transaction::State::awaiting_confirmation);
    EXPECT_TRUE(Feed(Pdu(PduType::complex_ack, READ_PROPERTY, m_request)));
}

TEST_F(OneTransaction, IsRepeatedAndThenGivenUp) {
    m_settings.TimeoutMs = 1000;
    m_settings.Retries = 2;
    Begin();
    EXPECT_EQ(Tick(999), Transaction::Due::nothing);
    EXPECT_EQ(Tick(1000), Transaction::Due::resend);
    EXPECT_EQ(m_transaction.Deadline(), 2000);
    EXPECT_EQ(Tick(1999), Transaction::Due::nothing);
    EXPECT_EQ(Tick(2000), Transaction::Due::resend);
    EXPECT_EQ(m_transaction.RequestHeader().InvokeId, 9) << "a repetition is the same request";
    EXPECT_EQ(Tick(3000), Transaction::Due::finished);
    EXPECT_EQ(m_transaction.Result().How, Outcome::timeout);
    EXPECT_FALSE(m_transaction.Result().Answered());
    EXPECT_TRUE(m_transaction.NeedsRest());
}

TEST_F(OneTransaction, AnAnswerAfterARepetitionMakesTheIdRest) {
    Begin();
    EXPECT_EQ(Tick(3000), Transaction::Due::resend);
    EXPECT_TRUE(Feed(Pdu(PduType::simple_ack), 3001));
    EXPECT_TRUE(m_transaction.NeedsRest()) << "the other answer may still come";
}

TEST_F(OneTransaction, OptionsOverrideTheSettings) {
    CallOptions options;
    options.TimeoutMs = 200;
    options.Retries = 0;
    Begin(options);
    EXPECT_EQ(m_transaction.Patience(), 200);
    EXPECT_EQ(Tick(200), Transaction::Due::finished);
    Begin();
    EXPECT_EQ(m_transaction.Patience(), 12000);
}

TEST_F(OneTransaction, SegmentsAreAcknowledgedAsAClient) {
    Begin();
    ASSERT_TRUE(Feed(Segment(0, true, m_payload)));
    ASSERT_TRUE(m_reply.Send);
    EXPECT_EQ(m_reply.Header.Type, PduType::segment_ack);
    EXPECT_FALSE(m_reply.Header.FromServer);
    EXPECT_FALSE(m_reply.Header.Negative);
    EXPECT_EQ(m_reply.Header.InvokeId, 9);
    EXPECT_EQ(m_reply.Header.SequenceNumber, 0);
    EXPECT_EQ(m_reply.Header.WindowSize, 4);
    ASSERT_TRUE(Feed(Segment(2, true, m_payload)));
    EXPECT_TRUE(m_reply.Send && m_reply.Header.Negative);
    ASSERT_TRUE(Feed(Segment(1, false, m_payload)));
    EXPECT_TRUE(m_reply.Send);
    EXPECT_EQ(m_transaction.Result().How, Outcome::complex_ack);
    EXPECT_EQ(m_answer.Size(), 8U);
    EXPECT_FALSE(Feed(Segment(1, false, m_payload))) << "what comes after the end belongs to nobody";
}

TEST_F(OneTransaction, SegmentsOfAnotherServiceAreNotTaken) {
    Begin();
    ASSERT_TRUE(Feed(Segment(0, true, m_payload)));
    Apdu foreign = Segment(1, true, m_payload);
    foreign.Service = WRITE_PROPERTY;
    EXPECT_FALSE(Feed(foreign));
    EXPECT_FALSE(Feed(Pdu(PduType::complex_ack, READ_PROPERTY, m_payload))) << "nor a whole answer in the middle";
    EXPECT_FALSE(Feed(Pdu(PduType::simple_ack)));
    EXPECT_EQ(m_answer.Size(), 4U);
}

TEST_F(OneTransaction, SegmentsThatStopAreAborted) {
    m_settings.SegmentTimeoutMs = 500;
    m_settings.TimeoutMs = 1000;
    Begin();
    ASSERT_TRUE(Feed(Segment(0, true, m_payload), 100));
    EXPECT_EQ(m_transaction.Deadline(), 2100);
    EXPECT_EQ(Tick(2099), Transaction::Due::nothing) << "a request whose answer has begun is not repeated";
    EXPECT_EQ(Tick(2100), Transaction::Due::finished);
    EXPECT_EQ(m_transaction.Result().How, Outcome::segments_stopped);
    ASSERT_TRUE(m_reply.Send);
    EXPECT_EQ(m_reply.Header.Type, PduType::abort);
    EXPECT_FALSE(m_reply.Header.FromServer);
    EXPECT_EQ(m_reply.Header.Reason, ABORT_TSM_TIMEOUT);
    EXPECT_TRUE(m_transaction.NeedsRest());
}

TEST_F(OneTransaction, SegmentsThatTrickleForEverAreAborted) {
    m_settings.AnswerTimeoutMs = 10000;
    Begin();
    ASSERT_TRUE(Feed(Segment(0, true, m_payload), 0));
    for (Millis now = 1000; now < 10000; now += 1000)
        ASSERT_TRUE(Feed(Segment(0, true, m_payload), now)) << "repeated for ever";
    ASSERT_TRUE(Feed(Segment(0, true, m_payload), 10000));
    EXPECT_EQ(m_transaction.Result().How, Outcome::segments_stopped);
    EXPECT_EQ(m_reply.Header.Type, PduType::abort);
}

TEST_F(OneTransaction, AnAnswerThatIsTooLongIsAborted) {
    AnswerBuffer small(6);
    m_transaction.InvokeId = 9;
    m_transaction.Begin(m_settings, READ_PROPERTY, m_request, {}, small, 0);
    ASSERT_TRUE(Feed(Segment(0, true, m_payload)));
    ASSERT_TRUE(Feed(Segment(1, true, m_payload)));
    EXPECT_EQ(m_transaction.Result().How, Outcome::answer_too_long);
    ASSERT_TRUE(m_reply.Send);
    EXPECT_EQ(m_reply.Header.Type, PduType::abort);
    EXPECT_EQ(m_reply.Header.Reason, ABORT_BUFFER_OVERFLOW);
}

TEST_F(OneTransaction, AllSegmentedAnswersUnderWayShareOneBoundOfMemory) {
    AssemblyBudget budget(10);
    Transaction other;
    AnswerBuffer otherAnswer;
    Reply reply;
    for (Transaction* transaction : {&m_transaction, &other})
        transaction->Budget = &budget;
    Begin();
    other.InvokeId = 9;
    other.Begin(m_settings, READ_PROPERTY, m_request, {}, otherAnswer, 0);
    ASSERT_TRUE(Feed(Segment(0, true, m_payload)));
    ASSERT_TRUE(other.OnPdu(Segment(0, true, m_payload), 0, reply));
    ASSERT_TRUE(Feed(Segment(0, true, m_payload))) << "what is repeated takes nothing";
    EXPECT_EQ(budget.Taken(), 8U);
    ASSERT_TRUE(Feed(Segment(1, true, m_payload)));
    EXPECT_EQ(m_transaction.Result().How, Outcome::answer_too_long);
    EXPECT_TRUE(m_reply.Send);
    EXPECT_EQ(m_reply.Header.Type, PduType::abort);
    EXPECT_EQ(m_reply.Header.Reason, ABORT_OUT_OF_RESOURCES);
    EXPECT_EQ(budget.Taken(), 4U) << "given back at the end";
    ASSERT_TRUE(other.OnPdu(Segment(1, false, m_payload), 0, reply));
    EXPECT_EQ(other.Result().How, Outcome::complex_ack);
    EXPECT_EQ(budget.Taken(), 0U);
}

TEST_F(OneTransaction, AnAbortInTheMiddleOfSegmentsEndsIt) {
    Begin();
    ASSERT_TRUE(Feed(Segment(0, true, m_payload)));
    Apdu abort = Pdu(PduType::abort);
    abort.Reason = ABORT_BUFFER_OVERFLOW;
    abort.FromServer = true;
    ASSERT_TRUE(Feed(abort));
    EXPECT_EQ(m_transaction.Result().How, Outcome::abort);
    EXPECT_EQ(m_transaction.Result().Reason, ABORT_BUFFER_OVERFLOW);
}

TEST_F(OneTransaction, TheRequestSaysWhatWeTake) {
    Begin();
    m_transaction.MaxAnswer = 1490;
    const Apdu header = m_transaction.RequestHeader();
    EXPECT_TRUE(header.SegmentedResponseAccepted);
    EXPECT_EQ(header.SegmentsAccepted, MaxSegments::more_than_64);
    EXPECT_EQ(MaxApduFromCode(header.MaxApduCode), 1476);
    EXPECT_EQ(header.Service, READ_PROPERTY);
}

} // namespace
