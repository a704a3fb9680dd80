#include "tests/unit/kernel/KernelFixture.h"

#include <array>
#include <chrono>
#include <set>
#include <thread>

using testing::ElementsAre;

using KernelConnections = KernelFixture;

TEST_F(KernelConnections, HandlesAreNeverZeroAndThereAre255) {
    std::set<int> handles;
    for (int i = 0; i < 255; ++i) {
        handles.insert(Connect("same name"));
    }
    EXPECT_EQ(handles.size(), 255U);
    EXPECT_EQ(*handles.begin(), 1);
    std::uint8_t handle = 77;
    EXPECT_EQ(m_kernel.Connect("one more", 1, 0, handle), QL_NO_RESOURCES);
    EXPECT_EQ(handle, 77);
    EXPECT_EQ(m_kernel.Disconnect(100), QL_OK);
    EXPECT_EQ(Connect(), 100);
}

TEST_F(KernelConnections, AHandleComesBackAfterAllOthers) {
    const std::uint8_t first = Connect();
    m_kernel.Disconnect(first);
    for (int i = 0; i < 254; ++i) {
        EXPECT_NE(Connect(), first);
    }
    EXPECT_EQ(Connect(), first);
}

TEST_F(KernelConnections, ArgumentsAreChecked) {
    std::uint8_t handle = 0;
    EXPECT_EQ(m_kernel.Connect(nullptr, 1, 0, handle), QL_INVALID_ARGUMENT);
    EXPECT_EQ(m_kernel.Connect("x", 2, 0, handle), QL_INVALID_ARGUMENT);
    EXPECT_EQ(m_kernel.Connect("x", 1, 1, handle), QL_INVALID_ARGUMENT);
    EXPECT_EQ(handle, 0);
    EXPECT_EQ(m_kernel.ReceiveMessage(Connect(), nullptr, 0), QL_INVALID_ARGUMENT);
}

TEST_F(KernelConnections, EveryOperationNeedsOne) {
    Add(Tag("A", TAG_TYPE_ANALOG, 1.0));
    std::uint8_t closed = Connect();
    m_kernel.Disconnect(closed);
    for (const std::uint8_t handle : {std::uint8_t{0}, closed, std::uint8_t{255}}) {
        std::uint32_t number = 0;
        std::uint32_t count = 0;
        double value = 0;
        std::array<char, QL_FOLDER_SIZE> buffer{};
        TagDefinition definition{};
        definition.size = sizeof definition;
        const std::uint32_t tag = 0;
        EXPECT_EQ(m_kernel.GetStationStatus(handle, number), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.GetStationName(handle, buffer.data(), 0, 0, 0, 0, 0), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.Disconnect(handle), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.ReceiveMessage(handle, buffer.data(), 0), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.GetTagDefinition(handle, 0, definition), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.GetTagIdWithStation(handle, "A", number), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.OpenHistory(handle, 0, 2, 0, 0, number), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.RqGateMsg(handle, 1, &tag, QL_GATE_SUBSCRIBE), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.GetTagValue(handle, QL_VALUE_AS_DOUBLE, 0, value, 0, 0), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.OpenTagEnumeration(handle, number, count, 0, 0), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.GetTagIdByName(handle, "A", number), QL_NO_CONNECTION);
        EXPECT_EQ(m_kernel.GetCurrentUserName(handle, buffer.data()), QL_NO_CONNECTION);
        EXPECT_EQ(number, 0U);
    }
}

TEST_F(KernelConnections, WithoutAMessageTheTimeRunsOutAndTheBufferIsLeftAlone) {
    const std::uint8_t handle = Connect();
    std::array<char, QL_MESSAGE_SIZE> buffer;
    buffer.fill('x');
    EXPECT_EQ(m_kernel.ReceiveMessage(handle, buffer.data(), 0), QL_TIMEOUT);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(m_kernel.ReceiveMessage(handle, buffer.data(), 20), QL_TIMEOUT);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(20));
    EXPECT_THAT(buffer, testing::Each('x'));
}

