#include "module/history/QilClient.h"

#include "tests/unit/history/RecordingKernel.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <mutex>
#include <thread>
#include <type_traits>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Clock = std::chrono::steady_clock;

// Waits for what another thread is about to do; the limit only ends a test that has failed.
template <typename Predicate>
bool Eventually(Predicate predicate) {
    const auto limit = Clock::now() + std::chrono::seconds(20);
    while (!predicate()) {
        if (Clock::now() > limit)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

class ListeningClient : public CQilClient {
public:
    explicit ListeningClient(IQLProgramCore& kernel) : CQilClient(kernel, "listener") {}
    ~ListeningClient() override { StopThread(10000); }

    void OnExit() override { Note(); }
    void OnMessage1() override { Note(); }
    void OnMessage2() override { Note(); }
    void OnMessage3() override { Note(); }
    void OnMessage7() override { Note(); }
    void OnMessage8() override { Note(); }
    void OnMessage9() override { Note(); }
    void OnMessage10() override { Note(); }
    void OnMessage11() override { Note(); }
    void OnMessage13() override { Note(); }
    void OnMessage14() override { Note(); }
    void OnMessage15() override { Note(); }
    void OnMessage16() override { Note(); }
    void OnMessage17() override { Note(); }
    void OnMessage121() override { Note(); }
    void OnMessage122() override { Note(); }
    void OnMessage123() override { Note(); }
    void OnMessage124() override { Note(); }

    std::vector<int> GetCodes() const {
        const std::lock_guard lock(m_mutex);
        return m_codes;
    }
    std::function<void()> onMessage;

private:
    void Note() {
        {
            const std::lock_guard lock(m_mutex);
            m_codes.push_back(GetMessageCode());
        }
        if (onMessage)
            onMessage();
    }

    mutable std::mutex m_mutex;
    std::vector<int> m_codes;
};

TEST(QilClient, ConnectsOnceUnderItsName) {
    RecordingKernel kernel;
    CQilClient client(kernel, "BACnetHistoryManager");
    EXPECT_TRUE(client.Connect());
    EXPECT_TRUE(client.Connect());
    EXPECT_EQ(client.GetHandle(), 7);
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("27(BACnetHistoryManager, 1, 0)"));
}

TEST(QilClient, StaysUnconnectedWhenTheKernelRefuses) {
    RecordingKernel kernel;
    kernel.connectResult = QL_NO_RESOURCES;
    CQilClient client(kernel, "x");
    EXPECT_FALSE(client.Connect());
    EXPECT_EQ(client.GetHandle(), 0);
    EXPECT_EQ(client.GetLastResult(), QL_NO_RESOURCES);
}

TEST(QilClient, DisconnectsWithoutACallWhenNotConnected) {
    RecordingKernel kernel;
    CQilClient client(kernel, "x");
    EXPECT_TRUE(client.Disconnect());
    EXPECT_THAT(kernel.GetCalls(), IsEmpty());
}

TEST(QilClient, LosesItsHandleWhateverDisconnectAnswers) {
    RecordingKernel kernel;
    kernel.disconnectResult = 3;
    CQilClient client(kernel, "x");
    client.Connect();
    EXPECT_FALSE(client.Disconnect());
    EXPECT_EQ(client.GetHandle(), 0);
    EXPECT_EQ(client.GetLastResult(), 3);
    EXPECT_TRUE(client.Disconnect());
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("27(x, 1, 0)", "29(7)"));
}

TEST(QilClient, TakesOnlyStatusZeroForActive) {
    RecordingKernel kernel;
    CQilClient client(kernel, "x");
    client.Connect();
    EXPECT_TRUE(client.IsStationActive());
    kernel.stationStatus = 1;
    EXPECT_FALSE(client.IsStationActive());
    kernel.stationStatus = 0;
    kernel.statusResult = QL_NO_CONNECTION;
    EXPECT_FALSE(client.IsStationActive());
}

