// create and delete: objects of a device.
#include "api/bacnet/BacGeneral.h"
#include "host/BacnetNames.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/PointText.h"
#include "host/bacnet/WriteValue.h"
#include "platform/stack/client/BacnetClient.h"

#include <nlohmann/json.hpp>

#include <deque>

using Json = nlohmann::ordered_json;

namespace {

// "PROPERTY=VALUE" arguments as initial values.
bool TakeInitialValues(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object,
                       std::deque<CTypedValue>& values, std::vector<BACSTAC_PROPERTY_VALUE>& initial) {
    for (const std::string& text : call.List("values")) {
        const std::size_t split = text.find('=');
        if (split == std::string::npos)
            return call.Refuse("\"" + text + "\" is no initial value: give PROPERTY=VALUE, as in name=Boiler");
        PropertyText property;
        if (!call.TakeProperty(text.substr(0, split), property) ||
            !TakeValue(call, device, object, property, text.substr(split + 1), values.emplace_back()))
            return false;
        initial.push_back({property.property, property.index, values.back().Contents(), BACSTAC_NO_PRIORITY});
    }
    return true;
}

ControlReply Create(CBacnetCall& call) {
    BACSTAC_OBJECT_SPECIFIER specifier{1, 0, 0};
    BACSTAC_OBJECT_ID object{};
    if (const auto type = ObjectTypeByText(call.Text("object"))) {
        specifier = {0, *type, 0};
        object.Type = *type;
    } else if (call.TakeObject(object)) {
        specifier = {1, object.Type, object.Instance};
    } else {
        return call.Failure();
    }
    unsigned device = 0;
    std::deque<CTypedValue> values;
    std::vector<BACSTAC_PROPERTY_VALUE> initial;
    if (!call.TakeDevice(device) || !TakeInitialValues(call, device, object, values, initial))
        return call.Failure();
    BACSTAC_ERROR error{};
    BACSTAC_OBJECT_ID created{};
    unsigned failed = 0;
    const BACSTAC_STATUS status = call.Stack().CreateObject(
        device, &specifier, initial.data(), static_cast<unsigned>(initial.size()), &created, &error, &failed);
    std::string what = specifier.ByIdentifier != 0 ? PointName(device, object) : DeviceName(device);
    if (failed != 0 && failed <= initial.size())
        what += ", initial value of " + PropertyName(initial[failed - 1].Property, initial[failed - 1].ArrayIndex);
    if (!call.Succeeded(status, error, what))
        return call.Failure();
    return call.Done({{"device", device}, {"object", ObjectName(created)}});
}

ControlReply Delete(CBacnetCall& call) {
    BACSTAC_OBJECT_ID object{};
    unsigned device = 0;
    if (!call.TakeObject(object) || !call.TakeDevice(device))
        return call.Failure();
    BACSTAC_ERROR error{};
    if (!call.Succeeded(call.Stack().DeleteObject(device, &object, &error), error, PointName(device, object)))
        return call.Failure();
    return call.Done({{"device", device}, {"object", ObjectName(object)}});
}

std::string CreatedLine(const Json& result) {
    return MemberText(result, "object");
}

constexpr CommandOption CREATE_OPTIONS[] = {
    DEVICE_ARGUMENT,
    {"OBJECT", "object", "As analog-value:7, or a type alone: the device chooses the instance", Arity::Required},
    {"VALUE", "values", "Initial values as PROPERTY=VALUE: name=Boiler pv=21.5", Arity::Any},
};

constexpr CommandOption DELETE_OPTIONS[] = {DEVICE_ARGUMENT, OBJECT_ARGUMENT};

constexpr BacnetCommand COMMANDS[] = {
    {nullptr, "create", "Creates an object in a device", CREATE_OPTIONS, nullptr, Create, nullptr, CreatedLine},
    {nullptr, "delete", "Deletes an object of a device", DELETE_OPTIONS, nullptr, Delete},
};

} // namespace

std::span<const BacnetCommand> ObjectCommands() {
    return COMMANDS;
}
