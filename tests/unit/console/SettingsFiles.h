// Settings files for the tests: the golden ones, and ones put together from bytes in a folder of the test's own.
#pragma once

#include "module/console/SettingsStore.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

std::string ReadBytes(const std::filesystem::path& path);
std::string GoldenBytes(const std::string& name);

// Little-endian pieces of a file.
std::string U16Bytes(std::uint16_t value);
std::string U32Bytes(std::uint32_t value);
std::string SectionBytes(std::uint32_t number, std::string_view payload);
inline const std::string HEADER_BYTES{"VERSION=05\0", 11};

// What settings-v5.bin holds.
AllPropPages FullSettings();

class SettingsFileTest : public ::testing::Test {
protected:
    SettingsFileTest();
    ~SettingsFileTest() override;

    std::string PathOf(const std::string& name) const { return (m_folder / name).string(); }
    // Writes a file into the folder and gives its path.
    std::string WriteBytes(std::string_view bytes, const std::string& name = "settings.bin") const;
    // What loadAllProps makes of these bytes; it must return true.
    void Load(std::string_view bytes);
    // The bytes that storeAllProp writes; it must return true.
    std::string Store(AllPropPages& settings) const;

    std::filesystem::path m_folder;
    AllPropPages m_pages;
    std::vector<CEventFilter> m_filters;
};
