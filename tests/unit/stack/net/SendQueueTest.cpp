#include "platform/stack/transaction/SendQueue.h"
#include "tests/unit/stack/net/FakeLink.h"

#include <gtest/gtest.h>

#include <thread>

using namespace bacnet;
using fakes::Mac;

namespace {

const MacAddress DEVICE = Mac({10, 0, 0, 5, 0xBA, 0xC0});

class Sends : public testing::Test {
protected:
    Sends() { m_network.AddPort(m_link); }
    bool Offer(std::uint8_t number) {
        Frame frame;
        frame.Append(fakes::Octets{0x01, 0x04, number});
        return m_queue->Offer({DEVICE, &frame}); // the frame is gone when it is sent
    }
    fakes::FakeClock m_clock;
    fakes::FakeLink m_link{m_clock};
    NetworkLayer m_network;
    std::unique_ptr<SendQueue> m_queue = std::make_unique<SendQueue>();
};

TEST_F(Sends, NothingIsTakenWhileNobodyWouldSendIt) {
    EXPECT_FALSE(Offer(1));
    m_queue->Open();
    m_queue->Close(m_network, 0);
    EXPECT_FALSE(Offer(1));
    EXPECT_TRUE(m_link.Frames.empty());
}

TEST_F(Sends, WhatWasTakenIsSentInItsOrder) {
    m_queue->Open();
    for (std::uint8_t i = 0; i < 5; ++i)
        EXPECT_TRUE(Offer(i));
    EXPECT_TRUE(m_link.Frames.empty());
    m_queue->Close(m_network, 0);
    ASSERT_EQ(m_link.Frames.size(), 5U);
    for (std::uint8_t i = 0; i < 5; ++i) {
        EXPECT_EQ(m_link.Frames[i].Npdu, (fakes::Octets{0x01, 0x04, i}));
        EXPECT_EQ(m_link.Frames[i].To, DEVICE);
    }
}

TEST_F(Sends, WhatIsOfferedDuringTheSendingIsSentToo) {
    bool offered = false;
    m_link.OnSend = [&](const fakes::Sent&) {
        if (!offered)
            offered = Offer(2);
    };
    m_queue->Open();
    EXPECT_TRUE(Offer(1));
    m_queue->Close(m_network, 0);
    EXPECT_TRUE(offered);
    EXPECT_EQ(m_link.Frames.size(), 2U);
}

TEST_F(Sends, AFullQueueTakesNoMore) {
    m_queue->Open();
    for (unsigned i = 0; i < NpduBatch::CAPACITY; ++i)
        EXPECT_TRUE(Offer(static_cast<std::uint8_t>(i)));
    EXPECT_FALSE(Offer(99));
    m_queue->Close(m_network, 0);
    EXPECT_EQ(m_link.Frames.size(), NpduBatch::CAPACITY);
}

TEST_F(Sends, NothingIsLostBetweenThreads) {
    std::atomic<bool> over{false};
    std::atomic<unsigned> taken{0};
    std::vector<std::thread> callers;
    for (int t = 0; t < 4; ++t)
        callers.emplace_back([&] {
            while (!over)
                taken += Offer(1) ? 1U : 0U;
        });
    for (int round = 0; round < 2000; ++round) {
        m_queue->Open();
        std::this_thread::yield();
        m_queue->Close(m_network, 0);
    }
    over = true;
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(m_link.Frames.size(), taken.load());
}

} // namespace
