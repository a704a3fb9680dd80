// Files of the data folder, read whole and written so that a reader and a crash see the old text or the new one, never
// a part. Paths are UTF-8. Failures are one line for people that names the path. Any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

// An open file descriptor, closed with its owner.
class CFileDescriptor {
public:
    CFileDescriptor() = default;
    explicit CFileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    CFileDescriptor(CFileDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    CFileDescriptor& operator=(CFileDescriptor&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~CFileDescriptor() { Close(); }

    explicit operator bool() const { return m_descriptor >= 0; }
    int Get() const { return m_descriptor; }
    bool Close(); // false when the system reports that something was not written

private:
    int m_descriptor = -1;
};

// "PATH: WHAT: reason", with the reason of errno.
std::string ErrnoText(const std::string& path, const std::string& what);

// A regular file of at most limit bytes.
bool ReadFile(const std::string& path, std::size_t limit, std::string& text, std::string& error);

// Writes PATH.new, makes it durable, renames it to path and makes the folder durable. Mode 0600.
bool WriteFileDurably(const std::string& path, std::string_view text, std::string& error);

// Makes what is in the file, and its name in its folder, survive a crash of the machine.
bool SyncFile(const std::string& path, std::string& error);
bool SyncFolderOf(const std::string& path, std::string& error);
