// Members of the types of MoreRecords.h (ANSI/ASHRAE 135 clause 21), for TypeTable.cpp: one list a type, in the order
// of the encoding.
#pragma once

#include "api/bacnet/MoreRecords.h"
#include "platform/stack/schema/MemberRows.h"
#include "platform/stack/schema/TypeMembers.h"

namespace bacnet::members {

// ---- values

inline constexpr Member VALUES_NAME_VALUE = [] {
    Member member = Any("value", -1, AT(BACSTAC_NAME_VALUE, Value));
    member.Form = MemberForm::values;
    return member;
}();

inline constexpr Member NAME_VALUE[] = {Text("name", 0, AT(BACSTAC_NAME_VALUE, Name)), VALUES_NAME_VALUE};

inline constexpr Member NAME_VALUE_COLLECTION[] = {
    List("members", TYPE_NAME_VALUE, 0, AT(BACSTAC_NAME_VALUE_COLLECTION, Members))};

inline constexpr Member PROPERTY_VALUE[] = {
    One("property", TYPE_ENUMERATED, 0, AT(BACSTAC_PROPERTY_VALUE_RECORD, Property), ENUM_PROPERTY_ID),
    UnlessAbsent(One("array-index", TYPE_UNSIGNED, 1, AT(BACSTAC_PROPERTY_VALUE_RECORD, ArrayIndex)), NO_INDEX),
    Any("value", 2, AT(BACSTAC_PROPERTY_VALUE_RECORD, Value)),
    UnlessAbsent(One("priority", TYPE_UNSIGNED, 3, AT(BACSTAC_PROPERTY_VALUE_RECORD, Priority)), NO_INDEX)};

inline constexpr Member PROPERTY_ACCESS_RESULT[] = {
    One("object", TYPE_OBJECT_ID, 0, AT(BACSTAC_PROPERTY_ACCESS_RESULT, Reference.ObjectId)),
    One("property", TYPE_ENUMERATED, 1, AT(BACSTAC_PROPERTY_ACCESS_RESULT, Reference.Property), ENUM_PROPERTY_ID),
    UnlessAbsent(One("array-index", TYPE_UNSIGNED, 2, AT(BACSTAC_PROPERTY_ACCESS_RESULT, Reference.ArrayIndex)),
                 NO_INDEX),
    IfFlag(One("device", TYPE_OBJECT_ID, 3, AT(BACSTAC_PROPERTY_ACCESS_RESULT, Reference.DeviceId)),
           AT(BACSTAC_PROPERTY_ACCESS_RESULT, Reference.DevicePresent), 1, DEVICE),
    One("access-result", PART_READ_ACCESS_CHOICE, -1, AT(BACSTAC_PROPERTY_ACCESS_RESULT, Choice))};

inline constexpr Member VALUE_SOURCE[] = {
    Alternative(0, One("none", TYPE_NULL, 0, AT(BACSTAC_VALUE_SOURCE, Object))),
    Alternative(1, One("object", TYPE_DEV_OBJ_REF, 1, AT(BACSTAC_VALUE_SOURCE, Object))),
    Alternative(2, One("address", TYPE_ADDRESS, 2, AT(BACSTAC_VALUE_SOURCE, Address)))};

inline constexpr std::uint16_t LIGHTING_MASK = AT(BACSTAC_LIGHTING_COMMAND, Mask);

inline constexpr Member LIGHTING_COMMAND[] = {
    One("operation", TYPE_ENUMERATED, 0, AT(BACSTAC_LIGHTING_COMMAND, Operation), ENUM_LIGHTING_OPERATION),
    IfFlag(One("target-level", TYPE_REAL, 1, AT(BACSTAC_LIGHTING_COMMAND, TargetLevel)), LIGHTING_MASK,
           BACSTAC_LIGHTING_TARGET),
    IfFlag(One("ramp-rate", TYPE_REAL, 2, AT(BACSTAC_LIGHTING_COMMAND, RampRate)), LIGHTING_MASK,
           BACSTAC_LIGHTING_RAMP),
    IfFlag(One("step-increment", TYPE_REAL, 3, AT(BACSTAC_LIGHTING_COMMAND, StepIncrement)), LIGHTING_MASK,
           BACSTAC_LIGHTING_STEP),
    IfFlag(One("fade-time", TYPE_UNSIGNED, 4, AT(BACSTAC_LIGHTING_COMMAND, FadeTime)), LIGHTING_MASK,
           BACSTAC_LIGHTING_FADE),
    IfFlag(One("priority", TYPE_UNSIGNED, 5, AT(BACSTAC_LIGHTING_COMMAND, Priority)), LIGHTING_MASK,
           BACSTAC_LIGHTING_PRIORITY)};

inline constexpr Member XY_COLOR[] = {One("x-coordinate", TYPE_REAL, -1, AT(BACSTAC_XY_COLOR, X)),
                                      One("y-coordinate", TYPE_REAL, -1, AT(BACSTAC_XY_COLOR, Y))};

inline constexpr std::uint16_t COLOR_MASK = AT(BACSTAC_COLOR_COMMAND, Mask);

inline constexpr Member COLOR_COMMAND[] = {
    One("operation", TYPE_ENUMERATED, 0, AT(BACSTAC_COLOR_COMMAND, Operation), ENUM_COLOR_OPERATION),
    IfFlag(One("target-color", TYPE_XY_COLOR, 1, AT(BACSTAC_COLOR_COMMAND, Target)), COLOR_MASK, BACSTAC_COLOR_TARGET),
    IfFlag(One("target-color-temperature", TYPE_UNSIGNED, 2, AT(BACSTAC_COLOR_COMMAND, Temperature)), COLOR_MASK,
           BACSTAC_COLOR_TEMPERATURE),
    IfFlag(One("fade-time", TYPE_UNSIGNED, 3, AT(BACSTAC_COLOR_COMMAND, FadeTime)), COLOR_MASK, BACSTAC_COLOR_FADE),
    IfFlag(One("ramp-rate", TYPE_UNSIGNED, 4, AT(BACSTAC_COLOR_COMMAND, RampRate)), COLOR_MASK, BACSTAC_COLOR_RAMP),
    IfFlag(One("step-increment", TYPE_UNSIGNED, 5, AT(BACSTAC_COLOR_COMMAND, StepIncrement)), COLOR_MASK,
           BACSTAC_COLOR_STEP)};

inline constexpr Member TIMER_STATE_CHANGE[] = {
    Alternative(0, One("no-value", TYPE_NULL, 0, AT(BACSTAC_TIMER_STATE_CHANGE, Nothing))),
    Alternative(1, Any("constructed-value", 1, AT(BACSTAC_TIMER_STATE_CHANGE, Value))),
    Alternative(2, One("date-time", TYPE_DATE_TIME, 2, AT(BACSTAC_TIMER_STATE_CHANGE, DateTime))),
    Alternative(3, One("lighting-command", TYPE_LIGHTING_COMMAND, 3, AT(BACSTAC_TIMER_STATE_CHANGE, Lighting))),
    Alternative(4, Any("value", -1, AT(BACSTAC_TIMER_STATE_CHANGE, Value)))};

inline constexpr Member STAGE_LIMIT[] = {One("limit", TYPE_REAL, -1, AT(BACSTAC_STAGE_LIMIT, Limit)),
                                         One("values", TYPE_BIT_STRING, -1, AT(BACSTAC_STAGE_LIMIT, Values)),
                                         One("deadband", TYPE_REAL, -1, AT(BACSTAC_STAGE_LIMIT, DeadBand))};

// ---- sessions and subscriptions

inline constexpr Member VT_SESSION[] = {
    One("local-vt-session-id", TYPE_UNSIGNED, -1, AT(BACSTAC_VT_SESSION, LocalId)),
    One("remote-vt-session-id", TYPE_UNSIGNED, -1, AT(BACSTAC_VT_SESSION, RemoteId)),
    One("remote-vt-address", TYPE_ADDRESS, -1, AT(BACSTAC_VT_SESSION, RemoteAddress))};

inline constexpr Member SESSION_KEY[] = {Octets("session-key", -1, AT(BACSTAC_SESSION_KEY, Key)),
                                         One("peer-address", TYPE_ADDRESS, -1, AT(BACSTAC_SESSION_KEY, Peer))};

inline constexpr Member COV_REFERENCE[] = {
    One("monitored-property", TYPE_PROPERTY_REF, 0, AT(BACSTAC_COV_REFERENCE, Monitored)),
    IfFlag(One("cov-increment", TYPE_REAL, 1, AT(BACSTAC_COV_REFERENCE, Increment)),
           AT(BACSTAC_COV_REFERENCE, HasIncrement), 1),
    One("timestamped", TYPE_BOOLEAN, 2, AT(BACSTAC_COV_REFERENCE, TimeStamped))};

inline constexpr Member COV_SPECIFICATION[] = {
    One("monitored-object-identifier", TYPE_OBJECT_ID, 0, AT(BACSTAC_COV_SPECIFICATION, ObjectId)),
    List("list-of-cov-references", PART_COV_REFERENCE, 1, AT(BACSTAC_COV_SPECIFICATION, References))};

inline constexpr Member COV_MULTIPLE_SUBSCRIPTION[] = {
    One("recipient", TYPE_RECIPIENT_PROCESS, 0, AT(BACSTAC_COV_MULTIPLE_SUBSCRIPTION, Recipient)),
    One("issue-confirmed-notifications", TYPE_BOOLEAN, 1, AT(BACSTAC_COV_MULTIPLE_SUBSCRIPTION, Confirmed)),
    One("time-remaining", TYPE_UNSIGNED, 2, AT(BACSTAC_COV_MULTIPLE_SUBSCRIPTION, TimeRemaining)),
    One("max-notification-delay", TYPE_UNSIGNED, 3, AT(BACSTAC_COV_MULTIPLE_SUBSCRIPTION, MaxNotificationDelay)),
    List("list-of-cov-subscription-specifications", PART_COV_SPECIFICATION, 4,
         AT(BACSTAC_COV_MULTIPLE_SUBSCRIPTION, Specifications))};

inline constexpr Member EVENT_SUBSCRIPTION[] = {
    One("recipient", TYPE_RECIPIENT, 0, AT(BACSTAC_EVENT_SUBSCRIPTION, Recipient)),
    One("process-identifier", TYPE_UNSIGNED, 1, AT(BACSTAC_EVENT_SUBSCRIPTION, ProcessId)),
    One("issue-confirmed-notifications", TYPE_BOOLEAN, 2, AT(BACSTAC_EVENT_SUBSCRIPTION, Confirmed)),
    One("time-remaining", TYPE_UNSIGNED, 3, AT(BACSTAC_EVENT_SUBSCRIPTION, TimeRemaining))};

inline constexpr Member PROCESS_ID_SELECTION[] = {
    Alternative(0, One("process-identifier", TYPE_UNSIGNED, -1, AT(BACSTAC_PROCESS_ID_SELECTION, ProcessId))),
    Alternative(1, One("all", TYPE_NULL, -1, AT(BACSTAC_PROCESS_ID_SELECTION, ProcessId)))};

// ---- access control

inline constexpr Member ASSIGNED_ACCESS_RIGHTS[] = {
    One("assigned-access-rights", TYPE_DEV_OBJ_REF, 0, AT(BACSTAC_ASSIGNED_ACCESS_RIGHTS, Rights)),
    One("enable", TYPE_BOOLEAN, 1, AT(BACSTAC_ASSIGNED_ACCESS_RIGHTS, Enable))};

inline constexpr Member AUTHENTICATION_FACTOR[] = {
    One("format-type", TYPE_ENUMERATED, 0, AT(BACSTAC_AUTHENTICATION_FACTOR, FormatType),
        ENUM_AUTHENTICATION_FACTOR_TYPE),
    One("format-class", TYPE_UNSIGNED, 1, AT(BACSTAC_AUTHENTICATION_FACTOR, FormatClass)),
    Octets("value", 2, AT(BACSTAC_AUTHENTICATION_FACTOR, Value))};

inline constexpr Member CREDENTIAL_FACTOR[] = {
    One("disable", TYPE_ENUMERATED, 0, AT(BACSTAC_CREDENTIAL_FACTOR, Disable),
        ENUM_ACCESS_AUTHENTICATION_FACTOR_DISABLE),
    One("authentication-factor", TYPE_AUTHENTICATION_FACTOR, 1, AT(BACSTAC_CREDENTIAL_FACTOR, Factor))};

inline constexpr Member FACTOR_FORMAT[] = {
    One("format-type", TYPE_ENUMERATED, 0, AT(BACSTAC_FACTOR_FORMAT, FormatType), ENUM_AUTHENTICATION_FACTOR_TYPE),
    IfFlag(One("vendor-id", TYPE_UNSIGNED, 1, AT(BACSTAC_FACTOR_FORMAT, VendorId)), AT(BACSTAC_FACTOR_FORMAT, Mask),
           BACSTAC_FORMAT_VENDOR),
    IfFlag(One("vendor-format", TYPE_UNSIGNED, 2, AT(BACSTAC_FACTOR_FORMAT, VendorFormat)),
           AT(BACSTAC_FACTOR_FORMAT, Mask), BACSTAC_FORMAT_NUMBER)};

inline constexpr Member AUTHENTICATION_INPUT[] = {
    One("credential-data-input", TYPE_DEV_OBJ_REF, 0, AT(BACSTAC_AUTHENTICATION_INPUT, Input)),
    One("index", TYPE_UNSIGNED, 1, AT(BACSTAC_AUTHENTICATION_INPUT, Index))};

inline constexpr Member AUTHENTICATION_POLICY[] = {
    List("policy", PART_AUTHENTICATION_INPUT, 0, AT(BACSTAC_AUTHENTICATION_POLICY, Policy)),
    One("order-enforced", TYPE_BOOLEAN, 1, AT(BACSTAC_AUTHENTICATION_POLICY, OrderEnforced)),
    One("timeout", TYPE_UNSIGNED, 2, AT(BACSTAC_AUTHENTICATION_POLICY, Timeout))};

inline constexpr Member ACCESS_RULE[] = {
    One("time-range-specifier", TYPE_ENUMERATED, 0, AT(BACSTAC_ACCESS_RULE, TimeSpecifier), ENUM_ACCESS_RULE_TIME),
    IfFlag(One("time-range", TYPE_DEV_OBJ_PROP_REF, 1, AT(BACSTAC_ACCESS_RULE, Time)), AT(BACSTAC_ACCESS_RULE, Mask),
           BACSTAC_RULE_TIME),
    One("location-specifier", TYPE_ENUMERATED, 2, AT(BACSTAC_ACCESS_RULE, LocationSpecifier),
        ENUM_ACCESS_RULE_LOCATION),
    IfFlag(One("location", TYPE_DEV_OBJ_REF, 3, AT(BACSTAC_ACCESS_RULE, Location)), AT(BACSTAC_ACCESS_RULE, Mask),
           BACSTAC_RULE_LOCATION),
    One("enable", TYPE_BOOLEAN, 4, AT(BACSTAC_ACCESS_RULE, Enable))};

// ---- networks

inline constexpr Member KEY_IDENTIFIER[] = {One("algorithm", TYPE_UNSIGNED, 0, AT(BACSTAC_KEY_IDENTIFIER, Algorithm)),
                                            One("key-id", TYPE_UNSIGNED, 1, AT(BACSTAC_KEY_IDENTIFIER, KeyId))};

inline constexpr Member SECURITY_KEY_SET[] = {
    One("key-revision", TYPE_UNSIGNED, 0, AT(BACSTAC_SECURITY_KEY_SET, Revision)),
    One("activation-time", TYPE_DATE_TIME, 1, AT(BACSTAC_SECURITY_KEY_SET, Activation)),
    One("expiration-time", TYPE_DATE_TIME, 2, AT(BACSTAC_SECURITY_KEY_SET, Expiration)),
    List("key-ids", PART_KEY_IDENTIFIER, 3, AT(BACSTAC_SECURITY_KEY_SET, Keys))};

inline constexpr Member SECURITY_POLICY[] = {
    One("port-id", TYPE_UNSIGNED, 0, AT(BACSTAC_SECURITY_POLICY, PortId)),
    One("security-level", TYPE_ENUMERATED, 1, AT(BACSTAC_SECURITY_POLICY, Level), ENUM_SECURITY_POLICY)};

inline constexpr Member PORT_PERMISSION[] = {One("port-id", TYPE_UNSIGNED, 0, AT(BACSTAC_PORT_PERMISSION, PortId)),
                                             One("enabled", TYPE_BOOLEAN, 1, AT(BACSTAC_PORT_PERMISSION, Enabled))};

inline constexpr std::uint16_t HOST = offsetof(BACSTAC_HOST_N_PORT, Host) - offsetof(BACSTAC_HOST_N_PORT, Choice);

inline constexpr Member HOST_ADDRESS[] = {Alternative(0, One("none", TYPE_NULL, 0, HOST)),
                                          Alternative(1, Octets("ip-address", 1, HOST)),
                                          Alternative(2, Text("name", 2, HOST))};

inline constexpr Member HOST_N_PORT[] = {One("host", PART_HOST_ADDRESS, 0, AT(BACSTAC_HOST_N_PORT, Choice)),
                                         One("port", TYPE_UNSIGNED, 1, AT(BACSTAC_HOST_N_PORT, Port))};

inline constexpr Member BDT_ENTRY[] = {
    One("bbmd-address", TYPE_HOST_N_PORT, 0, AT(BACSTAC_BDT_ENTRY, Address)),
    IfFlag(Octets("broadcast-mask", 1, AT(BACSTAC_BDT_ENTRY, BroadcastMask)), AT(BACSTAC_BDT_ENTRY, HasMask), 1)};

inline constexpr Member FDT_ENTRY[] = {
    Octets("bacnetip-address", 0, AT(BACSTAC_FDT_ENTRY, Address)),
    One("time-to-live", TYPE_UNSIGNED, 1, AT(BACSTAC_FDT_ENTRY, TimeToLive)),
    One("remaining-time-to-live", TYPE_UNSIGNED, 2, AT(BACSTAC_FDT_ENTRY, Remaining))};

inline constexpr Member ROUTER_ENTRY[] = {
    One("network-number", TYPE_UNSIGNED, 0, AT(BACSTAC_ROUTER_ENTRY, Network)),
    Octets("mac-address", 1, AT(BACSTAC_ROUTER_ENTRY, MacAddress)),
    One("status", TYPE_ENUMERATED, 2, AT(BACSTAC_ROUTER_ENTRY, Status), ENUM_ROUTER_STATUS),
    IfFlag(One("performance-index", TYPE_UNSIGNED, 3, AT(BACSTAC_ROUTER_ENTRY, PerformanceIndex)),
           AT(BACSTAC_ROUTER_ENTRY, HasPerformance), 1)};

inline constexpr Member VMAC_ENTRY[] = {Octets("virtual-mac-address", 0, AT(BACSTAC_VMAC_ENTRY, Virtual)),
                                        Octets("native-mac-address", 1, AT(BACSTAC_VMAC_ENTRY, Native))};

// ---- lifts

inline constexpr std::uint16_t LANDING_VALUE =
    offsetof(BACSTAC_LANDING_CALL_STATUS, Command) - offsetof(BACSTAC_LANDING_CALL_STATUS, Choice);

inline constexpr Member LANDING_COMMAND[] = {
    Alternative(0, One("direction", TYPE_ENUMERATED, 1, LANDING_VALUE, ENUM_LIFT_CAR_DIRECTION)),
    Alternative(1, One("destination", TYPE_UNSIGNED, 2, LANDING_VALUE))};

inline constexpr Member LANDING_CALL_STATUS[] = {
    One("floor-number", TYPE_UNSIGNED, 0, AT(BACSTAC_LANDING_CALL_STATUS, Floor)),
    One("command", PART_LANDING_COMMAND, -1, AT(BACSTAC_LANDING_CALL_STATUS, Choice)),
    IfFlag(Text("floor-text", 3, AT(BACSTAC_LANDING_CALL_STATUS, FloorText)), AT(BACSTAC_LANDING_CALL_STATUS, HasText),
           1)};

inline constexpr Member LANDING_CALL[] = {
    One("floor-number", TYPE_UNSIGNED, 0, AT(BACSTAC_LANDING_CALL, Floor)),
    One("direction", TYPE_ENUMERATED, 1, AT(BACSTAC_LANDING_CALL, Direction), ENUM_LIFT_CAR_DIRECTION)};

inline constexpr Member ASSIGNED_LANDING_CALLS[] = {
    List("landing-calls", PART_LANDING_CALL, 0, AT(BACSTAC_ASSIGNED_LANDING_CALLS, Calls))};

inline constexpr Member LANDING_DOOR[] = {
    One("floor-number", TYPE_UNSIGNED, 0, AT(BACSTAC_LANDING_DOOR, Floor)),
    One("door-status", TYPE_ENUMERATED, 1, AT(BACSTAC_LANDING_DOOR, Status), ENUM_DOOR_STATUS)};

inline constexpr Member LANDING_DOOR_STATUS[] = {
    List("landing-doors", PART_LANDING_DOOR, 0, AT(BACSTAC_LANDING_DOOR_STATUS, Doors))};

inline constexpr Member LIFT_CAR_CALL_LIST[] = {
    List("floor-numbers", TYPE_UNSIGNED, 0, AT(BACSTAC_LIFT_CAR_CALL_LIST, Floors))};

// ---- auditing

inline constexpr Member OBJECT_SELECTOR[] = {
    Alternative(0, One("none", TYPE_NULL, -1, AT(BACSTAC_OBJECT_SELECTOR, ObjectId))),
    Alternative(1, One("object", TYPE_OBJECT_ID, -1, AT(BACSTAC_OBJECT_SELECTOR, ObjectId))),
    Alternative(2, One("object-type", TYPE_ENUMERATED, -1, AT(BACSTAC_OBJECT_SELECTOR, ObjectType), ENUM_OBJECT_TYPE))};

constexpr Member IfAudited(Member member, std::uint32_t bit) {
    return IfFlag(member, AT(BACSTAC_AUDIT_NOTIFICATION, Mask), bit);
}

inline constexpr Member AUDIT_NOTIFICATION[] = {
    IfAudited(One("source-timestamp", TYPE_TIME_STAMP, 0, AT(BACSTAC_AUDIT_NOTIFICATION, SourceTime)),
              BACSTAC_AUDIT_SOURCE_TIME),
    IfAudited(One("target-timestamp", TYPE_TIME_STAMP, 1, AT(BACSTAC_AUDIT_NOTIFICATION, TargetTime)),
              BACSTAC_AUDIT_TARGET_TIME),
    One("source-device", TYPE_RECIPIENT, 2, AT(BACSTAC_AUDIT_NOTIFICATION, SourceDevice)),
    IfAudited(One("source-object", TYPE_OBJECT_ID, 3, AT(BACSTAC_AUDIT_NOTIFICATION, SourceObject)),
              BACSTAC_AUDIT_SOURCE_OBJECT),
    One("operation", TYPE_ENUMERATED, 4, AT(BACSTAC_AUDIT_NOTIFICATION, Operation), ENUM_AUDIT_OPERATION),
    IfAudited(Text("source-comment", 5, AT(BACSTAC_AUDIT_NOTIFICATION, SourceComment)), BACSTAC_AUDIT_SOURCE_COMMENT),
    IfAudited(Text("target-comment", 6, AT(BACSTAC_AUDIT_NOTIFICATION, TargetComment)), BACSTAC_AUDIT_TARGET_COMMENT),
    IfAudited(One("invoke-id", TYPE_UNSIGNED, 7, AT(BACSTAC_AUDIT_NOTIFICATION, InvokeId)), BACSTAC_AUDIT_INVOKE_ID),
    IfAudited(One("source-user-id", TYPE_UNSIGNED, 8, AT(BACSTAC_AUDIT_NOTIFICATION, SourceUser)),
              BACSTAC_AUDIT_SOURCE_USER),
    IfAudited(One("source-user-role", TYPE_UNSIGNED, 9, AT(BACSTAC_AUDIT_NOTIFICATION, SourceRole)),
              BACSTAC_AUDIT_SOURCE_ROLE),
    One("target-device", TYPE_RECIPIENT, 10, AT(BACSTAC_AUDIT_NOTIFICATION, TargetDevice)),
    IfAudited(One("target-object", TYPE_OBJECT_ID, 11, AT(BACSTAC_AUDIT_NOTIFICATION, TargetObject)),
              BACSTAC_AUDIT_TARGET_OBJECT),
    IfAudited(One("target-property", TYPE_PROPERTY_REF, 12, AT(BACSTAC_AUDIT_NOTIFICATION, TargetProperty)),
              BACSTAC_AUDIT_TARGET_PROPERTY),
    IfAudited(One("target-priority", TYPE_UNSIGNED, 13, AT(BACSTAC_AUDIT_NOTIFICATION, TargetPriority)),
              BACSTAC_AUDIT_TARGET_PRIORITY),
    IfAudited(Any("target-value", 14, AT(BACSTAC_AUDIT_NOTIFICATION, TargetValue)), BACSTAC_AUDIT_TARGET_VALUE),
    IfAudited(Any("current-value", 15, AT(BACSTAC_AUDIT_NOTIFICATION, CurrentValue)), BACSTAC_AUDIT_CURRENT_VALUE),
    IfAudited(One("result", TYPE_ERROR, 16, AT(BACSTAC_AUDIT_NOTIFICATION, Result)), BACSTAC_AUDIT_RESULT)};

inline constexpr std::uint16_t DATUM_OF_AUDIT_LOG =
    offsetof(BACSTAC_AUDIT_LOG_RECORD, LogStatus) - offsetof(BACSTAC_AUDIT_LOG_RECORD, RecordType);

inline constexpr Member AUDIT_LOG_DATUM[] = {
    Alternative(0, One("log-status", TYPE_BIT_STRING, 0, DATUM_OF_AUDIT_LOG, ENUM_LOG_STATUS)),
    Alternative(1, One("audit-notification", TYPE_AUDIT_NOTIFICATION, 1, DATUM_OF_AUDIT_LOG)),
    Alternative(2, One("time-change", TYPE_REAL, 2, DATUM_OF_AUDIT_LOG))};

inline constexpr Member AUDIT_LOG_RECORD[] = {
    One("timestamp", TYPE_DATE_TIME, 0, AT(BACSTAC_AUDIT_LOG_RECORD, TimeStamp)),
    One("log-datum", PART_AUDIT_LOG_DATUM, 1, AT(BACSTAC_AUDIT_LOG_RECORD, RecordType))};

// ---- event parameters

inline constexpr Member EP_ACCESS_EVENT[] = {
    List("list-of-access-events", TYPE_ENUMERATED, 0, AT(BACSTAC_EP_ACCESS_EVENT, Events), ENUM_ACCESS_EVENT),
    One("access-event-time-reference", TYPE_DEV_OBJ_PROP_REF, 1, AT(BACSTAC_EP_ACCESS_EVENT, TimeReference))};

inline constexpr Member EP_CHANGE_OF_DISCRETE_VALUE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_CHANGE_OF_DISCRETE_VALUE, TimeDelay))};

