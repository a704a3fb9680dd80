// Segmented requests: the state machine by itself, and a device over UDP, octet by octet.
#include "simulator/server/SegmentedRequest.h"
#include "tests/unit/simulator/Site.h"

#include <string>
#include <vector>

namespace sim::testing {
namespace {

using List = std::vector<std::string>;

class Receiving : public ::testing::Test {
protected:
    std::string Send(unsigned number, bool more = true, std::uint8_t proposed = 4, std::uint8_t id = 7) {
        const std::uint8_t octets[] = {static_cast<std::uint8_t>(number)};
        bacnet::Apdu segment;
        segment.Type = bacnet::PduType::confirmed_request;
        segment.Segmented = true;
        segment.MoreFollows = more;
        segment.SegmentedResponseAccepted = true;
        segment.SegmentsAccepted = bacnet::MaxSegments::more_than_64;
        segment.MaxApduCode = 5;
        segment.InvokeId = id;
        segment.Service = 14;
        segment.SequenceNumber = static_cast<std::uint8_t>(number);
        segment.WindowSize = proposed;
        segment.Payload = octets;
        const SegmentedRequests::Step step = m_requests.OnSegment(m_from, segment, m_settings, m_nowMs);
        std::string text;
        if (step.Answer) {
            const bacnet::Apdu& answer = *step.Answer;
            EXPECT_TRUE(answer.FromServer);
            text = answer.Type == bacnet::PduType::abort
                       ? "abort " + std::to_string(answer.Reason)
                       : (answer.Negative ? "nak " : "ack ") + std::to_string(answer.SequenceNumber) + "/" +
                             std::to_string(answer.WindowSize);
        }
        return step.Whole.empty() ? text : text + " whole " + ToHex(step.Whole);
    }

