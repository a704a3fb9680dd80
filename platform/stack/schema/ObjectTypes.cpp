#include "platform/stack/schema/ObjectTypes.h"

#include "api/bacnet/Enums.h"
#include "platform/stack/schema/ObjectRowsBuilding.h"
#include "platform/stack/schema/ObjectRowsSystem.h"
#include "platform/stack/schema/ObjectRowsValues.h"

namespace bacnet {
namespace {

// Event algorithms (clause 13.3, BACnetEventType) that types report by on their own.
constexpr int NONE = NO_EVENT_TYPE;
constexpr int CHANGE_OF_BITSTRING = 0;
constexpr int CHANGE_OF_STATE = 1;
constexpr int COMMAND_FAILURE = 3;
constexpr int FLOATING_LIMIT = 4;
constexpr int OUT_OF_RANGE = 5;
constexpr int CHANGE_OF_LIFE_SAFETY = 8;
constexpr int BUFFER_READY = 10;
constexpr int UNSIGNED_RANGE = 11;
constexpr int ACCESS_EVENT = 13;
constexpr int DOUBLE_OUT_OF_RANGE = 14;
constexpr int SIGNED_OUT_OF_RANGE = 15;
constexpr int UNSIGNED_OUT_OF_RANGE = 16;
constexpr int CHANGE_OF_CHARACTERSTRING = 17;
constexpr int CHANGE_OF_STATUS_FLAGS = 18;

consteval ObjectTypeInfo Type(BACSTAC_OBJECT_TYPE type, const char* name, int eventType,
                              std::span<const PropertyInfo> properties) {
    Commandable commandable = Commandable::never;
    for (const PropertyInfo& property : properties) {
        if (property.Property == PropertyId("priority-array"))
            commandable = property.Required ? Commandable::always : Commandable::possibly;
    }
    return {type, name, eventType, commandable, properties};
}

// clang-format off
constexpr ObjectTypeInfo TYPES[] = {
    Type(0, "analog-input", OUT_OF_RANGE, rows::ANALOG_INPUT),
    Type(1, "analog-output", OUT_OF_RANGE, rows::ANALOG_OUTPUT),
    Type(2, "analog-value", OUT_OF_RANGE, rows::ANALOG_VALUE),
    Type(3, "binary-input", CHANGE_OF_STATE, rows::BINARY_INPUT),
    Type(4, "binary-output", COMMAND_FAILURE, rows::BINARY_OUTPUT),
    Type(5, "binary-value", CHANGE_OF_STATE, rows::BINARY_VALUE),
    Type(6, "calendar", NONE, rows::CALENDAR),
    Type(7, "command", NONE, rows::COMMAND),
    Type(8, "device", NONE, rows::DEVICE),
    Type(9, "event-enrollment", NONE, rows::EVENT_ENROLLMENT),
    Type(10, "file", NONE, rows::FILE),
    Type(11, "group", NONE, rows::GROUP),
    Type(12, "loop", FLOATING_LIMIT, rows::LOOP),
    Type(13, "multi-state-input", CHANGE_OF_STATE, rows::MULTI_STATE_INPUT),
    Type(14, "multi-state-output", COMMAND_FAILURE, rows::MULTI_STATE_OUTPUT),
    Type(15, "notification-class", NONE, rows::NOTIFICATION_CLASS),
    Type(16, "program", NONE, rows::PROGRAM),
    Type(17, "schedule", NONE, rows::SCHEDULE),
    Type(18, "averaging", NONE, rows::AVERAGING),
    Type(19, "multi-state-value", CHANGE_OF_STATE, rows::MULTI_STATE_VALUE),
    Type(20, "trend-log", BUFFER_READY, rows::TREND_LOG),
    Type(21, "life-safety-point", CHANGE_OF_LIFE_SAFETY, rows::LIFE_SAFETY_POINT),
    Type(22, "life-safety-zone", CHANGE_OF_LIFE_SAFETY, rows::LIFE_SAFETY_ZONE),
    Type(23, "accumulator", UNSIGNED_RANGE, rows::ACCUMULATOR),
    Type(24, "pulse-converter", OUT_OF_RANGE, rows::PULSE_CONVERTER),
    Type(25, "event-log", BUFFER_READY, rows::EVENT_LOG),
    Type(26, "global-group", CHANGE_OF_STATUS_FLAGS, rows::GLOBAL_GROUP),
    Type(27, "trend-log-multiple", BUFFER_READY, rows::TREND_LOG_MULTIPLE),
    Type(28, "load-control", COMMAND_FAILURE, rows::LOAD_CONTROL),
    Type(29, "structured-view", NONE, rows::STRUCTURED_VIEW),
    Type(30, "access-door", CHANGE_OF_STATE, rows::ACCESS_DOOR),
    Type(31, "timer", CHANGE_OF_STATE, rows::TIMER),
    Type(32, "access-credential", NONE, rows::ACCESS_CREDENTIAL),
    Type(33, "access-point", ACCESS_EVENT, rows::ACCESS_POINT),
    Type(34, "access-rights", NONE, rows::ACCESS_RIGHTS),
    Type(35, "access-user", NONE, rows::ACCESS_USER),
    Type(36, "access-zone", CHANGE_OF_STATE, rows::ACCESS_ZONE),
    Type(37, "credential-data-input", NONE, rows::CREDENTIAL_DATA_INPUT),
    Type(38, "network-security", NONE, rows::NETWORK_SECURITY),
    Type(39, "bitstring-value", CHANGE_OF_BITSTRING, rows::BITSTRING_VALUE),
    Type(40, "characterstring-value", CHANGE_OF_CHARACTERSTRING, rows::CHARACTERSTRING_VALUE),
    Type(41, "date-pattern-value", NONE, rows::DATE_VALUE),
    Type(42, "date-value", NONE, rows::DATE_VALUE),
    Type(43, "datetime-pattern-value", NONE, rows::DATETIME_VALUE),
    Type(44, "datetime-value", NONE, rows::DATETIME_VALUE),
    Type(45, "integer-value", SIGNED_OUT_OF_RANGE, rows::INTEGER_VALUE),
    Type(46, "large-analog-value", DOUBLE_OUT_OF_RANGE, rows::LARGE_ANALOG_VALUE),
    Type(47, "octetstring-value", NONE, rows::OCTETSTRING_VALUE),
    Type(48, "positive-integer-value", UNSIGNED_OUT_OF_RANGE, rows::POSITIVE_INTEGER_VALUE),
    Type(49, "time-pattern-value", NONE, rows::TIME_VALUE),
    Type(50, "time-value", NONE, rows::TIME_VALUE),
    Type(51, "notification-forwarder", NONE, rows::NOTIFICATION_FORWARDER),
    Type(52, "alert-enrollment", NONE, rows::ALERT_ENROLLMENT),
    Type(53, "channel", NONE, rows::CHANNEL),
    Type(54, "lighting-output", NONE, rows::LIGHTING_OUTPUT),
    Type(55, "binary-lighting-output", NONE, rows::BINARY_LIGHTING_OUTPUT),
    Type(56, "network-port", NONE, rows::NETWORK_PORT),
    Type(57, "elevator-group", NONE, rows::ELEVATOR_GROUP),
    Type(58, "escalator", CHANGE_OF_STATE, rows::ESCALATOR),
    Type(59, "lift", CHANGE_OF_STATE, rows::LIFT),
    Type(60, "staging", NONE, rows::STAGING),
    Type(61, "audit-log", BUFFER_READY, rows::AUDIT_LOG),
    Type(62, "audit-reporter", NONE, rows::AUDIT_REPORTER),
    Type(63, "color", NONE, rows::COLOR),
    Type(64, "color-temperature", NONE, rows::COLOR_TEMPERATURE),
};
// clang-format on

constexpr const PropertyInfo* Find(std::span<const PropertyInfo> properties, BACSTAC_PROPERTY_ID property) {
    const auto found =
        std::lower_bound(properties.begin(), properties.end(), property,
                         [](const PropertyInfo& row, BACSTAC_PROPERTY_ID wanted) { return row.Property < wanted; });
    return found == properties.end() || found->Property != property ? nullptr : &*found;
}

// ---- the numbers of each type's properties, one type behind the other

constexpr std::size_t ROWS = [] {
    std::size_t rows = 0;
    for (const ObjectTypeInfo& type : TYPES)
        rows += type.Properties.size();
    return rows;
}();

struct PropertyIds {
    std::array<BACSTAC_PROPERTY_ID, ROWS> Ids;
    std::array<std::size_t, std::size(TYPES)> First;
};

constexpr PropertyIds IDS = [] {
    PropertyIds ids{};
    std::size_t row = 0;
    for (const ObjectTypeInfo& type : TYPES) {
        ids.First[type.Type] = row;
        for (const PropertyInfo& property : type.Properties)
            ids.Ids[row++] = property.Property;
    }
    return ids;
}();

// ---- properties whatever the type

struct Agreement {
    PropertyInfo Info;
    bool Holds; // some type has the property, and none has it otherwise
};

// In the order of PROPERTY_NAMES.
constexpr auto AGREED = [] {
    std::array<Agreement, std::size(PROPERTY_NAMES)> agreed{};
    std::array<bool, std::size(PROPERTY_NAMES)> seen{};
    for (const ObjectTypeInfo& type : TYPES) {
        std::size_t row = 0; // both tables ascend
        for (const PropertyInfo& property : type.Properties) {
            while (PROPERTY_NAMES[row].Property != property.Property)
                ++row;
            if (!seen[row])
                agreed[row] = {{property.Property, property.Type, property.Shape, false, false}, true};
            else if (agreed[row].Info.Type != property.Type || agreed[row].Info.Shape != property.Shape)
                agreed[row].Holds = false;
            seen[row] = true;
        }
    }
    return agreed;
}();

// ---- checks

consteval bool TypesAreDense() {
    for (std::size_t row = 0; row < std::size(TYPES); ++row) {
        if (TYPES[row].Type != row)
            return false;
    }
    return true;
}

consteval bool PropertiesAscend() {
    for (const ObjectTypeInfo& type : TYPES) {
        for (std::size_t i = 1; i < type.Properties.size(); ++i) {
            if (type.Properties[i].Property <= type.Properties[i - 1].Property)
                return false;
        }
    }
    return true;
}

static_assert(TypesAreDense(), "object types are sorted by number, without gaps");
static_assert(PropertiesAscend(), "properties of a type are sorted by number, each once");

} // namespace

const ObjectTypeInfo* FindObjectType(BACSTAC_OBJECT_TYPE type) {
    return type < std::size(TYPES) ? &TYPES[type] : nullptr;
}

std::span<const ObjectTypeInfo> AllObjectTypes() {
    return TYPES;
}

std::span<const PropertyInfo> ObjectProperties(BACSTAC_OBJECT_TYPE objectType) {
    const ObjectTypeInfo* const type = FindObjectType(objectType);
    return type == nullptr ? std::span<const PropertyInfo>() : type->Properties;
}

std::span<const BACSTAC_PROPERTY_ID> ObjectPropertyIds(BACSTAC_OBJECT_TYPE objectType) {
    const ObjectTypeInfo* const type = FindObjectType(objectType);
    const std::span<const BACSTAC_PROPERTY_ID> all(IDS.Ids);
    return type == nullptr ? all.first(0) : all.subspan(IDS.First[objectType], type->Properties.size());
}

const PropertyInfo* FindProperty(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property) {
    if (const PropertyInfo* const own = Find(ObjectProperties(objectType), property))
        return own;
    const auto* const row =
        std::lower_bound(std::begin(PROPERTY_NAMES), std::end(PROPERTY_NAMES), property,
                         [](const PropertyName& name, BACSTAC_PROPERTY_ID wanted) { return name.Property < wanted; });
    if (row == std::end(PROPERTY_NAMES) || row->Property != property)
        return nullptr;
    const Agreement& agreed = AGREED[static_cast<std::size_t>(row - std::begin(PROPERTY_NAMES))];
    return agreed.Holds ? &agreed.Info : nullptr;
}

} // namespace bacnet
