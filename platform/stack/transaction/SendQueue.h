// Requests that callers leave with the leader of their port while it hands out answers: it sends them together, with
// one system call, and the far side is woken once. With many callers at once that is a good part of the cost of a call.
//
// Open only while the leader works and is sure to come back to it, so that nobody's request waits for an answer to
// somebody else's.
#pragma once

#include "platform/stack/network/NetworkLayer.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>

namespace bacnet {

class SendQueue {
public:
    // frame is prepared by the network layer; its octets are copied. False: not now, the caller sends it itself. Any
    // thread.
    bool Offer(const OutgoingNpdu& frame);

    // The leader's side.
    void Open();
    // Sends what was offered until there is nothing more, and closes. What the system refuses is as good as lost.
    void Close(NetworkLayer& network, std::uint8_t port);

private:
    struct Batch {
        std::size_t Count = 0;
        std::array<Frame, NpduBatch::CAPACITY> Frames;
        std::array<OutgoingNpdu, NpduBatch::CAPACITY> Outgoing;
    };

    std::atomic<bool> m_hint{false}; // m_open, for those who only look
    std::mutex m_mutex;
    bool m_open = false;    // m_mutex
    unsigned m_filling = 0; // m_mutex: the one of m_batches that Offer fills; the other is the leader's
    Batch m_batches[2];
};

} // namespace bacnet
