#include "platform/stack/client/PeerTraits.h"

#include <algorithm>
#include <mutex>

namespace bacnet {

namespace {

constexpr unsigned successesBeforeTrial = 16;

} // namespace

const PeerTraits::Traits* PeerTraits::Find(const BACSTAC_ADDRESS& address) const {
    const auto found = m_traits.find(address);
    if (found == m_traits.end() || m_clock.Now() - found->second.LearnedAt >= LIFETIME_MS)
        return nullptr;
    return &found->second;
}

PeerTraits::Traits& PeerTraits::Learn(const BACSTAC_ADDRESS& address) {
    if (Find(address) == nullptr)
        m_traits.erase(address); // what was known is out of date
    if (m_traits.size() >= MAX_PEERS && !m_traits.contains(address))
        m_traits.erase(std::min_element(m_traits.begin(), m_traits.end(), [](const auto& a, const auto& b) {
            return a.second.LearnedAt < b.second.LearnedAt;
        }));
    Traits& traits = m_traits[address];
    traits.LearnedAt = m_clock.Now();
    traits.Successes = 0;
    return traits;
}

unsigned PeerTraits::MultipleReadLimit(const BACSTAC_ADDRESS& address) const {
    const std::shared_lock lock(m_lock);
    const Traits* const traits = Find(address);
    return traits == nullptr ? UNLIMITED : traits->Limit;
}

void PeerTraits::SetNoMultipleRead(const BACSTAC_ADDRESS& address) {
    const std::unique_lock lock(m_lock);
    Learn(address).Limit = 0;
}

void PeerTraits::MultipleReadFailed(const BACSTAC_ADDRESS& address, unsigned count) {
    const std::unique_lock lock(m_lock);
    Traits& traits = Learn(address);
    traits.Limit = std::min(traits.Limit, std::max(count / 2, 1U));
}

void PeerTraits::MultipleReadWorked(const BACSTAC_ADDRESS& address, unsigned count) {
    {
        const std::shared_lock lock(m_lock);
        const Traits* const traits = Find(address);
        if (traits == nullptr || count < traits->Limit || traits->Limit == 0)
            return;
    }
    const std::unique_lock lock(m_lock);
    const auto found = m_traits.find(address);
    if (found == m_traits.end())
        return;
    Traits& traits = found->second;
    if (traits.Limit == 0 || traits.Limit == UNLIMITED || ++traits.Successes < successesBeforeTrial)
        return;
    traits.Successes = 0;
    traits.Limit = traits.Limit > UNLIMITED / 2 ? UNLIMITED : traits.Limit * 2;
}

std::optional<RequestLimits> PeerTraits::Limits(const BACSTAC_ADDRESS& address) const {
    const std::shared_lock lock(m_lock);
    const Traits* const traits = Find(address);
    return traits == nullptr ? std::nullopt : traits->Requests;
}

void PeerTraits::SetLimits(const BACSTAC_ADDRESS& address, const RequestLimits& limits) {
    const std::unique_lock lock(m_lock);
    Learn(address).Requests = limits;
}

void PeerTraits::Forget(const BACSTAC_ADDRESS& address) {
    {
        const std::shared_lock lock(m_lock); // nearly always nothing is known
        if (!m_traits.contains(address))
            return;
    }
    const std::unique_lock lock(m_lock);
    m_traits.erase(address);
}

std::size_t PeerTraits::Count() const {
    const std::shared_lock lock(m_lock);
    return m_traits.size();
}

} // namespace bacnet
