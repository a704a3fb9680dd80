#include "module/widgets/SpinEdit.h"

#include "base/Decimal.h"
#include "module/widgets/LimitEdit.h"

#include <QStyle>
#include <QStyleOptionSpinBox>

#include <algorithm>

CSpinEdit::CSpinEdit(QWidget* parent, std::uint32_t low, std::uint32_t high, int digits)
    : QAbstractSpinBox(parent), m_low(low), m_high(high), m_digits(digits), m_edit(new CLimitEdit(this, digits)) {
    setLineEdit(m_edit);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void CSpinEdit::SetText(const QString& text) {
    m_edit->SetWholeText(text);
}

std::int64_t CSpinEdit::Value() const {
    return DecToU32(text().toStdString());
}

void CSpinEdit::stepBy(int steps) {
    SetText(QString::number(std::clamp(Value() + steps, m_low, m_high)));
    selectAll();
}

QValidator::State CSpinEdit::validate(QString&, int&) const {
    return QValidator::Acceptable;
}

// Both always: from outside the range a step leads to its nearest end.
QAbstractSpinBox::StepEnabled CSpinEdit::stepEnabled() const {
    return StepUpEnabled | StepDownEnabled;
}

QSize CSpinEdit::sizeHint() const {
    ensurePolished();
    constexpr int MARGIN = 2; // characters
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const QSize edit((m_digits + MARGIN) * fontMetrics().horizontalAdvance(QLatin1Char('0')),
                     m_edit->sizeHint().height());
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, edit, this);
}
