// One instance to a data folder. The lock is the kernel's (flock on FOLDER/bdc.lock), so it ends with the process,
// however that ends; the file itself stays and holds the number of the process that has the lock.
#pragma once

#include "base/FileDescriptor.h"

#include <string>

class CLockFile {
public:
    // Takes the lock, or fails at once when another process has it: error then names that process. The file's content
    // is touched only by the one who has the lock.
    bool Acquire(const std::string& path, std::string& error);
    void Release() { m_file = CFileDescriptor(); }
    bool IsHeld() const { return static_cast<bool>(m_file); }

private:
    CFileDescriptor m_file;
};
