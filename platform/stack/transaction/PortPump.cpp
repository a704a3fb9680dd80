#include "platform/stack/transaction/PortPump.h"

#include <algorithm>
#include <utility>

namespace bacnet {

namespace {

// How long the background thread leaves the directed traffic alone after a caller has led, before it looks again.
constexpr int PARK_MS = 5;
// Queued requests that it serves before it looks at the sockets again: a flood of them must not keep answers waiting.
constexpr std::size_t QUEUE_SLICE = 32;

thread_local bool t_background = false;
thread_local bool t_holdsRole = false; // background thread only
thread_local WakeSet* t_wakes = nullptr;

} // namespace

PortPump::PortPump(NetworkLayer& network, std::uint8_t port, QueueHandler handler)
    : m_network(network), m_link(network.Link(port)), m_port(port), m_handler(std::move(handler)) {}

PortPump::~PortPump() {
    Stop();
}

void PortPump::Start() {
    if (!m_thread.joinable())
        m_thread = std::thread([this] { Run(); });
}

void PortPump::Stop() {
    m_stop = true;
    m_link.Interrupt();
    if (m_thread.joinable())
        m_thread.join();
}

bool PortPump::MayServe() {
    return t_background && !t_holdsRole;
}

void PortPump::Dispatch(const NpduBatch& batch) {
    WakeSet wakes;
    WakeSet* const outer = std::exchange(t_wakes, &wakes);
    for (std::size_t i = 0; i < batch.Count; ++i)
        m_network.OnNpdu(m_port, batch.Items[i]);
    t_wakes = outer;
}

void PortPump::Wake(Waiter& waiter) {
    if (t_wakes != nullptr)
        t_wakes->Add(waiter);
    else
        waiter.Signal();
}

std::size_t PortPump::Receive(std::size_t limit, IDataLink::Wait wait) {
    const std::size_t count = m_link.ReceiveDirected(m_directed, limit, wait);
    Dispatch(m_directed);
    return count;
}

std::size_t PortPump::Lead(std::size_t limit) {
    const std::size_t count = m_link.ReceiveDirected(m_directed, limit, IDataLink::Wait::tick);
    if (m_directed.Count < 2) {
        Dispatch(m_directed);
        return count;
    }
    m_sends.Open();
    Dispatch(m_directed);
    m_sends.Close(m_network, m_port);
    return count;
}

void PortPump::ReceiveAll() {
    m_link.Attend();
    while (m_link.ReceiveBroadcasts(m_broadcasts) != 0)
        Dispatch(m_broadcasts);
    Receive(NpduBatch::CAPACITY, IDataLink::Wait::tick);
}

void PortPump::TakeOver() {
    // Either the background thread sees the first flag before it waits the next time, or this one sees the second.
    if (!m_takeOver.exchange(true) && !m_watching)
        m_link.Interrupt();
}

bool PortPump::Enqueue(QueuedApdu apdu) {
    {
        const std::lock_guard lock(m_queueMutex);
        if (m_queue.size() >= QUEUE_LIMIT)
            return false;
        m_queue.push_back(std::move(apdu));
    }
    if (!t_background) // which looks at the queue anyway
        m_link.Interrupt();
    return true;
}

bool PortPump::ServeQueue() {
    if (m_served == m_serving.size()) {
        m_serving.clear();
        m_served = 0;
        const std::lock_guard lock(m_queueMutex);
        m_serving.swap(m_queue);
    }
    for (std::size_t i = 0; i < QUEUE_SLICE && m_served < m_serving.size(); ++i)
        m_handler(m_serving[m_served++]);
    if (m_served < m_serving.size())
        return true;
    const std::lock_guard lock(m_queueMutex);
    return !m_queue.empty();
}

void PortPump::Run() {
    t_background = true;
    bool queued = false;
    while (!m_stop) {
        // While callers lead, this thread keeps off their socket and only looks now and then whether they still do.
        // When it waits for directed traffic and a caller comes, that one leads at once; what it costs is one wake in
        // vain.
        m_watching = false;
        const bool idle = m_role.Idle(m_takeOver.exchange(false));
        m_watching = idle;
        const unsigned sources = IDataLink::BROADCASTS | (idle ? IDataLink::DIRECTED : 0U);
        const int due = m_link.Attend();
        const int longest = idle ? due : due < 0 ? PARK_MS : std::min(due, PARK_MS);
        const int wait = queued ? 0 : longest;
        const unsigned ready = m_link.WaitReadable(sources, wait);
        if ((ready & IDataLink::BROADCASTS) != 0) {
            m_link.ReceiveBroadcasts(m_broadcasts);
            m_away.store(true, std::memory_order_relaxed);
            Dispatch(m_broadcasts);
            m_away.store(false, std::memory_order_relaxed);
        }
        if ((ready & IDataLink::DIRECTED) != 0 && m_role.TryTake()) {
            t_holdsRole = true;
            Receive(NpduBatch::CAPACITY, IDataLink::Wait::none);
            t_holdsRole = false;
            m_role.Release();
        }
        m_away.store(true, std::memory_order_relaxed);
        queued = ServeQueue();
        m_away.store(false, std::memory_order_relaxed);
    }
}

} // namespace bacnet
