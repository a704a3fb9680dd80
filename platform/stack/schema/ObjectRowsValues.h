// Inputs, outputs and values: what stands for one quantity (ANSI/ASHRAE 135 clause 12). For ObjectTypes.cpp.
#pragma once

#include "platform/stack/schema/ObjectRows.h"

namespace bacnet::rows {

// ---- analog

inline constexpr PropertyInfo ANALOG_LIMITS[] = {
    One("units", TYPE_ENUMERATED, R),        One("min-pres-value", TYPE_REAL, O),
    One("max-pres-value", TYPE_REAL, O),     One("resolution", TYPE_REAL, O),
    One("cov-increment", TYPE_REAL, O),      One("high-limit", TYPE_REAL, O),
    One("low-limit", TYPE_REAL, O),          One("deadband", TYPE_REAL, O),
    One("limit-enable", TYPE_BIT_STRING, O), One("fault-high-limit", TYPE_REAL, O),
    One("fault-low-limit", TYPE_REAL, O),
};

inline constexpr PropertyInfo ANALOG_INPUT_ROWS[] = {
    One("present-value", TYPE_REAL, R),
    One("device-type", TYPE_STRING, O),
    One("update-interval", TYPE_UNSIGNED, O),
    One("interface-value", TYPE_ANY, O),
};
inline constexpr auto ANALOG_INPUT = Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, ANALOG_LIMITS, ANALOG_INPUT_ROWS);

inline constexpr PropertyInfo ANALOG_OUTPUT_ROWS[] = {
    One("present-value", TYPE_REAL, W),
    One("device-type", TYPE_STRING, O),
    One("relinquish-default", TYPE_REAL, R),
    One("interface-value", TYPE_ANY, O),
};
inline constexpr auto ANALOG_OUTPUT =
    Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, COMMANDED, ANALOG_LIMITS, ANALOG_OUTPUT_ROWS);

inline constexpr PropertyInfo ANALOG_VALUE_ROWS[] = {
    One("present-value", TYPE_REAL, R),
    One("relinquish-default", TYPE_REAL, O),
};
inline constexpr auto ANALOG_VALUE =
    Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, COMMANDABLE, ANALOG_LIMITS, ANALOG_VALUE_ROWS);

// ---- binary

inline constexpr PropertyInfo BINARY_COUNTS[] = {
    One("inactive-text", TYPE_STRING, O),
    One("active-text", TYPE_STRING, O),
    One("change-of-state-time", TYPE_DATE_TIME, O),
    One("change-of-state-count", TYPE_UNSIGNED, O),
    One("time-of-state-count-reset", TYPE_DATE_TIME, O),
    One("elapsed-active-time", TYPE_UNSIGNED, O),
    One("time-of-active-time-reset", TYPE_DATE_TIME, O),
};

inline constexpr PropertyInfo BINARY_INPUT_ROWS[] = {
    One("present-value", TYPE_ENUMERATED, R), One("device-type", TYPE_STRING, O),  One("polarity", TYPE_ENUMERATED, R),
    One("alarm-value", TYPE_ENUMERATED, O),   One("interface-value", TYPE_ANY, O),
};
inline constexpr auto BINARY_INPUT = Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, BINARY_COUNTS, BINARY_INPUT_ROWS);

inline constexpr PropertyInfo BINARY_OUTPUT_ROWS[] = {
    One("present-value", TYPE_ENUMERATED, W),  One("device-type", TYPE_STRING, O),
    One("polarity", TYPE_ENUMERATED, R),       One("minimum-off-time", TYPE_UNSIGNED, O),
    One("minimum-on-time", TYPE_UNSIGNED, O),  One("relinquish-default", TYPE_ENUMERATED, R),
    One("feedback-value", TYPE_ENUMERATED, O), One("interface-value", TYPE_ANY, O),
};
inline constexpr auto BINARY_OUTPUT =
    Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, COMMANDED, BINARY_COUNTS, BINARY_OUTPUT_ROWS);

inline constexpr PropertyInfo BINARY_VALUE_ROWS[] = {
    One("present-value", TYPE_ENUMERATED, R), One("minimum-off-time", TYPE_UNSIGNED, O),
    One("minimum-on-time", TYPE_UNSIGNED, O), One("relinquish-default", TYPE_ENUMERATED, O),
    One("alarm-value", TYPE_ENUMERATED, O),
};
inline constexpr auto BINARY_VALUE =
    Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, COMMANDABLE, BINARY_COUNTS, BINARY_VALUE_ROWS);

