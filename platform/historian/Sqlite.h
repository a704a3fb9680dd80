// A thin owner of one SQLite connection and of its prepared statements. A connection and its statements are used by one
// thread at a time: whoever holds one guards it.
//
// Results are SQLite's own codes; the connection keeps the text of the last failure until the next call.
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class SqliteConnection {
public:
    // path is absolute: such a one is never taken for a URI or for one of SQLite's special names. flags as
    // sqlite3_open_v2 takes them. A connection that fails to open keeps its error.
    int Open(const std::filesystem::path& path, int flags, std::chrono::milliseconds busyTimeout);
    // Runs statements that take no values and give no rows that matter.
    int Execute(const char* sql);
    // First column of the only row that a statement gives; none when it fails.
    std::optional<std::string> ReadText(const char* sql);
    std::optional<std::int64_t> ReadInteger(const char* sql);
    // True while no transaction is open.
    bool IsIdle() const;

    // One line for the operator, naming the file and what it means for him.
    std::string ErrorText() const;
    int ErrorCode() const; // extended

    sqlite3* Handle() const { return m_handle.get(); }

private:
    struct Closer {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::unique_ptr<sqlite3, Closer> m_handle;
    std::string m_name; // UTF-8, for error texts
};

// Bound text and blobs are not copied: they outlive the next Reset. Parameters count from 1, columns from 0.
class SqliteStatement {
public:
    // Statements are kept for the life of their connection, which must outlive them.
    int Prepare(const SqliteConnection& connection, const char* sql);

    void Bind(int parameter, std::int64_t value);
    void Bind(int parameter, double value);
    void BindNull(int parameter);
    void BindText(int parameter, std::string_view text);
    void BindBlob(int parameter, const void* data, std::size_t size);

    int Step() { return sqlite3_step(m_handle.get()); } // SQLITE_ROW, SQLITE_DONE or an error
    void Reset() { sqlite3_reset(m_handle.get()); }
    int Run(); // Step to the end and Reset: SQLITE_OK or an error

    int ColumnType(int column) const { return sqlite3_column_type(m_handle.get(), column); }
    std::int64_t ColumnInteger(int column) const { return sqlite3_column_int64(m_handle.get(), column); }
    double ColumnDouble(int column) const { return sqlite3_column_double(m_handle.get(), column); }
    // The bytes of a text or blob as they are stored, valid until the next Step or Reset.
    std::string_view ColumnBytes(int column) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
    };
    std::unique_ptr<sqlite3_stmt, Finalizer> m_handle;
};
