// All pictures of the console on one sheet, for people to look at: on light and on dark, as they are, selected and
// disabled, at the pixels of three scales.
#include "module/icons/Icons.h"
#include "tests/gui/harness/GuiAccess.h"
#include "tests/gui/look/Palettes.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

constexpr int CELL = 20; // a picture of 16 with its margin
constexpr int ZOOM = 4;  // so that single pixels are seen
constexpr double RATIOS[] = {1, 1.5, 2};
constexpr QIcon::Mode MODES[] = {QIcon::Normal, QIcon::Selected, QIcon::Disabled};

std::vector<QIcon> AllIcons() {
    std::vector<QIcon> icons{NewIcon(CONSOLE_ICON), NewIcon(FILTER_CLEAR_ICON)};
    for (const char* const strip : {NETWORK_STRIP, TREE_STRIP, STATE_STRIP})
        for (int image = 0; image < 8; ++image)
            if (const QIcon icon = NewStripIcon(strip, image); !icon.isNull())
                icons.push_back(icon);
    return icons;
}

// One row: the pictures side by side in the pixels of a screen of this ratio.
QImage Row(const std::vector<QIcon>& icons, QIcon::Mode mode, double ratio) {
    const auto width = static_cast<int>(icons.size()) * CELL;
    QImage row((QSizeF(width, CELL) * ratio).toSize(), QImage::Format_RGB32);
    row.setDevicePixelRatio(ratio);
    const QPalette palette = QGuiApplication::palette();
    row.fill(palette.color(mode == QIcon::Selected ? QPalette::Highlight : QPalette::Base));
    QPainter painter(&row);
    for (std::size_t i = 0; i < icons.size(); ++i)
        icons[i].paint(&painter, static_cast<int>(i) * CELL + 2, 2, 16, 16, Qt::AlignCenter, mode);
    return row;
}

QImage Sheet() {
    const std::vector<QIcon> icons = AllIcons();
    const auto width = static_cast<int>(icons.size()) * CELL * ZOOM;
    QImage sheet(width, 2 * 3 * 3 * CELL * ZOOM, QImage::Format_RGB32);
    QPainter painter(&sheet);
    int y = 0;
    for (const Desktop desktop : {Desktop::Light, Desktop::Dark}) {
        UseDesktop(desktop);
        for (const QIcon::Mode mode : MODES)
            for (const double ratio : RATIOS) {
                QImage row = Row(icons, mode, ratio);
                row.setDevicePixelRatio(1);
                painter.drawImage(QRect(0, y, width, CELL * ZOOM), row);
                y += CELL * ZOOM;
            }
    }
    return sheet;
}

TEST(IconSheet, HoldsEveryPicture) {
    OnGui([] {
        const QImage sheet = Sheet();
        EXPECT_GT(sheet.width(), 0);
        if (qEnvironmentVariableIsSet("BDC_SCREENSHOTS")) {
            const QString folder = qEnvironmentVariable("BDC_SCREENSHOTS");
            EXPECT_TRUE(QDir().mkpath(folder));
            EXPECT_TRUE(sheet.save(folder + QStringLiteral("/icons.png")));
        }
    });
}

} // namespace
