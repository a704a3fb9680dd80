#include "module/console/Networks.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Log.h"
#include "module/console/Manager.h"
#include "module/console/Messages.h"

void SwitchNetwork(CBacGeneral& bacnet, bool enable, std::uint16_t network) {
    // The words "by trigger tag" stand here also when an operator pressed the button: both take this path.
    const unsigned long number = network;
    if (enable) {
        LogDebugInfo("BACnet: Info, VPIQLBCN, Enabling network %lu by trigger tag", number);
        bacnet.EnableNetwork(network);
    } else {
        LogDebugInfo("BACnet: Info, VPIQLBCN, Disabling network %lu by trigger tag", number);
        bacnet.DisableNetwork(network);
    }
}

void RegisterNetworkTriggers(CBDCManager& manager, const std::map<std::uint16_t, std::string>& networkTags) {
    for (const auto& [network, tag] : networkTags) {
        const std::string name = "EnableNetwork-" + std::to_string(network);
        manager.RegisterTriggerTag(name.c_str(), tag.c_str(), WM_CONSOLE_NETWORK, network);
    }
}
