// Asks for a number within limits. OK with any other keeps the dialog open, without a message. Only on the console
// thread; run it with RunModal.
#pragma once

#include <QDialog>

#include <cstdint>

class CSpinEdit;

struct NumberInput {
    QString caption;   // in front of the field
    QString prompt;    // behind it, such as the unit
    std::uint32_t low; // both included
    std::uint32_t high;
};

class CInputDlg : public QDialog {
    Q_OBJECT

public:
    // Shows *result, and stores the number there when it is accepted.
    CInputDlg(QWidget* parent, const NumberInput& input, std::uint32_t* result);

    void accept() override;

private:
    const std::uint32_t m_low;
    const std::uint32_t m_high;
    std::uint32_t* const m_result;
    CSpinEdit* const m_edit;
};
