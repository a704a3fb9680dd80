#include "module/icons/SvgIconEngine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <utility>

namespace {

QColor LineColour(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    default:
        return palette.color(QPalette::Active, QPalette::WindowText);
    }
}

} // namespace

CSvgIconEngine::CSvgIconEngine(QString name, QByteArray drawing)
    : m_name(std::move(name)), m_drawing(std::move(drawing)) {}

void CSvgIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) {
    const qreal ratio = painter->device()->devicePixelRatio();
    QPixmap picture = pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state);
    picture.setDevicePixelRatio(ratio);
    painter->drawPixmap(rect.topLeft(), picture);
}

// size is in device pixels.
QPixmap CSvgIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) {
    const QColor line = LineColour(mode);
    const bool isOneColour = mode == QIcon::Disabled || mode == QIcon::Selected;
    const QString key = QStringLiteral("%1 %2x%3 %4 %5")
                            .arg(m_name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(line.rgba(), 8, 16)
                            .arg(isOneColour);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = Draw(size, line, isOneColour);
        QPixmapCache::insert(key, picture);
    }
    return picture;
}

QPixmap CSvgIconEngine::Draw(const QSize& size, const QColor& line, bool isOneColour) const {
    QByteArray drawing = m_drawing;
    drawing.replace("currentColor", line.name().toLatin1());
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    QSvgRenderer renderer(drawing);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter);
    if (isOneColour) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(picture.rect(), line);
    }
    return picture;
}
