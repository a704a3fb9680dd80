#include "base/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <thread>

bool CFileLock::Acquire(const std::string& path, std::uint32_t timeout, std::string& error) {
    constexpr std::chrono::milliseconds pause(5);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout);
    CFileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!file) {
        error = ErrnoText(path, "cannot be opened");
        return false;
    }
    while (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            error = ErrnoText(path, "cannot be locked");
            return false;
        }
        if (std::chrono::steady_clock::now() >= end) {
            error = path + ": another process holds the lock";
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    m_file = std::move(file);
    return true;
}
