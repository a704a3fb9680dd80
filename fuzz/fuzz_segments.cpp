// A segmented request between its two state machines, over a network that does as the input says: delivers, drops,
// doubles and reorders segments and acknowledgements, forges acknowledgements, and lets time pass. Whatever happens, a
// request that the serving side takes for whole is the one that was sent, and each ends in its time.

#include "platform/stack/transaction/RequestAssembly.h"
#include "platform/stack/transaction/Transaction.h"

#include <cstdlib>
#include <deque>
#include <vector>

using namespace bacnet;

namespace {

constexpr std::uint8_t SERVICE = 16;
constexpr std::size_t MAX_SEGMENTS = 200; // fewer than there are sequence numbers: an old one is never taken for new
constexpr std::size_t MAX_UNDER_WAY = 300;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

class Exchange {
public:
    Exchange(std::size_t octets, std::uint8_t segmentSize, std::uint8_t window) : m_assembly(Settings(window)) {
        for (std::size_t i = 0; i < octets; ++i)
            m_request.push_back(static_cast<std::uint8_t>(i * 31 + i / 251));
        m_transaction.SegmentSize = segmentSize;
        m_transaction.InvokeId = 7;
        m_transaction.Begin(Settings(window), SERVICE, m_request, {}, m_answer, m_now);
        SendSegments();
    }
    void Do(std::uint8_t action, std::uint8_t value) {
        switch (action % 8) {
        case 0: // deliver in order
            Deliver(m_toServer, 0, true);
            break;
        case 1: // deliver some other, and keep it: it comes again
            Deliver(m_toServer, value, value % 2 == 0);
            break;
        case 2:
            Drop(m_toServer, value);
            break;
        case 3:
            DeliverAck(0, true);
            break;
        case 4:
            DeliverAck(value, value % 2 == 0);
            break;
        case 5:
            Drop(m_toClient, value);
            break;
        case 6: {
            Apdu forged;
            forged.Type = PduType::segment_ack;
            forged.Negative = action >= 128;
            forged.InvokeId = 7;
            forged.SequenceNumber = value;
            forged.WindowSize = static_cast<std::uint8_t>(value * 7 + 1);
            OnClient(forged);
            break;
        }
        default:
            m_now += value * 16;
            OnTime();
        }
    }
    // Nobody answers any more: the transaction ends by itself, with all repetitions.
    void RunOut() {
        for (int i = 0; !m_transaction.Done(); ++i) {
            Require(i < 100);
            m_now = std::max(m_now, m_transaction.Deadline());
            OnTime();
        }
    }

private:
    struct Segment {
        Apdu Header;
        std::vector<std::uint8_t> Octets;
    };

    static TransactionSettings Settings(std::uint8_t window) {
        TransactionSettings settings;
        settings.WindowSize = window;
        return settings;
    }
    void SendSegments() {
        Apdu segment;
        for (unsigned sent = 0; m_transaction.TakeSegment(segment); ++sent) {
            Require(sent < 127); // a window
            Require(segment.Payload.data() >= m_request.data() &&
                    segment.Payload.data() + segment.Payload.size() <= m_request.data() + m_request.size());
            if (m_toServer.size() < MAX_UNDER_WAY)
                m_toServer.push_back({segment, {segment.Payload.begin(), segment.Payload.end()}});
        }
    }
    void Deliver(std::deque<Segment>& queue, std::size_t which, bool last) {
        if (queue.empty())
            return;
        const auto at = queue.begin() + static_cast<std::ptrdiff_t>(which % queue.size());
        Segment segment = *at;
        if (last)
            queue.erase(at);
        segment.Header.Payload = segment.Octets;
        PeerKey client;
        const RequestAssembly::Step step = m_assembly.OnSegment(client, segment.Header, m_now);
        if (step.Whole != nullptr) {
            const auto whole = step.Whole->Octets();
            Require(std::equal(whole.begin(), whole.end(), m_request.begin(), m_request.end()));
        }
        if (step.Answer.Send) {
            Require(step.Answer.Header.FromServer);
            if (m_toClient.size() < MAX_UNDER_WAY)
                m_toClient.push_back(step.Answer.Header);
        }
    }
    void DeliverAck(std::size_t which, bool last) {
        if (m_toClient.empty())
            return;
        const auto at = m_toClient.begin() + static_cast<std::ptrdiff_t>(which % m_toClient.size());
        const Apdu ack = *at;
        if (last)
            m_toClient.erase(at);
        OnClient(ack);
    }
    template <class Queue>
    static void Drop(Queue& queue, std::size_t which) {
        if (!queue.empty())
            queue.erase(queue.begin() + static_cast<std::ptrdiff_t>(which % queue.size()));
    }
    void OnClient(const Apdu& pdu) {
        Reply reply;
        const bool wasDone = m_transaction.Done();
        Require(!m_transaction.OnPdu(pdu, m_now, reply) || !wasDone);
        if (reply.Segments)
            SendSegments();
    }
    void OnTime() {
        Reply reply;
        switch (m_transaction.OnTime(m_now, reply)) {
        case Transaction::Due::nothing:
            Require(m_transaction.Deadline() > m_now);
            break;
        case Transaction::Due::resend:
            Require(m_transaction.Deadline() > m_now);
            SendSegments();
            break;
        case Transaction::Due::finished:
            Require(m_transaction.Done());
        }
    }

    std::vector<std::uint8_t> m_request;
    AnswerBuffer m_answer;
    Transaction m_transaction;
    RequestAssembly m_assembly;
    std::deque<Segment> m_toServer;
    std::deque<Apdu> m_toClient;
    Millis m_now = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3)
        return 0;
    const auto segmentSize = static_cast<std::uint8_t>(data[0] % 60 + 1);
    const std::size_t octets = std::min<std::size_t>(data[1] * 8U + 1, segmentSize * MAX_SEGMENTS);
    Exchange exchange(octets, segmentSize, static_cast<std::uint8_t>(data[2] % 127 + 1));
    for (std::size_t at = 3; at + 2 <= size; at += 2)
        exchange.Do(data[at], data[at + 1]);
    exchange.RunOut();
    return 0;
}
