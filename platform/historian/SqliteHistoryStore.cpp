#include "platform/historian/SqliteHistoryStore.h"

#include "platform/historian/HistoryRecords.h"
#include "platform/historian/Sqlite.h"
#include "platform/historian/SqliteSchema.h"
#include "platform/historian/SqliteValue.h"
#include "platform/historian/SqliteWriter.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <utility>

namespace {

// A connection that only reads, with its statements. Destroyed in reverse: the statements go first.
struct Reader {
    SqliteConnection connection;
    SqliteStatement query;
    SqliteStatement count;

    bool Open(const std::filesystem::path& path, std::chrono::milliseconds busyTimeout) {
        return connection.Open(path, SQLITE_OPEN_READONLY, busyTimeout) == SQLITE_OK &&
               connection.Execute("PRAGMA trusted_schema=OFF") == SQLITE_OK &&
               query.Prepare(connection, "SELECT time,ms,value,text FROM record WHERE tag=?1 AND time BETWEEN ?2 AND ?3"
                                         " ORDER BY time,ms,seq") == SQLITE_OK &&
               count.Prepare(connection, "SELECT tag,count(*) FROM record GROUP BY tag ORDER BY tag") == SQLITE_OK;
    }
};

// False when the row is not one that a store wrote.
bool ReadRecord(const SqliteStatement& row, std::uint32_t tagId, VfiRecord& record) {
    record = {};
    record.tagId = tagId;
    record.time = static_cast<std::uint32_t>(row.ColumnInteger(0));
    record.milliseconds = static_cast<std::uint16_t>(row.ColumnInteger(1));
    if (row.ColumnType(2) == SQLITE_FLOAT) {
        SetVfiValue(record, row.ColumnDouble(2));
    } else if (const std::string_view bits = row.ColumnBytes(2);
               row.ColumnType(2) == SQLITE_BLOB && bits.size() == sizeof(double)) {
        SetVfiValue(record, ValueOfBits(bits));
    } else {
        return false;
    }
    record.valueType = row.ColumnType(3) == SQLITE_NULL ? VFI_NUMBER : VFI_TEXT;
    const std::string_view text = row.ColumnBytes(3);
    if (text.size() >= sizeof record.text) {
        return false;
    }
    text.copy(record.text, text.size());
    return true;
}

} // namespace

class SqliteHistoryStore::Impl {
public:
    bool Open(const std::filesystem::path& path, const Settings& settings, std::string& error);
    bool Write(std::span<const VfiRecord> records, HistoryError& error);
    // Runs use with a reader that no other thread has. False when there is none or use says so.
    template <typename Use>
    bool WithReader(HistoryError& error, Use use);

private:
    bool Configure(std::string& error);

    std::filesystem::path m_path;
    Settings m_settings;

    std::mutex m_writeLock;
    SqliteConnection m_connection; // guarded by m_writeLock; closed last, when it empties the write-ahead log
    SqliteWriter m_writer;         // guarded by m_writeLock

    std::mutex m_readersLock;
    std::vector<std::unique_ptr<Reader>> m_readers; // the idle ones, guarded by m_readersLock
};

bool SqliteHistoryStore::Impl::Open(const std::filesystem::path& path, const Settings& settings, std::string& error) {
    std::error_code failure;
    m_path = std::filesystem::absolute(path, failure); // connections open later, when the current folder may be another
    if (failure) {
        error = "history database: no current folder: " + failure.message();
        return false;
    }
    m_settings = settings;
    const HistoryFile file = ProbeHistoryFile(m_path, error);
    if (file == HistoryFile::Refused) {
        return false;
    }
    const int flags = settings.readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    if (m_connection.Open(m_path, flags, settings.busyTimeout) != SQLITE_OK ||
        m_connection.Execute("PRAGMA trusted_schema=OFF; PRAGMA cell_size_check=ON; PRAGMA synchronous=EXTRA") !=
            SQLITE_OK) {
        error = m_connection.ErrorText();
        return false;
    }
    if (file == HistoryFile::Missing && !settings.readOnly && !CreateHistorySchema(m_connection)) {
        error = m_connection.ErrorText();
        return false;
    }
    return CheckHistorySchema(m_connection, error) && (settings.readOnly || Configure(error));
}

