// Calls over real sockets with real threads.

#include "platform/stack/transaction/TransactionLayer.h"
#include "platform/stack/transport/BipPort.h"
#include "tests/unit/stack/net/Frames.h"
#include "tests/unit/stack/net/LoopbackDevices.h"

#include <gtest/gtest.h>

#include <thread>

using namespace bacnet;
using fakes::LoopbackDevices;

namespace {

constexpr std::uint8_t READ_PROPERTY = 12;

class OverLoopback : public testing::Test, public IRequestHandler {
protected:
    void SetUp() override {
        ASSERT_EQ(m_port.Open({m_block.Ip(LoopbackDevices::STATION), m_block.Port()}), "");
        m_network.AddPort(m_port);
        m_settings.TimeoutMs = 2000;
        m_settings.Retries = 5;
        m_settings.IdRestMs = 300;
        m_layer = std::make_unique<TransactionLayer>(m_network, m_settings, this);
        m_layer->Start();
    }
    void TearDown() override { m_layer.reset(); } // while its handler, this, is whole
    void OnRequest(const RequestIndication& request) override {
        if (request.Header.Type == PduType::unconfirmed_request) {
            const std::lock_guard lock(m_mutex);
            m_threads.push_back(std::this_thread::get_id());
            m_changed.notify_all();
        }
    }
    BACSTAC_ADDRESS Address(unsigned host) const {
        BACSTAC_ADDRESS address{};
        EXPECT_TRUE(m_network.ToAddress({0, 0, ToMac(BipAddress{m_block.Ip(host), m_block.Port()}), {}}, address));
        return address;
    }
    // Calls a device with a number of its own and checks that the answer is to that.
    void CallAndCheck(unsigned host, std::uint32_t number, AnswerBuffer& answer) {
        std::array<std::uint8_t, 4> request;
        std::memcpy(request.data(), &number, sizeof(number));
        const CallResult result = m_layer->Call(Address(host), READ_PROPERTY, request, answer);
        ASSERT_EQ(result.How, Outcome::complex_ack) << ToString(result.How);
        ASSERT_EQ(answer.Size(), 5U);
        EXPECT_EQ(answer.Octets()[0], host);
        EXPECT_EQ(std::memcmp(answer.Octets().data() + 1, request.data(), 4), 0);
    }
    // Runs body(thread) on so many threads.
    template <typename Body>
    static void OnThreads(unsigned count, Body body) {
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < count; ++i)
            threads.emplace_back([&body, i] { body(i); });
        for (std::thread& thread : threads)
            thread.join();
    }

    testing_support::LoopbackBlock m_block;
    LoopbackDevices m_devices{m_block};
    BipPort m_port;
    NetworkLayer m_network;
    TransactionSettings m_settings;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::thread::id> m_threads; // m_mutex
    std::unique_ptr<TransactionLayer> m_layer;
};

TEST_F(OverLoopback, OneCallerGetsItsAnswers) {
    AnswerBuffer answer;
    for (std::uint32_t i = 0; i < 300; ++i)
        CallAndCheck(LoopbackDevices::FIRST + i % 6, i, answer);
}

TEST_F(OverLoopback, ThirtyTwoCallersGetEachItsOwnAnswers) {
    OnThreads(32, [this](unsigned thread) {
        AnswerBuffer answer;
        for (std::uint32_t i = 0; i < 200; ++i)
            CallAndCheck(LoopbackDevices::FIRST + (thread + i) % 6, thread << 16 | i, answer);
    });
}

TEST_F(OverLoopback, SlowDevicesAndOddPortsAreMixedWithQuickOnes) {
    OnThreads(12, [this](unsigned thread) {
        AnswerBuffer answer;
        const unsigned hosts[] = {LoopbackDevices::SLOW, LoopbackDevices::OTHER_PORT, LoopbackDevices::FIRST};
        const std::uint32_t count = thread % 3 == 0 ? 5 : 150;
        for (std::uint32_t i = 0; i < count; ++i)
            CallAndCheck(hosts[thread % 3], thread << 16 | i, answer);
    });
}

TEST_F(OverLoopback, ADeadDeviceIsGivenUpInItsTimeAndHoldsUpNobody) {
    using Clock = std::chrono::steady_clock;
    std::atomic<bool> over{false};
    std::thread dead([&] {
        AnswerBuffer answer;
        CallOptions options;
        options.TimeoutMs = 300;
        options.Retries = 1;
        const auto begun = Clock::now();
        EXPECT_EQ(m_layer->Call(Address(LoopbackDevices::DEAD), READ_PROPERTY, {}, answer, options).How,
                  Outcome::timeout);
        const auto lasted = Clock::now() - begun;
        EXPECT_GE(lasted, std::chrono::milliseconds(590));
        EXPECT_LT(lasted, std::chrono::milliseconds(5000));
        over = true;
    });
    AnswerBuffer answer;
    std::uint32_t calls = 0;
    while (!over)
        CallAndCheck(LoopbackDevices::FIRST, calls++, answer);
    dead.join();
    EXPECT_GT(calls, 50U) << "if the dead one's turns had been waited for there would be a handful";
}

TEST_F(OverLoopback, RequestsThatALeadingCallerReceivesAreHandledElsewhere) {
    UdpSocket other;
    ASSERT_EQ(other.Open({m_block.Ip(40), m_block.Port()}, {}), "");
    std::atomic<bool> stop{false};
    std::thread caller([&] {
        AnswerBuffer answer;
        for (std::uint32_t i = 0; !stop; ++i)
            CallAndCheck(LoopbackDevices::FIRST, i, answer);
    });
    const auto callerId = caller.get_id();
    for (int i = 0; i < 50; ++i)
        other.Send(m_port.LocalAddress(), frames::WHO_IS);
    {
        std::unique_lock lock(m_mutex);
        EXPECT_TRUE(m_changed.wait_for(lock, std::chrono::seconds(20), [this] { return m_threads.size() >= 50; }));
        for (const std::thread::id& id : m_threads)
            EXPECT_TRUE(id != callerId && id != std::this_thread::get_id());
    }
    stop = true;
    caller.join();
}

