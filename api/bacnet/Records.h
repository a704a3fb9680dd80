// The records of the constructed BACnet types (ANSI/ASHRAE 135 clause 21), as they lie in contents buffers and behind
// typed values. Fields stand in the order in which forms show them; the encoding's own order is in the library's type
// table.
//
// Lists and values of any type do not lie in the record: it holds a count and an offset, or a BACSTAC_ANY_VALUE.
// Offsets count in bytes from the start of the contents buffer, whatever the depth (0: none). An any-value holds
// primitives of one type, or the octets as they were encoded (TYPE_RAW). Text is one NUL-terminated UTF-8 string at its
// offset.
//
// A u8 that follows none of its kind is followed by bytes that are always zero.
#pragma once

#include "api/bacnet/Services.h"
#include "api/bacnet/Types.h"

#include <cstddef>
#include <cstdint>

// Elements of a list, in the contents buffer that holds the record.
struct BACSTAC_LIST {
    std::uint32_t Count;
    std::uint32_t Offset;
};
static_assert(sizeof(BACSTAC_LIST) == 8);

// Error class and code as a value (BACnet Error).
struct BACSTAC_ERROR_VALUE {
    std::uint32_t Class;
    std::uint32_t Code;
};

struct BACSTAC_DATE_RANGE {
    BACSTAC_DATE Start;
    BACSTAC_DATE End;
};
static_assert(sizeof(BACSTAC_DATE_RANGE) == 32);

inline constexpr std::uint32_t BACSTAC_ANY_WEEK = 0xFFFFFFFFU;

// Month 0, week -1 and day 0 are unspecified. Month 13 odd, 14 even; week 1 to 5 by sevens, 6 the last seven days; day
// 1 Monday to 7 Sunday.
struct BACSTAC_WEEK_N_DAY {
    std::uint32_t Month;
    std::uint32_t Week;
    std::uint32_t Day;
};
static_assert(sizeof(BACSTAC_WEEK_N_DAY) == 12);

inline constexpr std::uint32_t BACSTAC_CALENDAR_DATE = 0;
inline constexpr std::uint32_t BACSTAC_CALENDAR_RANGE = 1;
inline constexpr std::uint32_t BACSTAC_CALENDAR_WEEK_N_DAY = 2;

struct BACSTAC_CALENDAR_ENTRY {
    std::uint32_t Choice; // BACSTAC_CALENDAR_*
    union {
        BACSTAC_DATE Date;
        BACSTAC_DATE_RANGE Range;
        BACSTAC_WEEK_N_DAY WeekNDay;
    };
};
static_assert(sizeof(BACSTAC_CALENDAR_ENTRY) == 36);

struct BACSTAC_TIME_VALUE {
    BACSTAC_TIME Time;
    BACSTAC_ANY_VALUE Value;
};
static_assert(sizeof(BACSTAC_TIME_VALUE) == 20);

// One day of a weekly schedule, or one list of a command object's actions.
struct BACSTAC_DAILY_SCHEDULE {
    BACSTAC_LIST TimeValues; // of BACSTAC_TIME_VALUE
};

inline constexpr std::uint32_t BACSTAC_PERIOD_ENTRY = 0;
inline constexpr std::uint32_t BACSTAC_PERIOD_REFERENCE = 1;

struct BACSTAC_SPECIAL_EVENT {
    std::uint32_t Period; // BACSTAC_PERIOD_*
    union {
        BACSTAC_CALENDAR_ENTRY Entry;
        BACSTAC_OBJECT_ID Calendar;
    };
    std::uint32_t Priority;  // 1 to 16
    BACSTAC_LIST TimeValues; // of BACSTAC_TIME_VALUE
};
static_assert(sizeof(BACSTAC_SPECIAL_EVENT) == 52);

struct BACSTAC_SETPOINT_REF {
    std::uint32_t Present;
    BACSTAC_OBJ_PROP_REF Reference;
};
static_assert(sizeof(BACSTAC_SETPOINT_REF) == 20);

struct BACSTAC_DESTINATION {
    BACSTAC_BIT_STRING ValidDays; // bit 0 Monday
    BACSTAC_TIME From;
    BACSTAC_TIME To;
    BACSTAC_RECIPIENT Recipient;
    std::uint32_t ProcessId;
    std::uint8_t Confirmed;
    std::uint8_t Reserved[3];
    BACSTAC_BIT_STRING Transitions;
};
static_assert(sizeof(BACSTAC_DESTINATION) == 64);

