#include "host/Program.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

std::string ProgramPath() {
    std::error_code failure;
    const fs::path path = fs::read_symlink("/proc/self/exe", failure);
    return failure ? std::string("bdc") : path.string();
}

std::string HelpPath() {
    return (fs::path(ProgramPath()).parent_path() / "../share/bdc/help/").lexically_normal().string();
}
