// The product's login dialog over the users' file. Stays open after a wrong password, up to three; tells while it has
// to be waited after failures, and how the first user is made when there is none. Nothing moves when a text comes or
// goes. On the thread of the windows.
#pragma once

#include "platform/kernel/users/UserStore.h"

#include <QDialog>
#include <QTimer>

#include <functional>
#include <string>

class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

class CLoginDlg : public QDialog {
    Q_OBJECT

public:
    // The command that makes the first user, with this name.
    using UserCommand = std::function<std::string(const std::string& name)>;

    // name is proposed; parent may be hidden, and gives the dialog its icon and its heading.
    CLoginDlg(QWidget* parent, CUserStore& store, const std::string& name, UserCommand userCommand);

    // The user of the last attempt, and how that ended; Refused before the first one.
    const std::string& GetName() const { return m_name; }
    LoginOutcome GetOutcome() const { return m_outcome; }
    bool HasUsedUpAttempts() const { return m_refusals >= REFUSAL_LIMIT; }

    void accept() override;

private:
    static constexpr int REFUSAL_LIMIT = 3;

    void AddHeading(QVBoxLayout& layout);
    void AddFields(QVBoxLayout& layout);
    void AddMessage(QVBoxLayout& layout);
    void AddFirstUser(QVBoxLayout& layout);
    void AddButtons(QVBoxLayout& layout);
    void LookAtUsers();

    void LogIn();
    void Tell(const std::string& text);
    void ShowFirstUser();
    void WaitFor(std::int64_t seconds);
    void NoteCapsLock(bool isOn);

    CUserStore& m_store;
    std::string m_name;
    const UserCommand m_userCommand;
    LoginOutcome m_outcome = LoginOutcome::Refused;
    int m_refusals = 0;
    std::int64_t m_wait = 0; // seconds until OK is enabled again
    QTimer m_second;
    QLineEdit* m_nameEdit = nullptr; // the toolkit's, like all controls
    QLineEdit* m_passwordEdit = nullptr;
    QLabel* m_capsLock = nullptr;
    QLabel* m_warning = nullptr;
    QLabel* m_message = nullptr;
    QWidget* m_firstUser = nullptr;
    QLineEdit* m_command = nullptr;
    QPushButton* m_ok = nullptr;
};
