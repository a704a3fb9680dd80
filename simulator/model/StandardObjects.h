// Makes objects with the properties that the standard wants of their type (clause 12), and values that make sense.
#pragma once

#include "simulator/Config.h"
#include "simulator/model/Object.h"

#include <memory>

namespace sim {

// Any object type; one that the simulator knows nothing of gets name, identifier and type. Log types get their buffer.
std::unique_ptr<Object> MakeObject(const ObjectConfig& config);

// The stored properties of the device object; the others are computed by it.
void AddDeviceProperties(const DeviceConfig& config, Object& device);

// "Analog Input 3": the name of an object that was given none.
std::string DefaultName(BACSTAC_OBJECT_ID id);

} // namespace sim
