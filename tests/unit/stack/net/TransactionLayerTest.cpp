// The transaction layer over a scripted link and clock, all on one thread.

#include "platform/stack/transaction/TransactionLayer.h"
#include "tests/unit/stack/net/FakeLink.h"
#include "tests/unit/stack/net/Frames.h"
#include "tests/unit/stack/net/SegmentingDevice.h"

#include <gtest/gtest.h>

#include <random>

using namespace bacnet;
using fakes::Mac;
using fakes::Octets;

namespace {

constexpr std::uint8_t READ_PROPERTY = 12;
constexpr std::uint8_t WRITE_PROPERTY = 15;
const MacAddress DEVICE = Mac({10, 0, 0, 5, 0xBA, 0xC0});
const MacAddress DEVICE_OTHER_PORT = Mac({10, 0, 0, 5, 0x12, 0x34});
const MacAddress STRANGER = Mac({10, 0, 0, 6, 0xBA, 0xC0});
const MacAddress ROUTER = Mac({10, 0, 0, 1, 0xBA, 0xC0});
const MacAddress OTHER_ROUTER = Mac({10, 0, 0, 2, 0xBA, 0xC0});
const Octets REQUEST{0x0C, 0x00, 0x00, 0x00, 0x01, 0x19, 0x55};
const Octets RESULT{0x0C, 0x00, 0x00, 0x00, 0x01, 0x19, 0x55, 0x3E, 0x91, 0x01, 0x3F};

BACSTAC_ADDRESS Address(bool remote, std::uint16_t network, std::initializer_list<std::uint8_t> mac) {
    BACSTAC_ADDRESS address{};
    address.Remote = remote ? 1 : 0;
    address.Network = network;
    address.MacLength = static_cast<std::uint8_t>(mac.size());
    std::copy(mac.begin(), mac.end(), address.Mac);
    return address;
}
const BACSTAC_ADDRESS LOCAL = Address(false, 0, {10, 0, 0, 5, 0xBA, 0xC0});
const BACSTAC_ADDRESS REMOTE = Address(true, 2001, {7});

// What a frame holds, taken apart.
struct Parsed {
    Npdu Network;
    Apdu Application;
};
Parsed Parse(const Octets& npdu) {
    Parsed parsed;
    EXPECT_EQ(DecodeNpdu(npdu, parsed.Network), NpduError::none);
    if (!parsed.Network.IsNetworkMessage) {
        EXPECT_EQ(DecodeApdu(parsed.Network.Payload, parsed.Application), ApduError::none);
    }
    return parsed;
}

Octets Pdu(const Apdu& header, const Octets& payload = {}) {
    Frame frame;
    frame.Append(payload);
    PrependApdu(frame, header);
    return {frame.Octets().begin(), frame.Octets().end()};
}
Octets Local(Octets apdu) {
    apdu.insert(apdu.begin(), {0x01, 0x00});
    return apdu;
}
// From station 7 of network 2001.
Octets Routed(Octets apdu) {
    apdu.insert(apdu.begin(), {0x01, 0x08, 0x07, 0xD1, 0x01, 0x07});
    return apdu;
}
Octets Ack(std::uint8_t id, const Octets& result, std::uint8_t service = READ_PROPERTY) {
    Apdu header;
    header.Type = PduType::complex_ack;
    header.InvokeId = id;
    header.Service = service;
    return Pdu(header, result);
}
Octets SegmentOf(std::uint8_t id, std::uint8_t number, bool more, const Octets& part) {
    Apdu header;
    header.Type = PduType::complex_ack;
    header.InvokeId = id;
    header.Service = READ_PROPERTY;
    header.Segmented = true;
    header.MoreFollows = more;
    header.SequenceNumber = number;
    header.WindowSize = 4;
    return Pdu(header, part);
}

class Calling : public testing::Test, public IRequestHandler {
protected:
    Calling() {
        m_network.AddPort(m_link);
        m_settings.BackgroundThread = false;
    }
    void SetUp() override {
        m_layer.reset();
        m_layer = std::make_unique<TransactionLayer>(m_network, m_settings, this, m_clock);
    }
    void OnRequest(const RequestIndication& request) override {
        m_requests.push_back((request.Confirmed ? "confirmed " : "unconfirmed ") +
                             std::to_string(request.Header.Service) + (request.Broadcast ? " broadcast" : ""));
    }
    CallResult Call(const BACSTAC_ADDRESS& to, const CallOptions& options = {}) {
        m_begun = m_clock.Now();
        const CallResult result = m_layer->Call(to, READ_PROPERTY, REQUEST, m_answer, options);
        m_lasted = m_clock.Now() - m_begun;
        return result;
    }
    // Answers each request of ours from this station.
    void AnswerFrom(const MacAddress& station, std::function<void(std::uint8_t id)> answer) {
        (void)station;
        m_link.OnSend = [this, answer = std::move(answer)](const fakes::Sent& sent) {
            const Parsed parsed = Parse(sent.Npdu);
            if (!parsed.Network.IsNetworkMessage && parsed.Application.Type == PduType::confirmed_request)
                answer(parsed.Application.InvokeId);
        };
    }
    Octets AnswerOctets() const { return {m_answer.Octets().begin(), m_answer.Octets().end()}; }
    // Lets everything that was delivered be received.
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
    AnswerBuffer m_answer;
    Millis m_begun = 0;
    Millis m_lasted = 0;
    std::vector<std::string> m_requests;
    std::unique_ptr<TransactionLayer> m_layer;
};

TEST_F(Calling, SendsTheKnownFrameAndReturnsTheAnswer) {
    AnswerFrom(DEVICE, [this](std::uint8_t id) { m_link.Deliver(DEVICE, Local(Ack(id, RESULT))); });
    EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_EQ(AnswerOctets(), RESULT);
    EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    ASSERT_EQ(m_link.Frames.size(), 2U);
    // The second call has invoke id 1, as the known frame does.
    EXPECT_EQ(m_link.Frames[1].Npdu, Octets(frames::READ_PROPERTY.begin() + 4, frames::READ_PROPERTY.end()));
    EXPECT_EQ(m_link.Frames[1].To, DEVICE);
    EXPECT_EQ(m_lasted, 0);
}

TEST_F(Calling, SilenceIsRepeatedWithTheSameOctetsAndThenGivenUp) {
    EXPECT_EQ(Call(LOCAL).How, Outcome::timeout);
    ASSERT_EQ(m_link.Frames.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(m_link.Frames[i].Npdu, m_link.Frames[0].Npdu);
        EXPECT_EQ(m_link.Frames[i].At - m_begun, static_cast<Millis>(3000 * i));
    }
    EXPECT_EQ(m_lasted, 12000);
    EXPECT_EQ(m_layer->Counters().Retries.Value(), 3U);
}

TEST_F(Calling, OptionsBoundOneCall) {
    CallOptions options;
    options.TimeoutMs = 500;
    options.Retries = 1;
    EXPECT_EQ(Call(LOCAL, options).How, Outcome::timeout);
    EXPECT_EQ(m_link.Frames.size(), 2U);
    EXPECT_EQ(m_lasted, 1000);
}

TEST_F(Calling, AnAnswerToTheRepetitionIsTaken) {
    AnswerFrom(DEVICE, [this](std::uint8_t id) {
        if (m_link.Frames.size() == 3)
            m_link.Deliver(DEVICE, Local(Ack(id, RESULT)), 40);
    });
    EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_EQ(m_lasted, 6040);
}

TEST_F(Calling, ALateAnswerIsNotTakenForTheNextRequest) {
    std::uint8_t first = 0;
    AnswerFrom(DEVICE, [&](std::uint8_t id) {
        if (m_link.Frames.size() == 1) {
            first = id;
            m_link.Deliver(DEVICE, Local(Ack(id, {0xDE, 0xAD})), 12500); // after the caller gave up
        } else if (m_link.Frames.size() == 5) {
            m_link.Deliver(DEVICE, Local(Ack(id, RESULT)), 1000);
        }
    });
    EXPECT_EQ(Call(LOCAL).How, Outcome::timeout);
    EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_EQ(AnswerOctets(), RESULT);
    EXPECT_EQ(m_layer->Counters().Unmatched.Value(), 1U);
}

TEST_F(Calling, AnInvokeIdWithoutAnswerRestsBeforeItIsUsedAgain) {
    EXPECT_EQ(Call(LOCAL).How, Outcome::timeout);
    const std::uint8_t rested = Parse(m_link.Frames[0].Npdu).Application.InvokeId;
    std::vector<std::uint8_t> used;
    AnswerFrom(DEVICE, [&](std::uint8_t id) {
        used.push_back(id);
        m_link.Deliver(DEVICE, Local(Ack(id, RESULT)));
    });
    for (int i = 0; i < 600; ++i)
        ASSERT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_EQ(std::count(used.begin(), used.end(), rested), 0);
    m_clock.Advance(m_settings.IdRestMs);
    for (int i = 0; i < 300; ++i)
        ASSERT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_GE(std::count(used.begin(), used.end(), rested), 1);
}

TEST_F(Calling, ADoubledAnswerIsTakenOnce) {
    AnswerFrom(DEVICE, [this](std::uint8_t id) {
        m_link.Deliver(DEVICE, Local(Ack(id, RESULT)));
        m_link.Deliver(DEVICE, Local(Ack(id, {0xDE, 0xAD})), 5);
    });
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
        EXPECT_EQ(AnswerOctets(), RESULT);
        m_clock.Advance(5);
    }
    EXPECT_EQ(m_layer->Counters().Unmatched.Value(), 2U);
}

