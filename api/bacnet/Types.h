// The records that the BACnet services exchange with their callers.
//
// Where a size is stated it is exact, because records travel as bytes in contents buffers, settings and reports: the
// assertions stand beside the records. Records are zeroed before their fields are set, so that padding is always zero.
// A 32-bit reference inside a record in a contents buffer is a byte offset from the start of that buffer (0: none),
// never a pointer; the accessors at the end of this file resolve it.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>

using BACSTAC_STATUS = std::uint32_t;
using BACSTAC_DATA_TYPE = std::int32_t;
using BACSTAC_OBJECT_TYPE = std::uint32_t;
using BACSTAC_PROPERTY_ID = std::uint32_t;

// Status of a service call. Values from 64 on say that the device answered so; the others are local failures, and
// nobody but the log and GetStatusString tells them apart.
inline constexpr BACSTAC_STATUS BACSTAC_OK = 0;
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_TIMEOUT = 1;          // no answer after all retries
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_UNKNOWN_DEVICE = 2;   // the directory has no address for the device
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_NO_ROUTE = 3;         // no router to the device's network was found
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_DISABLED = 4;         // the device or its network is disabled here
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_BUFFER_TOO_SMALL = 5; // the value does not fit the caller's buffer
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_INVALID_ANSWER = 6;   // the answer could not be decoded
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_INVALID_ARGUMENT = 7; // the call's arguments cannot be sent
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_TOO_LONG = 8;         // the request does not fit the device's APDU
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_SEND_FAILURE = 9;     // the operating system refused to send
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_BUSY = 10;            // all invoke ids of the peer are taken
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_CANCELLED = 11;       // the caller gave the wait up
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_SHUTDOWN = 12;        // the stack is closing
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_NOT_SUPPORTED = 13; // this build of the stack does not offer the service
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_ERROR = 64;         // Error PDU: class and code in BACSTAC_ERROR
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_REJECT = 65;        // Reject PDU: reason in BACSTAC_ERROR's second word
inline constexpr BACSTAC_STATUS BACSTAC_STATUS_ABORT = 66;         // Abort PDU: reason in BACSTAC_ERROR's second word

// Sentinels.
inline constexpr int BACSTAC_NO_INDEX = -1;    // array index: the whole property
inline constexpr int BACSTAC_NO_PRIORITY = -1; // WriteProperty without priority
inline constexpr std::uint16_t BACSTAC_ALL_NETWORKS =
    65535; // directory lists: every network; address: global broadcast
inline constexpr BACSTAC_OBJECT_TYPE BACSTAC_ALL_TYPES = 0xFFFFFFFFU;
inline constexpr std::uint32_t BACSTAC_ALL_INSTANCES = 0xFFFFFFFFU;
inline constexpr std::uint32_t BACSTAC_MAX_INSTANCE = 4194303; // 22 bits; as a device instance it means "whichever"
inline constexpr unsigned BACSTAC_CONTENTS_SIZE = 131072;      // default buffer of a property's contents

// Detail of a failed call, cleared by the caller. Kind: 0 none, 1 reject or abort, 2 error.
struct BACSTAC_ERROR {
    std::uint32_t Kind;
    std::uint32_t Class; // error class, or the reject or abort reason
    std::uint32_t Code;  // error code
};
static_assert(sizeof(BACSTAC_ERROR) == 12);

struct BACSTAC_OBJECT_ID {
    BACSTAC_OBJECT_TYPE Type;
    std::uint32_t Instance;
    friend bool operator==(const BACSTAC_OBJECT_ID&, const BACSTAC_OBJECT_ID&) = default;
    friend auto operator<=>(const BACSTAC_OBJECT_ID&, const BACSTAC_OBJECT_ID&) = default;
};
static_assert(sizeof(BACSTAC_OBJECT_ID) == 8);

// Address of a station. On BACnet/IP the MAC is the IPv4 address and the port, 6 bytes in network order. MacLength 0 is
// a broadcast: local with Network 0, on that network otherwise, on all networks with 65535 (Remote set).
struct BACSTAC_ADDRESS {
    std::uint8_t Remote; // not 0: behind a router, Network is the DNET
    std::uint8_t Reserved;
    std::uint16_t Network; // 0 when local
    std::uint8_t Mac[7];
    std::uint8_t MacLength;
    friend bool operator==(const BACSTAC_ADDRESS&, const BACSTAC_ADDRESS&) = default;
};
static_assert(sizeof(BACSTAC_ADDRESS) == 12 && offsetof(BACSTAC_ADDRESS, Network) == 2);
static_assert(offsetof(BACSTAC_ADDRESS, Mac) == 4 && offsetof(BACSTAC_ADDRESS, MacLength) == 11);

