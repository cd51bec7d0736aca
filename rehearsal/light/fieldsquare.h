#pragma once

#include "beam.h"

/// Maps the field to a square of pixels, centred, with a narrow margin for the glow of the borders.
struct FieldSquare
{
    static constexpr double margin = 0.03; ///< fraction of the side, at each edge
    double side = 0; ///< pixels

    double scale() const { return side * (1 - 2 * margin) / (2 * fieldLimit); }
    /// Flips y, which points up in the field and down in pixels.
    QPointF pixelOf(const QPointF &place) const
    {
        return {side / 2 + place.x() * scale(), side / 2 - place.y() * scale()};
    }
};
