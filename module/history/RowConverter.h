// Turns the rows of a block into records of the historical store. One thread uses it.
#pragma once

#include "api/kernel/VfiRecord.h"
#include "module/history/FixedArray.h"
#include "module/history/LocalTime.h"
#include "module/history/TrendRows.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

inline constexpr std::uint32_t NO_TAG = 0xFFFFFFFF;
inline constexpr std::size_t STATUS_FLAG_COUNT = 4; // in-alarm, fault, overridden, out-of-service

// Where the values of one log reference go. A reference without a tag keeps its place, so that the values of a
// trend-log-multiple stay paired with their tags.
struct HistoryTagRecord {
    std::uint32_t tagId = NO_TAG; // station in the high 16 bits
    std::string tagName;          // "TAG" or "STATION:TAG"
    bool flag = false;            // TAG_FLAG_HISTORY_COPY of the definition; nothing here reads it
    std::array<std::uint32_t, STATUS_FLAG_COUNT> statusTagIds{NO_TAG, NO_TAG, NO_TAG, NO_TAG};
};

// One value and its status flags.
inline constexpr std::size_t RECORDS_PER_VALUE = 1 + STATUS_FLAG_COUNT;

class CRowConverter {
public:
    explicit CRowConverter(const std::vector<HistoryTagRecord>& tags) : m_tags(tags) {}

    // Appends the records of every row. contents are what the rows were read from: any-values lie there.
    void Convert(const CTrendRows& rows, const BACSTAC_PROPERTY_CONTENTS& contents, CFixedArray<VfiRecord>& records);

private:
    void ConvertRow(TrendRow row, const BACSTAC_PROPERTY_CONTENTS& contents, CFixedArray<VfiRecord>& records);

    const std::vector<HistoryTagRecord>& m_tags;
    CLocalTimeConverter m_time;
};
