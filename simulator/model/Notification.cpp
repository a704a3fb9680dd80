#include "simulator/model/Notification.h"

namespace sim {

namespace {

constexpr std::size_t HEAD = 256;        // octets that all but text and values take, at most
constexpr std::size_t MAX_VALUES = 2048; // octets

} // namespace

std::string EncodeValues(std::uint32_t type, const std::function<void(bacnet::Writer&)>& put) {
    std::string octets(MAX_VALUES, '\0');
    bacnet::Writer to({reinterpret_cast<std::uint8_t*>(octets.data()), octets.size()});
    to.Opening(type);
    put(to);
    to.Closing(type);
    octets.resize(to.Overflow() ? 0 : to.Size());
    return octets;
}

std::string Encode(const Notification& notification) {
    std::string octets(HEAD + notification.Text.size() + notification.Values.size(), '\0');
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
    const bool isAck = notification.NotifyType == NOTIFY_ACK;
    if (!isAck) {
        to.Boolean(notification.AckRequired, 9);
        to.Enumerated(notification.From, 10);
    }
    to.Enumerated(notification.To, 11);
    if (!isAck && !notification.Values.empty()) {
        to.Opening(12);
        to.Octets({reinterpret_cast<const std::uint8_t*>(notification.Values.data()), notification.Values.size()});
        to.Closing(12);
    }
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
