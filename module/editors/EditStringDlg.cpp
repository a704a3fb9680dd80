#include "module/editors/EditStringDlg.h"

#include "module/console/NarrowText.h"

#include <QLineEdit>
#include <QVBoxLayout>

#include <limits>

namespace {

constexpr int TEXT_WIDTH = 320; // pixels

} // namespace

CEditStringDlg::CEditStringDlg(QWidget* parent) : CEditorDlg(parent, "Input string"), m_edit(new QLineEdit(this)) {
    m_edit->setMaxLength(std::numeric_limits<int>::max());
    m_edit->setMinimumWidth(TEXT_WIDTH);
    GetContent().addWidget(m_edit);
    GetContent().addStretch(1);
}

void CEditStringDlg::Load() {
    m_edit->setText(FromNarrow(Value));
    m_shown = m_edit->text();
}

bool CEditStringDlg::Store() {
    if (m_edit->text() != m_shown)
        Value = ToNarrow(m_edit->text());
    return true;
}