TEST(QilClient, ClearsTheStationNameBeforeItAsks) {
    RecordingKernel kernel;
    CQilClient client(kernel, "x");
    client.Connect();
    char name[QL_STATION_NAME_SIZE];
    std::memset(name, '?', sizeof name);
    EXPECT_TRUE(client.GetStationName(name));
    EXPECT_STREQ(name, "LOCAL");
    EXPECT_THAT(kernel.GetAskedStationName(), testing::Each('\0'));

    std::memset(name, '?', sizeof name);
    kernel.stationNameResult = QL_NO_CONNECTION;
    EXPECT_FALSE(client.GetStationName(name));
    EXPECT_STREQ(name, "");
    EXPECT_EQ(kernel.GetCalls().back(), "7(7, 0, 0, 0, 0, 0)");
}

TEST(QilClient, AsksForATagDefinitionWithAClearedRecordOfItsSize) {
    RecordingKernel kernel;
    kernel.AddTag(17, "TK");
    CQilClient client(kernel, "x");
    client.Connect();
    TagDefinition definition;
    std::memset(&definition, 0xEE, sizeof definition);
    EXPECT_TRUE(client.ReadTagDefinition(17, definition));
    EXPECT_STREQ(definition.name, "TK");

    TagDefinition expected{};
    expected.size = 1468;
    const TagDefinition asked = kernel.GetAskedDefinition();
    EXPECT_EQ(std::memcmp(&asked, &expected, sizeof asked), 0);
    EXPECT_FALSE(client.ReadTagDefinition(18, definition));
    EXPECT_EQ(client.GetLastResult(), QL_NO_SUCH_TAG);
}

TEST(QilClient, CutsATagNameToTheKernelsBuffer) {
    RecordingKernel kernel;
    kernel.tagIds[std::string(47, 'n')] = 5;
    CQilClient client(kernel, "x");
    client.Connect();
    std::uint32_t id = 0;
    EXPECT_TRUE(client.GetTagIdByName(std::string(60, 'n'), id));
    EXPECT_EQ(id, 5U);
    EXPECT_FALSE(client.GetTagIdByName("unknown", id));
    EXPECT_EQ(id, 5U);
}

TEST(QilClient, RunsOneReceiveThread) {
    RecordingKernel kernel;
    CQilClient client(kernel, "x");
    client.Connect();
    std::mutex mutex;
    std::vector<std::thread::id> threads;
    kernel.onReceive = [&] {
        const std::lock_guard lock(mutex);
        if (std::find(threads.begin(), threads.end(), std::this_thread::get_id()) == threads.end())
            threads.push_back(std::this_thread::get_id());
    };
    EXPECT_TRUE(client.StartThread());
    EXPECT_TRUE(client.StartThread());
    ASSERT_TRUE(Eventually([&] { return kernel.GetReceiveCount() >= 5; }));
    client.StopThread(10000);
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_EQ(kernel.GetReceiveTimeout(), 1000U);
}

TEST(QilClient, StopsAtOnceWithoutAThread) {
    RecordingKernel kernel;
    CQilClient client(kernel, "x");
    const auto before = Clock::now();
    client.StopThread(10000);
    EXPECT_LT(Clock::now() - before, std::chrono::seconds(1));
    EXPECT_TRUE(client.IsAlive());
}

TEST(QilClient, StopsWithinTheReceiveTimeout) {
    RecordingKernel kernel;
    kernel.receiveWait = RecordingKernel::RECEIVE_FULL;
    CQilClient client(kernel, "x");
    client.Connect();
    client.StartThread();
    ASSERT_TRUE(Eventually([&] { return kernel.GetReceiveCount() == 1; }));
    const auto before = Clock::now();
    client.StopThread(10000);
    EXPECT_LT(Clock::now() - before, std::chrono::milliseconds(2500));
    EXPECT_FALSE(client.IsAlive());
    EXPECT_EQ(kernel.GetReceiveCount(), 1);
}

