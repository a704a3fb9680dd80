// Switching BACnet networks, by hand or by the control tags of the settings. Called on the console thread.
#pragma once

#include <cstdint>
#include <map>
#include <string>

class CBacGeneral;
class CBDCManager;

// Enables or disables a network; whether that worked shows in CBacGeneral::IsNetworkEnabled.
void SwitchNetwork(CBacGeneral& bacnet, bool enable, std::uint16_t network);

// Registers a trigger "EnableNetwork-<number>" for each control tag. A tag that is 0 switches its network off at once.
void RegisterNetworkTriggers(CBDCManager& manager, const std::map<std::uint16_t, std::string>& networkTags);
