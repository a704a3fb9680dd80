#include "platform/stack/schema/Enumerations.h"

#include "platform/stack/schema/EnumTables.h"
#include "platform/stack/schema/ObjectTypes.h"
#include "platform/stack/schema/PropertyNames.h"
#include "platform/stack/schema/PropertyTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace bacnet {
namespace {

// ---- names

struct EnumInfo {
    ENUM_TYPE_ID Type = ENUM_NONE;
    std::span<const char* const> Names;
    std::span<const names::FarName> Far;
};

// The enumerations of object types and of properties have tables of their own.
constexpr EnumInfo ENUMERATIONS[] = {
    {ENUM_ACTION, names::ACTION, {}},
    {ENUM_BACKUP_STATE, names::BACKUP_STATE, {}},
    {ENUM_BINARY_PV, names::BINARY_PV, {}},
    {ENUM_DAYS_OF_WEEK, names::DAYS_OF_WEEK, {}},
    {ENUM_DEVICE_STATUS, names::DEVICE_STATUS, {}},
    {ENUM_UNITS, names::UNITS, names::FAR_UNITS},
    {ENUM_ERROR_CLASS, names::ERROR_CLASS, {}},
    {ENUM_EVENT_STATE, names::EVENT_STATE, {}},
    {ENUM_EVENT_TRANSITION_BITS, names::EVENT_TRANSITION_BITS, {}},
    {ENUM_EVENT_TYPE, names::EVENT_TYPE, {}},
    {ENUM_ERROR_CODE, names::ERROR_CODE, {}},
    {ENUM_NOTIFY_TYPE, names::NOTIFY_TYPE, {}},
    {ENUM_FILE_ACCESS_METHOD, names::FILE_ACCESS_METHOD, {}},
    {ENUM_LIFE_SAFETY_MODE, names::LIFE_SAFETY_MODE, {}},
    {ENUM_LIFE_SAFETY_OPERATION, names::LIFE_SAFETY_OPERATION, {}},
    {ENUM_LIFE_SAFETY_STATE, names::LIFE_SAFETY_STATE, {}},
    {ENUM_LIMIT_ENABLE, names::LIMIT_ENABLE, {}},
    {ENUM_LOGGING_TYPE, names::LOGGING_TYPE, {}},
    {ENUM_MAINTENANCE, names::MAINTENANCE, {}},
    {ENUM_STATUS_FLAGS, names::STATUS_FLAGS, {}},
    {ENUM_NODE_TYPE, names::NODE_TYPE, {}},
    {ENUM_POLARITY, names::POLARITY, {}},
    {ENUM_PROGRAM_ERROR, names::PROGRAM_ERROR, {}},
    {ENUM_PROGRAM_REQUEST, names::PROGRAM_REQUEST, {}},
    {ENUM_PROGRAM_STATE, names::PROGRAM_STATE, {}},
    {ENUM_RELIABILITY, names::RELIABILITY, {}},
    {ENUM_RESTART_REASON, names::RESTART_REASON, {}},
    {ENUM_SEGMENTATION, names::SEGMENTATION, {}},
    {ENUM_LOG_STATUS, names::LOG_STATUS, {}},
    {ENUM_SHED_STATE, names::SHED_STATE, {}},
    {ENUM_SILENCED_STATE, names::SILENCED_STATE, {}},
    {ENUM_SERVICES_SUPPORTED, names::SERVICES_SUPPORTED, {}},
    {ENUM_DOOR_ALARM_STATE, names::DOOR_ALARM_STATE, {}},
    {ENUM_DOOR_STATUS, names::DOOR_STATUS, {}},
    {ENUM_DOOR_VALUE, names::DOOR_VALUE, {}},
    {ENUM_LOCK_STATUS, names::LOCK_STATUS, {}},
    {ENUM_DOOR_SECURED_STATUS, names::DOOR_SECURED_STATUS, {}},
    {ENUM_ACCESS_EVENT, names::ACCESS_EVENT, names::FAR_ACCESS_EVENTS},
    {ENUM_ACCESS_CREDENTIAL_DISABLE, names::ACCESS_CREDENTIAL_DISABLE, {}},
    {ENUM_ACCESS_CREDENTIAL_DISABLE_REASON, names::ACCESS_CREDENTIAL_DISABLE_REASON, {}},
    {ENUM_AUTHENTICATION_STATUS, names::AUTHENTICATION_STATUS, {}},
    {ENUM_AUTHORIZATION_MODE, names::AUTHORIZATION_MODE, {}},
    {ENUM_ACCESS_USER_TYPE, names::ACCESS_USER_TYPE, {}},
    {ENUM_ACCESS_ZONE_OCCUPANCY_STATE, names::ACCESS_ZONE_OCCUPANCY_STATE, {}},
    {ENUM_ACCESS_PASSBACK_MODE, names::ACCESS_PASSBACK_MODE, {}},
    {ENUM_AUTHENTICATION_FACTOR_TYPE, names::AUTHENTICATION_FACTOR_TYPE, {}},
    {ENUM_LIGHTING_OPERATION, names::LIGHTING_OPERATION, {}},
    {ENUM_LIGHTING_IN_PROGRESS, names::LIGHTING_IN_PROGRESS, {}},
    {ENUM_LIGHTING_TRANSITION, names::LIGHTING_TRANSITION, {}},
    {ENUM_WRITE_STATUS, names::WRITE_STATUS, {}},
    {ENUM_REJECT_REASON, names::REJECT_REASON, {}},
    {ENUM_ABORT_REASON, names::ABORT_REASON, {}},
    {ENUM_SECURITY_LEVEL, names::SECURITY_LEVEL, {}},
    {ENUM_NETWORK_TYPE, names::NETWORK_TYPE, {}},
    {ENUM_PROTOCOL_LEVEL, names::PROTOCOL_LEVEL, {}},
    {ENUM_NETWORK_NUMBER_QUALITY, names::NETWORK_NUMBER_QUALITY, {}},
    {ENUM_IP_MODE, names::IP_MODE, {}},
    {ENUM_NETWORK_PORT_COMMAND, names::NETWORK_PORT_COMMAND, {}},
    {ENUM_TIMER_STATE, names::TIMER_STATE, {}},
    {ENUM_TIMER_TRANSITION, names::TIMER_TRANSITION, {}},
    {ENUM_BINARY_LIGHTING_PV, names::BINARY_LIGHTING_PV, {}},
    {ENUM_FAULT_TYPE, names::FAULT_TYPE, {}},
    {ENUM_LIFT_CAR_DIRECTION, names::LIFT_CAR_DIRECTION, {}},
    {ENUM_LIFT_CAR_DOOR_COMMAND, names::LIFT_CAR_DOOR_COMMAND, {}},
    {ENUM_LIFT_CAR_DRIVE_STATUS, names::LIFT_CAR_DRIVE_STATUS, {}},
    {ENUM_LIFT_CAR_MODE, names::LIFT_CAR_MODE, {}},
    {ENUM_LIFT_FAULT, names::LIFT_FAULT, {}},
    {ENUM_LIFT_GROUP_MODE, names::LIFT_GROUP_MODE, {}},
    {ENUM_ESCALATOR_FAULT, names::ESCALATOR_FAULT, {}},
    {ENUM_ESCALATOR_MODE, names::ESCALATOR_MODE, {}},
    {ENUM_ESCALATOR_OPERATION_DIRECTION, names::ESCALATOR_OPERATION_DIRECTION, {}},
    {ENUM_AUDIT_LEVEL, names::AUDIT_LEVEL, {}},
    {ENUM_AUDIT_OPERATION, names::AUDIT_OPERATION, {}},
    {ENUM_RELATIONSHIP, names::RELATIONSHIP, {}},
    {ENUM_ACCUMULATOR_STATUS, names::ACCUMULATOR_STATUS, {}},
    {ENUM_VT_CLASS, names::VT_CLASS, {}},
    {ENUM_AUDIT_OPERATION_FLAGS, names::AUDIT_OPERATION, {}},
    {ENUM_SUCCESS_FILTER, names::SUCCESS_FILTER, {}},
    {ENUM_AUTHORIZATION_EXEMPTION, names::AUTHORIZATION_EXEMPTION, {}},
    {ENUM_ACCESS_AUTHENTICATION_FACTOR_DISABLE, names::ACCESS_AUTHENTICATION_FACTOR_DISABLE, {}},
    {ENUM_ACCESS_RULE_TIME, names::ACCESS_RULE_TIME, {}},
    {ENUM_ACCESS_RULE_LOCATION, names::ACCESS_RULE_LOCATION, {}},
    {ENUM_ROUTER_STATUS, names::ROUTER_STATUS, {}},
    {ENUM_COLOR_OPERATION, names::COLOR_OPERATION, {}},
    {ENUM_SECURITY_POLICY, names::SECURITY_POLICY, {}},
};

constexpr bool IsObjectTypes(ENUM_TYPE_ID type) {
    return type == ENUM_OBJECT_TYPE || type == ENUM_OBJECT_TYPES_SUPPORTED;
}

constexpr auto BY_IDENTIFIER = [] {
    std::array<EnumInfo, ENUM_LAST + 1> infos{};
    for (const EnumInfo& info : ENUMERATIONS)
        infos[static_cast<std::size_t>(info.Type)] = info;
    return infos;
}();

constexpr const EnumInfo* Find(ENUM_TYPE_ID type) {
    return type >= 0 && type <= ENUM_LAST ? &BY_IDENTIFIER[static_cast<std::size_t>(type)] : nullptr;
}

consteval bool EveryIdentifierHasNames() {
    for (ENUM_TYPE_ID type = 1; type <= ENUM_LAST; ++type) {
        const bool elsewhere = IsObjectTypes(type) || type == ENUM_PROPERTY_ID || type == ENUM_NONE;
        if (Find(type)->Names.empty() != elsewhere)
            return false;
    }
    return true;
}

static_assert(EveryIdentifierHasNames(), "every enumeration is there");
static_assert(std::size(ENUMERATIONS) == ENUM_LAST - 4, "and each of them once");

// ---- which property has which

struct OfProperty {
    BACSTAC_PROPERTY_ID Property;
    ENUM_TYPE_ID Enum;
};

consteval OfProperty P(std::string_view property, ENUM_TYPE_ID type) {
    return {PropertyId(property), type};
}

// Whatever the object type.
constexpr auto BY_PROPERTY = [] {
    auto rows = std::to_array<OfProperty>({
        P("accepted-modes", ENUM_LIFE_SAFETY_MODE),
        P("access-alarm-events", ENUM_ACCESS_EVENT),
        P("access-event", ENUM_ACCESS_EVENT),
        P("access-transaction-events", ENUM_ACCESS_EVENT),
        P("ack-required", ENUM_EVENT_TRANSITION_BITS),
        P("acked-transitions", ENUM_EVENT_TRANSITION_BITS),
        P("action", ENUM_ACTION),
        P("audit-level", ENUM_AUDIT_LEVEL),
        P("auditable-operations", ENUM_AUDIT_OPERATION_FLAGS),
        P("authentication-status", ENUM_AUTHENTICATION_STATUS),
        P("authorization-exemptions", ENUM_AUTHORIZATION_EXEMPTION),
        P("authorization-mode", ENUM_AUTHORIZATION_MODE),
        P("backup-and-restore-state", ENUM_BACKUP_STATE),
        P("bacnet-ip-mode", ENUM_IP_MODE),
        P("bacnet-ipv6-mode", ENUM_IP_MODE),
        P("base-device-security-policy", ENUM_SECURITY_LEVEL),
        P("car-assigned-direction", ENUM_LIFT_CAR_DIRECTION),
        P("car-door-command", ENUM_LIFT_CAR_DOOR_COMMAND),
        P("car-door-status", ENUM_DOOR_STATUS),
        P("car-drive-status", ENUM_LIFT_CAR_DRIVE_STATUS),
        P("car-load-units", ENUM_UNITS),
        P("car-mode", ENUM_LIFT_CAR_MODE),
        P("car-moving-direction", ENUM_LIFT_CAR_DIRECTION),
        P("command", ENUM_NETWORK_PORT_COMMAND),
        P("controlled-variable-units", ENUM_UNITS),
        P("credential-disable", ENUM_ACCESS_CREDENTIAL_DISABLE),
        P("credential-status", ENUM_BINARY_PV),
        P("default-subordinate-relationship", ENUM_RELATIONSHIP),
        P("derivative-constant-units", ENUM_UNITS),
        P("door-alarm-state", ENUM_DOOR_ALARM_STATE),
        P("door-status", ENUM_DOOR_STATUS),
        P("escalator-mode", ENUM_ESCALATOR_MODE),
        P("event-enable", ENUM_EVENT_TRANSITION_BITS),
        P("event-state", ENUM_EVENT_STATE),
        P("event-type", ENUM_EVENT_TYPE),
        P("failed-attempt-events", ENUM_ACCESS_EVENT),
        P("fault-type", ENUM_FAULT_TYPE),
        P("file-access-method", ENUM_FILE_ACCESS_METHOD),
        P("group-mode", ENUM_LIFT_GROUP_MODE),
        P("in-progress", ENUM_LIGHTING_IN_PROGRESS),
        P("integral-constant-units", ENUM_UNITS),
        P("last-access-event", ENUM_ACCESS_EVENT),
        P("last-restart-reason", ENUM_RESTART_REASON),
        P("last-state-change", ENUM_TIMER_TRANSITION),
        P("life-safety-alarm-values", ENUM_LIFE_SAFETY_STATE),
        P("limit-enable", ENUM_LIMIT_ENABLE),
        P("lock-status", ENUM_LOCK_STATUS),
        P("logging-type", ENUM_LOGGING_TYPE),
        P("maintenance-required", ENUM_MAINTENANCE),
        P("masked-alarm-values", ENUM_DOOR_ALARM_STATE),
        P("member-status-flags", ENUM_STATUS_FLAGS),
        P("mode", ENUM_LIFE_SAFETY_MODE),
        P("network-number-quality", ENUM_NETWORK_NUMBER_QUALITY),
        P("network-type", ENUM_NETWORK_TYPE),
        P("node-type", ENUM_NODE_TYPE),
        P("notify-type", ENUM_NOTIFY_TYPE),
        P("object-type", ENUM_OBJECT_TYPE),
        P("occupancy-state", ENUM_ACCESS_ZONE_OCCUPANCY_STATE),
        P("operation-direction", ENUM_ESCALATOR_OPERATION_DIRECTION),
        P("operation-expected", ENUM_LIFE_SAFETY_OPERATION),
        P("output-units", ENUM_UNITS),
        P("passback-mode", ENUM_ACCESS_PASSBACK_MODE),
        P("polarity", ENUM_POLARITY),
        P("program-change", ENUM_PROGRAM_REQUEST),
        P("program-state", ENUM_PROGRAM_STATE),
        P("property-list", ENUM_PROPERTY_ID),
        P("proportional-constant-units", ENUM_UNITS),
        P("protocol-level", ENUM_PROTOCOL_LEVEL),
        P("protocol-object-types-supported", ENUM_OBJECT_TYPES_SUPPORTED),
        P("protocol-services-supported", ENUM_SERVICES_SUPPORTED),
        P("reason-for-disable", ENUM_ACCESS_CREDENTIAL_DISABLE_REASON),
        P("reason-for-halt", ENUM_PROGRAM_ERROR),
        P("reliability", ENUM_RELIABILITY),
        P("secured-status", ENUM_DOOR_SECURED_STATUS),
        P("segmentation-supported", ENUM_SEGMENTATION),
        P("silenced", ENUM_SILENCED_STATE),
        P("status-flags", ENUM_STATUS_FLAGS),
        P("subordinate-node-types", ENUM_NODE_TYPE),
        P("subordinate-relationships", ENUM_RELATIONSHIP),
        P("system-status", ENUM_DEVICE_STATUS),
        P("timer-state", ENUM_TIMER_STATE),
        P("tracking-value", ENUM_LIFE_SAFETY_STATE),
        P("transition", ENUM_LIGHTING_TRANSITION),
        P("units", ENUM_UNITS),
        P("user-type", ENUM_ACCESS_USER_TYPE),
        P("vt-classes-supported", ENUM_VT_CLASS),
        P("write-status", ENUM_WRITE_STATUS),
    });
    std::sort(rows.begin(), rows.end(),
              [](const OfProperty& left, const OfProperty& right) { return left.Property < right.Property; });
    return rows;
}();

struct OfObjectType {
    BACSTAC_OBJECT_TYPE Type;
    ENUM_TYPE_ID Value; // what the present value is, and all that speaks of it
    ENUM_TYPE_ID Alarm; // alarm and fault values, fault signals
};

constexpr OfObjectType BY_OBJECT_TYPE[] = {
    {OBJ_BINARY_INPUT, ENUM_BINARY_PV, ENUM_BINARY_PV},
    {OBJ_BINARY_OUTPUT, ENUM_BINARY_PV, ENUM_BINARY_PV},
    {OBJ_BINARY_VALUE, ENUM_BINARY_PV, ENUM_BINARY_PV},
    // An event enrollment has no present value: who asks with it means the binary one of a property state.
    {OBJ_EVENT_ENROLLMENT, ENUM_BINARY_PV, ENUM_NONE},
    {OBJ_LIFE_SAFETY_POINT, ENUM_LIFE_SAFETY_STATE, ENUM_LIFE_SAFETY_STATE},
    {OBJ_LIFE_SAFETY_ZONE, ENUM_LIFE_SAFETY_STATE, ENUM_LIFE_SAFETY_STATE},
    {OBJ_LOAD_CONTROL, ENUM_SHED_STATE, ENUM_NONE},
    {OBJ_ACCESS_DOOR, ENUM_DOOR_VALUE, ENUM_DOOR_ALARM_STATE},
    {OBJ_TIMER, ENUM_NONE, ENUM_TIMER_STATE},
    {OBJ_ACCESS_ZONE, ENUM_NONE, ENUM_ACCESS_ZONE_OCCUPANCY_STATE},
    {OBJ_BINARY_LIGHTING_OUTPUT, ENUM_BINARY_LIGHTING_PV, ENUM_NONE},
    {OBJ_ESCALATOR, ENUM_NONE, ENUM_ESCALATOR_FAULT},
    {OBJ_LIFT, ENUM_NONE, ENUM_LIFT_FAULT},
};

ENUM_TYPE_ID OfType(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property) {
    const auto* const row = std::find_if(std::begin(BY_OBJECT_TYPE), std::end(BY_OBJECT_TYPE),
                                         [&](const OfObjectType& candidate) { return candidate.Type == objectType; });
    if (row == std::end(BY_OBJECT_TYPE))
        return ENUM_NONE;
    switch (property) {
    case PropertyId("present-value"):
    case PropertyId("relinquish-default"):
    case PropertyId("priority-array"):
    case PropertyId("feedback-value"):
    case PropertyId("interface-value"):
        return row->Value;
    case PropertyId("alarm-value"):
    case PropertyId("alarm-values"):
    case PropertyId("fault-values"):
    case PropertyId("fault-signals"):
        return row->Alarm;
    default:
        return ENUM_NONE;
    }
}

} // namespace

