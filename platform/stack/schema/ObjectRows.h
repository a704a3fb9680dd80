// What the tables of object types are made of: rows, blocks of rows that many types share, and the joining of blocks.
// For ObjectTypes.cpp and the tables it includes.
#pragma once

#include "api/bacnet/Enums.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/PropertyTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace bacnet::rows {

// Conformance codes of the standard's property tables.
enum Conformance : std::uint8_t { O, R, W };

constexpr PropertyInfo Row(std::string_view name, BACSTAC_DATA_TYPE type, PropertyShape shape, Conformance code) {
    return {PropertyId(name), type, shape, code != O, code == W};
}
constexpr PropertyInfo One(std::string_view name, BACSTAC_DATA_TYPE type, Conformance code) {
    return Row(name, type, PropertyShape::single, code);
}
constexpr PropertyInfo List(std::string_view name, BACSTAC_DATA_TYPE type, Conformance code) {
    return Row(name, type, PropertyShape::list, code);
}
constexpr PropertyInfo Array(std::string_view name, BACSTAC_DATA_TYPE type, Conformance code) {
    return Row(name, type, PropertyShape::array, code);
}

// All rows of some blocks, ascending by number.
template <std::size_t... Counts>
constexpr auto Join(const PropertyInfo (&... blocks)[Counts]) {
    std::array<PropertyInfo, (Counts + ...)> all{};
    std::size_t count = 0;
    const auto add = [&](const PropertyInfo* rows, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i)
            all[count++] = rows[i];
    };
    (add(blocks, Counts), ...);
    std::sort(all.begin(), all.end(),
              [](const PropertyInfo& left, const PropertyInfo& right) { return left.Property < right.Property; });
    return all;
}

// Every object has these.
inline constexpr PropertyInfo COMMON[] = {
    One("object-identifier", TYPE_OBJECT_ID, R), One("object-name", TYPE_STRING, R),
    One("object-type", TYPE_ENUMERATED, R),      One("description", TYPE_STRING, O),
    Array("property-list", TYPE_ENUMERATED, R),  Array("tags", TYPE_NAME_VALUE, O),
    One("profile-location", TYPE_STRING, O),     One("profile-name", TYPE_STRING, O),
    One("audit-level", TYPE_ENUMERATED, O),      One("auditable-operations", TYPE_BIT_STRING, O),
};

// The state of inputs, outputs and whatever else has an event state of its own.
inline constexpr PropertyInfo STATUS[] = {
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("reliability", TYPE_ENUMERATED, O),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
};

// The state of the plain values, where only the flags are required.
inline constexpr PropertyInfo VALUE_STATUS[] = {
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, O),
    One("out-of-service", TYPE_BOOLEAN, O),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
};

// The state of objects that report nothing but faults.
inline constexpr PropertyInfo FAULT_STATUS[] = {
    One("status-flags", TYPE_BIT_STRING, O),
    One("event-state", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, O),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
};

// Reporting of faults and of events alike (clause 13.2.2).
inline constexpr PropertyInfo REPORTING[] = {
    One("notification-class", TYPE_UNSIGNED, O),         One("event-enable", TYPE_BIT_STRING, O),
    One("acked-transitions", TYPE_BIT_STRING, O),        One("notify-type", TYPE_ENUMERATED, O),
    Array("event-time-stamps", TYPE_TIME_STAMP, O),      Array("event-message-texts", TYPE_STRING, O),
    Array("event-message-texts-config", TYPE_STRING, O), One("event-detection-enable", TYPE_BOOLEAN, O),
};

// What reporting by an event algorithm adds.
inline constexpr PropertyInfo INHIBIT[] = {
    One("event-algorithm-inhibit", TYPE_BOOLEAN, O),
    One("event-algorithm-inhibit-ref", TYPE_OBJ_PROP_REF, O),
};
inline constexpr PropertyInfo DELAYS[] = {
    One("time-delay", TYPE_UNSIGNED, O),
    One("time-delay-normal", TYPE_UNSIGNED, O),
};

// Commanding by priority (clause 19.2), for types where it is required and where it is optional. The default has the
// type of the present value and stands there.
inline constexpr PropertyInfo COMMANDED[] = {
    Array("priority-array", TYPE_ANY, R),         One("current-command-priority", TYPE_ANY, R),
    One("value-source", TYPE_VALUE_SOURCE, O),    Array("value-source-array", TYPE_VALUE_SOURCE, O),
    One("last-command-time", TYPE_TIME_STAMP, O), Array("command-time-array", TYPE_TIME_STAMP, O),
    One("audit-priority-filter", TYPE_ANY, O),
};
inline constexpr PropertyInfo COMMANDABLE[] = {
    Array("priority-array", TYPE_ANY, O),         One("current-command-priority", TYPE_ANY, O),
    One("value-source", TYPE_VALUE_SOURCE, O),    Array("value-source-array", TYPE_VALUE_SOURCE, O),
    One("last-command-time", TYPE_TIME_STAMP, O), Array("command-time-array", TYPE_TIME_STAMP, O),
    One("audit-priority-filter", TYPE_ANY, O),
};

} // namespace bacnet::rows
