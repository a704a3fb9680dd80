// An icon that is drawn from SVG: sharp at every size and device pixel ratio. Where the drawing says currentColor it
// gets the palette's text colour; a disabled or selected icon has one colour only, the one of text in that state.
#pragma once

#include <QByteArray>
#include <QIconEngine>
#include <QString>

class CSvgIconEngine : public QIconEngine {
public:
    // name identifies the drawing among all.
    CSvgIconEngine(QString name, QByteArray drawing);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override { return new CSvgIconEngine(*this); }

private:
    QPixmap Draw(const QSize& size, const QColor& line, bool isOneColour) const;

    const QString m_name;
    const QByteArray m_drawing;
};
