// The console's life: start, stop, timeouts, and ends that something stands in the way of.
#include "module/console/Busy.h"
#include "tests/gui/ConsoleFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QMenu>

#include <clocale>
#include <future>
#include <thread>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ConsoleRun : public ConsoleFixture {};

TEST_F(ConsoleRun, StartReturnsWithTheConsoleBuiltAndHidden) {
    const auto start = Clock::now();
    Start();
    EXPECT_LT(Since(start), Milliseconds(30000));
    EXPECT_TRUE(BDCManager.IsRunning());
    EXPECT_TRUE(HasWindow());
    EXPECT_FALSE(IsVisible());
    EXPECT_EQ(Title(), "BACnet configuration console - Test driver");
}

TEST_F(ConsoleRun, WhatWasAskedBeforeTheStartIsForgotten) {
    BDCManager.InitiateShutdownW();
    BDCManager.StartTimeSync();
    BDCManager.StartHistoryTransfer(nullptr);
    BDCManager.SetupNetworks();
    BDCManager.ObjectChanged(1, {8, 1});
    Post(WM_CONSOLE_SHOW);
    EXPECT_FALSE(BDCManager.IsRunning());
    Start();
    EXPECT_THAT(Settled(), IsEmpty());
    EXPECT_FALSE(IsVisible());
}

TEST_F(ConsoleRun, ASecondStartKeepsTheFirstDriver) {
    Start();
    CFakeDriver other(m_events, m_kernel);
    other.m_name = "Other driver";
    const auto start = Clock::now();
    BDCManager.Start(&other, 30000);
    EXPECT_LT(Since(start), Milliseconds(10000));
    EXPECT_EQ(&BDCManager.GetDriver(), &m_driver);
    EXPECT_EQ(Title(), "BACnet configuration console - Test driver");
}

TEST_F(ConsoleRun, StartGivesUpWaitingAndTheConsoleIsBuiltAllTheSame) {
    Start(); // so that the time to bring the toolkit up does not count
    ASSERT_TRUE(Stop());
    std::promise<void> release;
    m_driver.m_onCall = [&](const std::string& operation) {
        if (operation == "GetName")
            release.get_future().wait();
    };
    const auto start = Clock::now();
    BDCManager.Start(&m_driver, 100);
    EXPECT_GE(Since(start), Milliseconds(100));
    EXPECT_TRUE(BDCManager.IsRunning());
    Post(WM_CONSOLE_SHOW); // there is no window yet
    release.set_value();
    EXPECT_TRUE(Eventually([&] { return HasWindow(); }));
    EXPECT_FALSE(IsVisible());
    Post(WM_CONSOLE_SHOW);
    EXPECT_TRUE(IsVisible());
}

TEST_F(ConsoleRun, RunsUntilWaitEndThoughTheWindowIsGone) {
    Start();
    BDCManager.InitiateShutdownW();
    EXPECT_TRUE(Eventually([&] { return !HasWindow(); }));
    EXPECT_TRUE(BDCManager.IsRunning());
    BDCManager.ObjectChanged(1, {8, 1}); // lost
    BDCManager.StartHistoryTransfer(NewTransferRequest(1, 20, 5));
    EXPECT_THAT(Settled(), ElementsAre("~HistoryStarter()"));
    EXPECT_TRUE(BDCManager.WaitEnd(5000));
    EXPECT_FALSE(BDCManager.IsRunning());
}

TEST_F(ConsoleRun, WaitEndWithoutAShutdownAbandonsTheConsole) {
    Start();
    const auto start = Clock::now();
    EXPECT_FALSE(BDCManager.WaitEnd(300));
    EXPECT_GE(Since(start), Milliseconds(300));
    EXPECT_FALSE(BDCManager.IsRunning());
    BDCManager.StartTimeSync();
    EXPECT_TRUE(Eventually([&] { return !HasWindow(); }));
    EXPECT_THAT(Settled(), ElementsAre("~HistoryStarter()"));
    Start();
    EXPECT_TRUE(HasWindow());
}

