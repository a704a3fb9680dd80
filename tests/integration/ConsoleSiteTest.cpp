// The driver as a whole with its console, used through the window: what the pages and the login do to files and jobs.
#include "api/bacnet/Dir.h"
#include "api/bacnet/Log.h"
#include "host/FieldDriver.h"
#include "host/Runtime.h"
#include "module/console/Globals.h"
#include "module/console/ManualResetEvent.h"
#include "module/console/Messages.h"
#include "module/console/TaskRunner.h"
#include "platform/kernel/Kernel.h"
#include "platform/stack/client/BacnetClient.h"
#include "platform/stack/network/NetworkLayer.h"
#include "tests/support/Loopback.h"
#include "tests/support/TempFolder.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// On the thread of the windows, which is the module's own.
void OnGui(const std::function<void()>& f) {
    static CTaskRunner* const runner = [] {
        auto* const made = new CTaskRunner; // as long as the application
        made->moveToThread(qApp->thread());
        return made;
    }();
    CManualResetEvent done;
    runner->Post([&] {
        f();
        done.Set();
    });
    done.Wait(WAIT_WITHOUT_LIMIT);
}

bool Eventually(const std::function<bool()>& condition) {
    for (int i = 0; i < 2000; ++i) {
        bool holds = false;
        OnGui([&] { holds = condition(); });
        if (holds)
            return true;
        std::this_thread::sleep_for(5ms);
    }
    return false;
}

QWidget* Window(const QString& nameOrTitle) {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && (widget->objectName() == nameOrTitle || widget->windowTitle() == nameOrTitle))
            return widget;
    return nullptr;
}

void Press(const char* label) {
    OnGui([label] {
        for (auto* const button :
             Window(QStringLiteral("BACnetConfigurationConsole"))->findChildren<QAbstractButton*>())
            if (button->text() == QString::fromLatin1(label))
                return button->click();
        throw std::runtime_error(label);
    });
}

class ConsoleSite : public ::testing::Test {
protected:
    ConsoleSite() {
        const std::string text = "[[network]]\nbind = \"" + m_addresses.Text(1) +
                                 "\"\nport = " + std::to_string(m_addresses.Port()) +
                                 "\nbroadcast = \"127.255.255.255\"\n"
                                 "[[tag]]\nname = \"Flush\"\ntype = \"digital\"\n";
        Config config;
        std::vector<ConfigFault> faults;
        EXPECT_TRUE(ReadConfig(text, config, faults));
        std::filesystem::current_path(m_folder.Path());
        m_runtime = std::make_unique<CRuntime>(config, m_folder.Path());
    }
    void Start() {
        std::string error;
        ASSERT_TRUE(m_runtime->Open(error)) << error;
        allPropPages.history.flushTag = "Flush";
        ASSERT_TRUE(m_runtime->StartConsole(false, error)) << error;
    }
    void TearDown() override {
        EXPECT_TRUE(m_runtime->End());
        std::filesystem::current_path("/");
    }
    void ShowWindow() {
        BDCManager.PostMessageW(WM_CONSOLE_SHOW, 0, 0);
        ASSERT_TRUE(Eventually([] { return Window(QStringLiteral("BACnetConfigurationConsole")) != nullptr; }));
    }
    std::string Log(const char* file) const { return m_folder.Get(std::string("log/") + file); }

    const testing_support::LoopbackBlock m_addresses;
    CTempFolder m_folder;
    std::unique_ptr<CRuntime> m_runtime;
};

TEST_F(ConsoleSite, TheLogFilePageChangesWhatTheLogFilesHold) {
    Start();
    LogDebugInfo("debugging before");
    LogInf("news before");
    EXPECT_THAT(Log("bacnet.log"), HasSubstr("news before"));
    EXPECT_THAT(Log("bacnet-000001.001.log"), HasSubstr("news before"));
    EXPECT_THAT(Log("bacnet.log"), Not(HasSubstr("debugging before")));

    ShowWindow();
    Press("&Trace");
    Press("Enable historical log");
    LogDebugInfo("debugging meanwhile");
    Press("Save now");
    LogDebugInfo("debugging after");
    EXPECT_THAT(Log("bacnet.log"), Not(HasSubstr("debugging meanwhile"))) << "not before it is saved";
    EXPECT_THAT(Log("bacnet.log"), HasSubstr("debugging after"));
    EXPECT_THAT(Log("bacnet-000001.001.log"), Not(HasSubstr("debugging after")));

    Press("&Low info");
    Press("Enable historical log");
    Press("Save now");
    LogInf("news in the second session");
    LogErr("failure in the second session");
    EXPECT_THAT(Log("bacnet.log"), Not(HasSubstr("news in the second session")));
    EXPECT_THAT(Log("bacnet-000002.001.log"), HasSubstr("failure in the second session"));
    EXPECT_TRUE(m_folder.Has("log/bacnet-000001.001.log"));

    Press("Limit historical log file by sessions");
    OnGui([] {
        auto* const window = Window(QStringLiteral("BACnetConfigurationConsole"));
        for (auto* const edit : window->findChildren<QLineEdit*>())
            if (edit->text() == QStringLiteral("100")) // the session limit's default
                edit->setText(QStringLiteral("1"));
    });
    Press("Save now");
    EXPECT_FALSE(m_folder.Has("log/bacnet-000001.001.log")) << "one session is kept: this one";
    EXPECT_TRUE(m_folder.Has("log/bacnet-000002.001.log"));

    Press("Enable online log");
    Press("Save now");
    LogErr("failure at the end");
    EXPECT_THAT(Log("bacnet.log"), Not(HasSubstr("failure at the end")));
    EXPECT_THAT(Log("bacnet-000002.001.log"), HasSubstr("failure at the end"));
}

