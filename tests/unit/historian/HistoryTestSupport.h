// What the historian's tests share: records, a folder of their own, and a whole query as one list.
#pragma once

#include "api/kernel/HistoryStore.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

inline VfiRecord Number(std::uint32_t tagId, std::uint32_t time, double value, std::uint16_t milliseconds = 0) {
    VfiRecord record{};
    record.tagId = tagId;
    record.time = time;
    record.milliseconds = milliseconds;
    record.valueType = VFI_NUMBER;
    SetVfiValue(record, value);
    return record;
}

inline VfiRecord Text(std::uint32_t tagId, std::uint32_t time, const std::string& text) {
    VfiRecord record{};
    record.tagId = tagId;
    record.time = time;
    record.valueType = VFI_TEXT;
    text.copy(record.text, sizeof record.text - 1);
    return record;
}

// count numbers of a tag, one a second, beginning at time.
inline std::vector<VfiRecord> Block(std::uint32_t tagId, std::uint32_t time, std::size_t count) {
    std::vector<VfiRecord> records;
    for (std::size_t i = 0; i < count; ++i) {
        records.push_back(Number(tagId, time + static_cast<std::uint32_t>(i), 20.0 + 0.37 * static_cast<double>(i)));
    }
    return records;
}

inline bool SameBytes(const VfiRecord& a, const VfiRecord& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

inline std::vector<VfiRecord> All(HistoryStore& store, const HistoryQuery& query) {
    std::vector<VfiRecord> found;
    HistoryError error;
    const bool good = store.Query(
        query, [&](const VfiRecord& record) { return found.push_back(record), true; }, error);
    EXPECT_TRUE(good) << error.text;
    return found;
}

inline std::vector<VfiRecord> All(HistoryStore& store, std::uint32_t tagId) {
    HistoryQuery query;
    query.tagId = tagId;
    query.all = true;
    return All(store, query);
}

inline std::vector<double> Values(const std::vector<VfiRecord>& records) {
    std::vector<double> values;
    for (const VfiRecord& record : records) {
        values.push_back(VfiValue(record));
    }
    return values;
}

inline std::uint64_t Total(HistoryStore& store) {
    std::vector<HistoryCount> counts;
    HistoryError error;
    EXPECT_TRUE(store.Count(counts, error)) << error.text;
    std::uint64_t total = 0;
    for (const HistoryCount& count : counts) {
        total += count.records;
    }
    return total;
}

// A new folder below the temporary folder, removed with all it holds.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "bdc-historian-XXXXXX").string();
        m_path = ::mkdtemp(name.data()) ? name : std::string();
        EXPECT_FALSE(m_path.empty());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(const char* name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};
