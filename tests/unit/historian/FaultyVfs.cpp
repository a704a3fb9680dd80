#include "tests/unit/historian/FaultyVfs.h"

#include <map>

FaultyVfs* FaultyVfs::s_current = nullptr;

namespace {

// A kind of file's methods, with ours in the place of some. The real file system has one table for each kind.
struct Methods {
    sqlite3_io_methods ours; // first: a file's pMethods points here
    const sqlite3_io_methods* real;
};

const sqlite3_io_methods& Real(const sqlite3_file* file) {
    return *reinterpret_cast<const Methods*>(file->pMethods)->real;
}

std::map<const sqlite3_io_methods*, Methods> g_methods; // by the real table

} // namespace

FaultyVfs::FaultyVfs() : m_real(sqlite3_vfs_find(nullptr)), m_vfs(*m_real) {
    s_current = this;
    m_vfs.zName = "faulty";
    m_vfs.xOpen = Open;
    sqlite3_vfs_register(&m_vfs, 1);
}

FaultyVfs::~FaultyVfs() {
    sqlite3_vfs_unregister(&m_vfs);
    sqlite3_vfs_register(m_real, 1);
    s_current = nullptr;
}

void FaultyVfs::FailAfter(int operations, int code) {
    m_failAfter = operations;
    m_code = code;
}

void FaultyVfs::Heal() {
    m_failAfter = -1;
}

int FaultyVfs::Next() {
    ++s_current->m_operations;
    if (s_current->m_failAfter == 0) {
        return s_current->m_code;
    }
    if (s_current->m_failAfter > 0) {
        --s_current->m_failAfter;
    }
    return SQLITE_OK;
}

int FaultyVfs::Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    // The real file system finds its own settings through the object that it is given.
    const int result = s_current->m_real->xOpen(s_current->m_real, name, file, flags, outFlags);
    if (result == SQLITE_OK && file->pMethods != nullptr) {
        const auto [entry, isNew] = g_methods.try_emplace(file->pMethods);
        if (isNew) {
            entry->second = {*file->pMethods, file->pMethods};
            entry->second.ours.xWrite = Write;
            entry->second.ours.xSync = Sync;
        }
        file->pMethods = &entry->second.ours;
    }
    return result;
}

int FaultyVfs::Write(sqlite3_file* file, const void* data, int size, sqlite3_int64 offset) {
    const int result = Next();
    return result == SQLITE_OK ? Real(file).xWrite(file, data, size, offset) : result;
}

int FaultyVfs::Sync(sqlite3_file* file, int flags) {
    const int result = Next();
    if (result == SQLITE_OK) {
        ++s_current->m_syncs;
    }
    return result == SQLITE_OK ? Real(file).xSync(file, flags) : result;
}
