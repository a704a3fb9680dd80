// Records of the constructed BACnet types that no form edits (ANSI/ASHRAE 135 clause 21): those of access control,
// lifts, lighting, network ports, auditing and of the event and fault algorithms that came with later editions. They
// are read, shown, compared, copied and written as all others are; layout and references follow Records.h. A string is
// held as the offset of one element of its type: a NUL-terminated text, or an octet string with its length before it.
#pragma once

#include "api/bacnet/Records.h"

// ---- values

struct BACSTAC_NAME_VALUE {
    std::uint32_t Name;      // offset of the text
    BACSTAC_ANY_VALUE Value; // data type -1 when there is none
};

struct BACSTAC_NAME_VALUE_COLLECTION {
    BACSTAC_LIST Members; // of BACSTAC_NAME_VALUE
};

struct BACSTAC_PROPERTY_VALUE_RECORD {
    BACSTAC_PROPERTY_ID Property;
    std::uint32_t ArrayIndex;
    BACSTAC_ANY_VALUE Value;
    std::int32_t Priority; // -1 none
};

struct BACSTAC_PROPERTY_ACCESS_RESULT {
    BACSTAC_DEV_OBJ_PROP_REF Reference;
    std::uint32_t Choice; // BACSTAC_ITEM_*
    union {
        BACSTAC_ANY_VALUE Value;
        BACSTAC_ERROR_VALUE Error;
    };
};

struct BACSTAC_VALUE_SOURCE {
    std::uint32_t Choice; // 0 none, 1 object, 2 address
    union {
        BACSTAC_DEV_OBJ_REF Object;
        BACSTAC_ADDRESS Address;
    };
};

// Bits of BACSTAC_LIGHTING_COMMAND::Mask.
inline constexpr std::uint32_t BACSTAC_LIGHTING_TARGET = 1;
inline constexpr std::uint32_t BACSTAC_LIGHTING_RAMP = 2;
inline constexpr std::uint32_t BACSTAC_LIGHTING_STEP = 4;
inline constexpr std::uint32_t BACSTAC_LIGHTING_FADE = 8;
inline constexpr std::uint32_t BACSTAC_LIGHTING_PRIORITY = 16;

struct BACSTAC_LIGHTING_COMMAND {
    std::uint32_t Mask;
    std::uint32_t Operation;
    float TargetLevel;      // percent
    float RampRate;         // percent a second
    float StepIncrement;    // percent
    std::uint32_t FadeTime; // milliseconds
    std::uint32_t Priority; // 1 to 16
};

struct BACSTAC_XY_COLOR {
    float X;
    float Y;
};

// Bits of BACSTAC_COLOR_COMMAND::Mask.
inline constexpr std::uint32_t BACSTAC_COLOR_TARGET = 1;
inline constexpr std::uint32_t BACSTAC_COLOR_TEMPERATURE = 2;
inline constexpr std::uint32_t BACSTAC_COLOR_FADE = 4;
inline constexpr std::uint32_t BACSTAC_COLOR_RAMP = 8;
inline constexpr std::uint32_t BACSTAC_COLOR_STEP = 16;

struct BACSTAC_COLOR_COMMAND {
    std::uint32_t Mask;
    std::uint32_t Operation;
    BACSTAC_XY_COLOR Target;
    std::uint32_t Temperature;   // kelvin
    std::uint32_t FadeTime;      // milliseconds
    std::uint32_t RampRate;      // kelvin a second
    std::uint32_t StepIncrement; // kelvin
};

// What a timer writes at a change of its state: nothing, a constructed value, a date with time, a lighting command, or
// any primitive.
struct BACSTAC_TIMER_STATE_CHANGE {
    std::uint32_t Choice; // 0 nothing, 1 Value (constructed), 2 DateTime, 3 Lighting, 4 Value (primitive)
    union {
        std::uint32_t Nothing;
        BACSTAC_ANY_VALUE Value;
        BACSTAC_DATE_TIME DateTime;
        BACSTAC_LIGHTING_COMMAND Lighting;
    };
};

