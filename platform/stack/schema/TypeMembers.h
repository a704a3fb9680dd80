// Members of the constructed types (ANSI/ASHRAE 135 clause 21), for TypeTable.cpp: one list a type, in the order of the
// encoding.
#pragma once

#include "api/bacnet/Records.h"
#include "platform/stack/schema/MemberRows.h"

#include <cstddef>
#include <cstdint>

namespace bacnet::members {

// ---- references

inline constexpr Member PROPERTY_REF[] = {
    One("property", TYPE_ENUMERATED, 0, AT(BACSTAC_PROPERTY_REF, Property), ENUM_PROPERTY_ID),
    UnlessAbsent(One("array-index", TYPE_UNSIGNED, 1, AT(BACSTAC_PROPERTY_REF, ArrayIndex)), NO_INDEX)};

inline constexpr Member OBJ_PROP_REF[] = {
    One("object", TYPE_OBJECT_ID, 0, AT(BACSTAC_OBJ_PROP_REF, ObjectId)),
    One("property", TYPE_ENUMERATED, 1, AT(BACSTAC_OBJ_PROP_REF, Property), ENUM_PROPERTY_ID),
    UnlessAbsent(One("array-index", TYPE_UNSIGNED, 2, AT(BACSTAC_OBJ_PROP_REF, ArrayIndex)), NO_INDEX)};

inline constexpr Member DEV_OBJ_PROP_REF[] = {
    One("object", TYPE_OBJECT_ID, 0, AT(BACSTAC_DEV_OBJ_PROP_REF, ObjectId)),
    One("property", TYPE_ENUMERATED, 1, AT(BACSTAC_DEV_OBJ_PROP_REF, Property), ENUM_PROPERTY_ID),
    UnlessAbsent(One("array-index", TYPE_UNSIGNED, 2, AT(BACSTAC_DEV_OBJ_PROP_REF, ArrayIndex)), NO_INDEX),
    IfFlag(One("device", TYPE_OBJECT_ID, 3, AT(BACSTAC_DEV_OBJ_PROP_REF, DeviceId)),
           AT(BACSTAC_DEV_OBJ_PROP_REF, DevicePresent), 1, DEVICE)};

inline constexpr Member DEV_OBJ_REF[] = {IfFlag(One("device", TYPE_OBJECT_ID, 0, AT(BACSTAC_DEV_OBJ_REF, DeviceId)),
                                                AT(BACSTAC_DEV_OBJ_REF, DevicePresent), 1, DEVICE),
                                         One("object", TYPE_OBJECT_ID, 1, AT(BACSTAC_DEV_OBJ_REF, ObjectId))};

inline constexpr Member SETPOINT_REF[] = {IfFlag(
    One("reference", TYPE_OBJ_PROP_REF, 0, AT(BACSTAC_SETPOINT_REF, Reference)), AT(BACSTAC_SETPOINT_REF, Present), 1)};

// ---- times, calendars and schedules

inline constexpr Member DATE_TIME[] = {One("date", TYPE_DATE, -1, AT(BACSTAC_DATE_TIME, Date)),
                                       One("time", TYPE_TIME, -1, AT(BACSTAC_DATE_TIME, Time))};

inline constexpr Member DATE_RANGE[] = {One("start-date", TYPE_DATE, -1, AT(BACSTAC_DATE_RANGE, Start)),
                                        One("end-date", TYPE_DATE, -1, AT(BACSTAC_DATE_RANGE, End))};

inline constexpr Member CALENDAR_ENTRY[] = {
    Alternative(BACSTAC_CALENDAR_DATE, One("date", TYPE_DATE, 0, AT(BACSTAC_CALENDAR_ENTRY, Date))),
    Alternative(BACSTAC_CALENDAR_RANGE, One("date-range", TYPE_DATE_RANGE, 1, AT(BACSTAC_CALENDAR_ENTRY, Range))),
    Alternative(BACSTAC_CALENDAR_WEEK_N_DAY,
                One("week-n-day", TYPE_WEEK_N_DAY, 2, AT(BACSTAC_CALENDAR_ENTRY, WeekNDay)))};

inline constexpr Member TIME_VALUE[] = {One("time", TYPE_TIME, -1, AT(BACSTAC_TIME_VALUE, Time)),
                                        Any("value", -1, AT(BACSTAC_TIME_VALUE, Value))};

inline constexpr Member DAILY_SCHEDULE[] = {
    List("day-schedule", TYPE_TIME_VALUE, 0, AT(BACSTAC_DAILY_SCHEDULE, TimeValues))};

inline constexpr Member SPECIAL_EVENT_PERIOD[] = {
    Alternative(BACSTAC_PERIOD_ENTRY, One("calendar-entry", TYPE_CALENDAR_ENTRY, 0, AT(BACSTAC_SPECIAL_EVENT, Entry))),
    Alternative(BACSTAC_PERIOD_REFERENCE,
                One("calendar-reference", TYPE_OBJECT_ID, 1, AT(BACSTAC_SPECIAL_EVENT, Calendar)))};

inline constexpr Member SPECIAL_EVENT[] = {
    One("period", PART_SPECIAL_EVENT_PERIOD, -1, AT(BACSTAC_SPECIAL_EVENT, Period)),
    List("list-of-time-values", TYPE_TIME_VALUE, 2, AT(BACSTAC_SPECIAL_EVENT, TimeValues)),
    One("event-priority", TYPE_UNSIGNED, 3, AT(BACSTAC_SPECIAL_EVENT, Priority))};

inline constexpr Member TIME_STAMP[] = {
    Alternative(0, One("time", TYPE_TIME, 0, AT(BACSTAC_TIME_STAMP, Time))),
    Alternative(1, One("sequence-number", TYPE_UNSIGNED, 1, AT(BACSTAC_TIME_STAMP, SequenceNumber))),
    Alternative(2, One("date-time", TYPE_DATE_TIME, 2, AT(BACSTAC_TIME_STAMP, DateTime)))};

// ---- recipients

inline constexpr Member RECIPIENT[] = {Alternative(0, One("device", TYPE_OBJECT_ID, 0, AT(BACSTAC_RECIPIENT, Device))),
                                       Alternative(1, One("address", TYPE_ADDRESS, 1, AT(BACSTAC_RECIPIENT, Address)))};

inline constexpr Member RECIPIENT_PROCESS[] = {
    One("recipient", TYPE_RECIPIENT, 0, AT(BACSTAC_RECIPIENT_PROCESS, Recipient)),
    One("process-identifier", TYPE_UNSIGNED, 1, AT(BACSTAC_RECIPIENT_PROCESS, ProcessId))};

inline constexpr Member DESTINATION[] = {
    One("valid-days", TYPE_BIT_STRING, -1, AT(BACSTAC_DESTINATION, ValidDays), ENUM_DAYS_OF_WEEK),
    One("from-time", TYPE_TIME, -1, AT(BACSTAC_DESTINATION, From)),
    One("to-time", TYPE_TIME, -1, AT(BACSTAC_DESTINATION, To)),
    One("recipient", TYPE_RECIPIENT, -1, AT(BACSTAC_DESTINATION, Recipient)),
    One("process-identifier", TYPE_UNSIGNED, -1, AT(BACSTAC_DESTINATION, ProcessId)),
    One("issue-confirmed-notifications", TYPE_BOOLEAN, -1, AT(BACSTAC_DESTINATION, Confirmed)),
    One("transitions", TYPE_BIT_STRING, -1, AT(BACSTAC_DESTINATION, Transitions), ENUM_EVENT_TRANSITION_BITS)};

inline constexpr Member ADDRESS_BINDING[] = {One("device", TYPE_OBJECT_ID, -1, AT(BACSTAC_ADDRESS_BINDING, Device)),
                                             One("address", TYPE_ADDRESS, -1, AT(BACSTAC_ADDRESS_BINDING, Address))};

inline constexpr Member COV_SUBSCRIPTION[] = {
    One("recipient", TYPE_RECIPIENT_PROCESS, 0, AT(BACSTAC_COV_SUBSCRIPTION, Recipient)),
    One("monitored-property", TYPE_OBJ_PROP_REF, 1, AT(BACSTAC_COV_SUBSCRIPTION, Monitored)),
    One("issue-confirmed-notifications", TYPE_BOOLEAN, 2, AT(BACSTAC_COV_SUBSCRIPTION, Confirmed)),
    One("time-remaining", TYPE_UNSIGNED, 3, AT(BACSTAC_COV_SUBSCRIPTION, TimeRemaining)),
    IfFlag(One("cov-increment", TYPE_REAL, 4, AT(BACSTAC_COV_SUBSCRIPTION, Increment)),
           AT(BACSTAC_COV_SUBSCRIPTION, Mask), BACSTAC_COV_INCREMENT)};

// ---- small ones

inline constexpr Member ERROR_VALUE[] = {
    One("error-class", TYPE_ENUMERATED, -1, AT(BACSTAC_ERROR_VALUE, Class), ENUM_ERROR_CLASS),
    One("error-code", TYPE_ENUMERATED, -1, AT(BACSTAC_ERROR_VALUE, Code), ENUM_ERROR_CODE)};

inline constexpr Member CLIENT_COV[] = {
    Alternative(0, One("default-increment", TYPE_NULL, -1, AT(BACSTAC_CLIENT_COV, Value))),
    Alternative(4, One("real-increment", TYPE_REAL, -1, AT(BACSTAC_CLIENT_COV, Value)))};

inline constexpr Member PRESCALE[] = {One("multiplier", TYPE_UNSIGNED, 0, AT(BACSTAC_PRESCALE, Multiplier)),
                                      One("modulo-divide", TYPE_UNSIGNED, 1, AT(BACSTAC_PRESCALE, ModuloDivide))};

inline constexpr Member SCALE[] = {Alternative(4, One("float-scale", TYPE_REAL, 0, AT(BACSTAC_SCALE, Real))),
                                   Alternative(3, One("integer-scale", TYPE_SIGNED, 1, AT(BACSTAC_SCALE, Signed)))};

inline constexpr Member SHED_LEVEL[] = {
    Alternative(0, One("percent", TYPE_UNSIGNED, 0, AT(BACSTAC_SHED_LEVEL, Percent))),
    Alternative(1, One("level", TYPE_UNSIGNED, 1, AT(BACSTAC_SHED_LEVEL, Level))),
    Alternative(2, One("amount", TYPE_REAL, 2, AT(BACSTAC_SHED_LEVEL, Amount)))};

inline constexpr Member ACCUMULATOR_RECORD[] = {
    One("timestamp", TYPE_DATE_TIME, 0, AT(BACSTAC_ACCUMULATOR_RECORD, TimeStamp)),
    One("present-value", TYPE_UNSIGNED, 1, AT(BACSTAC_ACCUMULATOR_RECORD, PresentValue)),
    One("accumulated-value", TYPE_UNSIGNED, 2, AT(BACSTAC_ACCUMULATOR_RECORD, AccumulatedValue)),
    One("accumulator-status", TYPE_ENUMERATED, 3, AT(BACSTAC_ACCUMULATOR_RECORD, Status), ENUM_ACCUMULATOR_STATUS)};

constexpr Member State(std::uint32_t choice, const char* name, ENUM_TYPE_ID names) {
    return Alternative(choice,
                       One(name, TYPE_ENUMERATED, static_cast<int>(choice), AT(BACSTAC_PROPERTY_STATE, Value), names));
}

inline constexpr Member PROPERTY_STATE[] = {
    Alternative(0, One("boolean-value", TYPE_BOOLEAN, 0, AT(BACSTAC_PROPERTY_STATE, Boolean))),
    State(1, "binary-value", ENUM_BINARY_PV),
    State(2, "event-type", ENUM_EVENT_TYPE),
    State(3, "polarity", ENUM_POLARITY),
    State(4, "program-change", ENUM_PROGRAM_REQUEST),
    State(5, "program-state", ENUM_PROGRAM_STATE),
    State(6, "reason-for-halt", ENUM_PROGRAM_ERROR),
    State(7, "reliability", ENUM_RELIABILITY),
    State(8, "state", ENUM_EVENT_STATE),
    State(9, "system-status", ENUM_DEVICE_STATUS),
    State(10, "units", ENUM_UNITS),
    Alternative(11, One("unsigned-value", TYPE_UNSIGNED, 11, AT(BACSTAC_PROPERTY_STATE, Value))),
    State(12, "life-safety-mode", ENUM_LIFE_SAFETY_MODE),
    State(13, "life-safety-state", ENUM_LIFE_SAFETY_STATE),
    State(14, "restart-reason", ENUM_RESTART_REASON),
    State(15, "door-alarm-state", ENUM_DOOR_ALARM_STATE),
    State(16, "action", ENUM_ACTION),
    State(17, "door-secured-status", ENUM_DOOR_SECURED_STATUS),
    State(18, "door-status", ENUM_DOOR_STATUS),
    State(19, "door-value", ENUM_DOOR_VALUE),
    State(20, "file-access-method", ENUM_FILE_ACCESS_METHOD),
    State(21, "lock-status", ENUM_LOCK_STATUS),
    State(22, "life-safety-operation", ENUM_LIFE_SAFETY_OPERATION),
    State(23, "maintenance", ENUM_MAINTENANCE),
    State(24, "node-type", ENUM_NODE_TYPE),
    State(25, "notify-type", ENUM_NOTIFY_TYPE),
    State(26, "security-level", ENUM_SECURITY_LEVEL),
    State(27, "shed-state", ENUM_SHED_STATE),
    State(28, "silenced-state", ENUM_SILENCED_STATE),
    State(30, "access-event", ENUM_ACCESS_EVENT),
    State(31, "zone-occupancy-state", ENUM_ACCESS_ZONE_OCCUPANCY_STATE),
    State(32, "access-credential-disable-reason", ENUM_ACCESS_CREDENTIAL_DISABLE_REASON),
    State(33, "access-credential-disable", ENUM_ACCESS_CREDENTIAL_DISABLE),
    State(34, "authentication-status", ENUM_AUTHENTICATION_STATUS),
    State(36, "backup-state", ENUM_BACKUP_STATE),
    State(37, "write-status", ENUM_WRITE_STATUS),
    State(38, "lighting-in-progress", ENUM_LIGHTING_IN_PROGRESS),
    State(39, "lighting-operation", ENUM_LIGHTING_OPERATION),
    State(40, "lighting-transition", ENUM_LIGHTING_TRANSITION),
    Alternative(41, One("integer-value", TYPE_SIGNED, 41, AT(BACSTAC_PROPERTY_STATE, Signed))),
    State(42, "binary-lighting-value", ENUM_BINARY_LIGHTING_PV),
    State(43, "timer-state", ENUM_TIMER_STATE),
    State(44, "timer-transition", ENUM_TIMER_TRANSITION),
    State(45, "bacnet-ip-mode", ENUM_IP_MODE),
    State(46, "network-port-command", ENUM_NETWORK_PORT_COMMAND),
    State(47, "network-type", ENUM_NETWORK_TYPE),
    State(48, "network-number-quality", ENUM_NETWORK_NUMBER_QUALITY),
    State(49, "escalator-operation-direction", ENUM_ESCALATOR_OPERATION_DIRECTION),
    State(50, "escalator-fault", ENUM_ESCALATOR_FAULT),
    State(51, "escalator-mode", ENUM_ESCALATOR_MODE),
    State(52, "lift-car-direction", ENUM_LIFT_CAR_DIRECTION),
    State(53, "lift-car-door-command", ENUM_LIFT_CAR_DOOR_COMMAND),
    State(54, "lift-car-drive-status", ENUM_LIFT_CAR_DRIVE_STATUS),
    State(55, "lift-car-mode", ENUM_LIFT_CAR_MODE),
    State(56, "lift-group-mode", ENUM_LIFT_GROUP_MODE),
    State(57, "lift-fault", ENUM_LIFT_FAULT),
    State(58, "protocol-level", ENUM_PROTOCOL_LEVEL),
    State(59, "audit-level", ENUM_AUDIT_LEVEL),
    State(60, "audit-operation", ENUM_AUDIT_OPERATION),
};

// ---- accesses and commands

inline constexpr Member READ_ACCESS_SPEC[] = {
    One("object", TYPE_OBJECT_ID, 0, AT(BACSTAC_READ_ACCESS_SPEC, ObjectId)),
    List("list-of-property-references", TYPE_PROPERTY_REF, 1, AT(BACSTAC_READ_ACCESS_SPEC, Properties))};

inline constexpr Member READ_ACCESS_CHOICE[] = {
    Alternative(
        BACSTAC_ITEM_VALUE,
        Any("value", 4, offsetof(BACSTAC_READ_ACCESS_ITEM, Value) - offsetof(BACSTAC_READ_ACCESS_ITEM, Choice))),
    Alternative(BACSTAC_ITEM_ERROR,
                One("error", TYPE_ERROR, 5,
                    offsetof(BACSTAC_READ_ACCESS_ITEM, Error) - offsetof(BACSTAC_READ_ACCESS_ITEM, Choice)))};

inline constexpr Member READ_ACCESS_ITEM[] = {
    One("property", TYPE_ENUMERATED, 2, AT(BACSTAC_READ_ACCESS_ITEM, Property), ENUM_PROPERTY_ID),
    UnlessAbsent(One("array-index", TYPE_UNSIGNED, 3, AT(BACSTAC_READ_ACCESS_ITEM, ArrayIndex)), NO_INDEX),
    One("result", PART_READ_ACCESS_CHOICE, -1, AT(BACSTAC_READ_ACCESS_ITEM, Choice))};

inline constexpr Member READ_ACCESS_RESULT[] = {
    One("object", TYPE_OBJECT_ID, 0, AT(BACSTAC_READ_ACCESS_RESULT, ObjectId)),
    List("list-of-results", TYPE_READ_RESULT_ITEM, 1, AT(BACSTAC_READ_ACCESS_RESULT, Items))};

inline constexpr Member ACTION_COMMAND[] = {
    IfFlag(One("device", TYPE_OBJECT_ID, 0, AT(BACSTAC_ACTION_COMMAND, Reference.DeviceId)),
           AT(BACSTAC_ACTION_COMMAND, Reference.DevicePresent), 1, DEVICE),
    One("object", TYPE_OBJECT_ID, 1, AT(BACSTAC_ACTION_COMMAND, Reference.ObjectId)),
    One("property", TYPE_ENUMERATED, 2, AT(BACSTAC_ACTION_COMMAND, Reference.Property), ENUM_PROPERTY_ID),
    UnlessAbsent(One("array-index", TYPE_UNSIGNED, 3, AT(BACSTAC_ACTION_COMMAND, Reference.ArrayIndex)), NO_INDEX),
    Any("value", 4, AT(BACSTAC_ACTION_COMMAND, Value)),
    UnlessAbsent(One("priority", TYPE_UNSIGNED, 5, AT(BACSTAC_ACTION_COMMAND, Priority)), NO_INDEX),
    IfFlag(One("post-delay", TYPE_UNSIGNED, 6, AT(BACSTAC_ACTION_COMMAND, PostDelay)), AT(BACSTAC_ACTION_COMMAND, Mask),
           BACSTAC_POST_DELAY),
    One("quit-on-failure", TYPE_BOOLEAN, 7, AT(BACSTAC_ACTION_COMMAND, QuitOnFailure)),
    One("write-successful", TYPE_BOOLEAN, 8, AT(BACSTAC_ACTION_COMMAND, WriteSuccessful))};

inline constexpr Member ACTION_LIST[] = {List("action", TYPE_ACTION_COMMAND, 0, AT(BACSTAC_ACTION_LIST, Commands))};

// ---- logs

inline constexpr std::uint16_t VALUE_OF_DATUM =
    offsetof(BACSTAC_LOG_RECORD, Value) - offsetof(BACSTAC_LOG_RECORD, DatumType);

inline constexpr Member LOG_DATUM[] = {
    Alternative(BACSTAC_LOG_STATUS, One("log-status", TYPE_BIT_STRING, 0, VALUE_OF_DATUM, ENUM_LOG_STATUS)),
    Alternative(BACSTAC_LOG_BOOLEAN, One("boolean-value", TYPE_BOOLEAN, 1, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_REAL, One("real-value", TYPE_REAL, 2, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_ENUMERATED, One("enum-value", TYPE_ENUMERATED, 3, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_UNSIGNED, One("unsigned-value", TYPE_UNSIGNED, 4, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_SIGNED, One("signed-value", TYPE_SIGNED, 5, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_BITSTRING, One("bitstring-value", TYPE_BIT_STRING, 6, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_NULL, One("null-value", TYPE_NULL, 7, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_FAILURE, One("failure", TYPE_ERROR, 8, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_TIME_CHANGE, One("time-change", TYPE_REAL, 9, VALUE_OF_DATUM)),
    Alternative(BACSTAC_LOG_ANY, Any("any-value", 10, VALUE_OF_DATUM))};

inline constexpr Member LOG_RECORD[] = {
    One("timestamp", TYPE_DATE_TIME, 0, AT(BACSTAC_LOG_RECORD, TimeStamp)),
    One("log-datum", PART_LOG_DATUM, 1, AT(BACSTAC_LOG_RECORD, DatumType)),
    // HasStatus is one byte; its three reserved neighbours are zero and make it a u32 of the same value.
    IfFlag(One("status-flags", TYPE_BIT_STRING, 2, AT(BACSTAC_LOG_RECORD, StatusFlags), ENUM_STATUS_FLAGS),
           AT(BACSTAC_LOG_RECORD, HasStatus), 1)};

inline constexpr std::uint16_t VALUE_OF_ITEM = offsetof(BACSTAC_LOG_ITEM, Value);

inline constexpr Member LOG_ITEM[] = {Alternative(0, One("boolean-value", TYPE_BOOLEAN, 0, VALUE_OF_ITEM)),
                                      Alternative(1, One("real-value", TYPE_REAL, 1, VALUE_OF_ITEM)),
                                      Alternative(2, One("enum-value", TYPE_ENUMERATED, 2, VALUE_OF_ITEM)),
                                      Alternative(3, One("unsigned-value", TYPE_UNSIGNED, 3, VALUE_OF_ITEM)),
                                      Alternative(4, One("signed-value", TYPE_SIGNED, 4, VALUE_OF_ITEM)),
                                      Alternative(5, One("bitstring-value", TYPE_BIT_STRING, 5, VALUE_OF_ITEM)),
                                      Alternative(6, One("null-value", TYPE_NULL, 6, VALUE_OF_ITEM)),
                                      Alternative(7, One("failure", TYPE_ERROR, 7, VALUE_OF_ITEM)),
                                      Alternative(8, Any("any-value", 8, VALUE_OF_ITEM))};

inline constexpr std::uint16_t DATA_OF_MULTIPLE =
    offsetof(BACSTAC_LOG_MULTIPLE_RECORD, Data) - offsetof(BACSTAC_LOG_MULTIPLE_RECORD, RecordType);

inline constexpr Member LOG_MULTIPLE_DATA[] = {
    Alternative(BACSTAC_LOG_MULTIPLE_STATUS, One("log-status", TYPE_BIT_STRING, 0, DATA_OF_MULTIPLE, ENUM_LOG_STATUS)),
    Alternative(BACSTAC_LOG_MULTIPLE_DATA, List("log-data", TYPE_LOG_ITEM, 1, DATA_OF_MULTIPLE)),
    Alternative(BACSTAC_LOG_MULTIPLE_TIME_CHANGE, One("time-change", TYPE_REAL, 2, DATA_OF_MULTIPLE))};

inline constexpr Member LOG_MULTIPLE_RECORD[] = {
    One("timestamp", TYPE_DATE_TIME, 0, AT(BACSTAC_LOG_MULTIPLE_RECORD, TimeStamp)),
    One("log-data", PART_LOG_MULTIPLE_DATA, 1, AT(BACSTAC_LOG_MULTIPLE_RECORD, RecordType))};

inline constexpr std::uint16_t DATUM_OF_EVENT_LOG =
    offsetof(BACSTAC_EVENT_LOG_RECORD, LogStatus) - offsetof(BACSTAC_EVENT_LOG_RECORD, RecordType);

inline constexpr Member EVENT_LOG_DATUM[] = {
    Alternative(BACSTAC_EVENT_LOG_STATUS, One("log-status", TYPE_BIT_STRING, 0, DATUM_OF_EVENT_LOG, ENUM_LOG_STATUS)),
    Alternative(BACSTAC_EVENT_LOG_NOTIFICATION, One("notification", TYPE_EVENT_NOTIF, 1, DATUM_OF_EVENT_LOG)),
    Alternative(BACSTAC_EVENT_LOG_TIME_CHANGE, One("time-change", TYPE_REAL, 2, DATUM_OF_EVENT_LOG))};

inline constexpr Member EVENT_LOG_RECORD[] = {
    One("timestamp", TYPE_DATE_TIME, 0, AT(BACSTAC_EVENT_LOG_RECORD, TimeStamp)),
    One("log-datum", PART_EVENT_LOG_DATUM, 1, AT(BACSTAC_EVENT_LOG_RECORD, RecordType))};

// ---- event notifications

// The number that tells which record a variant holds.
inline constexpr Member EVENT_TYPE[] = {
    One("event-type", TYPE_ENUMERATED, -1, AT(BACSTAC_NOTIFICATION_PARAMETERS, EventType), ENUM_EVENT_TYPE)};

inline constexpr std::uint16_t NOTIF_MASK = AT(BACSTAC_EVENT_NOTIF, Mask);

inline constexpr Member EVENT_NOTIF[] = {
    One("process-identifier", TYPE_UNSIGNED, 0, AT(BACSTAC_EVENT_NOTIF, ProcessId)),
    One("initiating-device", TYPE_OBJECT_ID, 1, AT(BACSTAC_EVENT_NOTIF, Device)),
    One("event-object", TYPE_OBJECT_ID, 2, AT(BACSTAC_EVENT_NOTIF, Object)),
    One("timestamp", TYPE_TIME_STAMP, 3, AT(BACSTAC_EVENT_NOTIF, TimeStamp)),
    One("notification-class", TYPE_UNSIGNED, 4, AT(BACSTAC_EVENT_NOTIF, NotificationClass)),
    One("priority", TYPE_UNSIGNED, 5, AT(BACSTAC_EVENT_NOTIF, Priority)),
    One("event-type", TYPE_ENUMERATED, 6, AT(BACSTAC_EVENT_NOTIF, EventType), ENUM_EVENT_TYPE),
    IfFlag(Text("message-text", 7, AT(BACSTAC_EVENT_NOTIF, MessageOffset)), NOTIF_MASK, BACSTAC_NOTIF_MESSAGE),
    One("notify-type", TYPE_ENUMERATED, 8, AT(BACSTAC_EVENT_NOTIF, NotifyType), ENUM_NOTIFY_TYPE),
    IfFlag(One("ack-required", TYPE_BOOLEAN, 9, AT(BACSTAC_EVENT_NOTIF, AckRequired)), NOTIF_MASK,
           BACSTAC_NOTIF_ACK_REQUIRED),
    IfFlag(One("from-state", TYPE_ENUMERATED, 10, AT(BACSTAC_EVENT_NOTIF, FromState), ENUM_EVENT_STATE), NOTIF_MASK,
           BACSTAC_NOTIF_FROM_STATE),
    One("to-state", TYPE_ENUMERATED, 11, AT(BACSTAC_EVENT_NOTIF, ToState), ENUM_EVENT_STATE),
    IfFlag(One("event-values", TYPE_NOTIFICATION_PARAMETERS, 12, AT(BACSTAC_EVENT_NOTIF, Parameters)), NOTIF_MASK,
           BACSTAC_NOTIF_PARAMETERS)};

inline constexpr Member NP_CHANGE_OF_BITSTRING[] = {
    One("referenced-bitstring", TYPE_BIT_STRING, 0, AT(BACSTAC_NP_CHANGE_OF_BITSTRING, Referenced)),
    One("status-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_NP_CHANGE_OF_BITSTRING, StatusFlags), ENUM_STATUS_FLAGS)};

inline constexpr Member NP_CHANGE_OF_STATE[] = {
    One("new-state", TYPE_PROPERTY_STATE, 0, AT(BACSTAC_NP_CHANGE_OF_STATE, NewState)),
    One("status-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_NP_CHANGE_OF_STATE, StatusFlags), ENUM_STATUS_FLAGS)};

inline constexpr Member CHANGE_OF_VALUE_NEW[] = {
    Alternative(0, One("changed-bits", TYPE_BIT_STRING, 0, AT(BACSTAC_NP_CHANGE_OF_VALUE, ChangedBits))),
    Alternative(1, One("changed-value", TYPE_REAL, 1, AT(BACSTAC_NP_CHANGE_OF_VALUE, ChangedValue)))};

inline constexpr Member NP_CHANGE_OF_VALUE[] = {
    One("new-value", PART_CHANGE_OF_VALUE_NEW, 0, AT(BACSTAC_NP_CHANGE_OF_VALUE, Choice)),
    One("status-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_NP_CHANGE_OF_VALUE, StatusFlags), ENUM_STATUS_FLAGS)};

inline constexpr Member NP_COMMAND_FAILURE[] = {
    Any("command-value", 0, AT(BACSTAC_NP_COMMAND_FAILURE, CommandValue)),
    One("status-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_NP_COMMAND_FAILURE, StatusFlags), ENUM_STATUS_FLAGS),
    Any("feedback-value", 2, AT(BACSTAC_NP_COMMAND_FAILURE, FeedbackValue))};

inline constexpr Member NP_FLOATING_LIMIT[] = {
    One("reference-value", TYPE_REAL, 0, AT(BACSTAC_NP_FLOATING_LIMIT, ReferenceValue)),
    One("status-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_NP_FLOATING_LIMIT, StatusFlags), ENUM_STATUS_FLAGS),
    One("setpoint-value", TYPE_REAL, 2, AT(BACSTAC_NP_FLOATING_LIMIT, SetpointValue)),
    One("error-limit", TYPE_REAL, 3, AT(BACSTAC_NP_FLOATING_LIMIT, ErrorLimit))};

inline constexpr Member NP_OUT_OF_RANGE[] = {
    One("exceeding-value", TYPE_REAL, 0, AT(BACSTAC_NP_OUT_OF_RANGE, ExceedingValue)),
    One("status-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_NP_OUT_OF_RANGE, StatusFlags), ENUM_STATUS_FLAGS),
    One("deadband", TYPE_REAL, 2, AT(BACSTAC_NP_OUT_OF_RANGE, DeadBand)),
    One("exceeded-limit", TYPE_REAL, 3, AT(BACSTAC_NP_OUT_OF_RANGE, ExceededLimit))};

inline constexpr Member NP_CHANGE_OF_LIFE_SAFETY[] = {
    One("new-state", TYPE_ENUMERATED, 0, AT(BACSTAC_NP_CHANGE_OF_LIFE_SAFETY, NewState), ENUM_LIFE_SAFETY_STATE),
    One("new-mode", TYPE_ENUMERATED, 1, AT(BACSTAC_NP_CHANGE_OF_LIFE_SAFETY, NewMode), ENUM_LIFE_SAFETY_MODE),
    One("status-flags", TYPE_BIT_STRING, 2, AT(BACSTAC_NP_CHANGE_OF_LIFE_SAFETY, StatusFlags), ENUM_STATUS_FLAGS),
    One("operation-expected", TYPE_ENUMERATED, 3, AT(BACSTAC_NP_CHANGE_OF_LIFE_SAFETY, OperationExpected),
        ENUM_LIFE_SAFETY_OPERATION)};

inline constexpr Member NP_BUFFER_READY[] = {
    One("buffer-property", TYPE_DEV_OBJ_PROP_REF, 0, AT(BACSTAC_NP_BUFFER_READY, Buffer)),
    One("previous-notification", TYPE_UNSIGNED, 1, AT(BACSTAC_NP_BUFFER_READY, PreviousNotification)),
    One("current-notification", TYPE_UNSIGNED, 2, AT(BACSTAC_NP_BUFFER_READY, CurrentNotification))};

inline constexpr Member NP_UNSIGNED_RANGE[] = {
    One("exceeding-value", TYPE_UNSIGNED, 0, AT(BACSTAC_NP_UNSIGNED_RANGE, ExceedingValue)),
    One("status-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_NP_UNSIGNED_RANGE, StatusFlags), ENUM_STATUS_FLAGS),
    One("exceeded-limit", TYPE_UNSIGNED, 2, AT(BACSTAC_NP_UNSIGNED_RANGE, ExceededLimit))};

// ---- event parameters

inline constexpr Member EP_CHANGE_OF_BITSTRING[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_CHANGE_OF_BITSTRING, TimeDelay)),
    One("bitmask", TYPE_BIT_STRING, 1, AT(BACSTAC_EP_CHANGE_OF_BITSTRING, BitMask)),
    List("list-of-bitstring-values", TYPE_BIT_STRING, 2, AT(BACSTAC_EP_CHANGE_OF_BITSTRING, Values))};

inline constexpr Member EP_CHANGE_OF_STATE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_CHANGE_OF_STATE, TimeDelay)),
    List("list-of-values", TYPE_PROPERTY_STATE, 1, AT(BACSTAC_EP_CHANGE_OF_STATE, Values))};

inline constexpr std::uint16_t CRITERIA_VALUE =
    offsetof(BACSTAC_EP_CHANGE_OF_VALUE, BitMask) - offsetof(BACSTAC_EP_CHANGE_OF_VALUE, Choice);

inline constexpr Member CHANGE_OF_VALUE_CRITERIA[] = {
    Alternative(0, One("bitmask", TYPE_BIT_STRING, 0, CRITERIA_VALUE)),
    Alternative(1, One("increment", TYPE_REAL, 1, CRITERIA_VALUE))};

inline constexpr Member EP_CHANGE_OF_VALUE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_CHANGE_OF_VALUE, TimeDelay)),
    One("cov-criteria", PART_CHANGE_OF_VALUE_CRITERIA, 1, AT(BACSTAC_EP_CHANGE_OF_VALUE, Choice))};

inline constexpr Member EP_COMMAND_FAILURE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_COMMAND_FAILURE, TimeDelay)),
    One("feedback-property", TYPE_DEV_OBJ_PROP_REF, 1, AT(BACSTAC_EP_COMMAND_FAILURE, Feedback))};

inline constexpr Member EP_FLOATING_LIMIT[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_FLOATING_LIMIT, TimeDelay)),
    One("setpoint", TYPE_DEV_OBJ_PROP_REF, 1, AT(BACSTAC_EP_FLOATING_LIMIT, Setpoint)),
    One("low-diff-limit", TYPE_REAL, 2, AT(BACSTAC_EP_FLOATING_LIMIT, LowDiffLimit)),
    One("high-diff-limit", TYPE_REAL, 3, AT(BACSTAC_EP_FLOATING_LIMIT, HighDiffLimit)),
    One("deadband", TYPE_REAL, 4, AT(BACSTAC_EP_FLOATING_LIMIT, DeadBand))};

inline constexpr Member EP_OUT_OF_RANGE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_OUT_OF_RANGE, TimeDelay)),
    One("low-limit", TYPE_REAL, 1, AT(BACSTAC_EP_OUT_OF_RANGE, LowLimit)),
    One("high-limit", TYPE_REAL, 2, AT(BACSTAC_EP_OUT_OF_RANGE, HighLimit)),
    One("deadband", TYPE_REAL, 3, AT(BACSTAC_EP_OUT_OF_RANGE, DeadBand))};

inline constexpr Member EP_CHANGE_OF_LIFE_SAFETY[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_CHANGE_OF_LIFE_SAFETY, TimeDelay)),
    List("list-of-life-safety-alarm-values", TYPE_ENUMERATED, 1,
         AT(BACSTAC_EP_CHANGE_OF_LIFE_SAFETY, LifeSafetyAlarmValues), ENUM_LIFE_SAFETY_STATE),
    List("list-of-alarm-values", TYPE_ENUMERATED, 2, AT(BACSTAC_EP_CHANGE_OF_LIFE_SAFETY, AlarmValues),
         ENUM_LIFE_SAFETY_STATE),
    One("mode-property", TYPE_DEV_OBJ_PROP_REF, 3, AT(BACSTAC_EP_CHANGE_OF_LIFE_SAFETY, Mode))};

inline constexpr Member EP_EXTENDED[] = {
    One("vendor-id", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_EXTENDED, VendorId)),
    One("extended-event-type", TYPE_UNSIGNED, 1, AT(BACSTAC_EP_EXTENDED, ExtendedEventType)),
    List("parameters", TYPE_ANY, 2, AT(BACSTAC_EP_EXTENDED, Parameters))};

