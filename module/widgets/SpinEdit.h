// A number with arrows. The range binds the arrows, and the keys and the wheel that act like them; any text can be
// typed within the limit of characters. A text that is no number counts as 0 for a step.
#pragma once

#include <QAbstractSpinBox>

#include <cstdint>

class CLimitEdit;

class CSpinEdit : public QAbstractSpinBox {
    Q_OBJECT

public:
    // Both limits included. digits: what can be typed, in characters, a sign among them.
    CSpinEdit(QWidget* parent, std::int64_t low, std::int64_t high, int digits);

    void SetRange(std::int64_t low, std::int64_t high);

    QString GetText() const { return text(); }
    void SetText(const QString& text);

    void stepBy(int steps) override;
    QValidator::State validate(QString& text, int& position) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    StepEnabled stepEnabled() const override;

private:
    std::int64_t m_low;
    std::int64_t m_high;
    const int m_digits;
    CLimitEdit* const m_edit;
};
