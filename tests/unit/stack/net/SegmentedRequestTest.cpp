// Segmented requests in both roles over a scripted link and clock, all on one thread: what goes out frame by frame, and
// that no call gets what belongs to another however much is lost.

#include "platform/stack/transaction/AsyncCaller.h"
#include "platform/stack/transaction/TransactionLayer.h"
#include "tests/unit/stack/net/FakeLink.h"
#include "tests/unit/stack/net/Frames.h"
#include "tests/unit/stack/net/SegmentReceiver.h"
#include "tests/unit/stack/net/SegmentingDevice.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>

using namespace bacnet;
using fakes::Mac;
using fakes::Octets;

namespace {

constexpr std::uint8_t WRITE_PROPERTY_MULTIPLE = 16;
constexpr std::uint8_t WINDOW = 3; // of the scripted device
const MacAddress DEVICE = Mac({10, 0, 0, 5, 0xBA, 0xC0});
const MacAddress DEVICE_OTHER_PORT = Mac({10, 0, 0, 5, 0x12, 0x34});
const MacAddress ROUTER = Mac({10, 0, 0, 1, 0xBA, 0xC0});

BACSTAC_ADDRESS LocalDevice() {
    BACSTAC_ADDRESS address{};
    address.MacLength = 6;
    std::copy_n(DEVICE.Data(), 6, address.Mac);
    return address;
}
BACSTAC_ADDRESS RemoteDevice() {
    BACSTAC_ADDRESS address{};
    address.Remote = 1;
    address.Network = 2001;
    address.MacLength = 1;
    address.Mac[0] = 7;
    return address;
}
Octets Numbered(std::size_t count) {
    Octets octets(count);
    for (std::size_t i = 0; i < count; ++i)
        octets[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    return octets;
}

class Segmenting : public testing::Test, public IRequestHandler {
protected:
    Segmenting() {
        m_network.AddPort(m_link);
        m_settings.BackgroundThread = false;
        m_options.MaxApdu = 50; // so 44 octets go into a segment
        m_options.TakesSegments = true;
    }
    void SetUp() override {
        m_layer.reset();
        m_layer = std::make_unique<TransactionLayer>(m_network, m_settings, this, m_clock);
    }
    void OnRequest(const RequestIndication& request) override {
        m_served.push_back("service " + std::to_string(request.Header.Service) + " id " +
                           std::to_string(request.Header.InvokeId) + (request.Header.Segmented ? " in part" : "") +
                           " octets " + std::to_string(request.Header.Payload.size()));
        m_servedOctets.assign(request.Header.Payload.begin(), request.Header.Payload.end());
    }
    CallResult Call(const Octets& request, const BACSTAC_ADDRESS& to = LocalDevice()) {
        m_begun = m_clock.Now();
        const CallResult result = m_layer->Call(to, WRITE_PROPERTY_MULTIPLE, request, m_answer, m_options);
        m_lasted = m_clock.Now() - m_begun;
        return result;
    }
    // The device acknowledges segments as it should and answers whole requests with this.
    void Serve(fakes::SegmentReceiver::OnRequest onRequest) {
        m_receiver = std::make_unique<fakes::SegmentReceiver>([this](const Octets& apdu) { Deliver(apdu); },
                                                              std::move(onRequest), WINDOW);
        m_link.OnSend = [this](const fakes::Sent& sent) {
            if (const Apdu pdu = Parse(sent.Npdu); pdu.Type == PduType::confirmed_request)
                m_receiver->OnSegment(pdu);
        };
    }
    void Deliver(Octets apdu, Millis delay = 0) {
        if (m_routed)
            apdu.insert(apdu.begin(), {0x01, 0x08, 0x07, 0xD1, 0x01, 0x07});
        else
            apdu.insert(apdu.begin(), {0x01, 0x00});
        m_link.Deliver(m_routed ? ROUTER : m_from, std::move(apdu), delay);
    }
    static Apdu Parse(const Octets& npdu) {
        Npdu network;
        Apdu pdu;
        EXPECT_EQ(DecodeNpdu(npdu, network), NpduError::none);
        EXPECT_EQ(DecodeApdu(network.Payload, pdu), ApduError::none);
        return pdu;
    }
    static Octets Pdu(PduType type, std::uint8_t id, const Octets& payload = {}, std::uint8_t reason = 0) {
        Apdu header;
        header.Type = type;
        header.InvokeId = id;
        header.Service = WRITE_PROPERTY_MULTIPLE;
        header.Reason = reason;
        header.FromServer = true;
        Frame frame;
        frame.Append(payload);
        PrependApdu(frame, header);
        return {frame.Octets().begin(), frame.Octets().end()};
    }
    static Octets SegmentAck(std::uint8_t id, std::uint8_t number, std::uint8_t window = WINDOW) {
        return {0x41, id, number, window};
    }
    // What went out: "0+" a segment with more to follow, "5" the last one, "whole", "ack", "abort 10".
    std::string SentText() const {
        std::string text;
        for (const fakes::Sent& sent : m_link.Frames) {
            const Apdu pdu = Parse(sent.Npdu);
            text += text.empty() ? "" : " ";
            if (pdu.Type == PduType::confirmed_request)
                text += pdu.Segmented ? std::to_string(pdu.SequenceNumber) + (pdu.MoreFollows ? "+" : "") : "whole";
            else if (pdu.Type == PduType::segment_ack)
                text += pdu.Negative ? "nak" : "ack";
            else if (pdu.Type == PduType::abort)
                text += (pdu.FromServer ? "server abort " : "abort ") + std::to_string(pdu.Reason);
        }
        return text;
    }
    void Drain() {
        NpduBatch batch;
        while (m_link.ReceiveDirected(batch, NpduBatch::CAPACITY, IDataLink::Wait::none) != 0)
            for (std::size_t i = 0; i < batch.Count; ++i)
                m_network.OnNpdu(0, batch.Items[i]);
    }

    fakes::FakeClock m_clock;
    fakes::FakeLink m_link{m_clock};
    NetworkLayer m_network;
    TransactionSettings m_settings;
    CallOptions m_options;
    AnswerBuffer m_answer;
    MacAddress m_from = DEVICE; // where the device's frames come from
    bool m_routed = false;
    Millis m_begun = 0;
    Millis m_lasted = 0;
    std::unique_ptr<fakes::SegmentReceiver> m_receiver;
    std::vector<std::string> m_served;
    Octets m_servedOctets;
    std::unique_ptr<TransactionLayer> m_layer;
};

TEST_F(Segmenting, ARequestThatDoesNotFitGoesInWindowsOfSegments) {
    const Octets request = Numbered(44 * 8 + 1);
    Octets received;
    Serve([&](const Apdu& last, const Octets& parameters) {
        received = parameters;
        Deliver(Pdu(PduType::simple_ack, last.InvokeId));
    });
    EXPECT_EQ(Call(request).How, Outcome::simple_ack);
    EXPECT_EQ(received, request);
    EXPECT_EQ(SentText(), "0+ 1+ 2+ 3+ 4+ 5+ 6+ 7+ 8");
    // Confirmed request, segmented, more follow, segmented answer accepted; more than 64 segments and 1476 octets;
    // invoke id 0, segment 0, window 32 proposed; WritePropertyMultiple; the first 44 octets.
    Octets first{0x01, 0x04, 0x0E, 0x75, 0x00, 0x00, 0x20, 0x10};
    first.insert(first.end(), request.begin(), request.begin() + 44);
    EXPECT_EQ(m_link.Frames[0].Npdu, first);
    EXPECT_EQ(m_link.Frames[8].Npdu, (Octets{0x01, 0x04, 0x0A, 0x75, 0x00, 0x08, 0x20, 0x10, request.back()}));
    EXPECT_EQ(m_lasted, 0);
}

TEST_F(Segmenting, ARequestThatFitsStaysInOnePiece) {
    m_link.OnSend = [this](const fakes::Sent&) { Deliver(Pdu(PduType::simple_ack, 0)); };
    EXPECT_EQ(Call(Numbered(46)).How, Outcome::simple_ack);
    EXPECT_EQ(SentText(), "whole");
    EXPECT_EQ(m_link.Frames[0].Npdu.size(), 2U + 50U);
}

TEST_F(Segmenting, WithoutTheDevicesWordNothingIsSent) {
    m_options.TakesSegments = false;
    EXPECT_EQ(Call(Numbered(47)).How, Outcome::request_too_long);
    m_options.TakesSegments = true;
    m_options.MaxSegments = 4;
    EXPECT_EQ(Call(Numbered(4 * 44 + 1)).How, Outcome::request_too_long);
    EXPECT_TRUE(m_link.Frames.empty());
    EXPECT_EQ(m_lasted, 0);
    Serve([&](const Apdu& last, const Octets&) { Deliver(Pdu(PduType::simple_ack, last.InvokeId)); });
    EXPECT_EQ(Call(Numbered(4 * 44)).How, Outcome::simple_ack);
}

TEST_F(Segmenting, RequestAndAnswerBothInSegments) {
    const Octets request = Numbered(500);
    const Octets result = Numbered(1000);
    fakes::SegmentingDevice answering(m_clock, [this](const Octets& apdu) { Deliver(apdu); });
    Serve([&](const Apdu& last, const Octets& parameters) {
        EXPECT_EQ(parameters, request);
        answering.Answer(last, result, 100);
    });
    const auto segments = m_link.OnSend;
    m_link.OnSend = [&](const fakes::Sent& sent) {
        segments(sent);
        if (const Apdu pdu = Parse(sent.Npdu); pdu.Type == PduType::segment_ack)
            answering.OnPdu(pdu);
    };
    EXPECT_EQ(Call(request).How, Outcome::complex_ack);
    EXPECT_EQ(Octets(m_answer.Octets().begin(), m_answer.Octets().end()), result);
    EXPECT_TRUE(answering.Idle());
}

TEST_F(Segmenting, MoreThan256SegmentsOfARequestAreNothingSpecial) {
    const Octets request = Numbered(44 * 700);
    Octets received;
    Serve([&](const Apdu& last, const Octets& parameters) {
        received = parameters;
        Deliver(Pdu(PduType::simple_ack, last.InvokeId));
    });
    EXPECT_EQ(Call(request).How, Outcome::simple_ack);
    EXPECT_EQ(received, request);
    EXPECT_EQ(m_link.Frames.size(), 700U);
}

TEST_F(Segmenting, ASilentDeviceIsAskedWithTheFirstSegmentAndGivenUp) {
    EXPECT_EQ(Call(Numbered(200)).How, Outcome::timeout);
    EXPECT_EQ(SentText(), "0+ 0+ 0+ 0+") << "no abort to one that has shown no life";
    for (std::size_t i = 0; i < m_link.Frames.size(); ++i) {
        EXPECT_EQ(m_link.Frames[i].At - m_begun, static_cast<Millis>(2000 * i));
        EXPECT_EQ(m_link.Frames[i].Npdu, m_link.Frames[0].Npdu);
    }
    EXPECT_EQ(m_lasted, 8000);
}

TEST_F(Segmenting, ADeviceThatFallsSilentInTheMiddleIsAskedFromThereAndToldOfTheEnd) {
    m_link.OnSend = [this](const fakes::Sent& sent) {
        if (const Apdu pdu = Parse(sent.Npdu); pdu.Segmented && pdu.SequenceNumber == 0)
            Deliver(SegmentAck(pdu.InvokeId, 0, 2), 500);
    };
    EXPECT_EQ(Call(Numbered(300)).How, Outcome::timeout);
    EXPECT_EQ(SentText(), "0+ 1+ 2+ 1+ 2+ 1+ 2+ 1+ 2+ abort 10");
    EXPECT_EQ(m_lasted, 500 + 8000);
}

TEST_F(Segmenting, AfterAGapTheDeviceGetsTheRestOfItsWindowOnce) {
    bool lost = false;
    Serve([&](const Apdu& last, const Octets&) { Deliver(Pdu(PduType::simple_ack, last.InvokeId)); });
    const auto deliver = m_link.OnSend;
    m_link.OnSend = [&](const fakes::Sent& sent) {
        if (Parse(sent.Npdu).SequenceNumber == 2 && !std::exchange(lost, true))
            return;
        deliver(sent);
    };
    EXPECT_EQ(Call(Numbered(44 * 7)).How, Outcome::simple_ack);
    EXPECT_EQ(SentText(), "0+ 1+ 2+ 3+ 2+ 3+ 4+ 5+ 6") << "from the missing one on, not from the first";
    EXPECT_EQ(m_lasted, 0) << "without waiting for a time to pass";
}

TEST_F(Segmenting, WithoutAnAnswerTheWholeIsRepeatedWithTheSameIdAndOctets) {
    unsigned taken = 0;
    Serve([&](const Apdu& last, const Octets&) {
        if (++taken == 2)
            Deliver(Pdu(PduType::simple_ack, last.InvokeId), 700);
    });
    EXPECT_EQ(Call(Numbered(120)).How, Outcome::simple_ack);
    EXPECT_EQ(SentText(), "0+ 1+ 2 0+ 1+ 2");
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(m_link.Frames[i].Npdu, m_link.Frames[i + 3].Npdu);
    EXPECT_EQ(m_lasted, 3000 + 700);
}

TEST_F(Segmenting, AnAnswerIsTakenThoughTheLastAcknowledgementWasLost) {
    m_link.OnSend = [this](const fakes::Sent& sent) {
        const Apdu pdu = Parse(sent.Npdu);
        if (pdu.SequenceNumber == 0)
            Deliver(SegmentAck(pdu.InvokeId, 0));
        else if (!pdu.MoreFollows)
            Deliver(Pdu(PduType::simple_ack, pdu.InvokeId));
    };
    EXPECT_EQ(Call(Numbered(120)).How, Outcome::simple_ack);
    EXPECT_EQ(m_lasted, 0);
}

TEST_F(Segmenting, AnAnswerBeforeTheRequestIsOutBelongsToNobody) {
    m_link.OnSend = [this](const fakes::Sent& sent) {
        const Apdu pdu = Parse(sent.Npdu);
        if (pdu.SequenceNumber != 0)
            return;
        Deliver(Pdu(PduType::simple_ack, pdu.InvokeId));
        Deliver(Pdu(PduType::complex_ack, pdu.InvokeId, {1, 2, 3}));
    };
    m_options.Retries = 0;
    EXPECT_EQ(Call(Numbered(120)).How, Outcome::timeout);
    EXPECT_EQ(m_layer->Counters().Unmatched.Value(), 2U);
}

TEST_F(Segmenting, ARefusalOfTheFirstSegmentEndsTheCall) {
    const auto refuseWith = [this](PduType type, std::uint8_t reason) {
        m_link.OnSend = [=, this](const fakes::Sent& sent) {
            Deliver(Pdu(type, Parse(sent.Npdu).InvokeId, type == PduType::error ? Octets{0x91, 1, 0x91, 31} : Octets{},
                        reason));
        };
        return Call(Numbered(120));
    };
    EXPECT_EQ(refuseWith(PduType::error, 0).How, Outcome::error);
    EXPECT_EQ(refuseWith(PduType::reject, 9).How, Outcome::reject);
    const CallResult aborted = refuseWith(PduType::abort, ABORT_SEGMENTATION_NOT_SUPPORTED);
    EXPECT_EQ(aborted.How, Outcome::abort);
    EXPECT_EQ(aborted.Reason, ABORT_SEGMENTATION_NOT_SUPPORTED);
    EXPECT_EQ(SentText(), "0+ 0+ 0+") << "an abort is not answered with one";
}

TEST_F(Segmenting, SegmentsToAStationBehindARouterCarryItsAddress) {
    m_network.OnNpdu(0, {ROUTER, false, frames::I_AM_ROUTER});
    m_routed = true;
    Serve([&](const Apdu& last, const Octets&) { Deliver(Pdu(PduType::simple_ack, last.InvokeId)); });
    EXPECT_EQ(Call(Numbered(44 * 5), RemoteDevice()).How, Outcome::simple_ack);
    ASSERT_EQ(m_link.Frames.size(), 5U);
    for (const fakes::Sent& sent : m_link.Frames) {
        EXPECT_EQ(sent.To, ROUTER);
        Npdu npdu;
        ASSERT_EQ(DecodeNpdu(sent.Npdu, npdu), NpduError::none);
        EXPECT_EQ(npdu.DestinationNetwork, 2001);
        EXPECT_EQ(npdu.Destination, Mac({7}));
        EXPECT_TRUE(npdu.ExpectingReply);
    }
    // And so does the abort of one that has fallen silent.
    m_link.Frames.clear();
    m_link.OnSend = [this](const fakes::Sent& sent) {
        Npdu npdu;
        ASSERT_EQ(DecodeNpdu(sent.Npdu, npdu), NpduError::none);
        Apdu pdu;
        if (!npdu.IsNetworkMessage && DecodeApdu(npdu.Payload, pdu) == ApduError::none && pdu.SequenceNumber == 0 &&
            pdu.Type == PduType::confirmed_request)
            Deliver(SegmentAck(pdu.InvokeId, 0));
    };
    m_options.Retries = 0;
    EXPECT_EQ(Call(Numbered(44 * 5), RemoteDevice()).How, Outcome::timeout);
    const Octets& last = m_link.Frames.back().Npdu;
    EXPECT_EQ(last, (Octets{0x01, 0x20, 0x07, 0xD1, 0x01, 0x07, 0xFF, 0x70, 0x01, ABORT_TSM_TIMEOUT}));
}

TEST_F(Segmenting, ARequestThatARouterCallsTooLongIsNotRepeatedAndGoesInSmallerSegments) {
    m_network.OnNpdu(0, {ROUTER, false, frames::I_AM_ROUTER});
    m_routed = true;
    m_options.MaxApdu = 1476;
    Serve([&](const Apdu& last, const Octets&) { Deliver(Pdu(PduType::simple_ack, last.InvokeId)); });
    const auto serve = m_link.OnSend;
    m_link.OnSend = [&](const fakes::Sent& sent) {
        Npdu npdu;
        ASSERT_EQ(DecodeNpdu(sent.Npdu, npdu), NpduError::none);
        if (npdu.IsNetworkMessage)
            return;
        if (npdu.Payload.size() > 1024)
            // Reject-Message-To-Network: too long for network 2001.
            for (int calls = 0; calls < 10; ++calls) // as it would to as many calls at once
                m_link.Deliver(ROUTER, {0x01, 0x80, 0x03, 0x04, 0x07, 0xD1});
        else
            serve(sent);
    };
    EXPECT_EQ(Call(Numbered(2000), RemoteDevice()).How, Outcome::request_too_long);
    EXPECT_EQ(m_link.Frames.size(), 2U) << "the first segment, and the end of it";
    EXPECT_EQ(m_lasted, m_settings.SegmentTimeoutMs);
    m_link.Frames.clear();
    EXPECT_EQ(Call(Numbered(2000), RemoteDevice()).How, Outcome::simple_ack);
    EXPECT_EQ(m_link.Frames.size(), 2U);
}

TEST_F(Segmenting, AcknowledgementsFromAnotherPortOfTheAddressAreTaken) {
    m_from = DEVICE_OTHER_PORT;
    Serve([&](const Apdu& last, const Octets&) { Deliver(Pdu(PduType::simple_ack, last.InvokeId)); });
    EXPECT_EQ(Call(Numbered(300)).How, Outcome::simple_ack);
    for (const fakes::Sent& sent : m_link.Frames)
        EXPECT_EQ(sent.To, DEVICE);
}

TEST_F(Segmenting, AForeignAcknowledgementMovesNothing) {
    const MacAddress stranger = Mac({10, 0, 0, 6, 0xBA, 0xC0});
    m_link.OnSend = [&](const fakes::Sent& sent) {
        const std::uint8_t id = Parse(sent.Npdu).InvokeId;
        m_link.Deliver(stranger, {0x01, 0x00, 0x41, id, 0x00, 0x08});
        Deliver(SegmentAck(static_cast<std::uint8_t>(id + 1), 0));
    };
    m_options.Retries = 1;
    EXPECT_EQ(Call(Numbered(300)).How, Outcome::timeout);
    EXPECT_EQ(SentText(), "0+ 0+");
}

TEST_F(Segmenting, ADeviceThatOnlyEverComplainsIsGivenUpInTime) {
    // A negative acknowledgement of the same place, again and again.
    Millis last = 0;
    m_link.OnReceive = [&] {
        if (std::exchange(last, m_clock.Now()) != m_clock.Now())
            m_link.Deliver(DEVICE, {0x01, 0x00, 0x43, 0x00, 0x00, 0x02});
    };
    EXPECT_EQ(Call(Numbered(300)).How, Outcome::timeout);
    EXPECT_LE(m_lasted, 2000 * 5);
    EXPECT_LE(m_link.Frames.size(), 2U * 8000 / 125 + 20) << "a bounded answer to each complaint that counts";
}

TEST_F(Segmenting, ADeviceThatTakesForEverIsGivenUpInTheEnd) {
    m_settings.AnswerTimeoutMs = 10000;
    SetUp();
    m_link.OnSend = [this](const fakes::Sent& sent) {
        if (const Apdu pdu = Parse(sent.Npdu); pdu.Type == PduType::confirmed_request)
            Deliver(SegmentAck(pdu.InvokeId, pdu.SequenceNumber, 1), 1900);
    };
    EXPECT_EQ(Call(Numbered(44 * 100)).How, Outcome::timeout);
    EXPECT_LE(m_lasted, 10000 + 2 * 2000);
    EXPECT_EQ(Parse(m_link.Frames.back().Npdu).Type, PduType::abort);
}

TEST_F(Segmenting, GivingUpInTheMiddleTellsTheDevice) {
    class Impatient final : public ICallObserver {
    public:
        bool KeepWaiting() override { return m_left-- > 0; }

    private:
        int m_left = 3;
    };
    m_link.OnSend = [this](const fakes::Sent& sent) {
        if (const Apdu pdu = Parse(sent.Npdu); pdu.Segmented && pdu.SequenceNumber == 0)
            Deliver(SegmentAck(pdu.InvokeId, 0, 1));
    };
    Impatient impatient;
    m_options.Observer = &impatient;
    EXPECT_EQ(Call(Numbered(300)).How, Outcome::cancelled);
    EXPECT_EQ(SentText(), "0+ 1+ abort 0");
}

TEST_F(Segmenting, AnswersOfTwoDevicesUnderOneInvokeIdAreKeptApart) {
    class Request final : public AsyncRequest {
    public:
        CallResult Result;
        void OnDone(const CallResult& result) override { Result = result; }
    };
    const MacAddress other = Mac({10, 0, 0, 6, 0xBA, 0xC0});
    AsyncCaller caller(*m_layer);
    Request requests[2];
    const Octets parameters{1, 2, 3};
    for (Request& request : requests) {
        request.Destination = LocalDevice();
        request.Service = WRITE_PROPERTY_MULTIPLE;
        request.Parameters = parameters;
    }
    requests[1].Destination.Mac[3] = 6;
    for (Request& request : requests)
        caller.Submit(request);
    caller.Poll(0);
    ASSERT_EQ(m_link.Frames.size(), 2U);
    EXPECT_EQ(Parse(m_link.Frames[0].Npdu).InvokeId, Parse(m_link.Frames[1].Npdu).InvokeId);
    // Complex ack, segmented, more follow; invoke id 0, segment, window 4. In turns, the second device's with a gap.
    m_link.Deliver(DEVICE, {0x01, 0x00, 0x3C, 0x00, 0x00, 0x04, 0x10, 11});
    m_link.Deliver(other, {0x01, 0x00, 0x3C, 0x00, 0x00, 0x04, 0x10, 21});
    m_link.Deliver(other, {0x01, 0x00, 0x38, 0x00, 0x02, 0x04, 0x10, 23});
    m_link.Deliver(DEVICE, {0x01, 0x00, 0x38, 0x00, 0x01, 0x04, 0x10, 12});
    m_link.Deliver(other, {0x01, 0x00, 0x3C, 0x00, 0x01, 0x04, 0x10, 22}, 10);
    m_link.Deliver(other, {0x01, 0x00, 0x38, 0x00, 0x02, 0x04, 0x10, 23}, 10);
    while (caller.Outstanding() != 0)
        caller.Poll(100);
    for (const Request& request : requests)
        EXPECT_EQ(request.Result.How, Outcome::complex_ack);
    EXPECT_EQ(Octets(requests[0].Answer.Octets().begin(), requests[0].Answer.Octets().end()), (Octets{11, 12}));
    EXPECT_EQ(Octets(requests[1].Answer.Octets().begin(), requests[1].Answer.Octets().end()), (Octets{21, 22, 23}));
}

TEST_F(Segmenting, ManyAtOnceFromOneThreadEachInItsOwnSegments) {
    class Request final : public AsyncRequest {
    public:
        Octets Sent;
        CallResult Result;
        void OnDone(const CallResult& result) override { Result = result; }
    };
    // The answer to a request is what it said.
    Serve([&](const Apdu& last, const Octets& parameters) {
        Deliver(Pdu(PduType::complex_ack, last.InvokeId, parameters), 10 + last.InvokeId % 7);
    });
    AsyncCaller caller(*m_layer);
    std::deque<Request> requests;
    for (std::size_t i = 0; i < 40; ++i) {
        Request& request = requests.emplace_back();
        request.Sent = Numbered(50 + 20 * i);
        request.Sent[0] = static_cast<std::uint8_t>(i);
        request.Destination = LocalDevice();
        request.Service = WRITE_PROPERTY_MULTIPLE;
        request.Parameters = request.Sent;
        request.Options = m_options;
        caller.Submit(request);
    }
    while (caller.Outstanding() != 0)
        caller.Poll(100);
    for (const Request& request : requests) {
        EXPECT_EQ(request.Result.How, Outcome::complex_ack);
        EXPECT_EQ(Octets(request.Answer.Octets().begin(), request.Answer.Octets().end()), request.Sent);
    }
}

// ---- the serving side

TEST_F(Segmenting, ASegmentedRequestOfAnotherStationReachesTheHandlerWhole) {
    // Confirmed request, segmented, more follow, invoke id 9, segment 0, window 16, WritePropertyMultiple.
    Deliver({0x0E, 0x75, 0x09, 0x00, 0x10, 0x10, 1, 2});
    Deliver({0x0E, 0x75, 0x09, 0x02, 0x10, 0x10, 5, 6});
    Deliver({0x0E, 0x75, 0x09, 0x01, 0x10, 0x10, 3, 4});
    Deliver({0x0A, 0x75, 0x09, 0x02, 0x10, 0x10, 5, 6});
    Deliver({0x0A, 0x75, 0x09, 0x02, 0x10, 0x10, 5, 6});
    Drain();
    EXPECT_EQ(m_served, (std::vector<std::string>{"service 16 id 9 octets 6"}));
    EXPECT_EQ(m_servedOctets, (Octets{1, 2, 3, 4, 5, 6}));
    std::vector<Octets> sent;
    for (const fakes::Sent& frame : m_link.Frames)
        sent.push_back(frame.Npdu);
    EXPECT_EQ(sent, (std::vector<Octets>{{0x01, 0x00, 0x41, 0x09, 0x00, 0x10},
                                         {0x01, 0x00, 0x43, 0x09, 0x00, 0x10},
                                         {0x01, 0x00, 0x41, 0x09, 0x02, 0x10},
                                         {0x01, 0x00, 0x41, 0x09, 0x02, 0x10}}));
}

TEST_F(Segmenting, SegmentedRequestsThroughARouterAreAcknowledgedThroughIt) {
    m_routed = true;
    Deliver({0x0E, 0x75, 0x09, 0x00, 0x10, 0x10, 1, 2});
    Drain();
    ASSERT_EQ(m_link.Frames.size(), 1U);
    EXPECT_EQ(m_link.Frames[0].To, ROUTER);
    EXPECT_EQ(m_link.Frames[0].Npdu, (Octets{0x01, 0x20, 0x07, 0xD1, 0x01, 0x07, 0xFF, 0x41, 0x09, 0x00, 0x10}));
}

TEST_F(Segmenting, AStationsAbortOfItsOwnRequestLeavesOursAlone) {
    Deliver({0x0E, 0x75, 0x00, 0x00, 0x10, 0x10, 1, 2}); // their invoke id 0
    Drain();
    m_link.OnSend = [this](const fakes::Sent& sent) {
        if (const Apdu pdu = Parse(sent.Npdu); pdu.Type == PduType::confirmed_request) {
            Deliver({0x70, pdu.InvokeId, 0x00}); // and ours, which is also 0
            Deliver(Pdu(PduType::simple_ack, pdu.InvokeId), 50);
        }
    };
    EXPECT_EQ(Call(Numbered(10)).How, Outcome::simple_ack);
}

// ---- loss

// A link that loses, doubles and delays frames in both directions, between calls and a device that takes requests and
// gives answers in segments. The answer to a request is its octets.
TEST_F(Segmenting, OverALossyLinkEachRequestArrivesWholeAndEachAnswerIsItsOwn) {
    m_options.MaxApdu = 50;
    unsigned answered = 0;
    unsigned calls = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        const auto chance = [&random](unsigned percent) { return random() % 100 < percent; };
        const auto relay = [&](const auto& deliver) {
            if (chance(10))
                return;
            deliver(static_cast<Millis>(random() % 4));
            if (chance(10))
                deliver(static_cast<Millis>(random() % 400));
        };
        m_link.OnSend = nullptr;
        SetUp();
        const auto lossy = [&](const Octets& apdu) { relay([&](Millis delay) { Deliver(apdu, delay); }); };
        fakes::SegmentingDevice answering(m_clock, lossy);
        fakes::SegmentReceiver receiving(
            lossy, [&](const Apdu& last, const Octets& parameters) { answering.Answer(last, parameters, 50); }, WINDOW);
        std::vector<std::pair<Millis, Octets>> toDevice;
        m_link.OnSend = [&](const fakes::Sent& sent) {
            relay([&](Millis delay) { toDevice.emplace_back(m_clock.Now() + delay, sent.Npdu); });
        };
        m_link.OnReceive = [&] {
            std::vector<Octets> due;
            std::erase_if(toDevice, [&](const auto& item) {
                if (item.first > m_clock.Now())
                    return false;
                due.push_back(item.second);
                return true;
            });
            for (const Octets& npdu : due) {
                const Apdu pdu = Parse(npdu);
                if (pdu.Type == PduType::confirmed_request)
                    receiving.OnSegment(pdu);
                else
                    answering.OnPdu(pdu);
            }
            answering.OnTime();
        };
        for (unsigned i = 0; i < 8; ++i) {
            Octets request = Numbered(47 + random() % 900);
            request[0] = static_cast<std::uint8_t>(random());
            request[1] = static_cast<std::uint8_t>(random());
            const CallResult result = Call(request);
            EXPECT_LE(m_lasted, 120000) << "seed " << seed;
            ++calls;
            if (result.How == Outcome::complex_ack) {
                ++answered;
                EXPECT_EQ(Octets(m_answer.Octets().begin(), m_answer.Octets().end()), request) << "seed " << seed;
            }
        }
        m_link.OnReceive = nullptr;
        m_link.OnSend = nullptr;
        m_layer.reset();
    }
    EXPECT_GE(answered * 100, calls * 95) << "repeated windows make up for ten percent of loss";
}

} // namespace