TEST_F(Calling, AnswersOfOthersAreNotTaken) {
    AnswerFrom(DEVICE, [this](std::uint8_t id) {
        m_link.Deliver(STRANGER, Local(Ack(id, {0xDE, 0xAD})));                              // another station
        m_link.Deliver(DEVICE, Local(Ack(static_cast<std::uint8_t>(id + 1), {0xDE, 0xAD}))); // another invoke id
        m_link.Deliver(DEVICE, Local(Ack(id, {0xDE, 0xAD}, WRITE_PROPERTY)));                // another service
        m_link.Deliver(DEVICE, Routed(Ack(id, {0xDE, 0xAD})));                               // one behind the device
        m_link.Deliver(DEVICE, Local(Ack(id, RESULT)), 20);
    });
    EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_EQ(AnswerOctets(), RESULT);
    EXPECT_EQ(m_layer->Counters().Unmatched.Value(), 4U);
}

TEST_F(Calling, AnAnswerFromAnotherPortOfTheSameAddressIsTaken) {
    AnswerFrom(DEVICE, [this](std::uint8_t id) { m_link.Deliver(DEVICE_OTHER_PORT, Local(Ack(id, RESULT))); });
    EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_EQ(AnswerOctets(), RESULT);
}

TEST_F(Calling, SegmentsAreAcknowledgedWhereTheDeviceWasAsked) {
    AnswerFrom(DEVICE, [this](std::uint8_t id) {
        m_link.Deliver(DEVICE_OTHER_PORT, Local(SegmentOf(id, 0, true, {1, 2})));
        m_link.Deliver(DEVICE_OTHER_PORT, Local(SegmentOf(id, 1, false, {3})), 10);
    });
    EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_EQ(AnswerOctets(), (Octets{1, 2, 3}));
    ASSERT_EQ(m_link.Frames.size(), 3U);
    EXPECT_EQ(m_link.Frames[1].Npdu, (Octets{0x01, 0x00, 0x40, 0x00, 0x00, 0x04}));
    EXPECT_EQ(m_link.Frames[2].Npdu, (Octets{0x01, 0x00, 0x40, 0x00, 0x01, 0x04}));
    EXPECT_EQ(m_link.Frames[1].To, DEVICE);
    EXPECT_EQ(m_link.Frames[2].To, DEVICE);
}

