#include "module/editors/FindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

constexpr int TEXT_WIDTH = 120; // pixels

} // namespace

CFindBar::CFindBar(QWidget* parent, QPlainTextEdit& text)
    : QWidget(parent), m_text(text), m_wanted(new QLineEdit(this)), m_result(new QLabel(this)) {
    auto* const caption = new QLabel(QStringLiteral("&Find"), this);
    caption->setBuddy(m_wanted);
    m_wanted->setMinimumWidth(TEXT_WIDTH);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(caption);
    row->addWidget(m_wanted, 1);
    row->addWidget(m_result);
    const auto addButton = [&](const char* name, void (CFindBar::*act)()) {
        auto* const button = new QPushButton(QString::fromLatin1(name), this);
        connect(button, &QPushButton::clicked, this, act);
        row->addWidget(button);
    };
    addButton("&Next", &CFindBar::FindNext);
    addButton("&Previous", &CFindBar::FindPrevious);
    connect(m_wanted, &QLineEdit::textEdited, this, &CFindBar::OnEdited);
    hide();
}

void CFindBar::Open() {
    show();
    m_wanted->setFocus();
    m_wanted->selectAll();
}

void CFindBar::Close() {
    hide();
    m_text.setFocus();
}

// From where the present match begins, so that it grows with the text.
void CFindBar::OnEdited() {
    QTextCursor cursor = m_text.textCursor();
    cursor.setPosition(cursor.selectionStart());
    m_text.setTextCursor(cursor);
    FindNext();
}

void CFindBar::Find(QTextDocument::FindFlags direction) {
    const QString wanted = m_wanted->text();
    const QTextCursor before = m_text.textCursor();
    bool isFound = m_text.find(wanted, direction);
    if (!isFound) {
        m_text.moveCursor(direction == QTextDocument::FindBackward ? QTextCursor::End : QTextCursor::Start);
        isFound = m_text.find(wanted, direction);
    }
    if (!isFound)
        m_text.setTextCursor(before);
    m_result->setText(isFound || wanted.isEmpty() ? QString() : QStringLiteral("Not found"));
}

bool CFindBar::Serve(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Find))
        Open();
    else if (event.matches(QKeySequence::FindNext))
        FindNext();
    else if (event.matches(QKeySequence::FindPrevious))
        FindPrevious();
    else
        return false;
    return true;
}

// What the controls of the bar leave; Enter and Escape mean something else to the window.
void CFindBar::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && event->modifiers() & Qt::ShiftModifier)
        FindPrevious();
    else if (isEnter)
        FindNext();
    else if (event->matches(QKeySequence::Cancel))
        Close();
    else
        QWidget::keyPressEvent(event);
}
