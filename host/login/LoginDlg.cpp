#include "host/login/LoginDlg.h"

#include "host/login/PasswordEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

// Room, in characters of the dialog's font and in lines.
constexpr int FIELD_COLUMNS = 34;
constexpr int COMMAND_COLUMNS = 100; // at most
constexpr int MESSAGE_LINES = 2;

int ColumnsOf(const QWidget& widget, int columns) {
    return columns * widget.fontMetrics().averageCharWidth();
}

// The text never makes its window wider.
void WrapInGivenWidth(QLabel& label) {
    label.setWordWrap(true);
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    label.setSizePolicy(policy);
}

} // namespace

CLoginDlg::CLoginDlg(QWidget* parent, CUserStore& store, const std::string& name, UserCommand userCommand)
    : QDialog(parent), m_store(store), m_name(name), m_userCommand(std::move(userCommand)) {
    setWindowTitle(QStringLiteral("Login"));
    auto* const layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize); // it is as large as it need be, also when that changes
    AddHeading(*layout);
    layout->addSpacing(style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
    AddFields(*layout);
    AddMessage(*layout);
    AddButtons(*layout);
    m_second.setInterval(std::chrono::seconds(1));
    connect(&m_second, &QTimer::timeout, this, [this] { WaitFor(m_wait - 1); });
    LookAtUsers();
}

void CLoginDlg::AddHeading(QVBoxLayout& layout) {
    auto* const row = new QHBoxLayout;
    const int size = style()->pixelMetric(QStyle::PM_LargeIconSize);
    if (const QIcon icon = windowIcon(); !icon.isNull()) {
        auto* const picture = new QLabel(this);
        picture->setPixmap(icon.pixmap(QSize(size, size), devicePixelRatio()));
        row->addWidget(picture, 0, Qt::AlignTop);
    }
    auto* const texts = new QVBoxLayout;
    if (parentWidget()) {
        auto* const title = new QLabel(parentWidget()->windowTitle(), this);
        title->setTextFormat(Qt::PlainText);
        QFont bold = title->font();
        bold.setBold(true);
        title->setFont(bold);
        texts->addWidget(title);
    }
    texts->addWidget(new QLabel(QStringLiteral("Only a member of the group \"administrator\" may open it."), this));
    row->addLayout(texts, 1);
    layout.addLayout(row);
}

void CLoginDlg::AddFields(QVBoxLayout& layout) {
    m_nameEdit = new QLineEdit(QString::fromStdString(m_name), this);
    auto* const password = new CPasswordEdit(this);
    m_passwordEdit = password;
    connect(password, &CPasswordEdit::CapsLockSeen, this, &CLoginDlg::NoteCapsLock);
    m_nameEdit->setMinimumWidth(ColumnsOf(*this, FIELD_COLUMNS));
    m_nameEdit->setAccessibleName(QStringLiteral("User name"));
    m_passwordEdit->setAccessibleName(QStringLiteral("Password"));
    m_capsLock = new QLabel(this);
    m_capsLock->setMinimumHeight(fontMetrics().height());

    auto* const fields = new QFormLayout;
    fields->addRow(QStringLiteral("&User name"), m_nameEdit);
    fields->addRow(QStringLiteral("&Password"), m_passwordEdit);
    fields->addRow(QString(), m_capsLock);
    AddFirstUser(layout); // behind the name, which its command has
    layout.addLayout(fields);
}

void CLoginDlg::AddMessage(QVBoxLayout& layout) {
    m_warning = new QLabel(this);
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    m_warning->setPixmap(
        style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(QSize(size, size), devicePixelRatio()));
    QSizePolicy policy = m_warning->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_warning->setSizePolicy(policy);
    m_warning->hide();
    m_message = new QLabel(this);
    m_message->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    WrapInGivenWidth(*m_message);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->setMinimumHeight(MESSAGE_LINES * fontMetrics().lineSpacing());
    m_message->setAccessibleName(QStringLiteral("Message"));

    auto* const row = new QHBoxLayout;
    row->addWidget(m_warning, 0, Qt::AlignTop);
    row->addWidget(m_message, 1);
    layout.addLayout(row);
}

void CLoginDlg::AddFirstUser(QVBoxLayout& layout) {
    m_firstUser = new QGroupBox(QStringLiteral("First start"), this);
    auto* const text = new QLabel(QStringLiteral("There is no user yet. This &command makes one, in a terminal on this "
                                                 "machine; it asks for the password. Then log in here."),
                                  m_firstUser);
    WrapInGivenWidth(*text);
    m_command = new QLineEdit(m_firstUser);
    m_command->setReadOnly(true);
    m_command->setAccessibleName(QStringLiteral("Command that makes the first user"));
    text->setBuddy(m_command);
    auto* const copy = new QPushButton(QStringLiteral("C&opy"), m_firstUser);
    copy->setAutoDefault(false);
    connect(copy, &QPushButton::clicked, this, [this] { QApplication::clipboard()->setText(m_command->text()); });
    const auto showCommand = [this] {
        m_command->setText(QString::fromStdString(m_userCommand(m_nameEdit->text().toStdString())));
        m_command->setCursorPosition(0);
    };
    connect(m_nameEdit, &QLineEdit::textChanged, this, showCommand);
    showCommand();
    const int frame = 2 * fontMetrics().averageCharWidth();
    m_command->setMinimumWidth(std::min(m_command->fontMetrics().horizontalAdvance(m_command->text()) + 2 * frame,
                                        ColumnsOf(*this, COMMAND_COLUMNS)));

    auto* const row = new QHBoxLayout;
    row->addWidget(m_command, 1);
    row->addWidget(copy);
    auto* const group = new QVBoxLayout(m_firstUser);
    group->addWidget(text);
    group->addLayout(row);
    m_firstUser->hide();
    layout.addWidget(m_firstUser);
}

void CLoginDlg::AddButtons(QVBoxLayout& layout) {
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &CLoginDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CLoginDlg::reject);
    layout.addWidget(buttons);
}

// A name that is a user's needs only its password.
void CLoginDlg::LookAtUsers() {
    std::vector<UserInfo> users;
    std::string error;
    if (!m_store.List(users, error))
        Tell("Nobody can log in. " + error);
    else if (users.empty())
        ShowFirstUser();
    if (std::ranges::find(users, m_name, &UserInfo::name) != users.end())
        m_passwordEdit->setFocus();
    else
        m_nameEdit->setFocus();
    m_nameEdit->selectAll();
}

// Enter in a field goes on to what is missing: without it there is nothing to try, and no failure to count.
void CLoginDlg::accept() {
    for (QLineEdit* const edit : {m_nameEdit, m_passwordEdit})
        if (edit->text().isEmpty()) {
            edit->setFocus();
            return;
        }
    LogIn();
}

void CLoginDlg::LogIn() {
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
        ShowFirstUser();
        return;
    case LoginOutcome::Unusable:
        Tell(result.text);
        return;
    }
}

void CLoginDlg::Tell(const std::string& text) {
    m_message->setText(QString::fromStdString(text));
    m_warning->setVisible(!text.empty());
}

void CLoginDlg::ShowFirstUser() {
    Tell({});
    m_firstUser->show();
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

void CLoginDlg::NoteCapsLock(bool isOn) {
    m_capsLock->setText(isOn ? QStringLiteral("Caps Lock is on.") : QString());
}
