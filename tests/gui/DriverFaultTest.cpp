// Drivers and pages that throw, and drivers that are slow: the console goes on without what they would have given.
#include "module/console/ConsolePage.h"
#include "module/console/ConsoleState.h"
#include "tests/gui/ConsoleFixture.h"
#include "tests/support/FakeOperator.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>

#include <algorithm>
#include <future>
#include <stdexcept>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

CFakeOperator* g_operator = nullptr;

class DriverFault : public ConsoleFixture {
protected:
    DriverFault() {
        g_operator = &m_operator;
        consoleWiring.getOperator = []() -> IOperator* { return g_operator; };
    }
    void Throw(const std::string& operation) {
        m_driver.m_onCall = [operation](const std::string& called) {
            if (called == operation)
                throw std::runtime_error("no " + operation);
        };
    }
    void Press(const char* button) {
        OnGui([=] { CControls(ConsoleWindow()).Press(button); });
    }
    CFakeOperator m_operator{m_events};
};

TEST_F(DriverFault, WithoutANameTheTitleHasNone) {
    Throw("GetName");
    Start();
    EXPECT_EQ(Title(), "BACnet configuration console - ");
    EXPECT_THAT(Settled(), ElementsAre("E: Driver: GetName failed: no GetName"));
}

TEST_F(DriverFault, AnUnknownStartCountsAsCold) {
    m_driver.m_isWarmStart = true;
    Throw("IsWarmStart");
    Start();
    EXPECT_TRUE(HasWindow());
    EXPECT_THAT(Settled(), ElementsAre("E: Driver: IsWarmStart failed: no IsWarmStart"));
}

TEST_F(DriverFault, WhatIsNoExceptionOfTheLibraryIsCaughtToo) {
    m_driver.m_onCall = [](const std::string&) { throw 7; };
    Start();
    EXPECT_TRUE(HasWindow());
    EXPECT_THAT(Settled(), Contains("E: Driver: GetName failed"));
}

TEST_F(DriverFault, SettingsThatAreNotSavedLeaveTheConsoleAlive) {
    Throw("SaveSettings");
    Start();
    ShowWindow();
    Press("Save now");
    EXPECT_THAT(Settled(), ElementsAre("SaveSettings()", "E: Driver: SaveSettings failed: no SaveSettings"));
    EXPECT_TRUE(IsVisible());
    EXPECT_EQ(OnGui([] { return QApplication::overrideCursor(); }), nullptr);
    Press("OK");
    EXPECT_FALSE(IsVisible());
    BDCManager.ObjectChanged(1, {8, 1});
    EXPECT_THAT(Settled(), Contains("I: OnObjectChanged(1, (8, 1))"));
}

TEST_F(DriverFault, ALoginThatThrowsLeavesTheGateUsable) {
    Start();
    m_driver.m_users.m_onLogin = [](QWidget*) { throw std::runtime_error("no login"); };
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    EXPECT_THAT(Settled(), ElementsAre("GetCurrentUserName(7)", "Login(operator)", "E: Login failed: no login"));
    EXPECT_FALSE(IsVisible());
    m_driver.m_users.m_onLogin = nullptr;
    m_driver.m_users.m_logins = {{UM_LOGIN_OK, "admin"}};
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    Settled();
    EXPECT_TRUE(IsVisible());
}

TEST_F(DriverFault, WithoutAKernelThereAreNoTagsToChoose) {
    allPropPages.history.flushTag = "FLUSH";
    Throw("GetKernel");
    Start();
    EXPECT_THAT(Settled(), ElementsAre("E: RegisterTriggerTag failed: no GetKernel"));
    OnGui([] {
        QComboBox list;
        BDCManager.FillTagList(list);
        EXPECT_THAT(ItemsOf(list), ElementsAre("<None>"));
    });
    EXPECT_THAT(Settled(), ElementsAre("E: EnumDigitalTags failed: no GetKernel"));
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    EXPECT_THAT(Settled(), ElementsAre("E: Console: login failed: no GetKernel"));
}