// Bit n of the string is bit n % 8, counted from the least significant, of Bits[n / 8]. 96 bits at most. Touched only
// through TestBitStringBit and SetBitStringBit.
struct BACSTAC_BIT_STRING {
    std::uint32_t BitCount;
    std::uint8_t Bits[12];
    friend bool operator==(const BACSTAC_BIT_STRING&, const BACSTAC_BIT_STRING&) = default;
};
static_assert(sizeof(BACSTAC_BIT_STRING) == 16);

// Year 0xFFFF, month 0, day from 255 on and weekday 0 are unspecified. Month 13 and 14: odd and even months; day 32:
// last day of the month, 33 and 34: odd and even days; weekday 1 Monday to 7 Sunday.
struct BACSTAC_DATE {
    std::uint16_t Year;
    std::uint16_t Reserved;
    std::uint32_t Month;
    std::uint32_t Day;
    std::uint32_t Weekday;
};
static_assert(sizeof(BACSTAC_DATE) == 16);
inline constexpr std::uint16_t BACSTAC_ANY_YEAR = 0xFFFF;
inline constexpr std::uint32_t BACSTAC_ANY_MONTH = 0;
inline constexpr std::uint32_t BACSTAC_ANY_DAY = 255;
inline constexpr std::uint32_t BACSTAC_ANY_WEEKDAY = 0;
inline constexpr std::uint8_t BACSTAC_ANY_TIME = 255;

// Each field 255 when unspecified.
struct BACSTAC_TIME {
    std::uint8_t Hour;
    std::uint8_t Minute;
    std::uint8_t Second;
    std::uint8_t Hundredths;
};
static_assert(sizeof(BACSTAC_TIME) == 4);

struct BACSTAC_DATE_TIME {
    BACSTAC_DATE Date;
    BACSTAC_TIME Time;
};
static_assert(sizeof(BACSTAC_DATE_TIME) == 20);

// A value, or room for one. DataType is negative while no decoded value is present, and ElementCount 0 unless the
// octets that could not be decoded are there (TYPE_RAW). A service decodes into Buffer, at most BufferSize bytes, and
// sets DataType and ElementCount: one element or an array of them, in the decoded layout of the type (character
// strings: one NUL-terminated string behind the other).
struct BACSTAC_PROPERTY_CONTENTS {
    BACSTAC_DATA_TYPE DataType;
    void* Buffer;
    std::uint32_t BufferSize;
    std::uint32_t ElementCount;
};

// Property of one object; index -1 (0xFFFFFFFF) is the whole property.
struct BACSTAC_PROPERTY_REF {
    BACSTAC_PROPERTY_ID Property;
    std::uint32_t ArrayIndex;
};
static_assert(sizeof(BACSTAC_PROPERTY_REF) == 8);

struct BACSTAC_OBJ_PROP_REF {
    BACSTAC_OBJECT_ID ObjectId;
    BACSTAC_PROPERTY_ID Property;
    std::uint32_t ArrayIndex;
};
static_assert(sizeof(BACSTAC_OBJ_PROP_REF) == 16);

// Device reference: DevicePresent 0 leaves DeviceId at type 8 (device), instance 0.
struct BACSTAC_DEV_OBJ_REF {
    BACSTAC_OBJECT_ID ObjectId;
    std::uint32_t DevicePresent;
    BACSTAC_OBJECT_ID DeviceId;
};
static_assert(sizeof(BACSTAC_DEV_OBJ_REF) == 20);

struct BACSTAC_DEV_OBJ_PROP_REF {
    BACSTAC_OBJECT_ID ObjectId;
    BACSTAC_PROPERTY_ID Property;
    std::uint32_t ArrayIndex;
    std::uint32_t DevicePresent;
    BACSTAC_OBJECT_ID DeviceId;
};
static_assert(sizeof(BACSTAC_DEV_OBJ_PROP_REF) == 28);

// Result of one property of a multiple read.
struct BACSTAC_READ_RESULT_ITEM {
    BACSTAC_PROPERTY_ID Property;
    std::int32_t ArrayIndex;
    std::uint8_t Success; // not 0: Contents hold the value
    BACSTAC_PROPERTY_CONTENTS Contents;
    BACSTAC_ERROR Error;
};

// One initial value for CreateObject.
struct BACSTAC_PROPERTY_VALUE {
    BACSTAC_PROPERTY_ID Property;
    std::int32_t ArrayIndex;
    BACSTAC_PROPERTY_CONTENTS Contents;
    std::int32_t Priority;
};