TEST_F(ConsoleSite, TheBrowserShowsTheLocalNetworkUnderTheNumberThatItsRoutersTell) {
    CBACnetDev device;
    device.SetInst(10);
    device.SetAddr({0, 0, 0, {127, 0, 0, 1, 186, 192}, 6});
    CBACnetDir directory;
    directory.AddDev(device);
    ASSERT_TRUE(directory.Save(m_folder.File("directory.dat")));
    std::string error;
    ASSERT_TRUE(m_runtime->Open(error)) << error;
    constexpr std::uint8_t NETWORK_NUMBER_IS[] = {0x01, 0x80, 0x13, 0x00, 0x07, 0x01}; // 7, as configured
    m_runtime->Client().Transactions().Network().OnNpdu(
        0, {bacnet::ToMac({m_addresses.Ip(2), m_addresses.Port()}), true, NETWORK_NUMBER_IS});
    EXPECT_EQ(m_runtime->Driver().GetIdentity().GetLocalNetworkNumber(), 7);
    ASSERT_TRUE(m_runtime->StartConsole(false, error)) << error;
    const auto isShown = [] {
        for (const QWidget* const window : QApplication::topLevelWidgets())
            for (const auto* const tree : window->findChildren<QTreeView*>())
                if (tree->accessibleName() == QStringLiteral("Devices and objects"))
                    return tree->model()->index(0, 0).data().toString() == QStringLiteral("Network 7");
        return false;
    };
    EXPECT_TRUE(Eventually(isShown));
}

TEST_F(ConsoleSite, ADamagedFileOfUsersLetsNobodyInAndTheJobsGoOn) {
    m_folder.Put("users", "bdc-users 1 0123\n{}\n");
    Start();
    BDCManager.PostMessageW(WM_CONSOLE_TRAYICON, 1, TRAY_LEFT_BUTTON_UP);
    ASSERT_TRUE(Eventually([] { return Window(QStringLiteral("Login")) != nullptr; }));
    const auto message = [] {
        std::string text;
        OnGui([&] {
            for (const auto* const label : Window(QStringLiteral("Login"))->findChildren<QLabel*>())
                if (label->accessibleName() == QStringLiteral("Message"))
                    text = label->text().toStdString();
        });
        return text;
    };
    const std::string told = "Nobody can log in. " + m_folder.File("users") + ": is damaged";
    EXPECT_THAT(message(), StartsWith(told));
    OnGui([] {
        auto* const login = Window(QStringLiteral("Login"));
        for (auto* const edit : login->findChildren<QLineEdit*>())
            edit->setText(QStringLiteral("anybody"));
        login->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    EXPECT_THAT(message(), StartsWith(told));
    OnGui([] { EXPECT_EQ(Window(QStringLiteral("BACnetConfigurationConsole")), nullptr); });

    const std::uint64_t ended = m_runtime->Monitor().Ended();
    m_runtime->GetKernel().SetTagValue("Flush", 1.0);
    EXPECT_TRUE(m_runtime->Monitor().WaitForEnd(ended, 20s)) << "a transfer starts and ends while the login stands";
    EXPECT_EQ(m_folder.Get("users"), "bdc-users 1 0123\n{}\n") << "left as it is";
}

TEST_F(ConsoleSite, SettingsThatCannotBeSavedAreToldOnceAndSavedTheNextTime) {
    Start();
    ShowWindow();
    Press("Limit historical log file by sessions");
    std::filesystem::create_directory(m_folder.File("settings.dat.new")); // nothing can be written there
    std::thread save([] { Press("Save now"); });
    ASSERT_TRUE(Eventually([] { return QApplication::activeModalWidget() != nullptr; }));
    OnGui([this] {
        auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        EXPECT_EQ(box->windowTitle().toStdString(), "Error");
        std::string text;
        for (const auto* const label : box->findChildren<QLabel*>())
            text += label->text().toStdString();
        EXPECT_THAT(text, HasSubstr("Settings are not saved: " + m_folder.File("settings.dat.new")));
        box->accept();
    });
    save.join();
    OnGui([] {
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_NE(Window(QStringLiteral("BACnetConfigurationConsole")), nullptr);
    });
    EXPECT_NE(allPropPages.log.flags & LOG_HISTORICAL_LIMIT_SESSIONS, 0U);

    std::filesystem::remove(m_folder.File("settings.dat.new"));
    Press("Save now");
    EXPECT_TRUE(m_folder.Has("settings.dat"));
}

} // namespace
