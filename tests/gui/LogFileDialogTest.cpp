// The log file page, driven by its labels.
#include "module/console/LogFileDialog.h"
#include "module/console/ConsolePage.h"
#include "module/console/ConsoleState.h"
#include "module/console/ModuleLock.h"
#include "module/console/PageTabs.h"
#include "module/console/SettingsStore.h"
#include "module/widgets/SpinEdit.h"
#include "tests/gui/ConsoleFixture.h"
#include "tests/support/TempFolder.h"

#include <QAbstractButton>

#include <atomic>
#include <thread>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LogFilePage : public ConsoleFixture {
protected:
    LogFilePage() {
        consoleWiring.newPage[PAGE_LOG_FILE] = [](QWidget* place, CDriver&) -> CConsolePage* {
            return new CLogFileDialog(place);
        };
    }
    static CControls Page() { return CControls(consolePages[PAGE_LOG_FILE].load()); }
    static void Save() { consolePages[PAGE_LOG_FILE].load()->Save(); }
    static QAbstractButton& Button(const char* label) { return Page().Get<QAbstractButton>(label); }
    // The number beside a label, within the group whose check box has a label.
    static CSpinEdit& Limit(const char* check) { return CControls(Button(check).parentWidget()).Only<CSpinEdit>(); }
    // As an operator who has come to the page.
    void ShowPage() {
        Start();
        ShowWindow();
        OnGui([] { CControls(ConsoleWindow()).Only<CPageTabs>().SelectPage(PAGE_LOG_FILE); });
    }
    static constexpr const char* ONLINE = "Limit online log file size";
    static constexpr const char* HISTORICAL = "Limit historical log file by size ";
    static constexpr const char* SESSIONS = "Limit historical log file by sessions";
};

TEST_F(LogFilePage, ShowsTheSettingsAndCallsNoLoggerUntilItIsSaved) {
    Start();
    EXPECT_THAT(Settled(), IsEmpty());
    OnGui([] {
        EXPECT_TRUE(Button("Enable online log").isChecked());
        EXPECT_TRUE(Button("Enable historical log").isChecked());
        EXPECT_TRUE(Button(ONLINE).isChecked());
        EXPECT_TRUE(Button(HISTORICAL).isChecked());
        EXPECT_FALSE(Button(SESSIONS).isChecked());
        EXPECT_EQ(Limit(ONLINE).GetText(), QStringLiteral("1"));
        EXPECT_EQ(Limit(HISTORICAL).GetText(), QStringLiteral("10"));
        EXPECT_EQ(Limit(SESSIONS).GetText(), QStringLiteral("100"));
        EXPECT_TRUE(Button("&Info").isChecked());
        EXPECT_FALSE(Limit(SESSIONS).isEnabled());
    });
    EXPECT_EQ(allPropPages.log.filter, 0x80000FFFU);
    OnGui(Save);
    EXPECT_THAT(Settled(), ElementsAre("EnableLog(true)", "SetLogSizeLimit(true, 1)", "EnableHisLog(true)",
                                       "SetHisLogSizeLimit(true, 10)", "SetHisLogSessionLimit(false, 100)",
                                       "SetLevel(2)", "SetFilter(4095)"));
}

TEST_F(LogFilePage, TypedTextsAreTakenAsTheyAre) {
    ShowPage();
    OnGui([] {
        Page().Press(SESSIONS);
        TypeInto(Limit(ONLINE), "5000");
        TypeInto(Limit(HISTORICAL), "abc");
        Page().Press("&Low info");
        Save();
    });
    EXPECT_EQ(allPropPages.log.onlineSizeLimit, 5000);
    EXPECT_EQ(allPropPages.log.historicalSizeLimit, 0);
    EXPECT_EQ(allPropPages.log.level, 3U);
    EXPECT_NE(allPropPages.log.flags & LOG_HISTORICAL_LIMIT_SESSIONS, 0U);
}

TEST_F(LogFilePage, TheArrowsStayInTheirRange) {
    Start();
    OnGui([] {
        const auto step = [](CSpinEdit& edit, const char* text, int steps) {
            edit.SetText(QString::fromLatin1(text));
            edit.stepBy(steps);
            return edit.GetText().toStdString();
        };
        EXPECT_EQ(step(Limit(ONLINE), "10", 1), "10");
        EXPECT_EQ(step(Limit(ONLINE), "1", -1), "1");
        EXPECT_EQ(step(Limit(ONLINE), "5000", -1), "10");
        EXPECT_EQ(step(Limit(ONLINE), "abc", 1), "1");
        EXPECT_EQ(step(Limit(HISTORICAL), "99", 5), "100");
        EXPECT_EQ(step(Limit(SESSIONS), "999", 5), "1000");
        EXPECT_EQ(step(Limit(SESSIONS), "", -1), "1");
    });
}

