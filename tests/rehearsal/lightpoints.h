#pragma once

#include "ldb.h"

#include <QPointF>

#include <cmath>
#include <vector>

// Points and lines for test frames.

inline LdbPoint lit(double x, double y, std::int32_t color)
{
    return {static_cast<float>(x), static_cast<float>(y), 0, color, 0, 0, 0, 0};
}

inline LdbPoint dark(double x, double y)
{
    return {static_cast<float>(x), static_cast<float>(y), 0, 0, 0, 0, 3, 0};
}

/// A lit line in steps, without blanked points.
inline std::vector<LdbPoint> litLine(
    const QPointF &from, const QPointF &to, int steps, std::int32_t color = 0xFFFFFF)
{
    std::vector<LdbPoint> points;
    for (int i = 0; i <= steps; ++i) {
        const double share = double(i) / steps;
        points.push_back(
            lit(std::lerp(from.x(), to.x(), share), std::lerp(from.y(), to.y(), share), color));
    }
    return points;
}

/// The same as a stroke of the game, with a blanked point before and after it.
inline std::vector<LdbPoint> strokeOf(
    const QPointF &from, const QPointF &to, int steps = 1, std::int32_t color = 0xFFFFFF)
{
    std::vector<LdbPoint> points = litLine(from, to, steps, color);
    points.insert(points.begin(), dark(from.x(), from.y()));
    points.push_back(dark(to.x(), to.y()));
    return points;
}

inline std::vector<LdbPoint> operator+(
    std::vector<LdbPoint> one, const std::vector<LdbPoint> &other)
{
    one.insert(one.end(), other.begin(), other.end());
    return one;
}
