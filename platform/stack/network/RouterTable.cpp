#include "platform/stack/network/RouterTable.h"

namespace bacnet {

bool RouterTable::Learn(std::uint16_t network, std::uint8_t port, const MacAddress& router) {
    RouterEntry& entry = m_entries[network];
    if (entry.Network == network && entry.Port == port && entry.Router == router)
        return false;
    entry = {network, port, router};
    return true;
}

bool RouterTable::Forget(std::uint16_t network, std::uint8_t port, const MacAddress& router) {
    const auto found = m_entries.find(network);
    if (found == m_entries.end() || found->second.Port != port || found->second.Router != router)
        return false;
    m_entries.erase(found);
    return true;
}

const RouterEntry* RouterTable::Find(std::uint16_t network) const {
    const auto found = m_entries.find(network);
    return found == m_entries.end() ? nullptr : &found->second;
}

std::vector<RouterEntry> RouterTable::List() const {
    std::vector<RouterEntry> result;
    result.reserve(m_entries.size());
    for (const auto& [network, entry] : m_entries)
        result.push_back(entry);
    return result;
}

} // namespace bacnet
