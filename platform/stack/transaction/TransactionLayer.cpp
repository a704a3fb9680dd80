#include "platform/stack/transaction/TransactionLayer.h"

#include "platform/stack/transaction/LayerCore.h"

#include <algorithm>

namespace bacnet {

namespace {

const SteadyClock THE_CLOCK;

// A caller leads only while its answer may be expected at once: a dead or slow device must not keep the role from
// callers whose devices are prompt, as each of their answers would then come by way of another thread.
constexpr Millis EAGER_MS = PeerTable::PROMPT_MS;
// How often a waiting caller looks whether the background thread is there to receive.
constexpr Millis LOOK_MS = 100;
// How often an observer is asked, and how often a waiting thread looks whether the layer is closing.
constexpr Millis OBSERVE_MS = 50;

// The owner's side of a blocking call. Lives on the caller's stack.
class BlockingCall final : public ITransactionOwner {
public:
    BlockingCall() : m_waiter(Waiter::OfThisThread()) {}

    Waiter* OnFinished(Transaction&) override {
        Waiter* const waiter = &m_waiter;
        m_finished.store(true, std::memory_order_release); // this object may be gone from here on
        return waiter;
    }
    bool Finished() const { return m_finished.load(std::memory_order_acquire); }
    Waiter& Sleeper() { return m_waiter; }

    Transaction Work;
    PeerKey Key;

private:
    Waiter& m_waiter;
    std::atomic<bool> m_finished{false};
};

} // namespace

class TransactionLayer::Impl {
public:
    Impl(NetworkLayer& network, const TransactionSettings& settings, IRequestHandler* handler, const IClock& clock)
        : Core(network, settings, handler, clock) {}

    CallResult Call(const BACSTAC_ADDRESS& destination, std::uint8_t service, std::span<const std::uint8_t> request,
                    AnswerBuffer& answer, const CallOptions& options);

    LayerCore Core;

private:
    struct Arguments {
        std::uint8_t Service;
        std::span<const std::uint8_t> Request;
        AnswerBuffer& Answer;
        const CallOptions& Options;
    };

    // Each of these returns simple_ack to go on.
    Outcome FindStation(const BACSTAC_ADDRESS& destination, ICallObserver* observer, Station& station);
    Outcome Enter(BlockingCall& call, const Arguments& arguments, Millis& now);
    Outcome SendRequest(const BlockingCall& call);

