#include "host/bacnet/IAmCollector.h"

#include <algorithm>
#include <iterator>
#include <tuple>

bool CIAmCollector::Before::operator()(const Announcement& left, const Announcement& right) const {
    const BACSTAC_ADDRESS& a = left.second;
    const BACSTAC_ADDRESS& b = right.second;
    if (std::tie(left.first, a.Network, a.MacLength) != std::tie(right.first, b.Network, b.MacLength))
        return std::tie(left.first, a.Network, a.MacLength) < std::tie(right.first, b.Network, b.MacLength);
    return std::lexicographical_compare(std::begin(a.Mac), std::end(a.Mac), std::begin(b.Mac), std::end(b.Mac));
}

CIAmCollector::CIAmCollector(CBacGeneral& bacnet) : m_bacnet(bacnet), m_handle(bacnet.RegisterIAMCallback(this)) {}

CIAmCollector::~CIAmCollector() {
    m_bacnet.UnregisterIAMCallback(m_handle);
}

std::vector<CIAmCollector::Announcement> CIAmCollector::Devices() const {
    const std::lock_guard lock(m_lock);
    return {m_devices.begin(), m_devices.end()};
}

void CIAmCollector::OnIAm(BACSTAC_ADDRESS const& address, unsigned const& deviceInstance) {
    constexpr std::size_t ENOUGH = 200000; // of a flood
    const std::lock_guard lock(m_lock);
    if (m_devices.size() < ENOUGH)
        m_devices.emplace(deviceInstance, address);
}
