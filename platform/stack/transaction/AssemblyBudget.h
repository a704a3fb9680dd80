// Memory that all segmented answers under way may take together, so that devices that send without end, or a thousand
// long answers at once, cost a bounded amount. Any thread; no lock.
#pragma once

#include <atomic>
#include <cstddef>

namespace bacnet {

class AssemblyBudget {
public:
    explicit AssemblyBudget(std::size_t limit) : m_limit(limit) {}
    AssemblyBudget(const AssemblyBudget&) = delete;
    AssemblyBudget& operator=(const AssemblyBudget&) = delete;

    // False, and nothing taken, when the limit would be passed.
    bool Take(std::size_t octets) {
        if (m_taken.fetch_add(octets, std::memory_order_relaxed) + octets <= m_limit)
            return true;
        Give(octets);
        return false;
    }
    void Give(std::size_t octets) { m_taken.fetch_sub(octets, std::memory_order_relaxed); }
    std::size_t Taken() const { return m_taken.load(std::memory_order_relaxed); }

private:
    const std::size_t m_limit;
    std::atomic<std::size_t> m_taken{0};
};

} // namespace bacnet
