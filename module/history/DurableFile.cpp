#include "module/history/DurableFile.h"

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    int Get() const { return m_fd; }
    bool IsOpen() const { return m_fd >= 0; }
    bool Close() {
        const int fd = m_fd;
        m_fd = -1;
        return fd < 0 || ::close(fd) == 0;
    }

private:
    int m_fd;
};

bool WriteAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool SyncFolder(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    const Descriptor descriptor(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor.IsOpen() && ::fsync(descriptor.Get()) == 0;
}

} // namespace

FileRead ReadWholeFile(const std::string& path, std::size_t limit, std::string& text) {
    // Not blocking: the path may be a pipe.
    const Descriptor descriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!descriptor.IsOpen())
        return errno == ENOENT ? FileRead::Missing : FileRead::Failed;
    struct stat status {};
    if (::fstat(descriptor.Get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size < 0 ||
        static_cast<std::size_t>(status.st_size) > limit)
        return FileRead::Failed;
    std::string read(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t size = 0;
    while (size < read.size()) {
        const ssize_t got = ::read(descriptor.Get(), read.data() + size, read.size() - size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return FileRead::Failed;
        if (got == 0)
            break;
        size += static_cast<std::size_t>(got);
    }
    read.resize(size);
    text = std::move(read);
    return FileRead::Ok;
}

bool ReplaceWholeFile(const std::string& path, std::string_view text) {
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(path, error);
    const std::string target = error ? path : resolved.string();
    const std::string temporary = target + ".tmp";

    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode))
        return false;

    Descriptor descriptor(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!descriptor.IsOpen())
        return false;
    const bool written = (!exists || ::fchmod(descriptor.Get(), old.st_mode & 07777) == 0) &&
                         WriteAll(descriptor.Get(), text) && ::fsync(descriptor.Get()) == 0;
    // Closed in any case, and a failure of it counts: it may be the first to tell of a full disk.
    if (!descriptor.Close() || !written || ::rename(temporary.c_str(), target.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    return SyncFolder(target);
}
