#include "platform/stack/transaction/PortPump.h"

#include <algorithm>
#include <utility>

namespace bacnet {

namespace {

// How long the background thread leaves the directed traffic alone after a caller has led, before it looks again.
constexpr int PARK_MS = 5;

thread_local bool t_background = false;
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

bool PortPump::OnBackgroundThread() {
    return t_background;
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
    if (!m_takeOver.exchange(true))
        m_link.Interrupt();
}

bool PortPump::Enqueue(QueuedApdu apdu) {
    {
        const std::lock_guard lock(m_queueMutex);
        if (m_queue.size() >= QUEUE_LIMIT)
            return false;
        m_queue.push_back(std::move(apdu));
    }
    m_link.Interrupt();
    return true;
}

void PortPump::ServeQueue() {
    {
        const std::lock_guard lock(m_queueMutex);
        m_serving.swap(m_queue);
    }
    for (const QueuedApdu& apdu : m_serving)
        m_handler(apdu);
    m_serving.clear();
}

void PortPump::Run() {
    t_background = true;
    while (!m_stop) {
        // While callers lead, this thread keeps off their socket and only looks now and then whether they still do.
        // When it waits for directed traffic and a caller comes, that one leads at once; what it costs is one wake in
        // vain.
        const bool idle = m_role.Idle(m_takeOver.exchange(false));
        const unsigned sources = IDataLink::BROADCASTS | (idle ? IDataLink::DIRECTED : 0U);
        const int due = m_link.Attend();
        const int wait = idle ? due : due < 0 ? PARK_MS : std::min(due, PARK_MS);
        const unsigned ready = m_link.WaitReadable(sources, wait);
        if ((ready & IDataLink::BROADCASTS) != 0) {
            m_link.ReceiveBroadcasts(m_broadcasts);
            Dispatch(m_broadcasts);
        }
        if ((ready & IDataLink::DIRECTED) != 0 && m_role.TryTake()) {
            Receive(NpduBatch::CAPACITY, IDataLink::Wait::none);
            m_role.Release();
        }
        ServeQueue();
    }
}

} // namespace bacnet
