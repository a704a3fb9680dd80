// Event notifications, as recipients get them and event logs hold them (ConfirmedEventNotification-Request,
// clauses 13.8 and 21).
#pragma once

#include "platform/stack/codec/Writer.h"
#include "simulator/model/Events.h"
#include "simulator/model/LogRecord.h"

#include <functional>
#include <string>

namespace sim {

inline constexpr std::uint32_t NOTIFY_ACK = 2; // BACnetNotifyType

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
    bool AckRequired = false; // of an acknowledgement neither this nor From and Values count
    std::uint32_t From = EVENT_NORMAL;
    std::uint32_t To = EVENT_NORMAL;
    std::string Values; // EncodeValues; empty: none
};

// The event values of that type, whose contents put writes.
std::string EncodeValues(std::uint32_t type, const std::function<void(bacnet::Writer&)>& put);

// Its service parameters.
std::string Encode(const Notification& notification);

// A record of an event log.
LogRecord ToRecord(const Notification& notification);

} // namespace sim