struct BACSTAC_STAGE_LIMIT {
    float Limit;
    BACSTAC_BIT_STRING Values;
    float DeadBand;
};

// ---- sessions and subscriptions

struct BACSTAC_VT_SESSION {
    std::uint32_t LocalId;
    std::uint32_t RemoteId;
    BACSTAC_ADDRESS RemoteAddress;
};

struct BACSTAC_SESSION_KEY {
    std::uint32_t Key; // offset of the octets
    BACSTAC_ADDRESS Peer;
};

struct BACSTAC_COV_REFERENCE {
    std::uint32_t HasIncrement;
    BACSTAC_PROPERTY_REF Monitored;
    float Increment;
    std::uint8_t TimeStamped;
    std::uint8_t Reserved[3];
};

struct BACSTAC_COV_SPECIFICATION {
    BACSTAC_OBJECT_ID ObjectId;
    BACSTAC_LIST References; // of BACSTAC_COV_REFERENCE
};

struct BACSTAC_COV_MULTIPLE_SUBSCRIPTION {
    BACSTAC_RECIPIENT_PROCESS Recipient;
    std::uint8_t Confirmed;
    std::uint8_t Reserved[3];
    std::uint32_t TimeRemaining;        // seconds
    std::uint32_t MaxNotificationDelay; // seconds
    BACSTAC_LIST Specifications;        // of BACSTAC_COV_SPECIFICATION
};

struct BACSTAC_EVENT_SUBSCRIPTION {
    BACSTAC_RECIPIENT Recipient;
    std::uint32_t ProcessId;
    std::uint8_t Confirmed;
    std::uint8_t Reserved[3];
    std::uint32_t TimeRemaining; // seconds
};

struct BACSTAC_PROCESS_ID_SELECTION {
    std::uint32_t Choice;    // 0 one process, 1 all
    std::uint32_t ProcessId; // counts while Choice is 0
};

// ---- access control

struct BACSTAC_ASSIGNED_ACCESS_RIGHTS {
    BACSTAC_DEV_OBJ_REF Rights;
    std::uint8_t Enable;
    std::uint8_t Reserved[3];
};

struct BACSTAC_AUTHENTICATION_FACTOR {
    std::uint32_t FormatType;
    std::uint32_t FormatClass;
    std::uint32_t Value; // offset of the octets
};

struct BACSTAC_CREDENTIAL_FACTOR {
    std::uint32_t Disable;
    BACSTAC_AUTHENTICATION_FACTOR Factor;
};

// Bits of BACSTAC_FACTOR_FORMAT::Mask.
inline constexpr std::uint32_t BACSTAC_FORMAT_VENDOR = 1;
inline constexpr std::uint32_t BACSTAC_FORMAT_NUMBER = 2;

struct BACSTAC_FACTOR_FORMAT {
    std::uint32_t Mask;
    std::uint32_t FormatType;
    std::uint32_t VendorId;
    std::uint32_t VendorFormat;
};

struct BACSTAC_AUTHENTICATION_INPUT {
    BACSTAC_DEV_OBJ_REF Input;
    std::uint32_t Index;
};

struct BACSTAC_AUTHENTICATION_POLICY {
    BACSTAC_LIST Policy; // of BACSTAC_AUTHENTICATION_INPUT
    std::uint8_t OrderEnforced;
    std::uint8_t Reserved[3];
    std::uint32_t Timeout; // seconds
};

// Bits of BACSTAC_ACCESS_RULE::Mask.
inline constexpr std::uint32_t BACSTAC_RULE_TIME = 1;
inline constexpr std::uint32_t BACSTAC_RULE_LOCATION = 2;

