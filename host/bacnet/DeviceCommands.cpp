// reinitialize, communication and timesync: a device as a whole.
#include "api/bacnet/BacGeneral.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/ValueJson.h"
#include "host/bacnet/ValueText.h"
#include "platform/stack/client/BacnetClient.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <ctime>
#include <iterator>

using Json = nlohmann::ordered_json;

namespace {

struct Choice {
    const char* name;
    std::uint32_t value;
};

constexpr Choice REINITIALIZE_STATES[] = {
    {"coldstart", BACSTAC_REINIT_COLDSTART},       {"warmstart", BACSTAC_REINIT_WARMSTART},
    {"startbackup", BACSTAC_REINIT_STARTBACKUP},   {"endbackup", BACSTAC_REINIT_ENDBACKUP},
    {"startrestore", BACSTAC_REINIT_STARTRESTORE}, {"endrestore", BACSTAC_REINIT_ENDRESTORE},
    {"abortrestore", BACSTAC_REINIT_ABORTRESTORE},
};

constexpr Choice COMMUNICATION_STATES[] = {
    {"enable", BACSTAC_DCC_ENABLE},
    {"disable", BACSTAC_DCC_DISABLE},
    {"disable-initiation", BACSTAC_DCC_DISABLE_INITIATION},
};

bool TakeChoice(CBacnetCall& call, std::span<const Choice> choices, std::uint32_t& value) {
    std::string names;
    for (const Choice& choice : choices) {
        if (call.Text("state") == choice.name) {
            value = choice.value;
            return true;
        }
        names += (names.empty() ? "" : ", ") + std::string(choice.name);
    }
    return call.Refuse("\"" + call.Text("state") + "\" is not one of " + names);
}

ControlReply Reinitialize(CBacnetCall& call) {
    std::uint32_t state = 0;
    unsigned device = 0;
    if (!TakeChoice(call, REINITIALIZE_STATES, state) || !call.TakeDevice(device))
        return call.Failure();
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status = call.Stack().ReinitializeDevice(device, static_cast<BACSTAC_REINIT_TYPE>(state),
                                                                  call.Text("password").c_str(), &error);
    if (!call.Succeeded(status, error, DeviceName(device)))
        return call.Failure();
    return call.Done({{"device", device}, {"state", call.Text("state")}});
}

ControlReply Communication(CBacnetCall& call) {
    std::uint32_t state = 0;
    std::int64_t minutes = 0;
    unsigned device = 0;
    if (!TakeChoice(call, COMMUNICATION_STATES, state) || !call.TakeNumber("minutes", 1, 65535, minutes) ||
        !call.TakeDevice(device))
        return call.Failure();
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status =
        call.Stack().DeviceCommControl(device, static_cast<unsigned>(minutes), static_cast<BACSTAC_DCC_VALUE>(state),
                                       call.Text("password").c_str(), &error);
    if (!call.Succeeded(status, error, DeviceName(device)))
        return call.Failure();
    return call.Done({{"device", device}, {"state", call.Text("state")}});
}

// ---- timesync

// What the clock of this machine says.
BACSTAC_DATE_TIME Now(bool utc) {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto parts = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm time{};
    utc ? gmtime_r(&seconds, &time) : localtime_r(&seconds, &time);
    const auto octet = [](int value) { return static_cast<std::uint8_t>(value); };
    BACSTAC_DATE_TIME result{};
    result.Date = {static_cast<std::uint16_t>(time.tm_year + 1900), 0, static_cast<std::uint32_t>(time.tm_mon + 1),
                   static_cast<std::uint32_t>(time.tm_mday),
                   static_cast<std::uint32_t>(time.tm_wday == 0 ? 7 : time.tm_wday)};
    result.Time = {octet(time.tm_hour), octet(time.tm_min), octet(std::min(time.tm_sec, 59)),
                   static_cast<std::uint8_t>(parts / 10)};
    return result;
}

bool IsPointInTime(const BACSTAC_DATE_TIME& time) {
    return time.Date.Year != BACSTAC_ANY_YEAR && time.Date.Month >= 1 && time.Date.Month <= 12 && time.Date.Day >= 1 &&
           time.Date.Day <= 31 && time.Time.Hour != BACSTAC_ANY_TIME && time.Time.Minute != BACSTAC_ANY_TIME &&
           time.Time.Second != BACSTAC_ANY_TIME && time.Time.Hundredths != BACSTAC_ANY_TIME;
}

ControlReply SynchronizeTime(CBacnetCall& call) {
    BACSTAC_DATE_TIME given{};
    if (call.Has("time") && !(ParseDateTime(call.Text("time"), given) && IsPointInTime(given)))
        return call.Refuse("\"" + call.Text("time") + "\" is no time: give it as 2026-11-21 14:30:00"), call.Failure();
    std::vector<unsigned> devices;
    for (const std::string& text : call.List("devices")) {
        if (!call.FindDevice(text, devices.emplace_back()))
            return call.Failure();
    }
    // Finding the devices has taken time.
    const BACSTAC_DATE_TIME time = call.Has("time") ? given : Now(call.Has("utc"));
    const BACSTAC_STATUS status =
        call.Stack().SynchronizeTime(call.Has("utc"), time, devices.data(), static_cast<int>(devices.size()));
    if (!call.Succeeded(status, {}, "time synchronization"))
        return call.Failure();
    return call.Done({{"time", DateTimeText(time)}, {"utc", call.Has("utc")}, {"devices", devices}});
}

std::string SentTimeLine(const Json& result) {
    return "sent " + MemberText(result, "time") + (MemberText(result, "utc") == "true" ? " UTC" : "");
}

constexpr CommandOption REINITIALIZE_OPTIONS[] = {
    DEVICE_ARGUMENT,
    {"STATE", "state", "coldstart, warmstart, startbackup, endbackup, startrestore, endrestore or abortrestore",
     Arity::Required},
};

constexpr CommandOption COMMUNICATION_OPTIONS[] = {
    DEVICE_ARGUMENT,
    {"STATE", "state", "enable, disable or disable-initiation; newer devices refuse disable", Arity::Required},
    {"--minutes", "minutes", "How long, 1 to 65535; for ever if not given"},
};

constexpr CommandOption TIMESYNC_OPTIONS[] = {
    {"DEVICE", "devices", "Instance, IP[:port], or NET:MAC of a station behind a router", Arity::Some},
    {"--utc", "utc", "Sends UTC: the device makes its own local time of it", Arity::Switch},
    {"--time", "time", "Another time than this machine's: \"2026-11-21 14:30:00\""},
};

constexpr BacnetCommand COMMANDS[] = {
    {.group = nullptr,
     .name = "reinitialize",
     .help = "Restarts a device, or leads it through a backup or a restore",
     .options = REINITIALIZE_OPTIONS,
     .list = nullptr,
     .run = Reinitialize,
     .asksPassword = true},
    {.group = nullptr,
     .name = "communication",
     .help = "Stops or allows what a device sends",
     .options = COMMUNICATION_OPTIONS,
     .list = nullptr,
     .run = Communication,
     .asksPassword = true},
    {nullptr, "timesync", "Sends the time to devices", TIMESYNC_OPTIONS, nullptr, SynchronizeTime, nullptr,
     SentTimeLine},
};

} // namespace

std::span<const BacnetCommand> DeviceCommands() {
    return COMMANDS;
}
