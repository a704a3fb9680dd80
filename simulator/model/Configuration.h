// What a backup of a simulated device holds: the properties that clients can write, as text, one line each. Restoring
// it writes them back. Not thread-safe: the device locks.
#pragma once

#include "simulator/model/Object.h"

#include <functional>
#include <string>
#include <string_view>

namespace sim {

// The first line, by which a device knows its own configuration.
std::string ConfigurationHead(std::uint32_t instance);

// Adds the lines of one object.
void AppendConfiguration(const Object& object, std::string& text);

// Reads everything behind the first line and hands over each value; objects and properties may be unknown by now.
// False, and nothing was handed over, for text of any other form.
using ConfiguredValue = std::function<void(BACSTAC_OBJECT_ID, BACSTAC_PROPERTY_ID, Value)>;
bool ReadConfiguration(std::string_view text, std::uint32_t instance, const ConfiguredValue& take);

} // namespace sim
