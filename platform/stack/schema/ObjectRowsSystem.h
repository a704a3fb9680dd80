// The device and what serves it: events, logs, schedules, programs, files, groups, networks (ANSI/ASHRAE 135 clause
// 12). For ObjectTypes.cpp.
#pragma once

#include "platform/stack/schema/ObjectRows.h"

namespace bacnet::rows {

// ---- the device and its ports

inline constexpr PropertyInfo DEVICE_ROWS[] = {
    One("system-status", TYPE_ENUMERATED, R),
    One("vendor-name", TYPE_STRING, R),
    One("vendor-identifier", TYPE_UNSIGNED, R),
    One("model-name", TYPE_STRING, R),
    One("firmware-revision", TYPE_STRING, R),
    One("application-software-version", TYPE_STRING, R),
    One("location", TYPE_STRING, O),
    One("protocol-version", TYPE_UNSIGNED, R),
    One("protocol-revision", TYPE_UNSIGNED, R),
    One("protocol-services-supported", TYPE_BIT_STRING, R),
    One("protocol-object-types-supported", TYPE_BIT_STRING, R),
    Array("object-list", TYPE_OBJECT_ID, R),
    Array("structured-object-list", TYPE_OBJECT_ID, O),
    One("max-apdu-length-accepted", TYPE_UNSIGNED, R),
    One("segmentation-supported", TYPE_ENUMERATED, R),
    One("max-segments-accepted", TYPE_UNSIGNED, O),
    List("vt-classes-supported", TYPE_ENUMERATED, O),
    List("active-vt-sessions", TYPE_VT_SESSION, O),
    List("list-of-session-keys", TYPE_SESSION_KEY, O),
    One("local-time", TYPE_TIME, O),
    One("local-date", TYPE_DATE, O),
    One("utc-offset", TYPE_SIGNED, O),
    One("daylight-savings-status", TYPE_BOOLEAN, O),
    One("apdu-segment-timeout", TYPE_UNSIGNED, O),
    One("apdu-timeout", TYPE_UNSIGNED, R),
    One("number-of-apdu-retries", TYPE_UNSIGNED, R),
    List("time-synchronization-recipients", TYPE_RECIPIENT, O),
    List("utc-time-synchronization-recipients", TYPE_RECIPIENT, O),
    One("time-synchronization-interval", TYPE_UNSIGNED, O),
    One("align-intervals", TYPE_BOOLEAN, O),
    One("interval-offset", TYPE_UNSIGNED, O),
    One("max-master", TYPE_UNSIGNED, O),
    One("max-info-frames", TYPE_UNSIGNED, O),
    List("device-address-binding", TYPE_ADDRESS_BINDING, R),
    One("database-revision", TYPE_UNSIGNED, R),
    Array("configuration-files", TYPE_OBJECT_ID, O),
    One("last-restore-time", TYPE_TIME_STAMP, O),
    One("backup-failure-timeout", TYPE_UNSIGNED, O),
    One("backup-preparation-time", TYPE_UNSIGNED, O),
    One("restore-preparation-time", TYPE_UNSIGNED, O),
    One("restore-completion-time", TYPE_UNSIGNED, O),
    One("backup-and-restore-state", TYPE_ENUMERATED, O),
    List("active-cov-subscriptions", TYPE_COV_SUBSCRIPTION, O),
    List("active-cov-multiple-subscriptions", TYPE_COV_MULTIPLE_SUBSCRIPTION, O),
    Array("slave-proxy-enable", TYPE_BOOLEAN, O),
    List("manual-slave-address-binding", TYPE_ADDRESS_BINDING, O),
    Array("auto-slave-discovery", TYPE_BOOLEAN, O),
    List("slave-address-binding", TYPE_ADDRESS_BINDING, O),
    One("last-restart-reason", TYPE_ENUMERATED, O),
    One("time-of-device-restart", TYPE_TIME_STAMP, O),
    List("restart-notification-recipients", TYPE_RECIPIENT, O),
    One("serial-number", TYPE_STRING, O),
    One("audit-notification-recipient", TYPE_RECIPIENT, O),
    One("device-uuid", TYPE_OCTET_STRING, O),
    One("deployed-profile-location", TYPE_STRING, O),
};
inline constexpr auto DEVICE = Join(COMMON, FAULT_STATUS, REPORTING, DEVICE_ROWS);

inline constexpr PropertyInfo NETWORK_PORT_ROWS[] = {
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("network-type", TYPE_ENUMERATED, R),
    One("protocol-level", TYPE_ENUMERATED, R),
    One("reference-port", TYPE_UNSIGNED, O),
    One("network-number", TYPE_UNSIGNED, O),
    One("network-number-quality", TYPE_ENUMERATED, O),
    One("changes-pending", TYPE_BOOLEAN, R),
    One("command", TYPE_ENUMERATED, O),
    One("mac-address", TYPE_OCTET_STRING, O),
    One("apdu-length", TYPE_UNSIGNED, O),
    One("link-speed", TYPE_REAL, R),
    Array("link-speeds", TYPE_REAL, O),
    One("link-speed-autonegotiate", TYPE_BOOLEAN, O),
    One("network-interface-name", TYPE_STRING, O),
    One("bacnet-ip-mode", TYPE_ENUMERATED, O),
    One("ip-address", TYPE_OCTET_STRING, O),
    One("bacnet-ip-udp-port", TYPE_UNSIGNED, O),
    One("ip-subnet-mask", TYPE_OCTET_STRING, O),
    One("ip-default-gateway", TYPE_OCTET_STRING, O),
    One("bacnet-ip-multicast-address", TYPE_OCTET_STRING, O),
    Array("ip-dns-server", TYPE_OCTET_STRING, O),
    One("ip-dhcp-enable", TYPE_BOOLEAN, O),
    One("ip-dhcp-lease-time", TYPE_UNSIGNED, O),
    One("ip-dhcp-lease-time-remaining", TYPE_UNSIGNED, O),
    One("ip-dhcp-server", TYPE_OCTET_STRING, O),
    One("bacnet-ip-nat-traversal", TYPE_BOOLEAN, O),
    One("bacnet-ip-global-address", TYPE_HOST_N_PORT, O),
    List("bbmd-broadcast-distribution-table", TYPE_BDT_ENTRY, O),
    One("bbmd-accept-fd-registrations", TYPE_BOOLEAN, O),
    List("bbmd-foreign-device-table", TYPE_FDT_ENTRY, O),
    One("fd-bbmd-address", TYPE_HOST_N_PORT, O),
    One("fd-subscription-lifetime", TYPE_UNSIGNED, O),
    One("bacnet-ipv6-mode", TYPE_ENUMERATED, O),
    One("ipv6-address", TYPE_OCTET_STRING, O),
    One("ipv6-prefix-length", TYPE_UNSIGNED, O),
    One("bacnet-ipv6-udp-port", TYPE_UNSIGNED, O),
    One("ipv6-default-gateway", TYPE_OCTET_STRING, O),
    One("bacnet-ipv6-multicast-address", TYPE_OCTET_STRING, O),
    Array("ipv6-dns-server", TYPE_OCTET_STRING, O),
    One("ipv6-auto-addressing-enable", TYPE_BOOLEAN, O),
    One("ipv6-dhcp-lease-time", TYPE_UNSIGNED, O),
    One("ipv6-dhcp-lease-time-remaining", TYPE_UNSIGNED, O),
    One("ipv6-dhcp-server", TYPE_OCTET_STRING, O),
    One("ipv6-zone-index", TYPE_STRING, O),
    One("max-master", TYPE_UNSIGNED, O),
    One("max-info-frames", TYPE_UNSIGNED, O),
    One("slave-proxy-enable", TYPE_BOOLEAN, O),
    List("manual-slave-address-binding", TYPE_ADDRESS_BINDING, O),
    One("auto-slave-discovery", TYPE_BOOLEAN, O),
    List("slave-address-binding", TYPE_ADDRESS_BINDING, O),
    List("virtual-mac-address-table", TYPE_VMAC_ENTRY, O),
    List("routing-table", TYPE_ROUTER_ENTRY, O),
};
inline constexpr auto NETWORK_PORT = Join(COMMON, REPORTING, NETWORK_PORT_ROWS);

inline constexpr PropertyInfo NETWORK_SECURITY_ROWS[] = {
    One("base-device-security-policy", TYPE_ENUMERATED, R),
    Array("network-access-security-policies", TYPE_SECURITY_POLICY, R),
    One("security-time-window", TYPE_UNSIGNED, R),
    One("packet-reorder-time", TYPE_UNSIGNED, R),
    One("distribution-key-revision", TYPE_UNSIGNED, R),
    Array("key-sets", TYPE_SECURITY_KEY_SET, R),
    One("last-key-server", TYPE_ADDRESS_BINDING, R),
    One("security-pdu-timeout", TYPE_UNSIGNED, R),
    One("update-key-set-timeout", TYPE_UNSIGNED, R),
    List("supported-security-algorithms", TYPE_UNSIGNED, R),
    One("do-not-hide", TYPE_BOOLEAN, R),
};
inline constexpr auto NETWORK_SECURITY = Join(COMMON, NETWORK_SECURITY_ROWS);

// ---- events

inline constexpr PropertyInfo EVENT_ENROLLMENT_ROWS[] = {
    One("event-type", TYPE_ENUMERATED, R),
    One("notify-type", TYPE_ENUMERATED, R),
    One("event-parameters", TYPE_EVENT_PARAMETER, R),
    One("object-property-reference", TYPE_DEV_OBJ_PROP_REF, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("event-enable", TYPE_BIT_STRING, R),
    One("acked-transitions", TYPE_BIT_STRING, R),
    One("notification-class", TYPE_UNSIGNED, R),
    Array("event-time-stamps", TYPE_TIME_STAMP, R),
    Array("event-message-texts", TYPE_STRING, O),
    Array("event-message-texts-config", TYPE_STRING, O),
    One("event-detection-enable", TYPE_BOOLEAN, R),
    One("time-delay-normal", TYPE_UNSIGNED, O),
    One("status-flags", TYPE_BIT_STRING, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("fault-type", TYPE_ENUMERATED, O),
    One("fault-parameters", TYPE_FAULT_PARAMETER, O),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
};
inline constexpr auto EVENT_ENROLLMENT = Join(COMMON, INHIBIT, EVENT_ENROLLMENT_ROWS);

inline constexpr PropertyInfo ALERT_ENROLLMENT_ROWS[] = {
    One("present-value", TYPE_OBJECT_ID, R),        One("event-state", TYPE_ENUMERATED, R),
    One("event-detection-enable", TYPE_BOOLEAN, R), One("notification-class", TYPE_UNSIGNED, R),
    One("event-enable", TYPE_BIT_STRING, R),        One("acked-transitions", TYPE_BIT_STRING, R),
    One("notify-type", TYPE_ENUMERATED, R),         Array("event-time-stamps", TYPE_TIME_STAMP, R),
    Array("event-message-texts", TYPE_STRING, O),   Array("event-message-texts-config", TYPE_STRING, O),
};
inline constexpr auto ALERT_ENROLLMENT = Join(COMMON, INHIBIT, ALERT_ENROLLMENT_ROWS);

inline constexpr PropertyInfo NOTIFICATION_CLASS_ROWS[] = {
    One("notification-class", TYPE_UNSIGNED, R),    Array("priority", TYPE_UNSIGNED, R),
    One("ack-required", TYPE_BIT_STRING, R),        List("recipient-list", TYPE_DESTINATION, R),
    One("event-enable", TYPE_BIT_STRING, O),        One("acked-transitions", TYPE_BIT_STRING, O),
    One("notify-type", TYPE_ENUMERATED, O),         Array("event-time-stamps", TYPE_TIME_STAMP, O),
    Array("event-message-texts", TYPE_STRING, O),   Array("event-message-texts-config", TYPE_STRING, O),
    One("event-detection-enable", TYPE_BOOLEAN, O),
};
inline constexpr auto NOTIFICATION_CLASS = Join(COMMON, FAULT_STATUS, NOTIFICATION_CLASS_ROWS);

inline constexpr PropertyInfo NOTIFICATION_FORWARDER_ROWS[] = {
    One("status-flags", TYPE_BIT_STRING, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, W),
    List("recipient-list", TYPE_DESTINATION, W),
    List("subscribed-recipients", TYPE_EVENT_SUBSCRIPTION, W),
    One("process-identifier-filter", TYPE_PROCESS_ID_SELECTION, W),
    Array("port-filter", TYPE_PORT_PERMISSION, O),
    One("local-forwarding-only", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
};
inline constexpr auto NOTIFICATION_FORWARDER = Join(COMMON, NOTIFICATION_FORWARDER_ROWS);

// ---- logs

inline constexpr PropertyInfo LOG_STATUS[] = {
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("reliability", TYPE_ENUMERATED, O),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
};
inline constexpr PropertyInfo LOG_ROWS[] = {
    One("log-enable", TYPE_BOOLEAN, W),
    One("start-time", TYPE_DATE_TIME, O),
    One("stop-time", TYPE_DATE_TIME, O),
    One("stop-when-full", TYPE_BOOLEAN, R),
    One("buffer-size", TYPE_UNSIGNED, R),
    One("record-count", TYPE_UNSIGNED, W),
    One("total-record-count", TYPE_UNSIGNED, R),
    One("notification-threshold", TYPE_UNSIGNED, O),
    One("records-since-notification", TYPE_UNSIGNED, O),
    One("last-notify-record", TYPE_UNSIGNED, O),
};
inline constexpr PropertyInfo SAMPLING[] = {
    One("logging-type", TYPE_ENUMERATED, R),
    One("align-intervals", TYPE_BOOLEAN, O),
    One("interval-offset", TYPE_UNSIGNED, O),
    One("trigger", TYPE_BOOLEAN, O),
};

inline constexpr PropertyInfo TREND_LOG_ROWS[] = {
    One("log-device-object-property", TYPE_DEV_OBJ_PROP_REF, O),
    One("log-interval", TYPE_UNSIGNED, O),
    One("cov-resubscription-interval", TYPE_UNSIGNED, O),
    One("client-cov-increment", TYPE_CLIENT_COV, O),
    List("log-buffer", TYPE_LOG_RECORD, R),
};
inline constexpr auto TREND_LOG = Join(COMMON, LOG_STATUS, REPORTING, INHIBIT, LOG_ROWS, SAMPLING, TREND_LOG_ROWS);

inline constexpr PropertyInfo TREND_LOG_MULTIPLE_ROWS[] = {
    Array("log-device-object-property", TYPE_DEV_OBJ_PROP_REF, R),
    One("log-interval", TYPE_UNSIGNED, R),
    List("log-buffer", TYPE_LOG_MULTIPLE_RECORD, R),
};
inline constexpr auto TREND_LOG_MULTIPLE =
    Join(COMMON, LOG_STATUS, REPORTING, INHIBIT, LOG_ROWS, SAMPLING, TREND_LOG_MULTIPLE_ROWS);

inline constexpr PropertyInfo EVENT_LOG_ROWS[] = {
    List("log-buffer", TYPE_EVENT_LOG_RECORD, R),
};
inline constexpr auto EVENT_LOG = Join(COMMON, LOG_STATUS, REPORTING, INHIBIT, LOG_ROWS, EVENT_LOG_ROWS);

inline constexpr PropertyInfo AUDIT_LOG_ROWS[] = {
    One("log-enable", TYPE_BOOLEAN, W),           One("buffer-size", TYPE_UNSIGNED, R),
    List("log-buffer", TYPE_AUDIT_LOG_RECORD, R), One("record-count", TYPE_UNSIGNED, W),
    One("total-record-count", TYPE_UNSIGNED, R),  One("member-of", TYPE_DEV_OBJ_REF, O),
    One("delete-on-forward", TYPE_BOOLEAN, O),    One("issue-confirmed-notifications", TYPE_BOOLEAN, O),
};
inline constexpr auto AUDIT_LOG = Join(COMMON, LOG_STATUS, REPORTING, AUDIT_LOG_ROWS);

inline constexpr PropertyInfo AUDIT_REPORTER_ROWS[] = {
    One("audit-source-reporter", TYPE_BOOLEAN, R),         One("audit-priority-filter", TYPE_BIT_STRING, R),
    One("issue-confirmed-notifications", TYPE_BOOLEAN, R), Array("monitored-objects", TYPE_OBJECT_SELECTOR, O),
    One("maximum-send-delay", TYPE_UNSIGNED, O),           One("send-now", TYPE_BOOLEAN, O),
};
inline constexpr auto AUDIT_REPORTER = Join(COMMON, LOG_STATUS, REPORTING, AUDIT_REPORTER_ROWS);

inline constexpr PropertyInfo AVERAGING_ROWS[] = {
    One("minimum-value", TYPE_REAL, R),
    One("minimum-value-timestamp", TYPE_DATE_TIME, O),
    One("average-value", TYPE_REAL, R),
    One("variance-value", TYPE_REAL, O),
    One("maximum-value", TYPE_REAL, R),
    One("maximum-value-timestamp", TYPE_DATE_TIME, O),
    One("attempted-samples", TYPE_UNSIGNED, W),
    One("valid-samples", TYPE_UNSIGNED, R),
    One("object-property-reference", TYPE_DEV_OBJ_PROP_REF, R),
    One("window-interval", TYPE_UNSIGNED, W),
    One("window-samples", TYPE_UNSIGNED, W),
};
inline constexpr auto AVERAGING = Join(COMMON, AVERAGING_ROWS);

// ---- time

inline constexpr PropertyInfo CALENDAR_ROWS[] = {
    One("present-value", TYPE_BOOLEAN, R),
    List("date-list", TYPE_CALENDAR_ENTRY, R),
};
inline constexpr auto CALENDAR = Join(COMMON, CALENDAR_ROWS);

inline constexpr PropertyInfo SCHEDULE_ROWS[] = {
    One("present-value", TYPE_ANY, R),
    One("effective-period", TYPE_DATE_RANGE, R),
    Array("weekly-schedule", TYPE_DAILY_SCHEDULE, O),
    Array("exception-schedule", TYPE_SPECIAL_EVENT, O),
    One("schedule-default", TYPE_ANY, R),
    List("list-of-object-property-references", TYPE_DEV_OBJ_PROP_REF, R),
    One("priority-for-writing", TYPE_UNSIGNED, R),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
};
inline constexpr auto SCHEDULE = Join(COMMON, REPORTING, SCHEDULE_ROWS);

inline constexpr PropertyInfo TIMER_ROWS[] = {
    One("present-value", TYPE_UNSIGNED, R),
    One("timer-state", TYPE_ENUMERATED, R),
    One("timer-running", TYPE_BOOLEAN, R),
    One("update-time", TYPE_DATE_TIME, O),
    One("last-state-change", TYPE_ENUMERATED, O),
    One("expiration-time", TYPE_DATE_TIME, O),
    One("initial-timeout", TYPE_UNSIGNED, O),
    One("default-timeout", TYPE_UNSIGNED, O),
    One("min-pres-value", TYPE_UNSIGNED, O),
    One("max-pres-value", TYPE_UNSIGNED, O),
    One("resolution", TYPE_UNSIGNED, O),
    Array("state-change-values", TYPE_TIMER_STATE_CHANGE, O),
    List("list-of-object-property-references", TYPE_DEV_OBJ_PROP_REF, O),
    One("priority-for-writing", TYPE_UNSIGNED, O),
    List("alarm-values", TYPE_ENUMERATED, O),
};
inline constexpr auto TIMER = Join(COMMON, VALUE_STATUS, REPORTING, INHIBIT, DELAYS, TIMER_ROWS);

// ---- programs, loops, commands, files, groups

inline constexpr PropertyInfo COMMAND_ROWS[] = {
    One("present-value", TYPE_UNSIGNED, W),        One("in-process", TYPE_BOOLEAN, R),
    One("all-writes-successful", TYPE_BOOLEAN, R), Array("action", TYPE_ACTION_LIST, R),
    Array("action-text", TYPE_STRING, O),          One("value-source", TYPE_VALUE_SOURCE, O),
};
inline constexpr auto COMMAND = Join(COMMON, FAULT_STATUS, REPORTING, COMMAND_ROWS);

inline constexpr PropertyInfo FILE_ROWS[] = {
    One("file-type", TYPE_STRING, R),
    One("file-size", TYPE_UNSIGNED, R),
    One("modification-date", TYPE_DATE_TIME, R),
    One("archive", TYPE_BOOLEAN, W),
    One("read-only", TYPE_BOOLEAN, R),
    One("file-access-method", TYPE_ENUMERATED, R),
    One("record-count", TYPE_UNSIGNED, O),
};
inline constexpr auto FILE = Join(COMMON, FILE_ROWS);

inline constexpr PropertyInfo GROUP_ROWS[] = {
    List("list-of-group-members", TYPE_READ_ACCESS_SPEC, R),
    List("present-value", TYPE_READ_ACCESS_RESULT, R),
};
inline constexpr auto GROUP = Join(COMMON, GROUP_ROWS);

inline constexpr PropertyInfo GLOBAL_GROUP_ROWS[] = {
    Array("group-members", TYPE_DEV_OBJ_PROP_REF, R),
    Array("group-member-names", TYPE_STRING, O),
    Array("present-value", TYPE_PROPERTY_ACCESS_RESULT, R),
    One("member-status-flags", TYPE_BIT_STRING, R),
    One("update-interval", TYPE_UNSIGNED, O),
    One("requested-update-interval", TYPE_UNSIGNED, O),
    One("cov-resubscription-interval", TYPE_UNSIGNED, O),
    One("client-cov-increment", TYPE_CLIENT_COV, O),
    One("covu-period", TYPE_UNSIGNED, O),
    List("covu-recipients", TYPE_RECIPIENT, O),
};
inline constexpr auto GLOBAL_GROUP = Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, GLOBAL_GROUP_ROWS);

inline constexpr PropertyInfo STRUCTURED_VIEW_ROWS[] = {
    One("node-type", TYPE_ENUMERATED, R),
    One("node-subtype", TYPE_STRING, O),
    Array("subordinate-list", TYPE_DEV_OBJ_REF, R),
    Array("subordinate-annotations", TYPE_STRING, O),
    Array("subordinate-tags", TYPE_NAME_VALUE_COLLECTION, O),
    Array("subordinate-node-types", TYPE_ENUMERATED, O),
    Array("subordinate-relationships", TYPE_ENUMERATED, O),
    One("default-subordinate-relationship", TYPE_ENUMERATED, O),
    One("represents", TYPE_DEV_OBJ_REF, O),
};
inline constexpr auto STRUCTURED_VIEW = Join(COMMON, STRUCTURED_VIEW_ROWS);

inline constexpr PropertyInfo LOOP_ROWS[] = {
    One("present-value", TYPE_REAL, R),
    One("update-interval", TYPE_UNSIGNED, O),
    One("output-units", TYPE_ENUMERATED, R),
    One("manipulated-variable-reference", TYPE_OBJ_PROP_REF, R),
    One("controlled-variable-reference", TYPE_OBJ_PROP_REF, R),
    One("controlled-variable-value", TYPE_REAL, R),
    One("controlled-variable-units", TYPE_ENUMERATED, R),
    One("setpoint-reference", TYPE_SETPOINT_REF, R),
    One("setpoint", TYPE_REAL, R),
    One("action", TYPE_ENUMERATED, R),
    One("proportional-constant", TYPE_REAL, O),
    One("proportional-constant-units", TYPE_ENUMERATED, O),
    One("integral-constant", TYPE_REAL, O),
    One("integral-constant-units", TYPE_ENUMERATED, O),
    One("derivative-constant", TYPE_REAL, O),
    One("derivative-constant-units", TYPE_ENUMERATED, O),
    One("bias", TYPE_REAL, O),
    One("maximum-output", TYPE_REAL, O),
    One("minimum-output", TYPE_REAL, O),
    One("priority-for-writing", TYPE_UNSIGNED, R),
    One("cov-increment", TYPE_REAL, O),
    One("error-limit", TYPE_REAL, O),
    One("deadband", TYPE_REAL, O),
    One("low-diff-limit", TYPE_ANY, O),
};
inline constexpr auto LOOP = Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, LOOP_ROWS);

inline constexpr PropertyInfo PROGRAM_ROWS[] = {
    One("program-state", TYPE_ENUMERATED, R),
    One("program-change", TYPE_ENUMERATED, W),
    One("reason-for-halt", TYPE_ENUMERATED, O),
    One("description-of-halt", TYPE_STRING, O),
    One("program-location", TYPE_STRING, O),
    One("instance-of", TYPE_STRING, O),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, O),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
};
inline constexpr auto PROGRAM = Join(COMMON, REPORTING, PROGRAM_ROWS);

} // namespace bacnet::rows
