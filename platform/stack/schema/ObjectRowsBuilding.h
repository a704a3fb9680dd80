// Life safety, doors and access control, lighting, loads, lifts and escalators (ANSI/ASHRAE 135 clause 12). For
// ObjectTypes.cpp.
#pragma once

#include "platform/stack/schema/ObjectRows.h"

namespace bacnet::rows {

// ---- life safety

inline constexpr PropertyInfo LIFE_SAFETY_ROWS[] = {
    One("present-value", TYPE_ENUMERATED, R),
    One("tracking-value", TYPE_ENUMERATED, R),
    One("device-type", TYPE_STRING, O),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("mode", TYPE_ENUMERATED, W),
    List("accepted-modes", TYPE_ENUMERATED, R),
    List("life-safety-alarm-values", TYPE_ENUMERATED, O),
    List("alarm-values", TYPE_ENUMERATED, O),
    List("fault-values", TYPE_ENUMERATED, O),
    One("silenced", TYPE_ENUMERATED, R),
    One("operation-expected", TYPE_ENUMERATED, R),
    List("member-of", TYPE_DEV_OBJ_REF, O),
    One("floor-number", TYPE_UNSIGNED, O),
    One("value-source", TYPE_VALUE_SOURCE, O),
};

inline constexpr PropertyInfo LIFE_SAFETY_POINT_ROWS[] = {
    One("maintenance-required", TYPE_ENUMERATED, O),
    One("setting", TYPE_UNSIGNED, O),
    One("direct-reading", TYPE_REAL, O),
    One("units", TYPE_ENUMERATED, O),
};
inline constexpr auto LIFE_SAFETY_POINT =
    Join(COMMON, REPORTING, INHIBIT, DELAYS, LIFE_SAFETY_ROWS, LIFE_SAFETY_POINT_ROWS);

inline constexpr PropertyInfo LIFE_SAFETY_ZONE_ROWS[] = {
    One("maintenance-required", TYPE_BOOLEAN, O),
    List("zone-members", TYPE_DEV_OBJ_REF, R),
};
inline constexpr auto LIFE_SAFETY_ZONE =
    Join(COMMON, REPORTING, INHIBIT, DELAYS, LIFE_SAFETY_ROWS, LIFE_SAFETY_ZONE_ROWS);

// ---- access control

inline constexpr PropertyInfo ACCESS_DOOR_ROWS[] = {
    One("present-value", TYPE_ENUMERATED, W),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("relinquish-default", TYPE_ENUMERATED, R),
    One("door-status", TYPE_ENUMERATED, O),
    One("lock-status", TYPE_ENUMERATED, O),
    One("secured-status", TYPE_ENUMERATED, O),
    Array("door-members", TYPE_DEV_OBJ_REF, O),
    One("door-pulse-time", TYPE_UNSIGNED, R),
    One("door-extended-pulse-time", TYPE_UNSIGNED, R),
    One("door-unlock-delay-time", TYPE_UNSIGNED, O),
    One("door-open-too-long-time", TYPE_UNSIGNED, R),
    One("door-alarm-state", TYPE_ENUMERATED, O),
    List("masked-alarm-values", TYPE_ENUMERATED, O),
    One("maintenance-required", TYPE_ENUMERATED, O),
    List("alarm-values", TYPE_ENUMERATED, O),
    List("fault-values", TYPE_ENUMERATED, O),
};
inline constexpr auto ACCESS_DOOR = Join(COMMON, REPORTING, INHIBIT, DELAYS, COMMANDED, ACCESS_DOOR_ROWS);

inline constexpr PropertyInfo ACCESS_CREDENTIAL_ROWS[] = {
    One("global-identifier", TYPE_UNSIGNED, W),
    One("status-flags", TYPE_BIT_STRING, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("credential-status", TYPE_ENUMERATED, R),
    List("reason-for-disable", TYPE_ENUMERATED, R),
    Array("authentication-factors", TYPE_CREDENTIAL_FACTOR, R),
    One("activation-time", TYPE_DATE_TIME, R),
    One("expiration-time", TYPE_DATE_TIME, R),
    One("credential-disable", TYPE_ENUMERATED, R),
    One("days-remaining", TYPE_SIGNED, O),
    One("uses-remaining", TYPE_SIGNED, O),
    One("absentee-limit", TYPE_UNSIGNED, O),
    One("belongs-to", TYPE_DEV_OBJ_REF, O),
    Array("assigned-access-rights", TYPE_ASSIGNED_ACCESS_RIGHTS, R),
    One("last-access-point", TYPE_DEV_OBJ_REF, O),
    One("last-access-event", TYPE_ENUMERATED, O),
    One("last-use-time", TYPE_DATE_TIME, O),
    One("trace-flag", TYPE_BOOLEAN, O),
    One("threat-authority", TYPE_UNSIGNED, O),
    One("extended-time-enable", TYPE_BOOLEAN, O),
    List("authorization-exemptions", TYPE_ENUMERATED, O),
};
inline constexpr auto ACCESS_CREDENTIAL = Join(COMMON, ACCESS_CREDENTIAL_ROWS);

inline constexpr PropertyInfo ACCESS_POINT_ROWS[] = {
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("authentication-status", TYPE_ENUMERATED, R),
    One("active-authentication-policy", TYPE_UNSIGNED, R),
    One("number-of-authentication-policies", TYPE_UNSIGNED, R),
    Array("authentication-policy-list", TYPE_AUTHENTICATION_POLICY, O),
    Array("authentication-policy-names", TYPE_STRING, O),
    One("authorization-mode", TYPE_ENUMERATED, R),
    One("verification-time", TYPE_UNSIGNED, O),
    One("lockout", TYPE_BOOLEAN, O),
    One("lockout-relinquish-time", TYPE_UNSIGNED, O),
    One("failed-attempts", TYPE_UNSIGNED, O),
    List("failed-attempt-events", TYPE_ENUMERATED, O),
    One("max-failed-attempts", TYPE_UNSIGNED, O),
    One("failed-attempts-time", TYPE_UNSIGNED, O),
    One("threat-level", TYPE_UNSIGNED, O),
    One("occupancy-upper-limit-enforced", TYPE_BOOLEAN, O),
    One("occupancy-lower-limit-enforced", TYPE_BOOLEAN, O),
    One("occupancy-count-adjust", TYPE_BOOLEAN, O),
    One("accompaniment-time", TYPE_UNSIGNED, O),
    One("access-event", TYPE_ENUMERATED, R),
    One("access-event-tag", TYPE_UNSIGNED, R),
    One("access-event-time", TYPE_TIME_STAMP, R),
    One("access-event-credential", TYPE_DEV_OBJ_REF, R),
    One("access-event-authentication-factor", TYPE_AUTHENTICATION_FACTOR, O),
    Array("access-doors", TYPE_DEV_OBJ_REF, R),
    One("priority-for-writing", TYPE_UNSIGNED, R),
    One("muster-point", TYPE_BOOLEAN, O),
    One("zone-to", TYPE_DEV_OBJ_REF, O),
    One("zone-from", TYPE_DEV_OBJ_REF, O),
    One("transaction-notification-class", TYPE_UNSIGNED, O),
    List("access-alarm-events", TYPE_ENUMERATED, O),
    List("access-transaction-events", TYPE_ENUMERATED, O),
};
inline constexpr auto ACCESS_POINT = Join(COMMON, REPORTING, INHIBIT, ACCESS_POINT_ROWS);

inline constexpr PropertyInfo ACCESS_RIGHTS_ROWS[] = {
    One("global-identifier", TYPE_UNSIGNED, W),
    One("status-flags", TYPE_BIT_STRING, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("log-enable", TYPE_BOOLEAN, R),
    Array("negative-access-rules", TYPE_ACCESS_RULE, R),
    Array("positive-access-rules", TYPE_ACCESS_RULE, R),
    One("accompaniment", TYPE_DEV_OBJ_REF, O),
};
inline constexpr auto ACCESS_RIGHTS = Join(COMMON, ACCESS_RIGHTS_ROWS);

inline constexpr PropertyInfo ACCESS_USER_ROWS[] = {
    One("global-identifier", TYPE_UNSIGNED, W),
    One("status-flags", TYPE_BIT_STRING, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("user-type", TYPE_ENUMERATED, R),
    One("user-name", TYPE_STRING, O),
    One("user-external-identifier", TYPE_STRING, O),
    One("user-information-reference", TYPE_STRING, O),
    List("members", TYPE_DEV_OBJ_REF, O),
    List("member-of", TYPE_DEV_OBJ_REF, O),
    List("credentials", TYPE_DEV_OBJ_REF, R),
};
inline constexpr auto ACCESS_USER = Join(COMMON, ACCESS_USER_ROWS);

inline constexpr PropertyInfo ACCESS_ZONE_ROWS[] = {
    One("global-identifier", TYPE_UNSIGNED, W),
    One("occupancy-state", TYPE_ENUMERATED, R),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("occupancy-count", TYPE_UNSIGNED, O),
    One("occupancy-count-enable", TYPE_BOOLEAN, O),
    One("adjust-value", TYPE_SIGNED, O),
    One("occupancy-upper-limit", TYPE_UNSIGNED, O),
    One("occupancy-lower-limit", TYPE_UNSIGNED, O),
    List("credentials-in-zone", TYPE_DEV_OBJ_REF, O),
    One("last-credential-added", TYPE_DEV_OBJ_REF, O),
    One("last-credential-added-time", TYPE_DATE_TIME, O),
    One("last-credential-removed", TYPE_DEV_OBJ_REF, O),
    One("last-credential-removed-time", TYPE_DATE_TIME, O),
    One("passback-mode", TYPE_ENUMERATED, O),
    One("passback-timeout", TYPE_UNSIGNED, O),
    List("entry-points", TYPE_DEV_OBJ_REF, R),
    List("exit-points", TYPE_DEV_OBJ_REF, R),
    List("alarm-values", TYPE_ENUMERATED, O),
};
inline constexpr auto ACCESS_ZONE = Join(COMMON, REPORTING, INHIBIT, DELAYS, ACCESS_ZONE_ROWS);

inline constexpr PropertyInfo CREDENTIAL_DATA_INPUT_ROWS[] = {
    One("present-value", TYPE_AUTHENTICATION_FACTOR, R),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    Array("supported-formats", TYPE_FACTOR_FORMAT, R),
    Array("supported-format-classes", TYPE_UNSIGNED, O),
    One("update-time", TYPE_TIME_STAMP, R),
};
inline constexpr auto CREDENTIAL_DATA_INPUT = Join(COMMON, REPORTING, CREDENTIAL_DATA_INPUT_ROWS);

// ---- loads and stages

inline constexpr PropertyInfo LOAD_CONTROL_ROWS[] = {
    One("present-value", TYPE_ENUMERATED, R),
    One("state-description", TYPE_STRING, O),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("reliability", TYPE_ENUMERATED, O),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("requested-shed-level", TYPE_SHED_LEVEL, W),
    One("start-time", TYPE_DATE_TIME, W),
    One("shed-duration", TYPE_UNSIGNED, W),
    One("duty-window", TYPE_UNSIGNED, W),
    One("log-enable", TYPE_BOOLEAN, W),
    One("full-duty-baseline", TYPE_REAL, O),
    One("expected-shed-level", TYPE_SHED_LEVEL, R),
    One("actual-shed-level", TYPE_SHED_LEVEL, R),
    Array("shed-levels", TYPE_UNSIGNED, W),
    Array("shed-level-descriptions", TYPE_STRING, R),
    One("value-source", TYPE_VALUE_SOURCE, O),
};
inline constexpr auto LOAD_CONTROL = Join(COMMON, REPORTING, INHIBIT, DELAYS, LOAD_CONTROL_ROWS);

inline constexpr PropertyInfo STAGING_ROWS[] = {
    One("present-value", TYPE_REAL, W),
    One("present-stage", TYPE_UNSIGNED, R),
    Array("stages", TYPE_STAGE_LIMIT, R),
    Array("stage-names", TYPE_STRING, O),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, R),
    One("reliability", TYPE_ENUMERATED, R),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("units", TYPE_ENUMERATED, R),
    Array("target-references", TYPE_DEV_OBJ_REF, R),
    One("priority-for-writing", TYPE_UNSIGNED, R),
    One("default-present-value", TYPE_REAL, O),
    One("min-pres-value", TYPE_REAL, R),
    One("max-pres-value", TYPE_REAL, R),
    One("cov-increment", TYPE_REAL, O),
    One("value-source", TYPE_VALUE_SOURCE, O),
};
inline constexpr auto STAGING = Join(COMMON, REPORTING, STAGING_ROWS);

// ---- lighting

inline constexpr PropertyInfo CHANNEL_ROWS[] = {
    One("present-value", TYPE_ANY, W),
    One("last-priority", TYPE_UNSIGNED, R),
    One("write-status", TYPE_ENUMERATED, R),
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, O),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    Array("list-of-object-property-references", TYPE_DEV_OBJ_PROP_REF, W),
    Array("execution-delay", TYPE_UNSIGNED, O),
    One("allow-group-delay-inhibit", TYPE_BOOLEAN, O),
    One("channel-number", TYPE_UNSIGNED, W),
    Array("control-groups", TYPE_UNSIGNED, W),
    One("value-source", TYPE_VALUE_SOURCE, O),
    One("audit-priority-filter", TYPE_ANY, O),
};
inline constexpr auto CHANNEL = Join(COMMON, REPORTING, CHANNEL_ROWS);

inline constexpr PropertyInfo LIGHTS[] = {
    One("status-flags", TYPE_BIT_STRING, R),   One("reliability", TYPE_ENUMERATED, O),
    One("out-of-service", TYPE_BOOLEAN, R),    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("blink-warn-enable", TYPE_BOOLEAN, R), One("egress-time", TYPE_UNSIGNED, R),
    One("egress-active", TYPE_BOOLEAN, R),     One("power", TYPE_REAL, O),
};

inline constexpr PropertyInfo LIGHTING_OUTPUT_ROWS[] = {
    One("present-value", TYPE_REAL, W),
    One("tracking-value", TYPE_REAL, R),
    One("lighting-command", TYPE_LIGHTING_COMMAND, W),
    One("in-progress", TYPE_ENUMERATED, R),
    One("default-fade-time", TYPE_UNSIGNED, R),
    One("default-ramp-rate", TYPE_REAL, R),
    One("default-step-increment", TYPE_REAL, R),
    One("transition", TYPE_ENUMERATED, O),
    One("feedback-value", TYPE_REAL, O),
    One("relinquish-default", TYPE_REAL, R),
    One("instantaneous-power", TYPE_REAL, O),
    One("min-actual-value", TYPE_REAL, O),
    One("max-actual-value", TYPE_REAL, O),
    One("lighting-command-default-priority", TYPE_UNSIGNED, R),
    One("cov-increment", TYPE_REAL, O),
    One("color-override", TYPE_BOOLEAN, O),
    One("color-reference", TYPE_OBJECT_ID, O),
    One("override-color-reference", TYPE_OBJECT_ID, O),
    One("high-end-trim", TYPE_REAL, O),
    One("low-end-trim", TYPE_REAL, O),
    One("trim-fade-time", TYPE_UNSIGNED, O),
};
inline constexpr auto LIGHTING_OUTPUT = Join(COMMON, LIGHTS, COMMANDED, LIGHTING_OUTPUT_ROWS);

inline constexpr PropertyInfo BINARY_LIGHTING_OUTPUT_ROWS[] = {
    One("present-value", TYPE_ENUMERATED, W),
    One("event-state", TYPE_ENUMERATED, O),
    One("feedback-value", TYPE_ENUMERATED, O),
    One("relinquish-default", TYPE_ENUMERATED, R),
    One("polarity", TYPE_ENUMERATED, O),
    One("elapsed-active-time", TYPE_UNSIGNED, O),
    One("time-of-active-time-reset", TYPE_DATE_TIME, O),
    One("strike-count", TYPE_UNSIGNED, O),
    One("time-of-strike-count-reset", TYPE_DATE_TIME, O),
};
inline constexpr auto BINARY_LIGHTING_OUTPUT = Join(COMMON, REPORTING, LIGHTS, COMMANDED, BINARY_LIGHTING_OUTPUT_ROWS);

inline constexpr PropertyInfo COLOR_ROWS[] = {
    One("present-value", TYPE_XY_COLOR, W),
    One("tracking-value", TYPE_XY_COLOR, R),
    One("color-command", TYPE_COLOR_COMMAND, W),
    One("in-progress", TYPE_ENUMERATED, R),
    One("default-color", TYPE_XY_COLOR, R),
    One("default-fade-time", TYPE_UNSIGNED, R),
    One("transition", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, O),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("value-source", TYPE_VALUE_SOURCE, O),
};
inline constexpr auto COLOR = Join(COMMON, COLOR_ROWS);

inline constexpr PropertyInfo COLOR_TEMPERATURE_ROWS[] = {
    One("present-value", TYPE_UNSIGNED, W),
    One("tracking-value", TYPE_UNSIGNED, R),
    One("color-command", TYPE_COLOR_COMMAND, W),
    One("in-progress", TYPE_ENUMERATED, R),
    One("default-color-temperature", TYPE_UNSIGNED, R),
    One("default-fade-time", TYPE_UNSIGNED, R),
    One("default-ramp-rate", TYPE_UNSIGNED, R),
    One("default-step-increment", TYPE_UNSIGNED, R),
    One("transition", TYPE_ENUMERATED, O),
    One("min-pres-value", TYPE_UNSIGNED, O),
    One("max-pres-value", TYPE_UNSIGNED, O),
    One("reliability", TYPE_ENUMERATED, O),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("value-source", TYPE_VALUE_SOURCE, O),
};
inline constexpr auto COLOR_TEMPERATURE = Join(COMMON, COLOR_TEMPERATURE_ROWS);

// ---- lifts and escalators

inline constexpr PropertyInfo ELEVATOR_GROUP_ROWS[] = {
    One("machine-room-id", TYPE_OBJECT_ID, R),          One("group-id", TYPE_UNSIGNED, R),
    Array("group-members", TYPE_OBJECT_ID, R),          One("group-mode", TYPE_ENUMERATED, O),
    List("landing-calls", TYPE_LANDING_CALL_STATUS, O), One("landing-call-control", TYPE_LANDING_CALL_STATUS, O),
};
inline constexpr auto ELEVATOR_GROUP = Join(COMMON, ELEVATOR_GROUP_ROWS);

inline constexpr PropertyInfo CONVEYANCE[] = {
    One("status-flags", TYPE_BIT_STRING, R),
    One("event-state", TYPE_ENUMERATED, O),
    One("reliability", TYPE_ENUMERATED, O),
    One("out-of-service", TYPE_BOOLEAN, R),
    One("reliability-evaluation-inhibit", TYPE_BOOLEAN, O),
    One("elevator-group", TYPE_OBJECT_ID, R),
    One("group-id", TYPE_UNSIGNED, R),
    One("installation-id", TYPE_UNSIGNED, R),
    One("energy-meter", TYPE_REAL, O),
    One("energy-meter-ref", TYPE_DEV_OBJ_REF, O),
    One("passenger-alarm", TYPE_BOOLEAN, R),
};

inline constexpr PropertyInfo ESCALATOR_ROWS[] = {
    One("power-mode", TYPE_BOOLEAN, O),
    One("operation-direction", TYPE_ENUMERATED, R),
    One("escalator-mode", TYPE_ENUMERATED, O),
    List("fault-signals", TYPE_ENUMERATED, O),
};
inline constexpr auto ESCALATOR = Join(COMMON, REPORTING, INHIBIT, DELAYS, CONVEYANCE, ESCALATOR_ROWS);

inline constexpr PropertyInfo LIFT_ROWS[] = {
    Array("floor-text", TYPE_STRING, O),
    Array("car-door-text", TYPE_STRING, O),
    Array("assigned-landing-calls", TYPE_ASSIGNED_LANDING_CALLS, O),
    Array("making-car-call", TYPE_UNSIGNED, O),
    Array("registered-car-call", TYPE_LIFT_CAR_CALL_LIST, O),
    One("car-position", TYPE_UNSIGNED, R),
    One("car-moving-direction", TYPE_ENUMERATED, R),
    One("car-assigned-direction", TYPE_ENUMERATED, O),
    Array("car-door-status", TYPE_ENUMERATED, R),
    Array("car-door-command", TYPE_ENUMERATED, O),
    One("car-door-zone", TYPE_BOOLEAN, O),
    One("car-mode", TYPE_ENUMERATED, O),
    One("car-load", TYPE_REAL, O),
    One("car-load-units", TYPE_ENUMERATED, O),
    One("next-stopping-floor", TYPE_UNSIGNED, O),
    One("car-drive-status", TYPE_ENUMERATED, O),
    List("fault-signals", TYPE_ENUMERATED, R),
    Array("landing-door-status", TYPE_LANDING_DOOR_STATUS, O),
    One("higher-deck", TYPE_OBJECT_ID, O),
    One("lower-deck", TYPE_OBJECT_ID, O),
};
inline constexpr auto LIFT = Join(COMMON, REPORTING, INHIBIT, DELAYS, CONVEYANCE, LIFT_ROWS);

} // namespace bacnet::rows
