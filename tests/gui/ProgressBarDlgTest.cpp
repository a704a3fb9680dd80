// The progress dialog over the console, driven by a job as the console's jobs are.
#include "module/console/ProgressBarDlg.h"

#include "module/console/ConsolePage.h"
#include "module/console/ConsoleState.h"
#include "tests/gui/ConsoleFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QTest>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct EditPage : CConsolePage {
    explicit EditPage(QWidget* place) : CConsolePage(place) {
        auto* const edit = new QLineEdit(this);
        edit->setAccessibleName(QStringLiteral("Field"));
        setFocusProxy(edit);
    }
};

class Progress : public ConsoleFixture {
protected:
    Progress() {
        consoleWiring.newPage[PAGE_GENERAL] = [](QWidget* place, CDriver&) -> CConsolePage* {
            return new EditPage(place);
        };
        Start();
        ShowWindow();
        Settled();
    }
    // Runs a job with a progress dialog, as a handler of the console.
    void Run(const std::function<void(CProgressBarDlg&)>& job) {
        m_onTransfer = [job](const BACSTAC_DEV_OBJ_REF*) {
            CProgressBarDlg progress(ConsoleWindow());
            job(progress);
        };
        BDCManager.StartHistoryTransfer(nullptr);
        Finished();
    }
};

TEST_F(Progress, ShowsTextsAndPercent) {
    Run([](CProgressBarDlg& progress) {
        const CControls dialog(progress);
        EXPECT_TRUE(progress.isVisible());
        EXPECT_FALSE(progress.isModal());
        EXPECT_EQ(progress.windowTitle(), QStringLiteral("Please wait...."));
        EXPECT_EQ(dialog.Only<QProgressBar>().value(), 0);
        EXPECT_EQ(dialog.Only<QProgressBar>().maximum(), 100);
        progress.SetTitle("Transfer in progress...");
        progress.SetProgress("Reading (AHU \u00E4, 2) name & description", 40);
        EXPECT_EQ(progress.windowTitle(), QStringLiteral("Transfer in progress..."));
        EXPECT_THAT(dialog.Texts(), ElementsAre("Reading (AHU \u00E4, 2) name & description"));
        EXPECT_EQ(dialog.Only<QLabel>().buddy(), nullptr) << "the ampersand is shown as it is";
        EXPECT_EQ(dialog.Only<QProgressBar>().value(), 40);
        progress.SetProgress("", 1000);
        EXPECT_EQ(dialog.Only<QProgressBar>().value(), 100);
    });
}

