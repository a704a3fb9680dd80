// The end of the console while people and jobs are in the middle of something. It needs no operator, takes bounded
// time, and destroys nothing under its own stack; the sanitizers watch over the rest.
#include "host/login/LoginDlg.h"
#include "module/console/Busy.h"
#include "module/console/ConsoleState.h"
#include "module/console/PasswordInput.h"
#include "module/console/ProgressBarDlg.h"
#include "module/widgets/InputDlg.h"
#include "tests/gui/ConsoleFixture.h"
#include "tests/support/TempFolder.h"

#include <atomic>
#include <future>
#include <thread>

namespace {

using ::testing::ElementsAre;

constexpr Milliseconds BOUND(5000);

class Shutdown : public ConsoleFixture {
protected:
    Shutdown() { Start(); }
    // An editor of the console, a prompt over it, and a message box over that, as an operator has left them. Returns
    // when they have gone; on the console thread.
    void OpenThreeDeep() {
        std::uint32_t number = 0;
        CInputDlg editor(ConsoleWindow(), {QStringLiteral("Number"), {}, 0, 9}, &number);
        const auto inEditor = [this, &editor] {
            CPasswordInput prompt(&editor);
            const auto inPrompt = [this] {
                ShowError(m_operator, "It failed");
                m_events.Add("box gone");
            };
            QMetaObject::invokeMethod(&prompt, inPrompt, Qt::QueuedConnection);
            m_events.Add("prompt " + std::to_string(RunModal(prompt)));
        };
        QMetaObject::invokeMethod(&editor, inEditor, Qt::QueuedConnection);
        m_events.Add("editor " + std::to_string(RunModal(editor)));
    }
    // Ends the console, and says whether it ended as it should.
    bool EndsInTime() {
        const auto start = Clock::now();
        const bool isEnded = Stop();
        return isEnded && Since(start) < BOUND && !HasWindow();
    }
    CScreenOperator m_operator;
};

TEST_F(Shutdown, LeavesDialogsThreeDeep) {
    PostToGui([this] { OpenThreeDeep(); });
    ASSERT_TRUE(IsModalOpen("Error"));
    EXPECT_TRUE(EndsInTime());
    EXPECT_THAT(m_events.Take(), ElementsAre("box gone", "prompt 0", "editor 0", "~HistoryStarter()"));
}

TEST_F(Shutdown, LeavesDialogsThreeDeepInsideTheStepOfAJob) {
    m_onTransfer = [this](const BACSTAC_DEV_OBJ_REF*) {
        CProgressBarDlg progress(ConsoleWindow());
        QMetaObject::invokeMethod(
            ConsoleWindow(), [this] { OpenThreeDeep(); }, Qt::QueuedConnection);
        progress.SetProgress("working", 10);
        m_events.Add(progress.IsCancelled() ? "cancelled" : "goes on");
    };
    BDCManager.StartHistoryTransfer(nullptr);
    ASSERT_TRUE(IsModalOpen("Error"));
    EXPECT_TRUE(EndsInTime());
    EXPECT_THAT(m_events.Take(), ElementsAre("StartTransfer(unattended, all)", "box gone", "prompt 0", "editor 0",
                                             "cancelled", "~HistoryStarter()"));
}

TEST_F(Shutdown, LeavesJobsThatNest) {
    std::atomic<int> depth{0};
    m_onTransfer = [&](const BACSTAC_DEV_OBJ_REF*) {
        CProgressBarDlg progress(ConsoleWindow());
        if (++depth < 5)
            BDCManager.StartHistoryTransfer(nullptr);
        while (!progress.IsCancelled())
            progress.SetProgress("working", 10);
        --depth;
    };
    BDCManager.StartHistoryTransfer(nullptr);
    ASSERT_TRUE(Eventually([&] { return depth == 5; }));
    EXPECT_TRUE(EndsInTime());
    EXPECT_EQ(depth, 0);
}

TEST_F(Shutdown, LetsAWorkerGoThatWaitsForAnAnswer) {
    std::vector<std::future<BoxAnswer>> workers;
    for (int i = 0; i < 3; ++i)
        workers.push_back(std::async(std::launch::async, [this] {
            return m_operator.ShowBox({"Question", "Go on?", BoxIcon::Question, BoxButtons::YesNoCancel});
        }));
    ASSERT_TRUE(IsModalOpen("Question"));
    EXPECT_TRUE(EndsInTime());
    for (auto& worker : workers)
        EXPECT_EQ(worker.get(), BoxAnswer::Cancel);
}

TEST_F(Shutdown, LeavesTheLogin) {
    const CTempFolder folder;
    CUserStore store{{folder.File("users"), {}, {}}};
    m_driver.m_users.m_onLogin = [&](QWidget* window) {
        CLoginDlg dialog(window, store, "user", [](const std::string&) { return std::string(); });
        m_events.Add("login " + std::to_string(dialog.exec()));
    };
    consoleWiring.getOperator = CGuiOperator::Get;
    Post(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    ASSERT_TRUE(EventuallyOnGui([] { return ModalDialog() != nullptr; }));
    EXPECT_TRUE(EndsInTime());
    EXPECT_THAT(m_events.Take(),
                ElementsAre("GetCurrentUserName(7)", "Login(operator)", "login 0", "~HistoryStarter()"));
}

TEST_F(Shutdown, ComesThroughWhileOtherThreadsPost) {
    PostToGui([this] { OpenThreeDeep(); });
    ASSERT_TRUE(IsModalOpen("Error"));
    std::atomic<bool> isOver{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            while (!isOver) {
                BDCManager.StartTimeSync();
                BDCManager.StartHistoryTransfer(NewTransferRequest(1, 20, 5));
                std::this_thread::yield();
            }
        });
    EXPECT_TRUE(EndsInTime());
    isOver = true;
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
