// The login dialog over a users' file, driven as its user does.
#include "host/login/LoginDlg.h"
#include "host/login/FirstUserCommand.h"
#include "host/login/PasswordEdit.h"
#include "tests/gui/ConsoleFixture.h"
#include "tests/support/TempFolder.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <fstream>

namespace {

constexpr const char* PASSWORD = "correct horse";
constexpr PasswordCost CHEAP{8192, 1};

class Login : public ::testing::Test {
protected:
    void AddUser(const std::string& name) {
        std::string error;
        ASSERT_TRUE(m_store.Add(name, PASSWORD, error)) << error;
    }

    // Runs the test's body around an open dialog on the thread of the windows.
    void Open(const std::string& name, const std::function<void()>& body) {
        OnGui([&] {
            QWidget console;
            console.setWindowTitle(QStringLiteral("Console of the test"));
            CLoginDlg dialog(&console, m_store, name,
                             [](const std::string& user) { return FirstUserCommand("bdc", "", user); });
            dialog.show();
            m_dialog = &dialog;
            body();
            m_dialog = nullptr;
        });
    }

    template <class Widget = QLineEdit>
    Widget& Named(const char* name) const {
        for (auto* const widget : m_dialog->findChildren<Widget*>())
            if (widget->accessibleName() == QString::fromLatin1(name))
                return *widget;
        throw std::runtime_error(name);
    }
    QPushButton& Ok() const { return *m_dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok); }
    QString Message() const { return Named<QLabel>("Message").text(); }
    void Enter(const char* name, const char* password) const {
        Named<>("User name").setText(QString::fromLatin1(name));
        Named<>("Password").setText(QString::fromLatin1(password));
        QTest::keyClick(m_dialog, Qt::Key_Return);
    }
    std::vector<QRect> Places() const {
        std::vector<QRect> places{m_dialog->geometry()};
        for (const QWidget* const widget : m_dialog->findChildren<QWidget*>())
            if (widget->isVisible())
                places.push_back({widget->mapToGlobal(QPoint(0, 0)), widget->size()});
        return places;
    }

    CTempFolder m_folder;
    std::int64_t m_now = 1'795'000'000;
    CUserStore m_store{{m_folder.File("users"), CHEAP, [this] { return m_now; }}};
    CLoginDlg* m_dialog = nullptr;
};

TEST_F(Login, AKnownNameNeedsOnlyItsPassword) {
    AddUser("anna");
    Open("anna", [&] {
        EXPECT_EQ(Named<>("User name").text(), QStringLiteral("anna"));
        EXPECT_EQ(m_dialog->focusWidget(), &Named<>("Password"));
        EXPECT_FALSE(m_dialog->findChild<QGroupBox*>()->isVisible());
        QTest::keyClicks(m_dialog->focusWidget(), QString::fromLatin1(PASSWORD));
        QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Return);
        EXPECT_EQ(m_dialog->result(), QDialog::Accepted);
        EXPECT_EQ(m_dialog->GetName(), "anna");
    });
}

TEST_F(Login, ANameThatIsOnlyProposedCanBeTypedOver) {
    AddUser("anna");
    Open("user", [&] {
        EXPECT_EQ(m_dialog->focusWidget(), &Named<>("User name"));
        QTest::keyClicks(m_dialog->focusWidget(), QStringLiteral("anna"));
        EXPECT_EQ(Named<>("User name").text(), QStringLiteral("anna"));
    });
}

TEST_F(Login, EnterGoesOnToWhatIsMissingAndCountsNoFailure) {
    AddUser("anna");
    Open("user", [&] {
        Enter("anna", "");
        EXPECT_EQ(m_dialog->focusWidget(), &Named<>("Password"));
        Enter("", PASSWORD);
        EXPECT_EQ(m_dialog->focusWidget(), &Named<>("User name"));
        EXPECT_EQ(Message(), QString());
        Enter("anna", PASSWORD);
        EXPECT_EQ(m_dialog->result(), QDialog::Accepted);
    });
}

TEST_F(Login, ARefusalIsToldAndNothingMoves) {
    AddUser("anna");
    Open("anna", [&] {
        const std::vector<QRect> before = Places();
        Enter("anna", "wrong password");
        EXPECT_EQ(Message(), QStringLiteral("The user name or the password is wrong."));
        EXPECT_EQ(Named<>("Password").text(), QString());
        EXPECT_TRUE(m_dialog->isVisible());
        const std::vector<QRect> after = Places();
        EXPECT_EQ(after.size(), before.size() + 1) << "the sign beside the message";
        for (const QRect& place : before)
            EXPECT_NE(std::ranges::find(after, place), after.end());
    });
}

TEST_F(Login, TheThirdRefusalEndsIt) {
    AddUser("anna");
    Open("anna", [&] {
        for (int attempt = 0; attempt < 3; ++attempt) {
            EXPECT_TRUE(m_dialog->isVisible());
            EXPECT_FALSE(m_dialog->HasUsedUpAttempts());
            Enter("anna", "wrong password");
            m_now += 3600; // past every delay
        }
        EXPECT_FALSE(m_dialog->isVisible());
        EXPECT_EQ(m_dialog->result(), QDialog::Rejected);
        EXPECT_TRUE(m_dialog->HasUsedUpAttempts());
    });
}

