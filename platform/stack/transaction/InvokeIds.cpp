#include "platform/stack/transaction/InvokeIds.h"

namespace bacnet {

bool InvokeIds::Take(Millis now, std::uint8_t& id) {
    while (!m_resting.empty() && m_resting.front().Until <= now) {
        m_taken.reset(m_resting.front().Id);
        m_resting.pop_front();
    }
    for (std::size_t i = 0; i < COUNT; ++i) {
        const auto candidate = static_cast<std::uint8_t>(m_next + i);
        if (!m_taken.test(candidate)) {
            m_taken.set(candidate);
            m_next = static_cast<std::uint8_t>(candidate + 1);
            id = candidate;
            return true;
        }
    }
    return false;
}

void InvokeIds::Free(std::uint8_t id, Millis now, Millis restUntil) {
    if (restUntil <= now)
        m_taken.reset(id);
    else
        m_resting.push_back({restUntil, id});
}

} // namespace bacnet
