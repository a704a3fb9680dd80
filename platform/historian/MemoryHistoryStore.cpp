#include "platform/historian/MemoryHistoryStore.h"

#include "platform/historian/HistoryRecords.h"

#include <mutex>

bool MemoryHistoryStore::Write(std::span<const VfiRecord> records, HistoryError& error) {
    error = {};
    if (!CheckRecords(records, error)) {
        return false;
    }
    const std::unique_lock lock(m_lock);
    for (const VfiRecord& record : records) {
        Entry entry{record.valueType, VfiValue(record), {}};
        if (record.valueType == VFI_TEXT) {
            entry.text = RecordText(record);
        }
        m_tags[record.tagId].emplace(Instant(record.time, record.milliseconds), std::move(entry));
    }
    return true;
}

bool MemoryHistoryStore::Flush(HistoryError& error) {
    error = {};
    return true;
}

bool MemoryHistoryStore::Query(const HistoryQuery& query, const std::function<bool(const VfiRecord&)>& visitor,
                               HistoryError& error) {
    error = {};
    std::vector<VfiRecord> found;
    {
        const std::shared_lock lock(m_lock);
        const auto tag = m_tags.find(query.tagId);
        if (tag == m_tags.end()) {
            return true;
        }
        RepetitionFilter filter;
        for (auto it = tag->second.lower_bound({query.from.value_or(0), 0}); it != tag->second.end(); ++it) {
            if ((query.to && it->first.first > *query.to) || (query.limit != 0 && found.size() == query.limit)) {
                break;
            }
            VfiRecord record{};
            record.tagId = query.tagId;
            record.time = it->first.first;
            record.milliseconds = it->first.second;
            record.valueType = it->second.valueType;
            SetVfiValue(record, it->second.value);
            it->second.text.copy(record.text, sizeof record.text - 1);
            if (query.all || !filter.Repeats(record)) {
                found.push_back(record);
            }
        }
    }
    for (const VfiRecord& record : found) {
        if (!visitor(record)) {
            break;
        }
    }
    return true;
}

bool MemoryHistoryStore::Count(std::vector<HistoryCount>& counts, HistoryError& error) {
    error = {};
    counts.clear();
    const std::shared_lock lock(m_lock);
    for (const auto& [tagId, series] : m_tags) {
        counts.push_back({tagId, series.size()});
    }
    return true;
}
