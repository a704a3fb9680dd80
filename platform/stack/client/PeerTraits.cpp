#include "platform/stack/client/PeerTraits.h"

#include <algorithm>
#include <mutex>

namespace bacnet {

namespace {

constexpr unsigned successesBeforeTrial = 16;

} // namespace

unsigned PeerTraits::MultipleReadLimit(const BACSTAC_ADDRESS& address) const {
    const std::shared_lock lock(m_lock);
    const auto found = m_traits.find(address);
    return found == m_traits.end() ? UNLIMITED : found->second.Limit;
}

PeerTraits::Traits& PeerTraits::At(const BACSTAC_ADDRESS& address) {
    if (m_traits.size() >= MAX_PEERS && !m_traits.contains(address))
        m_traits.clear();
    return m_traits[address];
}

void PeerTraits::SetNoMultipleRead(const BACSTAC_ADDRESS& address) {
    const std::unique_lock lock(m_lock);
    At(address) = {0, 0};
}

void PeerTraits::MultipleReadFailed(const BACSTAC_ADDRESS& address, unsigned count) {
    const std::unique_lock lock(m_lock);
    Traits& traits = At(address);
    traits.Limit = std::min(traits.Limit, std::max(count / 2, 1U));
    traits.Successes = 0;
}

void PeerTraits::MultipleReadWorked(const BACSTAC_ADDRESS& address, unsigned count) {
    {
        const std::shared_lock lock(m_lock);
        const auto found = m_traits.find(address);
        if (found == m_traits.end() || count < found->second.Limit || found->second.Limit == 0)
            return;
    }
    const std::unique_lock lock(m_lock);
    Traits& traits = At(address);
    if (traits.Limit == 0 || traits.Limit == UNLIMITED || ++traits.Successes < successesBeforeTrial)
        return;
    traits.Limit = traits.Limit > UNLIMITED / 2 ? UNLIMITED : traits.Limit * 2;
    traits.Successes = 0;
}

} // namespace bacnet
