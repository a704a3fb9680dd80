// The Device object (clause 12.11) of a simulated device: its object list and its clock are computed.
#pragma once

#include "simulator/model/Object.h"
#include "simulator/model/SimTime.h"

#include <functional>

namespace sim {

class DeviceObject final : public Object {
public:
    // Both functions are called under the device's lock and live as long as the device.
    DeviceObject(BACSTAC_OBJECT_ID id, std::function<LocalTime()> clock,
                 std::function<const std::vector<BACSTAC_OBJECT_ID>&()> objectList);

protected:
    std::optional<PropertyError> Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                         bacnet::Writer& to) const override;
    std::span<const BACSTAC_PROPERTY_ID> Computed() const override;

private:
    std::function<LocalTime()> m_clock;
    std::function<const std::vector<BACSTAC_OBJECT_ID>&()> m_objectList;
};

} // namespace sim
