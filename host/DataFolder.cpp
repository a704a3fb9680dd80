#include "host/DataFolder.h"

#include "base/FileDescriptor.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace {

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

std::string DefaultDataFolder() {
    // The base directory rules ask for relative values to be ignored.
    const std::string state = Variable("XDG_STATE_HOME");
    if (!state.empty() && state.front() == '/')
        return state + "/bdc";
    std::string home = Variable("HOME");
    if (home.empty()) {
        const passwd* user = getpwuid(geteuid());
        home = user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
    }
    return home.empty() ? std::string() : home + "/.local/state/bdc";
}

bool EnsureFolder(const std::string& path, std::string& error) {
    for (std::size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        const std::string part = path.substr(0, slash);
        if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) {
            error = ErrnoText(part, "cannot be made");
            return false;
        }
        if (slash == std::string::npos)
            break;
    }
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
        return true;
    error = path + ": is not a folder";
    return false;
}

std::string AbsolutePath(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::absolute(path, ignored).lexically_normal().string();
}

bool EnterFolder(const std::string& path, std::string& error) {
    if (chdir(path.c_str()) == 0)
        return true;
    error = ErrnoText(path, "cannot be entered");
    return false;
}

std::string UnacceptedFile(const std::string& path) {
    return access(path.c_str(), R_OK) == 0 ? path + ": is damaged, and no earlier generation is whole: move it away"
                                           : ErrnoText(path, "cannot be read");
}