struct BACSTAC_ACCESS_RULE {
    std::uint32_t Mask;
    std::uint32_t TimeSpecifier; // 0 specified, 1 always
    BACSTAC_DEV_OBJ_PROP_REF Time;
    std::uint32_t LocationSpecifier; // 0 specified, 1 all
    BACSTAC_DEV_OBJ_REF Location;
    std::uint8_t Enable;
    std::uint8_t Reserved[3];
};

// ---- networks

struct BACSTAC_KEY_IDENTIFIER {
    std::uint32_t Algorithm;
    std::uint32_t KeyId;
};

struct BACSTAC_SECURITY_KEY_SET {
    std::uint32_t Revision;
    BACSTAC_DATE_TIME Activation;
    BACSTAC_DATE_TIME Expiration;
    BACSTAC_LIST Keys; // of BACSTAC_KEY_IDENTIFIER
};

struct BACSTAC_SECURITY_POLICY {
    std::uint32_t PortId;
    std::uint32_t Level;
};

struct BACSTAC_PORT_PERMISSION {
    std::uint32_t PortId;
    std::uint8_t Enabled;
    std::uint8_t Reserved[3];
};

struct BACSTAC_HOST_N_PORT {
    std::uint32_t Choice; // 0 none, 1 IP address, 2 name
    std::uint32_t Host;   // offset of the address' octets or of the name
    std::uint32_t Port;
};

struct BACSTAC_BDT_ENTRY {
    std::uint32_t HasMask;
    BACSTAC_HOST_N_PORT Address;
    std::uint32_t BroadcastMask; // offset of the octets
};

struct BACSTAC_FDT_ENTRY {
    std::uint32_t Address;    // offset of the octets: IP address and port
    std::uint32_t TimeToLive; // seconds
    std::uint32_t Remaining;  // seconds
};

struct BACSTAC_ROUTER_ENTRY {
    std::uint32_t HasPerformance;
    std::uint32_t Network;
    std::uint32_t MacAddress; // offset of the octets
    std::uint32_t Status;     // 0 available, 1 busy, 2 disconnected
    std::uint32_t PerformanceIndex;
};

struct BACSTAC_VMAC_ENTRY {
    std::uint32_t Virtual; // offset of the octets
    std::uint32_t Native;  // offset of the octets
};

// ---- lifts

struct BACSTAC_LANDING_CALL_STATUS {
    std::uint32_t HasText;
    std::uint32_t Floor;
    std::uint32_t Choice; // 0 direction, 1 destination
    std::uint32_t Command;
    std::uint32_t FloorText; // offset of the text
};

struct BACSTAC_LANDING_CALL {
    std::uint32_t Floor;
    std::uint32_t Direction;
};

struct BACSTAC_ASSIGNED_LANDING_CALLS {
    BACSTAC_LIST Calls; // of BACSTAC_LANDING_CALL
};

struct BACSTAC_LANDING_DOOR {
    std::uint32_t Floor;
    std::uint32_t Status;
};

struct BACSTAC_LANDING_DOOR_STATUS {
    BACSTAC_LIST Doors; // of BACSTAC_LANDING_DOOR
};

struct BACSTAC_LIFT_CAR_CALL_LIST {
    BACSTAC_LIST Floors; // of u32
};

// ---- auditing

struct BACSTAC_OBJECT_SELECTOR {
    std::uint32_t Choice; // 0 none, 1 object, 2 object type
    union {
        BACSTAC_OBJECT_ID ObjectId;
        std::uint32_t ObjectType;
    };
};

