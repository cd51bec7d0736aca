#include "eye.h"

#include <algorithm>
#include <cmath>

namespace {

/// Flicker fusion time in seconds: a pass that repeats faster looks steady.
constexpr double fusion = 1.0 / 60;
/// Longest path drawn in one picture, in sides of the field, so that a corrupt frame cannot stall
/// the host. Real mirrors travel less than half as far.
constexpr double longestWay = 120.0;

double lengthOf(const BeamPiece &piece)
{
    const QPointF step = piece.to - piece.from;
    return std::hypot(step.x(), step.y()) / (2 * fieldLimit);
}

} // namespace

void Eye::resize(int side)
{
    if (side != m_exposure.side())
        m_exposure.resize(side);
}

void Eye::clear()
{
    m_exposure.clear();
    m_way.clear();
}

bool Eye::look(double until)
{
    m_from = std::max(m_until, until - Projector::longestRun);
    m_exposure.fade(std::exp(-std::max(until - m_until, 0.0) / m_persistence));
    m_until = until;
    m_projector->run(until, m_way);
    const double spread = std::min(m_projector->passSeconds(), fusion);
    double way = 0;
    for (const BeamPiece &piece : m_way) {
        way += lengthOf(piece);
        if (way > longestWay)
            break;
        if (const double energy = seenOf(piece, spread); energy > 0)
            m_exposure.add(piece.from, piece.to, piece.color, energy);
    }
    std::erase_if(m_way, [&](const BeamPiece &piece) {
        return piece.begin + std::max(piece.seconds, spread) <= until;
    });
    const bool isSeen = m_picture.develop(m_exposure);
    return isSeen || !m_way.empty() || m_projector->isLit();
}

/// The energy that a piece adds to this picture, after fading. It is spread evenly over `spread`
/// seconds, so that a pass of that length looks steady in every picture.
double Eye::seenOf(const BeamPiece &piece, double spread) const
{
    const double lasts = std::max(piece.seconds, spread);
    const double begin = std::max(piece.begin, m_from);
    const double end = std::min(piece.begin + lasts, m_until);
    if (end <= begin)
        return 0;
    const double left =
        std::exp((end - m_until) / m_persistence) - std::exp((begin - m_until) / m_persistence);
    return piece.seconds / lasts * left;
}
