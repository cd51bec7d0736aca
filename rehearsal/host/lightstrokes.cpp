#include "lightstrokes.h"

#include <algorithm>
#include <cmath>

namespace {

/// Field units by which a point may lie beside a line and still belong to it; a tenth of a pixel.
constexpr double straightness = 8.0;

bool isLit(const LdbPoint &point)
{
    constexpr int blankedTravel = 3;
    return (point.color & 0xffffff) != 0 && point.flags != blankedTravel && std::isfinite(point.x)
        && std::isfinite(point.y);
}

QPointF placeOf(const LdbPoint &point)
{
    const auto inField = [](float value) {
        return std::clamp(static_cast<double>(value), -fieldLimit, fieldLimit);
    };
    return {inField(point.x), inField(point.y)};
}

/// Whether going on to `next` keeps to the direction in which the line began.
bool goesStraightOn(const QPointF &from, const QPointF &direction, const QPointF &to, QPointF next)
{
    const double length = std::hypot(direction.x(), direction.y());
    const QPointF way = next - from;
    const double beside = (direction.x() * way.y() - direction.y() * way.x()) / length;
    return std::abs(beside) <= straightness && QPointF::dotProduct(direction, next - to) > 0;
}

/// The strokes of one run of lit points.
class Run
{
public:
    explicit Run(std::vector<Stroke> &strokes)
        : m_strokes(strokes)
    {
    }

    void begin(const QPointF &place, std::uint32_t color)
    {
        m_here = place;
        m_color = color;
        m_points = 1;
        m_line = false;
        m_dot = false;
    }

    void goTo(const QPointF &place, std::uint32_t color)
    {
        ++m_points;
        if (place == m_here)
            stay(color);
        else
            draw(place, color);
        m_here = place;
        m_color = color;
    }

    void end()
    {
        if (m_points == 1)
            m_strokes.push_back({m_here, m_here, m_color, 1});
        m_points = 0;
    }

private:
    void stay(std::uint32_t color)
    {
        if (m_dot && m_strokes.back().color == color)
            ++m_strokes.back().dwell;
        else
            m_strokes.push_back({m_here, m_here, color, 2});
        m_dot = true;
        m_line = false;
    }

    void draw(const QPointF &place, std::uint32_t color)
    {
        if (m_line && m_strokes.back().color == color
            && goesStraightOn(m_strokes.back().from, m_direction, m_here, place)) {
            m_strokes.back().to = place;
        } else {
            m_strokes.push_back({m_here, place, color, 0});
            m_direction = place - m_here;
        }
        m_line = true;
        m_dot = false;
    }

    std::vector<Stroke> &m_strokes;
    QPointF m_here;
    QPointF m_direction; ///< of the line in the making
    std::uint32_t m_color = 0;
    int m_points = 0;
    bool m_line = false; ///< the last stroke is a line that may go on
    bool m_dot = false; ///< the last stroke is a dot that may stay
};

} // namespace

void strokesOf(std::span<const LdbPoint> points, std::vector<Stroke> &strokes)
{
    strokes.clear();
    Run run(strokes);
    bool lit = false;
    for (const LdbPoint &point : points) {
        const bool wasLit = lit;
        lit = isLit(point);
        const auto color = static_cast<std::uint32_t>(point.color) & 0xffffff;
        if (lit && wasLit)
            run.goTo(placeOf(point), color);
        else if (lit)
            run.begin(placeOf(point), color);
        else if (wasLit)
            run.end();
    }
    if (lit)
        run.end();
}
