// The rows of one block of a log buffer, in a form that no longer tells a trend log from a trend-log-multiple. One
// thread uses them.
#pragma once

#include "api/bacnet/Types.h"
#include "module/history/FixedArray.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// One logged value. An any-value still refers to the contents buffer that the block was read into.
struct TrendLogRecord {
    BACSTAC_DATE_TIME timeStamp;
    std::uint32_t datumType; // BACSTAC_LOG_BOOLEAN..BACSTAC_LOG_ANY
    BACSTAC_LOG_VALUE value;
    bool hasStatus;
    BACSTAC_BIT_STRING statusFlags;
};

// The values of one log entry: one of a trend log, one per logged property, in the order of the log data, of a
// trend-log-multiple.
using TrendRow = std::span<const TrendLogRecord>;

// Rows without a value do not exist, and rows beyond the capacity are dropped. All values stand in one array; Clear
// keeps the memory for the next block.
class CTrendRows {
public:
    explicit CTrendRows(std::size_t capacity) : m_ends(capacity) {}

    void Clear();
    // Decodes the elements of a log buffer and appends a row for each that has values. Contents of another type than
    // the object's log records give none.
    void AppendBlock(BACSTAC_OBJECT_TYPE objectType, const BACSTAC_PROPERTY_CONTENTS& contents);

    std::size_t GetCapacity() const { return m_ends.GetCapacity(); }
    std::size_t GetSize() const { return m_ends.GetSize(); }
    TrendRow operator[](std::size_t row) const;

private:
    void AppendRecord(const BACSTAC_LOG_RECORD& record);
    void AppendMultiple(const BACSTAC_LOG_MULTIPLE_RECORD& record, const BACSTAC_PROPERTY_CONTENTS& contents);
    void EndRow();

    std::vector<TrendLogRecord> m_values;
    CFixedArray<std::size_t> m_ends; // of each row, as an index into m_values
};
