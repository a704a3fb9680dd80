// The historical store in one SQLite file. Records that Write has accepted survive a crash of the program and of the
// machine. The file may be read by other programs while the store is open.
//
// Any thread may call any operation. Writers wait for each other; queries run beside them, each on a connection of its
// own, and see the blocks that were stored when they began.
#pragma once

#include "api/kernel/HistoryStore.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>

class SqliteHistoryStore : public HistoryStore {
public:
    struct Settings {
        std::chrono::milliseconds busyTimeout{2000}; // how long an operation waits for another program's lock
        std::uint64_t maximumBytes = 0;              // the database never grows beyond; 0: as far as the disk goes
        bool readOnly = false;                       // a missing file is an error, Write fails
    };

    // Opens the file, and makes it if it is missing or empty; its folder must exist. Null: error says why, and a file
    // that is damaged, foreign or of a newer layout is left as it is.
    static std::unique_ptr<SqliteHistoryStore> Open(const std::filesystem::path& path, const Settings& settings,
                                                    HistoryError& error);
    // No operation may be running.
    ~SqliteHistoryStore() override;

    bool Write(std::span<const VfiRecord> records, HistoryError& error) override;
    bool Flush(HistoryError& error) override;
    // The visitor runs without a lock: it may use the store.
    bool Query(const HistoryQuery& query, const std::function<bool(const VfiRecord&)>& visitor,
               HistoryError& error) override;
    bool Count(std::vector<HistoryCount>& counts, HistoryError& error) override;

private:
    class Impl;
    explicit SqliteHistoryStore(std::unique_ptr<Impl> impl);

    std::unique_ptr<Impl> m_impl;
};