inline constexpr Member EP_CHANGE_OF_TIMER[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_CHANGE_OF_TIMER, TimeDelay)),
    List("alarm-values", TYPE_ENUMERATED, 1, AT(BACSTAC_EP_CHANGE_OF_TIMER, AlarmValues), ENUM_TIMER_STATE),
    One("update-time-reference", TYPE_DEV_OBJ_PROP_REF, 2, AT(BACSTAC_EP_CHANGE_OF_TIMER, TimeReference))};

// ---- event notifications

constexpr Member StatusFlags(int context, std::uint16_t offset) {
    return One("status-flags", TYPE_BIT_STRING, context, offset, ENUM_STATUS_FLAGS);
}

inline constexpr Member NP_COMPLEX[] = {
    List("property-values", TYPE_PROPERTY_VALUE, -1, AT(BACSTAC_NP_COMPLEX, Values))};

inline constexpr Member NP_EXTENDED[] = {
    One("vendor-id", TYPE_UNSIGNED, 0, AT(BACSTAC_NP_EXTENDED, VendorId)),
    One("extended-event-type", TYPE_UNSIGNED, 1, AT(BACSTAC_NP_EXTENDED, ExtendedEventType)),
    List("parameters", TYPE_ANY, 2, AT(BACSTAC_NP_EXTENDED, Parameters))};

