// What a device with quirks makes of its answers. The caller holds the device's lock.
#pragma once

#include "platform/stack/codec/Writer.h"
#include "platform/stack/services/ReadProperty.h"
#include "simulator/model/Device.h"

namespace sim {

// Reads a property as the device does with its quirks; without any as the object has it.
PropertyError ReadOf(Device& device, const Object& object, const bacnet::PropertyTarget& target, bacnet::Writer& to);

// What a device with lying counts says instead of a count.
inline std::uint32_t Told(const Device& device, std::uint32_t count) {
    constexpr std::uint32_t LIE = 3;
    return device.GetQuirks().LyingCounts ? count + LIE : count;
}

} // namespace sim
