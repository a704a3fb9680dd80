#include "platform/historian/Sqlite.h"

int SqliteConnection::Open(const std::filesystem::path& path, int flags, std::chrono::milliseconds busyTimeout) {
    const std::u8string name = path.u8string();
    m_name.assign(name.begin(), name.end());
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(m_name.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    m_handle.reset(handle); // even a failed open gives a handle that must be closed
    if (handle != nullptr) {
        sqlite3_extended_result_codes(handle, 1);
        sqlite3_busy_timeout(handle, static_cast<int>(busyTimeout.count()));
    }
    return result;
}

int SqliteConnection::Execute(const char* sql) {
    return sqlite3_exec(Handle(), sql, nullptr, nullptr, nullptr);
}

std::optional<std::string> SqliteConnection::ReadText(const char* sql) {
    SqliteStatement statement;
    if (statement.Prepare(*this, sql) != SQLITE_OK || statement.Step() != SQLITE_ROW) {
        return std::nullopt;
    }
    return std::string(statement.ColumnBytes(0));
}

std::optional<std::int64_t> SqliteConnection::ReadInteger(const char* sql) {
    SqliteStatement statement;
    if (statement.Prepare(*this, sql) != SQLITE_OK || statement.Step() != SQLITE_ROW) {
        return std::nullopt;
    }
    return statement.ColumnInteger(0);
}

bool SqliteConnection::IsIdle() const {
    return sqlite3_get_autocommit(Handle()) != 0;
}

int SqliteConnection::ErrorCode() const {
    return m_handle ? sqlite3_extended_errcode(Handle()) : SQLITE_NOMEM;
}

std::string SqliteConnection::ErrorText() const {
    const char* meaning = "cannot be used";
    switch (ErrorCode() & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        meaning = "is locked by another program";
        break;
    case SQLITE_FULL:
        meaning = "has no room to grow";
        break;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        meaning = "is damaged";
        break;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        meaning = "cannot be written";
        break;
    case SQLITE_CANTOPEN:
        meaning = "cannot be opened";
        break;
    default:
        break;
    }
    return "history database " + m_name + " " + meaning + ": " +
           (m_handle ? sqlite3_errmsg(Handle()) : sqlite3_errstr(SQLITE_NOMEM));
}

int SqliteStatement::Prepare(const SqliteConnection& connection, const char* sql) {
    sqlite3_stmt* handle = nullptr;
    const int result = sqlite3_prepare_v3(connection.Handle(), sql, -1, SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
    m_handle.reset(handle);
    return result;
}

void SqliteStatement::Bind(int parameter, std::int64_t value) {
    sqlite3_bind_int64(m_handle.get(), parameter, value);
}

void SqliteStatement::Bind(int parameter, double value) {
    sqlite3_bind_double(m_handle.get(), parameter, value);
}

void SqliteStatement::BindNull(int parameter) {
    sqlite3_bind_null(m_handle.get(), parameter);
}

void SqliteStatement::BindText(int parameter, std::string_view text) {
    sqlite3_bind_text(m_handle.get(), parameter, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

void SqliteStatement::BindBlob(int parameter, const void* data, std::size_t size) {
    sqlite3_bind_blob(m_handle.get(), parameter, data, static_cast<int>(size), SQLITE_STATIC);
}

int SqliteStatement::Run() {
    int result;
    do {
        result = Step();
    } while (result == SQLITE_ROW);
    Reset();
    return result == SQLITE_DONE ? SQLITE_OK : result;
}

std::string_view SqliteStatement::ColumnBytes(int column) const {
    // The pointer first: asking for the size first may convert the value.
    const void* data = sqlite3_column_blob(m_handle.get(), column);
    const int size = sqlite3_column_bytes(m_handle.get(), column);
    return data ? std::string_view(static_cast<const char*>(data), static_cast<std::size_t>(size)) : std::string_view();
}
