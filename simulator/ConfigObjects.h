// The objects of a device in a description of a simulation, with their logs, files and events. Any thread; no state.
#pragma once

#include "simulator/Config.h"
#include "simulator/ConfigTable.h"

namespace sim {

// Takes the keys of [[device.object]] and adds the object to the device.
void ReadObject(ConfigTable& table, DeviceConfig& device);

} // namespace sim
