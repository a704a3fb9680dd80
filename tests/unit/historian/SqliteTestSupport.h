// A second SQLite connection to look at, lock or spoil the history database, and the sqlite3 tool.
#pragma once

#include "platform/historian/SqliteHistoryStore.h"
#include "tests/unit/historian/HistoryTestSupport.h"

#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

class OtherProgram {
public:
    explicit OtherProgram(const std::filesystem::path& path) {
        EXPECT_EQ(sqlite3_open(path.c_str(), &m_handle), SQLITE_OK);
    }
    ~OtherProgram() { sqlite3_close(m_handle); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    void Execute(const std::string& sql) {
        EXPECT_EQ(sqlite3_exec(m_handle, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
            << sql << ": " << sqlite3_errmsg(m_handle);
    }

private:
    sqlite3* m_handle = nullptr;
};

inline std::unique_ptr<SqliteHistoryStore> OpenGood(const std::filesystem::path& path,
                                                    const SqliteHistoryStore::Settings& settings = {}) {
    HistoryError error;
    auto store = SqliteHistoryStore::Open(path, settings, error);
    EXPECT_TRUE(store) << error.text;
    return store;
}

// Why a file is refused.
inline std::string OpenError(const std::filesystem::path& path, const SqliteHistoryStore::Settings& settings = {}) {
    HistoryError error;
    EXPECT_FALSE(SqliteHistoryStore::Open(path, settings, error));
    EXPECT_FALSE(error.recordIndex);
    EXPECT_EQ(error.text.find('\n'), std::string::npos);
    return error.text;
}

inline std::string FileBytes(const std::filesystem::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

inline void WriteFile(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline bool HasSqliteTool() {
    return BDC_SQLITE3_TOOL[0] != '\0';
}

// What the sqlite3 tool prints for a statement.
inline std::string SqliteTool(const std::filesystem::path& path, const std::string& sql) {
    const std::string command = std::string(BDC_SQLITE3_TOOL) + " '" + path.string() + "' \"" + sql + "\" 2>&1";
    std::string output;
    FILE* pipe = ::popen(command.c_str(), "r");
    EXPECT_NE(pipe, nullptr);
    std::array<char, 4096> buffer{};
    for (std::size_t size; (size = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
        output.append(buffer.data(), size);
    }
    EXPECT_EQ(::pclose(pipe), 0) << output;
    return output;
}
