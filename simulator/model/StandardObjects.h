// Makes objects with the properties that the standard wants of their type (clause 12), and values that make sense.
#pragma once

#include "simulator/Config.h"
#include "simulator/model/Object.h"

#include <memory>

namespace sim {

// Any object type; one of the standard has at least what the standard requires, one of a vendor has name, identifier
// and type. Logs get their buffer, files their contents.
std::unique_ptr<Object> MakeObject(const ObjectConfig& config);

// Adds the properties that the standard gives the type, those it requires or all, where the object has none yet.
void AddDefaults(Object& object, bool all);

// The stored properties of the device object; the others are computed by it.
void AddDeviceProperties(const DeviceConfig& config, Object& device);

// "Analog Input 3": the name of an object that was given none.
std::string DefaultName(BACSTAC_OBJECT_ID id);

} // namespace sim
