#include "simulator/server/SegmentedAnswer.h"

#include <algorithm>

namespace sim {

SegmentedAnswer::Burst SegmentedAnswer::Start(std::span<const std::uint8_t> parameters, const Settings& settings) {
    m_settings = settings;
    m_octets.assign(parameters.begin(), parameters.end());
    m_count = static_cast<std::uint32_t>((m_octets.size() + settings.SegmentSize - 1) / settings.SegmentSize);
    m_base = 0;
    m_window = 1;
    m_retries = 0;
    m_state = State::sending;
    return Send(0);
}

SegmentedAnswer::Burst SegmentedAnswer::Send(std::uint32_t first) {
    m_sent = std::min(m_count, first + m_window);
    return {first, m_sent - first};
}

SegmentedAnswer::Burst SegmentedAnswer::OnAck(const bacnet::Apdu& ack) {
    if (m_state != State::sending)
        return {};
    if (ack.WindowSize == 0 || ack.WindowSize > 127) {
        m_state = State::failed;
        return {};
    }
    // Sequence numbers are modulo 256: the distance to the last segment acknowledged before.
    const std::uint32_t distance = (ack.SequenceNumber - (m_base - 1)) & 0xFF;
    if (distance > m_sent - m_base)
        return {}; // of another window: an old one, repeated
    if (distance == 0 && !ack.Negative)
        return {}; // acknowledged already
    m_window = ack.WindowSize;
    m_base += distance;
    if (distance > 0)
        m_retries = 0;
    if (m_base == m_count) {
        m_state = State::done;
        return {};
    }
    return Send(m_base);
}

SegmentedAnswer::Burst SegmentedAnswer::OnTimeout() {
    if (m_state != State::sending)
        return {};
    if (m_retries == m_settings.Retries) {
        m_state = State::failed;
        return {};
    }
    ++m_retries;
    return Send(m_base);
}

std::span<const std::uint8_t> SegmentedAnswer::Segment(std::uint32_t number) const {
    const std::size_t begin = number * m_settings.SegmentSize;
    const std::size_t end = std::min(m_octets.size(), begin + m_settings.SegmentSize);
    return {m_octets.data() + begin, end - begin};
}

} // namespace sim
