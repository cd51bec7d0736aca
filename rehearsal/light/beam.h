#pragma once

#include "colororder.h"
#include "ldb.h"

#include <QPointF>

#include <cmath>

// The points of a frame and the pieces that a beam draws from them.

/// The largest coordinate of the field; the smallest is its negative.
inline constexpr double fieldLimit = 32768.0;

/// A straight piece of the beam's path, travelled at constant speed in one colour; a dot if both
/// ends are equal.
struct BeamPiece
{
    QPointF from; ///< field units
    QPointF to; ///< field units
    std::uint32_t color; ///< 0xRRGGBB
    double begin; ///< seconds on the projector's clock
    double seconds; ///< duration

    bool operator==(const BeamPiece &) const = default;
};

inline bool isFinite(const LdbPoint &point)
{
    return std::isfinite(point.x) && std::isfinite(point.y);
}

/// Whether the beam is on when it arrives at the point. Points without finite coordinates are
/// blanked.
inline bool isLit(const LdbPoint &point)
{
    constexpr int blankedTravel = 3;
    return (point.color & 0xffffff) != 0 && point.flags != blankedTravel && isFinite(point);
}

/// Where a finite point is drawn; clamped to the field, as a scanner stops at its edge.
QPointF placeOf(const LdbPoint &point);

/// The colour as 0xRRGGBB.
std::uint32_t rgbOf(std::int32_t color, ColorOrder order);
