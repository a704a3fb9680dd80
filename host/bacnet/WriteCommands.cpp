// write and relinquish: one property of an object.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/PointText.h"
#include "host/bacnet/ValueJson.h"
#include "host/bacnet/WriteValue.h"
#include "platform/stack/client/BacnetClient.h"

#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

// The type that a value has to be of, where the standard does not say: what the property holds now.
bool TakeValue(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object, const PropertyText& property,
               const std::string& text, CTypedValue& value) {
    ValueType type = StandardType(object.Type, property.property, property.index);
    if (call.Has("type")) {
        const auto named = DataTypeByName(call.Text("type"));
        if (!named)
            return call.Refuse("\"" + call.Text("type") +
                               "\" is no type whose values can be written as text: give one as unsigned, real, "
                               "enumerated, character-string or date");
        type.type = *named;
    } else if ((type.type == TYPE_NONE || type.type == TYPE_ANY) && text != "null") {
        CValueBuffer buffer;
        BACSTAC_PROPERTY_CONTENTS contents = buffer.Contents();
        if (call.Stack().ReadProperty(device, object, property.property, property.index, contents, nullptr) ==
                BACSTAC_OK &&
            (ConvertRaw(contents, object.Type, property.property) || contents.DataType == TYPE_RAW) &&
            contents.DataType != TYPE_NULL) {
            type.type = contents.DataType;
            type.isList = type.isList || (contents.ElementCount > 1 && contents.DataType != TYPE_RAW);
        }
    }
    std::string error;
    return ParseValue(text, type, value, error) ||
           call.Refuse(PropertyName(property.property, property.index) + ": " + error);
}

namespace {

ControlReply Written(const CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object,
                     const PropertyText& property) {
    Json result{{"device", device},
                {"object", ObjectName(object)},
                {"property", PropertyName(property.property, BACSTAC_NO_INDEX)}};
    if (property.index != BACSTAC_NO_INDEX)
        result["index"] = property.index;
    return call.Done(result);
}

ControlReply Write(CBacnetCall& call) {
    BACSTAC_OBJECT_ID object{};
    PropertyText property;
    int priority = BACSTAC_NO_PRIORITY;
    unsigned device = 0;
    CTypedValue value;
    if (!call.TakeObject(object) || !call.TakeProperty(call.Text("property"), property) ||
        !call.TakePriority(priority) || !call.TakeDevice(device) ||
        !TakeValue(call, device, object, property, call.Text("value"), value))
        return call.Failure();
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status =
        value.Type() == TYPE_NULL
            ? call.Stack().WritePropertyNull(device, object, property.property, property.index, priority, &error)
            : call.Stack().WriteProperty(device, object, property.property, property.index, priority, value.Contents(),
                                         &error);
    if (!call.Succeeded(status, error, PointName(device, object, property.property, property.index)))
        return call.Failure();
    return Written(call, device, object, property);
}

ControlReply Relinquish(CBacnetCall& call) {
    BACSTAC_OBJECT_ID object{};
    PropertyText property{PROP_PRESENT_VALUE, BACSTAC_NO_INDEX};
    int priority = BACSTAC_NO_PRIORITY;
    unsigned device = 0;
    if (!call.TakeObject(object) || (call.Has("property") && !call.TakeProperty(call.Text("property"), property)) ||
        !call.TakePriority(priority) || !call.TakeDevice(device))
        return call.Failure();
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status =
        call.Stack().WritePropertyNull(device, object, property.property, property.index, priority, &error);
    if (!call.Succeeded(status, error, PointName(device, object, property.property, property.index)))
        return call.Failure();
    return Written(call, device, object, property);
}

constexpr CommandOption WRITE_OPTIONS[] = {
    DEVICE_ARGUMENT,
    OBJECT_ARGUMENT,
    {"PROPERTY", "property", "As present-value, pv, 85 or priority-array[8]", Arity::Required},
    {"VALUE", "value",
     "As the property's type asks: 21.5, active, true, \"text\", null, 2026-11-21, 14:30:00.00, {in-alarm, fault}, "
     "ai:1; lists as {a, b}; anything in the JSON form that read --json shows",
     Arity::Required},
    PRIORITY_OPTION,
    {"--type", "type", "Type of the value, where the property's own is not to be taken: real, unsigned, ..."},
};

constexpr CommandOption RELINQUISH_OPTIONS[] = {
    DEVICE_ARGUMENT,
    OBJECT_ARGUMENT,
    {"PROPERTY", "property", "Another one than present-value"},
    PRIORITY_OPTION,
};

constexpr BacnetCommand COMMANDS[] = {
    {nullptr, "write", "Writes a property of an object", WRITE_OPTIONS, nullptr, Write},
    {nullptr, "relinquish", "Gives a commanded value free at a priority (16 if none is given)", RELINQUISH_OPTIONS,
     nullptr, Relinquish},
};

} // namespace

std::span<const BacnetCommand> WriteCommands() {
    return COMMANDS;
}
