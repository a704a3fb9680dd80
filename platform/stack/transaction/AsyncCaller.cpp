#include "platform/stack/transaction/AsyncCaller.h"

#include "platform/stack/transaction/LayerCore.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace bacnet {

// The caller's side of one request. While it is outstanding it is in the pending queue, in that of a stalled peer, or
// among those under way; when it has ended it is in the queue of the done ones as well.
struct AsyncRequest::State : Transaction {
    PeerKey Key;
    AsyncRequest* Request = nullptr;
    State* Next = nullptr; // in a queue
    bool UnderWay = false;
    std::size_t Place = 0; // among those under way
    std::uint8_t Port = 0; // that it was counted on
    bool Stalled = false;
    Millis StartBy = 0; // stalled: fails when it could not start until then
};

AsyncRequest::AsyncRequest() : m_state(std::make_unique<State>()) {
    m_state->Request = this;
}
AsyncRequest::~AsyncRequest() = default;

namespace {

constexpr Millis LATEST = 60000; // a look at those under way once a minute at least

} // namespace

class AsyncCaller::Impl final : public ITransactionOwner {
public:
    explicit Impl(LayerCore& core)
        : m_core(core), m_waiter(Waiter::OfThisThread()), m_onPort(core.Network.PortCount()) {}
    ~Impl() override { Cancel(); }

    void Submit(AsyncRequest& request) {
        ++m_outstanding;
        m_pending.Push(*request.m_state);
    }
    std::size_t Poll(int timeoutMs);
    std::size_t Outstanding() const { return m_outstanding; }
    void Cancel();

    Waiter* OnFinished(Transaction& transaction) override;

private:
    using Item = AsyncRequest::State;

    // First in, first out, through Item::Next.
    struct Queue {
        Item* First = nullptr;
        Item* Last = nullptr;
        void Push(Item& item) {
            item.Next = nullptr;
            (Last != nullptr ? Last->Next : First) = &item;
            Last = &item;
        }
        void PushFront(Item& item) {
            item.Next = First;
            First = &item;
            if (Last == nullptr)
                Last = &item;
        }
        Item* Pop() {
            Item* const item = First;
            if (item != nullptr) {
                First = item->Next;
                if (First == nullptr)
                    Last = nullptr;
            }
            return item;
        }
    };

    // What Start has come to.
    enum class Begun : std::uint8_t { gone, stalled };

    void StartPending(Millis now);
    Begun Start(Item& item, Millis now);
    Begun Stall(Item& item, const PeerKey& key, Outcome obstacle, Millis now, Millis patience);
    Begun Fail(Item& item, Outcome outcome);
    void Enqueue(Item& item);
    void GiveUp(Item& item, Outcome outcome, Millis now); // one under way
    void Flush();
    void ServeTimes(Millis now);
    void Receive(Millis now, Millis until);
    std::size_t CompleteAll();

    LayerCore& m_core;
    Waiter& m_waiter;
    std::size_t m_outstanding = 0;

    Queue m_pending;
    // Requests that wait for an invoke id of their peer, or (with a key of no octets) for a router to their network.
    std::unordered_map<PeerKey, Queue, PeerKeyHash> m_stalled;
    std::vector<Item*> m_underWay;
    std::vector<std::size_t> m_onPort; // how many of those under way use each port
    Millis m_earliest = 0;             // nothing under way is due before
    Millis m_eagerUntil = 0;           // until then an answer is expected at once: lead when possible
    bool m_led = true;                 // or nobody has told the background thread yet that it is to receive

    // To be sent with one system call, all on one port.
    std::array<Frame, NpduBatch::CAPACITY> m_frames;
    std::array<OutgoingNpdu, NpduBatch::CAPACITY> m_outgoing;
    std::size_t m_ready = 0;
    std::uint8_t m_readyPort = 0;

    std::mutex m_doneMutex; // taken under a peer's lock
    Queue m_done;           // m_doneMutex
};

Waiter* AsyncCaller::Impl::OnFinished(Transaction& transaction) {
    const std::lock_guard lock(m_doneMutex);
    m_done.Push(static_cast<Item&>(transaction));
    return &m_waiter;
}