struct BACSTAC_RECIPIENT_PROCESS {
    BACSTAC_RECIPIENT Recipient;
    std::uint32_t ProcessId;
};
static_assert(sizeof(BACSTAC_RECIPIENT_PROCESS) == 20);

struct BACSTAC_ADDRESS_BINDING {
    BACSTAC_OBJECT_ID Device;
    BACSTAC_ADDRESS Address;
};
static_assert(sizeof(BACSTAC_ADDRESS_BINDING) == 20);

// Choice is a data type: 0 the default increment, 4 Value.
struct BACSTAC_CLIENT_COV {
    std::uint32_t Choice;
    float Value;
};

struct BACSTAC_PRESCALE {
    std::uint32_t Multiplier;
    std::uint32_t ModuloDivide;
};

// Choice is a data type: 3 Signed, 4 Real.
struct BACSTAC_SCALE {
    std::uint32_t Choice;
    union {
        std::int32_t Signed;
        float Real;
    };
};

struct BACSTAC_SHED_LEVEL {
    std::uint32_t Choice; // 0 percent, 1 level, 2 amount
    union {
        std::uint32_t Percent;
        std::uint32_t Level;
        float Amount;
    };
};

// Type is the standard's number of the state's enumeration (BACnetPropertyStates).
struct BACSTAC_PROPERTY_STATE {
    std::uint32_t Type;
    union {
        std::uint8_t Boolean;
        std::uint32_t Value;
        std::int32_t Signed;
    };
};
static_assert(sizeof(BACSTAC_PROPERTY_STATE) == 8);

inline constexpr std::uint32_t BACSTAC_COV_INCREMENT = 1; // bit of BACSTAC_COV_SUBSCRIPTION::Mask

struct BACSTAC_COV_SUBSCRIPTION {
    std::uint32_t Mask; // which optional fields are present
    BACSTAC_RECIPIENT_PROCESS Recipient;
    BACSTAC_OBJ_PROP_REF Monitored;
    std::uint8_t Confirmed;
    std::uint8_t Reserved[3];
    std::uint32_t TimeRemaining; // seconds, 0 for ever
    float Increment;
};
static_assert(sizeof(BACSTAC_COV_SUBSCRIPTION) == 52);

struct BACSTAC_READ_ACCESS_SPEC {
    BACSTAC_OBJECT_ID ObjectId;
    BACSTAC_LIST Properties; // of BACSTAC_PROPERTY_REF
};

inline constexpr std::uint32_t BACSTAC_ITEM_VALUE = 0;
inline constexpr std::uint32_t BACSTAC_ITEM_ERROR = 1;

// One property of a read-access result, data type 56.
struct BACSTAC_READ_ACCESS_ITEM {
    BACSTAC_PROPERTY_ID Property;
    std::uint32_t ArrayIndex;
    std::uint32_t Choice; // BACSTAC_ITEM_*
    union {
        BACSTAC_ANY_VALUE Value;
        BACSTAC_ERROR_VALUE Error;
    };
};
static_assert(sizeof(BACSTAC_READ_ACCESS_ITEM) == 28);

struct BACSTAC_READ_ACCESS_RESULT {
    BACSTAC_OBJECT_ID ObjectId;
    BACSTAC_LIST Items; // of BACSTAC_READ_ACCESS_ITEM
};

inline constexpr std::uint32_t BACSTAC_POST_DELAY = 2; // bit of BACSTAC_ACTION_COMMAND::Mask

struct BACSTAC_ACTION_COMMAND {
    std::uint32_t Mask; // which optional fields are present
    BACSTAC_DEV_OBJ_PROP_REF Reference;
    BACSTAC_ANY_VALUE Value;
    std::int32_t Priority;   // -1 none
    std::uint32_t PostDelay; // seconds
    std::uint8_t QuitOnFailure;
    std::uint8_t WriteSuccessful;
    std::uint8_t Reserved[2];
};
static_assert(sizeof(BACSTAC_ACTION_COMMAND) == 60);

// One list of a command object's actions.
struct BACSTAC_ACTION_LIST {
    BACSTAC_LIST Commands; // of BACSTAC_ACTION_COMMAND
};

// Last record of an accumulator (BACnetAccumulatorRecord).
struct BACSTAC_ACCUMULATOR_RECORD {
    BACSTAC_DATE_TIME TimeStamp;
    std::uint32_t PresentValue;
    std::uint32_t AccumulatedValue;
    std::uint32_t Status; // 0 normal, 1 starting, 2 recovered, 3 abnormal, 4 failed
};
static_assert(sizeof(BACSTAC_ACCUMULATOR_RECORD) == 32);

