// A device that holds one object of every type, with every property that the standard gives the type: whatever can be
// read can be read from it. Event enrollments show all forms of event parameters.
#pragma once

#include "simulator/Config.h"

namespace sim {

DeviceConfig MuseumDevice(std::uint32_t instance);

// Instance of the event enrollment that shows the parameters of an event type.
inline constexpr std::uint32_t EnrollmentOf(std::uint32_t eventType) {
    return 100 + eventType;
}

} // namespace sim
