#include "platform/stack/transaction/AsyncCaller.h"
#include "platform/stack/transaction/PeerTable.h"
#include "platform/stack/transport/BipPort.h"
#include "tests/unit/stack/net/FakeLink.h"
#include "tests/unit/stack/net/Frames.h"
#include "tests/unit/stack/net/LoopbackDevices.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <thread>

using namespace bacnet;
using fakes::LoopbackDevices;

namespace {

constexpr std::uint8_t READ_PROPERTY = 12;

class TestRequest final : public AsyncRequest {
public:
    std::function<void(TestRequest&, const CallResult&)> Done;
    std::vector<std::uint8_t> Octets{1, 2, 3, 4};
    int Ended = 0;
    CallResult Last;

    void OnDone(const CallResult& result) override {
        ++Ended;
        Last = result;
        if (Done)
            Done(*this, result);
    }
};

// ---- over a scripted link

class Scripted : public testing::Test {
protected:
    Scripted() {
        m_network.AddPort(m_link);
        m_settings.BackgroundThread = false;
        m_layer = std::make_unique<TransactionLayer>(m_network, m_settings, nullptr, m_clock);
        m_caller = std::make_unique<AsyncCaller>(*m_layer);
    }
    TestRequest& Request(std::uint8_t host) {
        TestRequest& request = m_requests.emplace_back();
        request.Destination.MacLength = 6;
        const std::uint8_t mac[6] = {10, 0, 0, host, 0xBA, 0xC0};
        std::copy_n(mac, 6, request.Destination.Mac);
        request.Service = READ_PROPERTY;
        request.Parameters = request.Octets;
        return request;
    }
    void AnswerAll() {
        m_link.OnSend = [this](const fakes::Sent& sent) {
            m_link.Deliver(sent.To, {0x01, 0x00, 0x30, sent.Npdu[4], READ_PROPERTY, sent.To.Data()[3]});
        };
    }
    void RunOut() {
        while (m_caller->Outstanding() != 0)
            m_caller->Poll(100);
    }

