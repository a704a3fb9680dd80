#include "host/LockFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

// The number that stands in the lock file; empty when there is none.
std::string OwnerOf(int descriptor) {
    char text[16] = {};
    const ssize_t count = pread(descriptor, text, sizeof text, 0);
    std::string number(text, count > 0 ? static_cast<std::size_t>(count) : 0);
    number.resize(std::min(number.find_first_not_of("0123456789"), number.size()));
    return number;
}

} // namespace

bool CLockFile::Acquire(const std::string& path, std::string& error) {
    CFileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!file) {
        error = ErrnoText(path, "cannot be opened");
        return false;
    }
    int result = 0;
    do {
        result = flock(file.Get(), LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        if (errno != EWOULDBLOCK) {
            error = ErrnoText(path, "cannot be locked");
            return false;
        }
        const std::string owner = OwnerOf(file.Get());
        error = path + ": another instance is running" + (owner.empty() ? "" : " (process " + owner + ")");
        return false;
    }
    const std::string own = std::to_string(getpid()) + "\n";
    if (ftruncate(file.Get(), 0) != 0 ||
        pwrite(file.Get(), own.data(), own.size(), 0) != static_cast<ssize_t>(own.size())) {
        error = ErrnoText(path, "cannot be written");
        return false;
    }
    m_file = std::move(file);
    return true;
}
