#include "bench/BareHistory.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdlib>

namespace bench {
namespace {

constexpr sqlite3_int64 kFirstTime = 1'767'225'600;
constexpr sqlite3_int64 kInterval = 60;

void Check(bool good, sqlite3* database) {
    if (good)
        return;
    fmt::print(stderr, "bdc-bench: {}\n", sqlite3_errmsg(database));
    std::_Exit(2);
}

void Run(sqlite3* database, const char* sql) {
    Check(sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK, database);
}

} // namespace

double BareInsertSeconds(const std::string& path, std::uint32_t tags, std::uint64_t records, std::uint64_t batch) {
    sqlite3* database = nullptr;
    Check(sqlite3_open(path.c_str(), &database) == SQLITE_OK, database);
    Run(database, "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;"
                  "CREATE TABLE record(tag INTEGER, time INTEGER, ms INTEGER, type INTEGER, value REAL, text TEXT)");
    sqlite3_stmt* insert = nullptr;
    Check(sqlite3_prepare_v2(database, "INSERT INTO record VALUES(?,?,?,?,?,NULL)", -1, &insert, nullptr) == SQLITE_OK,
          database);
    const auto start = std::chrono::steady_clock::now();
    for (std::uint32_t tag = 0; tag < tags; ++tag) {
        for (std::uint64_t row = 0; row < records; ++row) {
            if (row % batch == 0)
                Run(database, "BEGIN");
            sqlite3_bind_int64(insert, 1, 0x10000 + tag);
            sqlite3_bind_int64(insert, 2, kFirstTime + static_cast<sqlite3_int64>(row) * kInterval);
            sqlite3_bind_int64(insert, 3, 0);
            sqlite3_bind_int64(insert, 4, 2);
            sqlite3_bind_double(insert, 5, static_cast<double>(row) / 8);
            Check(sqlite3_step(insert) == SQLITE_DONE, database);
            sqlite3_reset(insert);
            if (row % batch == batch - 1 || row + 1 == records)
                Run(database, "COMMIT");
        }
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    sqlite3_finalize(insert);
    sqlite3_close(database);
    return elapsed.count();
}

} // namespace bench
