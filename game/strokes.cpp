#include "strokes.h"

#include "badbey.h"
#include "ldb.h"
#include "numbers.h"

#include <QDebug>

#include <cmath>

namespace {

constexpr qint32 strokeEnd = 1;
constexpr qint32 blankedTravel = 3;

/// Adds a point where the host can take it. It is compared before it is cut to whole units, so
/// that nothing is too large for that, or no number at all.
template <class Float>
void addIfInRange(QList<FramePoint> &stroke, Float x, Float y, int color)
{
    const auto inRange = [](Float v) { return v > Float(-32769) && v < Float(32768); };
    if (inRange(x) && inRange(y))
        stroke.append({static_cast<qint32>(x), static_cast<qint32>(y), 0, color, 0});
}

void markEnds(QList<FramePoint> &stroke)
{
    if (stroke.size() < 2)
        return;
    stroke.first().flags = strokeEnd;
    stroke.last().flags = strokeEnd;
}

FramePoint travelTo(FramePoint point)
{
    point.color = 0;
    point.flags = blankedTravel;
    return point;
}

} // namespace

void appendStroke(BadBey &bey, const QList<FramePoint> &stroke, int /*objectIndex*/)
{
    if (stroke.isEmpty())
        return;
    bey.points.append(travelTo(stroke.first()));
    bey.points.append(stroke);
    bey.points.append(travelTo(stroke.last()));
    if (bey.points.size() > ldbMaxPoints) {
        qDebug() << "Frame dropped, too many points:" << bey.points.size();
        bey.points.clear();
    }
}

void addLine(
    BadBey &bey, StrokeSize size, Point centre, int color, int objectIndex, int steps, int mode)
{
    static QList<FramePoint> stroke; // kept from line to line of a stroke, and its storage for ever
    if (mode == LineSingle || mode == LineBegin)
        stroke.clear();
    if (steps == 0)
        return;

    const auto cx = static_cast<float>(centre.x);
    const auto cy = static_cast<float>(centre.y);
    const auto n = static_cast<float>(steps);
    for (int i = 0; i < steps; ++i) {
        const auto step = static_cast<float>(i);
        addIfInRange(stroke, step * size.w / n - size.w * 0.5F + cx,
            step * size.h / n - size.h * 0.5F + cy, color);
    }
    addIfInRange(stroke, cx + size.w * 0.5F, cy + size.h * 0.5F, color);
    markEnds(stroke);
    if (mode == LineSingle || mode == LineEnd)
        appendStroke(bey, stroke, objectIndex);
}

void addCircle(BadBey &bey, int radius, Point centre, int color, int objectIndex, int steps)
{
    static QList<FramePoint> stroke; // only its storage is kept
    stroke.clear();
    if (steps == 0)
        return;
    for (int i = 0; i < steps; ++i) {
        const double angle = i * 6.283185307 / steps;
        addIfInRange(stroke, std::cos(angle) * radius + centre.x,
            std::sin(angle) * radius + centre.y, color);
    }
    addIfInRange(stroke, double(centre.x) + radius, double(centre.y), color);
    markEnds(stroke);
    appendStroke(bey, stroke, objectIndex);
}

void addRect(BadBey &bey, StrokeSize size, Point centre, int color, int objectIndex, int steps)
{
    const auto at = [centre](float dx, float dy) {
        return Point{truncated(static_cast<float>(centre.x) + dx),
            truncated(static_cast<float>(centre.y) + dy)};
    };
    const auto [w, h] = size;
    const int n = steps / 4;
    addLine(bey, {w, 0}, at(0, h / 2), color, objectIndex, n, LineBegin);
    addLine(bey, {0, -h}, at(w / 2, 0), color, objectIndex, n, LineContinue);
    addLine(bey, {-w, 0}, at(0, -h / 2), color, objectIndex, n, LineContinue);
    addLine(bey, {0, h}, at(-w / 2, 0), color, objectIndex, n, LineEnd);
}
