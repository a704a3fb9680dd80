#include "base/DurableFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t transferLimit = std::size_t{1} << 30; // what one call of every platform takes

fs::path ToPath(const std::string& utf8) {
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string ToText(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

// ---- the platform's own calls
// ----------------------------------------------------------------------------------------

#ifdef _WIN32
int OpenToRead(const std::string& path) {
    return _wopen(ToPath(path).c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}
int OpenToReplace(const std::string& path, FileAccess) {
    const int flags = _O_CREAT | _O_TRUNC | _O_WRONLY | _O_BINARY | _O_NOINHERIT;
    return _wopen(ToPath(path).c_str(), flags, _S_IREAD | _S_IWRITE);
}
bool IsRegular(int file, std::uint64_t& size) {
    struct _stat64 status {};
    const bool isRegular = _fstat64(file, &status) == 0 && (status.st_mode & _S_IFMT) == _S_IFREG;
    size = isRegular ? static_cast<std::uint64_t>(status.st_size) : 0;
    return isRegular;
}
std::ptrdiff_t ReadSome(int file, char* data, std::size_t size) {
    return _read(file, data, static_cast<unsigned>(size));
}
std::ptrdiff_t WriteSome(int file, const char* data, std::size_t size) {
    return _write(file, data, static_cast<unsigned>(size));
}
bool Sync(int file) {
    return _commit(file) == 0;
}
bool SyncFolder(const std::string&) {
    return true; // the rename itself is written through
}
bool SyncFile(const std::string& path) {
    const CFileDescriptor file(_wopen(ToPath(path).c_str(), _O_RDWR | _O_BINARY | _O_NOINHERIT));
    return file && Sync(file.Get());
}
bool SetAccess(int, FileAccess, const std::string&) {
    return true; // inherited from the folder
}
#else
int OpenToRead(const std::string& path) {
    return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
}
int OpenToReplace(const std::string& path, FileAccess access) {
    return open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC,
                access == FileAccess::OwnerOnly ? 0600 : 0666);
}
bool IsRegular(int file, std::uint64_t& size) {
    struct stat status {};
    const bool isRegular = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    size = isRegular ? static_cast<std::uint64_t>(status.st_size) : 0;
    return isRegular;
}
std::ptrdiff_t ReadSome(int file, char* data, std::size_t size) {
    return read(file, data, size);
}
std::ptrdiff_t WriteSome(int file, const char* data, std::size_t size) {
    return write(file, data, size);
}
bool Sync(int file) {
    return fsync(file) == 0;
}
bool SyncFolder(const std::string& folder) {
    const CFileDescriptor file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return file && (Sync(file.Get()) || errno == EINVAL); // some network file systems cannot
}
bool SyncFile(const std::string& path) {
    const CFileDescriptor file(OpenToRead(path));
    return file && Sync(file.Get());
}
// A temporary that was left behind may have another mode. What is no regular file keeps its own.
bool SetAccess(int file, FileAccess access, const std::string& replaced) {
    std::uint64_t size = 0;
    if (!IsRegular(file, size))
        return true;
    if (access == FileAccess::OwnerOnly)
        return fchmod(file, 0600) == 0;
    struct stat former {};
    return stat(replaced.c_str(), &former) != 0 || fchmod(file, former.st_mode & 07777) == 0;
}
#endif

// ----------------------------------------------------------------------------------------------------------------------

// The file that a path names in the end; the path itself where there is none yet.
std::string Resolved(const std::string& path) {
    std::error_code failure;
    const fs::path resolved = fs::canonical(ToPath(path), failure);
    return failure ? path : ToText(resolved);
}

std::string FolderOf(const std::string& path) {
    const std::string folder = ToText(ToPath(path).parent_path());
    return folder.empty() ? "." : folder;
}

void Tell(std::string* error, std::string text) {
    if (error != nullptr)
        *error = std::move(text);
}

bool RenameDurably(const std::string& from, const std::string& to, std::string& error) {
    std::error_code failure;
    fs::rename(ToPath(from), ToPath(to), failure);
    if (failure) {
        error = to + ": cannot be replaced: " + failure.message();
        return false;
    }
    if (SyncFolder(FolderOf(to)))
        return true;
    error = ErrnoText(FolderOf(to), "cannot be made durable");
    return false;
}

// The rest of the file behind what text holds already, which has its expected size: one octet more tells whether the
// file has grown.
bool ReadAll(int file, std::uint64_t limit, std::string& text) {
    std::size_t length = 0;
    for (;;) {
        if (length == text.size())
            text.resize(std::min<std::uint64_t>(limit + 1, text.size() + text.size() / 2 + 1));
        const std::ptrdiff_t count =
            ReadSome(file, text.data() + length, std::min(text.size() - length, transferLimit));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        length += static_cast<std::size_t>(count);
        if (count == 0 || length > limit) {
            text.resize(length);
            return true;
        }
    }
}

} // namespace

FileRead ReadWholeFile(const std::string& path, std::uint64_t limit, std::string& text, std::string* error) {
    const CFileDescriptor file(OpenToRead(path));
    if (!file) {
        const FileRead result = errno == ENOENT ? FileRead::Missing : FileRead::Failed;
        Tell(error, ErrnoText(path, "cannot be opened"));
        return result;
    }
    std::uint64_t size = 0;
    if (!IsRegular(file.Get(), size)) {
        Tell(error, path + ": is not a regular file");
        return FileRead::Failed;
    }
    std::string read;
    if (size <= limit) {
        read.resize(size + 1);
        if (!ReadAll(file.Get(), limit, read)) {
            Tell(error, ErrnoText(path, "cannot be read"));
            return FileRead::Failed;
        }
        size = read.size();
    }
    if (size > limit) {
        Tell(error, path + ": is larger than " + std::to_string(limit) + " bytes");
        return FileRead::Failed;
    }
    text = std::move(read);
    return FileRead::Ok;
}

CFileReplacement::CFileReplacement(const std::string& path, FileAccess access)
    : m_path(Resolved(path)), m_temporary(m_path + ".tmp") {
    std::error_code failure;
    const fs::file_status former = fs::status(ToPath(m_path), failure);
    if (fs::exists(former) && !fs::is_regular_file(former)) {
        m_error = m_path + ": is not a regular file";
        return;
    }
    m_file = CFileDescriptor(OpenToReplace(m_temporary, access));
    m_mustRemove = static_cast<bool>(m_file);
    if (!m_file)
        Fail("cannot be made");
    else if (!SetAccess(m_file.Get(), access, m_path))
        Fail("cannot be given its access rights");
}

CFileReplacement::~CFileReplacement() {
    std::error_code ignored;
    if (m_mustRemove)
        fs::remove(ToPath(m_temporary), ignored);
}

void CFileReplacement::Fail(const char* what) {
    m_error = ErrnoText(m_temporary, what);
}

void CFileReplacement::Write(std::string_view bytes) {
    while (m_error.empty() && !bytes.empty()) {
        const std::ptrdiff_t count = WriteSome(m_file.Get(), bytes.data(), std::min(bytes.size(), transferLimit));
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            Fail("cannot be written");
    }
}

bool CFileReplacement::Finish() {
    if (m_isFinished || !m_error.empty())
        return m_isFinished;
    // A failure to close counts too: it may be the first to tell of a full disk.
    if (!Sync(m_file.Get()) || !m_file.Close())
        Fail("cannot be made durable");
    m_isFinished = m_error.empty();
    return m_isFinished;
}

bool CFileReplacement::Commit(std::string* error) {
    if (Finish() && RenameDurably(m_temporary, m_path, m_error))
        m_mustRemove = false;
    if (m_error.empty())
        return true;
    Tell(error, m_error);
    return false;
}

bool ReplaceWholeFile(const std::string& path, std::string_view text, FileAccess access, std::string* error) {
    CFileReplacement file(path, access);
    file.Write(text);
    return file.Commit(error);
}

bool MakeDurable(const std::string& path, std::string* error) {
    if (SyncFile(path))
        return true;
    Tell(error, ErrnoText(path, "cannot be made durable"));
    return false;
}

bool PutInPlace(const std::string& fresh, const std::string& path, std::string* error) {
    std::string fault;
    if (RenameDurably(fresh, Resolved(path), fault))
        return true;
    Tell(error, fault);
    return false;
}

bool KeepGeneration(const std::string& path, const std::string& generation, std::string* error) {
    const std::string second = generation + ".tmp";
    std::error_code failure;
    fs::remove(ToPath(second), failure);
    fs::create_hard_link(ToPath(Resolved(path)), ToPath(second), failure);
    if (failure) // not every file system has second names
        fs::copy_file(ToPath(path), ToPath(second), fs::copy_options::overwrite_existing, failure);
    if (!failure && !SyncFile(second))
        failure = std::error_code(errno, std::generic_category());
    if (!failure)
        fs::rename(ToPath(second), ToPath(generation), failure);
    if (!failure)
        return true;
    Tell(error, generation + ": cannot be kept: " + failure.message());
    fs::remove(ToPath(second), failure);
    return false;
}
