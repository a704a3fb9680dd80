#include "platform/stack/transaction/Reassembly.h"

#include <algorithm>

namespace bacnet {

namespace {

constexpr std::uint8_t MAX_WINDOW = 127;
constexpr std::uint8_t NEW_BEGINNING = 2; // first segments behind the place that mean that the peer began again

std::uint8_t Minus(std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(a - b);
}

} // namespace

void Reassembly::Begin(std::uint8_t ownWindow) {
    *this = {};
    m_ownWindow = std::clamp<std::uint8_t>(ownWindow, 1, MAX_WINDOW);
}

Reassembly::Step Reassembly::OnSegment(const Apdu& segment, AnswerBuffer& answer) {
    if (!m_started)
        return Start(segment, answer);
    const std::uint8_t ahead = Minus(segment.SequenceNumber, static_cast<std::uint8_t>(m_last + 1));
    if (ahead == 0)
        return InOrder(segment, answer);
    return ahead <= MAX_WINDOW ? Ahead(ahead) : Behind(segment, answer);
}

Reassembly::Step Reassembly::Start(const Apdu& segment, AnswerBuffer& answer) {
    if (segment.SequenceNumber != 0)
        return {Action::invalid, 0, 0, ABORT_INVALID_APDU_IN_THIS_STATE};
    // A proposal out of range is met with the nearest one that is in it.
    m_window = std::clamp<std::uint8_t>(segment.WindowSize, 1, m_ownWindow);
    m_started = true;
    m_last = static_cast<std::uint8_t>(segment.SequenceNumber - 1);
    const Step step = InOrder(segment, answer);
    // The first segment is always acknowledged: that tells the window.
    return step.What == Action::none ? Acknowledge(Action::ack) : step;
}

Reassembly::Step Reassembly::InOrder(const Apdu& segment, AnswerBuffer& answer) {
    // Each segment but the last must bring something, or an answer could go on for ever.
    if (segment.MoreFollows && segment.Payload.empty())
        return {Action::invalid, 0, 0, ABORT_INVALID_APDU_IN_THIS_STATE};
    if (!answer.Append(segment.Payload))
        return {Action::too_long, 0, 0, ABORT_BUFFER_OVERFLOW};
    m_last = segment.SequenceNumber;
    m_gap = false;
    m_duplicates = 0;
    m_beginnings = 0;
    m_turned = m_turned || m_last >= MAX_WINDOW;
    if (!segment.MoreFollows)
        return Acknowledge(Action::complete);
    return Minus(m_last, m_acked) >= m_window ? Acknowledge(Action::ack) : Step{};
}

Reassembly::Step Reassembly::Ahead(std::uint8_t distance) {
    const bool samePass = m_gap && distance >= m_gapReach;
    m_gapReach = distance;
    if (samePass)
        return {};
    m_gap = true;
    return Acknowledge(Action::negative_ack);
}

Reassembly::Step Reassembly::Behind(const Apdu& segment, AnswerBuffer& answer) {
    const std::uint8_t sequence = segment.SequenceNumber;
    // One may be a repetition that was late.
    if (sequence == 0 && m_last != 0 && !m_turned && ++m_beginnings == NEW_BEGINNING) {
        Begin(m_ownWindow);
        answer.Clear();
        return Start(segment, answer);
    }
    m_duplicates = static_cast<std::uint8_t>(std::min<unsigned>(m_duplicates + 1U, 255U));
    if (sequence != m_last)
        return {};
    // The end of a repeated window. Our acknowledgement was lost if we gave one there; if not, the device stops short
    // of the window that it proposed, which a single repetition does not yet show.
    if (m_last == m_acked || m_duplicates >= 2)
        return Acknowledge(Action::ack);
    return {};
}

Reassembly::Step Reassembly::Acknowledge(Action action) {
    m_acked = m_last;
    m_duplicates = 0;
    return {action, m_last, m_window, 0};
}

} // namespace bacnet
