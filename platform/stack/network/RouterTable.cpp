#include "platform/stack/network/RouterTable.h"

#include "platform/stack/network/Apdu.h"

namespace bacnet {

bool RouterTable::Learn(std::uint16_t network, std::uint8_t port, const MacAddress& router, bool announced) {
    if (RouterEntry* known = Of(network, port, router)) {
        known->Announced = known->Announced || announced;
        const bool wasBusy = announced && known->BusyUntil != 0;
        if (wasBusy)
            known->BusyUntil = 0;
        return wasBusy;
    }
    m_entries[network] = {network, port, router, announced};
    return true;
}

RouterEntry* RouterTable::Of(std::uint16_t network, std::uint8_t port, const MacAddress& router) {
    const auto found = m_entries.find(network);
    if (found == m_entries.end() || found->second.Port != port || found->second.Router != router)
        return nullptr;
    return &found->second;
}

bool RouterTable::Forget(std::uint16_t network, std::uint8_t port, const MacAddress& router) {
    if (Of(network, port, router) == nullptr)
        return false;
    m_entries.erase(network);
    return true;
}

bool RouterTable::SetBusy(std::uint16_t network, std::uint8_t port, const MacAddress& router, std::int64_t until) {
    RouterEntry* const entry = Of(network, port, router);
    if (entry != nullptr)
        entry->BusyUntil = until;
    return entry != nullptr;
}

bool RouterTable::SetAvailable(std::uint16_t network, std::uint8_t port, const MacAddress& router) {
    RouterEntry* const entry = Of(network, port, router);
    if (entry == nullptr || entry->BusyUntil == 0)
        return false;
    entry->BusyUntil = 0;
    return true;
}

bool RouterTable::Narrow(std::uint16_t network, std::uint8_t port, const MacAddress& router, std::int64_t now) {
    RouterEntry* const entry = Of(network, port, router);
    const std::uint8_t code = MaxApduToCode(entry != nullptr && entry->MaxApdu != 0 ? entry->MaxApdu : MAX_APDU_IP);
    if (entry == nullptr || code == 0 || (entry->MaxApdu != 0 && now - entry->NarrowedAt < NARROW_MS))
        return false;
    entry->NarrowedAt = now;
    entry->MaxApdu = MaxApduFromCode(static_cast<std::uint8_t>(code - 1));
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

std::vector<std::uint16_t> RouterTable::NetworksOf(std::uint8_t port, const MacAddress& router) const {
    std::vector<std::uint16_t> networks;
    for (const auto& [network, entry] : m_entries)
        if (entry.Port == port && entry.Router == router)
            networks.push_back(network);
    return networks;
}

} // namespace bacnet
