#pragma once

#include <QtGlobal>

/// One point of a frame being composed.
struct FramePoint
{
    qint32 x; ///< field units, -32768 ... +32767, to the right
    qint32 y; ///< field units, upward
    qint32 z; ///< always 0
    qint32 color; ///< colour number, 0 = beam off
    qint32 flags; ///< 0 ordinary, 1 first or last of a stroke, 3 blanked travel

    bool operator==(const FramePoint &) const = default;
};