inline constexpr Member NP_ACCESS_EVENT[] = {
    One("access-event", TYPE_ENUMERATED, 0, AT(BACSTAC_NP_ACCESS_EVENT, Event), ENUM_ACCESS_EVENT),
    StatusFlags(1, AT(BACSTAC_NP_ACCESS_EVENT, StatusFlags)),
    One("access-event-tag", TYPE_UNSIGNED, 2, AT(BACSTAC_NP_ACCESS_EVENT, EventTag)),
    One("access-event-time", TYPE_TIME_STAMP, 3, AT(BACSTAC_NP_ACCESS_EVENT, Time)),
    One("access-credential", TYPE_DEV_OBJ_REF, 4, AT(BACSTAC_NP_ACCESS_EVENT, Credential)),
    IfFlag(One("authentication-factor", TYPE_AUTHENTICATION_FACTOR, 5, AT(BACSTAC_NP_ACCESS_EVENT, Factor)),
           AT(BACSTAC_NP_ACCESS_EVENT, HasFactor), 1)};

inline constexpr Member NP_DOUBLE_OUT_OF_RANGE[] = {
    One("exceeding-value", TYPE_DOUBLE, 0, AT(BACSTAC_NP_DOUBLE_OUT_OF_RANGE, ExceedingValue)),
    StatusFlags(1, AT(BACSTAC_NP_DOUBLE_OUT_OF_RANGE, StatusFlags)),
    One("deadband", TYPE_DOUBLE, 2, AT(BACSTAC_NP_DOUBLE_OUT_OF_RANGE, DeadBand)),
    One("exceeded-limit", TYPE_DOUBLE, 3, AT(BACSTAC_NP_DOUBLE_OUT_OF_RANGE, ExceededLimit))};

