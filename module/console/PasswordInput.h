// Asks for a password; an empty one is allowed. Only on the console thread; run it with RunModal.
#pragma once

#include <QDialog>

#include <string>

class QLineEdit;

class CPasswordInput : public QDialog {
    Q_OBJECT

public:
    explicit CPasswordInput(QWidget* parent, const std::string& password = {});

    std::string GetPassword() const; // narrow, as it stands in the field

private:
    QLineEdit* const m_edit;
};
