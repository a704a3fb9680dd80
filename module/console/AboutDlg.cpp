#include "module/console/AboutDlg.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int ICON_SIZE = 48;
constexpr int COLUMNS = 40; // in characters

} // namespace

CAboutDlg::CAboutDlg(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("About"));
    auto* const icon = new QLabel(this);
    icon->setPixmap(windowIcon().pixmap(QSize(ICON_SIZE, ICON_SIZE), devicePixelRatio()));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &CAboutDlg::accept);

    auto* const name = new QLabel(QStringLiteral("BACnet driver"), this);
    QFont bold = name->font();
    bold.setBold(true);
    name->setFont(bold);
    auto* const version = new QLabel(QStringLiteral("4.2.0.27"), this);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* const texts = new QVBoxLayout;
    texts->addStretch(1);
    texts->addWidget(name);
    texts->addWidget(version);
    texts->addStretch(1);
    auto* const row = new QHBoxLayout;
    row->addWidget(icon);
    row->addLayout(texts, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(buttons);
    setMinimumWidth(COLUMNS * fontMetrics().averageCharWidth());
}
