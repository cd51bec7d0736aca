#pragma once

#include "beam.h"

/// Where the field falls on a square of pixels: in its middle, with a narrow margin around it, so
/// that the glow of a border shows.
struct FieldSquare
{
    static constexpr double margin = 0.03; ///< of the side, at each edge
    double side = 0; ///< pixels

    double scale() const { return side * (1 - 2 * margin) / (2 * fieldLimit); }
    /// y turns from upward to downward.
    QPointF pixelOf(const QPointF &place) const
    {
        return {side / 2 + place.x() * scale(), side / 2 - place.y() * scale()};
    }
};
