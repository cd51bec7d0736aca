#include "glyphicon.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int side = 16;
constexpr int sharpness = 4; // pixels each way, for screens of high resolution

QPainterPath triangle()
{
    QPainterPath path;
    path.addPolygon(QPolygonF({{4, 2}, {14, 8}, {4, 14}}));
    return path;
}

QPainterPath shapeOf(Glyph glyph)
{
    QPainterPath path;
    switch (glyph) {
    case Glyph::Record:
        path.addEllipse(3, 3, 10, 10);
        break;
    case Glyph::Play:
        path = triangle();
        break;
    case Glyph::Pause:
        path.addRect(3, 2, 3.5, 12);
        path.addRect(9.5, 2, 3.5, 12);
        break;
    case Glyph::Forward:
    case Glyph::Back:
        path.addRect(1, 2, 2, 12);
        path.addPath(triangle().translated(1, 0));
        break;
    }
    return path;
}

QPixmap drawn(Glyph glyph, const QColor &color)
{
    QPixmap picture(side * sharpness, side * sharpness);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(sharpness, sharpness);
    if (glyph == Glyph::Back) {
        painter.translate(side, 0);
        painter.scale(-1, 1);
    }
    painter.fillPath(shapeOf(glyph), color);
    return picture;
}

} // namespace

QIcon glyphIcon(Glyph glyph, const QColor &color)
{
    return drawn(glyph, color);
}

QIcon switchIcon(Glyph off, const QColor &offColor, Glyph on, const QColor &onColor)
{
    QIcon icon;
    icon.addPixmap(drawn(off, offColor), QIcon::Normal, QIcon::Off);
    icon.addPixmap(drawn(on, onColor), QIcon::Normal, QIcon::On);
    return icon;
}
