#include "platform/stack/transaction/RequestAssembly.h"

#include <algorithm>

namespace bacnet {

namespace {

Reply FromServer(PduType type, std::uint8_t invokeId) {
    Reply reply;
    reply.Send = true;
    reply.Header.Type = type;
    reply.Header.InvokeId = invokeId;
    reply.Header.FromServer = true;
    return reply;
}

Reply AbortFor(const Apdu& segment, std::uint8_t reason) {
    Reply reply = FromServer(PduType::abort, segment.InvokeId);
    reply.Header.Reason = reason;
    return reply;
}

} // namespace

RequestAssembly::Request* RequestAssembly::Find(const PeerKey& from, std::uint8_t invokeId) {
    const auto found = std::find_if(m_requests.begin(), m_requests.end(), [&](const Request& request) {
        return request.InvokeId == invokeId && request.From == from;
    });
    return found == m_requests.end() ? nullptr : &*found;
}

RequestAssembly::Request* RequestAssembly::Begin(const PeerKey& from, const Apdu& segment, Millis now) {
    Request* request = Find(from, segment.InvokeId);
    if (request == nullptr) {
        // The places of those that have stopped, and of complete ones that nobody has asked for again.
        std::erase_if(m_requests, [&](const Request& old) { return now - old.LastHeard >= m_silenceMs; });
        if (m_requests.size() >= MAX_REQUESTS)
            return nullptr;
        request = &m_requests.emplace_back();
    }
    *request = {};
    request->From = from;
    request->InvokeId = segment.InvokeId;
    request->Service = segment.Service;
    request->Segments.Begin(m_window);
    request->Parameters = std::make_unique<AnswerBuffer>(MAX_OCTETS);
    return request;
}

void RequestAssembly::Drop(const Request& request) {
    m_requests.erase(m_requests.begin() + (&request - m_requests.data()));
}

RequestAssembly::Step RequestAssembly::OnSegment(const PeerKey& from, const Apdu& segment, Millis now) {
    const std::lock_guard lock(m_mutex);
    Step result;
    Request* request = Find(from, segment.InvokeId);
    const bool stopped = request != nullptr && now - request->LastHeard >= m_silenceMs;
    const bool other = request != nullptr && request->Service != segment.Service;
    // A first segment behind the end begins a repetition of the whole, or the next request with this invoke id.
    if (request == nullptr || stopped || other || (request->Complete && segment.SequenceNumber == 0)) {
        if (segment.SequenceNumber != 0) {
            // Once a window, not for each segment of it.
            if (!segment.MoreFollows)
                result.Answer = AbortFor(segment, ABORT_INVALID_APDU_IN_THIS_STATE);
            return result;
        }
        request = Begin(from, segment, now);
        if (request == nullptr) {
            result.Answer = AbortFor(segment, ABORT_OUT_OF_RESOURCES);
            return result;
        }
    }
    request->LastHeard = now;
    if (request->Complete) {
        if (!segment.MoreFollows)
            result.Answer = request->LastAnswer;
        return result;
    }
    const Reassembly::Step step = request->Segments.OnSegment(segment, *request->Parameters);
    switch (step.What) {
    case Reassembly::Action::none:
        break;
    case Reassembly::Action::invalid:
    case Reassembly::Action::too_long:
        result.Answer = AbortFor(segment, step.Reason);
        Drop(*request);
        break;
    case Reassembly::Action::ack:
    case Reassembly::Action::negative_ack:
    case Reassembly::Action::complete:
        result.Answer = FromServer(PduType::segment_ack, segment.InvokeId);
        result.Answer.Header.Negative = step.What == Reassembly::Action::negative_ack;
        result.Answer.Header.SequenceNumber = step.Sequence;
        result.Answer.Header.WindowSize = step.Window;
        if (step.What == Reassembly::Action::complete) {
            request->Complete = true;
            request->LastAnswer = result.Answer;
            result.Whole = std::move(request->Parameters);
        }
        break;
    }
    return result;
}

bool RequestAssembly::OnAbort(const PeerKey& from, std::uint8_t invokeId) {
    const std::lock_guard lock(m_mutex);
    const Request* const request = Find(from, invokeId);
    if (request == nullptr)
        return false;
    Drop(*request);
    return true;
}

} // namespace bacnet
