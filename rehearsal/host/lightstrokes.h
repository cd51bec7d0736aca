#pragma once

#include "ldb.h"

#include <QPointF>

#include <span>
#include <vector>

/// The largest coordinate of the field; the smallest is its negative.
inline constexpr double fieldLimit = 32768.0;

/// A straight piece of light, or a dot where both ends are one place.
struct Stroke
{
    QPointF from; ///< field units, in the field
    QPointF to; ///< field units, in the field
    std::uint32_t color; ///< 0xRRGGBB
    int dwell; ///< for how many points the beam stood here; 0 for a line

    bool isDot() const { return dwell > 0; }
    bool operator==(const Stroke &) const = default;
};

/// What the beam draws on its way through a frame: a line between two lit points in the colour of
/// the second, a dot where it stands still or is lit for one point only, nothing on its way from
/// or to a blanked point. Lines that go straight on are one stroke. Points outside the field are
/// drawn at its edge, where a scanner stops; points of no number are blanked.
void strokesOf(std::span<const LdbPoint> points, std::vector<Stroke> &strokes);