TEST_F(Calling, SegmentAckAndAbortToARoutedPeerCarryItsAddress) {
    m_network.OnNpdu(0, {ROUTER, false, frames::I_AM_ROUTER});
    m_settings.SegmentTimeoutMs = 500;
    SetUp();
    AnswerFrom(DEVICE, [this](std::uint8_t id) { m_link.Deliver(ROUTER, Routed(SegmentOf(id, 0, true, {1, 2}))); });
    EXPECT_EQ(Call(REMOTE).How, Outcome::segments_stopped);
    ASSERT_EQ(m_link.Frames.size(), 3U);
    for (const fakes::Sent& sent : m_link.Frames) {
        EXPECT_EQ(sent.To, ROUTER);
        const Parsed parsed = Parse(sent.Npdu);
        EXPECT_EQ(parsed.Network.DestinationNetwork, 2001);
        EXPECT_EQ(parsed.Network.Destination, Mac({7}));
        EXPECT_EQ(parsed.Network.HopCount, 255);
    }
    EXPECT_EQ(Parse(m_link.Frames[1].Npdu).Application.Type, PduType::segment_ack);
    EXPECT_EQ(Parse(m_link.Frames[2].Npdu).Application.Type, PduType::abort);
    EXPECT_EQ(m_lasted, 3000) << "the request's own time, which is longer than four segment times here";
}

