#include "tests/gui/look/Palettes.h"

#include <QApplication>
#include <QStyle>

QPalette PaletteOf(Desktop desktop) {
    if (desktop == Desktop::Light)
        return QPalette(QColor(0xEF, 0xEF, 0xEF)); // all else follows from the colour of buttons
    const QColor text(0xE6, 0xE6, 0xE6);
    const QColor dim(0x8C, 0x8C, 0x8C);
    QPalette palette(QColor(0x35, 0x35, 0x35), QColor(0x2D, 0x2D, 0x2D));
    palette.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
    palette.setColor(QPalette::AlternateBase, QColor(0x2A, 0x2A, 0x2A));
    palette.setColor(QPalette::Highlight, QColor(0x2F, 0x6F, 0xB0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, dim);
    }
    return palette;
}

void UseDesktop(Desktop desktop) {
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(PaletteOf(desktop));
}
