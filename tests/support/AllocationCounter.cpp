#include "tests/support/AllocationCounter.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t t_count = 0;
thread_local std::size_t t_largest = 0;

void* TryAllocate(std::size_t size) {
    ++t_count;
    t_largest = std::max(t_largest, size);
    return std::malloc(std::max<std::size_t>(size, 1));
}

void* Allocate(std::size_t size) {
    if (void* memory = TryAllocate(size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

CAllocationCounter::CAllocationCounter() {
    t_count = 0;
    t_largest = 0;
}

std::size_t CAllocationCounter::GetCount() const {
    return t_count;
}

std::size_t CAllocationCounter::GetLargest() const {
    return t_largest;
}

void* operator new(std::size_t size) {
    return Allocate(size);
}
void* operator new[](std::size_t size) {
    return Allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return TryAllocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return TryAllocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