TEST_F(Calling, SegmentsThatNobodyWaitsForAreAbortedOnceAWindow) {
    AnswerFrom(DEVICE, [this](std::uint8_t id) { m_link.Deliver(DEVICE, Local(Ack(id, RESULT))); });
    Call(LOCAL);
    m_link.Frames.clear();
    m_link.OnSend = nullptr;
    for (std::uint8_t number = 3; number < 8; ++number)
        m_link.Deliver(DEVICE, Local(SegmentOf(0, number, number != 7, {1})));
    Drain();
    ASSERT_EQ(m_link.Frames.size(), 1U);
    EXPECT_EQ(m_link.Frames[0].Npdu, (Octets{0x01, 0x00, 0x70, 0x00, ABORT_INVALID_APDU_IN_THIS_STATE}));
}

TEST_F(Calling, ARouterIsFoundAndTheRequestSent) {
    m_link.OnSend = [this](const fakes::Sent& sent) {
        const Parsed parsed = Parse(sent.Npdu);
        if (parsed.Network.IsNetworkMessage)
            m_link.DeliverBroadcast(ROUTER, frames::I_AM_ROUTER, 150);
        else if (parsed.Application.Type == PduType::confirmed_request)
            m_link.Deliver(ROUTER, Routed(Ack(parsed.Application.InvokeId, RESULT)), 50);
    };
    EXPECT_EQ(Call(REMOTE).How, Outcome::complex_ack);
    ASSERT_EQ(m_link.Frames.size(), 2U);
    EXPECT_TRUE(m_link.Frames[0].To.Empty());
    EXPECT_EQ(m_link.Frames[0].Npdu, (Octets{0x01, 0x80, 0x00, 0x07, 0xD1}));
    EXPECT_EQ(m_link.Frames[1].To, ROUTER);
    EXPECT_EQ(m_lasted, 200);
    EXPECT_EQ(Call(REMOTE).How, Outcome::complex_ack);
    EXPECT_EQ(m_link.Frames.size(), 3U) << "and remembered";
}

TEST_F(Calling, WithoutARouterTheCallEndsInTime) {
    EXPECT_EQ(Call(REMOTE).How, Outcome::no_route);
    EXPECT_EQ(m_link.Frames.size(), 3U) << "asked once a second";
    EXPECT_EQ(m_lasted, m_settings.RouterWaitMs);
}

