// One pattern over BACnet event notifications with the alarm that it raises. The driver keeps the ordered list and
// applies it; the console edits a copy. A plain record.
#pragma once

#include "api/driver/AlarmDefinition.h"

#include <cstdint>
#include <string>

inline constexpr std::int32_t EVENT_FILTER_ALL = -1; // any type, state or class

struct CEventFilter {
    std::string objectNameMask; // narrow text; empty matches all
    std::int32_t objectType = EVENT_FILTER_ALL;
    std::uint32_t priorityFrom = 0;
    std::uint32_t priorityTo = 255;
    std::int32_t eventType = EVENT_FILTER_ALL;
    std::int32_t eventState = EVENT_FILTER_ALL;
    std::int32_t notifyType = EVENT_FILTER_ALL;
    std::int32_t notificationClass = EVENT_FILTER_ALL;
    AlarmDefinition alarm;

    bool operator==(const CEventFilter&) const = default;
};
