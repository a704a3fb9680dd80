#include "module/editors/EditUnsignedDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/NumberChecks.h"
#include "module/widgets/SpinEdit.h"

#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int MOST_CHARACTERS = 11;
constexpr std::uint32_t LAST_OF_ARROWS = 0x7FFFFFFF; // larger numbers can only be typed

} // namespace

CEditUnsignedDlg::CEditUnsignedDlg(QWidget* parent)
    : CEditorDlg(parent, "Input unsigned"), m_edit(new CSpinEdit(this, 0, LAST_OF_ARROWS, MOST_CHARACTERS)),
      m_hint(new QLabel(this)) {
    GetContent().addWidget(m_edit);
    GetContent().addWidget(m_hint);
    GetContent().addStretch(1);
    m_hint->hide();
}

void CEditUnsignedDlg::SetHint(const char* hint) {
    m_hint->setText(QString::fromUtf8(hint));
    m_hint->show();
}

void CEditUnsignedDlg::Load() {
    m_edit->SetRange(Low, std::min(High, LAST_OF_ARROWS));
    m_edit->SetText(QString::number(Value));
}

bool CEditUnsignedDlg::Store() {
    const auto number = CheckUnsigned(ToNarrow(m_edit->GetText()), Low, High);
    if (number.message)
        return Refuse(number.message, *m_edit);
    Value = number.value;
    return true;
}