inline constexpr Member EP_BUFFER_READY[] = {
    One("notification-threshold", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_BUFFER_READY, NotifyThreshold)),
    One("previous-notification-count", TYPE_UNSIGNED, 1, AT(BACSTAC_EP_BUFFER_READY, PreviousNotifyCount))};

inline constexpr Member EP_UNSIGNED_RANGE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_UNSIGNED_RANGE, TimeDelay)),
    One("low-limit", TYPE_UNSIGNED, 1, AT(BACSTAC_EP_UNSIGNED_RANGE, LowLimit)),
    One("high-limit", TYPE_UNSIGNED, 2, AT(BACSTAC_EP_UNSIGNED_RANGE, HighLimit))};

inline constexpr Member EP_DOUBLE_OUT_OF_RANGE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_DOUBLE_OUT_OF_RANGE, TimeDelay)),
    One("low-limit", TYPE_DOUBLE, 1, AT(BACSTAC_EP_DOUBLE_OUT_OF_RANGE, LowLimit)),
    One("high-limit", TYPE_DOUBLE, 2, AT(BACSTAC_EP_DOUBLE_OUT_OF_RANGE, HighLimit)),
    One("deadband", TYPE_DOUBLE, 3, AT(BACSTAC_EP_DOUBLE_OUT_OF_RANGE, DeadBand))};