void AsyncCaller::Impl::StartPending(Millis now) {
    // Of those that wait for the same thing only the first is tried.
    for (auto at = m_stalled.begin(); at != m_stalled.end();) {
        Queue& queue = at->second;
        while (Item* const item = queue.Pop())
            if (Start(*item, now) == Begun::stalled) {
                queue.PushFront(*item);
                break;
            }
        at = queue.First == nullptr ? m_stalled.erase(at) : std::next(at);
    }
    while (Item* const item = m_pending.Pop()) {
        item->Stalled = false;
        if (Start(*item, now) == Begun::stalled)
            m_stalled[item->Key].Push(*item);
    }
    Flush();
}

AsyncCaller::Impl::Begun AsyncCaller::Impl::Start(Item& item, Millis now) {
    const AsyncRequest& request = *item.Request;
    const Millis until = item.Stalled ? item.StartBy : now + m_core.Settings.RouterWaitMs;
    switch (m_core.FindWay(request.Destination, now, until, item.Peer)) {
    case LayerCore::Way::open:
        break;
    case LayerCore::Way::wait: {
        PeerKey network;
        network.Scope = request.Destination.Network;
        return Stall(item, network, Outcome::no_route, now, m_core.Settings.RouterWaitMs);
    }
    case LayerCore::Way::none:
        return Fail(item, Outcome::no_route);
    case LayerCore::Way::invalid:
        return Fail(item, Outcome::invalid_address);
    }
    if (!m_core.Plan(item, request.Parameters.size(), request.Options))
        return Fail(item, Outcome::request_too_long);
    item.Owner = this;
    item.Begin(m_core.Settings, request.Service, request.Parameters, request.Options, item.Request->Answer, now);
    const PeerKey key = PeerKey::Of(item.Peer, m_core.Network.Link(item.Peer.Port));
    switch (m_core.Peers.Add(key, item, now, nullptr)) {
    case PeerTable::Enter::done:
        break;
    case PeerTable::Enter::busy:
        return Stall(item, key, Outcome::busy, now, item.Patience());
    case PeerTable::Enter::closed:
        return Fail(item, Outcome::shutdown);
    }
    if (item.PromptPeer)
        m_eagerUntil = now + PeerTable::PROMPT_MS;
    item.Key = key;
    item.Port = item.Peer.Port;
    item.UnderWay = true;
    item.Place = m_underWay.size();
    m_underWay.push_back(&item);
    ++m_onPort[item.Port];
    const Millis deadline = now + item.FirstWaitMs();
    m_earliest = m_underWay.size() == 1 ? deadline : std::min(m_earliest, deadline);
    Enqueue(item);
    return Begun::gone;
}

AsyncCaller::Impl::Begun AsyncCaller::Impl::Stall(Item& item, const PeerKey& key, Outcome obstacle, Millis now,
                                                  Millis patience) {
    if (!item.Stalled) {
        item.Stalled = true;
        item.StartBy = now + patience;
        item.Key = key;
    }
    return now < item.StartBy ? Begun::stalled : Fail(item, obstacle);
}

AsyncCaller::Impl::Begun AsyncCaller::Impl::Fail(Item& item, Outcome outcome) {
    item.Finish(outcome);
    OnFinished(item);
    return Begun::gone;
}

void AsyncCaller::Impl::Enqueue(Item& item) {
    if (item.SegmentSize != 0) {
        m_core.SendSegments(item.Key, item.InvokeId); // what the system refuses is as good as lost
        return;
    }
    if (m_ready == m_frames.size() || m_readyPort != item.Peer.Port)
        Flush();
    m_readyPort = item.Peer.Port;
    Frame& frame = m_frames[m_ready];
    frame.Clear();
    if (LayerCore::BuildRequest(item, frame) && m_core.Network.Prepare(item.Peer, frame, true, m_outgoing[m_ready]))
        ++m_ready;
}

void AsyncCaller::Impl::Flush() {
    // What the system refuses is as good as lost: its time runs.
    if (m_ready != 0)
        m_core.Network.SendPrepared(m_readyPort, {m_outgoing.data(), m_ready});
    m_ready = 0;
}

void AsyncCaller::Impl::ServeTimes(Millis now) {
    if (m_underWay.empty() || now < m_earliest)
        return;
    Millis earliest = now + LATEST;
    for (Item* const item : m_underWay) {
        PeerTable::Dispatched due;
        due.Deadline = now + LATEST;
        switch (m_core.Peers.OnTime(item->Key, *item, now, due)) {
        case Transaction::Due::nothing:
            earliest = std::min(earliest, due.Deadline);
            break;
        case Transaction::Due::resend:
            earliest = std::min(earliest, due.Deadline);
            if (m_core.Resend(item->Key, *item, item->Request->Destination, now))
                Enqueue(*item);
            else
                GiveUp(*item, Outcome::request_too_long, now);
            break;
        case Transaction::Due::finished:
            OnFinished(*item);
            m_core.Follow(due);
            break;
        }
    }
    m_earliest = earliest;
    Flush();
}

