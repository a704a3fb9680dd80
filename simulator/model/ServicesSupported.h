// Protocol_Services_Supported (clause 12.11.13) of a simulated device.
#pragma once

#include "simulator/Config.h"

namespace sim {

Value ServicesSupported(const DeviceConfig& config);

} // namespace sim