TEST(QilClient, EndsWithTheExitMessage) {
    RecordingKernel kernel;
    ListeningClient client(kernel);
    client.Connect();
    std::atomic<bool> aliveInHandler{false};
    client.onMessage = [&] { aliveInHandler = client.IsAlive(); };
    client.StartThread();
    EXPECT_TRUE(client.IsAlive());
    kernel.Post(QL_MSG_EXIT);
    kernel.Post(QL_MSG_EXIT);
    ASSERT_TRUE(Eventually([&] { return !client.IsAlive(); }));
    client.StopThread(10000);
    EXPECT_THAT(client.GetCodes(), ElementsAre(0));
    EXPECT_TRUE(aliveInHandler);
}

TEST(QilClient, GivesEachMessageToItsHandlerAndIgnoresOtherCodes) {
    RecordingKernel kernel;
    ListeningClient client(kernel);
    client.Connect();
    for (std::uint16_t code = 1; code <= 130; ++code)
        kernel.Post(code);
    kernel.Post(0xFFFF);
    kernel.Post(QL_MSG_EXIT);
    client.StartThread();
    ASSERT_TRUE(Eventually([&] { return !client.IsAlive(); }));
    EXPECT_THAT(client.GetCodes(), ElementsAre(1, 2, 3, 7, 8, 9, 10, 11, 13, 14, 15, 16, 17, 121, 122, 123, 124, 0));
}

TEST(QilClient, TakesLostMessagesForAMessageAndOtherResultsForNone) {
    RecordingKernel kernel;
    ListeningClient client(kernel);
    client.Connect();
    kernel.Post(2, QL_MESSAGES_LOST);
    kernel.Post(3, QL_TIMEOUT);
    kernel.Post(3, QL_INVALID_ARGUMENT);
    kernel.Post(7);
    client.StartThread();
    ASSERT_TRUE(Eventually([&] { return client.GetCodes().size() >= 2; }));
    client.StopThread(10000);
    EXPECT_THAT(client.GetCodes(), ElementsAre(2, 7));
}

TEST(QilClient, KeepsTheBufferBetweenMessages) {
    RecordingKernel kernel;
    ListeningClient client(kernel);
    client.Connect();
    std::vector<unsigned char> seen;
    client.onMessage = [&] { seen.assign(client.GetMessageBytes(), client.GetMessageBytes() + QL_MESSAGE_SIZE); };
    RecordingKernel::Message full;
    full.bytes.assign(QL_MESSAGE_SIZE, 0xAB);
    full.bytes[0] = 1;
    full.bytes[1] = 0;
    kernel.Post(full);
    RecordingKernel::Message empty;
    empty.result = QL_MESSAGES_LOST;
    empty.fills = false;
    kernel.Post(empty);
    client.StartThread();
    ASSERT_TRUE(Eventually([&] { return client.GetCodes().size() == 2; }));
    client.StopThread(10000);
    EXPECT_THAT(client.GetCodes(), ElementsAre(1, 1));
    EXPECT_EQ(seen, full.bytes);
}

TEST(QilClient, StartsAnewAfterAStop) {
    RecordingKernel kernel;
    ListeningClient client(kernel);
    client.Connect();
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(client.StartThread());
        EXPECT_TRUE(client.IsAlive());
        kernel.Post(7);
        ASSERT_TRUE(Eventually([&] { return client.GetCodes().size() == static_cast<std::size_t>(round) + 1; }));
        client.StopThread(10000);
        EXPECT_FALSE(client.IsAlive());
    }
}