    fakes::FakeClock m_clock;
    fakes::FakeLink m_link{m_clock};
    NetworkLayer m_network;
    TransactionSettings m_settings;
    std::deque<TestRequest> m_requests;
    std::unique_ptr<TransactionLayer> m_layer;
    std::unique_ptr<AsyncCaller> m_caller;
};

TEST_F(Scripted, NothingHappensBeforePoll) {
    m_caller->Submit(Request(5));
    EXPECT_EQ(m_caller->Outstanding(), 1U);
    EXPECT_TRUE(m_link.Frames.empty());
    AnswerAll();
    RunOut();
    EXPECT_EQ(m_requests[0].Ended, 1);
    EXPECT_EQ(m_requests[0].Last.How, Outcome::complex_ack);
    EXPECT_EQ(m_requests[0].Answer.Size(), 1U);
}

TEST_F(Scripted, SilenceIsRepeatedAndGivenUpForEachAlone) {
    TestRequest& dead = Request(5);
    TestRequest& impatient = Request(6);
    impatient.Options.TimeoutMs = 100;
    impatient.Options.Retries = 0;
    const Millis begun = m_clock.Now();
    Millis ended = 0;
    impatient.Done = [&](TestRequest&, const CallResult&) { ended = m_clock.Now(); };
    m_caller->Submit(dead);
    m_caller->Submit(impatient);
    RunOut();
    EXPECT_EQ(ended - begun, 100);
    EXPECT_EQ(m_clock.Now() - begun, 12000);
    EXPECT_EQ(dead.Last.How, Outcome::timeout);
    EXPECT_EQ(impatient.Last.How, Outcome::timeout);
    EXPECT_EQ(m_link.Frames.size(), 5U);
}

TEST_F(Scripted, MoreThan256ToOneDeviceTakeTheirTurns) {
    std::size_t most = 0;
    for (int i = 0; i < 1000; ++i)
        m_caller->Submit(Request(5));
    std::size_t answered = 0;
    m_link.OnSend = [&](const fakes::Sent& sent) {
        most = std::max(most, m_link.Frames.size() - answered);
        m_link.Deliver(sent.To, {0x01, 0x00, 0x30, sent.Npdu[4], READ_PROPERTY, 7}, 5);
    };
    for (TestRequest& request : m_requests)
        request.Done = [&](TestRequest&, const CallResult&) { ++answered; };
    RunOut();
    EXPECT_EQ(answered, 1000U);
    EXPECT_EQ(most, 256U);
    for (const TestRequest& request : m_requests)
        EXPECT_EQ(request.Last.How, Outcome::complex_ack);
}

TEST_F(Scripted, OneThatNeverGetsAnInvokeIdFailsInItsTime) {
    for (int i = 0; i < 257; ++i)
        m_caller->Submit(Request(5));
    m_requests.back().Options.TimeoutMs = 200;
    m_requests.back().Options.Retries = 1;
    TestRequest& other = Request(6);
    m_caller->Submit(other);
    const Millis begun = m_clock.Now();
    while (m_requests[256].Ended == 0)
        m_caller->Poll(10);
    EXPECT_EQ(m_requests[256].Last.How, Outcome::busy);
    EXPECT_LE(m_clock.Now() - begun, 420);
    EXPECT_EQ(m_link.Frames.size(), 257U) << "the other device was asked meanwhile";
    m_caller->Cancel();
    EXPECT_EQ(other.Last.How, Outcome::cancelled);
    EXPECT_EQ(m_caller->Outstanding(), 0U);
}

TEST_F(Scripted, RequestsBehindARouterWaitForItTogether) {
    for (int i = 0; i < 3; ++i) {
        TestRequest& request = Request(5);
        request.Destination = {};
        request.Destination.Remote = 1;
        request.Destination.Network = 2001;
        request.Destination.Mac[0] = 7;
        request.Destination.MacLength = 1;
        m_caller->Submit(request);
    }
    TestRequest& local = Request(6);
    m_caller->Submit(local);
    const MacAddress router = fakes::Mac({10, 0, 0, 1, 0xBA, 0xC0});
    m_link.OnSend = [&](const fakes::Sent& sent) {
        Npdu npdu;
        DecodeNpdu(sent.Npdu, npdu);
        Apdu apdu;
        DecodeApdu(npdu.Payload, apdu);
        if (npdu.IsNetworkMessage)
            m_link.DeliverBroadcast(router, frames::I_AM_ROUTER, 200);
        else if (npdu.DestinationNetwork != 0)
            m_link.Deliver(router, {0x01, 0x08, 0x07, 0xD1, 0x01, 0x07, 0x30, apdu.InvokeId, READ_PROPERTY, 1});
        else
            m_link.Deliver(sent.To, {0x01, 0x00, 0x30, apdu.InvokeId, READ_PROPERTY, 1});
    };
    RunOut();
    for (const TestRequest& request : m_requests)
        EXPECT_EQ(request.Last.How, Outcome::complex_ack);
    EXPECT_EQ(m_link.Frames.size(), 5U) << "one question for the router, four requests";
}

TEST_F(Scripted, RequestsThatCanNotBeSentEndInPoll) {
    TestRequest& bad = Request(5);
    bad.Destination.MacLength = 2;
    TestRequest& big = Request(5);
    big.Octets.resize(1500);
    big.Parameters = big.Octets;
    TestRequest& lost = Request(5);
    lost.Destination.Remote = 1;
    lost.Destination.Network = 9;
    for (TestRequest& request : m_requests)
        m_caller->Submit(request);
    EXPECT_EQ(m_caller->Poll(0), 2U);
    EXPECT_EQ(bad.Last.How, Outcome::invalid_address);
    EXPECT_EQ(big.Last.How, Outcome::request_too_long);
    RunOut();
    EXPECT_EQ(lost.Last.How, Outcome::no_route);
}

TEST_F(Scripted, ARequestMayBeSubmittedAgainWhenItIsDone) {
    AnswerAll();
    for (std::uint8_t host = 1; host <= 3; ++host)
        Request(host).Done = [this](TestRequest& request, const CallResult&) {
            if (request.Ended < 100)
                m_caller->Submit(request);
        };
    for (TestRequest& request : m_requests)
        m_caller->Submit(request);
    RunOut();
    for (const TestRequest& request : m_requests)
        EXPECT_EQ(request.Ended, 100);
}

TEST_F(Scripted, TheDestructorEndsWhatIsOutstanding) {
    m_caller->Submit(Request(5));
    m_caller->Poll(0);
    m_caller->Submit(Request(6));
    m_caller.reset();
    for (const TestRequest& request : m_requests) {
        EXPECT_EQ(request.Ended, 1);
        EXPECT_EQ(request.Last.How, Outcome::cancelled);
    }
}

TEST_F(Scripted, ShutdownEndsWhatIsOutstanding) {
    m_caller->Submit(Request(5));
    m_caller->Poll(0);
    m_layer->Shutdown();
    m_caller->Submit(Request(6));
    RunOut();
    for (const TestRequest& request : m_requests)
        EXPECT_EQ(request.Last.How, Outcome::shutdown);
}

TEST(InvokeIdsOfPeers, BeginWhereTheSeedSays) {
    std::set<unsigned> first;
    std::set<unsigned> ofOthers;
    for (std::uint32_t seed = 1; seed <= 200; ++seed) {
        const auto firstId = [seed](std::uint32_t peer) {
            PeerTable table(0, seed);
            Transaction transaction;
            EXPECT_EQ(table.Add(PeerKey{peer, 0, {}}, transaction, 0, nullptr), PeerTable::Enter::done);
            return transaction.InvokeId;
        };
        EXPECT_EQ(firstId(7), firstId(7));
        first.insert(firstId(7));
        ofOthers.insert(firstId(seed));
    }
    EXPECT_GT(first.size(), 100U) << "processes differ";
    EXPECT_GT(ofOthers.size(), 100U) << "peers differ";
}

// ---- over real sockets, beside blocking callers

TEST(AsyncOverLoopback, ManyOutstandingBesideBlockingCallers) {
    const testing_support::LoopbackBlock block;
    LoopbackDevices devices(block);
    BipPort port;
    ASSERT_EQ(port.Open({block.Ip(LoopbackDevices::STATION), block.Port()}), "");
    NetworkLayer network;
    network.AddPort(port);
    TransactionSettings settings;
    settings.Retries = 5;
    TransactionLayer layer(network, settings);
    layer.Start();
    const auto address = [&](unsigned host) {
        BACSTAC_ADDRESS result{};
        network.ToAddress({0, 0, ToMac(BipAddress{block.Ip(host), block.Port()}), {}}, result);
        return result;
    };
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            AnswerBuffer answer;
            for (int i = 0; i < 300; ++i)
                EXPECT_EQ(
                    layer.Call(address(LoopbackDevices::FIRST + static_cast<unsigned>(t)), READ_PROPERTY, {}, answer)
                        .How,
                    Outcome::complex_ack);
        });
    for (int t = 0; t < 2; ++t)
        threads.emplace_back([&] {
            AsyncCaller caller(layer);
            std::deque<TestRequest> requests;
            for (unsigned i = 0; i < 32; ++i) {
                TestRequest& request = requests.emplace_back();
                const unsigned host = i == 0 ? LoopbackDevices::SLOW : LoopbackDevices::FIRST + i % 6;
                request.Destination = address(host);
                request.Service = READ_PROPERTY;
                request.Octets = {static_cast<std::uint8_t>(i), 0, 0, 0};
                request.Parameters = request.Octets;
                request.Done = [&caller, host](TestRequest& done, const CallResult& result) {
                    EXPECT_EQ(result.How, Outcome::complex_ack);
                    ASSERT_EQ(done.Answer.Size(), 5U);
                    EXPECT_EQ(done.Answer.Octets()[0], host);
                    EXPECT_EQ(done.Answer.Octets()[1], done.Octets[0]);
                    if (done.Ended < (host == LoopbackDevices::SLOW ? 5 : 60))
                        caller.Submit(done);
                };
                caller.Submit(request);
            }
            while (caller.Outstanding() != 0)
                caller.Poll(1000);
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
