// A folder of its own for one test, removed with all it holds at the end.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

class CTempFolder {
public:
    CTempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "bdc-test-XXXXXX").string();
        const char* made = mkdtemp(name.data());
        EXPECT_NE(made, nullptr);
        m_path = name;
    }
    ~CTempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    const std::string& Path() const { return m_path; }
    std::string File(const std::string& name) const { return m_path + "/" + name; }

    void Put(const std::string& name, const std::string& text) const {
        std::ofstream(File(name), std::ios::binary) << text;
    }
    std::string Get(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(File(name), std::ios::binary).rdbuf();
        return text.str();
    }
    bool Has(const std::string& name) const { return std::filesystem::exists(File(name)); }

private:
    std::string m_path;
};
