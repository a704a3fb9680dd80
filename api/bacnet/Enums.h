// Numbers of the BACnet standard that code names, and the library's enumeration identifiers. Enumerations are open:
// every number passes through, these are only the ones that code spells.
#pragma once

#include "api/bacnet/Types.h"

// Object types (clause 21, BACnetObjectType).
inline constexpr BACSTAC_OBJECT_TYPE OBJ_ANALOG_INPUT = 0;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_ANALOG_OUTPUT = 1;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_ANALOG_VALUE = 2;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_BINARY_INPUT = 3;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_BINARY_OUTPUT = 4;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_BINARY_VALUE = 5;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_CALENDAR = 6;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_DEVICE = 8;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_FILE = 10;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_MULTI_STATE_INPUT = 13;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_MULTI_STATE_OUTPUT = 14;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_MULTI_STATE_VALUE = 19;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_TREND_LOG = 20;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_EVENT_LOG = 25;
inline constexpr BACSTAC_OBJECT_TYPE OBJ_TREND_LOG_MULTIPLE = 27;

// Properties (clause 21, BACnetPropertyIdentifier).
inline constexpr BACSTAC_PROPERTY_ID PROP_ALL = 8;
inline constexpr BACSTAC_PROPERTY_ID PROP_DESCRIPTION = 28;
inline constexpr BACSTAC_PROPERTY_ID PROP_MAX_APDU_LENGTH_ACCEPTED = 62;
inline constexpr BACSTAC_PROPERTY_ID PROP_OBJECT_IDENTIFIER = 75;
inline constexpr BACSTAC_PROPERTY_ID PROP_OBJECT_LIST = 76;
inline constexpr BACSTAC_PROPERTY_ID PROP_OBJECT_NAME = 77;
inline constexpr BACSTAC_PROPERTY_ID PROP_OBJECT_TYPE = 79;
inline constexpr BACSTAC_PROPERTY_ID PROP_OPTIONAL = 80;
inline constexpr BACSTAC_PROPERTY_ID PROP_PRESENT_VALUE = 85;
inline constexpr BACSTAC_PROPERTY_ID PROP_PROTOCOL_VERSION = 98;
inline constexpr BACSTAC_PROPERTY_ID PROP_REQUIRED = 105;
inline constexpr BACSTAC_PROPERTY_ID PROP_SEGMENTATION_SUPPORTED = 107;
inline constexpr BACSTAC_PROPERTY_ID PROP_STATUS_FLAGS = 111;
inline constexpr BACSTAC_PROPERTY_ID PROP_VENDOR_IDENTIFIER = 120;
inline constexpr BACSTAC_PROPERTY_ID PROP_LOG_BUFFER = 131;
inline constexpr BACSTAC_PROPERTY_ID PROP_LOG_DEVICE_OBJECT_PROPERTY = 132;
inline constexpr BACSTAC_PROPERTY_ID PROP_PROTOCOL_REVISION = 139;
inline constexpr BACSTAC_PROPERTY_ID PROP_RECORD_COUNT = 141;
inline constexpr BACSTAC_PROPERTY_ID PROP_TOTAL_RECORD_COUNT = 145;

