#include "module/icons/Icons.h"

#include "module/icons/SvgIconEngine.h"

#include <QFile>
#include <QFileInfo>

// The linker knows of no use of the resources. Not in a namespace, for the macro's sake.
static void LinkResources() {
    Q_INIT_RESOURCE(icons);
}

QIcon NewIcon(const QString& resource) {
    LinkResources();
    QFile file(resource);
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new CSvgIconEngine(resource, file.readAll()));
}

QIcon NewIcon(const char* resource) {
    return NewIcon(QString::fromLatin1(resource));
}

QIcon NewStripIcon(const char* strip, int image) {
    return NewIcon(QStringLiteral("%1/%2").arg(QString::fromLatin1(strip)).arg(image));
}

QIcon NewDriverIcon(const QString& displayName) {
    return NewIcon(QStringLiteral(":/driver/") + QString(displayName).replace(QLatin1Char(' '), QLatin1Char('_')));
}