// Bits of BACSTAC_AUDIT_NOTIFICATION::Mask.
inline constexpr std::uint32_t BACSTAC_AUDIT_SOURCE_TIME = 1U << 0;
inline constexpr std::uint32_t BACSTAC_AUDIT_TARGET_TIME = 1U << 1;
inline constexpr std::uint32_t BACSTAC_AUDIT_SOURCE_OBJECT = 1U << 2;
inline constexpr std::uint32_t BACSTAC_AUDIT_SOURCE_COMMENT = 1U << 3;
inline constexpr std::uint32_t BACSTAC_AUDIT_TARGET_COMMENT = 1U << 4;
inline constexpr std::uint32_t BACSTAC_AUDIT_INVOKE_ID = 1U << 5;
inline constexpr std::uint32_t BACSTAC_AUDIT_SOURCE_USER = 1U << 6;
inline constexpr std::uint32_t BACSTAC_AUDIT_SOURCE_ROLE = 1U << 7;
inline constexpr std::uint32_t BACSTAC_AUDIT_TARGET_OBJECT = 1U << 8;
inline constexpr std::uint32_t BACSTAC_AUDIT_TARGET_PROPERTY = 1U << 9;
inline constexpr std::uint32_t BACSTAC_AUDIT_TARGET_PRIORITY = 1U << 10;
inline constexpr std::uint32_t BACSTAC_AUDIT_TARGET_VALUE = 1U << 11;
inline constexpr std::uint32_t BACSTAC_AUDIT_CURRENT_VALUE = 1U << 12;
inline constexpr std::uint32_t BACSTAC_AUDIT_RESULT = 1U << 13;

struct BACSTAC_AUDIT_NOTIFICATION {
    std::uint32_t Mask;
    BACSTAC_TIME_STAMP SourceTime;
    BACSTAC_TIME_STAMP TargetTime;
    BACSTAC_RECIPIENT SourceDevice;
    BACSTAC_OBJECT_ID SourceObject;
    std::uint32_t Operation;
    std::uint32_t SourceComment; // offset of the text
    std::uint32_t TargetComment; // offset of the text
    std::uint32_t InvokeId;
    std::uint32_t SourceUser;
    std::uint32_t SourceRole;
    BACSTAC_RECIPIENT TargetDevice;
    BACSTAC_OBJECT_ID TargetObject;
    BACSTAC_PROPERTY_REF TargetProperty;
    std::uint32_t TargetPriority;
    BACSTAC_ANY_VALUE TargetValue;
    BACSTAC_ANY_VALUE CurrentValue;
    BACSTAC_ERROR_VALUE Result;
};

struct BACSTAC_AUDIT_LOG_RECORD {
    BACSTAC_DATE_TIME TimeStamp;
    std::uint32_t RecordType; // 0 log status, 1 notification, 2 time change
    union {
        BACSTAC_BIT_STRING LogStatus;
        BACSTAC_AUDIT_NOTIFICATION Notification;
        float TimeChange; // seconds
    };
};

// ---- event parameters: data type 1000 plus the event type

struct BACSTAC_EP_ACCESS_EVENT {
    BACSTAC_LIST Events; // of u32
    BACSTAC_DEV_OBJ_PROP_REF TimeReference;
};

struct BACSTAC_EP_CHANGE_OF_DISCRETE_VALUE {
    std::uint32_t TimeDelay; // seconds
};

struct BACSTAC_EP_CHANGE_OF_TIMER {
    std::uint32_t TimeDelay;  // seconds
    BACSTAC_LIST AlarmValues; // of u32
    BACSTAC_DEV_OBJ_PROP_REF TimeReference;
};

// ---- event notifications: data type 1100 plus the event type

struct BACSTAC_NP_COMPLEX {
    BACSTAC_LIST Values; // of BACSTAC_PROPERTY_VALUE_RECORD
};

struct BACSTAC_NP_EXTENDED {
    std::uint32_t VendorId;
    std::uint32_t ExtendedEventType;
    BACSTAC_LIST Parameters; // of BACSTAC_ANY_VALUE
};

struct BACSTAC_NP_ACCESS_EVENT {
    std::uint32_t HasFactor;
    std::uint32_t Event;
    BACSTAC_BIT_STRING StatusFlags;
    std::uint32_t EventTag;
    BACSTAC_TIME_STAMP Time;
    BACSTAC_DEV_OBJ_REF Credential;
    BACSTAC_AUTHENTICATION_FACTOR Factor;
};