TEST_F(OverLoopback, AFloodOfAnnouncementsHoldsUpNobody) {
    UdpSocket other;
    ASSERT_EQ(other.Open({m_block.Ip(40), m_block.Port()}, {}), "");
    std::atomic<bool> over{false};
    std::thread flood([&] {
        const BipAddress all{testing_support::LoopbackBlock::BROADCAST_IP, m_block.Port()};
        for (int i = 0; i < 10000; ++i)
            other.Send(i % 2 == 0 ? all : m_port.LocalAddress(), frames::FORWARDED_I_AM);
        over = true;
    });
    AnswerBuffer answer;
    std::uint32_t calls = 0;
    while (!over || calls < 100)
        CallAndCheck(LoopbackDevices::FIRST, calls++, answer);
    flood.join();
    std::unique_lock lock(m_mutex);
    EXPECT_TRUE(m_changed.wait_for(lock, std::chrono::seconds(20), [this] { return m_threads.size() >= 1000; }))
        << "and of the announcements as many are handed up as there is room for";
}

TEST_F(OverLoopback, AnObserverIsAskedOnItsOwnThreadAndMayGiveUp) {
    class Patience final : public ICallObserver {
    public:
        explicit Patience(int left) : m_left(left) {}
        bool KeepWaiting() override {
            EXPECT_EQ(std::this_thread::get_id(), m_thread);
            return m_left-- > 0;
        }

    private:
        int m_left;
        const std::thread::id m_thread = std::this_thread::get_id();
    };
    AnswerBuffer answer;
    Patience short_patience(2);
    CallOptions options;
    options.Observer = &short_patience;
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(m_layer->Call(Address(LoopbackDevices::DEAD), READ_PROPERTY, {}, answer, options).How,
              Outcome::cancelled);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(1500));
    Patience long_patience(1000000);
    options.Observer = &long_patience;
    EXPECT_EQ(m_layer->Call(Address(LoopbackDevices::SLOW), READ_PROPERTY, {}, answer, options).How,
              Outcome::complex_ack);
}

TEST_F(OverLoopback, AnObserverMayCallItself) {
    class Nested final : public ICallObserver {
    public:
        Nested(TransactionLayer& layer, const BACSTAC_ADDRESS& address) : m_layer(layer), m_address(address) {}
        bool KeepWaiting() override {
            AnswerBuffer answer;
            EXPECT_EQ(m_layer.Call(m_address, READ_PROPERTY, {}, answer).How, Outcome::complex_ack);
            return ++Calls < 5;
        }
        int Calls = 0;

    private:
        TransactionLayer& m_layer;
        const BACSTAC_ADDRESS m_address;
    };
    Nested nested(*m_layer, Address(LoopbackDevices::FIRST));
    AnswerBuffer answer;
    CallOptions options;
    options.Observer = &nested;
    EXPECT_EQ(m_layer->Call(Address(LoopbackDevices::DEAD), READ_PROPERTY, {}, answer, options).How,
              Outcome::cancelled);
    EXPECT_EQ(nested.Calls, 5);
}

TEST_F(OverLoopback, The257thCallToOneDeviceWaitsForAnInvokeIdOrFailsInItsTime) {
    m_devices.Mute(true);
    std::atomic<int> started{0};
    std::thread crowd([&] {
        OnThreads(256, [&](unsigned) {
            AnswerBuffer answer;
            ++started;
            const CallResult result = m_layer->Call(Address(LoopbackDevices::FIRST), READ_PROPERTY, {}, answer);
            EXPECT_EQ(result.How, Outcome::complex_ack);
        });
    });
    while (m_devices.Received() < 256)
        std::this_thread::yield();
    AnswerBuffer answer;
    CallOptions options;
    options.TimeoutMs = 50;
    options.Retries = 1;
    EXPECT_EQ(m_layer->Call(Address(LoopbackDevices::FIRST), READ_PROPERTY, {}, answer, options).How, Outcome::busy);
    std::thread patient([&] {
        AnswerBuffer own;
        EXPECT_EQ(m_layer->Call(Address(LoopbackDevices::FIRST), READ_PROPERTY, {}, own).How, Outcome::complex_ack);
    });
    EXPECT_EQ(m_layer->Call(Address(LoopbackDevices::DEAD), READ_PROPERTY, {}, answer, options).How, Outcome::timeout)
        << "another device's ids are its own";
    m_devices.Mute(false);
    crowd.join();
    patient.join();
}

TEST_F(OverLoopback, ShutdownEndsCallsThatWait) {
    std::atomic<int> ended{0};
    std::atomic<int> begun{0};
    std::thread callers([&] {
        OnThreads(8, [&](unsigned thread) {
            AnswerBuffer answer;
            ++begun;
            BACSTAC_ADDRESS address = Address(LoopbackDevices::DEAD);
            if (thread % 2 == 0) { // behind a router that nobody knows
                address.Remote = 1;
                address.Network = 77;
            }
            EXPECT_EQ(m_layer->Call(address, READ_PROPERTY, {}, answer).How, Outcome::shutdown);
            ++ended;
        });
    });
    while (begun != 8)
        std::this_thread::yield();
    const auto asked = std::chrono::steady_clock::now();
    m_layer->Shutdown();
    callers.join();
    EXPECT_EQ(ended.load(), 8);
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::milliseconds(1500));
}

} // namespace
