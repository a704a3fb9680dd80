// References from one object of a device to a property of another (BACnetDeviceObjectPropertyReference and
// BACnetObjectPropertyReference, clause 21). Any thread; no state.
#pragma once

#include "platform/stack/codec/Reader.h"
#include "simulator/model/Object.h"

#include <optional>

namespace sim {

// The members of either form, as far as they are there; nothing when they are not encoded right.
inline std::optional<BACSTAC_DEV_OBJ_PROP_REF> ReadReference(bacnet::Reader& in) {
    enum Tag { object, property, index, device };
    BACSTAC_DEV_OBJ_PROP_REF reference{};
    reference.ArrayIndex = WHOLE;
    if (!in.ObjectId(reference.ObjectId, object) || !in.Enumerated(reference.Property, property))
        return std::nullopt;
    if (in.IsContext(index))
        in.Unsigned(reference.ArrayIndex, index);
    if (in.IsContext(device))
        reference.DevicePresent = in.ObjectId(reference.DeviceId, device) ? 1 : 0;
    return in.Ok() ? std::optional(reference) : std::nullopt;
}

inline std::optional<BACSTAC_DEV_OBJ_PROP_REF> ReadReference(std::span<const std::uint8_t> octets) {
    bacnet::Reader in(octets);
    return ReadReference(in);
}

} // namespace sim
