// The product's login dialog over the users' file. Stays open after a wrong password, up to three; tells while it has
// to be waited after failures, and how the first user is made when there is none. On the thread of the windows.
#pragma once

#include "platform/kernel/users/UserStore.h"

#include <QDialog>
#include <QTimer>

#include <string>

class QLabel;
class QLineEdit;
class QPushButton;

class CLoginDlg : public QDialog {
    Q_OBJECT

public:
    CLoginDlg(QWidget* parent, CUserStore& store, const std::string& name);

    // The user of the last attempt, and how that ended; Refused before the first one.
    const std::string& GetName() const { return m_name; }
    LoginOutcome GetOutcome() const { return m_outcome; }
    bool HasUsedUpAttempts() const { return m_refusals >= REFUSAL_LIMIT; }

    void accept() override;

private:
    static constexpr int REFUSAL_LIMIT = 3;

    void Tell(const std::string& text);
    void WaitFor(std::int64_t seconds);

    CUserStore& m_store;
    std::string m_name;
    LoginOutcome m_outcome = LoginOutcome::Refused;
    int m_refusals = 0;
    std::int64_t m_wait = 0; // seconds until OK is enabled again
    QTimer m_second;
    QLineEdit* m_nameEdit;
    QLineEdit* m_passwordEdit;
    QLabel* m_message;
    QPushButton* m_ok;
};
