#include "tests/unit/console/SettingsFiles.h"

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

std::string ReadBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::string GoldenBytes(const std::string& name) {
    const auto path = std::filesystem::path(BDC_SOURCE_DIR) / "tests" / "golden" / "settings" / name;
    std::string bytes = ReadBytes(path);
    EXPECT_FALSE(bytes.empty()) << path;
    return bytes;
}

std::string U16Bytes(std::uint16_t value) {
    return {static_cast<char>(value), static_cast<char>(value >> 8)};
}

std::string U32Bytes(std::uint32_t value) {
    return U16Bytes(static_cast<std::uint16_t>(value)) + U16Bytes(static_cast<std::uint16_t>(value >> 16));
}

std::string SectionBytes(std::uint32_t number, std::string_view payload) {
    return U32Bytes(number) + U32Bytes(static_cast<std::uint32_t>(payload.size())) + std::string(payload);
}

AllPropPages FullSettings() {
    AllPropPages pages;
    pages.log = {0x1B, 1, 5, 50, 500, 0x1FFF, 0x80000FFF};
    pages.timeSync = {7, 48, "1234", {"10", "4194302"}};
    pages.history.selectedDevice = "10";
    pages.history.devices.push_back(
        std::make_unique<CDeviceSettings>(CDeviceSettings{"10", 1, 1, 1, 1, 60, {"TL 1", "TL 2"}}));
    pages.history.devices.push_back(std::make_unique<CDeviceSettings>(CDeviceSettings{.device = "20", .objects = {}}));
    pages.history.startRange = {1, 86400, 3600, 7};
    pages.history.flushTag = "FLUSH";
    pages.general = {5, "r1", "r2", {{0, "NETLOC"}, {2, "NET2"}, {65534, "N-HI"}}, "%A.chm"};
    pages.backup = {1, "BKP", {{10, "pw", "RST10"}, {20, "", ""}}, "C:\\bk"};
    return pages;
}

SettingsFileTest::SettingsFileTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "bdc-settings-XXXXXX").string();
    EXPECT_NE(mkdtemp(pattern.data()), nullptr);
    m_folder = pattern;
}

SettingsFileTest::~SettingsFileTest() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

std::string SettingsFileTest::WriteBytes(std::string_view bytes, const std::string& name) const {
    const std::string path = PathOf(name);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    EXPECT_TRUE(file.good()) << path;
    return path;
}

void SettingsFileTest::Load(std::string_view bytes) {
    EXPECT_TRUE(loadAllProps(WriteBytes(bytes).c_str(), m_pages, m_filters));
}

std::string SettingsFileTest::Store(AllPropPages& settings) const {
    const std::string path = PathOf("stored.bin");
    EXPECT_TRUE(storeAllProp(path.c_str(), settings));
    return ReadBytes(path);
}
