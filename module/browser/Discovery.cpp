#include "module/browser/Discovery.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "api/bacnet/Log.h"
#include "base/NumberText.h"

#include <algorithm>

namespace {

std::uint32_t NumberOr(const std::string& text, std::uint32_t limit, std::uint32_t otherwise) {
    const auto number = ParseU32(text);
    return number && *number <= limit ? *number : otherwise;
}

std::string TextOf(const BACSTAC_ADDRESS& address) {
    std::string text;
    CBACnetDir::AddrToStr(address, text);
    return text;
}

} // namespace

void CDiscovery::SetNetwork(const std::string& text) {
    m_network = static_cast<std::uint16_t>(NumberOr(text, BACSTAC_ALL_NETWORKS, BACSTAC_ALL_NETWORKS));
    if (m_network == m_ownNetwork)
        m_network = 0;
}

void CDiscovery::SetLowLimit(const std::string& text) {
    m_low = NumberOr(text, BACSTAC_MAX_INSTANCE, 0);
}

void CDiscovery::SetHighLimit(const std::string& text) {
    m_high = NumberOr(text, BACSTAC_MAX_INSTANCE, BACSTAC_MAX_INSTANCE);
}

BACSTAC_STATUS CDiscovery::SendWhoIs() {
    BACSTAC_ADDRESS destination{};
    destination.Remote = m_network != 0 ? 1 : 0;
    destination.Network = m_network;
    return m_bacnet.WhoIs(destination, m_low, m_high);
}

void CDiscovery::TakeIAm(BACSTAC_ADDRESS address, unsigned device) {
    std::string line =
        "IAM: device " + std::to_string(device) + ", network " + std::to_string(address.Network) + ", address ";
    for (int i = 0; i < std::min<int>(address.MacLength, sizeof address.Mac); ++i)
        line += std::to_string(address.Mac[i]) + ", ";
    LogInf("%s", line.c_str());
    if (address.Network == m_ownNetwork) { // local, however it is reached
        address.Remote = 0;
        address.Network = 0;
    }
    const auto [answer, isNew] = m_answers.try_emplace(device, address);
    if (!isNew && answer->second != address)
        m_rivals[device] = answer->second;
    answer->second = address;
}

bool CDiscovery::Passes(unsigned device, const BACSTAC_ADDRESS& address) const {
    return (m_network == BACSTAC_ALL_NETWORKS || m_network == address.Network) && device >= m_low && device <= m_high;
}

std::vector<CDiscovery::Row> CDiscovery::GetRows() const {
    std::vector<Row> rows;
    for (const auto& [device, address] : m_answers) {
        if (!Passes(device, address))
            continue;
        const auto rival = m_rivals.find(device);
        rows.push_back({device, address.Network == 0 ? m_ownNetwork : address.Network, TextOf(address),
                        !m_unticked.contains(device), rival == m_rivals.end() ? "" : TextOf(rival->second)});
    }
    return rows;
}

void CDiscovery::SetTicked(unsigned device, bool isTicked) {
    if (isTicked)
        m_unticked.erase(device);
    else
        m_unticked.insert(device);
}

DeviceAddresses CDiscovery::GetPicked(const std::vector<Row>& shown) const {
    DeviceAddresses picked;
    for (const Row& row : shown)
        if (const auto answer = m_answers.find(row.device);
            answer != m_answers.end() && !m_unticked.contains(row.device))
            picked.insert(*answer);
    return picked;
}
