// An array whose capacity is set once and whose memory comes as it fills. An append beyond the capacity is dropped
// without a word: a device that answers with more than it was asked for changes nothing.
#pragma once

#include <cstddef>
#include <vector>

template <typename T>
class CFixedArray {
public:
    explicit CFixedArray(std::size_t capacity = 0) : m_capacity(capacity) {
        m_items.reserve(capacity < FIRST_ROOM ? capacity : FIRST_ROOM);
    }

    void Append(const T& item) {
        if (m_items.size() < m_capacity)
            m_items.push_back(item);
    }
    // Keeps the memory.
    void Clear() { m_items.clear(); }

    std::size_t GetCapacity() const { return m_capacity; }
    std::size_t GetSize() const { return m_items.size(); }
    bool IsFull() const { return m_items.size() >= m_capacity; }
    // Not null as long as the capacity is not 0.
    const T* GetData() const { return m_items.data(); }
    const T& operator[](std::size_t index) const { return m_items[index]; }

private:
    static constexpr std::size_t FIRST_ROOM = 64; // items

    std::size_t m_capacity;
    std::vector<T> m_items;
};