TEST_F(KernelConnections, AMessageWakesItsReceiver) {
    const std::uint32_t tag = Add(Tag("A"));
    const std::uint8_t handle = Connect();
    Request(handle, tag, QL_GATE_SUBSCRIBE);
    Received received;
    std::jthread receiver([&] { received = Receive(handle, 60'000); });
    m_kernel.SetTagValue(tag, 1.0);
    receiver.join();
    EXPECT_EQ(received, Change(tag, 1.0));
}

TEST_F(KernelConnections, ADisconnectWakesItsReceiver) {
    const std::uint8_t handle = Connect();
    QLResult result = QL_OK;
    std::jthread receiver([&] { result = Receive(handle, 60'000).result; });
    m_kernel.Disconnect(handle);
    receiver.join();
    EXPECT_EQ(result, QL_NO_CONNECTION);
}

TEST_F(KernelConnections, AFullQueueLosesItsOldestMessagesAndSaysSoOnce) {
    const std::uint32_t tag = Add(Tag("A", TAG_TYPE_ANALOG));
    const std::uint8_t handle = Connect();
    Request(handle, tag, QL_GATE_SUBSCRIBE);
    for (std::size_t i = 1; i <= QUEUE_LIMIT + 3; ++i) {
        m_kernel.SetTagValue(tag, static_cast<double>(i));
    }
    EXPECT_EQ(Receive(handle), Change(tag, 4.0, QL_MESSAGES_LOST));
    EXPECT_EQ(Receive(handle), Change(tag, 5.0));
    EXPECT_EQ(Drain(handle).size(), QUEUE_LIMIT - 2);
    m_kernel.SetTagValue(tag, 100.0);
    EXPECT_THAT(Drain(handle), ElementsAre(Change(tag, 100.0)));
}

TEST_F(KernelConnections, AQueueThatIsJustFullLosesNothing) {
    const std::uint32_t tag = Add(Tag("A", TAG_TYPE_ANALOG));
    const std::uint8_t handle = Connect();
    Request(handle, tag, QL_GATE_SUBSCRIBE);
    std::vector<Received> expected;
    for (std::size_t i = 1; i <= QUEUE_LIMIT; ++i) {
        m_kernel.SetTagValue(tag, static_cast<double>(i));
        expected.push_back(Change(tag, static_cast<double>(i)));
    }
    EXPECT_EQ(Drain(handle), expected);
}

TEST_F(KernelConnections, ShutdownSendsEachConnectionOneExitMessage) {
    const std::uint8_t first = Connect();
    const std::uint8_t second = Connect();
    m_kernel.ShutDown();
    m_kernel.ShutDown();
    EXPECT_THAT(Drain(first), ElementsAre(Exit()));
    EXPECT_THAT(Drain(second), ElementsAre(Exit()));
    EXPECT_EQ(Receive(first).result, QL_TIMEOUT);
}

TEST_F(KernelConnections, ShutdownWakesAReceiver) {
    const std::uint8_t handle = Connect();
    Received received{QL_TIMEOUT, 99, 0, 0.0};
    std::jthread receiver([&] { received = Receive(handle, 60'000); });
    m_kernel.ShutDown();
    receiver.join();
    EXPECT_EQ(received, Exit());
}

TEST_F(KernelConnections, TheExitMessageStandsBehindAFullQueue) {
    const std::uint32_t tag = Add(Tag("A", TAG_TYPE_ANALOG));
    const std::uint8_t handle = Connect();
    Request(handle, tag, QL_GATE_SUBSCRIBE);
    for (std::size_t i = 0; i <= QUEUE_LIMIT; ++i) {
        m_kernel.SetTagValue(tag, static_cast<double>(i));
    }
    m_kernel.ShutDown();
    m_kernel.SetTagValue(tag, -1.0); // nothing follows the exit message
    const auto messages = Drain(handle);
    ASSERT_EQ(messages.size(), QUEUE_LIMIT + 1);
    EXPECT_EQ(messages.front(), Change(tag, 1.0, QL_MESSAGES_LOST));
    EXPECT_EQ(messages.back(), Exit());
}

TEST_F(KernelConnections, AfterShutdownThoseThatAreThereEndInOrder) {
    Add(Tag("A", TAG_TYPE_ANALOG, 1.0));
    const std::uint8_t handle = Connect();
    std::uint32_t channel = 0;
    ASSERT_EQ(m_kernel.OpenHistory(handle, 0, 2, 0, 0, channel), QL_OK);
    m_kernel.ShutDown();
    std::uint8_t other = 0;
    EXPECT_EQ(m_kernel.Connect("late", 1, 0, other), QL_SHUT_DOWN);
    EXPECT_EQ(other, 0);
    double value = 0;
    EXPECT_EQ(m_kernel.GetTagValue(handle, QL_VALUE_AS_DOUBLE, 0, value, 0, 0), QL_OK);
    EXPECT_EQ(m_kernel.FlushHistory(channel), QL_OK);
    EXPECT_EQ(m_kernel.CloseHistory(channel), QL_OK);
    EXPECT_EQ(m_kernel.Disconnect(handle), QL_OK);
}
