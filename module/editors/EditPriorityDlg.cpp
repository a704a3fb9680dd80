#include "module/editors/EditPriorityDlg.h"

#include "module/editors/ListedNumber.h"

#include <QComboBox>
#include <QVBoxLayout>

CEditPriorityDlg::CEditPriorityDlg(QWidget* parent)
    : CEditorDlg(parent, "Input priority for writing"), m_combo(new QComboBox(this)) {
    for (const char* const priority : PRIORITIES)
        m_combo->addItem(QString::fromLatin1(priority));
    m_combo->setMaxVisibleItems(m_combo->count());
    GetContent().addWidget(m_combo);
    GetContent().addStretch(1);
}

void CEditPriorityDlg::Load() {
    m_combo->setCurrentIndex(Value);
}

bool CEditPriorityDlg::Store() {
    Value = m_combo->currentIndex();
    return true;
}
