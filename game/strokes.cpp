#include "strokes.h"

#include "badbey.h"
#include "ldb.h"
#include "numbers.h"

#include <QDebug>

#include <algorithm>
#include <cmath>

namespace {

constexpr qint32 strokeEnd = 1;
constexpr qint32 blankedTravel = 3;

/// A field position before truncation to integers.
template <class Float>
struct Place
{
    Float x;
    Float y;

    /// Whether the host accepts a point there. Check before truncating: also false for NaN and for
    /// values that no int can hold.
    bool isInRange() const
    {
        const auto inRange = [](Float v) { return v > Float(-32769) && v < Float(32768); };
        return inRange(x) && inRange(y);
    }
};

/// Appends points to a stroke: reserves the maximum once, because this runs many times per frame.
class PointWriter
{
public:
    PointWriter(QList<FramePoint> &stroke, qsizetype most, int color)
        : m_stroke(stroke)
        , m_color(color)
    {
        const qsizetype before = stroke.size();
        stroke.resize(before + most);
        m_next = stroke.data() + before;
    }
    ~PointWriter() { m_stroke.resize(m_next - m_stroke.constData()); }
    PointWriter(const PointWriter &) = delete;
    PointWriter &operator=(const PointWriter &) = delete;

    /// Adds a point; `at` must be in range.
    template <class Float>
    void add(Place<Float> at)
    {
        *m_next++ = {static_cast<qint32>(at.x), static_cast<qint32>(at.y), 0, m_color, 0};
    }
    template <class Float>
    void addIfInRange(Place<Float> at)
    {
        if (at.isInRange())
            add(at);
    }

private:
    QList<FramePoint> &m_stroke;
    FramePoint *m_next;
    int m_color;
};

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

void addLinePoints(QList<FramePoint> &stroke, StrokeSize size, Point centre, int color, int steps)
{
    const int evenSteps = std::max(steps, 0);
    PointWriter points(stroke, qsizetype(evenSteps) + 1, color);
    const float w = size.w;
    const float h = size.h;
    const auto cx = static_cast<float>(centre.x);
    const auto cy = static_cast<float>(centre.y);
    const auto n = static_cast<float>(steps);
    const auto at = [&](int i) {
        const auto step = static_cast<float>(i);
        return Place<float>{step * w / n - w * 0.5F + cx, step * h / n - h * 0.5F + cy};
    };
    // Both coordinates are monotonic along a line, so checking the ends suffices.
    const bool allInRange = at(0).isInRange() && at(evenSteps - 1).isInRange();
    for (int i = 0; i < evenSteps; ++i) {
        if (const Place<float> place = at(i); allInRange || place.isInRange())
            points.add(place);
    }
    points.addIfInRange(Place<float>{cx + w * 0.5F, cy + h * 0.5F});
}

void addCirclePoints(QList<FramePoint> &stroke, int radius, Point centre, int color, int steps)
{
    PointWriter points(stroke, qsizetype(std::max(steps, 0)) + 1, color);
    for (int i = 0; i < steps; ++i) {
        const double angle = i * 6.283185307 / steps;
        points.addIfInRange(Place<double>{
            std::cos(angle) * radius + centre.x, std::sin(angle) * radius + centre.y});
    }
    points.addIfInRange(Place<double>{double(centre.x) + radius, double(centre.y)});
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
    static QList<FramePoint> stroke; // the lines of one stroke accumulate; never shrinks
    if (mode == LineSingle || mode == LineBegin)
        stroke.clear();
    if (steps == 0)
        return;

    addLinePoints(stroke, size, centre, color, steps);
    markEnds(stroke);
    if (mode == LineSingle || mode == LineEnd)
        appendStroke(bey, stroke, objectIndex);
}

void addCircle(BadBey &bey, int radius, Point centre, int color, int objectIndex, int steps)
{
    static QList<FramePoint> stroke; // static only to reuse its storage
    stroke.clear();
    if (steps == 0)
        return;
    addCirclePoints(stroke, radius, centre, color, steps);
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
