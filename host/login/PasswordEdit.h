// An edit for a password that notices from what is typed whether Caps Lock is on; no window system is asked.
#pragma once

#include <QLineEdit>

#include <optional>

class QKeyEvent;

// From a key that gave a letter: a capital one without Shift, or a small one with it. Nothing from other keys.
std::optional<bool> CapsLockOf(const QKeyEvent& key);

class CPasswordEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit CPasswordEdit(QWidget* parent);

Q_SIGNALS:
    void CapsLockSeen(bool isOn);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};
