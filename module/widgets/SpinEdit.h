// A number with arrows. The range binds the arrows, and the keys and the wheel that act like them; any text can be
// typed within the limit of characters. A text that is no number counts as 0 for a step.
#pragma once

#include <QAbstractSpinBox>

#include <cstdint>

class CLimitEdit;

class CSpinEdit : public QAbstractSpinBox {
    Q_OBJECT

public:
    // digits: what can be typed, in characters.
    CSpinEdit(QWidget* parent, std::uint32_t low, std::uint32_t high, int digits);

    QString GetText() const { return text(); }
    void SetText(const QString& text);

    void stepBy(int steps) override;
    QValidator::State validate(QString& text, int& position) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    StepEnabled stepEnabled() const override;

private:
    std::int64_t Value() const;

    const std::int64_t m_low;
    const std::int64_t m_high;
    const int m_digits;
    CLimitEdit* const m_edit;
};
