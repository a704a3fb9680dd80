#include "module/widgets/InputDlg.h"

#include "base/Decimal.h"
#include "module/widgets/DialogButtons.h"
#include "module/widgets/SpinEdit.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int DIGITS = 10; // of 4294967295

} // namespace

CInputDlg::CInputDlg(QWidget* parent, const NumberInput& input, std::uint32_t* result)
    : QDialog(parent), m_low(input.low), m_high(input.high), m_result(result),
      m_edit(new CSpinEdit(this, input.low, input.high, DIGITS)) {
    setWindowTitle(QStringLiteral("Input"));
    auto* const caption = new QLabel(input.caption, this);
    caption->setBuddy(m_edit);
    m_edit->SetText(QString::number(*result));
    m_edit->selectAll();
    auto* const row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(m_edit);
    row->addWidget(new QLabel(input.prompt, this));
    row->addStretch(1);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(NewOkCancel(*this));
}

void CInputDlg::accept() {
    const std::uint32_t number = DecToU32(m_edit->GetText().toStdString());
    if (number < m_low || number > m_high)
        return;
    *m_result = number;
    QDialog::accept();
}
