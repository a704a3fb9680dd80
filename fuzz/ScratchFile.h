// A file of the process's own that holds the input, for readers that take a path. It lies in memory where the system
// has such a folder, since it is written once for each input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <unistd.h>

class ScratchFile {
public:
    ScratchFile(const std::uint8_t* data, std::size_t size) {
        std::ofstream(Path(), std::ios::binary | std::ios::trunc)
            .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(Path(), ignored);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    static const std::string& Path() {
        static const std::string path = [] {
            std::filesystem::path folder = "/dev/shm";
            std::error_code missing;
            if (!std::filesystem::is_directory(folder, missing))
                folder = std::filesystem::temp_directory_path();
            return (folder / ("bdc-fuzz-" + std::to_string(::getpid()))).string();
        }();
        return path;
    }
};
