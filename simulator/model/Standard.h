// Numbers of the standard that only a server names: errors, reasons and the properties of the simulated objects
// (ANSI/ASHRAE 135 clauses 18, 20.1 and 21).
#pragma once

#include "api/bacnet/Enums.h"

#include <cstdint>

namespace sim {

enum ErrorClass : std::uint32_t {
    CLASS_DEVICE = 0,
    CLASS_OBJECT = 1,
    CLASS_PROPERTY = 2,
    CLASS_SERVICES = 5,
};

enum ErrorCode : std::uint32_t {
    CODE_OTHER = 0,
    CODE_PROPERTY_IS_NOT_A_LIST = 22,
    CODE_READ_ACCESS_DENIED = 27,
    CODE_UNKNOWN_OBJECT = 31,
    CODE_UNKNOWN_PROPERTY = 32,
    CODE_INVALID_ARRAY_INDEX = 42,
    CODE_PROPERTY_IS_NOT_AN_ARRAY = 50,
    CODE_LIST_ITEM_NOT_NUMBERED = 140,
    CODE_LIST_ITEM_NOT_TIMESTAMPED = 141,
};

// Reject and abort reasons that platform/stack/network/Apdu.h does not name (clauses 18.9 and 18.10).
inline constexpr std::uint8_t REJECT_INVALID_TAG = 4;
inline constexpr std::uint8_t REJECT_MISSING_REQUIRED_PARAMETER = 5;
inline constexpr std::uint8_t REJECT_PARAMETER_OUT_OF_RANGE = 6;

// Properties, beyond those that api/bacnet/Enums.h names.
inline constexpr BACSTAC_PROPERTY_ID PROP_ACKED_TRANSITIONS = 0;
inline constexpr BACSTAC_PROPERTY_ID PROP_ACTIVE_TEXT = 4;
inline constexpr BACSTAC_PROPERTY_ID PROP_APDU_SEGMENT_TIMEOUT = 10;
inline constexpr BACSTAC_PROPERTY_ID PROP_APDU_TIMEOUT = 11;
inline constexpr BACSTAC_PROPERTY_ID PROP_APPLICATION_SOFTWARE_VERSION = 12;
inline constexpr BACSTAC_PROPERTY_ID PROP_NOTIFICATION_CLASS = 17;
inline constexpr BACSTAC_PROPERTY_ID PROP_COV_INCREMENT = 22;
inline constexpr BACSTAC_PROPERTY_ID PROP_DAYLIGHT_SAVINGS_STATUS = 24;
inline constexpr BACSTAC_PROPERTY_ID PROP_DEADBAND = 25;
inline constexpr BACSTAC_PROPERTY_ID PROP_DEVICE_ADDRESS_BINDING = 30;
inline constexpr BACSTAC_PROPERTY_ID PROP_DEVICE_TYPE = 31;
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_ENABLE = 35;
inline constexpr BACSTAC_PROPERTY_ID PROP_EVENT_STATE = 36;
inline constexpr BACSTAC_PROPERTY_ID PROP_FIRMWARE_REVISION = 44;
inline constexpr BACSTAC_PROPERTY_ID PROP_HIGH_LIMIT = 45;
inline constexpr BACSTAC_PROPERTY_ID PROP_INACTIVE_TEXT = 46;
inline constexpr BACSTAC_PROPERTY_ID PROP_LIMIT_ENABLE = 52;
inline constexpr BACSTAC_PROPERTY_ID PROP_LOCAL_DATE = 56;
inline constexpr BACSTAC_PROPERTY_ID PROP_LOCAL_TIME = 57;
inline constexpr BACSTAC_PROPERTY_ID PROP_LOCATION = 58;
inline constexpr BACSTAC_PROPERTY_ID PROP_LOW_LIMIT = 59;
inline constexpr BACSTAC_PROPERTY_ID PROP_MAX_PRES_VALUE = 65;
inline constexpr BACSTAC_PROPERTY_ID PROP_MIN_PRES_VALUE = 69;
inline constexpr BACSTAC_PROPERTY_ID PROP_MODEL_NAME = 70;
inline constexpr BACSTAC_PROPERTY_ID PROP_NOTIFY_TYPE = 72;
inline constexpr BACSTAC_PROPERTY_ID PROP_NUMBER_OF_APDU_RETRIES = 73;
inline constexpr BACSTAC_PROPERTY_ID PROP_NUMBER_OF_STATES = 74;
inline constexpr BACSTAC_PROPERTY_ID PROP_OUT_OF_SERVICE = 81;
inline constexpr BACSTAC_PROPERTY_ID PROP_POLARITY = 84;
inline constexpr BACSTAC_PROPERTY_ID PROP_PRIORITY_ARRAY = 87;
inline constexpr BACSTAC_PROPERTY_ID PROP_PROTOCOL_OBJECT_TYPES_SUPPORTED = 96;
inline constexpr BACSTAC_PROPERTY_ID PROP_PROTOCOL_SERVICES_SUPPORTED = 97;
inline constexpr BACSTAC_PROPERTY_ID PROP_RELIABILITY = 103;
inline constexpr BACSTAC_PROPERTY_ID PROP_RELINQUISH_DEFAULT = 104;
inline constexpr BACSTAC_PROPERTY_ID PROP_RESOLUTION = 106;
inline constexpr BACSTAC_PROPERTY_ID PROP_STATE_TEXT = 110;
inline constexpr BACSTAC_PROPERTY_ID PROP_SYSTEM_STATUS = 112;
inline constexpr BACSTAC_PROPERTY_ID PROP_TIME_DELAY = 113;
inline constexpr BACSTAC_PROPERTY_ID PROP_UNITS = 117;
inline constexpr BACSTAC_PROPERTY_ID PROP_UPDATE_INTERVAL = 118;
inline constexpr BACSTAC_PROPERTY_ID PROP_UTC_OFFSET = 119;
inline constexpr BACSTAC_PROPERTY_ID PROP_VENDOR_NAME = 121;
inline constexpr BACSTAC_PROPERTY_ID PROP_BUFFER_SIZE = 126;
inline constexpr BACSTAC_PROPERTY_ID PROP_ENABLE = 133;
inline constexpr BACSTAC_PROPERTY_ID PROP_LOG_INTERVAL = 134;
inline constexpr BACSTAC_PROPERTY_ID PROP_STOP_WHEN_FULL = 144;
inline constexpr BACSTAC_PROPERTY_ID PROP_DATABASE_REVISION = 155;
inline constexpr BACSTAC_PROPERTY_ID PROP_MAX_SEGMENTS_ACCEPTED = 167;
inline constexpr BACSTAC_PROPERTY_ID PROP_LOGGING_TYPE = 197;
inline constexpr BACSTAC_PROPERTY_ID PROP_PROPERTY_LIST = 371;

// Protocol revisions that change what a device answers.
inline constexpr unsigned REVISION_BY_TIME = 4;        // ReadRange by time with context tag 7, sequence numbers
inline constexpr unsigned REVISION_PROPERTY_LIST = 14; // every object has Property_List

} // namespace sim