struct BACSTAC_OBJECT_SPECIFIER {
    std::uint32_t ByIdentifier; // 1: Type and Instance; 0: Type alone, the device chooses the instance
    BACSTAC_OBJECT_TYPE Type;
    std::uint32_t Instance;
};

// ReadRange (clause 15.8). A negative count reads backwards from the reference.
inline constexpr std::uint32_t BACSTAC_RANGE_ALL = 0;
inline constexpr std::uint32_t BACSTAC_RANGE_BY_POSITION = 1;
inline constexpr std::uint32_t BACSTAC_RANGE_BY_TIME_2001 = 2; // the form of the 2001 standard, context tag 4
inline constexpr std::uint32_t BACSTAC_RANGE_BY_SEQUENCE = 4;
inline constexpr std::uint32_t BACSTAC_RANGE_BY_TIME = 5; // protocol revision 4 and later, context tag 7

struct BACSTAC_READ_RANGE_SPEC {
    std::uint32_t Kind;
    union {
        struct {
            std::uint32_t Reference; // position or sequence number
            std::int32_t Count;
        } ByIndex; // kinds 1 and 4
        struct {
            BACSTAC_DATE_TIME Reference;
            std::int32_t Count;
        } ByTime; // kinds 2 and 5
    };
};

// Bits of ReadRange's result flags.
inline constexpr unsigned BACSTAC_RANGE_FIRST_ITEM = 0;
inline constexpr unsigned BACSTAC_RANGE_LAST_ITEM = 1;
inline constexpr unsigned BACSTAC_RANGE_MORE_ITEMS = 2;

// A value of any type inside a record of a contents buffer.
struct BACSTAC_ANY_VALUE {
    BACSTAC_DATA_TYPE DataType; // negative: not decoded
    std::uint32_t Offset;       // of the value, from the start of the contents buffer
    std::uint32_t Size;         // of the value in bytes
    std::uint32_t ElementCount;
};
static_assert(sizeof(BACSTAC_ANY_VALUE) == 16);

// Value of a log datum, by its choice.
union BACSTAC_LOG_VALUE {
    BACSTAC_BIT_STRING LogStatus; // log record 0, enumeration 31
    std::uint8_t Boolean;
    float Real;
    std::uint32_t Enumerated;
    std::uint32_t Unsigned;
    std::int32_t Signed;
    BACSTAC_BIT_STRING BitString;
    struct {
        std::uint32_t Class;
        std::uint32_t Code;
    } Failure;
    float TimeChange; // seconds
    BACSTAC_ANY_VALUE Any;
};
static_assert(sizeof(BACSTAC_LOG_VALUE) == 16);

// Choices of a trend log's datum (BACnetLogRecord, clause 21).
inline constexpr std::uint32_t BACSTAC_LOG_STATUS = 0;
inline constexpr std::uint32_t BACSTAC_LOG_BOOLEAN = 1;
inline constexpr std::uint32_t BACSTAC_LOG_REAL = 2;
inline constexpr std::uint32_t BACSTAC_LOG_ENUMERATED = 3;
inline constexpr std::uint32_t BACSTAC_LOG_UNSIGNED = 4;
inline constexpr std::uint32_t BACSTAC_LOG_SIGNED = 5;
inline constexpr std::uint32_t BACSTAC_LOG_BITSTRING = 6;
inline constexpr std::uint32_t BACSTAC_LOG_NULL = 7;
inline constexpr std::uint32_t BACSTAC_LOG_FAILURE = 8;
inline constexpr std::uint32_t BACSTAC_LOG_TIME_CHANGE = 9;
inline constexpr std::uint32_t BACSTAC_LOG_ANY = 10;

// Data type 39: one record of a trend log's buffer.
struct BACSTAC_LOG_RECORD {
    BACSTAC_DATE_TIME TimeStamp;
    std::uint32_t DatumType; // BACSTAC_LOG_*
    BACSTAC_LOG_VALUE Value;
    std::uint8_t HasStatus;
    std::uint8_t Reserved[3];
    BACSTAC_BIT_STRING StatusFlags;
};
static_assert(sizeof(BACSTAC_LOG_RECORD) == 60 && offsetof(BACSTAC_LOG_RECORD, DatumType) == 20);
static_assert(offsetof(BACSTAC_LOG_RECORD, Value) == 24 && offsetof(BACSTAC_LOG_RECORD, HasStatus) == 40);
static_assert(offsetof(BACSTAC_LOG_RECORD, StatusFlags) == 44);

