// A historical store that lives as long as its object: for tests, and for runs that should leave nothing behind.
#pragma once

#include "api/kernel/HistoryStore.h"

#include <map>
#include <shared_mutex>
#include <utility>

class MemoryHistoryStore : public HistoryStore {
public:
    bool Write(std::span<const VfiRecord> records, HistoryError& error) override;
    bool Flush(HistoryError& error) override;
    // The visitor runs without a lock: it may write to the store.
    bool Query(const HistoryQuery& query, const std::function<bool(const VfiRecord&)>& visitor,
               HistoryError& error) override;
    bool Count(std::vector<HistoryCount>& counts, HistoryError& error) override;

private:
    // A text is kept as long as it is; a number keeps none.
    struct Entry {
        std::uint16_t valueType;
        double value;
        std::string text;
    };
    using Instant = std::pair<std::uint32_t, std::uint16_t>; // seconds, milliseconds
    using Series = std::multimap<Instant, Entry>;            // equal instants stand in the order of storing

    mutable std::shared_mutex m_lock;
    std::map<std::uint32_t, Series> m_tags; // guarded by m_lock
};
