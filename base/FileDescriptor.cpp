#include "base/FileDescriptor.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include <cerrno>
#include <system_error>

bool CFileDescriptor::Close() {
    const int descriptor = std::exchange(m_descriptor, -1);
    return descriptor < 0 || close(descriptor) == 0;
}

std::string ErrnoText(const std::string& path, const std::string& what) {
    return path + ": " + what + ": " + std::generic_category().message(errno);
}
