#include "module/widgets/SpinEdit.h"

#include "base/Decimal.h"
#include "module/widgets/LimitEdit.h"

#include <QStyle>
#include <QStyleOptionSpinBox>

#include <algorithm>

CSpinEdit::CSpinEdit(QWidget* parent, std::int64_t low, std::int64_t high, int digits)
    : QAbstractSpinBox(parent), m_low(low), m_high(high), m_digits(digits), m_edit(new CLimitEdit(this, digits)) {
    setLineEdit(m_edit);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void CSpinEdit::SetText(const QString& text) {
    m_edit->SetWholeText(text);
}

void CSpinEdit::SetRange(std::int64_t low, std::int64_t high) {
    m_low = low;
    m_high = high;
}

void CSpinEdit::stepBy(int steps) {
    const std::int64_t number = DecToI64(text().toStdString()) + steps;
    SetText(QString::number(std::max(m_low, std::min(number, m_high))));
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
