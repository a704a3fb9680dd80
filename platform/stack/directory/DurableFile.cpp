#include "platform/stack/directory/DurableFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fstream>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace bacnet::directory {

namespace {

constexpr std::size_t writeLimit = 1U << 30; // what one call of every platform takes

#ifdef _WIN32
int OpenForWriting(const std::filesystem::path& path) {
    return ::_wopen(path.c_str(), _O_CREAT | _O_TRUNC | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
}
long long WriteSome(int file, const char* data, std::size_t size) {
    return ::_write(file, data, static_cast<unsigned>(size));
}
bool Sync(int file) {
    return ::_commit(file) == 0;
}
bool Close(int file) {
    return ::_close(file) == 0;
}
#else
int OpenForWriting(const std::filesystem::path& path) {
    return ::open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0644);
}
long long WriteSome(int file, const char* data, std::size_t size) {
    return ::write(file, data, size);
}
bool Sync(int file) {
    return ::fsync(file) == 0;
}
bool Close(int file) {
    return ::close(file) == 0;
}
#endif

} // namespace

FileWriter::FileWriter(const std::filesystem::path& path) : m_file(OpenForWriting(path)), m_good(m_file >= 0) {}

FileWriter::~FileWriter() {
    if (m_file >= 0)
        Close(m_file);
}

void FileWriter::Write(std::string_view bytes) {
    while (m_good && !bytes.empty()) {
        const long long written = WriteSome(m_file, bytes.data(), std::min(bytes.size(), writeLimit));
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (written < 0 && errno == EINTR)
            continue;
        else
            m_good = false;
    }
}

bool FileWriter::Finish() {
    if (m_file < 0)
        return false;
    const bool synced = m_good && Sync(m_file);
    const bool closed = Close(m_file);
    m_file = -1;
    return synced && closed;
}

bool SyncFolder(const std::filesystem::path& folder) {
#ifdef _WIN32
    return !folder.empty(); // the rename itself is written through
#else
    const int file = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool synced = ::fsync(file) == 0 || errno == EINVAL; // some network file systems cannot
    ::close(file);
    return synced;
#endif
}

bool ReadWhole(const std::filesystem::path& path, std::uint64_t maxBytes, std::string& bytes) {
    std::error_code failure;
    if (!std::filesystem::is_regular_file(path, failure))
        return false;
    const auto size = std::filesystem::file_size(path, failure);
    if (failure || size > maxBytes)
        return false;
    std::ifstream stream(path, std::ios::binary);
    bytes.resize(size);
    stream.read(bytes.data(), static_cast<std::streamsize>(size));
    return stream.good() && static_cast<std::uint64_t>(stream.gcount()) == size;
}

} // namespace bacnet::directory
