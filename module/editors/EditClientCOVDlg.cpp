#include "module/editors/EditClientCOVDlg.h"

#include "api/bacnet/Enums.h"
#include "module/console/NarrowText.h"
#include "module/editors/NumberChecks.h"
#include "module/widgets/LimitEdit.h"

#include <QVBoxLayout>

namespace {

constexpr int MOST_CHARACTERS = 30;
constexpr int TEXT_WIDTH = 220; // pixels

} // namespace

CEditClientCOVDlg::CEditClientCOVDlg(QWidget* parent)
    : CEditorDlg(parent, "Input client-cov"), m_edit(new CLimitEdit(this, MOST_CHARACTERS)) {
    m_edit->setMinimumWidth(TEXT_WIDTH);
    GetContent().addWidget(m_edit);
    GetContent().addStretch(1);
}

void CEditClientCOVDlg::Load() {
    if (Value.Choice == TYPE_REAL)
        m_edit->SetWholeText(FromNarrow(FormatReal(Value.Value, RealSize::Single)));
}

bool CEditClientCOVDlg::Store() {
    if (m_edit->text().isEmpty() && !m_edit->isModified()) // whatever choice it is
        return true;
    const float opened = Value.Choice == TYPE_REAL ? Value.Value : 0;
    const auto number = CheckReal(ToNarrow(m_edit->text()), RealSize::Single, opened);
    if (number.message)
        return Refuse(number.message, *m_edit);
    if (number.value)
        Value = {TYPE_REAL, Narrowed(*number.value, opened)};
    else
        Value = {TYPE_NULL, 0};
    return true;
}
