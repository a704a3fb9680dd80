#include "module/editors/EditOctetStringDlg.h"

#include "module/console/NarrowText.h"
#include "module/editors/OctetText.h"

#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <limits>
#include <utility>

namespace {

constexpr int TEXT_WIDTH = 320; // pixels

} // namespace

CEditOctetStringDlg::CEditOctetStringDlg(QWidget* parent)
    : CEditorDlg(parent, "Input octet string"), m_edit(new QLineEdit(this)) {
    m_edit->setMaxLength(std::numeric_limits<int>::max());
    m_edit->setMinimumWidth(TEXT_WIDTH);
    QFont font = m_edit->font();
    font.setStyleStrategy(QFont::PreferNoShaping); // digits need none, and there may be very many
    m_edit->setFont(font);
    connect(m_edit, &QLineEdit::textChanged, this, &CEditOctetStringDlg::OnText);
    GetContent().addWidget(m_edit);
    GetContent().addStretch(1);
}

void CEditOctetStringDlg::Load() {
    m_edit->setText(FromNarrow(FormatOctets(Value.Value)));
}

void CEditOctetStringDlg::OnText() {
    auto octets = ParseOctets(ToNarrow(m_edit->text()));
    GetOkButton().setEnabled(octets.has_value());
    if (octets)
        m_octets = *std::move(octets);
}

bool CEditOctetStringDlg::Store() {
    Value.Assign(static_cast<unsigned>(m_octets.size()), m_octets.data());
    return true;
}
