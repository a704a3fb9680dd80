// Counts what came and was not used, or what happened. Any thread counts and any thread reads; nothing is ordered by
// it.
#pragma once

#include <atomic>
#include <cstdint>

namespace bacnet {

class Counter {
public:
    void Add() { m_value.fetch_add(1, std::memory_order_relaxed); }
    std::uint64_t Value() const { return m_value.load(std::memory_order_relaxed); }

private:
    std::atomic<std::uint64_t> m_value{0};
};

} // namespace bacnet
