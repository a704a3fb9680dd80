// An open file descriptor, closed with its owner. Used by one thread at a time.
#pragma once

#include <string>
#include <utility>

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
