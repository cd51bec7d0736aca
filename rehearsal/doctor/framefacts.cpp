#include "framefacts.h"

#include "beam.h"

#include <algorithm>
#include <limits>

namespace {

/// A beam that stays within this distance counts as standing. In field units; a quarter of a beam's
/// width.
constexpr double standingRadius = 20.0;

bool isOutside(const LdbPoint &point)
{
    const auto beyond = [](float value) { return !(value >= -fieldLimit && value <= fieldLimit); };
    return beyond(point.x) || beyond(point.y);
}

double distance(const QPointF &from, const QPointF &to)
{
    return std::hypot(to.x() - from.x(), to.y() - from.y());
}

/// Counts the points of a frame over one full cycle that begins at the start of a stroke.
class Round
{
public:
    explicit Round(FrameFacts &facts)
        : m_facts(facts)
    {
    }

    void see(const LdbPoint &point)
    {
        if (::isLit(point))
            seeLit(placeOf(point));
        else
            seeBlanked();
    }

private:
    void seeLit(const QPointF &place)
    {
        if (m_blanked > 0) {
            ++m_facts.jumps;
            m_facts.blankedOnJumps += m_blanked;
            m_facts.shortestJump =
                m_facts.jumps == 1 ? m_blanked : std::min(m_facts.shortestJump, m_blanked);
            m_blanked = 0;
        } else if (m_standing > 0) {
            m_facts.longestLitStep = std::max(m_facts.longestLitStep, distance(m_last, place));
        }
        if (m_standing == 0 || distance(m_stand, place) > standingRadius) {
            m_stand = place;
            m_standing = 0;
        }
        m_facts.longestStand = std::max(m_facts.longestStand, ++m_standing);
        m_last = place;
    }

    void seeBlanked()
    {
        ++m_blanked;
        m_standing = 0;
    }

    FrameFacts &m_facts;
    QPointF m_last;
    QPointF m_stand; ///< where the beam stands
    int m_standing = 0; ///< consecutive points there; 0 while blanked
    int m_blanked = 0; ///< consecutive points
};

} // namespace

FrameFacts factsOf(std::span<const LdbPoint> points)
{
    FrameFacts facts;
    facts.points = static_cast<int>(points.size());
    for (const LdbPoint &point : points) {
        facts.litPoints += isLit(point) ? 1 : 0;
        facts.outside += isOutside(point) ? 1 : 0;
    }
    if (facts.isEmpty())
        return facts;
    // Begin after a blanked point that follows a lit one (anywhere if all are lit), and end with
    // the first point again.
    std::size_t begin = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (isLit(points[i]) && !isLit(points[(i + 1) % points.size()]))
            begin = i + 1;
    }
    Round round(facts);
    for (std::size_t i = 0; i < points.size(); ++i)
        round.see(points[(begin + i) % points.size()]);
    const bool allLit = facts.litPoints == facts.points;
    facts.standsForEver = allLit && facts.longestStand == facts.points;
    if (allLit) {
        facts.longestLitStep = std::max(
            facts.longestLitStep, distance(placeOf(points.back()), placeOf(points.front())));
    }
    return facts;
}