    SegmentedRequests m_requests;
    SegmentedRequests::Settings m_settings{3, 64, 8000};
    Requester m_from{{0x7F000001, 47808}, 0, {}};
    std::int64_t m_nowMs = 1000;
};

TEST_F(Receiving, WindowsAreAcknowledgedAndTheWholeIsARequestInOnePiece) {
    List said;
    for (unsigned i = 0; i < 6; ++i)
        said.push_back(Send(i, i != 5));
    EXPECT_EQ(said, (List{"ack 0/3", "", "", "ack 3/3", "", "ack 5/3 whole 02 75 07 0E 00 01 02 03 04 05"}));
}

TEST_F(Receiving, EachSegmentOutOfOrderIsComplainedOf) {
    Send(0);
    EXPECT_EQ(Send(2), "nak 0/3");
    EXPECT_EQ(Send(3), "nak 0/3");
    EXPECT_EQ(Send(1), "");
    EXPECT_EQ(Send(2, false), "ack 2/3 whole 02 75 07 0E 00 01 02");
}

TEST_F(Receiving, RepetitionsArePassedOverUntilTheyFillAWindow) {
    for (unsigned i = 0; i <= 3; ++i)
        Send(i);
    EXPECT_EQ(Send(1), "");
    EXPECT_EQ(Send(2), "");
    EXPECT_EQ(Send(3), "nak 3/3") << "the acknowledgement was lost";
}

TEST_F(Receiving, ALostLastAcknowledgementIsGivenAgain) {
    Send(0);
    EXPECT_EQ(Send(1, false), "ack 1/3 whole 02 75 07 0E 00 01");
    EXPECT_EQ(Send(1, false), "ack 1/3");
    EXPECT_EQ(Send(0), "ack 0/3") << "which begins the next request";
}

TEST_F(Receiving, MoreThan256SegmentsCountOn) {
    m_settings.MaxSegments = 1000;
    for (unsigned i = 0; i < 699; ++i)
        Send(i, true, 100);
    const std::string last = Send(699, false, 100);
    EXPECT_EQ(last.substr(0, 9), "ack 187/3");
    EXPECT_EQ(last.size(), std::string("ack 187/3 whole 02 75 07 0E").size() + 700 * 3);
}

TEST_F(Receiving, WhatCanNotBeTakenIsAborted) {
    EXPECT_EQ(Send(3), "abort 2");
    EXPECT_EQ(Send(0, true, 0), "abort 7");
    EXPECT_EQ(Send(0, true, 128), "abort 7");
    m_settings.MaxSegments = 2;
    Send(0);
    EXPECT_EQ(Send(1), "");
    EXPECT_EQ(Send(2), "abort 1");
    EXPECT_EQ(Send(3), "abort 2") << "it is forgotten";
}

TEST_F(Receiving, SilenceAndAbortEndIt) {
    Send(0);
    m_nowMs += 8001;
    EXPECT_EQ(Send(1), "abort 2");
    Send(0);
    m_requests.OnAbort(m_from, 7);
    EXPECT_EQ(Send(1), "abort 2");
}

TEST_F(Receiving, StationsAndInvokeIdsAreKeptApart) {
    Send(0);
    Send(0, true, 4, 8);
    EXPECT_EQ(Send(1, false, 4, 8), "ack 1/3 whole 02 75 08 0E 00 01");
    m_from.Link.Ip = 0x7F000002;
    EXPECT_EQ(Send(1), "abort 2");
}

// ---- over UDP

class SegmentedToDevice : public ::testing::Test {
protected:
    void Start(bacnet::Segmentation segmentation) {
        DeviceConfig device = SmallDevice(Site.Block);
        device.Segmentation = segmentation;
        Site.Config.Devices.push_back(device);
        Site.Start();
    }
    RunningSite Site;
};

TEST_F(SegmentedToDevice, ARequestInSegmentsIsAnsweredAsIfInOnePiece) {
    Start(bacnet::Segmentation::both);
    // Object identifier of device 1234, cut in the middle; invoke id 5, ReadProperty.
    EXPECT_EQ(Site.Ask("0E 75 05 00 10 0C 0C 02 00"), "41 05 00 10");
    Site.Me().Send(Site.DeviceAddress(), Unicast("0A 75 05 01 10 0C 04 D2 19 4B"));
    EXPECT_EQ(Site.NextApdu(), "41 05 01 10");
    EXPECT_EQ(Site.NextApdu(), "30 05 0C 0C 02 00 04 D2 19 4B 3E C4 02 00 04 D2 3F");
    EXPECT_EQ(Site.FirstDevice().GetStats()[Counter::readProperty], 1U);
}

TEST_F(SegmentedToDevice, ADeviceThatOnlySendsSegmentsAborts) {
    Start(bacnet::Segmentation::transmit);
    EXPECT_EQ(Site.Ask("0E 75 05 00 10 0C 0C 02 00"), "71 05 04");
}

TEST_F(SegmentedToDevice, ASilentDeviceAcknowledgesNothing) {
    Start(bacnet::Segmentation::both);
    Site.FirstDevice().SetFault(Fault::Silent());
    Site.Me().Send(Site.DeviceAddress(), Unicast("0E 75 05 00 10 0C 0C 02 00"));
    EXPECT_TRUE(Site.Me().Silence());
}

TEST_F(SegmentedToDevice, FaultsApplyToTheWholeRequest) {
    Start(bacnet::Segmentation::both);
    Site.FirstDevice().SetFault(Fault::Error(2, 32).After(1));
    for (const std::string answer : {"30", "50"}) {
        EXPECT_EQ(Site.Ask("0E 75 05 00 10 0C 0C 02 00"), "41 05 00 10");
        Site.Me().Send(Site.DeviceAddress(), Unicast("0A 75 05 01 10 0C 04 D2 19 4B"));
        EXPECT_EQ(Site.NextApdu(), "41 05 01 10");
        EXPECT_EQ(Site.NextApdu().substr(0, 2), answer);
    }
}

} // namespace
} // namespace sim::testing
