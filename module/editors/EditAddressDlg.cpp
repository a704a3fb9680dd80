#include "module/editors/EditAddressDlg.h"

#include "module/console/NarrowText.h"
#include "module/widgets/LimitEdit.h"
#include "module/widgets/SpinEdit.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>

namespace {

constexpr std::uint32_t LAST_NETWORK = 65535;
constexpr int NETWORK_DIGITS = 5;
constexpr int OCTET_DIGITS = 3;
constexpr int OCTET_WIDTH = 44; // pixels at the default font

} // namespace

CEditAddressDlg::CEditAddressDlg(QWidget* parent)
    : CEditorDlg(parent, "Input address"), m_remote(new QCheckBox(QStringLiteral("&Remote network"), this)),
      m_network(new CSpinEdit(this, 0, LAST_NETWORK, NETWORK_DIGITS)) {
    m_network->setAccessibleName(QStringLiteral("Network"));
    auto* const label = new QLabel(QStringLiteral("&Address"), this);
    auto* const octets = new QHBoxLayout;
    for (std::size_t i = 0; i < MAC_FIELDS; ++i) {
        m_mac[i] = new CLimitEdit(this, OCTET_DIGITS);
        m_mac[i]->setAccessibleName(QStringLiteral("Address byte %1").arg(i + 1));
        m_mac[i]->setFixedWidth(OCTET_WIDTH);
        octets->addWidget(m_mac[i]);
    }
    octets->addStretch(1);
    label->setBuddy(m_mac.front());
    auto* const grid = new QGridLayout;
    grid->addWidget(m_remote, 0, 0);
    grid->addWidget(m_network, 0, 1, Qt::AlignLeft);
    grid->addWidget(label, 1, 0);
    grid->addLayout(octets, 1, 1);
    GetContent().addLayout(grid);
    GetContent().addStretch(1);
}

void CEditAddressDlg::Load() {
    const AddressTexts texts = ShowAddress(Value);
    m_remote->setChecked(texts.isRemote);
    m_network->SetText(FromNarrow(texts.network));
    for (std::size_t i = 0; i < MAC_FIELDS; ++i)
        m_mac[i]->setText(FromNarrow(texts.mac[i]));
    m_remote->setDisabled(IsLocalOnly);
    m_network->setDisabled(IsLocalOnly);
}

bool CEditAddressDlg::Store() {
    AddressTexts texts{m_remote->isChecked(), ToNarrow(m_network->GetText()), {}};
    for (std::size_t i = 0; i < MAC_FIELDS; ++i)
        texts.mac[i] = ToNarrow(m_mac[i]->text());
    StoreAddress(texts, Value);
    return true;
}
