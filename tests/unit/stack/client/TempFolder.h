// A folder of its own for a test, removed with its contents.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

class TempFolder {
public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "bdc-client-XXXXXX").string();
        m_path = ::mkdtemp(name.data());
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::string Text() const { return m_path.string(); }

private:
    std::filesystem::path m_path;
};
