#include "scanner.h"

#include <algorithm>
#include <cmath>

namespace {

/// Longest simulation step of the mirrors, in seconds of their own time; short compared with their
/// lag of 0.1 ms.
constexpr double longestStep = 1.0 / 60000;
/// In slow motion, pieces are also short compared with a screen refresh.
constexpr double longestPiece = 0.004;

} // namespace

void Scanner::setSettings(const ScannerSettings &settings)
{
    if (settings.hasMirrors != m_settings.hasMirrors)
        rest();
    m_settings = settings;
    const double ownSeconds = 1.0 / settings.pointRate;
    m_pointSeconds = ownSeconds / settings.speed;
    const double steps = std::max(ownSeconds / longestStep, m_pointSeconds / longestPiece);
    m_stepsPerPoint = std::max(static_cast<int>(std::ceil(steps - 1e-9)), 1);
    m_x.setStep(ownSeconds / m_stepsPerPoint);
    m_y.setStep(ownSeconds / m_stepsPerPoint);
}

void Scanner::scan(const LdbPoint &point, double begin, std::vector<BeamPiece> &way)
{
    if (m_settings.hasMirrors)
        scanAsDrawn(point, begin, way);
    else
        scanAsSent(point, begin, way);
}

void Scanner::rest()
{
    m_x.rest(m_target.x());
    m_y.rest(m_target.y());
    m_litPoints = 0;
    m_lastColor = 0;
    m_color = 0;
    m_changes.clear();
}

void Scanner::scanAsSent(const LdbPoint &point, double begin, std::vector<BeamPiece> &way)
{
    const QPointF from = m_target;
    if (isFinite(point))
        m_target = placeOf(point);
    if (!isLit(point)) {
        // Only now is it known that the last lit point was a single one, so it is drawn late.
        if (m_litPoints == 1)
            way.push_back({from, from, m_lastColor, begin - m_pointSeconds, m_pointSeconds});
        m_litPoints = 0;
        return;
    }
    m_lastColor = rgbOf(point.color, m_settings.colorOrder);
    if (m_litPoints > 0)
        way.push_back({from, m_target, m_lastColor, begin, m_pointSeconds});
    m_litPoints = std::min(m_litPoints + 1, 2);
}

void Scanner::scanAsDrawn(const LdbPoint &point, double begin, std::vector<BeamPiece> &way)
{
    if (isFinite(point))
        m_target = placeOf(point);
    const std::uint32_t color = isLit(point) ? rgbOf(point.color, m_settings.colorOrder) : 0;
    if (color != m_lastColor)
        m_changes.push_back({begin + m_settings.colorDelay / m_settings.speed, color});
    m_lastColor = color;
    const double seconds = m_pointSeconds / m_stepsPerPoint;
    for (int step = 0; step < m_stepsPerPoint; ++step) {
        const QPointF from(m_x.place(), m_y.place());
        const QPointF to(m_x.follow(m_target.x()), m_y.follow(m_target.y()));
        const double time = begin + step * seconds;
        if (const std::uint32_t lit = colorAt(time + seconds / 2))
            way.push_back({from, to, lit, time, seconds});
    }
}

std::uint32_t Scanner::colorAt(double time)
{
    while (!m_changes.empty() && m_changes.front().time <= time) {
        m_color = m_changes.front().color;
        m_changes.pop_front();
    }
    return m_color;
}
