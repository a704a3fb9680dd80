// The console's pictures as they come on the screen.
#include "module/icons/Icons.h"
#include "tests/gui/ConsoleFixture.h"

#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPalette>
#include <QRegularExpression>

#include <cmath>
#include <map>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double RATIOS[] = {1, 1.5, 2};
constexpr QSize SIZE(16, 16);

std::vector<int> ImagesOf(const char* strip) {
    std::vector<int> images;
    OnGui([&] {
        for (int image = -1; image < 20; ++image)
            if (!NewStripIcon(strip, image).isNull())
                images.push_back(image);
    });
    return images;
}

QImage Picture(const QIcon& icon, double ratio = 1, QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(SIZE, ratio, mode).toImage();
}

bool IsBlank(const QImage& picture) {
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (qAlpha(picture.pixel(x, y)) != 0)
                return false;
    return true;
}

// The drawings of this system's pictures by their resource names.
std::map<std::string, QString> Drawings() {
    std::map<std::string, QString> drawings;
    (void)NewIcon(CONSOLE_ICON);
    for (const char* const name : {CONSOLE_ICON, FILTER_CLEAR_ICON, NETWORK_STRIP, TREE_STRIP, STATE_STRIP}) {
        std::vector<QString> paths{QString::fromLatin1(name)};
        for (QDirIterator entry(paths[0]); entry.hasNext();)
            paths.push_back(entry.next());
        for (const QString& path : paths) {
            QFile file(path);
            if (QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly))
                drawings[path.toStdString()] = QString::fromUtf8(file.readAll());
        }
    }
    return drawings;
}

// Relative luminance and contrast as the Web Content Accessibility Guidelines define them.
double Luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
    const double a = Luminance(one) + 0.05;
    const double b = Luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

TEST(Icons, StripsHoldTheImagesThatWindowsAskFor) {
    EXPECT_THAT(ImagesOf(TREE_STRIP), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(ImagesOf(STATE_STRIP), ElementsAre(1, 2, 3));
    EXPECT_THAT(ImagesOf(NETWORK_STRIP), ElementsAre(2, 3));
}

TEST(Icons, AreDrawnInThePixelsOfTheScreenAtEveryScale) {
    OnGui([] {
        for (const auto& [name, drawing] : Drawings())
            for (const double ratio : RATIOS) {
                const QImage picture = Picture(NewIcon(QString::fromStdString(name)), ratio);
                EXPECT_EQ(picture.size(), SIZE * ratio) << name;
                EXPECT_EQ(picture.devicePixelRatio(), ratio) << name;
                EXPECT_FALSE(IsBlank(picture)) << name;
                EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 0) << name << " has a transparent ground";
            }
    });
}

TEST(Icons, OfOneStripDifferInTheirLinesAlone) {
    OnGui([] {
        for (const char* const strip : {TREE_STRIP, STATE_STRIP, NETWORK_STRIP}) {
            std::map<int, QImage> pictures;
            for (int image = 0; image < 8; ++image)
                if (const QIcon icon = NewStripIcon(strip, image); !icon.isNull())
                    pictures[image] = Picture(icon, 1, QIcon::Selected);
            for (const auto& [image, picture] : pictures)
                for (const auto& [other, otherPicture] : pictures)
                    EXPECT_TRUE(image == other || picture != otherPicture) << strip << " " << image << " " << other;
        }
    });
}

TEST(Icons, ColoursReadOnLightAndOnDark) {
    static const QRegularExpression COLOUR(QStringLiteral("#[0-9a-f]{6}"));
    OnGui([] {
        const auto drawings = Drawings();
        EXPECT_EQ(drawings.size(), 15U);
        for (const auto& [name, drawing] : drawings)
            for (auto found = COLOUR.globalMatch(drawing); found.hasNext();) {
                const QColor colour(found.next().captured());
                EXPECT_GE(Contrast(colour, QColor(255, 255, 255)), 3) << name;
                EXPECT_GE(Contrast(colour, QColor(0x35, 0x35, 0x35)), 3) << name;
            }
    });
}

TEST(Icons, LinesFollowThePalette) {
    OnGui([] {
        const QPalette before = QApplication::palette();
        const QIcon icon = NewStripIcon(STATE_STRIP, 1); // a dash across the middle
        const auto dash = [&icon](QIcon::Mode mode) { return Picture(icon, 2, mode).pixelColor(16, 16).rgb(); };
        for (const QColor& text : {QColor(0x11, 0x22, 0x33), QColor(0xEE, 0xDD, 0xCC)}) {
            QPalette palette = before;
            palette.setColor(QPalette::WindowText, text);
            palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x77, 0x77, 0x77));
            palette.setColor(QPalette::HighlightedText, QColor(0x12, 0x34, 0x56));
            QApplication::setPalette(palette);
            EXPECT_EQ(dash(QIcon::Normal), text.rgb());
            EXPECT_EQ(dash(QIcon::Disabled), QColor(0x77, 0x77, 0x77).rgb());
            EXPECT_EQ(dash(QIcon::Selected), QColor(0x12, 0x34, 0x56).rgb());
        }
        QApplication::setPalette(before);
    });
}

TEST(Icons, AnUnknownNameGivesNone) {
    OnGui([] {
        EXPECT_TRUE(NewIcon(":/20022").isNull());
        EXPECT_TRUE(NewIcon(TREE_STRIP).isNull()) << "a whole strip is no picture";
        EXPECT_TRUE(NewDriverIcon(QStringLiteral("No such driver")).isNull());
        EXPECT_TRUE(NewDriverIcon(QString()).isNull());
    });
}

class WindowIcon : public ConsoleFixture {};

TEST_F(WindowIcon, IsTheConsolesAlsoForItsDialogs) {
    Start();
    OnGui([] {
        QDialog dialog(ConsoleWindow());
        EXPECT_EQ(Picture(dialog.windowIcon()), Picture(NewIcon(CONSOLE_ICON)));
        EXPECT_FALSE(IsBlank(Picture(ConsoleWindow()->windowIcon())));
    });
}

} // namespace
