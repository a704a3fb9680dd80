#include "platform/stack/transaction/SegmentSender.h"

#include <algorithm>

namespace bacnet {

namespace {

constexpr std::uint32_t MAX_WINDOW = 127;

} // namespace

void SegmentSender::Begin(std::span<const std::uint8_t> octets, std::size_t segmentSize, Millis quietMs) {
    *this = {};
    m_octets = octets;
    m_segmentSize = segmentSize;
    m_quietMs = quietMs;
    m_count = CountOf(octets.size(), segmentSize);
}

bool SegmentSender::Next(Segment& segment) {
    if (m_next >= std::min(m_count, m_base + m_window))
        return false;
    const std::size_t begin = m_next * m_segmentSize;
    segment.Sequence = static_cast<std::uint8_t>(m_next);
    segment.MoreFollows = m_next + 1 < m_count;
    segment.Octets = m_octets.subspan(begin, std::min(m_segmentSize, m_octets.size() - begin));
    ++m_next;
    m_sent = std::max(m_sent, m_next);
    return true;
}

SegmentSender::Step SegmentSender::OnAck(const Apdu& ack, Millis now) {
    // How many segments it acknowledges that were not before. An old one, of a former window, seems far ahead.
    const std::uint32_t taken = (ack.SequenceNumber - (m_base - 1)) & 0xFFU;
    if (taken > m_sent - m_base)
        return Step::ignored;
    // A repeated acknowledgement must not make us repeat the window, or each of its segments would make the device
    // repeat the acknowledgement.
    if (taken == 0 && (!ack.Negative || (m_reported && now < m_heedFrom)))
        return Step::ignored;
    m_heard = true;
    m_base += taken;
    m_next = m_base;
    // A size out of range is met with the nearest one that is in it.
    m_window = std::clamp<std::uint32_t>(ack.WindowSize, 1, MAX_WINDOW);
    m_reported = ack.Negative;
    m_heedFrom = now + m_quietMs;
    if (m_base == m_count)
        return Step::complete;
    return taken == 0 ? Step::resend : Step::send;
}

} // namespace bacnet
