#include "host/bacnet/Call.h"

#include "api/bacnet/BacGeneral.h"
#include "base/NumberText.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/IAmCollector.h"
#include "host/bacnet/PointText.h"
#include "platform/stack/client/BacnetClient.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <thread>

using namespace std::chrono_literals;
using Json = nlohmann::ordered_json;

namespace {

constexpr std::chrono::milliseconds ANSWER_TIME = 3s; // for the I-Am of one device; less when requests are given less
constexpr auto ASK_AGAIN = 1s;
constexpr auto LOOK_AGAIN = 20ms;

// What a failure on this side means for who reads it.
const char* HintOf(BACSTAC_STATUS status) {
    switch (status) {
    case BACSTAC_STATUS_TIMEOUT:
        return ": it does not answer";
    case BACSTAC_STATUS_NO_ROUTE:
        return ": no router answers for it, see bdc router list";
    case BACSTAC_STATUS_DISABLED:
        return ": switched off in the running instance, see bdc status";
    default:
        return "";
    }
}

std::string Dumped(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace

ControlReply RunBacnetCommand(const BacnetSite& site, const ControlRequest& request, IControlClient& client) {
    const BacnetCommand* const command = FindBacnetCommand(request.command);
    if (command == nullptr)
        return {EXIT_USAGE, "no such command: " + request.command, {}};
    CBacnetCall call(site, request, client);
    return command->run(call);
}

bool CBacnetCall::ClaimFolder() {
    std::string error;
    return m_site.claimFolder(error) || Fail(error);
}

// ---- arguments

std::string CBacnetCall::Text(const char* key) const {
    const auto found = m_request.arguments.find(key);
    return found == m_request.arguments.end() ? std::string() : found->second;
}

std::vector<std::string> CBacnetCall::List(const char* key) const {
    std::vector<std::string> list;
    if (!Has(key))
        return list;
    const std::string text = Text(key);
    for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
        end = text.find('\n', begin);
        list.push_back(text.substr(begin, end - begin));
    }
    return list;
}

// As the user writes it: "--wait" or "DEVICE".
std::string CBacnetCall::NameOf(std::string_view key) const {
    for (const CommandOption& option : FindBacnetCommand(m_request.command)->options) {
        if (key == option.key)
            return option.option;
    }
    std::string name(key);
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char letter) { return std::toupper(letter); });
    return name;
}

bool CBacnetCall::TakeNumber(const char* key, std::int64_t low, std::int64_t high, std::int64_t& value) {
    if (!Has(key))
        return true;
    const auto number = ParseAs<std::int64_t>(Text(key));
    if (!number || *number < low || *number > high)
        return Refuse(NameOf(key) + " is a number from " + std::to_string(low) + " to " + std::to_string(high) +
                      ", not \"" + Text(key) + "\"");
    value = *number;
    return true;
}

bool CBacnetCall::TakePriority(int& priority) {
    std::int64_t number = BACSTAC_NO_PRIORITY;
    if (!TakeNumber("priority", 1, 16, number))
        return false;
    priority = static_cast<int>(number);
    return true;
}

bool CBacnetCall::TakeObject(BACSTAC_OBJECT_ID& object) {
    std::string error;
    return ParseObject(Text("object"), object, error) || Refuse(error);
}

bool CBacnetCall::TakeProperty(const std::string& text, PropertyText& property) {
    std::string error;
    return ParseProperty(text, property, error) || Refuse(error);
}

bool CBacnetCall::FindDevice(const std::string& text, unsigned& device) {
    DeviceText parsed;
    std::string error;
    if (!ParseDevice(text, parsed, error))
        return Refuse(error);
    if (!parsed.instance)
        return FindAtAddress(parsed.address, device);
    device = *parsed.instance;
    return FindInstance(device);
}

bool CBacnetCall::FindInstance(unsigned instance) {
    if (Stack().FindDev(instance))
        return true;
    const BACSTAC_ADDRESS everywhere{1, 0, BACSTAC_ALL_NETWORKS, {}, 0};
    const auto begin = std::chrono::steady_clock::now();
    const std::chrono::milliseconds patience(Stack().Transactions().Settings().PatienceMs());
    const auto end = begin + std::min(ANSWER_TIME, patience);
    auto askAt = begin;
    while (!Stack().FindDev(instance)) {
        const auto now = std::chrono::steady_clock::now();
        if (now >= end)
            return Fail(DeviceName(instance) + " is not known and does not answer Who-Is");
        if (now >= askAt) {
            const BACSTAC_STATUS status = Stack().WhoIs(everywhere, instance, instance);
            if (!Succeeded(status, {}, "Who-Is"))
                return false;
            askAt = now + ASK_AGAIN;
        }
        if (!Wait(LOOK_AGAIN))
            return false;
    }
    return true;
}