inline constexpr Member NP_SIGNED_OUT_OF_RANGE[] = {
    One("exceeding-value", TYPE_SIGNED, 0, AT(BACSTAC_NP_SIGNED_OUT_OF_RANGE, ExceedingValue)),
    StatusFlags(1, AT(BACSTAC_NP_SIGNED_OUT_OF_RANGE, StatusFlags)),
    One("deadband", TYPE_UNSIGNED, 2, AT(BACSTAC_NP_SIGNED_OUT_OF_RANGE, DeadBand)),
    One("exceeded-limit", TYPE_SIGNED, 3, AT(BACSTAC_NP_SIGNED_OUT_OF_RANGE, ExceededLimit))};

inline constexpr Member NP_UNSIGNED_OUT_OF_RANGE[] = {
    One("exceeding-value", TYPE_UNSIGNED, 0, AT(BACSTAC_NP_UNSIGNED_OUT_OF_RANGE, ExceedingValue)),
    StatusFlags(1, AT(BACSTAC_NP_UNSIGNED_OUT_OF_RANGE, StatusFlags)),
    One("deadband", TYPE_UNSIGNED, 2, AT(BACSTAC_NP_UNSIGNED_OUT_OF_RANGE, DeadBand)),
    One("exceeded-limit", TYPE_UNSIGNED, 3, AT(BACSTAC_NP_UNSIGNED_OUT_OF_RANGE, ExceededLimit))};