// Data types. Numbers up to 12 are the standard's application tags; a decoded character string is 13, 7 being a raw
// one.
inline constexpr BACSTAC_DATA_TYPE TYPE_ANY_PRIMITIVE = -2; // of a CPropertyValue only, never of contents
inline constexpr BACSTAC_DATA_TYPE TYPE_NONE = -1;
inline constexpr BACSTAC_DATA_TYPE TYPE_NULL = 0;
inline constexpr BACSTAC_DATA_TYPE TYPE_BOOLEAN = 1;      // u8, 0 or 1
inline constexpr BACSTAC_DATA_TYPE TYPE_UNSIGNED = 2;     // u32
inline constexpr BACSTAC_DATA_TYPE TYPE_SIGNED = 3;       // i32
inline constexpr BACSTAC_DATA_TYPE TYPE_REAL = 4;         // float
inline constexpr BACSTAC_DATA_TYPE TYPE_DOUBLE = 5;       // double
inline constexpr BACSTAC_DATA_TYPE TYPE_OCTET_STRING = 6; // u32 length, then the bytes
inline constexpr BACSTAC_DATA_TYPE TYPE_RAW_STRING = 7;   // as on the wire
inline constexpr BACSTAC_DATA_TYPE TYPE_BIT_STRING = 8;
inline constexpr BACSTAC_DATA_TYPE TYPE_ENUMERATED = 9; // u32
inline constexpr BACSTAC_DATA_TYPE TYPE_DATE = 10;
inline constexpr BACSTAC_DATA_TYPE TYPE_TIME = 11;
inline constexpr BACSTAC_DATA_TYPE TYPE_OBJECT_ID = 12;
inline constexpr BACSTAC_DATA_TYPE TYPE_STRING = 13; // NUL-terminated UTF-8
inline constexpr BACSTAC_DATA_TYPE TYPE_DATE_TIME = 21;
inline constexpr BACSTAC_DATA_TYPE TYPE_OBJ_PROP_REF = 22;
inline constexpr BACSTAC_DATA_TYPE TYPE_PROPERTY_STATE = 23;
inline constexpr BACSTAC_DATA_TYPE TYPE_DATE_RANGE = 24;
inline constexpr BACSTAC_DATA_TYPE TYPE_WEEK_N_DAY = 25;
inline constexpr BACSTAC_DATA_TYPE TYPE_CALENDAR_ENTRY = 26;
inline constexpr BACSTAC_DATA_TYPE TYPE_TIME_VALUE = 27;
inline constexpr BACSTAC_DATA_TYPE TYPE_SPECIAL_EVENT = 28;
inline constexpr BACSTAC_DATA_TYPE TYPE_RECIPIENT = 30;
inline constexpr BACSTAC_DATA_TYPE TYPE_SETPOINT_REF = 31;
inline constexpr BACSTAC_DATA_TYPE TYPE_DESTINATION = 32;
inline constexpr BACSTAC_DATA_TYPE TYPE_TIME_STAMP = 34;
inline constexpr BACSTAC_DATA_TYPE TYPE_PROPERTY_REF = 35;
inline constexpr BACSTAC_DATA_TYPE TYPE_ADDRESS_BINDING = 36;
inline constexpr BACSTAC_DATA_TYPE TYPE_DEV_OBJ_PROP_REF = 37;
inline constexpr BACSTAC_DATA_TYPE TYPE_CLIENT_COV = 38;
inline constexpr BACSTAC_DATA_TYPE TYPE_LOG_RECORD = 39;
inline constexpr BACSTAC_DATA_TYPE TYPE_READ_ACCESS_SPEC = 41;
inline constexpr BACSTAC_DATA_TYPE TYPE_READ_ACCESS_RESULT = 42;
inline constexpr BACSTAC_DATA_TYPE TYPE_EVENT_PARAMETER = 43;
inline constexpr BACSTAC_DATA_TYPE TYPE_COV_SUBSCRIPTION = 44;
inline constexpr BACSTAC_DATA_TYPE TYPE_DEV_OBJ_REF = 45;
inline constexpr BACSTAC_DATA_TYPE TYPE_PRESCALE = 48;
inline constexpr BACSTAC_DATA_TYPE TYPE_SCALE = 49;
inline constexpr BACSTAC_DATA_TYPE TYPE_ACTION_COMMAND = 50;
inline constexpr BACSTAC_DATA_TYPE TYPE_SHED_LEVEL = 51;
inline constexpr BACSTAC_DATA_TYPE TYPE_EVENT_LOG_RECORD = 54;
inline constexpr BACSTAC_DATA_TYPE TYPE_LOG_MULTIPLE_RECORD = 55;
inline constexpr BACSTAC_DATA_TYPE TYPE_READ_RESULT_ITEM = 56;
inline constexpr BACSTAC_DATA_TYPE TYPE_EVENT_PARAMETER_FIRST = 1000; // plus the event type

// Identifiers of enumerations, for the print functions and the enumeration tables.
using ENUM_TYPE_ID = int;
inline constexpr ENUM_TYPE_ID ENUM_EVENT_STATE = 8;
inline constexpr ENUM_TYPE_ID ENUM_EVENT_TRANSITION_BITS = 9;
inline constexpr ENUM_TYPE_ID ENUM_STATUS_FLAGS = 20;
inline constexpr ENUM_TYPE_ID ENUM_LOG_STATUS = 31;
inline constexpr ENUM_TYPE_ID ENUM_NONE = 42; // no enumeration: numbers and "bit-n"

// Printing an any-value: an object type and a property that no table has.
inline constexpr BACSTAC_OBJECT_TYPE OBJ_NO_TYPE = 0x3FF;
inline constexpr BACSTAC_PROPERTY_ID PROP_NO_PROPERTY = 0x3FFFFF;
