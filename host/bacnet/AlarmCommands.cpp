// alarms: what a device tells about its alarms by each of the three services.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/Requests.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/ValueJson.h"
#include "platform/stack/client/BacnetClient.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <iterator>

using Json = nlohmann::ordered_json;

namespace {

constexpr unsigned SUMMARIES = 4681; // that fit the buffer that a service fills at the most
constexpr unsigned EVENTS_IN_A_PAGE = 100;

std::string StampText(const BACSTAC_TIME_STAMP& stamp) {
    constexpr std::uint32_t TIME = 0;
    constexpr std::uint32_t SEQUENCE = 1;
    if (stamp.Choice == SEQUENCE)
        return "#" + std::to_string(stamp.SequenceNumber);
    if (stamp.Choice != TIME)
        return DateTimeText(stamp.DateTime);
    char text[32];
    CBacGeneral::PrintTime(text, sizeof text, stamp.Time);
    return text;
}

// The rows of one device, and which services it refused.
class CAlarmRows {
public:
    CAlarmRows(CBacnetCall& call, unsigned device) : m_call(call), m_device(device) {}

    bool AddAlarms() {
        std::vector<BACSTAC_ALARM_SUMMARY> summaries(SUMMARIES);
        unsigned count = 0;
        BACSTAC_ERROR error{};
        const BACSTAC_STATUS status =
            m_call.Stack().GetAlarmSummary(m_device, summaries.data(), SUMMARIES, &count, &error);
        if (!Tell("alarm-summary", status, error))
            return false;
        for (unsigned i = 0; status == BACSTAC_OK && i < count; ++i) {
            Json row = Head("alarm-summary", summaries[i].ObjectId, summaries[i].AlarmState);
            row["acked"] = BitsText(summaries[i].AckedTransitions, ENUM_EVENT_TRANSITION_BITS);
            if (!m_call.Row(row))
                return false;
        }
        return true;
    }

    bool AddEnrollments() {
        constexpr BACSTAC_ENROLLMENT_FILTER EVERYTHING{};
        std::vector<BACSTAC_ENROLLMENT_SUMMARY> summaries(SUMMARIES);
        unsigned count = 0;
        BACSTAC_ERROR error{};
        const BACSTAC_STATUS status =
            m_call.Stack().GetEnrollmentSummary(m_device, EVERYTHING, summaries.data(), SUMMARIES, &count, &error);
        if (!Tell("enrollment-summary", status, error))
            return false;
        for (unsigned i = 0; status == BACSTAC_OK && i < count; ++i) {
            const BACSTAC_ENROLLMENT_SUMMARY& summary = summaries[i];
            Json row = Head("enrollment-summary", summary.ObjectId, summary.EventState);
            row["event_type"] = CBacGeneral::GetEventTypeString(summary.EventType);
            row["priority"] = summary.Priority;
            row["notification_class"] =
                summary.NotificationClassPresent != 0 ? Json(summary.NotificationClass) : Json(nullptr);
            if (!m_call.Row(row))
                return false;
        }
        return true;
    }

    bool AddEvents() {
        class CEvents : public CEventInfoService {
        public:
            CEvents() : CEventInfoService(EVENTS_IN_A_PAGE) {}
            std::vector<BACSTAC_EVENT_SUMMARY> events;

        protected:
            void OnEvent(BACSTAC_EVENT_SUMMARY const& event) override { events.push_back(event); }
        };
        CEvents service;
        const BACSTAC_STATUS status = service.Call(m_device);
        if (!Tell("event-information", status, service.Error))
            return false;
        for (const BACSTAC_EVENT_SUMMARY& event : service.events) {
            Json row = Head("event-information", event.ObjectId, event.EventState);
            row["acked"] = BitsText(event.AckedTransitions, ENUM_EVENT_TRANSITION_BITS);
            row["notify_type"] = CBacGeneral::GetNotifyTypeString(event.NotifyType);
            row["enabled"] = BitsText(event.EventEnable, ENUM_EVENT_TRANSITION_BITS);
            row["times"] = {StampText(event.TimeStamps[0]), StampText(event.TimeStamps[1]),
                            StampText(event.TimeStamps[2])};
            row["priorities"] = event.Priorities;
            if (!m_call.Row(row))
                return false;
        }
        return true;
    }

