#include "module/widgets/EditX.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>

#include <algorithm>

namespace {

constexpr int NO_LIMIT = 32767;       // the toolkit's own
constexpr char16_t LAST_JUDGED = 255; // of what is typed

// As the toolkit tells text from commands.
bool IsText(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    return !event.text().isEmpty() && event.text().front().isPrint() && modifiers != Qt::ControlModifier &&
           modifiers != (Qt::ControlModifier | Qt::ShiftModifier);
}

bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool IsLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

struct Change {
    qsizetype position;
    QString inserted;
};

// Between what stayed at both ends.
Change ChangeOf(const QString& before, const QString& after) {
    const auto shorter = std::min(before.size(), after.size());
    const auto front = std::mismatch(before.begin(), before.begin() + shorter, after.begin()).first - before.begin();
    qsizetype back = 0;
    while (back < shorter - front && before[before.size() - 1 - back] == after[after.size() - 1 - back])
        ++back;
    return {front, after.mid(front, after.size() - front - back)};
}

} // namespace

CEditX::CEditX(QWidget* parent, std::uint32_t accepted, const char* extra)
    : CLimitEdit(parent, NO_LIMIT), m_accepted(accepted), m_extra(QString::fromUtf8(extra)) {
    connect(this, &QLineEdit::textEdited, this, &CEditX::Judge);
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) { m_before = text; });
}

bool CEditX::IsAccepted(QChar character) const {
    const char16_t c = character.unicode();
    if (c == 0)
        return false;
    if (IsDigit(c))
        return (m_accepted & ACCEPT_DIGITS) != 0;
    if (IsLetter(c))
        return (m_accepted & ACCEPT_LETTERS) != 0;
    return m_extra.contains(character);
}

bool CEditX::AreAccepted(const QString& text) const {
    return std::ranges::all_of(text, [this](QChar c) { return IsAccepted(c); });
}

void CEditX::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste)) {
        paste();
        return;
    }
    const bool isText = IsText(*event);
    const auto mayType = [this](QChar c) { return c.unicode() > LAST_JUDGED || IsAccepted(c); };
    if (isText && !std::ranges::all_of(event->text(), mayType))
        return;
    const QScopedValueRollback typing(m_isTyping, isText);
    CLimitEdit::keyPressEvent(event);
}

// Without text on it the clipboard is left to the base.
void CEditX::paste() {
    if (AreAccepted(QGuiApplication::clipboard()->text()))
        CLimitEdit::paste();
}

void CEditX::Judge(const QString& text) {
    const Change change = ChangeOf(m_before, text);
    if (m_isTyping || AreAccepted(change.inserted))
        return;
    SetWholeText(QString(m_before)); // a copy: the member follows the text
    setCursorPosition(static_cast<int>(change.position));
}
