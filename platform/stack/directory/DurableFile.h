// Replacing a file so that a crash at any moment leaves the former one or the new one, whole. The platform's own calls
// are kept in this pair of files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace bacnet::directory {

// A file being written; every failure sticks, Finish tells.
class FileWriter {
public:
    explicit FileWriter(const std::filesystem::path& path);
    ~FileWriter();
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    void Write(std::string_view bytes);
    bool Finish(); // on the disk and closed

private:
    int m_file = -1;
    bool m_good = false;
};

// Makes a rename inside the folder durable.
bool SyncFolder(const std::filesystem::path& folder);

// Reads a whole regular file; false when there is none or it cannot be read. Not more than maxBytes.
bool ReadWhole(const std::filesystem::path& path, std::uint64_t maxBytes, std::string& bytes);

} // namespace bacnet::directory
