#pragma once

#include <QtGlobal>

#include <cmath>
#include <limits>

/// Truncates toward zero and clamps to the range of int32; NaN yields `otherwise`.
template <class Float>
inline qint32 truncated(Float value, qint32 otherwise = 0)
{
    using Limits = std::numeric_limits<qint32>;
    constexpr auto least = static_cast<Float>(Limits::min());
    if (value > least && value < -least) // false for NaN
        return static_cast<qint32>(value);
    if (std::isnan(value))
        return otherwise;
    return value > 0 ? Limits::max() : Limits::min();
}

/// The single-precision hypotenuse, rounded once: the math libraries of different systems differ in
/// its last bit, and a match must replay to the bit on all of them. Infinite if either side is.
inline float hypotenuse(float a, float b)
{
    if (std::isinf(a) || std::isinf(b))
        return std::numeric_limits<float>::infinity();
    const double x = a;
    const double y = b;
    return static_cast<float>(std::sqrt(x * x + y * y));
}
