// The console in a host that has an application object of its own, and in one without a display. Each case has a
// process of its own, since an application object cannot be replaced.
#include "module/console/GuiThread.h"
#include "tests/gui/ConsoleFixture.h"

#include <QApplication>
#include <QTimer>

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
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

#ifdef BDC_XVFB
// An X server of the test's own, on a display that is free.
class CXServer {
public:
    CXServer() {
        int ends[2] = {};
        if (pipe(ends) != 0)
            return;
        m_process = fork();
        if (m_process == 0) {
            execl(BDC_XVFB, BDC_XVFB, "-displayfd", std::to_string(ends[1]).c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        char number[16] = {};
        if (read(ends[0], number, sizeof number - 1) > 0)
            m_display = ":" + std::to_string(std::atoi(number));
        close(ends[0]);
    }
    ~CXServer() { End(); }
    CXServer(const CXServer&) = delete;
    CXServer& operator=(const CXServer&) = delete;

    const std::string& GetDisplay() const { return m_display; }
    void End() {
        if (m_process <= 0)
            return;
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_process = 0;
    }

private:
    pid_t m_process = 0;
    std::string m_display;
};

TEST_F(HostApplication, TheProcessEndsAtOnceWhenTheDisplayIsLostSoThatItIsStartedAgain) {
    EXPECT_EXIT(
        {
            CXServer server;
            unsetenv("QT_QPA_PLATFORM");
            unsetenv("WAYLAND_DISPLAY");
            setenv("DISPLAY", server.GetDisplay().c_str(), 1);
            Start();
            EXPECT_EQ(QApplication::platformName().toStdString(), "xcb");
            Post(WM_CONSOLE_SHOW);
            EXPECT_TRUE(IsVisible());
            std::atomic<bool> isAtWork{true}; // threads of jobs go on until the very end
            std::thread([&] {
                while (isAtWork) {
                    BDCManager.ObjectChanged(1, {8, 1});
                    std::this_thread::sleep_for(Milliseconds(1));
                }
            }).detach();
            if (HasFailure())
                std::_Exit(1);
            server.End();
            std::this_thread::sleep_for(std::chrono::seconds(20));
            std::_Exit(2); // it has survived, and nobody sees its windows
        },
        ::testing::ExitedWithCode(EXIT_DISPLAY_LOST), "the display is lost");
}

TEST_F(HostApplication, OnceTheDisplayIsGoneTheNextProcessRunsOffscreen) {
    EXPECT_EXIT(
        {
            CXServer server;
            const std::string display = server.GetDisplay();
            server.End();
            unsetenv("QT_QPA_PLATFORM");
            unsetenv("WAYLAND_DISPLAY");
            setenv("DISPLAY", display.c_str(), 1);
            Start();
            EXPECT_EQ(QApplication::platformName().toStdString(), "offscreen");
            EXPECT_TRUE(Stop());
            std::exit(ExitCode());
        },
        ::testing::ExitedWithCode(0), "");
}
#endif

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