struct BACSTAC_NP_DOUBLE_OUT_OF_RANGE {
    double ExceedingValue;
    BACSTAC_BIT_STRING StatusFlags;
    double DeadBand;
    double ExceededLimit;
};

struct BACSTAC_NP_SIGNED_OUT_OF_RANGE {
    std::int32_t ExceedingValue;
    BACSTAC_BIT_STRING StatusFlags;
    std::uint32_t DeadBand;
    std::int32_t ExceededLimit;
};

struct BACSTAC_NP_UNSIGNED_OUT_OF_RANGE {
    std::uint32_t ExceedingValue;
    BACSTAC_BIT_STRING StatusFlags;
    std::uint32_t DeadBand;
    std::uint32_t ExceededLimit;
};

struct BACSTAC_NP_CHANGE_OF_CHARACTERSTRING {
    std::uint32_t ChangedValue; // offset of the text
    BACSTAC_BIT_STRING StatusFlags;
    std::uint32_t AlarmValue; // offset of the text
};

struct BACSTAC_NP_CHANGE_OF_STATUS_FLAGS {
    BACSTAC_ANY_VALUE PresentValue; // data type -1 when there is none
    BACSTAC_BIT_STRING ReferencedFlags;
};

struct BACSTAC_NP_CHANGE_OF_RELIABILITY {
    std::uint32_t Reliability;
    BACSTAC_BIT_STRING StatusFlags;
    BACSTAC_LIST PropertyValues; // of BACSTAC_PROPERTY_VALUE_RECORD
};

struct BACSTAC_NP_CHANGE_OF_DISCRETE_VALUE {
    BACSTAC_ANY_VALUE NewValue;
    BACSTAC_BIT_STRING StatusFlags;
};

// Bits of BACSTAC_NP_CHANGE_OF_TIMER::Mask.
inline constexpr std::uint32_t BACSTAC_TIMER_CHANGE = 1;
inline constexpr std::uint32_t BACSTAC_TIMER_TIMEOUT = 2;
inline constexpr std::uint32_t BACSTAC_TIMER_EXPIRATION = 4;

struct BACSTAC_NP_CHANGE_OF_TIMER {
    std::uint32_t Mask;
    std::uint32_t NewState;
    BACSTAC_BIT_STRING StatusFlags;
    BACSTAC_DATE_TIME UpdateTime;
    std::uint32_t LastStateChange;
    std::uint32_t InitialTimeout; // milliseconds
    BACSTAC_DATE_TIME ExpirationTime;
};

// ---- fault parameters: data type 1200 plus the fault type

struct BACSTAC_FAULT_PARAMETER {
    std::uint32_t FaultType;
    BACSTAC_ANY_VALUE Parameters; // one record of data type 1200 + FaultType, null, or raw
};

struct BACSTAC_FP_VALUES {
    BACSTAC_LIST Values; // of texts (fault type 1) or BACSTAC_PROPERTY_STATE (4)
};

struct BACSTAC_FP_EXTENDED {
    std::uint32_t VendorId;
    std::uint32_t ExtendedFaultType;
    BACSTAC_LIST Parameters; // of BACSTAC_ANY_VALUE
};

struct BACSTAC_FP_LIFE_SAFETY {
    BACSTAC_LIST Values; // of u32
    BACSTAC_DEV_OBJ_PROP_REF Mode;
};

struct BACSTAC_FP_REFERENCE {
    BACSTAC_DEV_OBJ_PROP_REF Reference; // of status flags (fault type 5) or of a list of faults (7)
};

struct BACSTAC_FP_OUT_OF_RANGE {
    BACSTAC_ANY_VALUE MinNormal;
    BACSTAC_ANY_VALUE MaxNormal;
};
