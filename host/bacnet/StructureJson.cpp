#include "host/bacnet/StructureJson.h"

#include "api/bacnet/Jason.h"
#include "api/bacnet/PropertyValues.h"
#include "host/bacnet/PointText.h"
#include "platform/stack/codec/Elements.h"
#include "platform/stack/value/JsonForm.h"
#include "platform/stack/value/ValueFactory.h"

#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;
using jason::value_t;

namespace {

struct ToJson {
    Json operator()(const value_t& value) const {
        if (const auto* const flag = value.get<bool>())
            return *flag;
        if (const auto* const integer = value.get<std::int64_t>())
            return *integer;
        if (const auto* const number = value.get<double>())
            return *number;
        if (const auto* const text = value.get<std::string>())
            return *text;
        if (const auto* const array = value.get<value_t::array_t>()) {
            Json elements = Json::array();
            for (const value_t& element : *array)
                elements.push_back((*this)(element));
            return elements;
        }
        if (const auto* const object = value.get<value_t::object_t>()) {
            Json members = Json::object();
            for (const jason::member_t& member : *object)
                members[member.name] = (*this)(member.value);
            return members;
        }
        return nullptr;
    }
};

value_t FromJson(const Json& json) {
    if (json.is_boolean())
        return value_t(json.get<bool>());
    if (json.is_number_integer())
        return value_t(json.get<std::int64_t>());
    if (json.is_number())
        return value_t(json.get<double>());
    if (json.is_string())
        return value_t(json.get<std::string>());
    if (json.is_array()) {
        value_t::array_t elements;
        for (const Json& element : json)
            elements.push_back(FromJson(element));
        return value_t(std::move(elements));
    }
    value_t value;
    if (json.is_object()) {
        value = value_t(value_t::object_t());
        for (const auto& [name, member] : json.items())
            value.add(name, FromJson(member));
    }
    return value;
}

// An object identifier in the short form becomes one in that of its type, and so does a null among values of any type.
value_t ElementFromJson(const Json& json, BACSTAC_DATA_TYPE type) {
    BACSTAC_OBJECT_ID id{};
    if (type == TYPE_ANY && json.is_null())
        return value_t(value_t::object_t{{"null", value_t()}});
    std::string ignored;
    if (type != TYPE_OBJECT_ID || !json.is_string() || !ParseObject(json.get<std::string>(), id, ignored))
        return FromJson(json);
    value_t value;
    value.add("type", value_t(std::int64_t{id.Type}));
    value.add("instance", value_t(std::int64_t{id.Instance}));
    return value;
}

std::unique_ptr<CPropertyValue> NewValueOf(const ValueType& type) {
    if (!type.isList)
        return bacnet::NewValue(type.type);
    return std::make_unique<CPropertyValueList>(type.type == TYPE_ANY ? TYPE_ANY_PRIMITIVE : type.type);
}

} // namespace

Json StructureJson(const BACSTAC_PROPERTY_CONTENTS& contents, const void* element) {
    value_t value;
    const auto* const octets = static_cast<const std::uint8_t*>(element);
    const bacnet::TypeInfo* const type = bacnet::FindType(contents.DataType);
    if (type == nullptr || !bacnet::ElementToJson(bacnet::BufferView::Of(contents), *type, octets, value))
        return nullptr;
    return ToJson{}(value);
}

std::optional<bool> ParseStructure(std::string_view text, const ValueType& type, CTypedValue& value,
                                   std::string& error) {
    const Json json = Json::parse(text, nullptr, false);
    const bool isEmptyText = json.is_object() && json.empty() && (type.isList || bacnet::IsPrimitiveType(type.type));
    if ((!json.is_array() && !json.is_object()) || isEmptyText)
        return std::nullopt;
    value_t form;
    if (type.isList && json.is_array()) {
        value_t::array_t elements;
        for (const Json& element : json)
            elements.push_back(ElementFromJson(element, type.type));
        form = value_t(std::move(elements));
    } else {
        form = ElementFromJson(json, type.type);
    }
    const std::unique_ptr<CPropertyValue> decoded = NewValueOf(type);
    if (decoded != nullptr && decoded->Decode(form) && value.Take(*decoded))
        return true;
    const bacnet::TypeInfo* const info = bacnet::FindType(type.type);
    error = info == nullptr ? "the type of such a value is not known here: give --type"
                            : std::string("this is no ") + (type.isList ? "list of " : "") + info->Name +
                                  " in the form that read --json shows";
    return false;
}

std::string Unquoted(std::string_view text) {
    const Json json = Json::parse(text, nullptr, false);
    return json.is_string() ? json.get<std::string>() : std::string(text);
}
