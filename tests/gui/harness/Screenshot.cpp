#include "tests/gui/harness/Screenshot.h"

#include <QDir>
#include <QPixmap>
#include <QWidget>

std::string TakeScreenshot(QWidget& window, const std::string& name) {
    const QString folder = qEnvironmentVariable("BDC_SCREENSHOTS", QStringLiteral(BDC_BINARY_DIR "/screenshots"));
    const QString path = folder + QLatin1Char('/') + QString::fromStdString(name) + QStringLiteral(".png");
    return QDir().mkpath(folder) && window.grab().save(path) ? path.toStdString() : std::string();
}
