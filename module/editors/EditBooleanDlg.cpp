#include "module/editors/EditBooleanDlg.h"

#include <QComboBox>
#include <QVBoxLayout>

CEditBooleanDlg::CEditBooleanDlg(QWidget* parent) : CEditorDlg(parent, "Input boolean"), m_combo(new QComboBox(this)) {
    m_combo->addItems({QStringLiteral("false"), QStringLiteral("true")});
    GetContent().addWidget(m_combo);
    GetContent().addStretch(1);
}

void CEditBooleanDlg::Load() {
    m_combo->setCurrentIndex(Value != 0 ? 1 : 0);
}

bool CEditBooleanDlg::Store() {
    const bool isTrue = m_combo->currentIndex() == 1;
    if (isTrue != (Value != 0))
        Value = isTrue ? 1 : 0;
    return true;
}
