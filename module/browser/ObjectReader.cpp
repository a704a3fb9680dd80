#include "module/browser/ObjectReader.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "api/bacnet/Log.h"
#include "api/bacnet/PropertyValue.h"
#include "api/bacnet/Requests.h"

#include <array>
#include <map>
#include <span>

namespace {

constexpr unsigned TEXT_SIZE = 1024;

constexpr BACSTAC_PROPERTY_ID PROP_PRIORITY_ARRAY = 87;

constexpr BACSTAC_PROPERTY_ID RANGE_AND_UNITS[] = {65, 69, 117}; // max-pres-value, min-pres-value, units
constexpr BACSTAC_PROPERTY_ID UNITS[] = {117};
constexpr BACSTAC_PROPERTY_ID TWO_STATES[] = {4, 46}; // active-text, inactive-text
constexpr BACSTAC_PROPERTY_ID STATES[] = {110};       // state-text
constexpr BACSTAC_PROPERTY_ID LOGGED[] = {132};       // log-device-object-property
constexpr BACSTAC_PROPERTY_ID SCHEDULED[] = {54};     // list-of-object-property-references

// What is kept of an object besides its name, by type; ascending by property.
constexpr struct {
    BACSTAC_OBJECT_TYPE type;
    std::span<const BACSTAC_PROPERTY_ID> properties;
} EXTRAS[] = {
    {OBJ_ANALOG_INPUT, RANGE_AND_UNITS},
    {OBJ_ANALOG_OUTPUT, RANGE_AND_UNITS},
    {OBJ_ANALOG_VALUE, UNITS},
    {OBJ_BINARY_INPUT, TWO_STATES},
    {OBJ_BINARY_OUTPUT, TWO_STATES},
    {OBJ_BINARY_VALUE, TWO_STATES},
    {OBJ_MULTI_STATE_INPUT, STATES},
    {OBJ_MULTI_STATE_OUTPUT, STATES},
    {17, SCHEDULED},
    {OBJ_MULTI_STATE_VALUE, STATES},
    {OBJ_TREND_LOG, LOGGED},
    {23, UNITS}, // accumulator
    {24, UNITS}, // pulse converter
    {OBJ_TREND_LOG_MULTIPLE, LOGGED},
};

std::span<const BACSTAC_PROPERTY_ID> ExtrasOf(BACSTAC_OBJECT_TYPE type) {
    for (const auto& row : EXTRAS)
        if (row.type == type)
            return row.properties;
    return {};
}

// A device may give a text of another type; that is none.
bool TakeText(const CBACnetObj& object, const BACSTAC_READ_RESULT_ITEM* item, std::string& text) {
    if (item == nullptr || item->Success == 0)
        return false;
    BACSTAC_PROPERTY_CONTENTS contents = item->Contents;
    if (!ConvertRaw(contents, object.GetId().Type, item->Property) || contents.DataType != TYPE_STRING)
        return false;
    text = ansi_to_utf8(static_cast<const char*>(contents.Buffer));
    return true;
}

void TakeValue(CBACnetObj& object, const BACSTAC_READ_RESULT_ITEM* item) {
    if (item == nullptr || item->Success == 0)
        return;
    std::unique_ptr<CPropertyValue> value(
        CPropertyValue::CreateValue(object.GetId().Type, item->Property, item->Contents.DataType, -1));
    if (value && value->ReadFrom(item->Contents))
        object.SetPropVal(item->Property, value.release());
}

} // namespace

bool ReadObjectInfo(const CBACnetDev& device, CBACnetObj& object) {
    const BACSTAC_OBJECT_ID id = object.GetId();
    const bool isAlways = CBACnetDir::IsObjectTypeAlwaysCommandable(id.Type);
    const bool isAsked = !isAlways && CBACnetDir::IsObjectTypePossiblyCommandable(id.Type);
    if (isAlways)
        object.SetCommandable(true);

    const auto extras = ExtrasOf(id.Type);
    std::array<char, TEXT_SIZE> nameBuffer{};
    std::array<char, TEXT_SIZE> descriptionBuffer{};
    std::uint32_t arraySize = 0; // whether the device tells it is all that counts
    std::vector<CPropertyContents> values(extras.size());
    CRPMRequest request(static_cast<unsigned>(extras.size()) + (isAsked ? 3 : 2));
    request.Append(PROP_OBJECT_NAME, BACSTAC_NO_INDEX, nameBuffer.data(), TEXT_SIZE);
    request.Append(PROP_DESCRIPTION, BACSTAC_NO_INDEX, descriptionBuffer.data(), TEXT_SIZE);
    if (isAsked)
        request.Append(PROP_PRIORITY_ARRAY, 0, &arraySize, sizeof arraySize);
    for (std::size_t i = 0; i < extras.size(); ++i)
        request.Append(extras[i], BACSTAC_NO_INDEX, values[i].GetBufferPtr(), values[i].GetBufferSize());
    if (!request.Execute(device.GetInst(), device.GetAddr(), id)) {
        LogErr("Failure reading name & description of object (%u, %u) on device %u", id.Type, id.Instance,
               device.GetInst());
        return false;
    }

    unsigned next = 0;
    std::string text;
    const bool hasName = TakeText(object, request.GetResult(next++), text);
    if (hasName)
        object.SetName(text);
    else
        LogErr("Failure reading name of object (%u, %u) on device %u", id.Type, id.Instance, device.GetInst());
    if (TakeText(object, request.GetResult(next++), text))
        object.SetDesc(text);
    if (isAsked)
        object.SetCommandable(request.GetResult(next++)->Success == 1);
    while (next < request.GetItemCnt())
        TakeValue(object, request.GetResult(next++));
    return hasName;
}
