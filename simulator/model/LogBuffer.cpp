#include "simulator/model/LogBuffer.h"

#include <algorithm>
#include <utility>

namespace sim {

LogBuffer::LogBuffer(std::uint32_t capacity, std::uint32_t initialTotal)
    : m_capacity(std::max(capacity, 1U)), m_base(initialTotal), m_begin(initialTotal), m_end(initialTotal),
      m_virtualEnd(initialTotal) {}

void LogBuffer::SetGenerator(RecordGenerator generator) {
    m_generator.emplace(std::move(generator));
}

void LogBuffer::MakeRoom() {
    while (m_end - m_begin > m_capacity) {
        if (m_begin >= m_virtualEnd)
            m_stored.pop_front();
        ++m_begin;
    }
}

void LogBuffer::Append(LogRecord record) {
    if (m_end > m_begin && record.Time < TimeAt(m_end - 1))
        m_ordered = false;
    m_stored.push_back(std::move(record));
    ++m_end;
    MakeRoom();
}

void LogBuffer::Generate(std::uint64_t count) {
    if (!m_generator)
        return;
    if (m_end == m_base + m_generated) {
        // Nothing else was ever appended: the records need not be stored.
        m_generated += count;
        m_end += count;
        m_virtualEnd = m_end;
        m_begin = std::max(m_begin, m_end > m_capacity ? m_end - m_capacity : 0);
        return;
    }
    for (; count > 0; --count) {
        LogRecord record;
        m_generator->Make(m_generated++, record);
        Append(std::move(record));
    }
}

void LogBuffer::Clear() {
    m_stored.clear();
    m_begin = m_end;
    m_ordered = true;
}

const LogRecord& LogBuffer::At(std::uint64_t index, LogRecord& scratch) const {
    if (index >= m_virtualEnd)
        return m_stored[index - std::max(m_begin, m_virtualEnd)];
    m_generator->Make(index - m_base, scratch);
    return scratch;
}

LocalTime LogBuffer::TimeAt(std::uint64_t index) const {
    if (index >= m_virtualEnd)
        return m_stored[index - std::max(m_begin, m_virtualEnd)].Time;
    return m_generator->TimeOf(index - m_base);
}

std::optional<std::uint64_t> LogBuffer::IndexOf(std::uint32_t sequence) const {
    if (sequence == 0 || m_begin == m_end)
        return std::nullopt;
    // Numbers are unique among the records held, since the ring is smaller than their range.
    const std::uint64_t newest = SequenceOf(m_end - 1);
    const std::uint64_t back = (newest + SEQUENCE_NUMBERS - sequence) % SEQUENCE_NUMBERS;
    if (back >= m_end - m_begin)
        return std::nullopt;
    return m_end - 1 - back;
}

std::uint64_t LogBuffer::FirstAfter(LocalTime reference) const {
    std::uint64_t low = m_begin;
    std::uint64_t high = m_end;
    if (!m_ordered) {
        while (low < high && TimeAt(low) <= reference)
            ++low;
        return low;
    }
    while (low < high) {
        const std::uint64_t middle = low + (high - low) / 2;
        if (TimeAt(middle) > reference)
            high = middle;
        else
            low = middle + 1;
    }
    return low;
}

std::optional<std::uint64_t> LogBuffer::LastBefore(LocalTime reference) const {
    std::uint64_t low = m_begin;
    std::uint64_t high = m_end; // records from here on are not before
    if (!m_ordered) {
        while (high > low && TimeAt(high - 1) >= reference)
            --high;
    } else {
        while (low < high) {
            const std::uint64_t middle = low + (high - low) / 2;
            if (TimeAt(middle) >= reference)
                high = middle;
            else
                low = middle + 1;
        }
    }
    if (high == m_begin)
        return std::nullopt;
    return high - 1;
}

} // namespace sim
