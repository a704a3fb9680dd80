#include "host/NetworkJson.h"

#include "api/bacnet/BacGeneral.h"

#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

namespace {

// "255.255.255.0"
std::string MaskText(std::uint32_t mask) {
    const std::string text = bacnet::ToString(bacnet::BipAddress{mask, 0});
    return text.substr(0, text.find(':'));
}

Json PortJson(const bacnet::PortStatus& port) {
    Json json{{"number", port.Network}, {"address", port.Address}};
    if (port.ToldNetwork != 0)
        json["toldNumber"] = port.ToldNetwork;
    json["enabled"] = BACnet == nullptr || BACnet->IsNetworkEnabled(port.Network);
    const bacnet::BroadcastStatus& broadcasting = port.Broadcasting;
    if (broadcasting.Foreign)
        json["foreign"] = {{"bbmd", bacnet::ToString(broadcasting.Foreign->Bbmd)},
                           {"ttl", broadcasting.Foreign->TimeToLive},
                           {"registration", bacnet::ToString(broadcasting.Registration)}};
    if (broadcasting.IsBbmd)
        json["bbmd"] = {{"table", TableJson(broadcasting.Table)},
                        {"foreignDevices", TableJson(broadcasting.ForeignDevices)}};
    return json;
}

} // namespace

Json PortsJson(const std::vector<bacnet::PortStatus>& ports) {
    Json list = Json::array();
    for (const bacnet::PortStatus& port : ports)
        list.push_back(PortJson(port));
    return list;
}

Json TableJson(const std::vector<bacnet::BdtEntry>& entries) {
    Json list = Json::array();
    for (const bacnet::BdtEntry& entry : entries)
        list.push_back({{"address", bacnet::ToString(entry.Address)}, {"mask", MaskText(entry.Mask)}});
    return list;
}

Json TableJson(const std::vector<bacnet::FdtEntry>& entries) {
    Json list = Json::array();
    for (const bacnet::FdtEntry& entry : entries)
        list.push_back(
            {{"address", bacnet::ToString(entry.Address)}, {"ttl", entry.TimeToLive}, {"remaining", entry.Remaining}});
    return list;
}
