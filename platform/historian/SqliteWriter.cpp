#include "platform/historian/SqliteWriter.h"

#include "platform/historian/HistoryRecords.h"
#include "platform/historian/SqliteValue.h"

#include <string>

int SqliteWriter::Prepare(SqliteConnection& connection) {
    m_connection = &connection;
    // Instants hardly ever come twice, so seq is 0 at first. Where one does come twice the whole transaction goes back
    // and the block is stored the slow way; rolling back all of it saves the copies that undoing one statement would
    // need.
    const std::string row = "(?,?,?,0,?,?)";
    const std::string insert = "INSERT OR ROLLBACK INTO record(tag,time,ms,seq,value,text) VALUES";
    std::string rows = row;
    for (std::size_t i = 1; i < RECORDS_AT_ONCE; ++i) {
        rows += "," + row;
    }
    const std::string behind = "INSERT INTO record(tag,time,ms,seq,value,text) VALUES(?1,?2,?3,"
                               "(SELECT ifnull(max(seq)+1,0) FROM record WHERE tag=?1 AND time=?2 AND ms=?3),?4,?5)";
    int result = m_begin.Prepare(connection, "BEGIN IMMEDIATE");
    for (const auto& [statement, sql] : {std::pair(&m_commit, std::string("COMMIT")),
                                         {&m_insertMany, insert + rows},
                                         {&m_insertOne, insert + row},
                                         {&m_insertBehind, behind}}) {
        if (result == SQLITE_OK) {
            result = statement->Prepare(connection, sql.c_str());
        }
    }
    return result;
}

int SqliteWriter::Write(std::span<const VfiRecord> records, std::string& error) {
    int result = m_begin.Run();
    if (result == SQLITE_OK) {
        result = Insert(records);
        if (result == SQLITE_CONSTRAINT_PRIMARYKEY) {
            result = m_begin.Run();
            if (result == SQLITE_OK) {
                result = InsertBehindEqualInstants(records);
            }
        }
        if (result == SQLITE_OK) {
            result = m_commit.Run();
        }
    }
    if (result != SQLITE_OK) {
        error = m_connection->ErrorText();
        if (!m_connection->IsIdle()) {
            m_connection->Execute("ROLLBACK");
        }
    }
    return result;
}

int SqliteWriter::Insert(std::span<const VfiRecord> records) {
    int result = SQLITE_OK;
    while (!records.empty() && result == SQLITE_OK) {
        const bool many = records.size() >= RECORDS_AT_ONCE;
        SqliteStatement& statement = many ? m_insertMany : m_insertOne;
        const std::size_t count = many ? RECORDS_AT_ONCE : 1;
        for (std::size_t i = 0; i < count; ++i) {
            Bind(statement, i, records[i]);
        }
        result = statement.Run();
        records = records.subspan(count);
    }
    return result;
}

int SqliteWriter::InsertBehindEqualInstants(std::span<const VfiRecord> records) {
    int result = SQLITE_OK;
    for (std::size_t i = 0; i < records.size() && result == SQLITE_OK; ++i) {
        Bind(m_insertBehind, 0, records[i]);
        result = m_insertBehind.Run();
    }
    return result;
}

void SqliteWriter::Bind(SqliteStatement& statement, std::size_t position, const VfiRecord& record) {
    const int first = static_cast<int>(position) * VALUES_PER_RECORD + 1;
    statement.Bind(first, std::int64_t{record.tagId});
    statement.Bind(first + 1, std::int64_t{record.time});
    statement.Bind(first + 2, std::int64_t{record.milliseconds});
    const double value = VfiValue(record);
    if (IsSqlReal(value)) {
        statement.Bind(first + 3, value);
    } else {
        m_bits[position] = BitsOfValue(value);
        statement.BindBlob(first + 3, m_bits[position].data(), m_bits[position].size());
    }
    if (record.valueType != VFI_TEXT) {
        statement.BindNull(first + 4);
    } else if (const std::string_view text = RecordText(record); IsUtf8(text)) {
        statement.BindText(first + 4, text);
    } else {
        statement.BindBlob(first + 4, text.data(), text.size());
    }
}
