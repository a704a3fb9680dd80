#include "platform/historian/SqliteSchema.h"

#include <array>
#include <cstring>
#include <fstream>

namespace {

// One row a record, kept in the order in which a query gives them, so that there is one tree to write and no index.
// seq is 0 but for records that share tag, time and milliseconds: there it tells the order of storing.
// value is a real, or the eight bytes (little-endian) of a double that SQL cannot hold: NaN and -0.0.
// text is NULL for a number, else text, or a blob where the bytes are not UTF-8.
constexpr const char* TABLE_SQL = "CREATE TABLE record("
                                  "tag INTEGER NOT NULL,"
                                  "time INTEGER NOT NULL,"
                                  "ms INTEGER NOT NULL,"
                                  "seq INTEGER NOT NULL,"
                                  "value REAL NOT NULL,"
                                  "text TEXT,"
                                  "PRIMARY KEY(tag,time,ms,seq)) WITHOUT ROWID";

// SQLite's file header (big-endian): its first bytes, the file's size, and two numbers that it keeps for the
// application.
constexpr std::size_t HEADER_SIZE = 100;
constexpr char HEADER_MAGIC[] = "SQLite format 3"; // with its NUL
constexpr std::size_t HEADER_PAGE_SIZE = 16;       // two bytes, 1 means 65536
constexpr std::size_t HEADER_PAGE_COUNT = 28;
constexpr std::size_t HEADER_USER_VERSION = 60;
constexpr std::size_t HEADER_APPLICATION_ID = 68;

std::uint32_t BigEndian32(const std::array<char, HEADER_SIZE>& header, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<unsigned char>(header[offset + i]);
    }
    return value;
}

std::string Name(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

bool HasContents(std::filesystem::path path, const char* suffix) {
    path += suffix;
    std::error_code failure;
    const auto size = std::filesystem::file_size(path, failure);
    return !failure && size > 0;
}

// A journal that holds something belongs to a transaction that was cut short. SQLite rolls it back when it opens the
// file, and only then does the header say what the file is.
bool HasJournal(const std::filesystem::path& path) {
    return HasContents(path, "-journal");
}

// True when the file ends before its last page does. Without a log that holds the rest, the rest is lost.
bool IsCutShort(const std::filesystem::path& path, const std::array<char, HEADER_SIZE>& header) {
    if (HasContents(path, "-wal") || HasJournal(path)) {
        return false;
    }
    const std::uint32_t word = BigEndian32(header, HEADER_PAGE_SIZE) >> 16;
    const std::uint64_t pageSize = word == 1 ? 65536 : word;
    std::error_code failure;
    return std::filesystem::file_size(path, failure) < pageSize * BigEndian32(header, HEADER_PAGE_COUNT);
}

} // namespace

HistoryFile ProbeHistoryFile(const std::filesystem::path& path, std::string& error) {
    std::error_code failure;
    const auto status = std::filesystem::status(path, failure);
    if (status.type() == std::filesystem::file_type::not_found) {
        return HistoryFile::Missing;
    }
    if (!std::filesystem::is_regular_file(status)) {
        error = Name(path) + " is not a file" + (failure ? ": " + failure.message() : "");
        return HistoryFile::Refused;
    }
    std::ifstream file(path, std::ios::binary);
    std::array<char, HEADER_SIZE> header{};
    file.read(header.data(), header.size());
    const auto size = static_cast<std::size_t>(file.gcount());
    if (!file.is_open() || file.bad()) {
        error = "history database " + Name(path) + " cannot be read";
        return HistoryFile::Refused;
    }
    if (size == 0) {
        return HistoryFile::Missing;
    }
    if (size < HEADER_SIZE || std::memcmp(header.data(), HEADER_MAGIC, sizeof HEADER_MAGIC) != 0) {
        if (HasJournal(path)) {
            return HistoryFile::Missing; // its making was cut short
        }
        error = Name(path) + " is not a history database";
        return HistoryFile::Refused;
    }
    if (BigEndian32(header, HEADER_APPLICATION_ID) != HISTORY_APPLICATION_ID) {
        error = Name(path) + " is the database of another program";
        return HistoryFile::Refused;
    }
    const std::uint32_t version = BigEndian32(header, HEADER_USER_VERSION);
    if (version > HISTORY_SCHEMA_VERSION) {
        error = "history database " + Name(path) + " was made by a newer version (layout " + std::to_string(version) +
                ", known up to " + std::to_string(HISTORY_SCHEMA_VERSION) + ")";
        return HistoryFile::Refused;
    }
    if (IsCutShort(path, header)) {
        error = "history database " + Name(path) + " is damaged: its end is missing";
        return HistoryFile::Refused;
    }
    return HistoryFile::Ours;
}

bool CheckHistorySchema(SqliteConnection& connection, std::string& error) {
    const auto version = connection.ReadInteger("PRAGMA user_version");
    const auto table = connection.ReadText("SELECT ifnull(max(sql),'') FROM sqlite_schema WHERE name='record'");
    if (!version || !table) {
        error = connection.ErrorText();
        return false;
    }
    if (*version != HISTORY_SCHEMA_VERSION || *table != TABLE_SQL) {
        error = "the layout of the history database is not layout " + std::to_string(HISTORY_SCHEMA_VERSION);
        return false;
    }
    return true;
}

bool CreateHistorySchema(SqliteConnection& connection) {
    // In the rollback journal, not yet in the write-ahead log: the main file's header is ours from the first commit on.
    if (connection.Execute("BEGIN IMMEDIATE") != SQLITE_OK) {
        return false;
    }
    if (connection.ReadInteger("SELECT count(*) FROM sqlite_schema") == 0) {
        const std::string sql = "PRAGMA application_id=" + std::to_string(HISTORY_APPLICATION_ID) +
                                ";PRAGMA user_version=" + std::to_string(HISTORY_SCHEMA_VERSION) + ";" + TABLE_SQL;
        if (connection.Execute(sql.c_str()) != SQLITE_OK) {
            return false;
        }
    }
    return connection.Execute("COMMIT") == SQLITE_OK;
}
