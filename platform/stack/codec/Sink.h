// Where decoded elements go: the records from the start of a buffer upwards, what they refer to from its end downwards,
// until the two meet. So one pass suffices, and what fits stays whole when the rest does not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace bacnet {

class Sink {
public:
    // State to go back to when an element turns out not to fit or not to be one.
    struct Mark {
        std::uint32_t Low;
        std::uint32_t High;
    };

    Sink(void* buffer, std::size_t size)
        : m_base(static_cast<std::uint8_t*>(buffer)),
          m_high(static_cast<std::uint32_t>(size < UINT32_MAX ? size : UINT32_MAX)) {}

    bool Full() const { return m_full; }
    std::uint8_t* Base() const { return m_base; }
    std::uint32_t Low() const { return m_low; }   // end of the records
    std::uint32_t High() const { return m_high; } // start of what they refer to

    // The next record, zeroed; null when it does not fit.
    std::uint8_t* Append(std::uint32_t size) {
        if (size > m_high - m_low)
            return Refuse();
        std::uint8_t* at = m_base + m_low;
        std::memset(at, 0, size);
        m_low += size;
        return at;
    }
    // The room between the two ends, for an element whose size is known only when it is written; Take keeps the first
    // size bytes of it.
    std::span<std::uint8_t> Gap() const { return {m_base + m_low, m_high - m_low}; }
    void Take(std::uint32_t size) { m_low += size; }
    // Memory for what a record refers to, zeroed, its offset a multiple of alignment; null when it does not fit.
    std::uint8_t* Behind(std::uint64_t size, std::uint32_t alignment, std::uint32_t& offset) {
        if (size > m_high - m_low)
            return Refuse();
        const std::uint32_t start = (m_high - static_cast<std::uint32_t>(size)) & ~(alignment - 1);
        if (start < m_low)
            return Refuse();
        m_high = start;
        offset = start;
        std::memset(m_base + start, 0, size);
        return m_base + start;
    }
    // Moves what was appended since mark behind the records, where a record can refer to it. offset is 0 when that is
    // nothing. False when it does not fit.
    bool MoveBehind(Mark mark, std::uint32_t& offset) {
        const std::uint32_t start = mark.Low;
        const std::uint32_t size = m_low - start;
        m_low = start;
        offset = 0;
        if (size == 0)
            return true;
        constexpr std::uint32_t alignment = 8;
        const std::uint32_t to = size <= m_high - start ? (m_high - size) & ~(alignment - 1) : 0;
        if (to < start || to == 0)
            return Refuse() != nullptr;
        std::memmove(m_base + to, m_base + start, size);
        m_high = to;
        offset = to;
        return true;
    }
    std::uint8_t* Refuse() {
        m_full = true;
        return nullptr;
    }
    Mark Position() const { return {m_low, m_high}; }
    void GoBack(Mark mark) {
        m_low = mark.Low;
        m_high = mark.High;
        m_full = false;
    }

private:
    std::uint8_t* m_base;
    std::uint32_t m_low = 0;
    std::uint32_t m_high;
    bool m_full = false;
};

} // namespace bacnet
