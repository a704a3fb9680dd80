#include "module/console/MessageQueue.h"

#include "api/bacnet/Types.h"
#include "module/console/Manager.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::size_t LIMIT = 4;

// What is left, as "message/wParam/lParam".
std::vector<std::string> Drain(CMessageQueue& queue) {
    std::vector<std::string> messages;
    while (const auto message = queue.Pop())
        messages.push_back(std::to_string(message->GetMessage()) + "/" + std::to_string(message->GetWParam()) + "/" +
                           std::to_string(message->GetLParam()));
    return messages;
}

class MessageQueue : public ::testing::Test {
protected:
    void Fill() {
        for (unsigned i = 0; i < LIMIT; ++i)
            m_queue.Push({i, i, 0});
    }
    void DropFirst(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            m_queue.Pop();
    }
    void Edge(int network, bool isUp) { m_queue.Push({WM_CONSOLE_NETWORK, isUp ? TRIGGER_UP : TRIGGER_DOWN, network}); }

    CMessageQueue m_queue{LIMIT};
};

const std::string NETWORK = std::to_string(WM_CONSOLE_NETWORK);

TEST_F(MessageQueue, GivesMessagesInTheirOrder) {
    EXPECT_THAT(Drain(m_queue), IsEmpty());
    Fill();
    EXPECT_EQ(m_queue.Size(), LIMIT);
    EXPECT_THAT(Drain(m_queue), ElementsAre("0/0/0", "1/1/0", "2/2/0", "3/3/0"));
}

TEST_F(MessageQueue, KeepsEveryEdgeUpToItsLimit) {
    for (int i = 0; i < 4; ++i)
        Edge(1, i % 2 == 0);
    EXPECT_THAT(Drain(m_queue), ElementsAre(NETWORK + "/1/1", NETWORK + "/0/1", NETWORK + "/1/1", NETWORK + "/0/1"));
}

TEST_F(MessageQueue, KeepsTheLastEdgeOfEachTriggerBeyondIt) {
    Fill();
    for (int i = 0; i < 1001; ++i) {
        Edge(1, i % 2 == 0);
        Edge(2, i % 2 != 0);
    }
    EXPECT_EQ(m_queue.Size(), LIMIT + 2);
    DropFirst(LIMIT);
    EXPECT_THAT(Drain(m_queue), ElementsAre(NETWORK + "/1/1", NETWORK + "/0/2"));
}

TEST_F(MessageQueue, AnEdgeNeverGoesInFrontOfAnOlderOneOfItsTrigger) {
    Fill();
    Edge(1, true);
    DropFirst(2);
    Edge(1, false); // there is room again: it waits for itself
    Edge(1, true);  // and this one must not take the place of the first
    DropFirst(2);
    EXPECT_THAT(Drain(m_queue), ElementsAre(NETWORK + "/1/1", NETWORK + "/0/1", NETWORK + "/1/1"));
}

TEST_F(MessageQueue, AnEdgeDoesNotVanishWithOneThatWasTaken) {
    Fill();
    for (int network = 1; network <= static_cast<int>(LIMIT); ++network)
        Edge(network, true);
    DropFirst(LIMIT);
    EXPECT_EQ(m_queue.Pop()->GetLParam(), 1);
    m_queue.Push({0, 0, 0}); // full again
    Edge(1, false);
    EXPECT_EQ(Drain(m_queue).back(), NETWORK + "/0/1");
}

TEST_F(MessageQueue, ChangedObjectsAreToldApartByDeviceToo) {
    Fill();
    for (const std::uintptr_t device : {1U, 2U, 1U})
        m_queue.Push({WM_CONSOLE_OBJECTCHANGED, device, PackObjectId(8, 5)});
    EXPECT_EQ(m_queue.Size(), LIMIT + 2);
}

// The address sanitizer sees that the requests are freed.
TEST_F(MessageQueue, HasASizeThatNothingExceeds) {
    Fill();
    for (int i = 0; i < 100; ++i)
        m_queue.Push({WM_CONSOLE_HISTORY, TRIGGER_UP, reinterpret_cast<std::intptr_t>(NewTransferRequest(1, 20, 1))});
    EXPECT_EQ(m_queue.Size(), 2 * LIMIT);
    Edge(1, true);
    EXPECT_EQ(m_queue.Size(), 2 * LIMIT);
}

TEST_F(MessageQueue, HasRoomForTheShutdownAlways) {
    Fill();
    for (unsigned device = 0; device < LIMIT; ++device)
        m_queue.Push({WM_CONSOLE_OBJECTCHANGED, device, PackObjectId(8, 5)});
    m_queue.Push({WM_CONSOLE_SHUTDOWN, 0, 0});
    DropFirst(2 * LIMIT);
    const auto last = m_queue.Pop();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->GetMessage(), WM_CONSOLE_SHUTDOWN);
}

} // namespace
