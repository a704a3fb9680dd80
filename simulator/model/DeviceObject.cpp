#include "simulator/model/DeviceObject.h"

#include "simulator/model/Device.h"

#include <algorithm>

namespace sim {

namespace {

// The last one is that of devices with a backup procedure.
constexpr BACSTAC_PROPERTY_ID COMPUTED[] = {PROP_OBJECT_LIST,
                                            PROP_LOCAL_TIME,
                                            PROP_LOCAL_DATE,
                                            PROP_SYSTEM_STATUS,
                                            PROP_ACTIVE_COV_SUBSCRIPTIONS,
                                            PROP_BACKUP_AND_RESTORE_STATE};

} // namespace

std::optional<PropertyError> DeviceObject::Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                                   bacnet::Writer& to) const {
    if (property == PROP_OBJECT_LIST) {
        const auto& list = m_device.Objects();
        return ReadArray(static_cast<std::uint32_t>(list.size()), index, to,
                         [&list](bacnet::Writer& out, std::uint32_t i) { out.ObjectId(list[i]); });
    }
    const auto computed = Computed();
    if (std::find(computed.begin(), computed.end(), property) == computed.end())
        return std::nullopt;
    if (index != WHOLE)
        return NOT_AN_ARRAY;
    switch (property) {
    case PROP_LOCAL_TIME:
        to.Time(ToDateTime(m_device.Now()).Time);
        break;
    case PROP_LOCAL_DATE:
        to.Date(ToDateTime(m_device.Now()).Date);
        break;
    case PROP_ACTIVE_COV_SUBSCRIPTIONS:
        m_device.Cov().Write(to);
        break;
    case PROP_SYSTEM_STATUS:
        to.Enumerated(m_device.SystemStatus());
        break;
    default:
        to.Enumerated(static_cast<std::uint32_t>(m_device.Backup().GetState(m_device.Uptime())));
        break;
    }
    return PropertyError{};
}

std::span<const BACSTAC_PROPERTY_ID> DeviceObject::Computed() const {
    return std::span(COMPUTED).first(std::size(COMPUTED) - (m_device.Config().Backup ? 0 : 1));
}

} // namespace sim
