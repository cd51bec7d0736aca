#pragma once

#include "framepoint.h"
#include "match.h"

#include <QList>

class BadBey;

// The strokes of a frame. Each is appended to the point list of the binding, with blanked travel
// before and after it. Points that the host could not take (outside -32768 ... +32767) are left
// out of their stroke. The game thread alone draws.

/// Width and height in field units; a negative one draws in the other direction.
struct StrokeSize
{
    float w;
    float h;
};

/// How a line joins its neighbours.
enum LineMode : int {
    LineContinue = -1, ///< goes on with the stroke begun before
    LineSingle = 0, ///< a stroke of its own
    LineBegin = 1, ///< begins a stroke of several lines
    LineEnd = 2, ///< goes on with the stroke and finishes it
};

/// What a stroke belongs to. It is told with every stroke and changes none of its points.
enum ObjectIndex : int {
    LeftPaddleObject = 0,
    RightPaddleObject = 1,
    TopBorderObject = 2,
    BottomBorderObject = 3,
    BallObject = 4,
    LeftScoreObject = 5,
    RightScoreObject = 6,
    DashObject = 7,
    WinnerObject = 8,
};

/// Adds a finished stroke between two blanked travel points; an empty one adds nothing. A list
/// that has outgrown a frame is dropped.
void appendStroke(BadBey &bey, const QList<FramePoint> &stroke, int objectIndex);

/// A straight line about a centre, from (-w/2, -h/2) to (+w/2, +h/2), with steps + 1 points. No
/// steps draw nothing; negative ones draw the end point alone.
void addLine(
    BadBey &bey, StrokeSize size, Point centre, int color, int objectIndex, int steps, int mode);

/// A circle, counter-clockwise from its rightmost point, with steps + 1 points. No steps draw
/// nothing; negative ones draw the closing point alone.
void addCircle(BadBey &bey, int radius, Point centre, int color, int objectIndex, int steps);

/// A rectangle, clockwise from its top left corner; a quarter of the steps a side.
void addRect(BadBey &bey, StrokeSize size, Point centre, int color, int objectIndex, int steps);

/// A digit in a cell 320 * scale wide and 640 * scale high; anything but 0 to 9 draws nothing.
void addDigit(
    BadBey &bey, int digit, int scale, Point centre, int color, int objectIndex, int steps);

/// PLAY, 608 * scale wide and 128 * scale high; the origin is at its left, half way up.
void addWinnerCaptionTop(
    BadBey &bey, int scale, Point origin, int color, int objectIndex, int steps);

/// WINS, 528 * scale wide and 128 * scale high; the origin is at its left, half way up.
void addWinnerCaptionBottom(
    BadBey &bey, int scale, Point origin, int color, int objectIndex, int steps);
