#include "module/console/SelectTagDlg.h"

#include "module/console/Globals.h"
#include "module/widgets/DialogButtons.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QVBoxLayout>

namespace {

constexpr int COLUMNS = 44; // room for a tag's name, and for the title

} // namespace

CSelectTagDlg::CSelectTagDlg(QWidget* parent, const std::string& tag)
    : QDialog(parent), m_combo(new QComboBox(this)), m_tag(tag) {
    setWindowTitle(QStringLiteral("Select trigger tag"));
    m_combo->setAccessibleName(QStringLiteral("Tag"));
    m_combo->setMinimumWidth(COLUMNS * fontMetrics().averageCharWidth());
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_combo);
    layout->addWidget(NewOkCancel(*this));

    BDCManager.FillTagList(*m_combo);
    m_combo->setCurrentIndex(0);
    for (int row = 1; row < m_combo->count() && !tag.empty(); ++row)
        if (m_combo->itemData(row).toByteArray().toStdString() == tag) {
            m_combo->setCurrentIndex(row);
            break;
        }
}

void CSelectTagDlg::accept() {
    m_tag = m_combo->currentData().toByteArray().toStdString();
    QDialog::accept();
}
