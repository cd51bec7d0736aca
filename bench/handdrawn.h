#pragma once

#include "framepoint.h"
#include "match.h"

// The frame of a match in play, hand-written for this picture only: the baseline of composing.

/// The points of such a frame.
inline constexpr int pointsInPlay = 175;

/// Writes a line of `steps` + 1 points about a centre, with its blanked travel, in the game's
/// arithmetic. Returns a pointer past its last point.
FramePoint *drawLine(FramePoint *out, float w, float h, Point centre, int color, int steps);

/// Writes a circle of `steps` + 1 points in the same way.
FramePoint *drawCircle(FramePoint *out, int radius, Point centre, int color, int steps);

/// Writes the `pointsInPlay` points of a match in play.
inline void drawPlay(FramePoint *out, const Match &match)
{
    out = drawCircle(out, 800, match.ballPos, 0x0030FF, 20);
    out = drawLine(out, 0, 10000, match.leftPaddle, 0xFFFFFF, 20);
    out = drawLine(out, 0, 10000, match.rightPaddle, 0xFFFFFF, 20);
    out = drawLine(out, 64000, 0, {0, 32000}, 0xFFFF00, 50);
    drawLine(out, 64000, 0, {0, -32000}, 0xFFFF00, 50);
}
