#include "host/login/LoginDlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <chrono>

namespace {

constexpr int COLUMNS = 36; // of the message, in characters

} // namespace

CLoginDlg::CLoginDlg(QWidget* parent, CUserStore& store, const std::string& name)
    : QDialog(parent), m_store(store), m_name(name), m_nameEdit(new QLineEdit(QString::fromStdString(name), this)),
      m_passwordEdit(new QLineEdit(this)), m_message(new QLabel(this)) {
    setWindowTitle(QStringLiteral("Login"));
    m_nameEdit->selectAll();
    m_passwordEdit->setEchoMode(QLineEdit::Password);
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->setMinimumWidth(COLUMNS * fontMetrics().averageCharWidth());
    m_message->setAccessibleName(QStringLiteral("Message"));

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &CLoginDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CLoginDlg::reject);
    m_second.setInterval(std::chrono::seconds(1));
    connect(&m_second, &QTimer::timeout, this, [this] { WaitFor(m_wait - 1); });

    auto* const fields = new QFormLayout;
    fields->addRow(QStringLiteral("&User name"), m_nameEdit);
    fields->addRow(QStringLiteral("&Password"), m_passwordEdit);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(m_message);
    layout->addWidget(buttons);

    std::vector<UserInfo> users;
    std::string error;
    if (!m_store.List(users, error))
        Tell("Nobody can log in. " + error);
    else if (users.empty())
        Tell(NO_USERS_TEXT);
    else
        Tell({});
}

void CLoginDlg::accept() {
    m_name = m_nameEdit->text().toStdString();
    const QByteArray password = m_passwordEdit->text().toUtf8();
    setCursor(Qt::WaitCursor);
    const LoginResult result = m_store.Login(m_name, {password.constData(), static_cast<std::size_t>(password.size())});
    unsetCursor();
    m_outcome = result.outcome;
    m_passwordEdit->clear();
    m_passwordEdit->setFocus();
    switch (result.outcome) {
    case LoginOutcome::Ok:
        QDialog::accept();
        return;
    case LoginOutcome::Refused:
        Tell(result.text);
        if (++m_refusals >= REFUSAL_LIMIT)
            QDialog::reject();
        return;
    case LoginOutcome::Delayed:
        WaitFor(result.wait);
        return;
    case LoginOutcome::NoUsers:
    case LoginOutcome::Unusable:
        Tell(result.text);
        return;
    }
}

void CLoginDlg::Tell(const std::string& text) {
    m_message->setText(QString::fromStdString(text));
    m_message->setVisible(!text.empty());
    adjustSize();
}

void CLoginDlg::WaitFor(std::int64_t seconds) {
    m_wait = seconds;
    m_ok->setEnabled(seconds <= 0);
    if (seconds <= 0) {
        m_second.stop();
        Tell({});
        return;
    }
    m_second.start();
    Tell(LoginDelayText(seconds));
}