inline constexpr Member EP_SIGNED_OUT_OF_RANGE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_SIGNED_OUT_OF_RANGE, TimeDelay)),
    One("low-limit", TYPE_SIGNED, 1, AT(BACSTAC_EP_SIGNED_OUT_OF_RANGE, LowLimit)),
    One("high-limit", TYPE_SIGNED, 2, AT(BACSTAC_EP_SIGNED_OUT_OF_RANGE, HighLimit)),
    One("deadband", TYPE_UNSIGNED, 3, AT(BACSTAC_EP_SIGNED_OUT_OF_RANGE, DeadBand))};

inline constexpr Member EP_UNSIGNED_OUT_OF_RANGE[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_UNSIGNED_OUT_OF_RANGE, TimeDelay)),
    One("low-limit", TYPE_UNSIGNED, 1, AT(BACSTAC_EP_UNSIGNED_OUT_OF_RANGE, LowLimit)),
    One("high-limit", TYPE_UNSIGNED, 2, AT(BACSTAC_EP_UNSIGNED_OUT_OF_RANGE, HighLimit)),
    One("deadband", TYPE_UNSIGNED, 3, AT(BACSTAC_EP_UNSIGNED_OUT_OF_RANGE, DeadBand))};

inline constexpr Member EP_CHANGE_OF_CHARACTERSTRING[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_CHANGE_OF_CHARACTERSTRING, TimeDelay)),
    List("list-of-alarm-values", TYPE_STRING, 1, AT(BACSTAC_EP_CHANGE_OF_CHARACTERSTRING, AlarmValues))};

inline constexpr Member EP_CHANGE_OF_STATUS_FLAGS[] = {
    One("time-delay", TYPE_UNSIGNED, 0, AT(BACSTAC_EP_CHANGE_OF_STATUS_FLAGS, TimeDelay)),
    One("selected-flags", TYPE_BIT_STRING, 1, AT(BACSTAC_EP_CHANGE_OF_STATUS_FLAGS, SelectedFlags), ENUM_STATUS_FLAGS)};

} // namespace bacnet::members