TEST_F(Login, ADelayIsCountedDownAndThenOverWithoutAFurtherAttempt) {
    AddUser("anna");
    for (const std::int64_t delay : {1, 0}) { // of 1 second, then of 2
        EXPECT_EQ(m_store.Login("anna", "wrong password").outcome, LoginOutcome::Refused);
        m_now += delay;
    }
    Open("anna", [&] {
        Enter("anna", PASSWORD);
        EXPECT_EQ(Message().toStdString(), LoginDelayText(2));
        EXPECT_FALSE(Ok().isEnabled());
        Enter("anna", PASSWORD); // is not looked at
        EXPECT_TRUE(m_dialog->isVisible());
        EXPECT_TRUE(QTest::qWaitFor([&] { return Message().toStdString() == LoginDelayText(1); }));
        EXPECT_TRUE(QTest::qWaitFor([&] { return Ok().isEnabled(); }));
        EXPECT_EQ(Message(), QString());
        m_now += 2;
        Enter("anna", PASSWORD);
        EXPECT_EQ(m_dialog->result(), QDialog::Accepted);
    });
}

TEST_F(Login, WithoutAnyUserTheCommandThatMakesTheNamedOneCanBeCopied) {
    Open("user", [&] {
        auto& command = Named<>("Command that makes the first user");
        EXPECT_TRUE(command.isVisible());
        EXPECT_EQ(command.text(), QStringLiteral("bdc user add user --administrator"));
        Named<>("User name").setText(QStringLiteral("anna lee"));
        for (QPushButton* const button : m_dialog->findChildren<QPushButton*>())
            if (button->text() == QStringLiteral("C&opy"))
                button->click();
        EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("bdc user add 'anna lee' --administrator"));
        AddUser("anna lee");
        Enter("anna lee", PASSWORD);
        EXPECT_EQ(m_dialog->result(), QDialog::Accepted);
    });
}

TEST_F(Login, AFileThatCannotBeReadIsToldWhole) {
    std::ofstream(m_folder.File("users")) << "no users' file";
    Open("anna", [&] {
        const auto& message = Named<QLabel>("Message");
        EXPECT_TRUE(message.text().startsWith(QStringLiteral("Nobody can log in. ")));
        EXPECT_LE(message.heightForWidth(message.width()), message.height());
        EXPECT_FALSE(m_dialog->findChild<QGroupBox*>()->isVisible());
    });
}

TEST_F(Login, EscapeGivesUp) {
    AddUser("anna");
    Open("anna", [&] {
        QTest::keyClick(m_dialog, Qt::Key_Escape);
        EXPECT_FALSE(m_dialog->isVisible());
        EXPECT_EQ(m_dialog->result(), QDialog::Rejected);
        EXPECT_FALSE(m_dialog->HasUsedUpAttempts());
    });
}

TEST_F(Login, CapsLockIsNoticedFromWhatIsTyped) {
    AddUser("anna");
    Open("anna", [&] {
        const auto isHinted = [&] {
            return std::ranges::any_of(m_dialog->findChildren<QLabel*>(), [](const QLabel* label) {
                return label->text() == QStringLiteral("Caps Lock is on.");
            });
        };
        const std::vector<QRect> before = Places();
        const auto type = [&](const char* text, Qt::KeyboardModifiers modifiers) {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_A, modifiers, QString::fromLatin1(text));
            QApplication::sendEvent(&Named<>("Password"), &event);
            return isHinted();
        };
        EXPECT_FALSE(type("A", Qt::ShiftModifier));
        EXPECT_FALSE(type("a", Qt::NoModifier));
        EXPECT_TRUE(type("A", Qt::NoModifier));
        EXPECT_TRUE(type("7", Qt::NoModifier)) << "no letter, no news";
        EXPECT_EQ(Places(), before) << "nothing moves";
        EXPECT_FALSE(type("a", Qt::NoModifier));
        EXPECT_TRUE(type("a", Qt::ShiftModifier));
        QTest::keyClick(&Named<>("Password"), Qt::Key_CapsLock);
        EXPECT_FALSE(isHinted());
    });
}

TEST(FirstUserCommand, IsOneThatAShellTakes) {
    EXPECT_EQ(FirstUserCommand("bdc", "", "anna"), "bdc user add anna --administrator");
    EXPECT_EQ(FirstUserCommand("/opt/b c/bdc", "/data/site-1", "o'neill"),
              "'/opt/b c/bdc' user add 'o'\\''neill' --administrator --data /data/site-1");
    EXPECT_EQ(FirstUserCommand("bdc", "", ""), "bdc user add '' --administrator");
    EXPECT_EQ(FirstUserCommand("bdc", "", "-x"), "bdc user add '-x' --administrator");
}

} // namespace