// ---- event parameters: data type 1000 plus the event type; time delays in seconds

struct BACSTAC_EVENT_PARAMETER {
    std::uint32_t EventType;
    BACSTAC_ANY_VALUE Parameters; // one record of data type 1000 + EventType, or raw
};
static_assert(sizeof(BACSTAC_EVENT_PARAMETER) == 20);

struct BACSTAC_EP_CHANGE_OF_BITSTRING {
    std::uint32_t TimeDelay;
    BACSTAC_BIT_STRING BitMask;
    BACSTAC_LIST Values; // of BACSTAC_BIT_STRING
};

struct BACSTAC_EP_CHANGE_OF_STATE {
    std::uint32_t TimeDelay;
    BACSTAC_LIST Values; // of BACSTAC_PROPERTY_STATE
};

struct BACSTAC_EP_CHANGE_OF_VALUE {
    std::uint32_t TimeDelay;
    std::uint32_t Choice; // 0 bit mask, 1 increment
    union {
        BACSTAC_BIT_STRING BitMask;
        float Increment;
    };
};

struct BACSTAC_EP_COMMAND_FAILURE {
    std::uint32_t TimeDelay;
    BACSTAC_DEV_OBJ_PROP_REF Feedback;
};

struct BACSTAC_EP_FLOATING_LIMIT {
    std::uint32_t TimeDelay;
    BACSTAC_DEV_OBJ_PROP_REF Setpoint;
    float LowDiffLimit;
    float HighDiffLimit;
    float DeadBand;
};

struct BACSTAC_EP_OUT_OF_RANGE {
    std::uint32_t TimeDelay;
    float LowLimit;
    float HighLimit;
    float DeadBand;
};

struct BACSTAC_EP_CHANGE_OF_LIFE_SAFETY {
    std::uint32_t TimeDelay;
    BACSTAC_DEV_OBJ_PROP_REF Mode;
    BACSTAC_LIST LifeSafetyAlarmValues; // of u32
    BACSTAC_LIST AlarmValues;           // of u32
};

struct BACSTAC_EP_EXTENDED {
    std::uint32_t VendorId;
    std::uint32_t ExtendedEventType;
    BACSTAC_LIST Parameters; // of BACSTAC_ANY_VALUE
};

struct BACSTAC_EP_BUFFER_READY {
    std::uint32_t NotifyThreshold;
    std::uint32_t PreviousNotifyCount;
};

struct BACSTAC_EP_UNSIGNED_RANGE {
    std::uint32_t TimeDelay;
    std::uint32_t LowLimit;
    std::uint32_t HighLimit;
};

struct BACSTAC_EP_DOUBLE_OUT_OF_RANGE {
    std::uint32_t TimeDelay;
    std::uint32_t Reserved;
    double LowLimit;
    double HighLimit;
    double DeadBand;
};

struct BACSTAC_EP_SIGNED_OUT_OF_RANGE {
    std::uint32_t TimeDelay;
    std::int32_t LowLimit;
    std::int32_t HighLimit;
    std::uint32_t DeadBand;
};

struct BACSTAC_EP_UNSIGNED_OUT_OF_RANGE {
    std::uint32_t TimeDelay;
    std::uint32_t LowLimit;
    std::uint32_t HighLimit;
    std::uint32_t DeadBand;
};

struct BACSTAC_EP_CHANGE_OF_CHARACTERSTRING {
    std::uint32_t TimeDelay;
    BACSTAC_LIST AlarmValues; // of text
};

struct BACSTAC_EP_CHANGE_OF_STATUS_FLAGS {
    std::uint32_t TimeDelay;
    BACSTAC_BIT_STRING SelectedFlags;
};

// ---- event notifications: data type 1100 plus the event type

struct BACSTAC_NOTIFICATION_PARAMETERS {
    std::uint32_t EventType;
    BACSTAC_ANY_VALUE Parameters; // one record of data type 1100 + EventType, or raw
};
static_assert(sizeof(BACSTAC_NOTIFICATION_PARAMETERS) == 20);

struct BACSTAC_NP_CHANGE_OF_BITSTRING {
    BACSTAC_BIT_STRING Referenced;
    BACSTAC_BIT_STRING StatusFlags;
};

struct BACSTAC_NP_CHANGE_OF_STATE {
    BACSTAC_PROPERTY_STATE NewState;
    BACSTAC_BIT_STRING StatusFlags;
};