TEST_F(ConsoleRun, WaitsWithoutLimitWhenToldTo) {
    BDCManager.Start(&m_driver, 0xFFFFFFFF);
    EXPECT_TRUE(HasWindow());
    BDCManager.InitiateShutdownW();
    EXPECT_TRUE(BDCManager.WaitEnd(0xFFFFFFFF));
}

TEST_F(ConsoleRun, StartsAndStopsManyTimes) {
    for (int i = 0; i < 50; ++i) {
        m_driver.m_name = "Driver " + std::to_string(i);
        Start();
        ASSERT_EQ(Title(), "BACnet configuration console - " + m_driver.m_name);
        ASSERT_TRUE(Stop());
        ASSERT_FALSE(HasWindow());
    }
}

TEST_F(ConsoleRun, TheWarmStartIsLogged) {
    m_driver.m_isWarmStart = true;
    Start();
    EXPECT_THAT(Settled(), ElementsAre("I: Warm start is enabled"));
}

TEST_F(ConsoleRun, NumbersDoNotDependOnTheLocale) {
    Start();
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(ConsoleRun, TheFlushTriggerIsRegisteredBeforeTheConsoleRuns) {
    m_kernel.AddTag(17, "FLUSH", 0);
    allPropPages.history.flushTag = "FLUSH";
    Start();
    // The falling edge is logged, and its message dropped.
    EXPECT_THAT(Settled(),
                ElementsAre("GetTagIdByName(7, FLUSH)",
                            "D: BACnet: Info, RegisterTriggerTag(FlushAllTrendLog), Trigger tag FLUSH inserted",
                            "GetTagValue(7, 11, 17)", "D: BACnet: Info, Triggering down FlushAllTrendLog",
                            "RqGateMsg(7, [17], 1)"));
    BDCManager.OnTagChange(17, 1);
    EXPECT_THAT(Settled(),
                ElementsAre("D: BACnet: Info, Triggering up FlushAllTrendLog", "StartTransfer(unattended, all)"));
    BDCManager.OnTagChange(17, 0);
    EXPECT_THAT(Settled(), ElementsAre("D: BACnet: Info, Triggering down FlushAllTrendLog"));
    BDCManager.RegisterTriggerTag("FlushAllTrendLog", nullptr, 0, 0);
}

TEST_F(ConsoleRun, TriggersSurviveARestart) {
    m_kernel.AddTag(17, "N", 1);
    allPropPages.general.networkTags[2] = "N";
    Start();
    BDCManager.SetupNetworks();
    EXPECT_THAT(Settled(), Contains("RqGateMsg(7, [17], 1)"));
    ASSERT_TRUE(Stop());
    m_events.Take();
    Start();
    BDCManager.OnTagChange(17, 0);
    EXPECT_THAT(Settled(),
                ElementsAre("D: BACnet: Info, Triggering down EnableNetwork-2",
                            "D: BACnet: Info, VPIQLBCN, Disabling network 2 by trigger tag", "DisableNetwork(2)"));
    BDCManager.OnTagChange(17, 1);
    EXPECT_THAT(Settled(),
                ElementsAre("D: BACnet: Info, Triggering up EnableNetwork-2",
                            "D: BACnet: Info, VPIQLBCN, Enabling network 2 by trigger tag", "EnableNetwork(2)"));
    BDCManager.RegisterTriggerTag("EnableNetwork-2", nullptr, 0, 0);
}

// ---- ends with something in the way

// Opens a dialog in a dialog of the console, as an operator would, and notes how the inner and the outer one end.
void OpenNestedDialogs(CEventList& events, bool withMenu) {
    PostToGui([&events, withMenu] {
        const CBusyScope slot;
        QDialog outer(ConsoleWindow());
        outer.setWindowTitle(QStringLiteral("outer"));
        QMetaObject::invokeMethod(
            &outer,
            [&events, &outer, withMenu] {
                QDialog inner(&outer);
                inner.setWindowTitle(QStringLiteral("inner"));
                QMenu menu(&inner);
                menu.addAction(QStringLiteral("item"));
                if (withMenu)
                    QMetaObject::invokeMethod(
                        &inner,
                        [&events, &menu] {
                            menu.exec();
                            events.Add("menu closed");
                        },
                        Qt::QueuedConnection);
                events.Add("inner " + std::to_string(RunModal(inner)));
            },
            Qt::QueuedConnection);
        events.Add("outer " + std::to_string(RunModal(outer)));
    });
}

TEST_F(ConsoleRun, ShutdownRejectsNestedDialogsInnermostFirst) {
    Start();
    OpenNestedDialogs(m_events, false);
    ASSERT_TRUE(IsModalOpen("inner"));
    EXPECT_TRUE(Stop());
    EXPECT_THAT(m_events.Take(), ElementsAre("inner 0", "outer 0", "~HistoryStarter()"));
}

TEST_F(ConsoleRun, ShutdownClosesMenusToo) {
    Start();
    OpenNestedDialogs(m_events, true);
    ASSERT_TRUE(EventuallyOnGui([] { return OpenMenu() != nullptr; }));
    EXPECT_TRUE(Stop());
    EXPECT_THAT(m_events.Take(), ElementsAre("menu closed", "inner 0", "outer 0", "~HistoryStarter()"));
}

// A dialog that somebody runs without saying so: its loop has ended before the console is destroyed.
TEST_F(ConsoleRun, ShutdownWaitsForALoopThatWasNotAnnounced) {
    Start();
    PostToGui([this] {
        QDialog dialog(ConsoleWindow());
        m_events.Add("dialog " + std::to_string(dialog.exec()));
    });
    ASSERT_TRUE(EventuallyOnGui([] { return ModalDialog() != nullptr; }));
    EXPECT_TRUE(Stop());
    EXPECT_THAT(m_events.Take(), ElementsAre("dialog 0", "~HistoryStarter()"));
}

// It would ask the operator; nobody is there.
class AskingDialog : public QDialog {
public:
    using QDialog::QDialog;
    void reject() override {}
};

TEST_F(ConsoleRun, ShutdownDoesNotAskADialogThatRefuses) {
    Start();
    PostToGui([this] {
        AskingDialog dialog(ConsoleWindow());
        m_events.Add("dialog " + std::to_string(RunModal(dialog)));
    });
    ASSERT_TRUE(EventuallyOnGui([] { return ModalDialog() != nullptr; }));
    EXPECT_TRUE(Stop());
    EXPECT_THAT(m_events.Take(), ElementsAre("dialog 0", "~HistoryStarter()"));
}

TEST_F(ConsoleRun, ShutdownEndsAJobThatPumps) {
    Start();
    m_onTransfer = [this](const BACSTAC_DEV_OBJ_REF*) {
        while (PumpMessages())
            std::this_thread::sleep_for(Milliseconds(1));
        QDialog late(ConsoleWindow());
        m_events.Add("pump ended, late dialog " + std::to_string(RunModal(late)));
    };
    BDCManager.StartHistoryTransfer(nullptr);
    BDCManager.ObjectChanged(1, {8, 1}); // served by the pump
    EXPECT_TRUE(Eventually([&] { return m_events.Get().size() == 2; }));
    BDCManager.InitiateShutdownW();
    BDCManager.ObjectChanged(2, {8, 1}); // behind the shutdown: lost
    EXPECT_TRUE(BDCManager.WaitEnd(30000));
    EXPECT_THAT(m_events.Take(), ElementsAre("StartTransfer(unattended, all)", "I: OnObjectChanged(1, (8, 1))",
                                             "pump ended, late dialog 0", "~HistoryStarter()"));
}

// All three stand in the queue before the first is handled.
TEST_F(ConsoleRun, ADialogOpenedByAHandlerServesWhatWasQueuedBehindIt) {
    Start();
    m_onTransfer = [this](const BACSTAC_DEV_OBJ_REF*) {
        QDialog dialog(ConsoleWindow());
        m_events.Add("dialog " + std::to_string(RunModal(dialog)));
    };
    OnGui([] {
        BDCManager.StartHistoryTransfer(nullptr);
        BDCManager.ObjectChanged(1, {8, 1});
        BDCManager.InitiateShutdownW();
    });
    EXPECT_TRUE(BDCManager.WaitEnd(30000));
    EXPECT_THAT(m_events.Take(), ElementsAre("StartTransfer(unattended, all)", "I: OnObjectChanged(1, (8, 1))",
                                             "dialog 0", "~HistoryStarter()"));
}

TEST_F(ConsoleRun, MessagesAreServedWhileADialogIsOpen) {
    Start();
    OpenNestedDialogs(m_events, false);
    ASSERT_TRUE(IsModalOpen("inner"));
    BDCManager.ObjectChanged(1, {8, 1});
    Post(WM_CONSOLE_SHOW);
    EXPECT_THAT(Settled(), ElementsAre("I: OnObjectChanged(1, (8, 1))"));
    EXPECT_TRUE(IsVisible());
}

// The handler hangs in a call to a dead device, say. The manager stops in time, and the next console begins when it
// returns.
TEST_F(ConsoleRun, AHangingHandlerIsAbandonedAndTheNextRunBeginsBehindIt) {
    Start();
    std::promise<void> release;
    std::promise<void> hanging;
    m_onTransfer = [&](const BACSTAC_DEV_OBJ_REF*) {
        hanging.set_value();
        release.get_future().wait();
        m_events.Add("handler returned");
    };
    BDCManager.StartHistoryTransfer(nullptr);
    hanging.get_future().wait();
    BDCManager.ObjectChanged(1, {8, 1});
    for (int i = 0; i < 10; ++i)
        BDCManager.StartHistoryTransfer(NewTransferRequest(1, 20, 5)); // never delivered, and freed
    BDCManager.InitiateShutdownW();
    EXPECT_FALSE(BDCManager.WaitEnd(100));
    EXPECT_FALSE(BDCManager.IsRunning());

    m_driver.m_name = "Next";
    BDCManager.Start(&m_driver, 100);
    EXPECT_TRUE(BDCManager.IsRunning());
    BDCManager.ObjectChanged(2, {8, 1}); // there is no window yet
    m_onTransfer = nullptr;
    release.set_value();
    EXPECT_TRUE(Eventually([&] { return Title().ends_with("Next"); }));
    BDCManager.ObjectChanged(3, {8, 1});
    EXPECT_THAT(Settled(), ElementsAre("StartTransfer(unattended, all)", "handler returned", "~HistoryStarter()",
                                       "I: OnObjectChanged(3, (8, 1))"));
}

TEST_F(ConsoleRun, ARunThatIsAbandonedBeforeItBeganNeverBegins) {
    Start();
    std::promise<void> release;
    std::promise<void> hanging;
    m_onTransfer = [&](const BACSTAC_DEV_OBJ_REF*) {
        hanging.set_value();
        release.get_future().wait();
    };
    BDCManager.StartHistoryTransfer(nullptr);
    hanging.get_future().wait();
    EXPECT_FALSE(BDCManager.WaitEnd(0));
    for (int i = 0; i < 3; ++i) {
        BDCManager.Start(&m_driver, 0);
        EXPECT_FALSE(BDCManager.WaitEnd(0));
    }
    m_onTransfer = nullptr;
    release.set_value();
    EXPECT_TRUE(Eventually([&] { return !HasWindow(); }));
    EXPECT_THAT(Settled(), ElementsAre("StartTransfer(unattended, all)", "~HistoryStarter()"));
    Start();
    EXPECT_TRUE(HasWindow());
}

TEST_F(ConsoleRun, PostsFromManyThreadsDuringStartsAndStopsAreHarmless) {
    std::atomic<bool> stop{false};
    std::vector<std::thread> drivers;
    for (int i = 0; i < 4; ++i)
        drivers.emplace_back([&] {
            while (!stop) {
                BDCManager.ObjectChanged(1, {8, 1});
                BDCManager.StartHistoryTransfer(NewTransferRequest(1, 20, 5));
                BDCManager.OnTagChange(1, 1);
                BDCManager.Lock();
                BDCManager.Unlock();
                std::this_thread::sleep_for(Milliseconds(1));
            }
        });
    for (int i = 0; i < 20; ++i) {
        Start();
        EXPECT_TRUE(Stop());
    }
    stop = true;
    for (std::thread& driver : drivers)
        driver.join();
}

} // namespace
