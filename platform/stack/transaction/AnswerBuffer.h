// Room for the service parameters of one answer. An answer in one piece lies inside the object itself, so that the
// usual call allocates nothing; a segmented one grows on the heap up to a limit. Lives on the caller's stack or in a
// pool, and may be used for one call after another: the heap memory is kept.
//
// Owned by the caller, written by whichever thread receives while the call is pending, read after it ended.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <span>

namespace bacnet {

class AnswerBuffer {
public:
    static constexpr std::size_t INLINE_SIZE = 1536;
    static constexpr std::size_t DEFAULT_LIMIT = 4 * 1024 * 1024;

    explicit AnswerBuffer(std::size_t limit = DEFAULT_LIMIT) : m_limit(limit) {}
    AnswerBuffer(const AnswerBuffer&) = delete;
    AnswerBuffer& operator=(const AnswerBuffer&) = delete;

    std::span<const std::uint8_t> Octets() const { return {Data(), m_size}; }
    std::size_t Size() const { return m_size; }
    std::size_t Limit() const { return m_limit; }

    void Clear() { m_size = 0; }
    // False, and nothing changed, when the limit would be passed or memory is out.
    bool Append(std::span<const std::uint8_t> octets) {
        if (octets.size() > m_limit - m_size)
            return false;
        if (m_size + octets.size() > Capacity() && !Grow(m_size + octets.size()))
            return false;
        if (!octets.empty())
            std::memcpy(Data() + m_size, octets.data(), octets.size());
        m_size += octets.size();
        return true;
    }

private:
    std::uint8_t* Data() { return m_heap ? m_heap.get() : m_inline; }
    const std::uint8_t* Data() const { return m_heap ? m_heap.get() : m_inline; }
    std::size_t Capacity() const { return m_heap ? m_heapSize : INLINE_SIZE; }
    bool Grow(std::size_t needed) {
        const std::size_t size = std::max(needed, 2 * Capacity());
        std::unique_ptr<std::uint8_t[]> grown(new (std::nothrow) std::uint8_t[size]);
        if (!grown)
            return false;
        std::memcpy(grown.get(), Data(), m_size);
        m_heap = std::move(grown);
        m_heapSize = size;
        return true;
    }

    std::size_t m_size = 0;
    std::size_t m_limit;
    std::size_t m_heapSize = 0;
    std::unique_ptr<std::uint8_t[]> m_heap;
    std::uint8_t m_inline[INLINE_SIZE]; // uninitialised
};

} // namespace bacnet
