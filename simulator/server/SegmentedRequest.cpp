#include "simulator/server/SegmentedRequest.h"

#include <algorithm>

namespace sim {

namespace {

using bacnet::Apdu;

SegmentedRequests::Step Abort(std::uint8_t invokeId, std::uint8_t reason) {
    Apdu abort;
    abort.Type = bacnet::PduType::abort;
    abort.FromServer = true;
    abort.InvokeId = invokeId;
    abort.Reason = reason;
    return {abort, {}};
}

// Header of a request in one piece, clause 20.1.2.
constexpr std::size_t HEADER = 4;

} // namespace

SegmentedRequests::Request* SegmentedRequests::Find(const Requester& from, std::uint8_t invokeId) {
    const auto found = std::find_if(m_requests.begin(), m_requests.end(), [&](const Request& request) {
        return request.InvokeId == invokeId && request.From == from;
    });
    return found == m_requests.end() ? nullptr : &*found;
}

void SegmentedRequests::OnAbort(const Requester& from, std::uint8_t invokeId) {
    std::erase_if(m_requests,
                  [&](const Request& request) { return request.InvokeId == invokeId && request.From == from; });
}

SegmentedRequests::Step SegmentedRequests::OnSegment(const Requester& from, const Apdu& segment,
                                                     const Settings& settings, std::int64_t nowMs) {
    std::erase_if(m_requests, [&](const Request& old) { return nowMs - old.LastHeardMs > settings.SilenceMs; });
    Request* request = Find(from, segment.InvokeId);
    if (request == nullptr || (request->Done && segment.SequenceNumber == 0)) {
        if (segment.SequenceNumber != 0)
            return Abort(segment.InvokeId, bacnet::ABORT_INVALID_APDU_IN_THIS_STATE);
        if (segment.WindowSize == 0 || segment.WindowSize > 127)
            return Abort(segment.InvokeId, bacnet::ABORT_WINDOW_SIZE_OUT_OF_RANGE);
        if (request == nullptr && m_requests.size() == MAX_REQUESTS)
            return Abort(segment.InvokeId, bacnet::ABORT_OUT_OF_RESOURCES);
        if (request == nullptr)
            request = &m_requests.emplace_back();
        *request = {};
        request->From = from;
        request->InvokeId = segment.InvokeId;
        request->Window = std::min<std::uint32_t>(segment.WindowSize, settings.Window);
    }
    request->LastHeardMs = nowMs;
    if (request->Done)
        return segment.MoreFollows ? Step{} : Acknowledge(*request, false);
    if (segment.SequenceNumber != (request->Taken & 0xFF))
        return OutOfOrder(*request, segment.SequenceNumber);
    if (request->Taken == settings.MaxSegments) {
        OnAbort(from, segment.InvokeId);
        return Abort(segment.InvokeId, bacnet::ABORT_BUFFER_OVERFLOW);
    }
    return InOrder(*request, segment);
}

SegmentedRequests::Step SegmentedRequests::InOrder(Request& request, const Apdu& segment) {
    ++request.Taken;
    request.Parameters.insert(request.Parameters.end(), segment.Payload.begin(), segment.Payload.end());
    if (segment.MoreFollows) {
        const bool windowFull = request.Taken - request.Acked == request.Window;
        return request.Taken == 1 || windowFull ? Acknowledge(request, false) : Step{};
    }
    Step step = Acknowledge(request, false);
    step.Whole.resize(HEADER);
    const auto answerWanted = static_cast<std::uint8_t>(segment.SegmentedResponseAccepted ? 2 : 0);
    step.Whole[0] = answerWanted; // a confirmed request
    step.Whole[1] =
        static_cast<std::uint8_t>(static_cast<unsigned>(segment.SegmentsAccepted) << 4 | (segment.MaxApduCode & 15U));
    step.Whole[2] = segment.InvokeId;
    step.Whole[3] = segment.Service;
    step.Whole.insert(step.Whole.end(), request.Parameters.begin(), request.Parameters.end());
    request.Done = true;
    request.Parameters = {};
    return step;
}

SegmentedRequests::Step SegmentedRequests::OutOfOrder(Request& request, std::uint8_t sequence) {
    // Behind the last one taken by no more than a window: a repetition, passed over until there are as many as fill a
    // window, since then the asker has not got the acknowledgement.
    const std::uint32_t behind = (request.Taken - 1 - sequence) & 0xFF;
    if (behind < request.Window && behind < request.Taken) {
        if (++request.Duplicates < request.Window)
            return {};
        return Acknowledge(request, true);
    }
    return Acknowledge(request, true);
}

SegmentedRequests::Step SegmentedRequests::Acknowledge(Request& request, bool negative) {
    request.Acked = request.Taken;
    request.Duplicates = 0;
    Apdu ack;
    ack.Type = bacnet::PduType::segment_ack;
    ack.FromServer = true;
    ack.Negative = negative;
    ack.InvokeId = request.InvokeId;
    ack.SequenceNumber = static_cast<std::uint8_t>(request.Taken - 1);
    ack.WindowSize = static_cast<std::uint8_t>(request.Window);
    return {ack, {}};
}

} // namespace sim