void AsyncCaller::Impl::Receive(Millis now, Millis until) {
    if (!m_core.Settings.BackgroundThread) {
        m_core.ReceiveAll();
        return;
    }
    // Requests under way on several ports are left to the background threads, since one can wait on one port only.
    const auto used = std::find_if(m_onPort.begin(), m_onPort.end(), [](std::size_t count) { return count != 0; });
    const bool one = used != m_onPort.end() && *used == m_underWay.size();
    Millis wait = std::min(until, m_underWay.empty() ? until : std::max(m_earliest, now)) - now;
    if (!m_stalled.empty())
        wait = std::min<Millis>(wait, IDataLink::TICK);
    if (!one) {
        m_waiter.Wait(wait);
        return;
    }
    PortPump& pump = m_core.Pump(static_cast<std::uint8_t>(used - m_onPort.begin()));
    if (now >= m_eagerUntil) {
        // Somebody whose device answers at once is in more of a hurry.
        if (std::exchange(m_led, false))
            pump.TakeOver();
        m_waiter.Wait(wait);
        return;
    }
    m_led = true;
    m_core.Expected.fetch_add(1, std::memory_order_relaxed);
    ReceiveRole::Candidate candidate(m_waiter);
    if (pump.Role().TryLead(candidate))
        pump.Receive(NpduBatch::CAPACITY, wait > 0 ? IDataLink::Wait::tick : IDataLink::Wait::none);
    else
        m_waiter.Wait(std::min<Millis>(wait, IDataLink::TICK));
    pump.Role().Leave(candidate);
    m_core.Expected.fetch_sub(1, std::memory_order_relaxed);
}

std::size_t AsyncCaller::Impl::CompleteAll() {
    Queue done;
    {
        const std::lock_guard lock(m_doneMutex);
        std::swap(done, m_done);
    }
    std::size_t count = 0;
    while (Item* const item = done.Pop()) {
        if (item->UnderWay) {
            item->UnderWay = false;
            m_underWay[item->Place] = m_underWay.back();
            m_underWay[item->Place]->Place = item->Place;
            m_underWay.pop_back();
            --m_onPort[item->Port];
        }
        --m_outstanding;
        ++count;
        const CallResult result = item->Result();
        item->Request->OnDone(result); // may submit it again, or destroy it
    }
    return count;
}

std::size_t AsyncCaller::Impl::Poll(int timeoutMs) {
    Millis now = m_core.Clock.Now();
    const Millis until = now + std::max(timeoutMs, 0);
    for (;;) {
        StartPending(now);
        ServeTimes(now);
        std::size_t completed = CompleteAll();
        if (completed != 0 || m_outstanding == 0)
            return completed;
        Receive(now, until);
        completed = CompleteAll();
        now = m_core.Clock.Now();
        if (completed != 0 || now >= until)
            return completed;
    }
}

void AsyncCaller::Impl::GiveUp(Item& item, Outcome outcome, Millis now) {
    PeerTable::Dispatched ended;
    if (m_core.Peers.GiveUp(item.Key, item, outcome, now, ended)) {
        OnFinished(item);
        m_core.Follow(ended);
    }
}

void AsyncCaller::Impl::Cancel() {
    const Millis now = m_core.Clock.Now();
    while (Item* const item = m_pending.Pop())
        Fail(*item, Outcome::cancelled);
    for (auto& [key, queue] : m_stalled)
        while (Item* const item = queue.Pop())
            Fail(*item, Outcome::cancelled);
    m_stalled.clear();
    for (Item* const item : m_underWay)
        GiveUp(*item, Outcome::cancelled, now);
    CompleteAll();
}

AsyncCaller::AsyncCaller(TransactionLayer& layer) : m_impl(std::make_unique<Impl>(layer.Core())) {}
AsyncCaller::~AsyncCaller() = default;

void AsyncCaller::Submit(AsyncRequest& request) {
    m_impl->Submit(request);
}
std::size_t AsyncCaller::Poll(int timeoutMs) {
    return m_impl->Poll(timeoutMs);
}
std::size_t AsyncCaller::Outstanding() const {
    return m_impl->Outstanding();
}
void AsyncCaller::Cancel() {
    m_impl->Cancel();
}

} // namespace bacnet