TEST_F(LogFilePage, ChecksEnableWhatDependsOnThem) {
    allPropPages.log.flags = 0;
    ShowPage();
    const auto enabled = [] {
        return std::vector<bool>{Button(ONLINE).isEnabled(),     Limit(ONLINE).isEnabled(),
                                 Button(HISTORICAL).isEnabled(), Limit(HISTORICAL).isEnabled(),
                                 Button(SESSIONS).isEnabled(),   Limit(SESSIONS).isEnabled()};
    };
    OnGui([&] {
        EXPECT_THAT(enabled(), ElementsAre(false, false, false, false, false, false));
        Page().Press("Enable online log");
        EXPECT_THAT(enabled(), ElementsAre(true, false, false, false, false, false));
        Page().Press(ONLINE);
        EXPECT_THAT(enabled(), ElementsAre(true, true, false, false, false, false));
        Page().Press("Enable historical log");
        Page().Press(SESSIONS);
        EXPECT_THAT(enabled(), ElementsAre(true, true, true, false, true, true));
        Page().Press("Enable online log");
        EXPECT_TRUE(Button(ONLINE).isChecked()) << "the check stays";
        EXPECT_THAT(enabled(), ElementsAre(false, false, true, false, true, true));
    });
}

TEST_F(LogFilePage, ALevelWithoutAChoiceChecksNoneAndStays) {
    allPropPages.log.level = 9;
    Start();
    OnGui([] {
        for (const char* const level : {"&Trace", "&Normal", "&Info", "&Low info"})
            EXPECT_FALSE(Button(level).isChecked()) << level;
        Save();
    });
    EXPECT_EQ(allPropPages.log.level, 9U);
}

TEST_F(LogFilePage, EachLevelHasItsChoice) {
    static constexpr const char* LEVELS[] = {"&Trace", "&Normal", "&Info", "&Low info"};
    for (std::uint32_t level = 0; level < std::size(LEVELS); ++level) {
        allPropPages.log.level = level;
        Start();
        OnGui([&] {
            for (std::uint32_t other = 0; other < std::size(LEVELS); ++other)
                EXPECT_EQ(Button(LEVELS[other]).isChecked(), other == level) << LEVELS[other];
        });
        ASSERT_TRUE(Stop());
        EXPECT_EQ(allPropPages.log.level, level);
    }
}

TEST_F(LogFilePage, ALimitThatIsSwitchedOffKeepsItsNumberForTheLogger) {
    ShowPage();
    OnGui([] {
        Page().Press(ONLINE);
        Save();
    });
    EXPECT_THAT(Settled(), Contains("SetLogSizeLimit(false, 1)"));
    EXPECT_EQ(OnGui([] { return Limit(ONLINE).GetText().toStdString(); }), "1");
}

TEST_F(LogFilePage, TheThirteenthCategoryGoesIntoTheFileAndNotToTheLogger) {
    for (const auto& [mask, filter] : {std::pair{0x1FFFU, "\xFF\x0F\x00\x80"}, {0x0FFFU, "\xFF\x0F\x00"}}) {
        allPropPages.log = {};
        allPropPages.log.categoryMask = mask;
        Start();
        m_events.Take();
        OnGui(Save);
        EXPECT_EQ(Settled().back(), "SetFilter(4095)") << mask;
        const CTempFolder folder;
        ASSERT_TRUE(storeAllProp(folder.File("settings").c_str(), allPropPages));
        const std::string file = folder.Get("settings");
        const std::string header{"\x01\x00\x00\x00\x1C\x00\x00\x00", 8}; // the section and its length
        const std::size_t section = file.find(header);
        ASSERT_NE(section, std::string::npos);
        EXPECT_EQ(file.substr(section + header.size() + 24, 4), std::string(filter, 4)) << mask;
        ASSERT_TRUE(Stop());
    }
}

TEST_F(LogFilePage, TheLoggerIsCalledUnderTheModulesLock) {
    ShowPage();
    m_events.Take();
    int calls = 0;
    std::vector<std::thread> others; // each asks for the lock inside a call, and must not have it before the save ends
    std::atomic<int> taken = 0;
    m_log.m_onEvent = [&](const std::string&) {
        ++calls;
        others.emplace_back([&taken] {
            const CModuleLock lock;
            ++taken;
        });
        std::this_thread::sleep_for(Milliseconds(10));
        EXPECT_EQ(taken, 0);
    };
    OnGui(Save);
    m_log.m_onEvent = nullptr;
    EXPECT_EQ(calls, 7);
    for (std::thread& other : others)
        other.join();
    EXPECT_EQ(taken, 7);
}

TEST_F(LogFilePage, WhatWasLeftWithCancelIsStillThereAndSavedTheNextTime) {
    ShowPage();
    OnGui([] {
        Page().Press(SESSIONS);
        TypeInto(Limit(SESSIONS), "42");
        ConsoleWindow()->reject();
    });
    EXPECT_EQ(allPropPages.log.historicalSessionLimit, 100);
    ShowWindow();
    OnGui([] { CControls(ConsoleWindow()).Press("Save now"); });
    EXPECT_EQ(allPropPages.log.historicalSessionLimit, 42);
    EXPECT_THAT(Settled(), Contains("SetHisLogSessionLimit(true, 42)"));
}

TEST_F(LogFilePage, WhatWasLeftWithCancelIsSavedAtTheEnd) {
    Start();
    Post(WM_CONSOLE_SHOW);
    OnGui([] {
        Limit(ONLINE).SetText(QStringLiteral("7"));
        ConsoleWindow()->reject();
    });
    EXPECT_THAT(Settled(), IsEmpty());
    EXPECT_EQ(allPropPages.log.onlineSizeLimit, 1);
    ASSERT_TRUE(Stop());
    EXPECT_EQ(allPropPages.log.onlineSizeLimit, 7);
    EXPECT_THAT(m_events.Take(), Contains("SetLogSizeLimit(true, 7)"));
}

} // namespace
