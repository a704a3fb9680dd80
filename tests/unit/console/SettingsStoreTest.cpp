// What the settings file looks like, and that each version of it comes back.
#include "tests/unit/console/SettingsFiles.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class SettingsStore : public SettingsFileTest {};

TEST_F(SettingsStore, WritesTheDefaults) {
    EXPECT_EQ(Store(m_pages), GoldenBytes("defaults.bin"));
}

TEST_F(SettingsStore, WritesEveryField) {
    AllPropPages pages = FullSettings();
    EXPECT_EQ(Store(pages), GoldenBytes("settings-v5.bin"));
}

TEST_F(SettingsStore, LoadThenStoreOfTheCurrentVersionChangesNoByte) {
    Load(GoldenBytes("settings-v5.bin"));
    EXPECT_EQ(m_pages, FullSettings());
    EXPECT_EQ(Store(m_pages), GoldenBytes("settings-v5.bin"));
}

TEST_F(SettingsStore, StoringUpgradesAnOldFile) {
    Load(GoldenBytes("settings-v0.bin"));
    EXPECT_EQ(Store(m_pages), GoldenBytes("settings-v0-upgraded.bin"));
    m_pages = {};
    Load(GoldenBytes("settings-v4.bin"));
    EXPECT_EQ(Store(m_pages), GoldenBytes("settings-v4-upgraded.bin"));
}

TEST_F(SettingsStore, NeverWritesEventFilters) {
    Load(GoldenBytes("filters-v5.bin"));
    EXPECT_EQ(m_filters.size(), 2U);
    EXPECT_EQ(Store(m_pages), GoldenBytes("defaults.bin"));
}

TEST_F(SettingsStore, WritesNetworkTagsInAscendingOrder) {
    for (const std::uint16_t network : std::initializer_list<std::uint16_t>{65534, 2, 0})
        m_pages.general.networkTags[network] = "n";
    const std::string one{"\x01n", 2};
    EXPECT_EQ(Store(m_pages).substr(11, 31),
              SectionBytes(7, U32Bytes(0) + U32Bytes(3) + U16Bytes(0) + one + U16Bytes(2) + one + U16Bytes(65534) +
                                  one + std::string(3, '\0'))
                  .substr(0, 31));
}

TEST_F(SettingsStore, PassesOverNullDevicesAndCountsOnlyRealOnes) {
    m_pages = FullSettings();
    m_pages.history.devices.insert(m_pages.history.devices.begin() + 1, nullptr);
    m_pages.history.devices.push_back(nullptr);
    EXPECT_EQ(Store(m_pages), GoldenBytes("settings-v5.bin"));
}

// The longest length of each form and the shortest of the next.
TEST_F(SettingsStore, LengthOfATextTakesTheShortestForm) {
    const std::vector<std::pair<std::size_t, std::string>> forms{
        {0, std::string(1, '\0')},
        {254, "\xFE"},
        {255, std::string("\xFF\xFF\x00", 3)},
        {256, std::string("\xFF\x00\x01", 3)},
        {65533, "\xFF\xFD\xFF"},
        {65534, std::string("\xFF\xFF\xFF\xFE\xFF\x00\x00", 7)},
        {65536, std::string("\xFF\xFF\xFF\x00\x00\x01\x00", 7)},
    };
    for (const auto& [length, form] : forms) {
        m_pages.backup.folder = std::string(length, 'x');
        const std::string bytes = Store(m_pages);
        EXPECT_EQ(bytes.substr(bytes.size() - length - form.size()), form + m_pages.backup.folder) << length;
        AllPropPages loaded;
        std::vector<CEventFilter> filters;
        ASSERT_TRUE(loadAllProps(PathOf("stored.bin").c_str(), loaded, filters));
        EXPECT_EQ(loaded, m_pages) << length;
    }
}

TEST_F(SettingsStore, KeepsTextByteForByte) {
    m_pages.backup.folder = std::string("\xE9\x00\xFF%s", 5);
    Load(Store(m_pages));
    EXPECT_EQ(m_pages.backup.folder, std::string("\xE9\x00\xFF%s", 5));
    const std::string bytes = Store(m_pages);
    EXPECT_EQ(bytes.substr(bytes.size() - 6), std::string("\x05\xE9\x00\xFF%s", 6));
}