// ---- multi-state

inline constexpr PropertyInfo STATES[] = {
    One("number-of-states", TYPE_UNSIGNED, R),
    Array("state-text", TYPE_STRING, O),
};

inline constexpr PropertyInfo MULTI_STATE_INPUT_ROWS[] = {
    One("present-value", TYPE_UNSIGNED, R), One("device-type", TYPE_STRING, O),  List("alarm-values", TYPE_UNSIGNED, O),
    List("fault-values", TYPE_UNSIGNED, O), One("interface-value", TYPE_ANY, O),
};
inline constexpr auto MULTI_STATE_INPUT =
    Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, STATES, MULTI_STATE_INPUT_ROWS);

inline constexpr PropertyInfo MULTI_STATE_OUTPUT_ROWS[] = {
    One("present-value", TYPE_UNSIGNED, W),      One("device-type", TYPE_STRING, O),
    One("relinquish-default", TYPE_UNSIGNED, R), One("feedback-value", TYPE_UNSIGNED, O),
    One("interface-value", TYPE_ANY, O),
};
inline constexpr auto MULTI_STATE_OUTPUT =
    Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, COMMANDED, STATES, MULTI_STATE_OUTPUT_ROWS);

inline constexpr PropertyInfo MULTI_STATE_VALUE_ROWS[] = {
    One("present-value", TYPE_UNSIGNED, R),
    One("relinquish-default", TYPE_UNSIGNED, O),
    List("alarm-values", TYPE_UNSIGNED, O),
    List("fault-values", TYPE_UNSIGNED, O),
};
inline constexpr auto MULTI_STATE_VALUE =
    Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, COMMANDABLE, STATES, MULTI_STATE_VALUE_ROWS);

// ---- values of one primitive type

inline constexpr PropertyInfo BITSTRING_VALUE_ROWS[] = {
    One("present-value", TYPE_BIT_STRING, R),      Array("bit-text", TYPE_STRING, O),
    One("relinquish-default", TYPE_BIT_STRING, O), Array("alarm-values", TYPE_BIT_STRING, O),
    One("bit-mask", TYPE_BIT_STRING, O),
};
inline constexpr auto BITSTRING_VALUE =
    Join(COMMON, VALUE_STATUS, REPORTING, INHIBIT, DELAYS, COMMANDABLE, BITSTRING_VALUE_ROWS);

inline constexpr PropertyInfo CHARACTERSTRING_VALUE_ROWS[] = {
    One("present-value", TYPE_STRING, R),
    One("relinquish-default", TYPE_STRING, O),
    Array("alarm-values", TYPE_ANY, O),
    Array("fault-values", TYPE_ANY, O),
};
inline constexpr auto CHARACTERSTRING_VALUE =
    Join(COMMON, VALUE_STATUS, REPORTING, INHIBIT, DELAYS, COMMANDABLE, CHARACTERSTRING_VALUE_ROWS);

inline constexpr PropertyInfo DATE_ROWS[] = {
    One("present-value", TYPE_DATE, R),
    One("relinquish-default", TYPE_DATE, O),
};
inline constexpr auto DATE_VALUE = Join(COMMON, VALUE_STATUS, REPORTING, COMMANDABLE, DATE_ROWS);

inline constexpr PropertyInfo DATETIME_ROWS[] = {
    One("present-value", TYPE_DATE_TIME, R),
    One("relinquish-default", TYPE_DATE_TIME, O),
    One("is-utc", TYPE_BOOLEAN, O),
};
inline constexpr auto DATETIME_VALUE = Join(COMMON, VALUE_STATUS, REPORTING, COMMANDABLE, DATETIME_ROWS);

inline constexpr PropertyInfo TIME_ROWS[] = {
    One("present-value", TYPE_TIME, R),
    One("relinquish-default", TYPE_TIME, O),
};
inline constexpr auto TIME_VALUE = Join(COMMON, VALUE_STATUS, REPORTING, COMMANDABLE, TIME_ROWS);

