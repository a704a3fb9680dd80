#include "module/editors/EditSignedDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/NumberChecks.h"
#include "module/widgets/SpinEdit.h"

#include <QVBoxLayout>

namespace {

constexpr int MOST_CHARACTERS = 11;

} // namespace

CEditSignedDlg::CEditSignedDlg(QWidget* parent)
    : CEditorDlg(parent, "Input signed"), m_edit(new CSpinEdit(this, Low, High, MOST_CHARACTERS)) {
    GetContent().addWidget(m_edit);
    GetContent().addStretch(1);
}

void CEditSignedDlg::Load() {
    m_edit->SetRange(Low, High);
    m_edit->SetText(QString::number(Value));
}

bool CEditSignedDlg::Store() {
    const auto number = CheckSigned(ToNarrow(m_edit->GetText()), Low, High);
    if (number.message)
        return Refuse(number.message, *m_edit);
    Value = number.value;
    return true;
}
