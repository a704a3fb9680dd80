#include "platform/stack/transaction/Reassembly.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

using namespace bacnet;

namespace {

// A device's side, scripted: each segment brings four octets that say its number.
class Reassembling : public testing::Test {
protected:
    std::string Send(unsigned number, bool more = true, std::uint8_t proposed = 4) {
        const std::array<std::uint8_t, 4> payload{
            static_cast<std::uint8_t>(number >> 24), static_cast<std::uint8_t>(number >> 16),
            static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
        return SendWith(number, more, proposed, payload);
    }
    std::string SendWith(unsigned number, bool more, std::uint8_t proposed, std::span<const std::uint8_t> payload) {
        Apdu segment;
        segment.Type = PduType::complex_ack;
        segment.Segmented = true;
        segment.MoreFollows = more;
        segment.SequenceNumber = static_cast<std::uint8_t>(number);
        segment.WindowSize = proposed;
        segment.Payload = payload;
        const Reassembly::Step step = m_reassembly.OnSegment(segment, m_answer);
        const std::string at = std::to_string(step.Sequence) + "/" + std::to_string(step.Window);
        switch (step.What) {
        case Reassembly::Action::none:
            return "";
        case Reassembly::Action::ack:
            return "ack " + at;
        case Reassembly::Action::negative_ack:
            return "nak " + at;
        case Reassembly::Action::complete:
            return "complete " + at;
        case Reassembly::Action::too_long:
            return "too long, abort " + std::to_string(step.Reason);
        case Reassembly::Action::invalid:
            return "invalid, abort " + std::to_string(step.Reason);
        }
        return "?";
    }
    void ExpectWhole(unsigned segments) {
        ASSERT_EQ(m_answer.Size(), 4U * segments);
        for (unsigned i = 0; i < segments; ++i) {
            const auto octets = m_answer.Octets().subspan(4 * i, 4);
            EXPECT_EQ(static_cast<unsigned>(octets[0] << 24 | octets[1] << 16 | octets[2] << 8 | octets[3]), i);
        }
    }

    AnswerBuffer m_answer;
    Reassembly m_reassembly;

    Reassembling() { m_reassembly.Begin(16); }
};

using List = std::vector<std::string>;

TEST_F(Reassembling, TheFirstSegmentAndEachWindowAreAcknowledged) {
    List said;
    for (unsigned i = 0; i < 10; ++i)
        said.push_back(Send(i, i != 9));
    EXPECT_EQ(said, (List{"ack 0/4", "", "", "", "ack 4/4", "", "", "", "ack 8/4", "complete 9/4"}));
    ExpectWhole(10);
}

TEST_F(Reassembling, MoreThan256SegmentsAreNothingSpecial) {
    unsigned acks = 0;
    for (unsigned i = 0; i < 1000; ++i)
        acks += Send(i, true, 8).empty() ? 0 : 1;
    EXPECT_EQ(acks, 1U + 999 / 8);
    EXPECT_EQ(Send(1000, false), "complete 232/8");
    ExpectWhole(1001);
}

TEST_F(Reassembling, OneSegmentAloneIsComplete) {
    EXPECT_EQ(Send(0, false), "complete 0/4");
    ExpectWhole(1);
}

TEST_F(Reassembling, TheWindowIsTheSmallerOfBoth) {
    EXPECT_EQ(Send(0, true, 100), "ack 0/16");
    m_reassembly.Begin(127);
    EXPECT_EQ(Send(0, true, 255), "ack 0/127") << "a proposal out of range is met with the nearest in range";
    m_reassembly.Begin(16);
    EXPECT_EQ(Send(0, true, 0), "ack 0/1");
    EXPECT_EQ(Send(1, true, 0), "ack 1/1");
}

TEST_F(Reassembling, AfterAGapThereIsOneNegativeAcknowledgement) {
    EXPECT_EQ(Send(0), "ack 0/4");
    EXPECT_EQ(Send(1), "");
    EXPECT_EQ(Send(3), "nak 1/4");
    EXPECT_EQ(Send(4), "") << "the rest of the window was under way";
    EXPECT_EQ(Send(5), "");
    List said;
    for (unsigned i = 2; i < 8; ++i)
        said.push_back(Send(i, i != 7));
    EXPECT_EQ(said, (List{"", "", "", "ack 5/4", "", "complete 7/4"}))
        << "the window counts from the segment asked for";
    ExpectWhole(8);
}

TEST_F(Reassembling, AGapThatIsLostAgainIsReportedAgain) {
    Send(0);
    EXPECT_EQ(Send(2), "nak 0/4");
    EXPECT_EQ(Send(3), "");
    EXPECT_EQ(Send(4), "");
    // The device repeats from 1 on, and 1 is lost again.
    EXPECT_EQ(Send(2), "nak 0/4");
    EXPECT_EQ(Send(3), "");
    EXPECT_EQ(Send(1), "");
    EXPECT_EQ(Send(2), "");
    EXPECT_EQ(Send(3, false), "complete 3/4");
    ExpectWhole(4);
}

TEST_F(Reassembling, EveryPacketDoubledIsNoStorm) {
    List said;
    for (unsigned i = 0; i < 9; ++i) {
        said.push_back(Send(i));
        said.push_back(Send(i));
    }
    EXPECT_EQ(said, (List{"ack 0/4", "ack 0/4", "", "", "", "", "", "", "ack 4/4", "ack 4/4", "", "", "", "", "", "",
                          "ack 8/4", "ack 8/4"}));
}

TEST_F(Reassembling, ALostAcknowledgementIsGivenAgain) {
    for (unsigned i = 0; i <= 4; ++i)
        Send(i);
    // The acknowledgement of 4 was lost: the device repeats its window.
    EXPECT_EQ(Send(1), "");
    EXPECT_EQ(Send(2), "");
    EXPECT_EQ(Send(3), "");
    EXPECT_EQ(Send(4), "ack 4/4");
    EXPECT_EQ(Send(5, false), "complete 5/4");
    ExpectWhole(6);
}

TEST_F(Reassembling, ADeviceThatStopsShortOfItsWindowIsHelpedOn) {
    EXPECT_EQ(Send(0, true, 8), "ack 0/8");
    Send(1);
    Send(2);
    // It waits for an acknowledgement after two, times out, and repeats them.
    EXPECT_EQ(Send(1), "");
    EXPECT_EQ(Send(2), "ack 2/8");
    EXPECT_EQ(Send(3, false), "complete 3/8");
    ExpectWhole(4);
}

TEST_F(Reassembling, APeerThatBeginsAgainIsFollowed) {
    for (unsigned i = 0; i <= 5; ++i)
        Send(i);
    EXPECT_EQ(Send(0), "") << "may be a repetition that was late";
    EXPECT_EQ(Send(0, true, 2), "ack 0/2") << "it waits for an acknowledgement of the first";
    EXPECT_EQ(Send(1), "");
    EXPECT_EQ(Send(2, false), "complete 2/2");
    ExpectWhole(3);
}

TEST_F(Reassembling, LateRepetitionsOfTheFirstSegmentLoseNothingOfLongAnswers) {
    for (unsigned i = 0; i < 300; ++i) {
        Send(i);
        if (i >= 256) { // whose number is that of the first
            EXPECT_EQ(Send(0), i == 256 ? "ack 0/4" : "") << i;
        }
    }
    Send(300, false);
    ExpectWhole(301);
}

TEST_F(Reassembling, AnAnswerThatDoesNotBeginAtZeroIsRefused) {
    EXPECT_EQ(Send(1), "invalid, abort 2");
    EXPECT_EQ(m_answer.Size(), 0U);
}

TEST_F(Reassembling, ASegmentOfNothingIsRefusedUnlessItIsTheLast) {
    Send(0);
    EXPECT_EQ(SendWith(1, true, 4, {}), "invalid, abort 2");
    m_reassembly.Begin(16);
    m_answer.Clear();
    Send(0);
    EXPECT_EQ(SendWith(1, false, 4, {}), "complete 1/4");
    ExpectWhole(1);
}

TEST_F(Reassembling, AnAnswerWithoutEndIsAborted) {
    AnswerBuffer small(10);
    Apdu segment;
    segment.Type = PduType::complex_ack;
    segment.Segmented = true;
    segment.MoreFollows = true;
    segment.WindowSize = 4;
    const std::array<std::uint8_t, 4> payload{1, 2, 3, 4};
    segment.Payload = payload;
    EXPECT_EQ(m_reassembly.OnSegment(segment, small).What, Reassembly::Action::ack);
    segment.SequenceNumber = 1;
    EXPECT_EQ(m_reassembly.OnSegment(segment, small).What, Reassembly::Action::none);
    segment.SequenceNumber = 2;
    const Reassembly::Step step = m_reassembly.OnSegment(segment, small);
    EXPECT_EQ(step.What, Reassembly::Action::too_long);
    EXPECT_EQ(step.Reason, ABORT_BUFFER_OVERFLOW);
}

TEST(AnswerBuffer, GrowsToItsLimitAndKeepsWhatItHolds) {
    AnswerBuffer buffer(10000);
    std::vector<std::uint8_t> piece(999);
    for (unsigned i = 0; i < 10; ++i) {
        std::fill(piece.begin(), piece.end(), static_cast<std::uint8_t>(i));
        ASSERT_TRUE(buffer.Append(piece));
    }
    EXPECT_FALSE(buffer.Append(piece));
    ASSERT_EQ(buffer.Size(), 9990U);
    for (std::size_t i = 0; i < buffer.Size(); ++i)
        ASSERT_EQ(buffer.Octets()[i], i / 999);
    buffer.Clear();
    EXPECT_EQ(buffer.Size(), 0U);
    EXPECT_TRUE(buffer.Append(piece));
}

} // namespace
