// A SQLite file system that counts how often files are made durable and fails when told to. While an object lives it is
// SQLite's default; one at a time.
#pragma once

#include <sqlite3.h>

class FaultyVfs {
public:
    FaultyVfs();
    ~FaultyVfs();
    FaultyVfs(const FaultyVfs&) = delete;
    FaultyVfs& operator=(const FaultyVfs&) = delete;

    // Lets this many writes and syncs pass and fails all that follow with code (SQLITE_FULL, SQLITE_IOERR_FSYNC, ...).
    void FailAfter(int operations, int code);
    void Heal();

    int Syncs() const { return m_syncs; }
    int Operations() const { return m_operations; }

private:
    static int Open(sqlite3_vfs*, const char* name, sqlite3_file*, int flags, int* outFlags);
    static int Write(sqlite3_file*, const void* data, int size, sqlite3_int64 offset);
    static int Sync(sqlite3_file*, int flags);

    static int Next();

    static FaultyVfs* s_current;

    sqlite3_vfs* m_real;
    sqlite3_vfs m_vfs;
    int m_syncs = 0;
    int m_operations = 0;
    int m_failAfter = -1; // operations still to pass; -1: all
    int m_code = SQLITE_OK;
};
