// A lock between processes, for short work on a file that several of them write: an advisory lock on a file that is
// made for it and stays. It ends with its owner or with the process, however that ends. Used by one thread at a time;
// two locks of one process exclude each other too.
#pragma once

#include "base/FileDescriptor.h"

#include <cstdint>
#include <string>

class CFileLock {
public:
    // Waits at most so many milliseconds. False, with one line for people: the lock file cannot be made, or others have
    // the lock all the time.
    bool Acquire(const std::string& path, std::uint32_t timeout, std::string& error);

private:
    CFileDescriptor m_file;
};
