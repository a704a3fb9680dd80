// The console in a host that has an application object of its own, and in one without a display. Each case has a
// process of its own, since an application object cannot be replaced.
#include "tests/gui/ConsoleFixture.h"

#include <QApplication>
#include <QTimer>

#include <cstdlib>
#include <future>
#include <thread>

namespace {

class HostApplication : public ConsoleFixture {
protected:
    HostApplication() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    static int ExitCode() { return HasFailure() ? 1 : 0; }
};

char g_program[] = "host";
char g_option[] = "-platform";
char g_platform[] = "offscreen";
char* g_argv[] = {g_program, g_option, g_platform, nullptr};
int g_argc = 3;

TEST_F(HostApplication, StartAndWaitEndOnTheThreadOfTheWindowsServeEvents) {
    EXPECT_EXIT(
        {
            QApplication application(g_argc, g_argv);
            const auto start = Clock::now();
            Start();
            EXPECT_LT(Since(start), Milliseconds(20000)); // not the timeout
            EXPECT_NE(ConsoleWindow(), nullptr);
            EXPECT_EQ(ConsoleWindow()->thread(), application.thread());
            BDCManager.ObjectChanged(1, {8, 1});
            EXPECT_TRUE(Stop());
            EXPECT_EQ(ConsoleWindow(), nullptr);
            EXPECT_THAT(m_events.Take(), ::testing::ElementsAre("I: OnObjectChanged(1, (8, 1))", "~HistoryStarter()"));
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(HostApplication, TimeoutsHoldOnTheThreadOfTheWindows) {
    EXPECT_EXIT(
        {
            QApplication application(g_argc, g_argv);
            Start();
            const auto start = Clock::now();
            EXPECT_FALSE(BDCManager.WaitEnd(200)); // nobody asked for the end
            EXPECT_GE(Since(start), Milliseconds(200));
            BDCManager.Start(&m_driver, 0);
            EXPECT_TRUE(BDCManager.IsRunning());
            EXPECT_FALSE(BDCManager.WaitEnd(0));
            Start();
            EXPECT_NE(ConsoleWindow(), nullptr);
            EXPECT_TRUE(Stop());
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(HostApplication, AStartInsideAStartOnTheThreadOfTheWindowsIsNothing) {
    EXPECT_EXIT(
        {
            QApplication application(g_argc, g_argv);
            int inner = 0;
            m_driver.m_onCall = [&](const std::string& operation) {
                if (operation != "GetName")
                    return;
                ++inner;
                BDCManager.Start(&m_driver, 30000);
            };
            Start();
            EXPECT_EQ(inner, 1);
            EXPECT_TRUE(Stop());
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(HostApplication, AnotherThreadStartsTheConsoleOnTheHostsLoop) {
    EXPECT_EXIT(
        {
            QApplication application(g_argc, g_argv);
            std::thread driver([this] {
                Start();
                EXPECT_TRUE(HasWindow());
                EXPECT_TRUE(Stop());
                PostToGui([] { QApplication::quit(); });
            });
            QApplication::exec();
            driver.join();
            EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(HostApplication, AnApplicationWithoutWindowsLeavesTheManagerWithoutAThread) {
    EXPECT_EXIT(
        {
            QCoreApplication application(g_argc, g_argv);
            Start();
            EXPECT_TRUE(BDCManager.IsRunning());
            EXPECT_TRUE(Stop());
            EXPECT_FALSE(BDCManager.IsRunning());
            EXPECT_THAT(m_events.Take(),
                        ::testing::ElementsAre("E: Console: the host's application object cannot have windows"));
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(HostApplication, WithoutADisplayTheConsoleRunsOffscreen) {
    EXPECT_EXIT(
        {
            for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
                unsetenv(name);
            Start();
            EXPECT_EQ(QApplication::platformName().toStdString(), "offscreen");
            EXPECT_TRUE(HasWindow());
            EXPECT_TRUE(Stop());
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(HostApplication, WithADisplayThatCannotBeReachedTheConsoleRunsOffscreen) {
    EXPECT_EXIT(
        {
            unsetenv("QT_QPA_PLATFORM");
            unsetenv("WAYLAND_DISPLAY");
            setenv("DISPLAY", "127.0.0.1:4242", 1);
            Start();
            EXPECT_EQ(QApplication::platformName().toStdString(), "offscreen");
            EXPECT_TRUE(Stop());
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}

// Threads that still run while the process ends do it no harm.
TEST_F(HostApplication, TheProcessEndsWhileTheConsoleRuns) {
    EXPECT_EXIT(
        {
            Start();
            std::thread([] {
                for (;;) {
                    BDCManager.ObjectChanged(1, {8, 1});
                    std::this_thread::sleep_for(Milliseconds(1));
                }
            }).detach();
            std::this_thread::sleep_for(Milliseconds(20));
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}

} // namespace
