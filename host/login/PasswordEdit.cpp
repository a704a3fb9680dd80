#include "host/login/PasswordEdit.h"

#include <QKeyEvent>

std::optional<bool> CapsLockOf(const QKeyEvent& key) {
    const QString text = key.text();
    if (text.size() != 1 || text[0].isUpper() == text[0].isLower())
        return std::nullopt;
    return text[0].isUpper() != key.modifiers().testFlag(Qt::ShiftModifier);
}

CPasswordEdit::CPasswordEdit(QWidget* parent) : QLineEdit(parent) {
    setEchoMode(Password);
}

// The key itself turns the state, which is not known then until the next letter.
void CPasswordEdit::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_CapsLock)
        Q_EMIT CapsLockSeen(false);
    else if (const auto isOn = CapsLockOf(*event))
        Q_EMIT CapsLockSeen(*isOn);
    QLineEdit::keyPressEvent(event);
}