TEST_F(Calling, ARepetitionTakesANewRouter) {
    m_network.OnNpdu(0, {ROUTER, false, frames::I_AM_ROUTER});
    m_link.OnSend = [this](const fakes::Sent& sent) {
        const Parsed parsed = Parse(sent.Npdu);
        if (parsed.Network.IsNetworkMessage)
            m_link.DeliverBroadcast(OTHER_ROUTER, frames::I_AM_ROUTER, 100);
        else if (sent.To == OTHER_ROUTER)
            m_link.Deliver(OTHER_ROUTER, Routed(Ack(parsed.Application.InvokeId, RESULT)));
    };
    EXPECT_EQ(Call(REMOTE).How, Outcome::complex_ack);
    EXPECT_EQ(m_lasted, 6000) << "the first repetition asks, the second goes the new way";
}

TEST_F(Calling, ErrorRejectAndAbortAreHandedUp) {
    Apdu header;
    AnswerFrom(DEVICE, [&](std::uint8_t id) {
        header.InvokeId = id;
        m_link.Deliver(DEVICE, Local(Pdu(header, {0x91, 0x01, 0x91, 0x1F})));
    });
    header.Type = PduType::error;
    header.Service = READ_PROPERTY;
    EXPECT_EQ(Call(LOCAL).How, Outcome::error);
    EXPECT_EQ(AnswerOctets(), (Octets{0x91, 0x01, 0x91, 0x1F}));
    header.Type = PduType::reject;
    header.Reason = 9;
    CallResult result = Call(LOCAL);
    EXPECT_EQ(result.How, Outcome::reject);
    EXPECT_EQ(result.Reason, 9);
    header.Type = PduType::abort;
    header.Reason = 4;
    for (const bool fromServer : {true, false}) { // some devices forget to say so
        header.FromServer = fromServer;
        result = Call(LOCAL);
        EXPECT_EQ(result.How, Outcome::abort);
        EXPECT_EQ(result.Reason, 4);
    }
}

TEST_F(Calling, WhatCanNotBeSentFailsAtOnce) {
    m_link.Refuse = true;
    EXPECT_EQ(Call(LOCAL).How, Outcome::send_failure);
    EXPECT_EQ(m_network.Counters().SendFailures.Value(), 1U);
    EXPECT_EQ(Call(Address(false, 0, {7})).How, Outcome::invalid_address);
    m_link.Refuse = false;
    CallOptions options;
    options.MaxApdu = 10; // 4 octets of header and 7 of parameters
    EXPECT_EQ(Call(LOCAL, options).How, Outcome::request_too_long);
    const Octets big(1492);
    EXPECT_EQ(m_layer->Call(LOCAL, READ_PROPERTY, big, m_answer).How, Outcome::request_too_long);
    EXPECT_TRUE(m_link.Frames.empty());
    EXPECT_EQ(m_lasted, 0);
}

TEST_F(Calling, AfterShutdownNothingIsSent) {
    m_layer->Shutdown();
    EXPECT_EQ(Call(LOCAL).How, Outcome::shutdown);
    EXPECT_TRUE(m_link.Frames.empty());
}

TEST_F(Calling, RequestsOfOthersReachTheHandler) {
    m_link.Deliver(DEVICE, Local({0x10, 0x00}));                      // I-Am
    m_link.DeliverBroadcast(DEVICE, Local({0x10, 0x08}));             // Who-Is
    m_link.Deliver(DEVICE, Local({0x02, 0x75, 0x07, 0x0C}));          // ReadProperty
    m_link.DeliverBroadcast(DEVICE, Local({0x02, 0x75, 0x07, 0x0C})); // which nobody may broadcast
    Drain();
    EXPECT_EQ(m_requests, (std::vector<std::string>{"unconfirmed 0", "unconfirmed 8 broadcast", "confirmed 12"}));
}

TEST_F(Calling, WithoutAHandlerConfirmedRequestsAreRejected) {
    m_layer.reset();
    m_layer = std::make_unique<TransactionLayer>(m_network, m_settings, nullptr, m_clock);
    m_link.Deliver(DEVICE, Local({0x10, 0x08}));
    m_link.Deliver(DEVICE, Local({0x02, 0x75, 0x07, 0x0C}));
    Drain();
    ASSERT_EQ(m_link.Frames.size(), 1U);
    EXPECT_EQ(m_link.Frames[0].Npdu, (Octets{0x01, 0x00, 0x60, 0x07, REJECT_UNRECOGNIZED_SERVICE}));
}

