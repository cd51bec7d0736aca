#include "beam.h"

#include <algorithm>

QPointF placeOf(const LdbPoint &point)
{
    const auto inField = [](float value) {
        return std::clamp(static_cast<double>(value), -fieldLimit, fieldLimit);
    };
    return {inField(point.x), inField(point.y)};
}

std::uint32_t rgbOf(std::int32_t color, ColorOrder order)
{
    const auto number = static_cast<std::uint32_t>(color) & 0xffffff;
    if (order == ColorOrder::RedGreenBlue)
        return number;
    return (number & 0xff) << 16 | (number & 0xff00) | number >> 16;
}