struct BACSTAC_NP_CHANGE_OF_VALUE {
    std::uint32_t Choice; // 0 changed bits, 1 changed value
    union {
        BACSTAC_BIT_STRING ChangedBits;
        float ChangedValue;
    };
    BACSTAC_BIT_STRING StatusFlags;
};

struct BACSTAC_NP_COMMAND_FAILURE {
    BACSTAC_ANY_VALUE CommandValue;
    BACSTAC_BIT_STRING StatusFlags;
    BACSTAC_ANY_VALUE FeedbackValue;
};

struct BACSTAC_NP_FLOATING_LIMIT {
    float ReferenceValue;
    BACSTAC_BIT_STRING StatusFlags;
    float SetpointValue;
    float ErrorLimit;
};

struct BACSTAC_NP_OUT_OF_RANGE {
    float ExceedingValue;
    BACSTAC_BIT_STRING StatusFlags;
    float DeadBand;
    float ExceededLimit;
};

struct BACSTAC_NP_CHANGE_OF_LIFE_SAFETY {
    std::uint32_t NewState;
    std::uint32_t NewMode;
    BACSTAC_BIT_STRING StatusFlags;
    std::uint32_t OperationExpected;
};

struct BACSTAC_NP_BUFFER_READY {
    BACSTAC_DEV_OBJ_PROP_REF Buffer;
    std::uint32_t PreviousNotification;
    std::uint32_t CurrentNotification;
};

struct BACSTAC_NP_UNSIGNED_RANGE {
    std::uint32_t ExceedingValue;
    BACSTAC_BIT_STRING StatusFlags;
    std::uint32_t ExceededLimit;
};

// Bits of BACSTAC_EVENT_NOTIF::Mask.
inline constexpr std::uint32_t BACSTAC_NOTIF_MESSAGE = 1;
inline constexpr std::uint32_t BACSTAC_NOTIF_ACK_REQUIRED = 2;
inline constexpr std::uint32_t BACSTAC_NOTIF_FROM_STATE = 4;
inline constexpr std::uint32_t BACSTAC_NOTIF_PARAMETERS = 8;

// An event notification (clause 13.8), as an event log keeps it.
struct BACSTAC_EVENT_NOTIF {
    std::uint32_t Mask; // which optional fields are present
    std::uint32_t ProcessId;
    BACSTAC_OBJECT_ID Device;
    BACSTAC_OBJECT_ID Object;
    BACSTAC_TIME_STAMP TimeStamp;
    std::uint32_t NotificationClass;
    std::uint32_t Priority;
    std::uint32_t EventType;
    std::uint32_t MessageOffset; // of the text, from the start of the contents buffer
    std::uint32_t NotifyType;
    std::uint8_t AckRequired;
    std::uint8_t Reserved[3];
    std::uint32_t FromState;
    std::uint32_t ToState;
    BACSTAC_NOTIFICATION_PARAMETERS Parameters;
    std::uint32_t Unused[11];
};
static_assert(sizeof(BACSTAC_EVENT_NOTIF) == 144);

inline constexpr std::uint32_t BACSTAC_EVENT_LOG_STATUS = 0;
inline constexpr std::uint32_t BACSTAC_EVENT_LOG_NOTIFICATION = 1;
inline constexpr std::uint32_t BACSTAC_EVENT_LOG_TIME_CHANGE = 2;

// Data type 54: one record of an event log's buffer.
struct BACSTAC_EVENT_LOG_RECORD {
    BACSTAC_DATE_TIME TimeStamp;
    std::uint32_t RecordType; // BACSTAC_EVENT_LOG_*
    union {
        BACSTAC_BIT_STRING LogStatus;
        BACSTAC_EVENT_NOTIF Notification;
        float TimeChange; // seconds
    };
};
static_assert(sizeof(BACSTAC_EVENT_LOG_RECORD) == 168 && offsetof(BACSTAC_EVENT_LOG_RECORD, RecordType) == 20);
static_assert(offsetof(BACSTAC_EVENT_LOG_RECORD, Notification) == 24);

// First element of a list, in the contents that hold the record; null when there is none or it does not lie within the
// buffer. elementSize: of one element, in bytes.
inline const void* ListElements(const BACSTAC_PROPERTY_CONTENTS& contents, const BACSTAC_LIST& list,
                                std::uint32_t elementSize) {
    const std::uint64_t end = list.Offset + std::uint64_t{list.Count} * elementSize;
    if (list.Offset == 0 || list.Count == 0 || end > contents.BufferSize)
        return nullptr;
    return static_cast<const char*>(contents.Buffer) + list.Offset;
}
