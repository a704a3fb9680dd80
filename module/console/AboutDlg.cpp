#include "module/console/AboutDlg.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int ICON_SIZE = 48;

} // namespace

CAboutDlg::CAboutDlg(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("About"));
    auto* const icon = new QLabel(this);
    icon->setPixmap(windowIcon().pixmap(QSize(ICON_SIZE, ICON_SIZE), devicePixelRatio()));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &CAboutDlg::accept);

    auto* const texts = new QVBoxLayout;
    texts->addWidget(new QLabel(QStringLiteral("BACnet driver"), this));
    texts->addWidget(new QLabel(QStringLiteral("4.2.0.27"), this));
    auto* const row = new QHBoxLayout;
    row->addWidget(icon);
    row->addLayout(texts, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(buttons);
}
