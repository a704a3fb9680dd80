// How the settings file is read: old versions, odd orders, and files that are broken or hostile.
#include "tests/support/AllocationCounter.h"
#include "tests/unit/console/SettingsFiles.h"

#include <array>
#include <sys/stat.h>

namespace {

using Cause = CSettingsArchiveError::Cause;

class SettingsLoad : public SettingsFileTest {
protected:
    // The cause of the failure that loading these bytes raises.
    Cause LoadFailure(std::string_view bytes) {
        try {
            const bool result = loadAllProps(WriteBytes(bytes).c_str(), m_pages, m_filters);
            ADD_FAILURE() << "no failure but " << result;
        } catch (const CSettingsArchiveError& error) {
            return error.GetCause();
        }
        return Cause::Generic;
    }
};

class SettingsVersion : public SettingsLoad, public ::testing::WithParamInterface<int> {};

TEST_P(SettingsVersion, LoadsItsSettings) {
    const int version = GetParam();
    AllPropPages expected = FullSettings();
    expected.general.helpFileFormat = "kept";
    if (version >= 5)
        expected.general.helpFileFormat = "%A.chm";
    if (version < 4)
        expected.backup.devices[0].restoreTag = "";
    if (version < 3)
        expected.backup.devices[0].password = "";
    if (version < 1)
        expected.history.devices[0]->force2001 = 0;

    m_pages.general.helpFileFormat = "kept"; // a version without the field leaves it
    Load(GoldenBytes("settings-v" + std::to_string(version) + ".bin"));
    EXPECT_EQ(m_pages, expected);
    EXPECT_TRUE(m_filters.empty());
}

TEST_P(SettingsVersion, LoadsItsEventFilters) {
    const int version = GetParam();
    CEventFilter first;
    first.alarm.family = "FAM";
    first.alarm.severity = 258;
    first.alarm.targetFlags = 0x40000000;
    first.alarm.zoneNumber = 7;
    first.alarm.attributeFlags = 0x21;
    first.alarm.helpFile = "HELPFILE";
    first.alarm.text = "Alarm %1";
    first.alarm.actionFlags = 0x1841;
    first.alarm.macroStarted = "0000001A";
    first.alarm.macroAcknowledged = "0000002B";
    first.alarm.macroEnded = "0000003C";
    first.alarm.accessList = 1;
    first.alarm.image = "IMG";
    first.alarm.zoneName = "ZN";
    first.alarm.alertList = 9;
    first.alarm.printFile = "p.txt";
    first.alarm.voiceFile = "v.wav";
    first.alarm.synthesizedText = true;
    first.alarm.userFields = {"U0", "U1", "U2", "U3", "U4"};
    first.priorityFrom = 1;
    first.priorityTo = 200;
    first.objectNameMask = "AI*";
    CEventFilter second;
    second.alarm.family = "F2";
    second.alarm.image = ""; // an empty text of the record replaces the default
    second.alarm.zoneName = "";
    second.alarm.targetFlags = 0;
    second.alarm.attributeFlags = 0;
    second.alarm.accessList = 0;
    second.alarm.synthesizedText = false;
    if (version >= 2) {
        first.alarm.window = "WIN";
        first.alarm.context = "CTX";
    }
    if (version >= 5) {
        first.objectType = 0;
        first.eventType = 5;
        first.eventState = 2;
        first.notifyType = 1;
        first.notificationClass = -1;
    }

    m_filters.resize(3); // a file with filters replaces what was there
    Load(GoldenBytes("filters-v" + std::to_string(version) + ".bin"));
    ASSERT_EQ(m_filters.size(), 2U);
    EXPECT_EQ(m_filters[0], first);
    EXPECT_EQ(m_filters[1], second);
    EXPECT_EQ(m_pages, AllPropPages());
}

INSTANTIATE_TEST_SUITE_P(All, SettingsVersion, ::testing::Range(0, 6));

TEST_F(SettingsLoad, ALaterVersionIsReadAsTheCurrentOne) {
    std::string bytes = GoldenBytes("settings-v5.bin");
    bytes.replace(8, 2, "99");
    Load(bytes);
    EXPECT_EQ(m_pages, FullSettings());
}

TEST_F(SettingsLoad, TheVersionIsDecimal) {
    std::string bytes = GoldenBytes("settings-v5.bin");
    bytes.replace(8, 2, "08"); // not octal
    Load(bytes);
    EXPECT_EQ(m_pages, FullSettings());
}

// The version is 0, so the sections are sought where the version line stands: nothing is found there.
TEST_F(SettingsLoad, AVersionThatIsNoPositiveNumberReadsAsEmpty) {
    for (const char* version : {"xx", "00", "-1", "\0\0"}) {
        std::string bytes = GoldenBytes("settings-v5.bin");
        bytes.replace(8, 2, version, 2);
        Load(bytes);
        EXPECT_EQ(m_pages, AllPropPages()) << version;
    }
}

TEST_F(SettingsLoad, KeepsTheFiltersWithoutTheirSection) {
    m_filters.resize(3);
    Load(GoldenBytes("settings-v5.bin"));
    EXPECT_EQ(m_filters.size(), 3U);
}

TEST_F(SettingsLoad, ClearsTheFiltersForASectionWithoutAny) {
    m_filters.resize(3);
    Load(HEADER_BYTES + SectionBytes(4, U32Bytes(0)));
    EXPECT_TRUE(m_filters.empty());
}

TEST_F(SettingsLoad, TheOrderOfSectionsIsFreeAndUnknownOnesArePassedOver) {
    const std::string bytes = GoldenBytes("settings-v5.bin");
    const std::string general = bytes.substr(11, 0x3F - 11), log = bytes.substr(0x3F, 0x63 - 0x3F),
                      timeSync = bytes.substr(0x63, 0x87 - 0x63), history = bytes.substr(0x87, 0x10C - 0x87),
                      backup = bytes.substr(0x10C);
    Load(HEADER_BYTES + backup + SectionBytes(3, "abc") + history + SectionBytes(4, U32Bytes(0)) + SectionBytes(6, "") +
         timeSync + log + SectionBytes(99, std::string(5000, 'x')) + general);
    EXPECT_EQ(m_pages, FullSettings());
}

TEST_F(SettingsLoad, OfTwoSectionsTheFirstCounts) {
    const auto timeSync = [](std::uint32_t period) {
        return SectionBytes(2, U32Bytes(0) + U32Bytes(period) + std::string(5, '\0'));
    };
    Load(HEADER_BYTES + timeSync(5) + timeSync(6));
    EXPECT_EQ(m_pages.timeSync.period, 5U);
}

TEST_F(SettingsLoad, ALogSectionOfAnotherLengthEndsTheSearchForIt) {
    const std::string whole = SectionBytes(1, std::string(28, '\1'));
    for (const std::size_t length : {0U, 27U, 29U}) {
        Load(HEADER_BYTES + SectionBytes(1, std::string(length, '\1')) + whole);
        EXPECT_EQ(m_pages.log, LogSettings()) << length;
    }
}

TEST_F(SettingsLoad, ALogSectionThatIsCutOffLeavesTheDefaults) {
    Load(HEADER_BYTES + SectionBytes(1, std::string(28, '\1')).substr(0, 18));
    EXPECT_EQ(m_pages.log, LogSettings());
}

TEST_F(SettingsLoad, TheLengthOfASectionIsNotUsedToReadIt) {
    std::string bytes = GoldenBytes("settings-v5.bin");
    bytes.replace(0x10C + 4, 4, U32Bytes(0xFFFFFFFF)); // the last section, so that no other search passes over it
    Load(bytes);
    EXPECT_EQ(m_pages, FullSettings());
    m_pages = {};
    bytes.replace(0x10C + 4, 4, U32Bytes(1));
    Load(bytes);
    EXPECT_EQ(m_pages, FullSettings());
}

TEST_F(SettingsLoad, BytesBehindASectionsFieldsAreLeftUnread) {
    Load(HEADER_BYTES + SectionBytes(2, U32Bytes(0) + U32Bytes(7) + std::string(5, '\0') + "more") +
         SectionBytes(8, U32Bytes(1) + std::string(6, '\0')));
    EXPECT_EQ(m_pages.timeSync.period, 7U);
    EXPECT_EQ(m_pages.backup.enabled, 1U);
}

TEST_F(SettingsLoad, ShortFilesGiveDefaults) {
    for (const std::string_view bytes : {std::string_view(), std::string_view("VERSION=05"),
                                         std::string_view(HEADER_BYTES), std::string_view("\7\0\0\0\1", 5)}) {
        Load(bytes);
        EXPECT_EQ(m_pages, AllPropPages()) << bytes.size();
    }
}

TEST_F(SettingsLoad, AFileThatEndsInsideAValueFailsAndKeepsWhatWasRead) {
    std::string bytes = GoldenBytes("settings-v5.bin");
    bytes.pop_back();
    EXPECT_EQ(LoadFailure(bytes), Cause::EndOfFile);
    EXPECT_EQ(m_pages.general, FullSettings().general);
    EXPECT_EQ(m_pages.backup.devices, FullSettings().backup.devices);
}

// Raw values do not fail: the flags stay, the count is none, and the archive behind them meets the end.
TEST_F(SettingsLoad, AFileThatEndsInsideARawValueLeavesIt) {
    m_pages = FullSettings();
    EXPECT_EQ(LoadFailure(HEADER_BYTES + U32Bytes(7) + U32Bytes(11) + "\xFF\xFF"), Cause::EndOfFile);
    EXPECT_EQ(m_pages.general.flags, 5U);
    EXPECT_TRUE(m_pages.general.networkTags.empty());
    EXPECT_EQ(LoadFailure(HEADER_BYTES + U32Bytes(2) + U32Bytes(13) + "\xFF\xFF"), Cause::EndOfFile);
    EXPECT_EQ(m_pages.timeSync, FullSettings().timeSync);
}

TEST_F(SettingsLoad, ListsAreReplaced) {
    m_pages = FullSettings();
    m_pages.timeSync.devices = {"1", "2", "3"};
    m_pages.history.devices.push_back(std::make_unique<CDeviceSettings>());
    m_pages.general.networkTags[7] = "gone";
    m_pages.backup.devices.resize(5);
    Load(GoldenBytes("settings-v5.bin"));
    EXPECT_EQ(m_pages, FullSettings());
}

TEST_F(SettingsLoad, OfTwoTagsForANetworkTheLastCountsAndAnEmptyOneStays) {
    const std::string tags =
        U16Bytes(3) + std::string("\1a") + U16Bytes(3) + std::string("\1b") + U16Bytes(4) + std::string(1, '\0');
    Load(HEADER_BYTES + SectionBytes(7, U32Bytes(0) + U32Bytes(3) + tags + std::string(3, '\0')));
    EXPECT_EQ(m_pages.general.networkTags, (std::map<std::uint16_t, std::string>{{3, "b"}, {4, ""}}));
}

TEST_F(SettingsLoad, WideTextBecomesNarrow) {
    const std::string wide("\xFF\xFE\xFF", 3);
    const auto folder = [&](const std::string& text) {
        Load(HEADER_BYTES + SectionBytes(8, U32Bytes(0) + std::string(1, '\0') + U32Bytes(0) + text));
        return m_pages.backup.folder;
    };
    EXPECT_EQ(folder(wide + std::string("\x03"
                                        "a\0\xE9\0\xAC\x20",
                                        7)),
              "a\u00E9\u20AC");
    EXPECT_EQ(folder(wide + std::string("\x02\x3D\xD8\x00\xDE", 5)), "\U0001F600");
    EXPECT_EQ(folder(wide + std::string("\x03"
                                        "a\0\x3D\xD8"
                                        "b\0",
                                        7)),
              "a?b");                                                       // high surrogate alone
    EXPECT_EQ(folder(wide + std::string("\x02\x00\xDE\x3D\xD8", 5)), "??"); // low one, high one at the end
    EXPECT_EQ(folder(wide + std::string(1, '\0')), "");
    std::string units;
    for (int i = 0; i < 300; ++i)
        units += std::string("x\0", 2);
    EXPECT_EQ(folder(wide + "\xFF" + U16Bytes(300) + units), std::string(300, 'x'));
    EXPECT_EQ(folder(wide + "\xFF\xFF\xFF" + U32Bytes(300) + units), std::string(300, 'x'));
}

TEST_F(SettingsLoad, WideTextIsTakenInEverySection) {
    const auto wide = [](const std::string& text) {
        std::string bytes("\xFF\xFE\xFF", 3);
        bytes += static_cast<char>(text.size());
        for (const char c : text)
            bytes += {c, '\0'};
        return bytes;
    };
    const std::string filter =
        std::string(0x554, '\0') + U32Bytes(0) + U32Bytes(1) + wide("mask") + std::string(20, '\0');
    Load(HEADER_BYTES + SectionBytes(2, U32Bytes(0) + U32Bytes(1) + wide("5") + U32Bytes(1) + wide("6")) +
         SectionBytes(4, U32Bytes(1) + filter) +
         SectionBytes(7, U32Bytes(0) + U32Bytes(1) + U16Bytes(9) + wide("net") + wide("a") + wide("b") + wide("c")));
    EXPECT_EQ(m_pages.timeSync, (TimeSyncSettings{0, 1, "5", {"6"}}));
    EXPECT_EQ(m_pages.general, (GeneralSettings{0, "a", "b", {{9, "net"}}, "c"}));
    ASSERT_EQ(m_filters.size(), 1U);
    EXPECT_EQ(m_filters[0].objectNameMask, "mask");
}

TEST_F(SettingsLoad, WideTextInsideWideTextIsAFailure) {
    EXPECT_EQ(LoadFailure(HEADER_BYTES + SectionBytes(8, U32Bytes(0) + "\xFF\xFE\xFF\xFF\xFE\xFF" + "aaaa")),
              Cause::Generic);
}

TEST_F(SettingsLoad, ReturnsFalseForWhatIsNoFile) {
    m_pages = FullSettings();
    m_filters.resize(2);
    ASSERT_EQ(mkfifo(PathOf("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(loadAllProps(PathOf("missing").c_str(), m_pages, m_filters));
    EXPECT_FALSE(loadAllProps(m_folder.c_str(), m_pages, m_filters));
    EXPECT_FALSE(loadAllProps(PathOf("pipe").c_str(), m_pages, m_filters));
    EXPECT_EQ(m_pages, FullSettings());
    EXPECT_EQ(m_filters.size(), 2U);
}

// ---- broken files: bounded time and memory, and no failure but the archive's

void LoadAnything(const std::string& path) {
    AllPropPages pages;
    std::vector<CEventFilter> filters;
    CAllocationCounter allocations;
    try {
        EXPECT_TRUE(loadAllProps(path.c_str(), pages, filters));
    } catch (const CSettingsArchiveError&) {}
    // The largest golden file has less than 3000 bytes: nothing it says may lead to more than a small multiple of that.
    EXPECT_LT(allocations.GetLargest(), 65536U);
}

std::vector<std::string> GoldenNames() {
    std::vector<std::string> names{"defaults.bin", "filters-v0.bin", "filters-v5.bin"};
    for (int version = 0; version <= 5; ++version)
        names.push_back("settings-v" + std::to_string(version) + ".bin");
    return names;
}

TEST_F(SettingsLoad, AFileCutAnywhereLoadsOrFails) {
    for (const std::string& name : GoldenNames()) {
        const std::string bytes = GoldenBytes(name);
        for (std::size_t size = 0; size < bytes.size(); ++size)
            LoadAnything(WriteBytes(std::string_view(bytes).substr(0, size)));
    }
}

// At every position each limit of a 32-bit, a 16-bit and an 8-bit field: this meets every number, length and count.
TEST_F(SettingsLoad, AnyFieldAtItsLimitsLoadsOrFails) {
    for (const char* name : {"settings-v5.bin", "settings-v0.bin"}) {
        const std::string bytes = GoldenBytes(name);
        for (std::size_t at = 0; at + 4 <= bytes.size(); ++at)
            for (const std::uint32_t limit : {0U, 1U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
                std::string broken = bytes;
                broken.replace(at, 4, U32Bytes(limit));
                LoadAnything(WriteBytes(broken));
            }
    }
}

TEST_F(SettingsLoad, CountsAtTheirLimitsFailWithoutAllocation) {
    for (const std::uint32_t count : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        const std::array<std::string, 5> sections{
            SectionBytes(2, U32Bytes(0) + U32Bytes(1) + std::string(1, '\0') + U32Bytes(count)),
            SectionBytes(4, U32Bytes(count)),
            SectionBytes(5, std::string(1, '\0') + U32Bytes(count)),
            SectionBytes(7, U32Bytes(0) + U32Bytes(count)),
            SectionBytes(8, U32Bytes(0) + std::string(1, '\0') + U32Bytes(count)),
        };
        for (const std::string& section : sections) {
            const std::string path = WriteBytes(HEADER_BYTES + section);
            CAllocationCounter allocations;
            EXPECT_EQ(LoadFailure(HEADER_BYTES + section), Cause::EndOfFile);
            EXPECT_LT(allocations.GetLargest(), 65536U);
        }
    }
}

TEST_F(SettingsLoad, TextLengthsAtTheirLimitsFailWithoutAllocation) {
    for (const std::uint32_t length : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        for (const std::string& prefix : {std::string("\xFF\xFF\xFF"), std::string("\xFF\xFE\xFF\xFF\xFF\xFF")}) {
            const std::string bytes = HEADER_BYTES + SectionBytes(8, U32Bytes(0) + prefix + U32Bytes(length) + "abc");
            CAllocationCounter allocations;
            EXPECT_EQ(LoadFailure(bytes), Cause::EndOfFile);
            EXPECT_LT(allocations.GetLargest(), 65536U);
        }
}

TEST_F(SettingsLoad, AnyLengthOfAnUnknownSectionEndsTheSearch) {
    for (const std::uint32_t length : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF8U, 0xFFFFFFFFU}) {
        Load(HEADER_BYTES + U32Bytes(99) + U32Bytes(length) + GoldenBytes("settings-v5.bin").substr(11));
        EXPECT_EQ(m_pages, AllPropPages()) << length;
    }
}

} // namespace
