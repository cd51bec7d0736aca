#include "marks.h"

#include "palette.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int redHue = 0;
constexpr int violetHue = 285;

QColor colorOfPlace(std::size_t index, std::size_t count)
{
    const double share = count > 1 ? double(index) / double(count - 1) : 0;
    return QColor::fromHsv(redHue + static_cast<int>(share * (violetHue - redHue)), 230, 255);
}

/// The points that have a place.
std::vector<LdbPoint> placedPoints(std::span<const LdbPoint> points)
{
    std::vector<LdbPoint> placed;
    placed.reserve(points.size());
    std::copy_if(points.begin(), points.end(), std::back_inserter(placed), isFinite);
    return placed;
}

QPen dashes()
{
    QPen pen(palette::travel, 1);
    pen.setDashPattern({4, 4});
    return pen;
}

} // namespace

void paintMarks(QPainter &painter, const FieldSquare &square, std::span<const LdbPoint> points,
    const Marks &marks)
{
    const std::vector<LdbPoint> placed = placedPoints(points);
    painter.setRenderHint(QPainter::Antialiasing);
    const double dot = std::max(square.side / 220, 2.5);
    for (std::size_t i = 0; i < placed.size(); ++i) {
        const QPointF place = square.pixelOf(placeOf(placed[i]));
        const QPointF before = square.pixelOf(placeOf(placed[(i == 0 ? placed.size() : i) - 1]));
        const bool drawn = isLit(placed[i]) && isLit(placed[(i == 0 ? placed.size() : i) - 1]);
        const QColor order = colorOfPlace(i, placed.size());
        if (marks.travel && !drawn && place != before) {
            painter.setPen(dashes());
            painter.drawLine(before, place);
        }
        if (marks.order && drawn) {
            painter.setPen(QPen(order, std::max(square.side / 400, 1.5)));
            painter.drawLine(before, place);
        }
        if (marks.points) {
            const QColor plain = isLit(placed[i]) ? palette::text : palette::quiet;
            painter.setPen(QPen(palette::window, 1));
            painter.setBrush(marks.order ? order : plain);
            painter.drawEllipse(place, dot, dot);
        }
    }
}

void paintRing(QPainter &painter, const FieldSquare &square, const LdbPoint &point)
{
    if (!isFinite(point))
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const double radius = std::max(square.side / 70, 6.0);
    painter.setPen(QPen(palette::window, 4));
    painter.drawEllipse(square.pixelOf(placeOf(point)), radius, radius);
    painter.setPen(QPen(palette::waiting, 2));
    painter.drawEllipse(square.pixelOf(placeOf(point)), radius, radius);
}