TEST_F(SettingsStore, TimesTakeEightBytes) {
    m_pages.history.startRange.date = 4102444800; // 1 January 2100
    m_pages.history.startRange.time = -1;
    const std::string bytes = Store(m_pages);
    // Section 5 begins behind the sections 7, 1 and 2; the date stands behind the empty text, the count and the
    // indicator.
    const std::size_t date = 11 + 19 + 36 + 21 + 8 + 1 + 4 + 4;
    EXPECT_EQ(bytes.substr(date, 16), std::string("\x00\x57\x86\xF4\x00\x00\x00\x00", 8) + std::string(8, '\xFF'));
    AllPropPages stored = m_pages;
    m_pages = {};
    Load(bytes);
    EXPECT_EQ(m_pages, stored);
}

TEST_F(SettingsStore, ReturnsFalseForAMissingFolder) {
    EXPECT_FALSE(storeAllProp(PathOf("none/settings.bin").c_str(), m_pages));
    EXPECT_FALSE(std::filesystem::exists(PathOf("none")));
}

TEST_F(SettingsStore, ReturnsFalseForAFolder) {
    EXPECT_FALSE(storeAllProp(m_folder.c_str(), m_pages));
}

// Runs `action` in a child that has no rights over files of others, and gives its exit code.
template <class Action>
int RunAsNobody(Action action) {
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t NOBODY = 65534;
        if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(NOBODY) != 0 || setuid(NOBODY) != 0))
            _exit(100);
        _exit(action());
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(SettingsStore, ReturnsFalseForAReadOnlyFileAndLeavesIt) {
    const std::string path = WriteBytes("untouched");
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    ASSERT_EQ(chmod(m_folder.c_str(), 0755), 0);
    EXPECT_EQ(RunAsNobody([&] { return storeAllProp(path.c_str(), m_pages) ? 1 : 0; }), 0);
    EXPECT_EQ(ReadBytes(path), "untouched");
}

TEST_F(SettingsStore, LoadReturnsFalseForAnUnreadableFile) {
    const std::string path = WriteBytes(GoldenBytes("settings-v5.bin"));
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    ASSERT_EQ(chmod(m_folder.c_str(), 0755), 0);
    EXPECT_EQ(RunAsNobody([&] { return loadAllProps(path.c_str(), m_pages, m_filters) ? 1 : 0; }), 0);
}

// Small writes stay in the buffer, so only the flush meets the full disk.
TEST_F(SettingsStore, AFullDiskIsAFailure) {
    try {
        storeAllProp("/dev/full", m_pages);
        FAIL() << "a full disk went unnoticed";
    } catch (const CSettingsArchiveError& error) {
        EXPECT_EQ(error.GetCause(), CSettingsArchiveError::Cause::DiskFull);
    }
}

TEST_F(SettingsStore, AFullDiskIsAFailureBehindTheBufferToo) {
    m_pages.backup.folder = std::string(100000, 'x');
    EXPECT_THROW(storeAllProp("/dev/full", m_pages), CSettingsArchiveError);
}

TEST(Settings, DefaultsOfTheRecords) {
    const AllPropPages pages;
    EXPECT_EQ(pages.log, (LogSettings{0x0F, 2, 1, 10, 100, 0x1FFF, 0}));
    EXPECT_EQ(pages.timeSync, (TimeSyncSettings{4, 24, "", {}}));
    EXPECT_EQ(pages.history, HistorySettings());
    EXPECT_EQ(CDeviceSettings(), (CDeviceSettings{"", 0, 0, 0, 0, 100, {}}));
    EXPECT_EQ(HistoryTimeLimit(), (HistoryTimeLimit{0, 0, 0, 0}));
    EXPECT_EQ(pages.general, (GeneralSettings{0, "", "", {}, ""}));
    EXPECT_EQ(pages.backup, (BackupSettings{0, "", {}, ""}));
    EXPECT_EQ(BackupDevice(), (BackupDevice{0xFFFFFFFF, "", ""}));
}

TEST(Settings, ACopyOwnsItsDevices) {
    AllPropPages pages = FullSettings();
    pages.history.devices.push_back(nullptr);
    AllPropPages copy = pages;
    EXPECT_EQ(copy, pages);
    copy.history.devices[0]->objects.clear();
    EXPECT_EQ(pages.history.devices[0]->objects.size(), 2U);
    copy = pages;
    EXPECT_EQ(copy, pages);
}

} // namespace