inline constexpr Member NP_CHANGE_OF_CHARACTERSTRING[] = {
    Text("changed-value", 0, AT(BACSTAC_NP_CHANGE_OF_CHARACTERSTRING, ChangedValue)),
    StatusFlags(1, AT(BACSTAC_NP_CHANGE_OF_CHARACTERSTRING, StatusFlags)),
    Text("alarm-value", 2, AT(BACSTAC_NP_CHANGE_OF_CHARACTERSTRING, AlarmValue))};

inline constexpr std::uint32_t NO_VALUE = static_cast<std::uint32_t>(TYPE_NONE);

inline constexpr Member NP_CHANGE_OF_STATUS_FLAGS[] = {
    UnlessAbsent(Any("present-value", 0, AT(BACSTAC_NP_CHANGE_OF_STATUS_FLAGS, PresentValue)), NO_VALUE),
    One("referenced-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_NP_CHANGE_OF_STATUS_FLAGS, ReferencedFlags),
        ENUM_STATUS_FLAGS)};

inline constexpr Member NP_CHANGE_OF_RELIABILITY[] = {
    One("reliability", TYPE_ENUMERATED, 0, AT(BACSTAC_NP_CHANGE_OF_RELIABILITY, Reliability), ENUM_RELIABILITY),
    StatusFlags(1, AT(BACSTAC_NP_CHANGE_OF_RELIABILITY, StatusFlags)),
    List("property-values", TYPE_PROPERTY_VALUE, 2, AT(BACSTAC_NP_CHANGE_OF_RELIABILITY, PropertyValues))};

