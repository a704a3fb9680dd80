// read: properties of one object.
#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/Requests.h"
#include "host/bacnet/Call.h"
#include "host/bacnet/Command.h"
#include "host/bacnet/PointText.h"
#include "host/bacnet/ValueJson.h"
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/schema/ObjectTypes.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <deque>

using Json = nlohmann::ordered_json;

namespace {

constexpr unsigned MAX_PROPERTIES = 400; // of one object
constexpr BACSTAC_PROPERTY_ID PROPERTY_LIST = 371;
constexpr std::uint32_t UNKNOWN_PROPERTY = 32; // error code

// Rows of one object's properties, and how many of them could be read.
class CPropertyRows {
public:
    CPropertyRows(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object)
        : m_call(call), m_device(device), m_object(object) {}

    bool Add(const PropertyText& property, const BACSTAC_PROPERTY_CONTENTS& contents) {
        if (contents.DataType < 0 && contents.DataType != TYPE_RAW)
            return AddFailure(property, BACSTAC_STATUS_INVALID_ANSWER, {});
        ++m_read;
        Json row = Head();
        row.update(ValueJson({m_object, property.property, property.index, contents}));
        return m_call.Row(row);
    }
    bool AddFailure(const PropertyText& property, BACSTAC_STATUS status, const BACSTAC_ERROR& error) {
        ++m_failed;
        Json row = Head();
        row["property"] = PropertyName(property.property, BACSTAC_NO_INDEX);
        if (property.index != BACSTAC_NO_INDEX)
            row["index"] = property.index;
        row["error"] = CBacGeneral::GetErrorText(status, &error);
        return m_call.Row(row);
    }
    bool Add(const BACSTAC_READ_RESULT_ITEM& item) {
        const PropertyText property{item.Property, item.ArrayIndex};
        if (item.Success == 0 && item.Error.Kind == 0) // a value whose octets only a single read gives
            return AddRead(property);
        if (item.Success == 0)
            return AddFailure(property, StatusOf(item.Error), item.Error);
        BACSTAC_PROPERTY_CONTENTS contents = item.Contents;
        ConvertRaw(contents, m_object.Type, item.Property);
        return Add(property, contents);
    }
    bool AddRead(const PropertyText& property) {
        BACSTAC_PROPERTY_CONTENTS contents = m_buffer.Contents();
        BACSTAC_ERROR error{};
        const BACSTAC_STATUS status =
            m_call.Stack().ReadProperty(m_device, m_object, property.property, property.index, contents, &error);
        if (m_leavesOutMissing && status == BACSTAC_STATUS_ERROR && error.Code == UNKNOWN_PROPERTY)
            return true;
        ConvertRaw(contents, m_object.Type, property.property);
        return status == BACSTAC_OK ? Add(property, contents) : AddFailure(property, status, error);
    }
    // From now on a property that the object does not have is no failure.
    void LeaveOutMissing() { m_leavesOutMissing = true; }
    ControlReply Reply() const { return m_call.DonePartly(m_read, m_failed, {{"count", m_read}}); }

private:
    // Kind 1: a single read that the device gave up, its answer being too long for it.
    static BACSTAC_STATUS StatusOf(const BACSTAC_ERROR& error) {
        return error.Kind == 1 ? BACSTAC_STATUS_ABORT : BACSTAC_STATUS_ERROR;
    }
    Json Head() const { return {{"device", m_device}, {"object", ObjectName(m_object)}}; }

