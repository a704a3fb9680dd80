#include "module/editors/EditRealDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/NumberChecks.h"
#include "module/widgets/LimitEdit.h"

#include <QVBoxLayout>

namespace {

constexpr int MOST_CHARACTERS = 30;
constexpr int TEXT_WIDTH = 220; // pixels

RealSize SizeOf(bool isDouble) {
    return isDouble ? RealSize::Double : RealSize::Single;
}

} // namespace

CEditRealDlg::CEditRealDlg(QWidget* parent)
    : CEditorDlg(parent, "Input real"), m_edit(new CLimitEdit(this, MOST_CHARACTERS)) {
    m_edit->setMinimumWidth(TEXT_WIDTH);
    GetContent().addWidget(m_edit);
    GetContent().addStretch(1);
}

void CEditRealDlg::Load() {
    if (!IsNull)
        m_edit->SetWholeText(FromNarrow(FormatReal(Value, SizeOf(IsDouble))));
}

bool CEditRealDlg::Store() {
    const auto number = CheckReal(ToNarrow(m_edit->text()), SizeOf(IsDouble), Value);
    if (number.message)
        return Refuse(number.message, *m_edit);
    if (!number.value && !MayBeNull)
        return Refuse(INVALID_REAL, *m_edit);
    IsNull = !number.value;
    Value = number.value.value_or(Value);
    return true;
}
