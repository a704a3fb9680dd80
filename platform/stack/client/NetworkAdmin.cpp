#include "platform/stack/client/NetworkAdmin.h"

#include "platform/stack/network/NetworkLayer.h"
#include "platform/stack/transport/BipPort.h"

namespace bacnet {

namespace {

std::string MacText(const MacAddress& mac) {
    BipAddress address;
    if (FromMac(mac, address))
        return ToString(address);
    constexpr const char* digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t octet : mac.Octets()) {
        text += digits[octet >> 4];
        text += digits[octet & 0x0F];
    }
    return text;
}

} // namespace

std::vector<PortStatus> NetworkAdmin::Ports() const {
    std::vector<PortStatus> result;
    for (std::size_t i = 0; i < m_ports.size(); ++i) {
        const NetworkNumber number = m_network.NumberOf(static_cast<std::uint8_t>(i));
        PortStatus status;
        status.Network = number.Configured;
        status.ToldNetwork = number.Told;
        if (BipPort* const port = m_ports[i]) {
            status.Address = ToString(port->LocalAddress());
            status.BroadcastAddress = ToString(port->BroadcastAddress());
            status.Broadcasting = port->Broadcasting();
            status.Malformed = port->Counters().Malformed.Value() + port->Counters().Truncated.Value();
            status.Refused = port->Counters().Results.Value();
        }
        result.push_back(std::move(status));
    }
    return result;
}

std::vector<RouterStatus> NetworkAdmin::Routers() const {
    std::vector<RouterStatus> result;
    for (const RouterEntry& entry : m_network.Routers())
        result.push_back(
            {entry.Network, entry.Port, MacText(entry.Router), entry.Announced, entry.BusyUntil != 0, entry.MaxApdu});
    return result;
}

void NetworkAdmin::AskForRouters() {
    m_network.AskForRouters();
}

BroadcastTables NetworkAdmin::ReadBroadcastTables(std::size_t port, const BipAddress& address,
                                                  std::chrono::milliseconds wait) const {
    BroadcastTables tables;
    if (port >= m_ports.size() || m_ports[port] == nullptr)
        return tables;
    tables.DistributionRead = m_ports[port]->ReadTable(address, tables.Distribution, wait);
    tables.ForeignRead = m_ports[port]->ReadTable(address, tables.Foreign, wait);
    return tables;
}

const char* ToString(TableRead read) {
    switch (read) {
    case TableRead::done:
        return "done";
    case TableRead::refused:
        return "refused: it is no broadcast management device";
    case TableRead::silent:
        return "no answer";
    case TableRead::failed:
        return "failed";
    }
    return "?";
}

} // namespace bacnet