inline constexpr Member NP_CHANGE_OF_DISCRETE_VALUE[] = {
    Any("new-value", 0, AT(BACSTAC_NP_CHANGE_OF_DISCRETE_VALUE, NewValue)),
    StatusFlags(1, AT(BACSTAC_NP_CHANGE_OF_DISCRETE_VALUE, StatusFlags))};

inline constexpr std::uint16_t TIMER_MASK = AT(BACSTAC_NP_CHANGE_OF_TIMER, Mask);

inline constexpr Member NP_CHANGE_OF_TIMER[] = {
    One("new-state", TYPE_ENUMERATED, 0, AT(BACSTAC_NP_CHANGE_OF_TIMER, NewState), ENUM_TIMER_STATE),
    StatusFlags(1, AT(BACSTAC_NP_CHANGE_OF_TIMER, StatusFlags)),
    One("update-time", TYPE_DATE_TIME, 2, AT(BACSTAC_NP_CHANGE_OF_TIMER, UpdateTime)),
    IfFlag(One("last-state-change", TYPE_ENUMERATED, 3, AT(BACSTAC_NP_CHANGE_OF_TIMER, LastStateChange),
               ENUM_TIMER_TRANSITION),
           TIMER_MASK, BACSTAC_TIMER_CHANGE),
    IfFlag(One("initial-timeout", TYPE_UNSIGNED, 4, AT(BACSTAC_NP_CHANGE_OF_TIMER, InitialTimeout)), TIMER_MASK,
           BACSTAC_TIMER_TIMEOUT),
    IfFlag(One("expiration-time", TYPE_DATE_TIME, 5, AT(BACSTAC_NP_CHANGE_OF_TIMER, ExpirationTime)), TIMER_MASK,
           BACSTAC_TIMER_EXPIRATION)};

