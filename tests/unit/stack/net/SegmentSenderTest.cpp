#include "platform/stack/transaction/SegmentSender.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace bacnet;

namespace {

using List = std::vector<std::string>;

constexpr Millis QUIET = 100;

// A request of so many segments of two octets that say their number.
class Sending : public testing::Test {
protected:
    void Begin(unsigned segments) {
        m_request.clear();
        for (unsigned i = 0; i < segments; ++i) {
            m_request.push_back(static_cast<std::uint8_t>(i >> 8));
            m_request.push_back(static_cast<std::uint8_t>(i));
        }
        m_sender.Begin(m_request, 2, QUIET);
    }
    // All segments that are to be sent now, "3 4 5." with a period behind the last of the request.
    std::string Window() {
        std::string text;
        SegmentSender::Segment segment;
        while (m_sender.Next(segment)) {
            const unsigned number = segment.Octets[0] * 256U + segment.Octets[1];
            EXPECT_EQ(segment.Sequence, number % 256);
            text += (text.empty() ? "" : " ") + std::to_string(number) + (segment.MoreFollows ? "" : ".");
        }
        return text;
    }
    // Acknowledges, and tells what is sent then.
    std::string Ack(unsigned number, std::uint8_t window, Millis now = 0) { return On(number, window, false, now); }
    std::string Nak(unsigned number, std::uint8_t window, Millis now = 0) { return On(number, window, true, now); }

    std::string On(unsigned number, std::uint8_t window, bool negative, Millis now) {
        Apdu ack;
        ack.Type = PduType::segment_ack;
        ack.FromServer = true;
        ack.Negative = negative;
        ack.SequenceNumber = static_cast<std::uint8_t>(number);
        ack.WindowSize = window;
        switch (m_sender.OnAck(ack, now)) {
        case SegmentSender::Step::ignored:
            return "ignored" + Window();
        case SegmentSender::Step::send:
            return Window();
        case SegmentSender::Step::resend:
            return "again " + Window();
        case SegmentSender::Step::complete:
            return "complete" + Window();
        }
        return "?";
    }

    std::vector<std::uint8_t> m_request;
    SegmentSender m_sender;
};

TEST_F(Sending, TheFirstSegmentGoesAloneAndTheDeviceSaysHowManyFollow) {
    Begin(8);
    EXPECT_EQ(Window(), "0");
    EXPECT_FALSE(m_sender.Heard());
    EXPECT_EQ(Ack(0, 3), "1 2 3");
    EXPECT_TRUE(m_sender.Heard());
    EXPECT_EQ(Ack(3, 2), "4 5") << "the window may change with each acknowledgement";
    EXPECT_FALSE(m_sender.AllSent());
    EXPECT_EQ(Ack(5, 10), "6 7.");
    EXPECT_TRUE(m_sender.AllSent());
    EXPECT_EQ(Ack(7, 10), "complete");
}

TEST_F(Sending, MoreThan256SegmentsAreNothingSpecial) {
    Begin(1000);
    std::string sent = Window();
    unsigned windows = 0;
    for (unsigned last = 0; last < 999; last = std::min(last + 100, 999U), ++windows)
        sent += " " + Ack(last, 100);
    EXPECT_EQ(Ack(999, 100), "complete");
    EXPECT_EQ(windows, 10U);
    std::string all;
    for (unsigned i = 0; i < 1000; ++i)
        all += (i == 0 ? "" : " ") + std::to_string(i);
    EXPECT_EQ(sent, all + ".");
}

TEST_F(Sending, AfterAGapTheWindowGoesOnFromTheMissingSegment) {
    Begin(20);
    Window();
    EXPECT_EQ(Ack(0, 4), "1 2 3 4");
    EXPECT_EQ(Nak(2, 4), "3 4 5 6") << "never from the first";
    EXPECT_EQ(Ack(6, 4), "7 8 9 10");
}

TEST_F(Sending, AStormOfNegativeAcknowledgementsIsOneRepetition) {
    Begin(300);
    Window();
    Ack(0, 8);
    EXPECT_EQ(Nak(3, 8), "4 5 6 7 8 9 10 11");
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(Nak(3, 8, QUIET - 1), "ignored");
    EXPECT_EQ(Nak(3, 8, QUIET), "again 4 5 6 7 8 9 10 11") << "the repetition may be lost, too";
    EXPECT_EQ(Nak(3, 8, QUIET + 1), "ignored");
}

TEST_F(Sending, ANegativeAcknowledgementOfTheFirstOfAWindowIsHeededAtOnce) {
    Begin(20);
    Window();
    EXPECT_EQ(Ack(0, 4), "1 2 3 4");
    EXPECT_EQ(Nak(0, 4), "again 1 2 3 4");
    EXPECT_EQ(Nak(0, 4), "ignored");
}

TEST_F(Sending, RepeatedAndOldAcknowledgementsSendNothing) {
    Begin(500);
    Window();
    Ack(0, 4);
    Ack(4, 4);
    EXPECT_EQ(Ack(4, 4), "ignored") << "or each one would double the traffic";
    EXPECT_EQ(Ack(0, 4), "ignored");
    EXPECT_EQ(Nak(2, 4), "ignored");
    EXPECT_EQ(Ack(9, 4), "ignored") << "of a segment that was never sent";
    EXPECT_EQ(Ack(8, 4), "9 10 11 12");
}

TEST_F(Sending, AnOldAcknowledgementIsToldFromANewOneAcrossTheTurnOfTheNumbers) {
    Begin(600);
    Window();
    for (unsigned last = 0; last < 250; last += 10)
        Ack(last, 10);
    EXPECT_EQ(Ack(250, 10), "251 252 253 254 255 256 257 258 259 260");
    EXPECT_EQ(Ack(240, 10), "ignored");
    EXPECT_EQ(Nak(255, 10), "256 257 258 259 260 261 262 263 264 265");
    EXPECT_EQ(Ack(265, 10), "266 267 268 269 270 271 272 273 274 275");
}

TEST_F(Sending, SilenceRepeatsTheWindowThatIsNotAcknowledged) {
    Begin(20);
    EXPECT_EQ(Window(), "0");
    m_sender.Repeat();
    EXPECT_EQ(Window(), "0");
    Ack(0, 4);
    Ack(4, 4);
    m_sender.Repeat();
    EXPECT_EQ(Window(), "5 6 7 8");
    EXPECT_EQ(Ack(8, 4), "9 10 11 12") << "an acknowledgement of the first pass, just late";
}

TEST_F(Sending, ADeviceThatTakesFewerThanItSaidIsFollowed) {
    Begin(20);
    Window();
    EXPECT_EQ(Ack(0, 6), "1 2 3 4 5 6");
    EXPECT_EQ(Ack(3, 3), "4 5 6");
}

TEST_F(Sending, AWindowOutOfRangeIsMetWithTheNearest) {
    Begin(300);
    Window();
    EXPECT_EQ(Ack(0, 0), "1");
    std::string window = Ack(1, 255);
    EXPECT_EQ(window.substr(0, 4), "2 3 ");
    EXPECT_EQ(window.substr(window.size() - 3), "128");
}

} // namespace
