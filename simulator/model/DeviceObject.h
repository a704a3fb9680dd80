// The Device object (clause 12.11) of a simulated device: its object list, its clock and its state are computed. Not
// thread-safe: the device locks.
#pragma once

#include "simulator/model/Object.h"

namespace sim {

class Device;

class DeviceObject final : public Object {
public:
    // The device owns this object.
    explicit DeviceObject(BACSTAC_OBJECT_ID id, const Device& device) : Object(id), m_device(device) {}

protected:
    std::optional<PropertyError> Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                         bacnet::Writer& to) const override;
    std::span<const BACSTAC_PROPERTY_ID> Computed() const override;

private:
    const Device& m_device;
};

} // namespace sim
