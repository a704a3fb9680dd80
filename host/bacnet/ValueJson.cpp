#include "host/bacnet/ValueJson.h"

#include "api/bacnet/BacGeneral.h"
#include "api/bacnet/Dir.h"
#include "host/NumberJson.h"
#include "host/bacnet/HexText.h"
#include "host/bacnet/Names.h"
#include "host/bacnet/StructureJson.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/schema/ObjectTypes.h"

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstring>

using Json = nlohmann::ordered_json;

namespace {

constexpr unsigned USUAL_TEXT = 512;
constexpr unsigned LONGEST_TEXT = 4 << 20; // an object list of a hundred thousand entries

std::string Printed(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
                    BACSTAC_PROPERTY_ID property, int index) {
    if (contents.DataType < 0)
        return {};
    std::string text;
    for (unsigned size = USUAL_TEXT; size <= LONGEST_TEXT; size *= 16) {
        text.resize(size);
        text.resize(static_cast<std::size_t>(
            CBacGeneral::PrintContents(text.data(), size, contents, objectType, property, index)));
        constexpr unsigned CUT = 8; // a text that was cut ends so near to the end of its buffer
        if (text.size() + CUT < size)
            break;
    }
    return ansi_to_utf8(text);
}

bool IsWholeList(const ReadValue& value) {
    const bacnet::PropertyInfo* const info = bacnet::FindProperty(value.object.Type, value.property);
    const bool isList = info != nullptr && info->Shape != bacnet::PropertyShape::single;
    return value.contents.ElementCount != 1 || (isList && value.index == BACSTAC_NO_INDEX);
}

std::string Field(unsigned value, unsigned any, int width) {
    return value == any ? "*" : fmt::format("{:0{}}", value, width);
}

} // namespace

std::string ValueText(const ReadValue& value) {
    if (value.contents.DataType == TYPE_RAW)
        return HexText(value.contents.Buffer, value.contents.ElementCount);
    return Printed(value.contents, value.object.Type, value.property, value.index);
}

Json ElementJson(const BACSTAC_PROPERTY_CONTENTS& contents, BACSTAC_OBJECT_TYPE objectType,
                 BACSTAC_PROPERTY_ID property) {
    switch (contents.DataType) {
    case TYPE_NULL:
        return nullptr;
    case TYPE_BOOLEAN:
        return bacnet::LoadAs<std::uint8_t>(contents.Buffer) != 0;
    case TYPE_UNSIGNED:
    case TYPE_ENUMERATED:
        return bacnet::LoadAs<std::uint32_t>(contents.Buffer);
    case TYPE_SIGNED:
        return bacnet::LoadAs<std::int32_t>(contents.Buffer);
    case TYPE_REAL:
        // As a float prints, not as the double that is nearest to it.
        return NumberJson(std::stod(fmt::format("{}", bacnet::LoadAs<float>(contents.Buffer))));
    case TYPE_DOUBLE:
        return NumberJson(bacnet::LoadAs<double>(contents.Buffer));
    case TYPE_OBJECT_ID:
        return ObjectName(bacnet::LoadAs<BACSTAC_OBJECT_ID>(contents.Buffer));
    default:
        return Printed(contents, objectType, property, BACSTAC_NO_INDEX);
    }
}

namespace {

// Numbers, enumerations and objects stand for themselves, all else in the form that its type has.
Json OneJson(const ReadValue& value, const void* element) {
    const BACSTAC_PROPERTY_CONTENTS& contents = value.contents;
    const bool isNumber = contents.DataType == TYPE_REAL && std::isfinite(bacnet::LoadAs<float>(element));
    if (!isNumber && contents.DataType != TYPE_OBJECT_ID)
        return StructureJson(contents, element);
    return ElementJson({contents.DataType, const_cast<void*>(element), sizeof(BACSTAC_OBJECT_ID), 1}, value.object.Type,
                       value.property);
}

} // namespace

Json ValueJson(const ReadValue& value) {
    const BACSTAC_PROPERTY_CONTENTS& contents = value.contents;
    Json json{{"property", CBACnetDir::GetStdPropName(value.property)}};
    if (value.index != BACSTAC_NO_INDEX)
        json["index"] = value.index;
    const bacnet::TypeInfo* const type = bacnet::FindType(contents.DataType);
    json["type"] = type != nullptr ? Json(type->Name) : Json(nullptr);
    json["value"] = nullptr;
    if (contents.DataType == TYPE_RAW) {
        json["type"] = "encoded";
        json["value"] = ValueText(value);
    } else if (type != nullptr && !IsWholeList(value)) {
        json["value"] = OneJson(value, contents.Buffer);
    } else if (type != nullptr) {
        Json elements = Json::array();
        bacnet::ForEachElement(bacnet::BufferView::Of(contents), *type, 0, contents.ElementCount,
                               [&](const std::uint8_t* element) {
                                   elements.push_back(OneJson(value, element));
                                   return true;
                               });
        json["value"] = std::move(elements);
    }
    json["text"] = ValueText(value);
    return json;
}

std::string DateTimeText(const BACSTAC_DATE_TIME& time) {
    const auto& [date, day] = time;
    return fmt::format("{}-{}-{} {}:{}:{}.{}", Field(date.Year, BACSTAC_ANY_YEAR, 4),
                       Field(date.Month, BACSTAC_ANY_MONTH, 2), Field(date.Day, BACSTAC_ANY_DAY, 2),
                       Field(day.Hour, BACSTAC_ANY_TIME, 2), Field(day.Minute, BACSTAC_ANY_TIME, 2),
                       Field(day.Second, BACSTAC_ANY_TIME, 2), Field(day.Hundredths, BACSTAC_ANY_TIME, 2));
}

std::string BitsText(const BACSTAC_BIT_STRING& bits, int names) {
    char text[1024];
    CBacGeneral::PrintBitString(text, sizeof text, bits, names);
    return text;
}
