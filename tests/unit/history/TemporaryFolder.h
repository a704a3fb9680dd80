// A folder of its own for one test, removed with all it holds at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "bdc-history-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            std::abort();
        m_path = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }

    const std::filesystem::path& GetPath() const { return m_path; }
    std::string GetFile(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

inline std::string ReadBytes(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}