TEST(QilClient, StopsFromItsOwnHandlerWithoutWaiting) {
    RecordingKernel kernel;
    std::atomic<bool> stopped{false};
    {
        ListeningClient client(kernel);
        client.Connect();
        client.onMessage = [&] {
            client.StopThread(0xFFFFFFFF);
            stopped = true;
        };
        kernel.Post(1);
        kernel.Post(2);
        client.StartThread();
        ASSERT_TRUE(Eventually([&] { return stopped.load(); }));
        EXPECT_FALSE(client.IsAlive());
        EXPECT_THAT(client.GetCodes(), ElementsAre(1));
    }
}

TEST(QilClient, LetsGoOfAThreadThatDoesNotComeBack) {
    RecordingKernel kernel;
    std::mutex mutex;
    std::condition_variable changed;
    bool released = false;
    std::atomic<bool> inside{false};
    std::atomic<bool> left{false};
    struct Leaver { // destroyed with the receive thread
        std::atomic<bool>* left;
        ~Leaver() {
            if (left != nullptr)
                *left = true;
        }
    };
    kernel.onReceive = [&] {
        thread_local Leaver leaver{&left};
        inside = true;
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return released; });
    };
    {
        ListeningClient client(kernel);
        client.Connect();
        kernel.Post(1); // the receive that hangs comes back with a message for a client that is gone
        client.StartThread();
        ASSERT_TRUE(Eventually([&] { return inside.load(); }));
        const auto before = Clock::now();
        client.StopThread(20);
        EXPECT_LT(Clock::now() - before, std::chrono::seconds(5));
        EXPECT_FALSE(client.IsAlive());
        EXPECT_EQ(client.GetHandle(), 7);
        EXPECT_TRUE(client.Disconnect());
    }
    {
        const std::lock_guard lock(mutex);
        released = true;
    }
    changed.notify_all();
    ASSERT_TRUE(Eventually([&] { return left.load(); }));
}

TEST(QilClient, DoesNotSpinOnAKernelThatRefusesToWait) {
    RecordingKernel kernel;
    kernel.receiveResult = QL_NO_CONNECTION;
    kernel.receiveWait = 0;
    CQilClient client(kernel, "x");
    client.Connect();
    client.StartThread();
    ASSERT_TRUE(Eventually([&] { return kernel.GetReceiveCount() >= 3; }));
    EXPECT_LT(kernel.GetReceiveCount(), 10);
    client.StopThread(10000);
}

#if defined(__GNUC__) && defined(__x86_64__)
// A pointer to a virtual member begins with one more than the byte offset of its slot in the table. The destructor has
// two slots of this compiler's, which together are the first of the order.
std::ptrdiff_t SlotOf(void (CQilClient::*member)()) {
    std::ptrdiff_t offset;
    std::memcpy(&offset, &member, sizeof offset);
    return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)) - 1;
}

TEST(QilClient, KeepsTheOrderOfItsVirtualOperations) {
    void (CQilClient::*const order[])() = {
        &CQilClient::OnExit,       &CQilClient::OnMessage1,   &CQilClient::OnMessage2,   &CQilClient::OnMessage3,
        &CQilClient::OnMessage7,   &CQilClient::OnMessage8,   &CQilClient::OnMessage9,   &CQilClient::OnMessage10,
        &CQilClient::OnMessage11,  &CQilClient::OnMessage13,  &CQilClient::OnMessage14,  &CQilClient::OnMessage15,
        &CQilClient::OnMessage16,  &CQilClient::OnMessage17,  &CQilClient::OnMessage121, &CQilClient::OnMessage122,
        &CQilClient::OnMessage123, &CQilClient::OnMessage124, &CQilClient::Run,
    };
    std::ptrdiff_t slot = 1;
    for (const auto member : order)
        EXPECT_EQ(SlotOf(member), slot++);
}
#endif

TEST(QilClient, LeavesThreadAndConnectionInItsDestructor) {
    RecordingKernel kernel;
    {
        CQilClient client(kernel, "x");
        client.Connect();
        client.StartThread();
    }
    EXPECT_THAT(kernel.GetCalls(), ElementsAre("27(x, 1, 0)", "29(7)"));
}

} // namespace
