#pragma once

#include "fieldsquare.h"

#include <span>

class QPainter;

/// The marks that a technician can switch on over the light.
struct Marks
{
    bool points = false; ///< every point as a dot
    bool travel = false; ///< blanked travel as dim dashes
    bool order = false; ///< the order of the points as colour, from red to violet

    bool any() const { return points || travel || order; }
    bool operator==(const Marks &) const = default;
};

/// Paints marks of a frame over its light. The painter's origin is the upper left corner of the
/// square.
void paintMarks(QPainter &painter, const FieldSquare &square, std::span<const LdbPoint> points,
    const Marks &marks);

/// Paints a ring around a point.
void paintRing(QPainter &painter, const FieldSquare &square, const LdbPoint &point);