    ControlReply Reply() const { return m_call.DonePartly(m_services, m_refused, {{"device", m_device}}); }

private:
    Json Head(const char* service, const BACSTAC_OBJECT_ID& object, std::uint32_t state) const {
        return {
            {"service", service}, {"object", ObjectName(object)}, {"state", CBacGeneral::GetEventStateString(state)}};
    }

    // A service that the device refuses is a row with the reason.
    bool Tell(const char* service, BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
        if (status == BACSTAC_OK) {
            ++m_services;
            return true;
        }
        ++m_refused;
        if (status < BACSTAC_STATUS_ERROR) // silent: it is not asked again
            return m_call.Succeeded(status, error, DeviceName(m_device));
        return m_call.Row({{"service", service}, {"error", CBacGeneral::GetErrorText(status, &error)}});
    }

    CBacnetCall& m_call;
    const unsigned m_device;
    std::size_t m_services = 0;
    std::size_t m_refused = 0;
};

ControlReply Alarms(CBacnetCall& call) {
    unsigned device = 0;
    if (!call.TakeDevice(device))
        return call.Failure();
    CAlarmRows rows(call, device);
    const std::string service = call.Text("service");
    if (!service.empty() && service != "alarm-summary" && service != "enrollment-summary" &&
        service != "event-information")
        return call.Refuse("\"" + service + "\" is not one of alarm-summary, enrollment-summary, event-information"),
               call.Failure();
    const auto isWanted = [&](const char* name) { return service.empty() || service == name; };
    if ((isWanted("alarm-summary") && !rows.AddAlarms()) ||
        (isWanted("enrollment-summary") && !rows.AddEnrollments()) ||
        (isWanted("event-information") && !rows.AddEvents()))
        return call.Failure();
    return rows.Reply();
}

std::string ElementText(const Json& row, const char* list, std::size_t index) {
    const auto found = row.find(list);
    if (found == row.end() || !found->is_array() || index >= found->size())
        return "-";
    const Json& element = (*found)[index];
    return element.is_string() ? Printable(element.get<std::string>()) : element.dump();
}

// Whether a transition has come about: its time, or its number in the device's sequence, is there.
bool HasComeAbout(const std::string& time) {
    return !time.starts_with('*') && time != "#0" && time != "-";
}

std::string TransitionsText(const Json& row) {
    static constexpr const char* NAMES[] = {"to-offnormal", "to-fault", "to-normal"};
    std::string text;
    for (std::size_t i = 0; i < std::size(NAMES); ++i) {
        const std::string time = ElementText(row, "times", i);
        if (HasComeAbout(time))
            text += fmt::format(", {} {} (priority {})", NAMES[i], time, ElementText(row, "priorities", i));
    }
    return text;
}

std::string AlarmLine(const Json& row) {
    if (row.contains("error"))
        return fmt::format("{:<19} {}", MemberText(row, "service"), MemberText(row, "error"));
    std::string line = fmt::format("{:<19} {:<28} {:<10}", MemberText(row, "service"), MemberText(row, "object"),
                                   MemberText(row, "state"));
    if (row.contains("acked"))
        line += " acked " + MemberText(row, "acked");
    if (row.contains("event_type"))
        line += fmt::format(" {}, priority {}, class {}", MemberText(row, "event_type"), MemberText(row, "priority"),
                            MemberText(row, "notification_class"));
    if (row.contains("times"))
        line += ", " + MemberText(row, "notify_type") + TransitionsText(row);
    return line;
}

constexpr CommandOption ALARM_OPTIONS[] = {
    DEVICE_ARGUMENT,
    {"--service", "service", "Only one of alarm-summary, enrollment-summary, event-information"},
};

constexpr BacnetCommand COMMANDS[] = {
    {nullptr, "alarms", "Alarm summary, enrollment summary and event information of a device", ALARM_OPTIONS, "alarms",
     Alarms, AlarmLine},
};

} // namespace

std::span<const BacnetCommand> AlarmCommands() {
    return COMMANDS;
}
