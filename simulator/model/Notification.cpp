#include "simulator/model/Notification.h"

namespace sim {

namespace {

constexpr std::uint32_t CHANGE_OF_STATE = 1;
constexpr std::uint32_t OUT_OF_RANGE = 5;
constexpr unsigned EVENT_VALUES = 12; // context tag

BACSTAC_BIT_STRING InAlarm(bool on) {
    BACSTAC_BIT_STRING flags{};
    flags.BitCount = 4;
    flags.Bits[0] = on ? 1 : 0;
    return flags;
}

void PutValues(const Notification& notification, bacnet::Writer& to) {
    const BACSTAC_BIT_STRING flags = InAlarm(notification.To != EVENT_NORMAL);
    if (notification.Type == CHANGE_OF_STATE) {
        to.Opening(EVENT_VALUES);
        to.Opening(CHANGE_OF_STATE);
        to.Opening(0);
        to.Enumerated(notification.To != EVENT_NORMAL ? 1 : 0, 1); // binary-value
        to.Closing(0);
        to.BitString(flags, 1);
        to.Closing(CHANGE_OF_STATE);
        to.Closing(EVENT_VALUES);
    } else if (notification.Type == OUT_OF_RANGE) {
        to.Opening(EVENT_VALUES);
        to.Opening(OUT_OF_RANGE);
        to.Real(61.0F, 0);
        to.BitString(flags, 1);
        to.Real(1.0F, 2);
        to.Real(60.0F, 3);
        to.Closing(OUT_OF_RANGE);
        to.Closing(EVENT_VALUES);
    }
}

} // namespace

std::string Encode(const Notification& notification) {
    std::string octets(256 + notification.Text.size(), '\0');
    bacnet::Writer to({reinterpret_cast<std::uint8_t*>(octets.data()), octets.size()});
    const BACSTAC_DATE_TIME time = ToDateTime(notification.Time);
    to.Unsigned(notification.Process, 0);
    to.ObjectId(notification.Device, 1);
    to.ObjectId(notification.Object, 2);
    to.Opening(3);
    to.Opening(2);
    to.Date(time.Date);
    to.Time(time.Time);
    to.Closing(2);
    to.Closing(3);
    to.Unsigned(notification.Class, 4);
    to.Unsigned(notification.Priority, 5);
    to.Enumerated(notification.Type, 6);
    if (!notification.Text.empty())
        to.CharacterString(notification.Text, 7);
    to.Enumerated(notification.NotifyType, 8);
    to.Boolean(notification.AckRequired, 9);
    to.Enumerated(notification.From, 10);
    to.Enumerated(notification.To, 11);
    PutValues(notification, to);
    octets.resize(to.Size());
    return octets;
}

LogRecord ToRecord(const Notification& notification) {
    LogRecord record;
    record.Time = notification.Time;
    record.Data.push_back(LogDatum::AnyValue(Encode(notification)));
    return record;
}

} // namespace sim
