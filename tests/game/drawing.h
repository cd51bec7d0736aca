#pragma once

#include "badbey.h"
#include "match.h"
#include "strokes.h"

#include <QTest>

// Shared by the drawing tests: an integer model of the strokes, independent of the code under test.

/// The colour of strokes whose colour does not matter.
inline constexpr int color = 0x123456;

/// A point of that colour.
inline FramePoint at(qint32 x, qint32 y, qint32 flags = 0)
{
    return {x, y, 0, color, flags};
}

/// The points that one line adds to an empty list.
inline QList<FramePoint> drawnLine(StrokeSize size, Point centre, int steps, int mode = LineSingle)
{
    BadBey bey;
    addLine(bey, size, centre, color, BallObject, steps, mode);
    return bey.points;
}

/// Blanked travel to a position.
inline FramePoint travel(qint32 x, qint32 y)
{
    return {x, y, 0, 0, 3};
}

/// The points of consecutive lines, as in a frame.
class StrokeModel
{
public:
    explicit StrokeModel(int color)
        : m_color(color)
    {
    }

    /// A line between two positions, including both ends, so a corner is two points.
    StrokeModel &line(Point from, Point to, int steps)
    {
        const auto between = [steps](qint64 a, qint64 b, qint64 i) {
            return static_cast<qint32>((a * steps + (b - a) * i) / steps);
        };
        for (int i = 0; steps > 0 && i <= steps; ++i)
            m_points.append({between(from.x, to.x, i), between(from.y, to.y, i), 0, m_color, 0});
        if (m_points.size() >= 2)
            m_points.first().flags = m_points.last().flags = 1;
        return *this;
    }

    /// The stroke with the blanked travel before and after it.
    QList<FramePoint> finished() const
    {
        if (m_points.isEmpty())
            return {};
        const FramePoint first = m_points.first();
        const FramePoint last = m_points.last();
        return QList{travel(first.x, first.y)} + m_points + QList{travel(last.x, last.y)};
    }

private:
    int m_color;
    QList<FramePoint> m_points;
};

inline char *toString(const FramePoint &point)
{
    return QTest::toString(QStringLiteral("(%1, %2, %3) colour %4 flags %5")
                               .arg(point.x)
                               .arg(point.y)
                               .arg(point.z)
                               .arg(point.color, 0, 16)
                               .arg(point.flags));
}
