#include "platform/stack/transaction/LayerCore.h"

#include <algorithm>

namespace bacnet {

namespace {

Apdu PlainHeader(PduType type, std::uint8_t invokeId, std::uint8_t reason) {
    Apdu header;
    header.Type = type;
    header.InvokeId = invokeId;
    header.Reason = reason;
    return header;
}

} // namespace

LayerCore::LayerCore(NetworkLayer& network, const TransactionSettings& settings, IRequestHandler* handler,
                     const IClock& clock)
    : Network(network), Settings(settings), Clock(clock), Peers(settings.IdRestMs, settings.IdSeed),
      Budget(settings.AssemblyLimit), m_handler(handler), m_requests(settings) {
    network.SetClock([&clock] { return clock.Now(); });
    for (std::size_t port = 0; port < network.PortCount(); ++port)
        m_pumps.push_back(
            std::make_unique<PortPump>(network, static_cast<std::uint8_t>(port), [this](const QueuedApdu& apdu) {
                OnRequest(apdu.Source, apdu.Broadcast, apdu.Octets);
            }));
}

void LayerCore::Start() {
    if (Settings.BackgroundThread)
        for (auto& pump : m_pumps)
            pump->Start();
}

void LayerCore::Shutdown() {
    m_stopping = true;
    Peers.Close(Outcome::shutdown, Clock.Now());
    for (auto& pump : m_pumps)
        pump->Stop();
}

bool LayerCore::BuildRequest(const Transaction& transaction, Frame& frame) {
    return frame.Append(transaction.Parameters()) && PrependApdu(frame, transaction.RequestHeader());
}

bool LayerCore::Plan(Transaction& transaction, std::size_t parameters, const CallOptions& options) {
    // Nobody needs so many; it keeps the counting of segments far from its limits.
    constexpr std::size_t LONGEST = 16U * 1024 * 1024;
    const std::size_t link = Network.MaxApdu(transaction.Peer);
    const std::size_t most = options.MaxApdu != 0 ? std::min<std::size_t>(options.MaxApdu, link) : link;
    transaction.MaxAnswer = static_cast<std::uint16_t>(std::min<std::size_t>(link, 0xFFFF));
    transaction.Budget = &Budget;
    transaction.SegmentSize = 0;
    if (parameters + Transaction::REQUEST_HEADER <= most)
        return true;
    if (!options.TakesSegments || most <= Transaction::SEGMENT_HEADER || parameters > LONGEST)
        return false;
    transaction.SegmentSize = most - Transaction::SEGMENT_HEADER;
    return options.MaxSegments == 0 ||
           SegmentSender::CountOf(parameters, transaction.SegmentSize) <= options.MaxSegments;
}

bool LayerCore::SendSegments(const PeerKey& key, std::uint8_t invokeId) {
    bool sent = true;
    Frame frame;
    Station to;
    while (Peers.TakeSegment(key, invokeId, frame, to))
        sent = Network.Send(to, frame, true) && sent;
    return sent;
}

bool LayerCore::SendPdu(const Station& destination, const Apdu& header, std::span<const std::uint8_t> payload,
                        bool expectingReply) {
    Frame frame;
    return frame.Append(payload) && PrependApdu(frame, header) && Network.Send(destination, frame, expectingReply);
}

LayerCore::Way LayerCore::FindWay(const BACSTAC_ADDRESS& destination, Millis now, Millis until, Station& station) {
    switch (Network.Resolve(destination, station)) {
    case NetworkLayer::Route::found:
        break;
    case NetworkLayer::Route::busy:
        // Its word that it is available may be lost: it is tried in the end.
        return now < until ? Way::wait : Way::open;
    case NetworkLayer::Route::unknown_router:
        if (now >= until)
            return Way::none;
        Network.AskForRouter(destination.Network, now);
        return Way::wait;
    case NetworkLayer::Route::invalid:
        return Way::invalid;
    }
    return Way::open;
}

bool LayerCore::Resend(const PeerKey& key, Transaction& transaction, const BACSTAC_ADDRESS& destination, Millis now) {
    Counters.Retries.Add();
    if (transaction.Peer.Network == 0)
        return true;
    if (transaction.RequestSize() > Network.MaxApdu(transaction.Peer))
        return false;
    // The router may be the one that is silent: ask for another, and take it as soon as it is known.
    Network.AskForRouter(transaction.Peer.Network, now);
    Station station;
    if (Network.Resolve(destination, station) == NetworkLayer::Route::found && station != transaction.Peer)
        Peers.Redirect(key, transaction, station);
    return true;
}

void LayerCore::ReceiveAll() {
    for (auto& pump : m_pumps)
        pump->ReceiveAll();
}

void LayerCore::Follow(const PeerTable::Dispatched& dispatched) {
    // The end of a segmented answer is acknowledged before its owner may act on it.
    if (dispatched.Answer.Send)
        SendPdu(dispatched.To, dispatched.Answer.Header, {}, false);
    const Waiter* const self = &Waiter::OfThisThread();
    for (Waiter* waiter : dispatched.Wake)
        if (waiter != nullptr && waiter != self) // this thread is awake and looks for itself
            PortPump::Wake(*waiter);
}

void LayerCore::OnApdu(const ApduIndication& indication) {
    Apdu pdu;
    if (DecodeApdu(indication.Apdu, pdu) != ApduError::none) {
        Counters.Malformed.Add();
        return;
    }
    if (pdu.Type == PduType::confirmed_request || pdu.Type == PduType::unconfirmed_request) {
        if (PortPump::MayServe() || !Settings.BackgroundThread) {
            OnRequest(indication.Source, indication.Broadcast, indication.Apdu);
        } else if (!Pump(indication.Source.Port)
                        .Enqueue({indication.Source,
                                  indication.Broadcast,
                                  {indication.Apdu.begin(), indication.Apdu.end()}})) {
            Counters.RequestsDropped.Add();
        }
        return;
    }
    const PeerKey key = PeerKey::Of(indication.Source, Network.Link(indication.Source.Port));
    // As the asking side of its own request. It may also forget to say which side it is.
    if (pdu.Type == PduType::abort && !pdu.FromServer && m_requests.OnAbort(key, pdu.InvokeId))
        return;
    const PeerTable::Dispatched dispatched = Peers.OnPdu(key, indication.Source, pdu, Clock.Now());
    if (!dispatched.Matched)
        OnUnmatched(indication, pdu);
    Follow(dispatched);
    if (dispatched.Answer.Segments)
        SendSegments(key, pdu.InvokeId);
}

void LayerCore::OnUnmatched(const ApduIndication& indication, const Apdu& pdu) {
    Counters.Unmatched.Add();
    // A device that sends segments to nobody is told so (clause 5.4.4.1), once for each time that it begins or ends its
    // window rather than for each segment.
    const bool worthIt = !pdu.MoreFollows || pdu.SequenceNumber == 0;
    if (pdu.Type == PduType::complex_ack && pdu.Segmented && worthIt && !indication.Broadcast)
        SendPdu(indication.Source, PlainHeader(PduType::abort, pdu.InvokeId, ABORT_INVALID_APDU_IN_THIS_STATE), {},
                false);
}

bool LayerCore::OnRequestSegment(const Station& source, const Apdu& segment, std::unique_ptr<AnswerBuffer>& whole) {
    const PeerKey key = PeerKey::Of(source, Network.Link(source.Port));
    RequestAssembly::Step step = m_requests.OnSegment(key, segment, Clock.Now());
    if (step.Answer.Send)
        SendPdu(source, step.Answer.Header, {}, false);
    whole = std::move(step.Whole);
    return whole != nullptr;
}

void LayerCore::OnRequest(const Station& source, bool broadcast, std::span<const std::uint8_t> octets) {
    RequestIndication request;
    if (m_stopping || DecodeApdu(octets, request.Header) != ApduError::none)
        return;
    request.Confirmed = request.Header.Type == PduType::confirmed_request;
    if (request.Confirmed && broadcast)
        return; // only unconfirmed services may be broadcast
    std::unique_ptr<AnswerBuffer> whole;
    if (request.Confirmed && request.Header.Segmented && m_handler != nullptr) {
        if (!OnRequestSegment(source, request.Header, whole))
            return;
        request.Header.Segmented = false;
        request.Header.Payload = whole->Octets();
    }
    request.From = source;
    request.Broadcast = broadcast;
    if (m_handler != nullptr && Network.ToAddress(source, request.Source))
        m_handler->OnRequest(request);
    else if (request.Confirmed)
        SendPdu(source, PlainHeader(PduType::reject, request.Header.InvokeId, REJECT_UNRECOGNIZED_SERVICE), {}, false);
}

} // namespace bacnet