TEST_F(Progress, OnlyAsksTheJobToEnd) {
    Run([](CProgressBarDlg& progress) {
        progress.SetProgress("", 0);
        QTest::keyClick(&progress, Qt::Key_Return);
        progress.accept();
        EXPECT_FALSE(progress.IsCancelled());
        for (const auto cancel : {+[](CProgressBarDlg& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                                  +[](CProgressBarDlg& dialog) { dialog.close(); }}) {
            cancel(progress);
            EXPECT_TRUE(progress.IsCancelled());
            EXPECT_TRUE(progress.isVisible());
            progress.ClearCancelled();
            EXPECT_FALSE(progress.IsCancelled());
        }
    });
}

TEST_F(Progress, DisablesTheConsoleAndGivesTheFocusBack) {
    const auto isEnabled = [] { return ConsoleWindow()->isEnabled(); };
    const auto focus = [] { return ConsoleWindow()->focusWidget(); };
    QWidget* field = nullptr;
    OnGui([&] {
        field = &CControls(ConsoleWindow()).Get<QLineEdit>("Field");
        field->setFocus();
        EXPECT_EQ(focus(), field);
    });
    Run([&](CProgressBarDlg& progress) {
        EXPECT_FALSE(isEnabled());
        EXPECT_EQ(focus(), nullptr);
        EXPECT_TRUE(progress.isEnabled());
        EXPECT_TRUE(CBusyScope::IsBusy());
        {
            CProgressBarDlg inner(ConsoleWindow());
            EXPECT_TRUE(progress.isEnabled()) << "the outer one can still be cancelled";
        }
        EXPECT_FALSE(isEnabled()) << "the outer one goes on";
    });
    OnGui([] {
        QDialog box(ConsoleWindow()); // stood there before the job began
        const CProgressBarDlg progress(ConsoleWindow());
        EXPECT_TRUE(box.isEnabled());
    });
    OnGui([&] {
        EXPECT_TRUE(isEnabled());
        EXPECT_EQ(focus(), field);
        EXPECT_FALSE(CBusyScope::IsBusy());
    });
}

TEST_F(Progress, DisablesTheWindowOfItsParent) {
    Run([](CProgressBarDlg&) {});
    OnGui([] {
        {
            const CProgressBarDlg progress(consolePages[PAGE_GENERAL].load());
            EXPECT_FALSE(ConsoleWindow()->isEnabled());
        }
        EXPECT_TRUE(ConsoleWindow()->isEnabled());
        const CProgressBarDlg alone(nullptr);
        EXPECT_TRUE(ConsoleWindow()->isEnabled());
    });
}

// The messages stand in the queue before the job begins to tell of itself.
TEST_F(Progress, ServesMessagesWithEachStep) {
    Run([&](CProgressBarDlg& progress) {
        BDCManager.ObjectChanged(1, {8, 1});
        BDCManager.ObjectChanged(2, {8, 1});
        EXPECT_THAT(m_events.Take(), ElementsAre("StartTransfer(unattended, all)"));
        progress.SetProgress("one", 1);
        EXPECT_THAT(m_events.Take(), ElementsAre("I: OnObjectChanged(1, (8, 1))", "I: OnObjectChanged(2, (8, 1))"));
    });
}

TEST_F(Progress, KeepsTheGateShut) {
    m_driver.m_users.m_logins = {{UM_LOGIN_OK, "admin"}};
    OnGui([] { ConsoleWindow()->close(); });
    Run([&](CProgressBarDlg& progress) {
        m_events.Take();
        Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
        progress.SetProgress("", 0);
        EXPECT_THAT(m_events.Take(), IsEmpty());
    });
}

// A message served by the job's own steps begins another job.
TEST_F(Progress, JobsMayNest) {
    int depth = 0;
    m_onTransfer = [&](const BACSTAC_DEV_OBJ_REF*) {
        CProgressBarDlg progress(ConsoleWindow());
        m_events.Add("begin " + std::to_string(++depth));
        if (depth < 3)
            BDCManager.StartHistoryTransfer(nullptr);
        progress.SetProgress("", 50);
        m_events.Add("end " + std::to_string(depth--));
        EXPECT_FALSE(ConsoleWindow()->isEnabled());
    };
    BDCManager.StartHistoryTransfer(nullptr);
    const std::string start = "StartTransfer(unattended, all)";
    EXPECT_THAT(Finished(),
                ElementsAre(start, "begin 1", start, "begin 2", start, "begin 3", "end 3", "end 2", "end 1"));
    OnGui([] { EXPECT_TRUE(ConsoleWindow()->isEnabled()); });
}

TEST_F(Progress, TheShutdownCancelsForGood) {
    m_onTransfer = [&](const BACSTAC_DEV_OBJ_REF*) {
        CProgressBarDlg progress(ConsoleWindow());
        while (!progress.IsCancelled())
            progress.SetProgress("working", 10);
        progress.ClearCancelled();
        EXPECT_TRUE(progress.IsCancelled());
        EXPECT_FALSE(PumpMessages());
        m_events.Add("end request sent");
    };
    BDCManager.StartHistoryTransfer(nullptr);
    EXPECT_TRUE(Stop());
    EXPECT_THAT(m_events.Take(),
                ElementsAre("StartTransfer(unattended, all)", "end request sent", "~HistoryStarter()"));
}

TEST_F(Progress, AnEmptyQueueIsServedAtOnce) {
    OnGui([] {
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(PumpMessages());
    });
}

TEST_F(Progress, OnAWorkerThereIsNothingToServe) {
    EXPECT_TRUE(PumpMessages()); // the test's own thread
    BDCManager.ObjectChanged(1, {8, 1});
    EXPECT_TRUE(PumpMessages());
    OnGui([] {});
}

} // namespace