TEST_F(Calling, EveryAnswerCutAtEveryOctetLeavesTheCallAlone) {
    const Octets whole = Local(Ack(0, RESULT));
    AnswerFrom(DEVICE, [&](std::uint8_t) {
        for (std::size_t length = 0; length < 5; ++length)
            m_link.Deliver(DEVICE, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        m_link.Deliver(DEVICE, whole, 10);
    });
    EXPECT_EQ(Call(LOCAL).How, Outcome::complex_ack);
    EXPECT_EQ(AnswerOctets(), RESULT);
    EXPECT_EQ(m_network.Counters().Malformed.Value() + m_layer->Counters().Malformed.Value(), 5U);
}

TEST_F(Calling, UnconfirmedRequestsGoOutWithoutWaiting) {
    EXPECT_EQ(m_layer->SendUnconfirmed(Address(false, 0, {}), 8, {}), Outcome::simple_ack);
    EXPECT_EQ(m_layer->SendUnconfirmed(LOCAL, 6, Octets{0xA4}), Outcome::simple_ack);
    EXPECT_EQ(m_layer->SendUnconfirmed(REMOTE, 6, Octets{0xA4}), Outcome::simple_ack);
    EXPECT_EQ(m_layer->SendUnconfirmed(Address(false, 0, {1}), 6, {}), Outcome::invalid_address);
    ASSERT_EQ(m_link.Frames.size(), 3U);
    EXPECT_EQ(m_link.Frames[0].Npdu, (Octets{0x01, 0x00, 0x10, 0x08}));
    EXPECT_EQ(m_link.Frames[1].Npdu, (Octets{0x01, 0x00, 0x10, 0x06, 0xA4}));
    EXPECT_TRUE(m_link.Frames[2].To.Empty()) << "the router that is not known hears it";
    EXPECT_EQ(m_link.Frames[2].Npdu, (Octets{0x01, 0x20, 0x07, 0xD1, 0x01, 0x07, 0xFF, 0x10, 0x06, 0xA4}));
}

// A link that loses, doubles, delays and so reorders, between the layer and a device that answers in segments: each
// call ends in time, and never with the answer to another request.
TEST_F(Calling, OverALossyLinkNoAnswerGoesToTheWrongCall) {
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
        fakes::SegmentingDevice device(
            m_clock, [&](Octets apdu) { relay([&](Millis delay) { m_link.Deliver(DEVICE, Local(apdu), delay); }); });
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
                const Parsed parsed = Parse(npdu);
                if (parsed.Application.Type != PduType::confirmed_request) {
                    device.OnPdu(parsed.Application);
                    continue;
                }
                // The answer to a number is that number, many times.
                const std::uint8_t number = parsed.Application.Payload[0];
                device.Answer(parsed.Application, Octets(number * 40U, number), number % 3 == 0 ? 0 : 50);
            }
            device.OnTime();
        };
        for (unsigned i = 0; i < 12; ++i) {
            const auto number = static_cast<std::uint8_t>(1 + random() % 36);
            const Millis begun = m_clock.Now();
            const CallResult result = m_layer->Call(LOCAL, READ_PROPERTY, Octets{number}, m_answer);
            EXPECT_LE(m_clock.Now() - begun, 60000) << "seed " << seed;
            ++calls;
            if (result.How == Outcome::complex_ack) {
                ++answered;
                EXPECT_EQ(AnswerOctets(), Octets(number * 40U, number)) << "seed " << seed;
            }
        }
        m_link.OnReceive = nullptr;
        m_link.OnSend = nullptr;
        m_layer.reset();
    }
    EXPECT_GE(answered * 100, calls * 97) << "retries and repeated windows make up for ten percent of loss";
}

} // namespace
