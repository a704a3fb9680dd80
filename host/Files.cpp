#include "host/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

bool CFileDescriptor::Close() {
    const int descriptor = std::exchange(m_descriptor, -1);
    return descriptor < 0 || close(descriptor) == 0;
}

std::string ErrnoText(const std::string& path, const std::string& what) {
    return path + ": " + what + ": " + std::strerror(errno);
}

bool ReadFile(const std::string& path, std::size_t limit, std::string& text, std::string& error) {
    const CFileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file || fstat(file.Get(), &status) != 0) {
        error = ErrnoText(path, "cannot be opened");
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        error = path + ": is not a regular file";
        return false;
    }
    std::string read;
    char block[65536];
    ssize_t count = 0;
    while ((count = ::read(file.Get(), block, sizeof block)) > 0) {
        read.append(block, static_cast<std::size_t>(count));
        if (read.size() > limit) {
            error = path + ": is larger than " + std::to_string(limit) + " bytes";
            return false;
        }
    }
    if (count < 0) {
        error = ErrnoText(path, "cannot be read");
        return false;
    }
    text = std::move(read);
    return true;
}

bool WriteFileDurably(const std::string& path, std::string_view text, std::string& error) {
    const std::string temporary = path + ".new";
    CFileDescriptor file(open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (!file) {
        error = ErrnoText(temporary, "cannot be made");
        return false;
    }
    while (!text.empty()) {
        const ssize_t count = write(file.Get(), text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            error = ErrnoText(temporary, "cannot be written");
            unlink(temporary.c_str());
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    if (fsync(file.Get()) != 0 || !file.Close()) {
        error = ErrnoText(temporary, "cannot be made durable");
        unlink(temporary.c_str());
        return false;
    }
    if (rename(temporary.c_str(), path.c_str()) != 0) {
        error = ErrnoText(path, "cannot be replaced");
        unlink(temporary.c_str());
        return false;
    }
    return SyncFolderOf(path, error);
}

bool SyncFile(const std::string& path, std::string& error) {
    const CFileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file && fsync(file.Get()) == 0)
        return true;
    error = ErrnoText(path, "cannot be made durable");
    return false;
}

bool SyncFolderOf(const std::string& path, std::string& error) {
    const std::size_t slash = path.rfind('/');
    return SyncFile(slash == std::string::npos ? "." : path.substr(0, slash + 1), error);
}
