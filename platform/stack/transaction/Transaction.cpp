#include "platform/stack/transaction/Transaction.h"

#include <algorithm>

namespace bacnet {

namespace {

constexpr unsigned SEGMENT_TIMEOUTS = 4; // clause 5.4.4.3: four times the segment timeout without a segment
constexpr unsigned QUIET_PART = 16;      // of the segment timeout: see SegmentSender

Reply AbortReply(std::uint8_t invokeId, std::uint8_t reason) {
    Reply reply;
    reply.Send = true;
    reply.Header.Type = PduType::abort;
    reply.Header.InvokeId = invokeId;
    reply.Header.Reason = reason;
    return reply;
}

} // namespace

void Transaction::Begin(const TransactionSettings& settings, std::uint8_t service,
                        std::span<const std::uint8_t> parameters, const CallOptions& options, AnswerBuffer& answer,
                        Millis now) {
    m_state = State::awaiting_confirmation;
    m_service = service;
    m_parameters = parameters;
    m_answer = &answer;
    m_answer->Clear();
    m_check = options.Check;
    m_result = {};
    m_resent = false;
    m_retries = options.Retries < 0 ? settings.Retries : static_cast<std::uint8_t>(std::min<int>(options.Retries, 255));
    m_retriesLeft = m_retries;
    m_begun = now;
    m_timeoutMs = options.TimeoutMs != 0 ? options.TimeoutMs : settings.TimeoutMs;
    m_segmentTimeoutMs = settings.SegmentTimeoutMs;
    m_answerTimeoutMs = settings.AnswerTimeoutMs;
    m_window = settings.WindowSize;
    m_deadline = now + m_timeoutMs;
    m_budgeted = 0;
    m_reassembly.Begin(m_window);
    if (SegmentSize != 0) {
        m_requestDeadline = now + m_answerTimeoutMs;
        SendFromTheFirst(now);
    }
}

void Transaction::SendFromTheFirst(Millis now) {
    m_state = State::segmented_request;
    m_segmentRetriesLeft = m_retries;
    m_sender.Begin(m_parameters, SegmentSize, m_segmentTimeoutMs / QUIET_PART);
    m_deadline = now + m_segmentTimeoutMs;
}

Apdu Transaction::RequestHeader() const {
    Apdu header;
    header.Type = PduType::confirmed_request;
    header.SegmentedResponseAccepted = true;
    header.SegmentsAccepted = MaxSegments::more_than_64;
    header.MaxApduCode = MaxApduToCode(MaxAnswer);
    header.InvokeId = InvokeId;
    header.Service = m_service;
    return header;
}

bool Transaction::TakeSegment(Apdu& segment) {
    SegmentSender::Segment next;
    if (m_state != State::segmented_request || !m_sender.Next(next))
        return false;
    segment = RequestHeader();
    segment.Segmented = true;
    segment.MoreFollows = next.MoreFollows;
    segment.SequenceNumber = next.Sequence;
    segment.WindowSize = m_window;
    segment.Payload = next.Octets;
    return true;
}

// Before the device has the whole request no answer can be meant for it.
bool Transaction::AwaitsAnswer() const {
    return m_state == State::awaiting_confirmation || (m_state == State::segmented_request && m_sender.AllSent());
}

bool Transaction::Matches(std::span<const std::uint8_t> answer) const {
    return m_check == nullptr || m_check(m_parameters, answer);
}

void Transaction::Finish(Outcome outcome, std::uint8_t reason) {
    m_state = State::done;
    m_result = {outcome, reason};
    if (m_budgeted != 0)
        Budget->Give(m_budgeted);
    m_budgeted = 0;
}

void Transaction::Abort(Outcome outcome, std::uint8_t reason, Reply& reply) {
    Finish(outcome);
    reply = AbortReply(InvokeId, reason);
}

bool Transaction::OnPdu(const Apdu& pdu, Millis now, Reply& reply) {
    const bool awaiting = AwaitsAnswer();
    switch (pdu.Type) {
    case PduType::abort:
        // Aborts of devices that forget to say that they are the server are taken too.
        if (m_state == State::idle || m_state == State::done)
            return false;
        Finish(Outcome::abort, pdu.Reason);
        return true;
    case PduType::complex_ack:
        if (pdu.Service != m_service)
            return false;
        if (pdu.Segmented)
            return (awaiting || m_state == State::segmented_confirmation) && OnSegment(pdu, now, reply);
        if (!awaiting || !Matches(pdu.Payload))
            return false;
        Finish(m_answer->Append(pdu.Payload) ? Outcome::complex_ack : Outcome::answer_too_long);
        return true;
    case PduType::simple_ack:
        if (!awaiting || pdu.Service != m_service)
            return false;
        Finish(Outcome::simple_ack);
        return true;
    case PduType::segment_ack:
        return OnSegmentAck(pdu, now, reply);
    case PduType::error: // a device may refuse what it has seen only the beginning of
        if ((!awaiting && m_state != State::segmented_request) || pdu.Service != m_service)
            return false;
        Finish(m_answer->Append(pdu.Payload) ? Outcome::error : Outcome::answer_too_long);
        return true;
    case PduType::reject:
        if (!awaiting && m_state != State::segmented_request)
            return false;
        Finish(Outcome::reject, pdu.Reason);
        return true;
    default:
        return false;
    }
}

bool Transaction::OnSegmentAck(const Apdu& ack, Millis now, Reply& reply) {
    if (m_state != State::segmented_request)
        return false;
    if (now >= m_requestDeadline) {
        Abort(Outcome::timeout, ABORT_TSM_TIMEOUT, reply);
        return true;
    }
    switch (m_sender.OnAck(ack, now)) {
    case SegmentSender::Step::ignored:
        break;
    case SegmentSender::Step::send:
        reply.Segments = true;
        m_segmentRetriesLeft = m_retries;
        m_resent = m_resent || ack.Negative;
        m_deadline = std::max(m_deadline, now + m_segmentTimeoutMs);
        break;
    case SegmentSender::Step::resend: // no progress, so the time and the repetitions that are left stay
        reply.Segments = true;
        m_resent = true;
        break;
    case SegmentSender::Step::complete:
        m_state = State::awaiting_confirmation;
        m_deadline = std::max(m_deadline, now + m_timeoutMs);
        break;
    }
    return true;
}

bool Transaction::OnSegment(const Apdu& pdu, Millis now, Reply& reply) {
    if (!m_reassembly.Started()) {
        if (pdu.SequenceNumber == 0 && !Matches(pdu.Payload))
            return false;
        m_state = State::segmented_confirmation;
        m_answerDeadline = now + m_answerTimeoutMs;
    } else if (now >= m_answerDeadline) {
        Abort(Outcome::segments_stopped, ABORT_TSM_TIMEOUT, reply);
        return true;
    }
    const Reassembly::Step step = m_reassembly.OnSegment(pdu, *m_answer);
    if (Budget != nullptr && m_answer->Size() != m_budgeted) {
        Budget->Give(m_budgeted);
        m_budgeted = Budget->Take(m_answer->Size()) ? m_answer->Size() : 0;
        if (m_budgeted == 0) {
            Abort(Outcome::answer_too_long, ABORT_OUT_OF_RESOURCES, reply);
            return true;
        }
    }
    switch (step.What) {
    case Reassembly::Action::invalid:
        Abort(Outcome::invalid_answer, step.Reason, reply);
        return true;
    case Reassembly::Action::too_long:
        Abort(Outcome::answer_too_long, step.Reason, reply);
        return true;
    case Reassembly::Action::none:
        break;
    case Reassembly::Action::ack:
    case Reassembly::Action::negative_ack:
    case Reassembly::Action::complete:
        reply.Send = true;
        reply.Header.Type = PduType::segment_ack;
        reply.Header.Negative = step.What == Reassembly::Action::negative_ack;
        reply.Header.InvokeId = InvokeId;
        reply.Header.SequenceNumber = step.Sequence;
        reply.Header.WindowSize = step.Window;
        break;
    }
    if (step.What == Reassembly::Action::complete)
        Finish(Outcome::complex_ack);
    else // never earlier than before: the owner sleeps until the old deadline
        m_deadline = std::max(m_deadline, now + static_cast<Millis>(SEGMENT_TIMEOUTS) * m_segmentTimeoutMs);
    return true;
}

Transaction::Due Transaction::OnTime(Millis now, Reply& reply) {
    if (m_state == State::done)
        return Due::finished;
    if (now < m_deadline)
        return Due::nothing;
    if (m_state == State::segmented_confirmation) {
        Abort(Outcome::segments_stopped, ABORT_TSM_TIMEOUT, reply);
        return Due::finished;
    }
    if (m_state == State::segmented_request)
        return OnSegmentTimeout(now, reply);
    if (m_retriesLeft == 0) {
        Finish(Outcome::timeout);
        return Due::finished;
    }
    --m_retriesLeft;
    m_resent = true;
    if (SegmentSize != 0)
        SendFromTheFirst(now);
    else
        m_deadline = now + m_timeoutMs;
    return Due::resend;
}

Transaction::Due Transaction::OnSegmentTimeout(Millis now, Reply& reply) {
    if (m_segmentRetriesLeft == 0 || now >= m_requestDeadline) {
        // A device that has taken segments need not keep them.
        if (m_sender.Heard())
            Abort(Outcome::timeout, ABORT_TSM_TIMEOUT, reply);
        else
            Finish(Outcome::timeout);
        return Due::finished;
    }
    --m_segmentRetriesLeft;
    m_resent = true;
    m_sender.Repeat();
    m_deadline = now + m_segmentTimeoutMs;
    return Due::resend;
}

} // namespace bacnet
