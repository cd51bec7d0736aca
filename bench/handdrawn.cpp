#include "handdrawn.h"

#include <cmath>

namespace {

/// Completes a stroke between two blanked travel points; `first` is the first of them.
FramePoint *finish(FramePoint *first, FramePoint *out)
{
    first[1].flags = 1;
    out[-1].flags = 1;
    first[0] = {first[1].x, first[1].y, 0, 0, 3};
    out[0] = {out[-1].x, out[-1].y, 0, 0, 3};
    return out + 1;
}

} // namespace

FramePoint *drawLine(FramePoint *out, float w, float h, Point centre, int color, int steps)
{
    FramePoint *const first = out++;
    const auto cx = static_cast<float>(centre.x);
    const auto cy = static_cast<float>(centre.y);
    const auto n = static_cast<float>(steps);
    for (int i = 0; i < steps; ++i) {
        const auto step = static_cast<float>(i);
        *out++ = {static_cast<qint32>(step * w / n - w * 0.5F + cx),
            static_cast<qint32>(step * h / n - h * 0.5F + cy), 0, color, 0};
    }
    *out++ = {static_cast<qint32>(cx + w * 0.5F), static_cast<qint32>(cy + h * 0.5F), 0, color, 0};
    return finish(first, out);
}

FramePoint *drawCircle(FramePoint *out, int radius, Point centre, int color, int steps)
{
    FramePoint *const first = out++;
    for (int i = 0; i < steps; ++i) {
        const double angle = i * 6.283185307 / steps;
        *out++ = {static_cast<qint32>(std::cos(angle) * radius + centre.x),
            static_cast<qint32>(std::sin(angle) * radius + centre.y), 0, color, 0};
    }
    *out++ = {centre.x + radius, centre.y, 0, color, 0};
    return finish(first, out);
}
