// The historical store behind the kernel's channel operations. platform/historian implements it on SQLite and in
// memory.
//
// The store appends: it has no uniqueness on tag and time, because a local hour can come twice. Records that are equal
// in every field are stored again and given once by a query that does not ask for all of them.
//
// Thread-safe: any thread may call any operation at any time. Writers are serialised; a query sees whole blocks only.
#pragma once

#include "api/kernel/VfiRecord.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct HistoryError {
    std::string text;                       // one line, UTF-8
    std::optional<std::size_t> recordIndex; // of the record at fault, if one record is
};

struct HistoryQuery {
    std::uint32_t tagId = 0;
    std::optional<std::uint32_t> from; // seconds since 1970, inclusive
    std::optional<std::uint32_t> to;   // seconds since 1970, inclusive
    bool all = false;                  // also records that repeat another one in every field
    std::uint64_t limit = 0;           // 0: none
};

struct HistoryCount {
    std::uint32_t tagId;
    std::uint64_t records; // every stored record, repetitions included
};

class HistoryStore {
public:
    virtual ~HistoryStore() = default;

    // Stores the block in one transaction, durable before it returns true. False: nothing of the block is stored, error
    // says why. NaN, infinities and text that is not UTF-8 are data and come back as they were given. A record is at
    // fault when its valueType is neither VFI_NUMBER nor VFI_TEXT, its milliseconds exceed 999, or it is a text without
    // a NUL. A number is stored without its text, a text with its value: the value carries the bit of a text's status
    // records. An empty block is stored at once.
    virtual bool Write(std::span<const VfiRecord> records, HistoryError& error) = 0;
    // Makes everything written durable (Write already has); false when the medium fails.
    virtual bool Flush(HistoryError& error) = 0;

    // Gives the matching records in ascending (time, milliseconds, order of storing) to the visitor until it returns
    // false. Text bytes behind the NUL are zero. False when the medium fails.
    virtual bool Query(const HistoryQuery& query, const std::function<bool(const VfiRecord&)>& visitor,
                       HistoryError& error) = 0;
    // Number of records of each tag that has any, ascending by tag id.
    virtual bool Count(std::vector<HistoryCount>& counts, HistoryError& error) = 0;
};
