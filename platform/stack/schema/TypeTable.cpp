#include "platform/stack/schema/TypeTable.h"

#include "api/bacnet/MoreRecords.h"
#include "platform/stack/schema/ApplicationTag.h"
#include "platform/stack/schema/MoreMembers.h"
#include "platform/stack/schema/TypeMembers.h"

#include <array>
#include <cstddef>

namespace bacnet {
namespace {

using namespace members;

// ---- the table

constexpr TypeInfo Primitive(BACSTAC_DATA_TYPE type, const char* name, std::uint8_t tag, std::size_t size) {
    return {type, name, TypeKind::primitive, tag, static_cast<std::uint16_t>(size)};
}

constexpr bool RefersBehind(std::span<const Member> members) {
    for (const Member& member : members) {
        if (member.Form != MemberForm::value)
            return true;
        switch (member.Type) { // parts and types that hold such members themselves
        case PART_LOG_DATUM:
        case PART_LOG_MULTIPLE_DATA:
        case PART_EVENT_LOG_DATUM:
        case PART_READ_ACCESS_CHOICE:
        case PART_HOST_ADDRESS:
        case PART_AUDIT_LOG_DATUM:
        case TYPE_EVENT_NOTIF:
        case TYPE_NOTIFICATION_PARAMETERS:
        case TYPE_HOST_N_PORT:
        case TYPE_AUTHENTICATION_FACTOR:
        case TYPE_AUDIT_NOTIFICATION:
            return true;
        default:
            break;
        }
    }
    return false;
}

constexpr TypeInfo Constructed(TypeKind kind, BACSTAC_DATA_TYPE type, const char* name, std::size_t size,
                               std::span<const Member> members, BACSTAC_DATA_TYPE openType = TYPE_NONE) {
    TypeInfo info{type, name, kind, 0, static_cast<std::uint16_t>(size), members};
    info.OpenType = openType;
    info.HasReferences = RefersBehind(members);
    return info;
}

constexpr TypeInfo Sequence(BACSTAC_DATA_TYPE type, const char* name, std::size_t size,
                            std::span<const Member> members) {
    return Constructed(TypeKind::sequence, type, name, size, members);
}

constexpr TypeInfo Choice(BACSTAC_DATA_TYPE type, const char* name, std::size_t size, std::span<const Member> members,
                          BACSTAC_DATA_TYPE openType = TYPE_NONE) {
    return Constructed(TypeKind::choice, type, name, size, members, openType);
}

constexpr TypeInfo Variant(BACSTAC_DATA_TYPE type, const char* name, std::size_t size, std::span<const Member> number,
                           BACSTAC_DATA_TYPE base) {
    TypeInfo info{type, name, TypeKind::variant, 0, static_cast<std::uint16_t>(size), number};
    info.VariantBase = base;
    info.HasReferences = true;
    return info;
}

constexpr TypeInfo OfReferences(TypeInfo info) {
    info.HasReferences = true;
    return info;
}

constexpr BACSTAC_DATA_TYPE EP = TYPE_EVENT_PARAMETER_FIRST;
constexpr BACSTAC_DATA_TYPE NP = TYPE_NOTIFICATION_PARAMETER_FIRST;
constexpr BACSTAC_DATA_TYPE FP = TYPE_FAULT_PARAMETER_FIRST;

constexpr TypeInfo TYPES[] = {
    Primitive(TYPE_NULL, "null", TAG_NULL, 1),
    Primitive(TYPE_BOOLEAN, "boolean", TAG_BOOLEAN, 1),
    Primitive(TYPE_UNSIGNED, "unsigned", TAG_UNSIGNED, 4),
    Primitive(TYPE_SIGNED, "signed", TAG_SIGNED, 4),
    Primitive(TYPE_REAL, "real", TAG_REAL, 4),
    Primitive(TYPE_DOUBLE, "double", TAG_DOUBLE, 8),
    Primitive(TYPE_OCTET_STRING, "octet-string", TAG_OCTET_STRING, 0),
    Primitive(TYPE_RAW_STRING, "raw-character-string", TAG_CHARACTER_STRING, 0),
    Primitive(TYPE_BIT_STRING, "bit-string", TAG_BIT_STRING, sizeof(BACSTAC_BIT_STRING)),
    Primitive(TYPE_ENUMERATED, "enumerated", TAG_ENUMERATED, 4),
    Primitive(TYPE_DATE, "date", TAG_DATE, sizeof(BACSTAC_DATE)),
    Primitive(TYPE_TIME, "time", TAG_TIME, sizeof(BACSTAC_TIME)),
    Primitive(TYPE_OBJECT_ID, "object-identifier", TAG_OBJECT_ID, sizeof(BACSTAC_OBJECT_ID)),
    Primitive(TYPE_STRING, "character-string", TAG_CHARACTER_STRING, 0),
    OfReferences(Primitive(TYPE_ANY, "any", TAG_OF_NO_TYPE, sizeof(BACSTAC_ANY_VALUE))),
    Constructed(TypeKind::address, TYPE_ADDRESS, "address", sizeof(BACSTAC_ADDRESS), {}),
    Sequence(TYPE_ERROR, "error", sizeof(BACSTAC_ERROR_VALUE), ERROR_VALUE),
    Choice(TYPE_LOG_ITEM, "log-data", sizeof(BACSTAC_LOG_ITEM), LOG_ITEM),
    Sequence(TYPE_ACTION_LIST, "action-list", sizeof(BACSTAC_ACTION_LIST), ACTION_LIST),
    Sequence(TYPE_ACCUMULATOR_RECORD, "accumulator-record", sizeof(BACSTAC_ACCUMULATOR_RECORD), ACCUMULATOR_RECORD),
    Sequence(TYPE_DATE_TIME, "date-time", sizeof(BACSTAC_DATE_TIME), DATE_TIME),
    Sequence(TYPE_OBJ_PROP_REF, "object-property-reference", sizeof(BACSTAC_OBJ_PROP_REF), OBJ_PROP_REF),
    Choice(TYPE_PROPERTY_STATE, "property-state", sizeof(BACSTAC_PROPERTY_STATE), PROPERTY_STATE, TYPE_UNSIGNED),
    Sequence(TYPE_DATE_RANGE, "date-range", sizeof(BACSTAC_DATE_RANGE), DATE_RANGE),
    Primitive(TYPE_WEEK_N_DAY, "week-n-day", TAG_OCTET_STRING, sizeof(BACSTAC_WEEK_N_DAY)),
    Choice(TYPE_CALENDAR_ENTRY, "calendar-entry", sizeof(BACSTAC_CALENDAR_ENTRY), CALENDAR_ENTRY),
    Sequence(TYPE_TIME_VALUE, "time-value", sizeof(BACSTAC_TIME_VALUE), TIME_VALUE),
    Sequence(TYPE_SPECIAL_EVENT, "special-event", sizeof(BACSTAC_SPECIAL_EVENT), SPECIAL_EVENT),
    Sequence(TYPE_DAILY_SCHEDULE, "daily-schedule", sizeof(BACSTAC_DAILY_SCHEDULE), DAILY_SCHEDULE),
    Choice(TYPE_RECIPIENT, "recipient", sizeof(BACSTAC_RECIPIENT), RECIPIENT),
    Sequence(TYPE_SETPOINT_REF, "setpoint-reference", sizeof(BACSTAC_SETPOINT_REF), SETPOINT_REF),
    Sequence(TYPE_DESTINATION, "destination", sizeof(BACSTAC_DESTINATION), DESTINATION),
    Sequence(TYPE_RECIPIENT_PROCESS, "recipient-process", sizeof(BACSTAC_RECIPIENT_PROCESS), RECIPIENT_PROCESS),
    Choice(TYPE_TIME_STAMP, "time-stamp", sizeof(BACSTAC_TIME_STAMP), TIME_STAMP),
    Sequence(TYPE_PROPERTY_REF, "property-reference", sizeof(BACSTAC_PROPERTY_REF), PROPERTY_REF),
    Sequence(TYPE_ADDRESS_BINDING, "address-binding", sizeof(BACSTAC_ADDRESS_BINDING), ADDRESS_BINDING),
    Sequence(TYPE_DEV_OBJ_PROP_REF, "device-object-property-reference", sizeof(BACSTAC_DEV_OBJ_PROP_REF),
             DEV_OBJ_PROP_REF),
    Choice(TYPE_CLIENT_COV, "client-cov", sizeof(BACSTAC_CLIENT_COV), CLIENT_COV),
    Sequence(TYPE_LOG_RECORD, "log-record", sizeof(BACSTAC_LOG_RECORD), LOG_RECORD),
    Sequence(TYPE_EVENT_NOTIF, "event-notification", sizeof(BACSTAC_EVENT_NOTIF), EVENT_NOTIF),
    Sequence(TYPE_READ_ACCESS_SPEC, "read-access-specification", sizeof(BACSTAC_READ_ACCESS_SPEC), READ_ACCESS_SPEC),
    Sequence(TYPE_READ_ACCESS_RESULT, "read-access-result", sizeof(BACSTAC_READ_ACCESS_RESULT), READ_ACCESS_RESULT),
    Variant(TYPE_EVENT_PARAMETER, "event-parameter", sizeof(BACSTAC_EVENT_PARAMETER), EVENT_TYPE, EP),
    Sequence(TYPE_COV_SUBSCRIPTION, "cov-subscription", sizeof(BACSTAC_COV_SUBSCRIPTION), COV_SUBSCRIPTION),
    Sequence(TYPE_DEV_OBJ_REF, "device-object-reference", sizeof(BACSTAC_DEV_OBJ_REF), DEV_OBJ_REF),
    Variant(TYPE_NOTIFICATION_PARAMETERS, "notification-parameters", sizeof(BACSTAC_NOTIFICATION_PARAMETERS),
            EVENT_TYPE, NP),
    Sequence(TYPE_PRESCALE, "prescale", sizeof(BACSTAC_PRESCALE), PRESCALE),
    Choice(TYPE_SCALE, "scale", sizeof(BACSTAC_SCALE), SCALE),
    Sequence(TYPE_ACTION_COMMAND, "action-command", sizeof(BACSTAC_ACTION_COMMAND), ACTION_COMMAND),
    Choice(TYPE_SHED_LEVEL, "shed-level", sizeof(BACSTAC_SHED_LEVEL), SHED_LEVEL),
    Sequence(TYPE_EVENT_LOG_RECORD, "event-log-record", sizeof(BACSTAC_EVENT_LOG_RECORD), EVENT_LOG_RECORD),
    Sequence(TYPE_LOG_MULTIPLE_RECORD, "log-multiple-record", sizeof(BACSTAC_LOG_MULTIPLE_RECORD), LOG_MULTIPLE_RECORD),
    Sequence(TYPE_READ_RESULT_ITEM, "read-result-item", sizeof(BACSTAC_READ_ACCESS_ITEM), READ_ACCESS_ITEM),
    Sequence(TYPE_NAME_VALUE, "name-value", sizeof(BACSTAC_NAME_VALUE), NAME_VALUE),
    Sequence(TYPE_NAME_VALUE_COLLECTION, "name-value-collection", sizeof(BACSTAC_NAME_VALUE_COLLECTION),
             NAME_VALUE_COLLECTION),
    Sequence(TYPE_PROPERTY_VALUE, "property-value", sizeof(BACSTAC_PROPERTY_VALUE_RECORD), PROPERTY_VALUE),
    Sequence(TYPE_PROPERTY_ACCESS_RESULT, "property-access-result", sizeof(BACSTAC_PROPERTY_ACCESS_RESULT),
             PROPERTY_ACCESS_RESULT),
    Choice(TYPE_VALUE_SOURCE, "value-source", sizeof(BACSTAC_VALUE_SOURCE), VALUE_SOURCE),
    Sequence(TYPE_LIGHTING_COMMAND, "lighting-command", sizeof(BACSTAC_LIGHTING_COMMAND), LIGHTING_COMMAND),
    Sequence(TYPE_XY_COLOR, "xy-color", sizeof(BACSTAC_XY_COLOR), XY_COLOR),
    Sequence(TYPE_COLOR_COMMAND, "color-command", sizeof(BACSTAC_COLOR_COMMAND), COLOR_COMMAND),
    Choice(TYPE_TIMER_STATE_CHANGE, "timer-state-change-value", sizeof(BACSTAC_TIMER_STATE_CHANGE), TIMER_STATE_CHANGE),
    Sequence(TYPE_STAGE_LIMIT, "stage-limit-value", sizeof(BACSTAC_STAGE_LIMIT), STAGE_LIMIT),
    Sequence(TYPE_VT_SESSION, "vt-session", sizeof(BACSTAC_VT_SESSION), VT_SESSION),
    Sequence(TYPE_SESSION_KEY, "session-key", sizeof(BACSTAC_SESSION_KEY), SESSION_KEY),
    Sequence(TYPE_COV_MULTIPLE_SUBSCRIPTION, "cov-multiple-subscription", sizeof(BACSTAC_COV_MULTIPLE_SUBSCRIPTION),
             COV_MULTIPLE_SUBSCRIPTION),
    Sequence(TYPE_EVENT_SUBSCRIPTION, "event-notification-subscription", sizeof(BACSTAC_EVENT_SUBSCRIPTION),
             EVENT_SUBSCRIPTION),
    Choice(TYPE_PROCESS_ID_SELECTION, "process-id-selection", sizeof(BACSTAC_PROCESS_ID_SELECTION),
           PROCESS_ID_SELECTION),
    Sequence(TYPE_ASSIGNED_ACCESS_RIGHTS, "assigned-access-rights", sizeof(BACSTAC_ASSIGNED_ACCESS_RIGHTS),
             ASSIGNED_ACCESS_RIGHTS),
    Sequence(TYPE_AUTHENTICATION_FACTOR, "authentication-factor", sizeof(BACSTAC_AUTHENTICATION_FACTOR),
             AUTHENTICATION_FACTOR),
    Sequence(TYPE_CREDENTIAL_FACTOR, "credential-authentication-factor", sizeof(BACSTAC_CREDENTIAL_FACTOR),
             CREDENTIAL_FACTOR),
    Sequence(TYPE_FACTOR_FORMAT, "authentication-factor-format", sizeof(BACSTAC_FACTOR_FORMAT), FACTOR_FORMAT),
    Sequence(TYPE_AUTHENTICATION_POLICY, "authentication-policy", sizeof(BACSTAC_AUTHENTICATION_POLICY),
             AUTHENTICATION_POLICY),
    Sequence(TYPE_ACCESS_RULE, "access-rule", sizeof(BACSTAC_ACCESS_RULE), ACCESS_RULE),
    Sequence(TYPE_SECURITY_KEY_SET, "security-key-set", sizeof(BACSTAC_SECURITY_KEY_SET), SECURITY_KEY_SET),
    Sequence(TYPE_SECURITY_POLICY, "network-security-policy", sizeof(BACSTAC_SECURITY_POLICY), SECURITY_POLICY),
    Sequence(TYPE_PORT_PERMISSION, "port-permission", sizeof(BACSTAC_PORT_PERMISSION), PORT_PERMISSION),
    Sequence(TYPE_HOST_N_PORT, "host-n-port", sizeof(BACSTAC_HOST_N_PORT), HOST_N_PORT),
    Sequence(TYPE_BDT_ENTRY, "bdt-entry", sizeof(BACSTAC_BDT_ENTRY), BDT_ENTRY),
    Sequence(TYPE_FDT_ENTRY, "fdt-entry", sizeof(BACSTAC_FDT_ENTRY), FDT_ENTRY),
    Sequence(TYPE_ROUTER_ENTRY, "router-entry", sizeof(BACSTAC_ROUTER_ENTRY), ROUTER_ENTRY),
    Sequence(TYPE_VMAC_ENTRY, "vmac-entry", sizeof(BACSTAC_VMAC_ENTRY), VMAC_ENTRY),
    Sequence(TYPE_LANDING_CALL_STATUS, "landing-call-status", sizeof(BACSTAC_LANDING_CALL_STATUS), LANDING_CALL_STATUS),
    Sequence(TYPE_ASSIGNED_LANDING_CALLS, "assigned-landing-calls", sizeof(BACSTAC_ASSIGNED_LANDING_CALLS),
             ASSIGNED_LANDING_CALLS),
    Sequence(TYPE_LANDING_DOOR_STATUS, "landing-door-status", sizeof(BACSTAC_LANDING_DOOR_STATUS), LANDING_DOOR_STATUS),
    Sequence(TYPE_LIFT_CAR_CALL_LIST, "lift-car-call-list", sizeof(BACSTAC_LIFT_CAR_CALL_LIST), LIFT_CAR_CALL_LIST),
    Choice(TYPE_OBJECT_SELECTOR, "object-selector", sizeof(BACSTAC_OBJECT_SELECTOR), OBJECT_SELECTOR),
    Sequence(TYPE_AUDIT_NOTIFICATION, "audit-notification", sizeof(BACSTAC_AUDIT_NOTIFICATION), AUDIT_NOTIFICATION),
    Sequence(TYPE_AUDIT_LOG_RECORD, "audit-log-record", sizeof(BACSTAC_AUDIT_LOG_RECORD), AUDIT_LOG_RECORD),
    Variant(TYPE_FAULT_PARAMETER, "fault-parameter", sizeof(BACSTAC_FAULT_PARAMETER), FAULT_TYPE, FP),
    Sequence(EP + 0, "change-of-bitstring", sizeof(BACSTAC_EP_CHANGE_OF_BITSTRING), EP_CHANGE_OF_BITSTRING),
    Sequence(EP + 1, "change-of-state", sizeof(BACSTAC_EP_CHANGE_OF_STATE), EP_CHANGE_OF_STATE),
    Sequence(EP + 2, "change-of-value", sizeof(BACSTAC_EP_CHANGE_OF_VALUE), EP_CHANGE_OF_VALUE),
    Sequence(EP + 3, "command-failure", sizeof(BACSTAC_EP_COMMAND_FAILURE), EP_COMMAND_FAILURE),
    Sequence(EP + 4, "floating-limit", sizeof(BACSTAC_EP_FLOATING_LIMIT), EP_FLOATING_LIMIT),
    Sequence(EP + 5, "out-of-range", sizeof(BACSTAC_EP_OUT_OF_RANGE), EP_OUT_OF_RANGE),
    Sequence(EP + 8, "change-of-life-safety", sizeof(BACSTAC_EP_CHANGE_OF_LIFE_SAFETY), EP_CHANGE_OF_LIFE_SAFETY),
    Sequence(EP + 9, "extended", sizeof(BACSTAC_EP_EXTENDED), EP_EXTENDED),
    Sequence(EP + 10, "buffer-ready", sizeof(BACSTAC_EP_BUFFER_READY), EP_BUFFER_READY),
    Sequence(EP + 11, "unsigned-range", sizeof(BACSTAC_EP_UNSIGNED_RANGE), EP_UNSIGNED_RANGE),
    Sequence(EP + 13, "access-event", sizeof(BACSTAC_EP_ACCESS_EVENT), EP_ACCESS_EVENT),
    Sequence(EP + 14, "double-out-of-range", sizeof(BACSTAC_EP_DOUBLE_OUT_OF_RANGE), EP_DOUBLE_OUT_OF_RANGE),
    Sequence(EP + 15, "signed-out-of-range", sizeof(BACSTAC_EP_SIGNED_OUT_OF_RANGE), EP_SIGNED_OUT_OF_RANGE),
    Sequence(EP + 16, "unsigned-out-of-range", sizeof(BACSTAC_EP_UNSIGNED_OUT_OF_RANGE), EP_UNSIGNED_OUT_OF_RANGE),
    Sequence(EP + 17, "change-of-characterstring", sizeof(BACSTAC_EP_CHANGE_OF_CHARACTERSTRING),
             EP_CHANGE_OF_CHARACTERSTRING),
    Sequence(EP + 18, "change-of-status-flags", sizeof(BACSTAC_EP_CHANGE_OF_STATUS_FLAGS), EP_CHANGE_OF_STATUS_FLAGS),
    Sequence(EP + 21, "change-of-discrete-value", sizeof(BACSTAC_EP_CHANGE_OF_DISCRETE_VALUE),
             EP_CHANGE_OF_DISCRETE_VALUE),
    Sequence(EP + 22, "change-of-timer", sizeof(BACSTAC_EP_CHANGE_OF_TIMER), EP_CHANGE_OF_TIMER),
    Sequence(NP + 0, "change-of-bitstring", sizeof(BACSTAC_NP_CHANGE_OF_BITSTRING), NP_CHANGE_OF_BITSTRING),
    Sequence(NP + 1, "change-of-state", sizeof(BACSTAC_NP_CHANGE_OF_STATE), NP_CHANGE_OF_STATE),
    Sequence(NP + 2, "change-of-value", sizeof(BACSTAC_NP_CHANGE_OF_VALUE), NP_CHANGE_OF_VALUE),
    Sequence(NP + 3, "command-failure", sizeof(BACSTAC_NP_COMMAND_FAILURE), NP_COMMAND_FAILURE),
    Sequence(NP + 4, "floating-limit", sizeof(BACSTAC_NP_FLOATING_LIMIT), NP_FLOATING_LIMIT),
    Sequence(NP + 5, "out-of-range", sizeof(BACSTAC_NP_OUT_OF_RANGE), NP_OUT_OF_RANGE),
    Sequence(NP + 6, "complex-event-type", sizeof(BACSTAC_NP_COMPLEX), NP_COMPLEX),
    Sequence(NP + 8, "change-of-life-safety", sizeof(BACSTAC_NP_CHANGE_OF_LIFE_SAFETY), NP_CHANGE_OF_LIFE_SAFETY),
    Sequence(NP + 9, "extended", sizeof(BACSTAC_NP_EXTENDED), NP_EXTENDED),
    Sequence(NP + 10, "buffer-ready", sizeof(BACSTAC_NP_BUFFER_READY), NP_BUFFER_READY),
    Sequence(NP + 11, "unsigned-range", sizeof(BACSTAC_NP_UNSIGNED_RANGE), NP_UNSIGNED_RANGE),
    Sequence(NP + 13, "access-event", sizeof(BACSTAC_NP_ACCESS_EVENT), NP_ACCESS_EVENT),
    Sequence(NP + 14, "double-out-of-range", sizeof(BACSTAC_NP_DOUBLE_OUT_OF_RANGE), NP_DOUBLE_OUT_OF_RANGE),
    Sequence(NP + 15, "signed-out-of-range", sizeof(BACSTAC_NP_SIGNED_OUT_OF_RANGE), NP_SIGNED_OUT_OF_RANGE),
    Sequence(NP + 16, "unsigned-out-of-range", sizeof(BACSTAC_NP_UNSIGNED_OUT_OF_RANGE), NP_UNSIGNED_OUT_OF_RANGE),
    Sequence(NP + 17, "change-of-characterstring", sizeof(BACSTAC_NP_CHANGE_OF_CHARACTERSTRING),
             NP_CHANGE_OF_CHARACTERSTRING),
    Sequence(NP + 18, "change-of-status-flags", sizeof(BACSTAC_NP_CHANGE_OF_STATUS_FLAGS), NP_CHANGE_OF_STATUS_FLAGS),
    Sequence(NP + 19, "change-of-reliability", sizeof(BACSTAC_NP_CHANGE_OF_RELIABILITY), NP_CHANGE_OF_RELIABILITY),
    Sequence(NP + 21, "change-of-discrete-value", sizeof(BACSTAC_NP_CHANGE_OF_DISCRETE_VALUE),
             NP_CHANGE_OF_DISCRETE_VALUE),
    Sequence(NP + 22, "change-of-timer", sizeof(BACSTAC_NP_CHANGE_OF_TIMER), NP_CHANGE_OF_TIMER),
    Sequence(FP + 1, "fault-characterstring", sizeof(BACSTAC_FP_VALUES), FP_CHARACTERSTRING),
    Sequence(FP + 2, "fault-extended", sizeof(BACSTAC_FP_EXTENDED), FP_EXTENDED),
    Sequence(FP + 3, "fault-life-safety", sizeof(BACSTAC_FP_LIFE_SAFETY), FP_LIFE_SAFETY),
    Sequence(FP + 4, "fault-state", sizeof(BACSTAC_FP_VALUES), FP_STATE),
    Sequence(FP + 5, "fault-status-flags", sizeof(BACSTAC_FP_REFERENCE), FP_STATUS_FLAGS),
    Sequence(FP + 6, "fault-out-of-range", sizeof(BACSTAC_FP_OUT_OF_RANGE), FP_OUT_OF_RANGE),
    Sequence(FP + 7, "fault-listed", sizeof(BACSTAC_FP_REFERENCE), FP_LISTED),
    Choice(PART_LOG_DATUM, "log-datum", sizeof(BACSTAC_LOG_VALUE) + 4, LOG_DATUM),
    Choice(PART_LOG_MULTIPLE_DATA, "log-multiple-data", sizeof(BACSTAC_LOG_MULTIPLE_RECORD) - 20, LOG_MULTIPLE_DATA),
    Choice(PART_EVENT_LOG_DATUM, "event-log-datum", sizeof(BACSTAC_EVENT_LOG_RECORD) - 20, EVENT_LOG_DATUM),
    Choice(PART_SPECIAL_EVENT_PERIOD, "period", sizeof(BACSTAC_CALENDAR_ENTRY) + 4, SPECIAL_EVENT_PERIOD),
    Choice(PART_READ_ACCESS_CHOICE, "result", sizeof(BACSTAC_ANY_VALUE) + 4, READ_ACCESS_CHOICE),
    Choice(PART_CHANGE_OF_VALUE_CRITERIA, "cov-criteria", sizeof(BACSTAC_BIT_STRING) + 4, CHANGE_OF_VALUE_CRITERIA),
    Choice(PART_CHANGE_OF_VALUE_NEW, "new-value", sizeof(BACSTAC_BIT_STRING) + 4, CHANGE_OF_VALUE_NEW),
    Sequence(PART_COV_REFERENCE, "cov-reference", sizeof(BACSTAC_COV_REFERENCE), COV_REFERENCE),
    Sequence(PART_COV_SPECIFICATION, "cov-specification", sizeof(BACSTAC_COV_SPECIFICATION), COV_SPECIFICATION),
    Sequence(PART_AUTHENTICATION_INPUT, "authentication-input", sizeof(BACSTAC_AUTHENTICATION_INPUT),
             AUTHENTICATION_INPUT),
    Sequence(PART_KEY_IDENTIFIER, "key-identifier", sizeof(BACSTAC_KEY_IDENTIFIER), KEY_IDENTIFIER),
    Choice(PART_HOST_ADDRESS, "host-address", sizeof(BACSTAC_HOST_N_PORT) - 4, HOST_ADDRESS),
    Choice(PART_LANDING_COMMAND, "landing-command", LANDING_VALUE + 4, LANDING_COMMAND),
    Sequence(PART_LANDING_CALL, "landing-call", sizeof(BACSTAC_LANDING_CALL), LANDING_CALL),
    Sequence(PART_LANDING_DOOR, "landing-door", sizeof(BACSTAC_LANDING_DOOR), LANDING_DOOR),
    Choice(PART_AUDIT_LOG_DATUM, "audit-log-datum", sizeof(BACSTAC_AUDIT_LOG_RECORD) - 20, AUDIT_LOG_DATUM),
};

// ---- lookup and checks

// Numbers are dense in these blocks; a slot holds one plus the row.
constexpr int BLOCK = 64;
constexpr int BLOCKS[] = {0, TYPE_NAME_VALUE, EP, NP, FP, PART_LOG_DATUM};
constexpr int Slot(BACSTAC_DATA_TYPE type) {
    for (int i = 0; i < static_cast<int>(std::size(BLOCKS)); ++i) {
        if (type >= BLOCKS[i] && type < BLOCKS[i] + BLOCK)
            return i * BLOCK + (type - BLOCKS[i]);
    }
    return -1;
}

constexpr auto SLOTS = [] {
    std::array<std::uint8_t, std::size(BLOCKS) * BLOCK> slots{};
    for (std::size_t row = 0; row < std::size(TYPES); ++row)
        slots[static_cast<std::size_t>(Slot(TYPES[row].Type))] = static_cast<std::uint8_t>(row + 1);
    return slots;
}();

constexpr const TypeInfo* Find(BACSTAC_DATA_TYPE type) {
    const int slot = Slot(type);
    const std::uint8_t row = slot < 0 ? std::uint8_t{0} : SLOTS[static_cast<std::size_t>(slot)];
    return row == 0 ? nullptr : &TYPES[row - 1];
}

consteval bool Ascending() {
    for (std::size_t row = 1; row < std::size(TYPES); ++row) {
        if (TYPES[row].Type <= TYPES[row - 1].Type)
            return false;
    }
    return true;
}

constexpr std::size_t SizeInRecord(const Member& member) {
    if (member.Form == MemberForm::list)
        return sizeof(BACSTAC_LIST);
    if (member.Form == MemberForm::any || member.Form == MemberForm::values)
        return sizeof(BACSTAC_ANY_VALUE);
    return member.Form == MemberForm::string ? sizeof(std::uint32_t) : Find(member.Type)->Size;
}

// Every member has a known type and lies within its record, choices behind the number that tells them; sequences keep
// the order of their context tags, choices have each tag once.
consteval bool MembersFit() {
    for (const TypeInfo& type : TYPES) {
        for (std::size_t i = 0; i < type.Members.size(); ++i) {
            const Member& member = type.Members[i];
            const TypeInfo* known = Find(member.Type);
            if (known == nullptr || member.Offset + SizeInRecord(member) > type.Size)
                return false;
            if (member.Form == MemberForm::value && known->Size == 0)
                return false;
            if (type.Kind == TypeKind::choice && member.Offset < 4)
                return false;
            if (member.Optional != Presence::required && member.Context < 0)
                return false;
            if (i > 0 && member.Context >= 0 && member.Context <= type.Members[i - 1].Context)
                return false;
        }
    }
    return true;
}

consteval bool ReferencesAreKnown() {
    for (const TypeInfo& type : TYPES) {
        bool refers = type.Kind == TypeKind::variant || type.Type == TYPE_ANY;
        for (const Member& member : type.Members)
            refers = refers || member.Form != MemberForm::value || Find(member.Type)->HasReferences;
        if (refers != type.HasReferences)
            return false;
    }
    return true;
}

static_assert(std::size(TYPES) < 255);
static_assert(Ascending(), "types are sorted by number, each once");
static_assert(MembersFit(), "members lie within their records, in the order of their tags");
static_assert(ReferencesAreKnown(), "a type that holds references says so");

consteval bool PrimitivesAreKnown() {
    for (const TypeInfo& type : TYPES) {
        if (IsPrimitiveType(type.Type) != (type.Kind == TypeKind::primitive))
            return false;
    }
    return true;
}

static_assert(PrimitivesAreKnown());

} // namespace

constinit const std::array<const TypeInfo*, DENSE_TYPES> TYPES_BY_NUMBER = [] {
    std::array<const TypeInfo*, DENSE_TYPES> types{};
    for (BACSTAC_DATA_TYPE type = 0; type < DENSE_TYPES; ++type)
        types[static_cast<std::size_t>(type)] = Find(type);
    return types;
}();

const TypeInfo* FindSparseType(BACSTAC_DATA_TYPE type) {
    return Find(type);
}

const TypeInfo* FindAlternative(const TypeInfo& variant, std::uint32_t number) {
    return number < BLOCK ? Find(variant.VariantBase + static_cast<BACSTAC_DATA_TYPE>(number)) : nullptr;
}

std::span<const TypeInfo> AllTypes() {
    return TYPES;
}

} // namespace bacnet
