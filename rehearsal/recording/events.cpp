#include "events.h"

#include <algorithm>
#include <cmath>

std::optional<bool> outputAfter(const Event &event)
{
    if (event.kind == Event::OutputEnabled)
        return true;
    if (event.kind == Event::OutputDisabled || event.kind == Event::HostStarted)
        return false;
    return std::nullopt;
}

bool isLit(const LdbPoint &point)
{
    constexpr int blankedTravel = 3;
    return (point.color & 0xffffff) != 0 && point.flags != blankedTravel && std::isfinite(point.x)
        && std::isfinite(point.y);
}

bool isLit(std::span<const LdbPoint> points)
{
    return std::ranges::any_of(points, [](const LdbPoint &point) { return isLit(point); });
}

QByteArray inMilliseconds(SharedTime time)
{
    const SharedTime microseconds = time / 1000;
    const auto [whole, part] = std::div(std::abs(microseconds), SharedTime(1000));
    return (microseconds < 0 ? "-" : "") + QByteArray::number(qint64(whole)) + '.'
        + QByteArray::number(qint64(part)).rightJustified(3, '0');
}
