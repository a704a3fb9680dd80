// Event notifications, as event logs hold them (ConfirmedEventNotification-Request, clauses 13.8 and 21).
#pragma once

#include "simulator/model/Events.h"
#include "simulator/model/LogRecord.h"

#include <string>

namespace sim {

struct Notification {
    std::uint32_t Process = 0;
    BACSTAC_OBJECT_ID Device{};
    BACSTAC_OBJECT_ID Object{};
    LocalTime Time = 0;
    std::uint32_t Class = 0;
    std::uint32_t Priority = 255;
    std::uint32_t Type = 0; // BACnetEventType
    std::string Text;       // UTF-8; empty: none
    std::uint32_t NotifyType = 0;
    bool AckRequired = false;
    std::uint32_t From = EVENT_NORMAL;
    std::uint32_t To = EVENT_NORMAL;
};

// Its service parameters. Events of change-of-state and of out-of-range come with values.
std::string Encode(const Notification& notification);

// A record of an event log.
LogRecord ToRecord(const Notification& notification);

} // namespace sim
