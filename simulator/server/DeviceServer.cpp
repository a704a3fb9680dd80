#include "simulator/server/DeviceServer.h"

#include "platform/stack/codec/Reader.h"

#include <algorithm>

namespace sim {

namespace {

using bacnet::Apdu;
using bacnet::ConfirmedService;
using bacnet::PduType;

constexpr std::size_t ACK_HEADER = 3;
constexpr std::size_t SEGMENTED_ACK_HEADER = 5;
constexpr std::size_t MAX_SLOTS = 256; // segmented answers of one device at a time
constexpr std::size_t MAX_HELD = 64;
constexpr std::uint8_t ABORT_OUT_OF_RESOURCES = 9;
constexpr std::uint32_t OTHER_ADDRESS = 0x80; // bit that makes the wrong source's address another one

const FaultEffects NO_EFFECTS{};

Counter CounterOf(std::uint8_t service) {
    switch (static_cast<ConfirmedService>(service)) {
    case ConfirmedService::readProperty:
        return Counter::readProperty;
    case ConfirmedService::readPropertyMultiple:
        return Counter::readPropertyMultiple;
    case ConfirmedService::readRange:
        return Counter::readRange;
    case ConfirmedService::writeProperty:
        return Counter::writeProperty;
    case ConfirmedService::writePropertyMultiple:
        return Counter::writePropertyMultiple;
    default:
        return Counter::otherService;
    }
}

// The object that a request names first, as most services do; else one that does not exist.
BACSTAC_OBJECT_ID ObjectOf(std::span<const std::uint8_t> parameters) {
    bacnet::Reader reader(parameters);
    BACSTAC_OBJECT_ID id{0xFFFFFFFFU, 0};
    reader.ObjectId(id, reader.IsContext(0) ? 0 : bacnet::APPLICATION);
    return id;
}

// While its communication is disabled (clause 16.1).
bool IsServedAlways(std::uint8_t service) {
    return service == static_cast<std::uint8_t>(ConfirmedService::deviceCommunicationControl) ||
           service == static_cast<std::uint8_t>(ConfirmedService::reinitializeDevice);
}

std::size_t SegmentsOf(bacnet::MaxSegments code) {
    if (code == bacnet::MaxSegments::unspecified || code == bacnet::MaxSegments::more_than_64)
        return MAX_ANSWER; // as many as there are octets
    return std::size_t{1} << static_cast<unsigned>(code);
}

Apdu Header(PduType type, const Apdu& request) {
    Apdu header;
    header.Type = type;
    header.InvokeId = request.InvokeId;
    header.Service = request.Service;
    return header;
}

} // namespace

DeviceServer::DeviceServer(Device& device, const Origin& origin, IAmMode iAm, std::atomic<unsigned>& awaited)
    : m_device(device), m_origin(origin), m_iAm(iAm), m_recentRequests(APDU_TIMEOUT_MS * APDU_RETRIES),
      m_outgoing(origin, awaited) {
    if (!device.Config().Quirks.SecondClaimant)
        return;
    bacnet::BipAddress address = origin.Socket->LocalAddress();
    address.Ip ^= OTHER_ADDRESS;
    m_isClaimed = m_claimant.Open(address, {}).empty();
}

// ---- requests

void DeviceServer::OnApdu(ServerContext& context, const Requester& from, std::span<const std::uint8_t> octets) {
    Apdu apdu;
    if (IsGone(context) || bacnet::DecodeApdu(octets, apdu) != bacnet::ApduError::none)
        return;
    if (from.Network != 0)
        m_outgoing.LearnRoute(from);
    switch (apdu.Type) {
    case PduType::confirmed_request:
        if (apdu.Segmented)
            OnRequestSegment(context, from, apdu);
        else
            OnRequest(context, from, apdu, octets);
        SendMessages(context);
        break;
    case PduType::unconfirmed_request:
        if (UnconfirmedRequest request; ReadUnconfirmed(octets, request)) {
            Pacer atOnce(0);
            OnUnconfirmed(context, from, request, false, false, atOnce);
        }
        break;
    case PduType::segment_ack:
        if (!apdu.FromServer)
            OnSegmentAck(context, from, apdu);
        break;
    case PduType::abort:
        if (!apdu.FromServer)
            OnAbort(from, apdu.InvokeId);
        else
            m_outgoing.OnAnswer(from, apdu);
        break;
    case PduType::simple_ack:
    case PduType::error:
    case PduType::reject:
        m_outgoing.OnAnswer(from, apdu);
        break;
    default:
        break; // the device asks nothing that has such an answer
    }
}

void DeviceServer::Run(ServerContext& context) {
    if (IsGone(context))
        return;
    if (m_device.IsAtWork())
        m_device.Run();
    SendMessages(context);
    m_outgoing.OnTime(context.Out, context.NowMs);
}

// What is to be sent while the device may not initiate anything is lost.
void DeviceServer::SendMessages(ServerContext& context) {
    if (!m_device.HasMessages())
        return;
    const bool mayInitiate = m_device.CommunicationState() == Communication::enabled;
    for (Message& message : m_device.TakeMessages())
        if (mayInitiate)
            m_outgoing.Send(context.Out, std::move(message), context.NowMs);
}

void DeviceServer::OnBroadcast(ServerContext& context, const Requester& from, const UnconfirmedRequest& request,
                               bool globally, Pacer& pacer) {
    if (!IsGone(context))
        OnUnconfirmed(context, from, request, m_iAm == IAmMode::broadcast, globally, pacer);
}

void DeviceServer::OnUnconfirmed(ServerContext& context, const Requester& from, const UnconfirmedRequest& request,
                                 bool toAll, bool globally, Pacer& pacer) {
    switch (request.Service) {
    case bacnet::UnconfirmedService::whoIs:
        if (request.Who.AsksFor(m_device.Instance()))
            OnWhoIs(context, from, toAll, globally, pacer.NextDelayMs());
        break;
    case bacnet::UnconfirmedService::whoHas:
        OnWhoHas(context, from, request.Parameters, toAll, globally);
        break;
    case bacnet::UnconfirmedService::iAm:
        if (m_outgoing.Awaits())
            m_outgoing.OnIAm(request.Announced, from);
        break;
    default:
        SynchronizeTime(m_device, request);
        break;
    }
}

void DeviceServer::OnWhoIs(ServerContext& context, const Requester& from, bool toAll, bool globally,
                           std::uint32_t delayMs) {
    m_device.Count(Counter::whoIs);
    FaultEffects effects;
    {
        const auto lock = m_device.Lock();
        if (m_device.GetCommunication() == Communication::disabled)
            return;
        if (!m_device.Faults().Empty())
            effects = m_device.Faults().Hit(std::nullopt, m_device.Id());
    }
    if (effects.Silent) {
        m_device.Count(Counter::withheld);
    } else if (effects.DelayMs + delayMs > 0) {
        const Deferred later{from, toAll, globally, {}, {}};
        context.Timers.Push({context.NowMs + effects.DelayMs + delayMs, 0, this, 0, std::make_shared<Deferred>(later)});
    } else {
        SendIAm(context, from, toAll, globally);
    }
}

void DeviceServer::SendIAm(ServerContext& context, const Requester& from, bool toAll, bool globally) {
    const DeviceConfig& config = m_device.Config();
    std::uint8_t parameters[32];
    bacnet::Writer writer(parameters);
    bacnet::EncodeIAm(
        {config.Instance, config.MaxApdu, static_cast<std::uint32_t>(config.Segmentation), config.VendorId}, writer);
    SendUnconfirmed(context, m_origin, bacnet::UnconfirmedService::iAm, writer.Written(), from, toAll, globally);
    if (m_isClaimed)
        SendUnconfirmed(context, {&m_claimant, m_origin.Network, m_origin.Mac}, bacnet::UnconfirmedService::iAm,
                        writer.Written(), from, toAll, globally);
}

void DeviceServer::OnWhoHas(ServerContext& context, const Requester& from, std::span<const std::uint8_t> parameters,
                            bool toAll, bool globally) {
    std::vector<std::uint8_t> found;
    {
        const auto lock = m_device.Lock();
        if (m_device.GetCommunication() == Communication::disabled ||
            m_device.Faults().Hit(std::nullopt, m_device.Id()).Silent)
            return;
        found = AnswerWhoHas(m_device, parameters);
    }
    if (!found.empty())
        SendUnconfirmed(context, m_origin, bacnet::UnconfirmedService::iHave, found, from, toAll, globally);
}

void DeviceServer::SendUnconfirmed(ServerContext& context, const Origin& origin, bacnet::UnconfirmedService service,
                                   std::span<const std::uint8_t> parameters, const Requester& from, bool toAll,
                                   bool globally) {
    bacnet::Frame& frame = context.Out.Begin();
    frame.Append(parameters);
    Apdu header;
    header.Type = PduType::unconfirmed_request;
    header.Service = static_cast<std::uint8_t>(service);
    bacnet::PrependApdu(frame, header);
    if (!toAll)
        context.Out.Send(origin, from);
    else
        context.Out.Broadcast(origin, globally ? bacnet::GLOBAL_BROADCAST : from.Network);
    m_device.Count(Counter::answers);
}

// It forgets what it was about, and announces itself when it is there again.
void DeviceServer::Restart(ServerContext& context, std::uint32_t milliseconds, RestartReason reason) {
    {
        const auto lock = m_device.Lock();
        m_device.NoteRestart(reason);
    }
    for (const auto& slot : m_slots)
        slot->Active = false;
    m_segmentedRequests = SegmentedRequests();
    m_recentRequests = RecentRequests(APDU_TIMEOUT_MS * APDU_RETRIES);
    m_held.clear();
    m_outgoing.Forget();
    m_goneUntilMs = context.NowMs + milliseconds;
    const Deferred announcement{{}, true, m_origin.Network != 0, {}, {}};
    context.Timers.Push({m_goneUntilMs, 0, this, 0, std::make_shared<Deferred>(announcement)});
}

void DeviceServer::OnRequest(ServerContext& context, const Requester& from, const Apdu& apdu,
                             std::span<const std::uint8_t> octets) {
    m_device.Count(CounterOf(apdu.Service));
    FaultEffects effects;
    bool faulty = false;
    {
        const auto lock = m_device.Lock();
        if (m_device.GetCommunication() == Communication::disabled && !IsServedAlways(apdu.Service))
            return;
        faulty = !m_device.Faults().Empty();
        if (faulty)
            effects = m_device.Faults().Hit(static_cast<ConfirmedService>(apdu.Service), ObjectOf(apdu.Payload));
    }
    if (!faulty && m_held.empty()) {
        Answer(context, from, apdu, NO_EFFECTS);
        return;
    }
    if (effects.Restart) {
        m_device.Count(Counter::withheld);
        Restart(context, effects.RestartMs, RestartReason::unknown);
        return;
    }
    if (effects.Silent) {
        m_device.Count(Counter::withheld);
        return;
    }
    const auto isSame = [&](const Held& held) { return held.InvokeId == apdu.InvokeId && held.From == from; };
    const bool repeated = std::any_of(m_held.begin(), m_held.end(), isSame);
    if (repeated) {
        AnswerHeld(context, from, apdu.InvokeId);
    } else if (effects.Late) {
        if (m_held.size() == MAX_HELD)
            m_held.erase(m_held.begin());
        m_held.push_back({from, apdu.InvokeId, {octets.begin(), octets.end()}, effects});
        return;
    }
    if (effects.DelayMs > 0) {
        const Deferred later{from, false, false, {octets.begin(), octets.end()}, effects};
        context.Timers.Push({context.NowMs + effects.DelayMs, 0, this, 0, std::make_shared<Deferred>(later)});
        return;
    }
    Answer(context, from, apdu, effects);
}

// Faults apply to the request once it is whole; but a device that is silent altogether acknowledges nothing either.
void DeviceServer::OnRequestSegment(ServerContext& context, const Requester& from, const Apdu& segment) {
    const DeviceConfig& config = m_device.Config();
    {
        const auto lock = m_device.Lock();
        if (m_device.Faults().IsSilent())
            return;
    }
    if (config.Segmentation != bacnet::Segmentation::both && config.Segmentation != bacnet::Segmentation::receive) {
        SendAbort(context, from, segment.InvokeId, bacnet::ABORT_SEGMENTATION_NOT_SUPPORTED, NO_EFFECTS);
        return;
    }
    constexpr std::uint32_t SEGMENT_TIMEOUTS = 4;
    const SegmentedRequests::Settings settings{config.WindowSize, config.MaxSegments,
                                               SEGMENT_TIMEOUTS * config.SegmentTimeoutMs};
    const SegmentedRequests::Step step = m_segmentedRequests.OnSegment(from, segment, settings, context.NowMs);
    if (step.Answer) {
        if (step.Answer->Type == PduType::abort)
            m_device.Count(Counter::aborts);
        SendPdu(context, from, *step.Answer, {}, NO_EFFECTS);
    }
    Apdu whole;
    if (!step.Whole.empty() && bacnet::DecodeApdu(step.Whole, whole) == bacnet::ApduError::none)
        OnRequest(context, from, whole, step.Whole);
}

void DeviceServer::AnswerHeld(ServerContext& context, const Requester& from, std::uint8_t invokeId) {
    const auto at = std::find_if(m_held.begin(), m_held.end(),
                                 [&](const Held& held) { return held.InvokeId == invokeId && held.From == from; });
    const Held held = std::move(*at);
    m_held.erase(at);
    Apdu apdu;
    if (bacnet::DecodeApdu(held.Apdu, apdu) == bacnet::ApduError::none)
        Answer(context, from, apdu, held.Effects);
}

void DeviceServer::OnTimer(ServerContext& context, const Timer& timer) {
    if (timer.Request != nullptr) {
        if (IsGone(context))
            return;
        const Deferred& later = *timer.Request;
        Apdu apdu;
        if (later.Apdu.empty())
            SendIAm(context, later.From, later.ToAll, later.Globally);
        else if (bacnet::DecodeApdu(later.Apdu, apdu) == bacnet::ApduError::none)
            Answer(context, later.From, apdu, later.Effects);
        return;
    }
    Slot& slot = *m_slots[timer.Slot];
    slot.Armed = false;
    if (!slot.Active)
        return;
    if (slot.DeadlineMs <= context.NowMs) {
        SendSegments(context, timer.Slot, slot.Answer.OnTimeout());
        slot.DeadlineMs = context.NowMs + m_device.Config().SegmentTimeoutMs;
        slot.Active = slot.Answer.GetState() == SegmentedAnswer::State::sending;
    }
    if (slot.Active) {
        slot.Armed = true;
        context.Timers.Push({slot.DeadlineMs, 0, this, timer.Slot, nullptr});
    }
}

// ---- answers

std::size_t DeviceServer::ApduSize(const Apdu& request) const {
    // A reserved code tells nothing: then the least that every station takes.
    const std::uint16_t asker = bacnet::MaxApduFromCode(request.MaxApduCode);
    return std::min<std::size_t>(asker == 0 ? 50 : asker, m_device.Config().MaxApdu);
}

AnswerRoom DeviceServer::RoomFor(const Apdu& request) const {
    const bacnet::Segmentation own = m_device.Config().Segmentation;
    const std::size_t size = ApduSize(request);
    AnswerRoom room;
    room.Octets = size - ACK_HEADER;
    room.Segmentation = request.SegmentedResponseAccepted &&
                        (own == bacnet::Segmentation::both || own == bacnet::Segmentation::transmit);
    if (room.Segmentation) {
        const std::size_t segments = SegmentsOf(request.SegmentsAccepted);
        room.Octets = std::min(MAX_ANSWER, std::max(room.Octets, segments * (size - SEGMENTED_ACK_HEADER)));
    }
    return room;
}

Outcome DeviceServer::OutcomeOf(ServerContext& context, const Requester& from, const Apdu& request,
                                const FaultEffects& effects) {
    if (effects.Refused) {
        const FaultEffects::Refusal& refusal = *effects.Refused;
        if (refusal.Kind == FaultKind::error)
            return Outcome::Error({refusal.Class, refusal.Code});
        return refusal.Kind == FaultKind::reject ? Outcome::Reject(refusal.Code) : Outcome::Abort(refusal.Code);
    }
    if (const Outcome* known = m_recentRequests.Find(from, request, context.NowMs))
        return *known;
    const auto lock = m_device.Lock();
    const Outcome outcome = Serve(m_device, static_cast<ConfirmedService>(request.Service), request.Payload,
                                  RoomFor(request), context.Memory, from);
    m_recentRequests.Keep(from, request, outcome, context.NowMs);
    return outcome;
}

void DeviceServer::Answer(ServerContext& context, const Requester& from, const Apdu& request,
                          const FaultEffects& effects) {
    const Outcome outcome = OutcomeOf(context, from, request, effects);
    m_device.Count(Counter::answers);
    switch (outcome.What) {
    case Outcome::Kind::ack:
        if (outcome.Parameters.size() > ApduSize(request) - ACK_HEADER)
            StartSegmented(context, from, request, outcome.Parameters, effects);
        else
            SendPdu(context, from, Header(PduType::complex_ack, request), outcome.Parameters, effects);
        break;
    case Outcome::Kind::done:
        SendPdu(context, from, Header(PduType::simple_ack, request), {}, effects);
        break;
    case Outcome::Kind::error: {
        std::uint8_t parameters[64];
        bacnet::Writer writer(parameters);
        EncodeError(static_cast<ConfirmedService>(request.Service), outcome, writer);
        m_device.Count(Counter::errors);
        SendPdu(context, from, Header(PduType::error, request), writer.Written(), effects);
        break;
    }
    case Outcome::Kind::reject: {
        Apdu header = Header(PduType::reject, request);
        header.Reason = static_cast<std::uint8_t>(outcome.Code);
        m_device.Count(Counter::rejects);
        SendPdu(context, from, header, {}, effects);
        break;
    }
    case Outcome::Kind::abort:
        SendAbort(context, from, request.InvokeId, static_cast<std::uint8_t>(outcome.Code), effects);
        break;
    }
    if (outcome.Restarts)
        Restart(context, m_device.Config().RestartMs, outcome.Reason);
}

void DeviceServer::SendAbort(ServerContext& context, const Requester& to, std::uint8_t invokeId, std::uint8_t reason,
                             const FaultEffects& effects) {
    Apdu header;
    header.Type = PduType::abort;
    header.FromServer = true;
    header.InvokeId = invokeId;
    header.Reason = reason;
    m_device.Count(Counter::aborts);
    SendPdu(context, to, header, {}, effects);
}

void DeviceServer::SendPdu(ServerContext& context, const Requester& to, Apdu header,
                           std::span<const std::uint8_t> payload, const FaultEffects& effects) {
    const bacnet::UdpSocket* socket = SocketFor(effects);
    if (socket == nullptr)
        return;
    Origin origin = m_origin;
    origin.Socket = socket;
    if (effects.WrongInvokeId)
        ++header.InvokeId;
    for (int copies = effects.Duplicate ? 2 : 1; copies > 0; --copies) {
        bacnet::Frame& frame = context.Out.Begin();
        if (!frame.Append(payload) || !bacnet::PrependApdu(frame, header))
            return;
        if (frame.Size() > effects.OctetLimit) {
            const std::vector<std::uint8_t> cut(frame.Data(), frame.Data() + effects.OctetLimit);
            frame.Clear();
            frame.Append(cut);
        }
        context.Out.Send(origin, to);
    }
}

const bacnet::UdpSocket* DeviceServer::SocketFor(const FaultEffects& effects) {
    if (!effects.WrongSource && !effects.WrongPort)
        return m_origin.Socket;
    auto& stray = effects.WrongSource ? m_otherAddress : m_otherPort;
    if (stray == nullptr) {
        bacnet::BipAddress address = m_origin.Socket->LocalAddress();
        address.Port = 0;
        if (effects.WrongSource)
            address.Ip ^= OTHER_ADDRESS;
        auto opened = std::make_unique<bacnet::UdpSocket>();
        if (!opened->Open(address, {}).empty())
            return nullptr;
        stray = std::move(opened);
    }
    return stray.get();
}

// ---- segmented answers

DeviceServer::Slot* DeviceServer::FindSlot(const Requester& from, std::uint8_t invokeId) {
    for (const auto& slot : m_slots)
        if (slot->Active && slot->InvokeId == invokeId && slot->To == from)
            return slot.get();
    return nullptr;
}

// The slot of the same transaction, whose request was repeated; else a free one; else a new one, up to the limit.
std::uint32_t DeviceServer::TakeSlot(const Requester& from, std::uint8_t invokeId) {
    auto free = static_cast<std::uint32_t>(m_slots.size());
    for (std::uint32_t i = 0; i < m_slots.size(); ++i) {
        const Slot& slot = *m_slots[i];
        if (slot.Active && slot.InvokeId == invokeId && slot.To == from)
            return i;
        if (!slot.Active)
            free = i;
    }
    if (free == m_slots.size() && free < MAX_SLOTS)
        m_slots.push_back(std::make_unique<Slot>());
    return free;
}

void DeviceServer::StartSegmented(ServerContext& context, const Requester& to, const Apdu& request,
                                  std::span<const std::uint8_t> parameters, const FaultEffects& effects) {
    const std::uint32_t number = TakeSlot(to, request.InvokeId);
    if (number == m_slots.size()) {
        SendAbort(context, to, request.InvokeId, ABORT_OUT_OF_RESOURCES, effects);
        return;
    }
    Slot& slot = *m_slots[number];
    slot.To = to;
    slot.InvokeId = request.InvokeId;
    slot.Service = request.Service;
    slot.Effects = effects;
    slot.Active = true;
    const DeviceConfig& config = m_device.Config();
    const SegmentedAnswer::Settings settings{ApduSize(request) - SEGMENTED_ACK_HEADER, config.WindowSize,
                                             config.SegmentRetries};
    SendSegments(context, number, slot.Answer.Start(parameters, settings));
    slot.DeadlineMs = context.NowMs + config.SegmentTimeoutMs;
    if (!slot.Armed) {
        slot.Armed = true;
        context.Timers.Push({slot.DeadlineMs, 0, this, number, nullptr});
    }
}

void DeviceServer::SendSegments(ServerContext& context, std::uint32_t number, SegmentedAnswer::Burst burst) {
    const Slot& slot = *m_slots[number];
    for (std::uint32_t segment = burst.First; segment < burst.First + burst.Count; ++segment) {
        if (segment >= slot.Effects.SegmentLimit)
            continue;
        Apdu header;
        header.Type = PduType::complex_ack;
        header.Segmented = true;
        header.MoreFollows = !slot.Answer.IsLast(segment);
        header.InvokeId = slot.InvokeId;
        header.SequenceNumber = static_cast<std::uint8_t>(segment);
        header.WindowSize = slot.Answer.ProposedWindow();
        header.Service = slot.Service;
        m_device.Count(Counter::segments);
        SendPdu(context, slot.To, header, slot.Answer.Segment(segment), slot.Effects);
    }
}

void DeviceServer::OnSegmentAck(ServerContext& context, const Requester& from, const Apdu& ack) {
    m_device.Count(Counter::segmentAcks);
    for (std::uint32_t i = 0; i < m_slots.size(); ++i) {
        Slot& slot = *m_slots[i];
        if (!slot.Active || slot.InvokeId != ack.InvokeId || !(slot.To == from))
            continue;
        const SegmentedAnswer::Burst burst = slot.Answer.OnAck(ack);
        slot.DeadlineMs = context.NowMs + m_device.Config().SegmentTimeoutMs;
        slot.Active = slot.Answer.GetState() == SegmentedAnswer::State::sending;
        SendSegments(context, i, burst);
        if (slot.Answer.GetState() == SegmentedAnswer::State::failed)
            SendAbort(context, from, ack.InvokeId, bacnet::ABORT_WINDOW_SIZE_OUT_OF_RANGE, slot.Effects);
        return;
    }
}

void DeviceServer::OnAbort(const Requester& from, std::uint8_t invokeId) {
    if (Slot* slot = FindSlot(from, invokeId))
        slot->Active = false;
    m_segmentedRequests.OnAbort(from, invokeId);
}

} // namespace sim
