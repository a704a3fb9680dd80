// Arguments and results of the file, summary and conditional-read services.
#pragma once

#include "api/bacnet/Types.h"

inline constexpr std::uint32_t BACSTAC_FILE_STREAM = 0;
inline constexpr std::uint32_t BACSTAC_FILE_RECORD = 1;

// A piece of memory: who fills it in says how much there is (Capacity) or how much of it counts (Length).
struct BACSTAC_BUFFER {
    void* Data;
    std::uint32_t Capacity;
    std::uint32_t Length;
};

struct BACSTAC_READ_FILE_SPEC {
    std::uint32_t Access; // BACSTAC_FILE_*
    std::int32_t Start;   // byte position or record index
    std::uint32_t Count;  // bytes or records
};

struct BACSTAC_READ_FILE_RESULT {
    std::uint8_t EndOfFile;
    std::int32_t Start;
    union {
        BACSTAC_BUFFER Stream; // Data and Capacity are the caller's
        struct {
            std::uint32_t Count;    // records returned
            void* WorkBuffer;       // the caller's; Count BACSTAC_BUFFER descriptors are left at its start
            std::uint32_t WorkSize; // bytes
        } Records;
    };
};

struct BACSTAC_WRITE_FILE_SPEC {
    std::uint32_t Access;
    std::int32_t Start; // -1 appends
    union {
        BACSTAC_BUFFER Stream;
        struct {
            std::uint32_t Count;
            const BACSTAC_BUFFER* Buffers;
        } Records;
    };
};

struct BACSTAC_WRITE_FILE_RESULT {
    std::int32_t Start;
};

// Recipient (clause 21, BACnetRecipient): choice 0 device, 1 address.
struct BACSTAC_RECIPIENT {
    std::uint32_t Choice;
    union {
        BACSTAC_OBJECT_ID Device;
        BACSTAC_ADDRESS Address;
    };
};
static_assert(sizeof(BACSTAC_RECIPIENT) == 16);

// Bits of an enrollment filter's Mask: which optional fields apply.
inline constexpr std::uint32_t BACSTAC_FILTER_RECIPIENT = 1;
inline constexpr std::uint32_t BACSTAC_FILTER_EVENT_STATE = 2;
inline constexpr std::uint32_t BACSTAC_FILTER_EVENT_TYPE = 4;
inline constexpr std::uint32_t BACSTAC_FILTER_PRIORITY = 8;
inline constexpr std::uint32_t BACSTAC_FILTER_NOTIFICATION_CLASS = 16;

struct BACSTAC_ENROLLMENT_FILTER {
    std::uint32_t Mask;
    std::uint32_t Acked; // 0 all, 1 acked, 2 not acked
    BACSTAC_RECIPIENT Recipient;
    std::uint32_t RecipientProcess;
    std::uint32_t EventState; // 0 off normal, 1 fault, 2 normal, 3 all, 4 active
    std::uint32_t EventType;
    std::uint8_t MinPriority;
    std::uint8_t MaxPriority;
    std::uint32_t NotificationClass;
};

// ReadPropertyConditional (clause 15.6 of the 2004 standard).
struct BACSTAC_SELECTION_CRITERION {
    BACSTAC_PROPERTY_REF Property;
    std::uint32_t Relation; // 0 =, 1 !=, 2 <, 3 >, 4 <=, 5 >=
    BACSTAC_PROPERTY_CONTENTS Value;
};

struct BACSTAC_READ_CON_INFO {
    std::uint32_t SelectionLogic; // 0 and, 1 or, 2 all
    std::uint32_t CriterionCount;
    const BACSTAC_SELECTION_CRITERION* Criteria;
    std::uint32_t PropertyCount;
    const BACSTAC_PROPERTY_REF* Properties;
};

// One object of the result; the items lie in the same buffer.
struct BACSTAC_RPC_OBJECT {
    BACSTAC_OBJECT_ID ObjectId;
    std::uint32_t ItemCount; // 0 when no properties were asked for
    BACSTAC_READ_RESULT_ITEM* Items;
};

// The caller gives the buffer, aligned as operator new does it. Count objects are left at its start, in the order of
// the answer, and behind them their items and values. What there is no room for is cut.
struct BACSTAC_RPC_RESULT {
    void* Buffer;
    std::uint32_t BufferSize;
    std::uint32_t Count;
};

inline const BACSTAC_RPC_OBJECT* RpcObjects(const BACSTAC_RPC_RESULT& result) {
    return static_cast<const BACSTAC_RPC_OBJECT*>(result.Buffer);
}

// One event of GetEventInformation (clause 13.12).
struct BACSTAC_TIME_STAMP {
    std::uint32_t Choice; // 0 time, 1 sequence number, 2 date and time
    union {
        BACSTAC_TIME Time;
        std::uint32_t SequenceNumber;
        BACSTAC_DATE_TIME DateTime;
    };
};
static_assert(sizeof(BACSTAC_TIME_STAMP) == 24);

struct BACSTAC_EVENT_SUMMARY {
    BACSTAC_OBJECT_ID ObjectId;
    std::uint32_t EventState;
    BACSTAC_BIT_STRING AckedTransitions;
    BACSTAC_TIME_STAMP TimeStamps[3]; // to-offnormal, to-fault, to-normal
    std::uint32_t NotifyType;
    BACSTAC_BIT_STRING EventEnable;
    std::uint32_t Priorities[3];
};
