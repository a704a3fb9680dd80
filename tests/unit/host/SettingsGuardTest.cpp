#include "host/SettingsGuard.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Source = CSettingsGuard::Source;
using Lines = std::vector<std::string>;

AllPropPages Pages(const std::string& flushTag) {
    AllPropPages pages;
    pages.history.flushTag = flushTag;
    pages.history.devices.push_back(std::make_unique<CDeviceSettings>());
    pages.history.devices.back()->device = "1000";
    pages.history.devices.back()->objects = {"Trend 1", "Trend 2"};
    pages.timeSync.devices = {"17", "18"};
    pages.general.networkTags[5] = "Network 5";
    pages.backup.folder = "C:\\bk";
    return pages;
}

class SettingsGuard : public testing::Test {
protected:
    void Save(const AllPropPages& pages) {
        std::string error;
        EXPECT_TRUE(m_guard.Save(pages, error)) << error;
    }
    // Where the settings came from; they are in m_pages then.
    Source Load() {
        m_pages = AllPropPages();
        m_notes.clear();
        return m_guard.Load(m_pages, m_filters, m_notes);
    }

    CTempFolder m_folder;
    CSettingsGuard m_guard{m_folder.File("settings.dat")};
    AllPropPages m_pages;
    std::vector<CEventFilter> m_filters;
    Lines m_notes;
};

} // namespace

TEST_F(SettingsGuard, BeginsWithDefaults) {
    EXPECT_EQ(Load(), Source::Defaults);
    EXPECT_EQ(m_pages, AllPropPages());
    EXPECT_EQ(m_notes, Lines());
}

TEST_F(SettingsGuard, GivesBackWhatWasSaved) {
    Save(Pages("A"));
    EXPECT_EQ(Load(), Source::Current);
    EXPECT_EQ(m_pages, Pages("A"));
    EXPECT_EQ(m_notes, Lines());
    EXPECT_FALSE(m_folder.Has("settings.dat.new"));
}

TEST_F(SettingsGuard, ADeviceThatIsNullDoesNotHinder) {
    AllPropPages pages = Pages("A");
    pages.history.devices.push_back(nullptr);
    Save(pages);
    EXPECT_EQ(Load(), Source::Current);
    EXPECT_EQ(m_pages, Pages("A"));
}

TEST_F(SettingsGuard, KeepsThreeGenerationsAndNoMore) {
    for (const char* tag : {"A", "B", "C", "D", "E"})
        Save(Pages(tag));
    std::vector<std::string> tags;
    for (const char* name : {"settings.dat", "settings.dat.1", "settings.dat.2", "settings.dat.3"}) {
        AllPropPages pages;
        Lines notes;
        EXPECT_EQ(CSettingsGuard(m_folder.File(name)).Load(pages, m_filters, notes), Source::Current);
        tags.push_back(pages.history.flushTag);
    }
    EXPECT_THAT(tags, testing::ElementsAre("E", "D", "C", "B"));
    EXPECT_FALSE(m_folder.Has("settings.dat.4"));
}

TEST_F(SettingsGuard, TheSameContentMakesNoGeneration) {
    Save(Pages("A"));
    Save(Pages("A"));
    EXPECT_FALSE(m_folder.Has("settings.dat.1"));
}

TEST_F(SettingsGuard, EveryCutOfTheFileGivesTheLastGoodGeneration) {
    Save(Pages("old"));
    Save(Pages("new"));
    const std::string whole = m_folder.Get("settings.dat");
    const std::string old = m_folder.Get("settings.dat.1");
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        std::filesystem::remove(m_folder.File("settings.dat"));
        m_folder.Put("settings.dat", whole.substr(0, cut));
        ASSERT_EQ(Load(), Source::Generation) << "cut at " << cut;
        ASSERT_EQ(m_pages, Pages("old")) << "cut at " << cut;
        ASSERT_EQ(m_folder.Get("settings.dat"), old) << "the generation is the file again";
        ASSERT_EQ(m_folder.Get("settings.dat.damaged"), whole.substr(0, cut)) << "the damaged file is kept";
        ASSERT_EQ(Load(), Source::Current);
    }
}

TEST_F(SettingsGuard, PassesOverDamagedGenerations) {
    for (const char* tag : {"A", "B", "C"})
        Save(Pages(tag));
    for (const char* name : {"settings.dat", "settings.dat.1"}) {
        std::filesystem::remove(m_folder.File(name));
        m_folder.Put(name, "VERSION=05");
    }
    EXPECT_EQ(Load(), Source::Generation);
    EXPECT_EQ(m_pages, Pages("A"));
    EXPECT_THAT(m_notes,
                testing::ElementsAre(m_folder.File("settings.dat") + ": is incomplete",
                                     m_folder.File("settings.dat.1") + ": is incomplete",
                                     m_folder.File("settings.dat") + ": the settings of generation 2 are used"));
}

