#include "module/editors/EditBitStringDlg.h"

#include "api/bacnet/BacGeneral.h"
#include "module/console/NarrowText.h"
#include "module/editors/EnumNames.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr unsigned MOST_BITS = sizeof(BACSTAC_BIT_STRING::Bits) * 8;
constexpr int LARGEST_SIZE = 80; // that can be chosen
constexpr int NAME_WIDTH = 190;  // pixels
constexpr QSize VIEW_SIZE(230, 220);

unsigned BitCount(const BACSTAC_BIT_STRING& bits) {
    return std::min<unsigned>(bits.BitCount, MOST_BITS);
}

} // namespace

CEditBitStringDlg::CEditBitStringDlg(QWidget* parent, ENUM_TYPE_ID names)
    : CEditorDlg(parent, "Input bit-string"), m_names(names),
      m_nameCount(std::min(CBacGeneral::GetEnumCount(names), MOST_BITS)), m_bits(new QTreeWidget(this)),
      m_sizes(new QComboBox(this)) {
    m_bits->setHeaderLabel(QStringLiteral("Name"));
    m_bits->setRootIsDecorated(false);
    m_bits->setUniformRowHeights(true);
    m_bits->header()->setStretchLastSection(false);
    m_bits->setColumnWidth(0, NAME_WIDTH);
    m_bits->setMinimumSize(VIEW_SIZE);
    m_bits->viewport()->setBackgroundRole(QPalette::Window); // dark desktops have boxes in the colour of the base
    m_bits->setAccessibleName(QStringLiteral("Bits"));
    for (int size = 1; size <= LARGEST_SIZE; ++size)
        m_sizes->addItem(QStringLiteral("%1 bits").arg(size));
    m_sizes->setEnabled(m_nameCount == 0);
    auto* const caption = new QLabel(QStringLiteral("&Size"), this);
    caption->setBuddy(m_sizes);
    auto* const row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(m_sizes);
    row->addStretch(1);
    GetContent().addWidget(m_bits, 1);
    GetContent().addLayout(row);
}

void CEditBitStringDlg::Load() {
    const unsigned count = m_nameCount != 0 ? m_nameCount : BitCount(Value);
    ShowBits(count);
    m_sizes->setCurrentIndex(count <= LARGEST_SIZE ? static_cast<int>(count) - 1 : -1);
    connect(m_sizes, &QComboBox::currentIndexChanged, this,
            [this](int index) { ShowBits(static_cast<unsigned>(index) + 1); });
}

// Deliberate: a new size shows the value's own bits again, whatever was ticked before.
void CEditBitStringDlg::ShowBits(unsigned count) {
    m_bits->clear();
    for (unsigned bit = 0; bit < count; ++bit) {
        auto* const item = new QTreeWidgetItem(m_bits, {FromNarrow(BitName(m_names, bit))});
        item->setCheckState(0, CBacGeneral::TestBitStringBit(Value, bit) ? Qt::Checked : Qt::Unchecked);
    }
    m_bits->setCurrentItem(m_bits->topLevelItem(0));
}

bool CEditBitStringDlg::Store() {
    BACSTAC_BIT_STRING bits{};
    bool isTouched = static_cast<unsigned>(m_bits->topLevelItemCount()) != BitCount(Value);
    for (int row = 0; row < m_bits->topLevelItemCount(); ++row) {
        const auto bit = static_cast<unsigned>(row);
        const bool isSet = m_bits->topLevelItem(row)->checkState(0) == Qt::Checked;
        CBacGeneral::SetBitStringBit(bits, bit, isSet);
        isTouched = isTouched || isSet != CBacGeneral::TestBitStringBit(Value, bit);
    }
    if (isTouched)
        Value = bits;
    return true;
}
