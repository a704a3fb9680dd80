#include "simulator/ConfigValues.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "simulator/ConfigNames.h"
#include "simulator/model/SimTime.h"

namespace sim {

namespace {

BACSTAC_DATE DateOf(const toml::date& date) {
    BACSTAC_DATE value{};
    value.Year = date.year;
    value.Month = date.month;
    value.Day = date.day;
    return value;
}

BACSTAC_TIME TimeOf(const toml::time& time) {
    return {time.hour, time.minute, time.second, static_cast<std::uint8_t>(time.nanosecond / 10'000'000)};
}

std::optional<double> RealOf(const toml::node& node) {
    return node.is_number() ? node.value<double>() : std::nullopt;
}

// The value of one element; nothing when the node cannot be one.
std::optional<Value> ElementOf(const toml::node& node, BACSTAC_DATA_TYPE type) {
    const auto text = node.value_exact<std::string>();
    const auto from = [](const auto& parsed, auto make) {
        return parsed ? std::optional<Value>(make(*parsed)) : std::nullopt;
    };
    switch (type) {
    case TYPE_BOOLEAN:
        return from(node.value_exact<bool>(), Value::Boolean);
    case TYPE_UNSIGNED:
        return from(WholeOf(node, 0, 0xFFFFFFFF),
                    [](std::int64_t v) { return Value::Unsigned(static_cast<std::uint32_t>(v)); });
    case TYPE_SIGNED:
        return from(WholeOf(node, INT32_MIN, INT32_MAX),
                    [](std::int64_t v) { return Value::Signed(static_cast<std::int32_t>(v)); });
    case TYPE_ENUMERATED:
        return from(WholeOf(node, 0, 0xFFFFFFFF),
                    [](std::int64_t v) { return Value::Enumerated(static_cast<std::uint32_t>(v)); });
    case TYPE_REAL:
        return from(RealOf(node), [](double v) { return Value::Real(static_cast<float>(v)); });
    case TYPE_DOUBLE:
        return from(RealOf(node), Value::Double);
    case TYPE_DATE:
        return from(node.value_exact<toml::date>(), [](const toml::date& v) { return Value::Date(DateOf(v)); });
    case TYPE_TIME:
        return from(node.value_exact<toml::time>(), [](const toml::time& v) { return Value::Time(TimeOf(v)); });
    case TYPE_DATE_TIME:
        return from(DateTimeOf(node), Value::DateTime);
    default:
        break;
    }
    if (!text)
        return std::nullopt;
    switch (type) {
    case TYPE_STRING:
        return Value::String(*text);
    case TYPE_OCTET_STRING:
        return from(OctetsOf(*text), [](const std::vector<std::uint8_t>& v) { return Value::OctetString(v); });
    case TYPE_BIT_STRING:
        return from(BitsOf(*text), [](const BACSTAC_BIT_STRING& v) { return Value::BitString(v); });
    case TYPE_OBJECT_ID:
        return from(ObjectIdOf(*text), Value::ObjectId);
    case TYPE_DEV_OBJ_PROP_REF:
        return from(ReferenceOf(*text), Value::Reference);
    default:
        return std::nullopt;
    }
}

struct TypeWord {
    std::string_view Text;
    BACSTAC_DATA_TYPE Type;
};

// Keys of the form { real = 1.5 }, for values whose type the property does not tell.
constexpr TypeWord TYPE_WORDS[] = {
    {"boolean", TYPE_BOOLEAN},
    {"unsigned", TYPE_UNSIGNED},
    {"signed", TYPE_SIGNED},
    {"real", TYPE_REAL},
    {"double", TYPE_DOUBLE},
    {"octets", TYPE_OCTET_STRING},
    {"text", TYPE_STRING},
    {"bits", TYPE_BIT_STRING},
    {"enumerated", TYPE_ENUMERATED},
    {"date", TYPE_DATE},
    {"time", TYPE_TIME},
    {"object", TYPE_OBJECT_ID},
    {"date-time", TYPE_DATE_TIME},
    {"reference", TYPE_DEV_OBJ_PROP_REF},
};

// { real = 1.5 }, { encoded = "44 3F C0 00 00" }, { null = true }.
std::optional<Value> TypedValueOf(const toml::table& table) {
    if (table.size() != 1)
        return std::nullopt;
    const auto only = table.begin();
    const std::string_view key = only->first.str();
    const toml::node& node = only->second;
    if (key == "null")
        return Value::Null();
    if (key == "encoded") {
        const auto octets = OctetsOf(node.value_or(std::string("?")));
        return octets ? std::optional(Value::Encoded(*octets)) : std::nullopt;
    }
    for (const TypeWord& word : TYPE_WORDS)
        if (word.Text == key)
            return ElementOf(node, word.Type);
    return std::nullopt;
}

std::optional<Value> SingleOf(const toml::node& node, BACSTAC_DATA_TYPE type) {
    if (const toml::table* table = node.as_table())
        return TypedValueOf(*table);
    return ElementOf(node, type);
}

} // namespace

std::optional<BACSTAC_DATE_TIME> DateTimeOf(const toml::node& node) {
    const auto* value = node.as_date_time();
    if (value == nullptr || value->get().offset)
        return std::nullopt;
    BACSTAC_DATE_TIME result{};
    result.Date = DateOf(value->get().date);
    result.Time = TimeOf(value->get().time);
    const auto known = ToLocalTime(result);
    return known ? std::optional(ToDateTime(*known)) : std::nullopt;
}

std::optional<std::int64_t> WholeOf(const toml::node& node, std::int64_t low, std::int64_t high) {
    const auto* value = node.as_integer();
    if (value == nullptr || value->get() < low || value->get() > high)
        return std::nullopt;
    return value->get();
}

std::optional<Value> PropertyValueOf(const toml::node& node, BACSTAC_OBJECT_TYPE object, BACSTAC_PROPERTY_ID property) {
    const bacnet::PropertyInfo* info = bacnet::FindProperty(object, property);
    const BACSTAC_DATA_TYPE type = info != nullptr ? info->Type : TYPE_NONE;
    const toml::array* list = node.as_array();
    if (list == nullptr)
        return SingleOf(node, type);
    std::vector<Value> elements;
    for (const toml::node& element : *list) {
        const auto value = SingleOf(element, type);
        if (!value)
            return std::nullopt;
        elements.push_back(*value);
    }
    const bool isList = info != nullptr && info->Shape == bacnet::PropertyShape::list;
    return isList ? Value::List(elements) : Value::Array(elements);
}

} // namespace sim
