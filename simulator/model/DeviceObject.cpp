#include "simulator/model/DeviceObject.h"

#include <utility>

namespace sim {

namespace {

constexpr BACSTAC_PROPERTY_ID COMPUTED[] = {PROP_OBJECT_LIST, PROP_LOCAL_TIME, PROP_LOCAL_DATE};

} // namespace

DeviceObject::DeviceObject(BACSTAC_OBJECT_ID id, std::function<LocalTime()> clock,
                           std::function<const std::vector<BACSTAC_OBJECT_ID>&()> objectList)
    : Object(id), m_clock(std::move(clock)), m_objectList(std::move(objectList)) {}

std::optional<PropertyError> DeviceObject::Compute(BACSTAC_PROPERTY_ID property, std::uint32_t index,
                                                   bacnet::Writer& to) const {
    switch (property) {
    case PROP_OBJECT_LIST: {
        const auto& list = m_objectList();
        return ReadArray(static_cast<std::uint32_t>(list.size()), index, to,
                         [&list](bacnet::Writer& out, std::uint32_t i) { out.ObjectId(list[i]); });
    }
    case PROP_LOCAL_TIME:
    case PROP_LOCAL_DATE: {
        if (index != WHOLE)
            return NOT_AN_ARRAY;
        const BACSTAC_DATE_TIME now = ToDateTime(m_clock());
        if (property == PROP_LOCAL_TIME)
            to.Time(now.Time);
        else
            to.Date(now.Date);
        return PropertyError{};
    }
    default:
        return std::nullopt;
    }
}

std::span<const BACSTAC_PROPERTY_ID> DeviceObject::Computed() const {
    return COMPUTED;
}

} // namespace sim
