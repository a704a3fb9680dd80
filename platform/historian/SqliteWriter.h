// Puts blocks of records into the history database, one transaction a block. Used by one thread at a time.
#pragma once

#include "api/kernel/VfiRecord.h"
#include "platform/historian/Sqlite.h"

#include <array>
#include <cstdint>
#include <span>

class SqliteWriter {
public:
    // connection outlives the writer.
    int Prepare(SqliteConnection& connection);
    // Stores the records, which have been checked, durably before it returns SQLITE_OK. After any other result nothing
    // of them is stored and error is the text for the operator.
    int Write(std::span<const VfiRecord> records, std::string& error);

private:
    // Records to one statement: with 25 the store writes about as fast as a plain table is appended to.
    static constexpr std::size_t RECORDS_AT_ONCE = 25;
    static constexpr int VALUES_PER_RECORD = 5;

    int Insert(std::span<const VfiRecord> records);
    int InsertBehindEqualInstants(std::span<const VfiRecord> records);
    void Bind(SqliteStatement& statement, std::size_t position, const VfiRecord& record);

    SqliteConnection* m_connection = nullptr;
    SqliteStatement m_begin;
    SqliteStatement m_commit;
    SqliteStatement m_insertMany;
    SqliteStatement m_insertOne;
    SqliteStatement m_insertBehind;
    std::array<std::uint8_t, sizeof(double)> m_bits[RECORDS_AT_ONCE]; // of values that SQL cannot hold, while bound
};