// ---- fault parameters

inline constexpr Member FAULT_TYPE[] = {
    One("fault-type", TYPE_ENUMERATED, -1, AT(BACSTAC_FAULT_PARAMETER, FaultType), ENUM_FAULT_TYPE)};

inline constexpr Member FP_CHARACTERSTRING[] = {
    List("list-of-fault-values", TYPE_STRING, 0, AT(BACSTAC_FP_VALUES, Values))};

inline constexpr Member FP_EXTENDED[] = {
    One("vendor-id", TYPE_UNSIGNED, 0, AT(BACSTAC_FP_EXTENDED, VendorId)),
    One("extended-fault-type", TYPE_UNSIGNED, 1, AT(BACSTAC_FP_EXTENDED, ExtendedFaultType)),
    List("parameters", TYPE_ANY, 2, AT(BACSTAC_FP_EXTENDED, Parameters))};

inline constexpr Member FP_LIFE_SAFETY[] = {
    List("list-of-fault-values", TYPE_ENUMERATED, 0, AT(BACSTAC_FP_LIFE_SAFETY, Values), ENUM_LIFE_SAFETY_STATE),
    One("mode-property-reference", TYPE_DEV_OBJ_PROP_REF, 1, AT(BACSTAC_FP_LIFE_SAFETY, Mode))};

inline constexpr Member FP_STATE[] = {
    List("list-of-fault-values", TYPE_PROPERTY_STATE, 0, AT(BACSTAC_FP_VALUES, Values))};

inline constexpr Member FP_STATUS_FLAGS[] = {
    One("status-flags-reference", TYPE_DEV_OBJ_PROP_REF, 0, AT(BACSTAC_FP_REFERENCE, Reference))};

inline constexpr Member FP_OUT_OF_RANGE[] = {Any("min-normal-value", 0, AT(BACSTAC_FP_OUT_OF_RANGE, MinNormal)),
                                             Any("max-normal-value", 1, AT(BACSTAC_FP_OUT_OF_RANGE, MaxNormal))};

inline constexpr Member FP_LISTED[] = {
    One("fault-list-reference", TYPE_DEV_OBJ_PROP_REF, 0, AT(BACSTAC_FP_REFERENCE, Reference))};

} // namespace bacnet::members
