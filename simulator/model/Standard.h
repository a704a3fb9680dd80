// Numbers of the standard that only a server names: errors, reasons and the properties of the simulated objects
// (ANSI/ASHRAE 135 clauses 18, 20.1 and 21).
#pragma once

#include "api/bacnet/Enums.h"
#include "platform/stack/schema/PropertyTable.h"

#include <cstdint>

namespace sim {

enum ErrorClass : std::uint32_t {
    CLASS_DEVICE = 0,
    CLASS_OBJECT = 1,
    CLASS_PROPERTY = 2,
    CLASS_RESOURCES = 3,
    CLASS_SECURITY = 4,
    CLASS_SERVICES = 5,
};

enum ErrorCode : std::uint32_t {
    CODE_OTHER = 0,
    CODE_CONFIGURATION_IN_PROGRESS = 2,
    CODE_DEVICE_BUSY = 3,
    CODE_DYNAMIC_CREATION_NOT_SUPPORTED = 4,
    CODE_FILE_ACCESS_DENIED = 5,
    CODE_INCONSISTENT_PARAMETERS = 7,
    CODE_INVALID_DATA_TYPE = 9,
    CODE_INVALID_FILE_ACCESS_METHOD = 10,
    CODE_INVALID_FILE_START_POSITION = 11,
    CODE_INVALID_TIME_STAMP = 14,
    CODE_NO_SPACE_FOR_OBJECT = 18,
    CODE_NO_SPACE_TO_ADD_LIST_ELEMENT = 19,
    CODE_NO_SPACE_TO_WRITE_PROPERTY = 20,
    CODE_PROPERTY_IS_NOT_A_LIST = 22,
    CODE_OBJECT_DELETION_NOT_PERMITTED = 23,
    CODE_OBJECT_IDENTIFIER_ALREADY_EXISTS = 24,
    CODE_PASSWORD_FAILURE = 26,
    CODE_READ_ACCESS_DENIED = 27,
    CODE_SERVICE_REQUEST_DENIED = 29,
    CODE_UNKNOWN_OBJECT = 31,
    CODE_UNKNOWN_PROPERTY = 32,
    CODE_UNSUPPORTED_OBJECT_TYPE = 36,
    CODE_VALUE_OUT_OF_RANGE = 37,
    CODE_WRITE_ACCESS_DENIED = 40,
    CODE_INVALID_ARRAY_INDEX = 42,
    CODE_NOT_COV_PROPERTY = 44,
    CODE_OPTIONAL_FUNCTIONALITY_NOT_SUPPORTED = 45,
    CODE_INVALID_CONFIGURATION_DATA = 46,
    CODE_DUPLICATE_NAME = 48,
    CODE_DUPLICATE_OBJECT_ID = 49,
    CODE_PROPERTY_IS_NOT_AN_ARRAY = 50,
    CODE_INVALID_EVENT_STATE = 73,
    CODE_NO_ALARM_CONFIGURED = 74,
    CODE_LIST_ELEMENT_NOT_FOUND = 81,
    CODE_COMMUNICATION_DISABLED = 83,
    CODE_FILE_FULL = 128,
    CODE_INCONSISTENT_OBJECT_TYPE = 130,
    CODE_LIST_ITEM_NOT_NUMBERED = 140,
    CODE_LIST_ITEM_NOT_TIMESTAMPED = 141,
};

// What devices of drafts of the standard have instead of 339 and 341.
inline constexpr BACSTAC_PROPERTY_ID OLD_BACKUP_PREPARATION_TIME = 315;
inline constexpr BACSTAC_PROPERTY_ID OLD_RESTORE_PREPARATION_TIME = 316;

// Reject and abort reasons that platform/stack/network/Apdu.h does not name (clauses 18.9 and 18.10).
inline constexpr std::uint8_t REJECT_INVALID_TAG = 4;
inline constexpr std::uint8_t REJECT_MISSING_REQUIRED_PARAMETER = 5;
inline constexpr std::uint8_t REJECT_PARAMETER_OUT_OF_RANGE = 6;
inline constexpr std::uint8_t REJECT_TOO_MANY_ARGUMENTS = 7;
inline constexpr std::uint8_t REJECT_UNDEFINED_ENUMERATION = 8;

// Object types, beyond those that api/bacnet/Enums.h names.
inline constexpr BACSTAC_OBJECT_TYPE OBJ_LOOP = 12;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_NOTIFICATION_CLASS = 15;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_SCHEDULE = 17;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_AVERAGING = 18;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_ACCUMULATOR = 23;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_NETWORK_PORT = 56;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_PULSE_CONVERTER = 24;

// Properties, beyond those that api/bacnet/Enums.h names; the numbers are those of the schema.
inline constexpr BACSTAC_PROPERTY_ID PROP_ACKED_TRANSITIONS = bacnet::PropertyId("acked-transitions");
inline constexpr BACSTAC_PROPERTY_ID PROP_ACK_REQUIRED = bacnet::PropertyId("ack-required");
inline constexpr BACSTAC_PROPERTY_ID PROP_ACTIVE_TEXT = bacnet::PropertyId("active-text");
inline constexpr BACSTAC_PROPERTY_ID PROP_APDU_SEGMENT_TIMEOUT = bacnet::PropertyId("apdu-segment-timeout");
inline constexpr BACSTAC_PROPERTY_ID PROP_APDU_TIMEOUT = bacnet::PropertyId("apdu-timeout");
inline constexpr BACSTAC_PROPERTY_ID PROP_APPLICATION_SOFTWARE_VERSION =
    bacnet::PropertyId("application-software-version");
inline constexpr BACSTAC_PROPERTY_ID PROP_ARCHIVE = bacnet::PropertyId("archive");
inline constexpr BACSTAC_PROPERTY_ID PROP_NOTIFICATION_CLASS = bacnet::PropertyId("notification-class");
inline constexpr BACSTAC_PROPERTY_ID PROP_COV_INCREMENT = bacnet::PropertyId("cov-increment");
inline constexpr BACSTAC_PROPERTY_ID PROP_DATE_LIST = bacnet::PropertyId("date-list");
inline constexpr BACSTAC_PROPERTY_ID PROP_DAYLIGHT_SAVINGS_STATUS = bacnet::PropertyId("daylight-savings-status");
inline constexpr BACSTAC_PROPERTY_ID PROP_DEADBAND = bacnet::PropertyId("deadband");
inline constexpr BACSTAC_PROPERTY_ID PROP_DEVICE_ADDRESS_BINDING = bacnet::PropertyId("device-address-binding");
inline constexpr BACSTAC_PROPERTY_ID PROP_DEVICE_TYPE = bacnet::PropertyId("device-type");
inline constexpr BACSTAC_PROPERTY_ID PROP_EFFECTIVE_PERIOD = bacnet::PropertyId("effective-period");
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_ENABLE = bacnet::PropertyId("event-enable");
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_STATE = bacnet::PropertyId("event-state");
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_TYPE = bacnet::PropertyId("event-type");
inline constexpr BACSTAC_PROPERTY_ID PROP_EXCEPTION_SCHEDULE = bacnet::PropertyId("exception-schedule");
inline constexpr BACSTAC_PROPERTY_ID PROP_FILE_ACCESS_METHOD = bacnet::PropertyId("file-access-method");
inline constexpr BACSTAC_PROPERTY_ID PROP_FILE_SIZE = bacnet::PropertyId("file-size");
inline constexpr BACSTAC_PROPERTY_ID PROP_FILE_TYPE = bacnet::PropertyId("file-type");
inline constexpr BACSTAC_PROPERTY_ID PROP_FIRMWARE_REVISION = bacnet::PropertyId("firmware-revision");
inline constexpr BACSTAC_PROPERTY_ID PROP_HIGH_LIMIT = bacnet::PropertyId("high-limit");
inline constexpr BACSTAC_PROPERTY_ID PROP_INACTIVE_TEXT = bacnet::PropertyId("inactive-text");
inline constexpr BACSTAC_PROPERTY_ID PROP_LIMIT_ENABLE = bacnet::PropertyId("limit-enable");
inline constexpr BACSTAC_PROPERTY_ID PROP_LIST_OF_OBJECT_PROPERTY_REFERENCES =
    bacnet::PropertyId("list-of-object-property-references");
inline constexpr BACSTAC_PROPERTY_ID PROP_LOCAL_DATE = bacnet::PropertyId("local-date");
inline constexpr BACSTAC_PROPERTY_ID PROP_LOCAL_TIME = bacnet::PropertyId("local-time");
inline constexpr BACSTAC_PROPERTY_ID PROP_LOCATION = bacnet::PropertyId("location");
inline constexpr BACSTAC_PROPERTY_ID PROP_LOW_LIMIT = bacnet::PropertyId("low-limit");
inline constexpr BACSTAC_PROPERTY_ID PROP_MAX_PRES_VALUE = bacnet::PropertyId("max-pres-value");
inline constexpr BACSTAC_PROPERTY_ID PROP_MIN_PRES_VALUE = bacnet::PropertyId("min-pres-value");
inline constexpr BACSTAC_PROPERTY_ID PROP_MODEL_NAME = bacnet::PropertyId("model-name");
inline constexpr BACSTAC_PROPERTY_ID PROP_NOTIFY_TYPE = bacnet::PropertyId("notify-type");
inline constexpr BACSTAC_PROPERTY_ID PROP_NUMBER_OF_APDU_RETRIES = bacnet::PropertyId("number-of-apdu-retries");
inline constexpr BACSTAC_PROPERTY_ID PROP_NUMBER_OF_STATES = bacnet::PropertyId("number-of-states");
inline constexpr BACSTAC_PROPERTY_ID PROP_OBJECT_PROPERTY_REFERENCE = bacnet::PropertyId("object-property-reference");
inline constexpr BACSTAC_PROPERTY_ID PROP_OUT_OF_SERVICE = bacnet::PropertyId("out-of-service");
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_PARAMETERS = bacnet::PropertyId("event-parameters");
inline constexpr BACSTAC_PROPERTY_ID PROP_POLARITY = bacnet::PropertyId("polarity");
inline constexpr BACSTAC_PROPERTY_ID PROP_PRIORITY = bacnet::PropertyId("priority");
inline constexpr BACSTAC_PROPERTY_ID PROP_PRIORITY_ARRAY = bacnet::PropertyId("priority-array");
inline constexpr BACSTAC_PROPERTY_ID PROP_PRIORITY_FOR_WRITING = bacnet::PropertyId("priority-for-writing");
inline constexpr BACSTAC_PROPERTY_ID PROP_PROTOCOL_OBJECT_TYPES_SUPPORTED =
    bacnet::PropertyId("protocol-object-types-supported");
inline constexpr BACSTAC_PROPERTY_ID PROP_PROTOCOL_SERVICES_SUPPORTED =
    bacnet::PropertyId("protocol-services-supported");
inline constexpr BACSTAC_PROPERTY_ID PROP_READ_ONLY = bacnet::PropertyId("read-only");
inline constexpr BACSTAC_PROPERTY_ID PROP_RECIPIENT_LIST = bacnet::PropertyId("recipient-list");
inline constexpr BACSTAC_PROPERTY_ID PROP_RELIABILITY = bacnet::PropertyId("reliability");
inline constexpr BACSTAC_PROPERTY_ID PROP_RELINQUISH_DEFAULT = bacnet::PropertyId("relinquish-default");
inline constexpr BACSTAC_PROPERTY_ID PROP_RESOLUTION = bacnet::PropertyId("resolution");
inline constexpr BACSTAC_PROPERTY_ID PROP_STATE_TEXT = bacnet::PropertyId("state-text");
inline constexpr BACSTAC_PROPERTY_ID PROP_SYSTEM_STATUS = bacnet::PropertyId("system-status");
inline constexpr BACSTAC_PROPERTY_ID PROP_TIME_DELAY = bacnet::PropertyId("time-delay");
inline constexpr BACSTAC_PROPERTY_ID PROP_UNITS = bacnet::PropertyId("units");
inline constexpr BACSTAC_PROPERTY_ID PROP_UPDATE_INTERVAL = bacnet::PropertyId("update-interval");
inline constexpr BACSTAC_PROPERTY_ID PROP_UTC_OFFSET = bacnet::PropertyId("utc-offset");
inline constexpr BACSTAC_PROPERTY_ID PROP_VENDOR_NAME = bacnet::PropertyId("vendor-name");
inline constexpr BACSTAC_PROPERTY_ID PROP_WEEKLY_SCHEDULE = bacnet::PropertyId("weekly-schedule");
inline constexpr BACSTAC_PROPERTY_ID PROP_BUFFER_SIZE = bacnet::PropertyId("buffer-size");
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_TIME_STAMPS = bacnet::PropertyId("event-time-stamps");
inline constexpr BACSTAC_PROPERTY_ID PROP_ENABLE = bacnet::PropertyId("log-enable");
inline constexpr BACSTAC_PROPERTY_ID PROP_LOG_INTERVAL = bacnet::PropertyId("log-interval");
inline constexpr BACSTAC_PROPERTY_ID PROP_STOP_WHEN_FULL = bacnet::PropertyId("stop-when-full");
inline constexpr BACSTAC_PROPERTY_ID PROP_MODIFICATION_DATE = bacnet::PropertyId("maximum-value-timestamp");
inline constexpr BACSTAC_PROPERTY_ID PROP_ACTIVE_COV_SUBSCRIPTIONS = bacnet::PropertyId("active-cov-subscriptions");
inline constexpr BACSTAC_PROPERTY_ID PROP_BACKUP_FAILURE_TIMEOUT = bacnet::PropertyId("backup-failure-timeout");
inline constexpr BACSTAC_PROPERTY_ID PROP_CONFIGURATION_FILES = bacnet::PropertyId("configuration-files");
inline constexpr BACSTAC_PROPERTY_ID PROP_DATABASE_REVISION = bacnet::PropertyId("database-revision");
inline constexpr BACSTAC_PROPERTY_ID PROP_LAST_RESTORE_TIME = bacnet::PropertyId("last-restore-time");
inline constexpr BACSTAC_PROPERTY_ID PROP_MAX_SEGMENTS_ACCEPTED = bacnet::PropertyId("max-segments-accepted");
inline constexpr BACSTAC_PROPERTY_ID PROP_SCHEDULE_DEFAULT = bacnet::PropertyId("schedule-default");
inline constexpr BACSTAC_PROPERTY_ID PROP_LAST_RESTART_REASON = bacnet::PropertyId("last-restart-reason");
inline constexpr BACSTAC_PROPERTY_ID PROP_LOGGING_TYPE = bacnet::PropertyId("logging-type");
inline constexpr BACSTAC_PROPERTY_ID PROP_TIME_OF_DEVICE_RESTART = bacnet::PropertyId("time-of-device-restart");
inline constexpr BACSTAC_PROPERTY_ID PROP_BACKUP_AND_RESTORE_STATE = bacnet::PropertyId("backup-and-restore-state");
inline constexpr BACSTAC_PROPERTY_ID PROP_BACKUP_PREPARATION_TIME = bacnet::PropertyId("backup-preparation-time");
inline constexpr BACSTAC_PROPERTY_ID PROP_RESTORE_COMPLETION_TIME = bacnet::PropertyId("restore-completion-time");
inline constexpr BACSTAC_PROPERTY_ID PROP_RESTORE_PREPARATION_TIME = bacnet::PropertyId("restore-preparation-time");
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_MESSAGE_TEXTS = bacnet::PropertyId("event-message-texts");
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_MESSAGE_TEXTS_CONFIG = bacnet::PropertyId("event-message-texts-config");
inline constexpr BACSTAC_PROPERTY_ID PROP_PROPERTY_LIST = bacnet::PropertyId("property-list");
inline constexpr BACSTAC_PROPERTY_ID PROP_CURRENT_COMMAND_PRIORITY = bacnet::PropertyId("current-command-priority");
inline constexpr BACSTAC_PROPERTY_ID PROP_ALARM_VALUE = bacnet::PropertyId("alarm-value");
inline constexpr BACSTAC_PROPERTY_ID PROP_ALARM_VALUES = bacnet::PropertyId("alarm-values");
inline constexpr BACSTAC_PROPERTY_ID PROP_BIT_MASK = bacnet::PropertyId("bit-mask");
inline constexpr BACSTAC_PROPERTY_ID PROP_FEEDBACK_VALUE = bacnet::PropertyId("feedback-value");
inline constexpr BACSTAC_PROPERTY_ID PROP_SETPOINT = bacnet::PropertyId("setpoint");
inline constexpr BACSTAC_PROPERTY_ID PROP_ERROR_LIMIT = bacnet::PropertyId("error-limit");
inline constexpr BACSTAC_PROPERTY_ID PROP_NOTIFICATION_THRESHOLD = bacnet::PropertyId("notification-threshold");
inline constexpr BACSTAC_PROPERTY_ID PROP_TIME_DELAY_NORMAL = bacnet::PropertyId("time-delay-normal");
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_DETECTION_ENABLE = bacnet::PropertyId("event-detection-enable");
inline constexpr BACSTAC_PROPERTY_ID PROP_CONTROLLED_VARIABLE_VALUE = bacnet::PropertyId("controlled-variable-value");

// Protocol revisions that change what a device answers.
inline constexpr unsigned REVISION_BY_TIME = 4;        // ReadRange by time with context tag 7, sequence numbers
inline constexpr unsigned REVISION_NO_DISABLE = 20;    // DeviceCommunicationControl refuses "disable"
inline constexpr unsigned REVISION_PROPERTY_LIST = 14; // every object has Property_List

} // namespace sim