inline constexpr PropertyInfo OCTETSTRING_VALUE_ROWS[] = {
    One("present-value", TYPE_OCTET_STRING, R),
    One("relinquish-default", TYPE_OCTET_STRING, O),
};
inline constexpr auto OCTETSTRING_VALUE = Join(COMMON, VALUE_STATUS, COMMANDABLE, OCTETSTRING_VALUE_ROWS);

// Values with limits, each in its own number type; an increment or a width of integers is unsigned.
template <BACSTAC_DATA_TYPE Type, BACSTAC_DATA_TYPE Width>
inline constexpr PropertyInfo NUMBER_ROWS[] = {
    One("present-value", Type, R),    One("relinquish-default", Type, O),
    One("units", TYPE_ENUMERATED, R), One("cov-increment", Width, O),
    One("high-limit", Type, O),       One("low-limit", Type, O),
    One("deadband", Width, O),        One("limit-enable", TYPE_BIT_STRING, O),
    One("min-pres-value", Type, O),   One("max-pres-value", Type, O),
    One("resolution", Type, O),       One("fault-high-limit", Type, O),
    One("fault-low-limit", Type, O),
};
template <BACSTAC_DATA_TYPE Type, BACSTAC_DATA_TYPE Width>
inline constexpr auto NUMBER_VALUE = Join(COMMON, VALUE_STATUS, REPORTING, INHIBIT, DELAYS, COMMANDABLE,
                                          NUMBER_ROWS<Type, Width>);

inline constexpr auto INTEGER_VALUE = NUMBER_VALUE<TYPE_SIGNED, TYPE_UNSIGNED>;
inline constexpr auto LARGE_ANALOG_VALUE = NUMBER_VALUE<TYPE_DOUBLE, TYPE_DOUBLE>;
inline constexpr auto POSITIVE_INTEGER_VALUE = NUMBER_VALUE<TYPE_UNSIGNED, TYPE_UNSIGNED>;

// ---- counts of pulses

inline constexpr PropertyInfo ACCUMULATOR_ROWS[] = {
    One("present-value", TYPE_UNSIGNED, R),
    One("device-type", TYPE_STRING, O),
    One("scale", TYPE_SCALE, R),
    One("units", TYPE_ENUMERATED, R),
    One("prescale", TYPE_PRESCALE, O),
    One("max-pres-value", TYPE_UNSIGNED, R),
    One("value-change-time", TYPE_DATE_TIME, O),
    One("value-before-change", TYPE_UNSIGNED, O),
    One("value-set", TYPE_UNSIGNED, O),
    One("logging-record", TYPE_ACCUMULATOR_RECORD, O),
    One("logging-object", TYPE_OBJECT_ID, O),
    One("pulse-rate", TYPE_UNSIGNED, O),
    One("high-limit", TYPE_UNSIGNED, O),
    One("low-limit", TYPE_UNSIGNED, O),
    One("limit-monitoring-interval", TYPE_UNSIGNED, O),
    One("limit-enable", TYPE_BIT_STRING, O),
    One("fault-high-limit", TYPE_UNSIGNED, O),
    One("fault-low-limit", TYPE_UNSIGNED, O),
};
inline constexpr auto ACCUMULATOR = Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, ACCUMULATOR_ROWS);

inline constexpr PropertyInfo PULSE_CONVERTER_ROWS[] = {
    One("present-value", TYPE_REAL, R),
    One("input-reference", TYPE_OBJ_PROP_REF, O),
    One("units", TYPE_ENUMERATED, R),
    One("scale-factor", TYPE_REAL, R),
    One("adjust-value", TYPE_REAL, W),
    One("count", TYPE_UNSIGNED, R),
    One("update-time", TYPE_DATE_TIME, R),
    One("count-change-time", TYPE_DATE_TIME, R),
    One("count-before-change", TYPE_UNSIGNED, R),
    One("cov-increment", TYPE_REAL, O),
    One("cov-period", TYPE_UNSIGNED, O),
    One("high-limit", TYPE_REAL, O),
    One("low-limit", TYPE_REAL, O),
    One("deadband", TYPE_REAL, O),
    One("limit-enable", TYPE_BIT_STRING, O),
};
inline constexpr auto PULSE_CONVERTER = Join(COMMON, STATUS, REPORTING, INHIBIT, DELAYS, PULSE_CONVERTER_ROWS);

} // namespace bacnet::rows
