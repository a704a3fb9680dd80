// Which segments of an answer are sent when.
#include "simulator/server/SegmentedAnswer.h"

#include <gtest/gtest.h>

#include <numeric>

namespace sim {
namespace {

using State = SegmentedAnswer::State;

class Segments : public ::testing::Test {
protected:
    // count segments of 10 octets, the last one of 3.
    SegmentedAnswer::Burst Start(std::uint32_t count, std::uint32_t retries = 2) {
        m_octets.resize(count * 10 - 7);
        std::iota(m_octets.begin(), m_octets.end(), std::uint8_t{0});
        return m_answer.Start(m_octets, {10, 4, retries});
    }
    std::string Ack(unsigned sequence, unsigned window, bool negative = false) {
        bacnet::Apdu ack;
        ack.Type = bacnet::PduType::segment_ack;
        ack.SequenceNumber = static_cast<std::uint8_t>(sequence);
        ack.WindowSize = static_cast<std::uint8_t>(window);
        ack.Negative = negative;
        return Text(m_answer.OnAck(ack));
    }
    static std::string Text(SegmentedAnswer::Burst burst) {
        std::string text;
        for (std::uint32_t i = burst.First; i < burst.First + burst.Count; ++i)
            text += (text.empty() ? "" : " ") + std::to_string(i);
        return text;
    }
    SegmentedAnswer m_answer;
    std::vector<std::uint8_t> m_octets;
};

TEST_F(Segments, AreTheWholeAnswerInOrder) {
    Start(5);
    EXPECT_EQ(m_answer.SegmentCount(), 5U);
    std::vector<std::uint8_t> joined;
    for (std::uint32_t i = 0; i < 5; ++i) {
        const auto segment = m_answer.Segment(i);
        EXPECT_EQ(segment.size(), i < 4 ? 10U : 3U);
        EXPECT_EQ(m_answer.IsLast(i), i == 4);
        joined.insert(joined.end(), segment.begin(), segment.end());
    }
    EXPECT_EQ(joined, m_octets);
}

TEST_F(Segments, GoInTheWindowThatTheAskerTells) {
    EXPECT_EQ(Text(Start(8)), "0");
    EXPECT_EQ(Ack(0, 3), "1 2 3");
    EXPECT_EQ(Ack(3, 3), "4 5 6");
    EXPECT_EQ(Ack(6, 2), "7");
    EXPECT_EQ(m_answer.GetState(), State::sending);
    EXPECT_EQ(Ack(7, 2), "");
    EXPECT_EQ(m_answer.GetState(), State::done);
}

TEST_F(Segments, AfterAGapContinueBehindTheLastGoodOne) {
    Start(9);
    Ack(0, 4);                             // 1 to 4 are under way
    EXPECT_EQ(Ack(2, 4, true), "3 4 5 6"); // 3 was lost
    EXPECT_EQ(Ack(2, 4, true), "3 4 5 6"); // and again
    EXPECT_EQ(Ack(6, 4), "7 8");
}

TEST_F(Segments, RepeatedAndForeignAcknowledgementsChangeNothing) {
    Start(9);
    Ack(0, 2);
    EXPECT_EQ(Ack(0, 2), ""); // once more
    EXPECT_EQ(Ack(9, 2), ""); // never sent
    EXPECT_EQ(Ack(200, 2), "");
    EXPECT_EQ(Ack(2, 2), "3 4");
}

TEST_F(Segments, TimeoutsSendTheWindowAgainUntilTheRetriesAreUsedUp) {
    Start(9, 2);
    Ack(0, 2);
    EXPECT_EQ(Text(m_answer.OnTimeout()), "1 2");
    EXPECT_EQ(Ack(2, 2), "3 4"); // progress: the retries count anew
    EXPECT_EQ(Text(m_answer.OnTimeout()), "3 4");
    EXPECT_EQ(Text(m_answer.OnTimeout()), "3 4");
    EXPECT_EQ(Text(m_answer.OnTimeout()), "");
    EXPECT_EQ(m_answer.GetState(), State::failed);
    EXPECT_EQ(Ack(4, 2), "");
}

TEST_F(Segments, AWindowOfZeroOrMoreThan127FailsTheAnswer) {
    Start(3);
    Ack(0, 0);
    EXPECT_EQ(m_answer.GetState(), State::failed);
    Start(3);
    Ack(0, 128);
    EXPECT_EQ(m_answer.GetState(), State::failed);
    Start(3);
    Ack(0, 127);
    EXPECT_EQ(m_answer.GetState(), State::sending);
}

TEST_F(Segments, SequenceNumbersWrapAt256) {
    Start(600);
    std::uint32_t next = 1;
    EXPECT_EQ(Ack(0, 100), [] {
        std::string text = "1";
        for (int i = 2; i <= 100; ++i)
            text += " " + std::to_string(i);
        return text;
    }());
    next = 100;
    while (next < 599) {
        const std::string burst = Ack(next & 0xFF, 50);
        ASSERT_EQ(burst.substr(0, burst.find(' ')), std::to_string(next + 1));
        next = std::min(next + 50, 599U);
    }
    EXPECT_EQ(Ack(599 & 0xFF, 50), "");
    EXPECT_EQ(m_answer.GetState(), State::done);
}

} // namespace
} // namespace sim