TEST_F(DriverFault, AJobThatThrowsEndsAloneAndTheNextMessageIsHandled) {
    Start();
    m_onTransfer = [](const BACSTAC_DEV_OBJ_REF*) { throw std::runtime_error("no transfer"); };
    BDCManager.StartHistoryTransfer(nullptr);
    BDCManager.ObjectChanged(1, {8, 1});
    EXPECT_THAT(Settled(), ElementsAre("StartTransfer(unattended, all)", "E: History transfer failed: no transfer",
                                       "I: OnObjectChanged(1, (8, 1))"));
    EXPECT_TRUE(Stop()) << "the handler counts as left";
}

struct ThrowingPage : CConsolePage {
    explicit ThrowingPage(QWidget* place) : CConsolePage(place) {}
    void Load() override { throw std::runtime_error("no load"); }
    bool Save() override { throw std::runtime_error("no save"); }
    void Destroy() override { throw std::runtime_error("no end"); }
};

TEST_F(DriverFault, APageThatThrowsIsNoOtherPagesConcern) {
    consoleWiring.newPage[PAGE_GENERAL] = [](QWidget*, CDriver&) -> CConsolePage* {
        throw std::runtime_error("no page");
    };
    consoleWiring.newPage[PAGE_REPORTS] = [](QWidget* place, CDriver&) -> CConsolePage* {
        return new ThrowingPage(place);
    };
    Start();
    EXPECT_THAT(Settled(), ElementsAre("E: General failed: no page", "E: Reports failed: no load"));
    EXPECT_NE(consolePages[PAGE_GENERAL], nullptr) << "an empty one in its place";
    ShowWindow();
    Press("Save now");
    EXPECT_THAT(Settled(),
                ElementsAre("E: Reports failed: no save", "E: ReportJobs: Failed to save file", "SaveSettings()"));
    EXPECT_TRUE(Stop());
    EXPECT_THAT(m_events.Take(), ElementsAre("~HistoryStarter()", "E: Reports failed: no end"));
}

// The console stands still meanwhile; nobody else does, and nothing is lost.
TEST_F(DriverFault, ASlowDriverHoldsUpTheConsoleAlone) {
    m_kernel.AddTag(17, "FLUSH", 0);
    allPropPages.history.flushTag = "FLUSH";
    Start();
    ShowWindow();
    Settled();
    std::promise<void> saving;
    std::promise<void> release;
    m_driver.m_onCall = [&](const std::string& operation) {
        if (operation == "SaveSettings") {
            EXPECT_NE(QApplication::overrideCursor(), nullptr);
            saving.set_value();
            release.get_future().wait();
        }
    };
    PostToGui([] { CControls(ConsoleWindow()).Press("Save now"); });
    saving.get_future().wait();
    m_events.Take();
    const auto start = Clock::now();
    for (int i = 0; i < 1000; ++i) {
        BDCManager.OnTagChange(17, 1);
        BDCManager.OnTagChange(17, 0);
    }
    BDCManager.ObjectChanged(1, {8, 1});
    BDCManager.Lock(); // the driver may look at the settings
    BDCManager.Unlock();
    EXPECT_LT(Since(start), Milliseconds(5000));
    release.set_value();
    const auto events = Settled();
    EXPECT_EQ(std::ranges::count(events, "StartTransfer(unattended, all)"), 1000);
    EXPECT_EQ(events.back(), "I: OnObjectChanged(1, (8, 1))");
    m_driver.m_onCall = nullptr;
    BDCManager.RegisterTriggerTag("FlushAllTrendLog", nullptr, 0, 0);
}

TEST_F(DriverFault, AShutdownWaitsForASlowDriver) {
    Start();
    ShowWindow();
    std::promise<void> saving;
    std::promise<void> release;
    m_driver.m_onCall = [&](const std::string& operation) {
        if (operation == "SaveSettings") {
            saving.set_value();
            release.get_future().wait();
        }
    };
    PostToGui([] { CControls(ConsoleWindow()).Press("OK"); });
    saving.get_future().wait();
    BDCManager.InitiateShutdownW();
    auto end = std::async(std::launch::async, [] { return BDCManager.WaitEnd(30000); });
    release.set_value();
    EXPECT_TRUE(end.get());
    EXPECT_FALSE(HasWindow());
}

} // namespace