// One value of a log-multiple record. Kinds: 0 boolean, 1 real, 2 enumerated, 3 unsigned, 4 signed, 5 bit string, 6
// null, 7 failure, 8 any (BACnetLogData, clause 21).
struct BACSTAC_LOG_ITEM {
    std::uint32_t Kind;
    BACSTAC_LOG_VALUE Value;
};
static_assert(sizeof(BACSTAC_LOG_ITEM) == 20);

inline constexpr std::uint32_t BACSTAC_LOG_MULTIPLE_STATUS = 0;
inline constexpr std::uint32_t BACSTAC_LOG_MULTIPLE_DATA = 1;
inline constexpr std::uint32_t BACSTAC_LOG_MULTIPLE_TIME_CHANGE = 2;

// Data type 55: one record of a trend-log-multiple's buffer.
struct BACSTAC_LOG_MULTIPLE_RECORD {
    BACSTAC_DATE_TIME TimeStamp;
    std::uint32_t RecordType; // BACSTAC_LOG_MULTIPLE_*
    union {
        struct {
            std::uint32_t ItemCount;
            std::uint32_t ItemsOffset; // of the BACSTAC_LOG_ITEM array, from the start of the contents buffer
        } Data;
        BACSTAC_BIT_STRING LogStatus;
        float TimeChange;
    };
};
static_assert(sizeof(BACSTAC_LOG_MULTIPLE_RECORD) == 40 && offsetof(BACSTAC_LOG_MULTIPLE_RECORD, RecordType) == 20);
static_assert(offsetof(BACSTAC_LOG_MULTIPLE_RECORD, Data) == 24);

// GetAlarmSummary and GetEnrollmentSummary.
struct BACSTAC_ALARM_SUMMARY {
    BACSTAC_OBJECT_ID ObjectId;
    std::uint32_t AlarmState;
    BACSTAC_BIT_STRING AckedTransitions;
};
static_assert(sizeof(BACSTAC_ALARM_SUMMARY) == 28);

struct BACSTAC_ENROLLMENT_SUMMARY {
    BACSTAC_OBJECT_ID ObjectId;
    std::uint32_t EventType;
    std::uint32_t EventState;
    std::uint32_t Priority;
    std::uint32_t NotificationClassPresent;
    std::uint32_t NotificationClass;
};
static_assert(sizeof(BACSTAC_ENROLLMENT_SUMMARY) == 28);

enum BACSTAC_DCC_VALUE : std::uint32_t {
    BACSTAC_DCC_ENABLE = 0,
    BACSTAC_DCC_DISABLE = 1,
    BACSTAC_DCC_DISABLE_INITIATION = 2
};

enum BACSTAC_REINIT_TYPE : std::uint32_t {
    BACSTAC_REINIT_COLDSTART = 0,
    BACSTAC_REINIT_WARMSTART = 1,
    BACSTAC_REINIT_STARTBACKUP = 2,
    BACSTAC_REINIT_ENDBACKUP = 3,
    BACSTAC_REINIT_STARTRESTORE = 4,
    BACSTAC_REINIT_ENDRESTORE = 5,
    BACSTAC_REINIT_ABORTRESTORE = 6,
};

// Items of a log-multiple record, in the contents that hold the record; null when the record carries none or its
// reference does not lie within the buffer.
inline const BACSTAC_LOG_ITEM* LogItems(const BACSTAC_PROPERTY_CONTENTS& contents,
                                        const BACSTAC_LOG_MULTIPLE_RECORD& record) {
    if (record.RecordType != BACSTAC_LOG_MULTIPLE_DATA || record.Data.ItemsOffset == 0)
        return nullptr;
    const std::uint64_t end = record.Data.ItemsOffset + std::uint64_t{record.Data.ItemCount} * sizeof(BACSTAC_LOG_ITEM);
    if (end > contents.BufferSize)
        return nullptr;
    return reinterpret_cast<const BACSTAC_LOG_ITEM*>(static_cast<const char*>(contents.Buffer) +
                                                     record.Data.ItemsOffset);
}

// An any-value of a record, as contents over the same memory; DataType is negative when there is no decoded value.
inline BACSTAC_PROPERTY_CONTENTS AnyValue(const BACSTAC_PROPERTY_CONTENTS& contents, const BACSTAC_ANY_VALUE& value) {
    const bool inside = std::uint64_t{value.Offset} + value.Size <= contents.BufferSize;
    if (value.DataType < 0 || !inside)
        return {-1, nullptr, 0, 0};
    return {value.DataType, static_cast<char*>(contents.Buffer) + value.Offset, value.Size, value.ElementCount};
}