const char* FindEnumName(ENUM_TYPE_ID type, std::uint32_t value) {
    if (IsObjectTypes(type)) {
        const ObjectTypeInfo* const info = FindObjectType(value);
        return info == nullptr ? nullptr : info->Name;
    }
    if (type == ENUM_PROPERTY_ID)
        return FindPropertyName(value);
    const EnumInfo* const info = Find(type);
    if (info == nullptr)
        return nullptr;
    if (value < info->Names.size())
        return info->Names[value];
    for (const names::FarName& far : info->Far) {
        if (far.Value == value)
            return far.Name;
    }
    return nullptr;
}

std::uint32_t EnumCount(ENUM_TYPE_ID type) {
    if (IsObjectTypes(type))
        return static_cast<std::uint32_t>(AllObjectTypes().size());
    const EnumInfo* const info = Find(type);
    return info == nullptr ? 0 : static_cast<std::uint32_t>(info->Names.size());
}

ENUM_TYPE_ID FindEnumType(BACSTAC_OBJECT_TYPE objectType, BACSTAC_PROPERTY_ID property) {
    if (const ENUM_TYPE_ID own = OfType(objectType, property); own != ENUM_NONE)
        return own;
    const auto* const row =
        std::lower_bound(BY_PROPERTY.begin(), BY_PROPERTY.end(), property,
                         [](const OfProperty& left, BACSTAC_PROPERTY_ID wanted) { return left.Property < wanted; });
    return row == BY_PROPERTY.end() || row->Property != property ? ENUM_NONE : row->Enum;
}

} // namespace bacnet