    CBacnetCall& m_call;
    const unsigned m_device;
    const BACSTAC_OBJECT_ID m_object;
    CValueBuffer m_buffer;
    bool m_leavesOutMissing = false;
    std::size_t m_read = 0;
    std::size_t m_failed = 0;
};

ControlReply ReadOne(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object,
                     const PropertyText& property) {
    CValueBuffer buffer;
    BACSTAC_PROPERTY_CONTENTS contents = buffer.Contents();
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status =
        call.Stack().ReadProperty(device, object, property.property, property.index, contents, &error);
    if (!call.Succeeded(status, error, PointName(device, object, property.property, property.index)))
        return call.Failure();
    ConvertRaw(contents, object.Type, property.property);
    CPropertyRows rows(call, device, object);
    return rows.Add(property, contents) ? rows.Reply() : call.Failure();
}

ControlReply ReadSingly(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object,
                        const std::vector<PropertyText>& properties) {
    CPropertyRows rows(call, device, object);
    for (const PropertyText& property : properties) {
        if (!rows.AddRead(property))
            return call.Failure();
    }
    return rows.Reply();
}

ControlReply ReadSeveral(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object,
                         const std::vector<PropertyText>& properties) {
    CRPMRequest request(static_cast<unsigned>(properties.size()));
    std::deque<CValueBuffer> buffers(properties.size());
    for (std::size_t i = 0; i < properties.size(); ++i)
        request.Append(properties[i].property, properties[i].index, buffers[i].Data(), buffers[i].Size());
    if (!request.Execute(device, call.Stack().GetDevAddr(device), object)) {
        if (CRPMRequest::CanFallbackToRP(request.Status, request.Error))
            return ReadSingly(call, device, object, properties);
        call.Succeeded(request.Status, request.Error, PointName(device, object));
        return call.Failure();
    }
    CPropertyRows rows(call, device, object);
    for (unsigned i = 0; i < request.GetItemCnt(); ++i) {
        if (!rows.Add(*request.GetResult(i)))
            return call.Failure();
    }
    return rows.Reply();
}

// What the object says that it has; false where the device does not tell.
bool ReadPropertyList(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object,
                      std::vector<PropertyText>& properties) {
    CValueBuffer buffer;
    BACSTAC_PROPERTY_CONTENTS contents = buffer.Contents();
    if (call.Stack().ReadProperty(device, object, PROPERTY_LIST, BACSTAC_NO_INDEX, contents, nullptr) != BACSTAC_OK ||
        contents.DataType != TYPE_ENUMERATED)
        return false;
    // Those that every object has are not in the list (clause 12.1).
    for (const BACSTAC_PROPERTY_ID property : {PROP_OBJECT_IDENTIFIER, PROP_OBJECT_NAME, PROP_OBJECT_TYPE})
        properties.push_back({property, BACSTAC_NO_INDEX});
    const auto* const listed = static_cast<const BACSTAC_PROPERTY_ID*>(contents.Buffer);
    for (std::uint32_t i = 0; i < contents.ElementCount && properties.size() < MAX_PROPERTIES; ++i)
        properties.push_back({listed[i], BACSTAC_NO_INDEX});
    return true;
}

// For a device without multiple reads: what the object lists, or else what the standard knows of its type.
ControlReply ReadAllSingly(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object) {
    std::vector<PropertyText> properties;
    if (ReadPropertyList(call, device, object, properties))
        return ReadSingly(call, device, object, properties);
    CPropertyRows rows(call, device, object);
    rows.LeaveOutMissing();
    for (const BACSTAC_PROPERTY_ID property : bacnet::ObjectPropertyIds(object.Type)) {
        if (!rows.AddRead({property, BACSTAC_NO_INDEX}))
            return call.Failure();
    }
    return rows.Reply();
}

ControlReply ReadAll(CBacnetCall& call, unsigned device, const BACSTAC_OBJECT_ID& object) {
    std::deque<CValueBuffer> buffers(MAX_PROPERTIES);
    std::vector<BACSTAC_READ_RESULT_ITEM> items(MAX_PROPERTIES);
    for (unsigned i = 0; i < MAX_PROPERTIES; ++i)
        items[i].Contents = buffers[i].Contents();
    unsigned count = MAX_PROPERTIES;
    BACSTAC_ERROR error{};
    const BACSTAC_STATUS status =
        call.Stack().ReadPropertyList(call.Stack().GetDevAddr(device), object, items.data(), &count, &error);
    if (status != BACSTAC_OK && CRPMRequest::CanFallbackToRP(status, error))
        return ReadAllSingly(call, device, object);
    if (!call.Succeeded(status, error, PointName(device, object)))
        return call.Failure();
    CPropertyRows rows(call, device, object);
    for (unsigned i = 0; i < count; ++i) {
        if (!rows.Add(items[i]))
            return call.Failure();
    }
    return rows.Reply();
}

ControlReply Read(CBacnetCall& call) {
    BACSTAC_OBJECT_ID object{};
    if (!call.TakeObject(object))
        return call.Failure();
    const std::vector<std::string> texts = call.List("properties");
    const bool wantsAll = texts.size() == 1 && texts.front() == "all";
    std::vector<PropertyText> properties(wantsAll ? 0 : texts.size());
    for (std::size_t i = 0; i < properties.size(); ++i) {
        if (!call.TakeProperty(texts[i], properties[i]))
            return call.Failure();
    }
    unsigned device = 0;
    if (properties.size() > MAX_PROPERTIES)
        call.Refuse("no more than " + std::to_string(MAX_PROPERTIES) + " properties at once");
    if (properties.size() > MAX_PROPERTIES || !call.TakeDevice(device))
        return call.Failure();
    if (wantsAll)
        return ReadAll(call, device, object);
    return properties.size() == 1 ? ReadOne(call, device, object, properties.front())
                                  : ReadSeveral(call, device, object, properties);
}

std::string PropertyLine(const Json& row) {
    const std::string index = row.contains("index") ? "[" + MemberText(row, "index") + "]" : "";
    const char* const value = row.contains("error") ? "error" : "text";
    return fmt::format("{:<32} {}", MemberText(row, "property") + index, MemberText(row, value));
}

constexpr CommandOption READ_OPTIONS[] = {
    DEVICE_ARGUMENT,
    OBJECT_ARGUMENT,
    {"PROPERTY", "properties", "As present-value, pv, 85 or priority-array[8]; all for all that the object has",
     Arity::Some},
};

constexpr BacnetCommand COMMANDS[] = {
    {nullptr, "read", "Reads properties of an object", READ_OPTIONS, "properties", Read, PropertyLine},
};

} // namespace

std::span<const BacnetCommand> ReadCommands() {
    return COMMANDS;
}
