#include "api/bacnet/PropertyValue.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// malloc, not new[]: a large block comes straight from the system and costs nothing until it is touched.
void* NewBuffer(unsigned size) {
    if (size == 0)
        return nullptr;
    void* buffer = std::malloc(size);
    if (buffer == nullptr)
        throw std::bad_alloc();
    return buffer;
}

constexpr std::size_t BLOCK_SIZE = 4096;

} // namespace

CPropertyContents::CPropertyContents(unsigned size, void const* data)
    : BACSTAC_PROPERTY_CONTENTS{-1, NewBuffer(size), size, 0} {
    if (data != nullptr && size != 0)
        std::memcpy(Buffer, data, size);
}

CPropertyContents::CPropertyContents(const CPropertyContents& other)
    : BACSTAC_PROPERTY_CONTENTS{other.DataType, NewBuffer(other.BufferSize), other.BufferSize, other.ElementCount} {
    if (BufferSize != 0)
        std::memcpy(Buffer, other.Buffer, BufferSize);
}

CPropertyContents& CPropertyContents::operator=(const CPropertyContents& other) {
    if (this != &other) {
        if (BufferSize != other.BufferSize) {
            void* buffer = NewBuffer(other.BufferSize);
            std::free(Buffer);
            Buffer = buffer;
            BufferSize = other.BufferSize;
        }
        if (BufferSize != 0)
            std::memcpy(Buffer, other.Buffer, BufferSize);
        DataType = other.DataType;
        ElementCount = other.ElementCount;
    }
    return *this;
}

CPropertyContents::~CPropertyContents() {
    std::free(Buffer);
}

CHeap::CHeap() = default;
CHeap::~CHeap() = default;

void* CHeap::Allocate(std::size_t size) {
    constexpr std::size_t unit = sizeof(std::max_align_t);
    const std::size_t units = (size + unit - 1) / unit;
    if (m_blocks.empty() || m_used + units > m_capacity) {
        m_capacity = std::max(units, BLOCK_SIZE / unit);
        m_blocks.push_back(std::make_unique<std::max_align_t[]>(m_capacity));
        m_used = 0;
    }
    void* memory = m_blocks.back().get() + m_used;
    m_used += units;
    return std::memset(memory, 0, units * unit); // max_align_t has padding, which value initialization leaves alone
}