bool SqliteHistoryStore::Impl::Configure(std::string& error) {
    // The write-ahead log makes a block one sequential write and one fsync, and lets queries run beside the writer.
    // Each commit is synced because synchronous is above NORMAL.
    const auto mode = m_connection.ReadText("PRAGMA journal_mode=WAL");
    if (!mode) {
        error = m_connection.ErrorText();
        return false;
    }
    if (*mode != "wal") {
        error = "history database: the file system has no write-ahead log, journal is " + *mode;
        return false;
    }
    // The read opens the log. Only a connection that has it open clears it away when it closes, and this one closes
    // last.
    constexpr const char* SETTINGS = "PRAGMA journal_size_limit=16777216;" // bytes kept of a log that grew larger
                                     "SELECT count(*) FROM sqlite_schema";
    int result = m_connection.Execute(SETTINGS);
    if (result == SQLITE_OK && m_settings.maximumBytes != 0) {
        const std::int64_t pageSize = m_connection.ReadInteger("PRAGMA page_size").value_or(4096);
        const std::uint64_t pages = std::max<std::uint64_t>(m_settings.maximumBytes / pageSize, 1);
        result = m_connection.Execute(("PRAGMA max_page_count=" + std::to_string(pages)).c_str());
    }
    if (result != SQLITE_OK || m_writer.Prepare(m_connection) != SQLITE_OK) {
        error = m_connection.ErrorText();
        return false;
    }
    return true;
}

bool SqliteHistoryStore::Impl::Write(std::span<const VfiRecord> records, HistoryError& error) {
    if (m_settings.readOnly) {
        error.text = "history database is open for reading only";
        return false;
    }
    const std::lock_guard lock(m_writeLock);
    return m_writer.Write(records, error.text) == SQLITE_OK;
}

template <typename Use>
bool SqliteHistoryStore::Impl::WithReader(HistoryError& error, Use use) {
    std::unique_ptr<Reader> reader;
    {
        const std::lock_guard lock(m_readersLock);
        if (!m_readers.empty()) {
            reader = std::move(m_readers.back());
            m_readers.pop_back();
        }
    }
    if (!reader) {
        reader = std::make_unique<Reader>();
        if (!reader->Open(m_path, m_settings.busyTimeout)) {
            error.text = reader->connection.ErrorText();
            return false;
        }
    }
    if (!use(*reader)) {
        return false; // a connection that failed is not used again
    }
    const std::lock_guard lock(m_readersLock);
    m_readers.push_back(std::move(reader));
    return true;
}

SqliteHistoryStore::SqliteHistoryStore(std::unique_ptr<Impl> impl) : m_impl(std::move(impl)) {}

SqliteHistoryStore::~SqliteHistoryStore() = default;

std::unique_ptr<SqliteHistoryStore> SqliteHistoryStore::Open(const std::filesystem::path& path,
                                                             const Settings& settings, HistoryError& error) {
    error = {};
    auto impl = std::make_unique<Impl>();
    if (!impl->Open(path, settings, error.text)) {
        return nullptr;
    }
    return std::unique_ptr<SqliteHistoryStore>(new SqliteHistoryStore(std::move(impl)));
}

bool SqliteHistoryStore::Write(std::span<const VfiRecord> records, HistoryError& error) {
    error = {};
    if (!CheckRecords(records, error)) {
        return false;
    }
    return records.empty() || m_impl->Write(records, error);
}

bool SqliteHistoryStore::Flush(HistoryError& error) {
    error = {}; // every Write has synced its own block
    return true;
}

bool SqliteHistoryStore::Query(const HistoryQuery& query, const std::function<bool(const VfiRecord&)>& visitor,
                               HistoryError& error) {
    error = {};
    return m_impl->WithReader(error, [&](Reader& reader) {
        reader.query.Bind(1, std::int64_t{query.tagId});
        reader.query.Bind(2, std::int64_t{query.from.value_or(0)});
        reader.query.Bind(3, std::int64_t{query.to.value_or(std::numeric_limits<std::uint32_t>::max())});
        RepetitionFilter filter;
        std::uint64_t given = 0;
        int result = SQLITE_ROW;
        bool wanted = true;
        while (wanted && (query.limit == 0 || given < query.limit) && (result = reader.query.Step()) == SQLITE_ROW) {
            VfiRecord record;
            if (!ReadRecord(reader.query, query.tagId, record)) {
                error.text = "history database: a record of tag " + std::to_string(query.tagId) + " at " +
                             std::to_string(record.time) + " is damaged";
                return false;
            }
            if (query.all || !filter.Repeats(record)) {
                wanted = visitor(record);
                ++given;
            }
        }
        if (result != SQLITE_ROW && result != SQLITE_DONE) {
            error.text = reader.connection.ErrorText();
        }
        reader.query.Reset();
        return error.text.empty();
    });
}

bool SqliteHistoryStore::Count(std::vector<HistoryCount>& counts, HistoryError& error) {
    error = {};
    counts.clear();
    return m_impl->WithReader(error, [&](Reader& reader) {
        int result;
        while ((result = reader.count.Step()) == SQLITE_ROW) {
            counts.push_back({static_cast<std::uint32_t>(reader.count.ColumnInteger(0)),
                              static_cast<std::uint64_t>(reader.count.ColumnInteger(1))});
        }
        if (result != SQLITE_DONE) {
            error.text = reader.connection.ErrorText();
        }
        reader.count.Reset();
        return error.text.empty();
    });
}
