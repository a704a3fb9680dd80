#include "platform/stack/transaction/RequestAssembly.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace bacnet;

namespace {

constexpr std::uint8_t WRITE_PROPERTY = 15;

PeerKey Station(std::uint8_t host) {
    PeerKey key;
    key.Scope = PeerKey::LOCAL_SCOPE;
    key.Length = 1;
    key.Octets[0] = host;
    return key;
}

class Assembling : public testing::Test {
protected:
    Assembling() {
        m_settings.WindowSize = 4;
        m_settings.SegmentTimeoutMs = 1000;
        m_assembly = std::make_unique<RequestAssembly>(m_settings);
    }
    // What is said to it: "" for nothing; a request that became whole stands behind it with its octets.
    std::string Send(std::uint8_t host, std::uint8_t id, std::uint8_t number, bool more,
                     std::vector<std::uint8_t> octets = {}, Millis now = 0) {
        Apdu segment;
        segment.Type = PduType::confirmed_request;
        segment.Segmented = true;
        segment.MoreFollows = more;
        segment.InvokeId = id;
        segment.SequenceNumber = number;
        segment.WindowSize = 10;
        segment.Service = m_service;
        if (octets.empty())
            octets = {number};
        segment.Payload = octets;
        const RequestAssembly::Step step = m_assembly->OnSegment(Station(host), segment, now);
        std::string text;
        if (step.Answer.Send) {
            const Apdu& header = step.Answer.Header;
            EXPECT_TRUE(header.FromServer);
            EXPECT_EQ(header.InvokeId, id);
            text = header.Type == PduType::abort
                       ? "abort " + std::to_string(header.Reason)
                       : (header.Negative ? "nak " : "ack ") + std::to_string(header.SequenceNumber) + "/" +
                             std::to_string(header.WindowSize);
        }
        if (step.Whole) {
            text += " whole";
            for (const std::uint8_t octet : step.Whole->Octets())
                text += " " + std::to_string(octet);
        }
        return text;
    }

    std::uint8_t m_service = WRITE_PROPERTY;
    TransactionSettings m_settings;
    std::unique_ptr<RequestAssembly> m_assembly;
};

TEST_F(Assembling, ARequestIsAcknowledgedAsTheServingSideAndHandedOutOnce) {
    EXPECT_EQ(Send(1, 7, 0, true), "ack 0/4");
    EXPECT_EQ(Send(1, 7, 1, true), "");
    EXPECT_EQ(Send(1, 7, 2, true), "");
    EXPECT_EQ(Send(1, 7, 3, true), "");
    EXPECT_EQ(Send(1, 7, 4, true), "ack 4/4");
    EXPECT_EQ(Send(1, 7, 5, false), "ack 5/4 whole 0 1 2 3 4 5");
}

TEST_F(Assembling, EachStationAndInvokeIdHasItsOwn) {
    Send(1, 7, 0, true, {10});
    Send(2, 7, 0, true, {20});
    Send(1, 8, 0, true, {30});
    EXPECT_EQ(Send(2, 7, 1, false, {21}), "ack 1/4 whole 20 21");
    EXPECT_EQ(Send(1, 8, 1, false, {31}), "ack 1/4 whole 30 31");
    EXPECT_EQ(Send(1, 7, 1, false, {11}), "ack 1/4 whole 10 11");
}

TEST_F(Assembling, AfterAGapThereIsOneNegativeAcknowledgement) {
    Send(1, 7, 0, true);
    EXPECT_EQ(Send(1, 7, 2, true), "nak 0/4");
    EXPECT_EQ(Send(1, 7, 3, true), "");
    EXPECT_EQ(Send(1, 7, 1, true), "");
    EXPECT_EQ(Send(1, 7, 2, false), "ack 2/4 whole 0 1 2");
}

TEST_F(Assembling, ALostLastAcknowledgementIsGivenAgainAndTheRequestIsNot) {
    Send(1, 7, 0, true);
    EXPECT_EQ(Send(1, 7, 1, false), "ack 1/4 whole 0 1");
    EXPECT_EQ(Send(1, 7, 1, false), "ack 1/4");
    EXPECT_EQ(Send(1, 7, 9, true), "") << "nonsense behind the end";
    EXPECT_EQ(Send(1, 7, 1, false, {}, 3999), "ack 1/4");
}

TEST_F(Assembling, AFirstSegmentBehindTheEndBeginsTheNextRequest) {
    Send(1, 7, 0, true, {1});
    Send(1, 7, 1, false, {2});
    EXPECT_EQ(Send(1, 7, 0, true, {3}), "ack 0/4");
    EXPECT_EQ(Send(1, 7, 1, false, {4}), "ack 1/4 whole 3 4");
}

TEST_F(Assembling, WhatBeginsInTheMiddleIsAbortedOnceAWindow) {
    EXPECT_EQ(Send(1, 7, 3, true), "");
    EXPECT_EQ(Send(1, 7, 4, true), "");
    EXPECT_EQ(Send(1, 7, 5, false), "abort 2");
}

TEST_F(Assembling, OneThatHasStoppedIsForgotten) {
    Send(1, 7, 0, true, {1}, 0);
    EXPECT_EQ(Send(1, 7, 1, false, {2}, 4000), "abort 2");
    EXPECT_EQ(Send(1, 7, 0, true, {5}, 4001), "ack 0/4");
    EXPECT_EQ(Send(1, 7, 1, false, {6}, 4002), "ack 1/4 whole 5 6");
}

TEST_F(Assembling, AnotherServiceIsAnotherRequest) {
    Send(1, 7, 0, true, {1});
    m_service = 16;
    EXPECT_EQ(Send(1, 7, 1, false, {2}), "abort 2");
    EXPECT_EQ(Send(1, 7, 0, false, {3}), "ack 0/4 whole 3");
}

TEST_F(Assembling, AnAbortOfTheAskingSideEndsIt) {
    Send(1, 7, 0, true);
    EXPECT_FALSE(m_assembly->OnAbort(Station(2), 7));
    EXPECT_TRUE(m_assembly->OnAbort(Station(1), 7));
    EXPECT_FALSE(m_assembly->OnAbort(Station(1), 7));
    EXPECT_EQ(Send(1, 7, 1, false), "abort 2");
}

TEST_F(Assembling, ARequestWithoutEndIsAborted) {
    const std::vector<std::uint8_t> large(1400, 1);
    EXPECT_EQ(Send(1, 7, 0, true, large), "ack 0/4");
    std::string said;
    unsigned number = 1;
    for (; number < 200 && said.find("abort") == std::string::npos; ++number)
        said = Send(1, 7, static_cast<std::uint8_t>(number), true, large);
    EXPECT_EQ(said, "abort 1");
    EXPECT_EQ(number, RequestAssembly::MAX_OCTETS / 1400 + 1);
    EXPECT_EQ(Send(1, 7, static_cast<std::uint8_t>(number), false), "abort 2") << "and it is forgotten";
}

TEST_F(Assembling, AFloodOfFirstSegmentsTakesBoundedMemoryAndPasses) {
    for (unsigned i = 0; i < RequestAssembly::MAX_REQUESTS; ++i)
        EXPECT_EQ(Send(1, static_cast<std::uint8_t>(i), 0, true), "ack 0/4");
    EXPECT_EQ(Send(2, 1, 0, true), "abort 9");
    EXPECT_EQ(Send(1, 3, 1, false), "ack 1/4 whole 0 1") << "those under way go on";
    EXPECT_EQ(Send(2, 1, 0, true, {}, 4000), "ack 0/4") << "the others have stopped";
}

} // namespace