TEST_F(SettingsGuard, AMissingFileIsReplacedByItsGeneration) {
    Save(Pages("A"));
    Save(Pages("B"));
    std::filesystem::remove(m_folder.File("settings.dat"));
    EXPECT_EQ(Load(), Source::Generation);
    EXPECT_EQ(m_pages, Pages("A"));
    EXPECT_FALSE(m_folder.Has("settings.dat.damaged"));
}

TEST_F(SettingsGuard, UsesWhatADamagedFileStillHoldsWhenNothingElseIsLeft) {
    Save(Pages("A"));
    const std::string whole = m_folder.Get("settings.dat");
    // The last section (backup) is cut off between two sections: the module itself sees nothing wrong.
    std::size_t cut = whole.size();
    while (CSettingsGuard::IsWhole(whole.substr(0, cut)) || whole.compare(cut, 4, std::string("\x08\0\0\0", 4)) != 0)
        --cut;
    m_folder.Put("settings.dat", whole.substr(0, cut));
    EXPECT_EQ(Load(), Source::Incomplete);
    EXPECT_EQ(m_pages.history.flushTag, "A");
    EXPECT_EQ(m_pages.backup.folder, "");
    EXPECT_EQ(m_folder.Get("settings.dat.damaged"), whole.substr(0, cut));
    EXPECT_EQ(m_notes.size(), 2U);
}

TEST_F(SettingsGuard, TakesTheFileOfAnOlderVersion) {
    Save(Pages("A"));
    std::string bytes = m_folder.Get("settings.dat");
    bytes[9] = '3'; // version 3 has one text less in each device to back up, of which there are none here
    m_folder.Put("settings.dat", bytes);
    EXPECT_NE(Load(), Source::Defaults);
    EXPECT_EQ(m_pages.history.flushTag, "A");
}

TEST_F(SettingsGuard, ADamagedLengthFieldDoesNotPassAsWhole) {
    Save(Pages("A"));
    const std::string whole = m_folder.Get("settings.dat");
    ASSERT_TRUE(CSettingsGuard::IsWhole(whole));
    for (const char byte : {'\x01', '\x7F', '\x80', '\xFF'}) {
        std::string bytes = whole;
        bytes[11 + 4 + 3] = byte; // the greatest byte of the first section's length
        EXPECT_FALSE(CSettingsGuard::IsWhole(bytes));
    }
    EXPECT_FALSE(CSettingsGuard::IsWhole(""));
    EXPECT_FALSE(CSettingsGuard::IsWhole("VERSION=05"));
    EXPECT_FALSE(CSettingsGuard::IsWhole(whole + "x"));
}

TEST_F(SettingsGuard, AFullDiskLeavesTheOldFile) {
    Save(Pages("A"));
    std::filesystem::create_symlink("/dev/full", m_folder.File("settings.dat.new"));
    std::string error;
    EXPECT_FALSE(m_guard.Save(Pages("B"), error));
    EXPECT_EQ(error.rfind(m_folder.File("settings.dat.new") + ": cannot be written: ", 0), 0U) << error;
    EXPECT_EQ(Load(), Source::Current);
    EXPECT_EQ(m_pages, Pages("A"));
    EXPECT_FALSE(m_folder.Has("settings.dat.1"));
}

TEST_F(SettingsGuard, AMissingFolderIsAnErrorAndNoMore) {
    CSettingsGuard guard(m_folder.File("none/settings.dat"));
    std::string error;
    EXPECT_FALSE(guard.Save(Pages("A"), error));
    EXPECT_NE(error, "");
}

TEST_F(SettingsGuard, AFileThatTheSystemDoesNotGiveIsNotTouched) {
    if (geteuid() == 0) {
        // A superuser reads everything; a folder in the file's place is refused to him as well.
        std::filesystem::create_directory(m_folder.File("settings.dat"));
        EXPECT_NE(Load(), Source::Current);
        return;
    }
    Save(Pages("A"));
    chmod(m_folder.File("settings.dat").c_str(), 0);
    EXPECT_EQ(Load(), Source::Unreadable);
    EXPECT_TRUE(m_folder.Has("settings.dat"));
    EXPECT_EQ(m_notes.size(), 1U);
}