// The directory knows a local station under the number of its port, which the address does not tell.
bool CBacnetCall::FindAtAddress(const BACSTAC_ADDRESS& address, unsigned& device) {
    std::vector<unsigned> devices;
    Stack().GetDevLst(devices, BACSTAC_ALL_NETWORKS);
    for (const unsigned candidate : devices) {
        const BACSTAC_ADDRESS known = Stack().GetDevAddr(candidate);
        if (known.MacLength == address.MacLength && std::equal(known.Mac, known.Mac + known.MacLength, address.Mac) &&
            (known.Remote != 0) == (address.Remote != 0) && (address.Remote == 0 || known.Network == address.Network)) {
            device = candidate;
            return true;
        }
    }
    const CIAmCollector announcements(Stack());
    Stack().WhoIs(address, 0, BACSTAC_MAX_INSTANCE);
    for (auto waited = 0ms; waited < ASK_AGAIN; waited += LOOK_AGAIN) {
        for (const auto& [instance, source] : announcements.Devices()) {
            if (source.MacLength == address.MacLength && (address.Remote == 0 || source.Network == address.Network) &&
                std::equal(source.Mac, source.Mac + source.MacLength, address.Mac)) {
                device = instance;
                return true;
            }
        }
        if (!Wait(LOOK_AGAIN))
            return false;
    }
    return AskWhoIsThere(address, device);
}

// Its announcements may not reach us, but it answers requests.
bool CBacnetCall::AskWhoIsThere(const BACSTAC_ADDRESS& address, unsigned& device) {
    BACSTAC_OBJECT_ID object{};
    BACSTAC_PROPERTY_CONTENTS contents{TYPE_NONE, &object, sizeof object, 0};
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status = Stack().ReadProperty(address, {OBJ_DEVICE, BACSTAC_MAX_INSTANCE},
                                                       PROP_OBJECT_IDENTIFIER, BACSTAC_NO_INDEX, contents, &error);
    if (!Succeeded(status, error, AddressName(address)))
        return false;
    if (contents.DataType != TYPE_OBJECT_ID || object.Type != OBJ_DEVICE || object.Instance >= BACSTAC_MAX_INSTANCE)
        return Fail(AddressName(address) + " does not tell which device it is");
    device = object.Instance;
    constexpr unsigned SMALLEST_APDU = 50;
    BACSTAC_ADDRESS former{};
    if (Stack().Directory().Learn({device, SMALLEST_APDU, 3, 0}, address, former) ==
        bacnet::LiveDirectory::Learned::duplicate)
        return Fail(DeviceName(device) + " at " + AddressName(address) + " is known at " + AddressName(former) +
                    " already: two devices have one instance");
    return true;
}

// ---- results

bool CBacnetCall::Succeeded(BACSTAC_STATUS status, const BACSTAC_ERROR& error, const std::string& what) {
    return status == BACSTAC_OK || Fail(what + ": " + CBacGeneral::GetErrorText(status, &error) + HintOf(status));
}

bool CBacnetCall::Row(const Json& row) {
    return m_client.Row(Dumped(row)) || Fail("nobody waits for the result any more");
}

bool CBacnetCall::Wait(std::chrono::milliseconds time) {
    constexpr auto STEP = 100ms;
    for (; time > 0ms; time -= STEP) {
        if (IsCancelled())
            return Fail("nobody waits for the result any more");
        std::this_thread::sleep_for(std::min<std::chrono::milliseconds>(time, STEP));
    }
    return true;
}

bool CBacnetCall::Refuse(std::string text) {
    m_failure = {EXIT_USAGE, std::move(text), {}};
    return false;
}

bool CBacnetCall::Fail(std::string text) {
    m_failure = {EXIT_FAILED, std::move(text), {}};
    return false;
}

ControlReply CBacnetCall::Done(const Json& result) const {
    return {EXIT_DONE, {}, Dumped(result)};
}

ControlReply CBacnetCall::DonePartly(std::size_t succeeded, std::size_t failed, const Json& result) const {
    if (failed == 0)
        return Done(result);
    const std::string error = std::to_string(failed) + " of " + std::to_string(succeeded + failed) + " failed";
    return {succeeded == 0 ? EXIT_FAILED : EXIT_PARTLY, error, Dumped(result)};
}
