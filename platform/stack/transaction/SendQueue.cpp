#include "platform/stack/transaction/SendQueue.h"

namespace bacnet {

bool SendQueue::Offer(const OutgoingNpdu& frame) {
    if (!m_hint.load(std::memory_order_relaxed))
        return false;
    const std::lock_guard lock(m_mutex);
    Batch& batch = m_batches[m_filling];
    if (!m_open || batch.Count == batch.Frames.size())
        return false;
    Frame& copy = batch.Frames[batch.Count];
    copy.Clear();
    if (!copy.Append(frame.Npdu->Octets()))
        return false;
    batch.Outgoing[batch.Count++] = {frame.Destination, &copy};
    return true;
}

void SendQueue::Open() {
    const std::lock_guard lock(m_mutex);
    m_open = true;
    m_hint.store(true, std::memory_order_relaxed);
}

void SendQueue::Close(NetworkLayer& network, std::uint8_t port) {
    for (;;) {
        Batch* batch = nullptr;
        {
            const std::lock_guard lock(m_mutex);
            batch = &m_batches[m_filling];
            if (batch->Count == 0) {
                m_open = false;
                m_hint.store(false, std::memory_order_relaxed);
                return;
            }
            m_filling ^= 1U;
        }
        network.SendPrepared(port, {batch->Outgoing.data(), batch->Count});
        batch->Count = 0;
    }
}

} // namespace bacnet
