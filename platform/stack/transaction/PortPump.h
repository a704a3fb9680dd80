// Receives from one port and hands what came to the network layer: on the thread of whoever holds the receive role, and
// on a background thread of its own for broadcasts and for the time that nobody leads.
//
// The background thread also runs what may not run on a caller's thread: requests of other stations that a leading
// caller has received wait in a bounded queue for it.
#pragma once

#include "platform/stack/network/NetworkLayer.h"
#include "platform/stack/transaction/ReceiveRole.h"
#include "platform/stack/transaction/SendQueue.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace bacnet {

// A request of another station, kept for the background thread.
struct QueuedApdu {
    Station Source;
    bool Broadcast = false;
    std::vector<std::uint8_t> Octets;
};

class PortPump {
public:
    // Beyond these, besides as many that are being served, the requests of others are dropped; they repeat what matters
    // to them.
    static constexpr std::size_t QUEUE_LIMIT = 4096;

    using QueueHandler = std::function<void(const QueuedApdu&)>;

    // handler is called on the background thread.
    PortPump(NetworkLayer& network, std::uint8_t port, QueueHandler handler);
    ~PortPump(); // stops
    PortPump(const PortPump&) = delete;
    PortPump& operator=(const PortPump&) = delete;

    void Start();
    void Stop();

    ReceiveRole& Role() { return m_role; }
    // For the holder of the role: receives and dispatches; the number of datagrams that came.
    std::size_t Receive(std::size_t limit, IDataLink::Wait wait);
    // The same for a leading caller: one tick, and while answers are handed out the send queue is open.
    std::size_t Lead(std::size_t limit);
    SendQueue& Sends() { return m_sends; }
    // Without a background thread: one tick of everything, on the caller's thread.
    void ReceiveAll();
    // Some caller waits without wanting to lead: the background thread takes over at once, not at its next look.
    void TakeOver();
    // The background thread is serving requests of others just now, or handling broadcasts: who needs answers meanwhile
    // receives them himself.
    bool Away() const { return m_away.load(std::memory_order_relaxed); }
    // False when the queue is full.
    bool Enqueue(QueuedApdu apdu);
    // Wakes the waiter, when this thread hands out a batch of answers together with all others that the batch concerns.
    static void Wake(Waiter& waiter);
    // The present thread is the background thread of some port and does not hold the receive role: what it does now
    // keeps no answers waiting.
    static bool MayServe();

private:
    void Run();
    void Dispatch(const NpduBatch& batch);
    // Serves a slice of what is queued; true when there is more.
    bool ServeQueue();

    NetworkLayer& m_network;
    IDataLink& m_link;
    const std::uint8_t m_port;
    QueueHandler m_handler;
    ReceiveRole m_role;
    SendQueue m_sends;
    NpduBatch m_directed;   // the role's
    NpduBatch m_broadcasts; // the background thread's
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_takeOver{false};
    std::atomic<bool> m_watching{false}; // the background thread waits for directed traffic, too
    std::atomic<bool> m_away{false};
    std::mutex m_queueMutex;
    std::vector<QueuedApdu> m_queue;   // m_queueMutex
    std::vector<QueuedApdu> m_serving; // the background thread's, as is the next one
    std::size_t m_served = 0;          // of m_serving
    std::thread m_thread;
};

} // namespace bacnet