    void Run(BlockingCall& call, const BACSTAC_ADDRESS& destination, ICallObserver* observer, Millis begun);
    // Also receives for a moment, when the device is expected to answer at once. A caller with an observer may not
    // lead: that may take its time, or call again.
    Outcome SendAndLead(BlockingCall& call, bool mayLead, Millis begun);
    // Returns when the call has finished, or at this time.
    void Wait(BlockingCall& call, Millis until);
    // Receives for all while the background thread does something else, which may be long when a user's code blocks it.
    void StandIn(BlockingCall& call, Millis until);
    void End(BlockingCall& call, Outcome outcome);
};

Outcome TransactionLayer::Impl::FindStation(const BACSTAC_ADDRESS& destination, ICallObserver* observer,
                                            Station& station) {
    Millis now = Core.Clock.Now();
    const Millis until = now + Core.Settings.RouterWaitMs;
    LayerCore::Way way = Core.FindWay(destination, now, until, station);
    while (way == LayerCore::Way::wait) {
        if (Core.Stopping())
            return Outcome::shutdown;
        if (observer != nullptr && !observer->KeepWaiting())
            return Outcome::cancelled;
        if (!Core.Settings.BackgroundThread)
            Core.ReceiveAll();
        else // the announcement comes as a broadcast, which the background threads receive
            Core.Network.WaitForRoute(destination.Network, std::min(until - now, OBSERVE_MS));
        now = Core.Clock.Now();
        way = Core.FindWay(destination, now, until, station);
    }
    if (way == LayerCore::Way::open)
        return Outcome::simple_ack;
    return way == LayerCore::Way::none ? Outcome::no_route : Outcome::invalid_address;
}

Outcome TransactionLayer::Impl::Enter(BlockingCall& call, const Arguments& arguments, Millis& now) {
    const auto enter = [&](Waiter* waitForId) {
        call.Work.Begin(Core.Settings, arguments.Service, arguments.Request, arguments.Options, arguments.Answer, now);
        return Core.Peers.Add(call.Key, call.Work, now, waitForId);
    };
    PeerTable::Enter entered = enter(nullptr);
    for (const Millis until = now + call.Work.Patience(); entered == PeerTable::Enter::busy && now < until;) {
        ICallObserver* const observer = arguments.Options.Observer;
        if (observer != nullptr && !observer->KeepWaiting())
            return Outcome::cancelled;
        entered = enter(&call.Sleeper());
        if (entered == PeerTable::Enter::busy) {
            // Ids at rest become free without a signal, so the wait is short.
            call.Sleeper().Wait(std::min(until - now, OBSERVE_MS));
            Core.Peers.StopWaiting(call.Key, call.Sleeper());
            now = Core.Clock.Now();
        }
    }
    switch (entered) {
    case PeerTable::Enter::done:
        return Outcome::simple_ack;
    case PeerTable::Enter::busy:
        return Outcome::busy;
    case PeerTable::Enter::closed:
        break;
    }
    return Outcome::shutdown;
}

Outcome TransactionLayer::Impl::SendRequest(const BlockingCall& call) {
    const Transaction& transaction = call.Work;
    if (transaction.SegmentSize != 0)
        return Core.SendSegments(call.Key, transaction.InvokeId) ? Outcome::simple_ack : Outcome::send_failure;
    Frame frame;
    OutgoingNpdu outgoing;
    const Station& peer = transaction.Peer;
    if (!LayerCore::BuildRequest(transaction, frame) || !Core.Network.Prepare(peer, frame, true, outgoing))
        return Outcome::request_too_long;
    if (Core.Pump(peer.Port).Sends().Offer(outgoing))
        return Outcome::simple_ack;
    return Core.Network.SendPrepared(peer.Port, {&outgoing, 1}) == 1 ? Outcome::simple_ack : Outcome::send_failure;
}

CallResult TransactionLayer::Impl::Call(const BACSTAC_ADDRESS& destination, std::uint8_t service,
                                        std::span<const std::uint8_t> request, AnswerBuffer& answer,
                                        const CallOptions& options) {
    answer.Clear();
    if (Core.Stopping())
        return {Outcome::shutdown};
    BlockingCall call;
    Outcome outcome = FindStation(destination, options.Observer, call.Work.Peer);
    if (outcome != Outcome::simple_ack)
        return {outcome};
    if (!Core.Plan(call.Work, request.size(), options))
        return {Outcome::request_too_long};

    Millis now = Core.Clock.Now();
    call.Key = PeerKey::Of(call.Work.Peer, Core.Network.Link(call.Work.Peer.Port));
    call.Work.Owner = &call;
    outcome = Enter(call, {service, request, answer, options}, now);
    if (outcome != Outcome::simple_ack)
        return {outcome};

    Run(call, destination, options.Observer, now);
    return call.Work.Result();
}

void TransactionLayer::Impl::Run(BlockingCall& call, const BACSTAC_ADDRESS& destination, ICallObserver* observer,
                                 Millis begun) {
    const Outcome sent = SendAndLead(call, observer == nullptr, begun);
    if (sent != Outcome::simple_ack) {
        End(call, sent);
        return;
    }
    Millis until = begun + call.Work.FirstWaitMs();
    for (Millis now = begun;; now = Core.Clock.Now()) {
        Wait(call, observer == nullptr ? until : std::min(until, now + OBSERVE_MS));
        if (call.Finished())
            return;
        if (observer != nullptr && !observer->KeepWaiting()) {
            End(call, Outcome::cancelled);
            return;
        }
        now = Core.Clock.Now();
        PeerTable::Dispatched due;
        switch (Core.Peers.OnTime(call.Key, call.Work, now, due)) {
        case Transaction::Due::nothing:
            until = due.Deadline;
            break;
        case Transaction::Due::resend:
            if (!Core.Resend(call.Key, call.Work, destination, now)) {
                End(call, Outcome::request_too_long);
                return;
            }
            SendRequest(call); // what the system refuses is as good as lost
            until = due.Deadline;
            break;
        case Transaction::Due::finished:
            Core.Follow(due);
            return;
        }
    }
}

Outcome TransactionLayer::Impl::SendAndLead(BlockingCall& call, bool mayLead, Millis begun) {
    if (!Core.Settings.BackgroundThread)
        return SendRequest(call);
    PortPump& pump = Core.Pump(call.Work.Peer.Port);
    if (!mayLead || !call.Work.PromptPeer) {
        pump.TakeOver();
        return SendRequest(call);
    }
    Core.Expected.fetch_add(1, std::memory_order_relaxed);
    const Outcome sent = SendRequest(call);
    if (sent == Outcome::simple_ack) {
        ReceiveRole::Candidate candidate(call.Sleeper());
        const Millis until = begun + EAGER_MS;
        for (Millis now = begun; !call.Finished() && now < until; now = Core.Clock.Now()) {
            if (pump.Role().TryLead(candidate))
                pump.Lead(Core.ReceiveLimit());
            else
                call.Sleeper().Wait(until - now);
        }
        pump.Role().Leave(candidate);
        if (!call.Finished())
            pump.TakeOver();
    }
    Core.Expected.fetch_sub(1, std::memory_order_relaxed);
    return sent;
}

void TransactionLayer::Impl::Wait(BlockingCall& call, Millis until) {
    PortPump& pump = Core.Pump(call.Work.Peer.Port);
    if (!Core.Settings.BackgroundThread) {
        while (!call.Finished() && Core.Clock.Now() < until)
            pump.ReceiveAll();
        return;
    }
    while (!call.Finished()) {
        const Millis now = Core.Clock.Now();
        if (now >= until)
            return;
        if (pump.Away())
            StandIn(call, until);
        else
            call.Sleeper().Wait(std::min(until - now, LOOK_MS));
    }
}

void TransactionLayer::Impl::StandIn(BlockingCall& call, Millis until) {
    PortPump& pump = Core.Pump(call.Work.Peer.Port);
    ReceiveRole::Candidate candidate(call.Sleeper());
    do {
        if (pump.Role().TryLead(candidate))
            pump.Lead(Core.ReceiveLimit());
        else
            call.Sleeper().Wait(EAGER_MS);
    } while (!call.Finished() && pump.Away() && Core.Clock.Now() < until);
    pump.Role().Leave(candidate);
    pump.TakeOver();
}

void TransactionLayer::Impl::End(BlockingCall& call, Outcome outcome) {
    PeerTable::Dispatched ended;
    if (Core.Peers.GiveUp(call.Key, call.Work, outcome, Core.Clock.Now(), ended))
        Core.Follow(ended);
}

TransactionLayer::TransactionLayer(NetworkLayer& network, const TransactionSettings& settings, IRequestHandler* handler)
    : TransactionLayer(network, settings, handler, THE_CLOCK) {}

TransactionLayer::TransactionLayer(NetworkLayer& network, const TransactionSettings& settings, IRequestHandler* handler,
                                   const IClock& clock)
    : m_impl(std::make_unique<Impl>(network, settings, handler, clock)) {
    network.SetUser(this);
}

TransactionLayer::~TransactionLayer() {
    Shutdown();
    m_impl->Core.Network.SetUser(nullptr);
}

void TransactionLayer::Start() {
    m_impl->Core.Start();
}

void TransactionLayer::Shutdown() {
    m_impl->Core.Shutdown();
}

CallResult TransactionLayer::Call(const BACSTAC_ADDRESS& destination, std::uint8_t service,
                                  std::span<const std::uint8_t> request, AnswerBuffer& answer,
                                  const CallOptions& options) {
    return m_impl->Call(destination, service, request, answer, options);
}

Outcome TransactionLayer::SendUnconfirmed(const BACSTAC_ADDRESS& destination, std::uint8_t service,
                                          std::span<const std::uint8_t> request) {
    LayerCore& core = m_impl->Core;
    Apdu header;
    header.Type = PduType::unconfirmed_request;
    header.Service = service;
    Frame frame;
    if (!frame.Append(request) || !PrependApdu(frame, header))
        return Outcome::request_too_long;
    bool sent = false;
    if (destination.MacLength == 0) {
        sent = core.Network.SendBroadcast(destination, frame);
    } else {
        Station station;
        switch (core.Network.Resolve(destination, station)) {
        case NetworkLayer::Route::found:
        case NetworkLayer::Route::busy:
            if (frame.Size() > core.Network.MaxApdu(station))
                return Outcome::request_too_long;
            sent = core.Network.Send(station, frame, false);
            break;
        case NetworkLayer::Route::unknown_router:
            sent = core.Network.SendVia(destination, frame);
            break;
        case NetworkLayer::Route::invalid:
            return Outcome::invalid_address;
        }
    }
    return sent ? Outcome::simple_ack : Outcome::send_failure;
}

bool TransactionLayer::SendPdu(const Station& destination, const Apdu& header, std::span<const std::uint8_t> payload) {
    return m_impl->Core.SendPdu(destination, header, payload, false);
}

const TransactionSettings& TransactionLayer::Settings() const {
    return m_impl->Core.Settings;
}
const TransactionCounters& TransactionLayer::Counters() const {
    return m_impl->Core.Counters;
}
NetworkLayer& TransactionLayer::Network() const {
    return m_impl->Core.Network;
}
LayerCore& TransactionLayer::Core() const {
    return m_impl->Core;
}

void TransactionLayer::OnApdu(const ApduIndication& indication) {
    m_impl->Core.OnApdu(indication);
}

} // namespace bacnet
