#pragma once

#include "framepoint.h"
#include "match.h"

#include <QList>

class BadBey;

// The strokes of a frame. Each is appended to the binding's point list, with blanked travel before
// and after it. Points outside the host's range (-32768 ... +32767) are omitted. Game thread only.

/// Width and height in field units; a negative value reverses the drawing direction.
struct StrokeSize
{
    float w;
    float h;
};

/// How a line joins its neighbours.
enum LineMode : int {
    LineContinue = -1, ///< continues the current stroke
    LineSingle = 0, ///< a complete stroke
    LineBegin = 1, ///< begins a stroke of several lines
    LineEnd = 2, ///< continues the current stroke and finishes it
};

/// The element that a stroke belongs to. Passed with every stroke; does not affect its points.
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

/// Appends a finished stroke between two blanked travel points; an empty stroke adds nothing. If
/// the list then exceeds the largest frame, it is cleared.
void appendStroke(BadBey &bey, const QList<FramePoint> &stroke, int objectIndex);

/// A straight line from (-w/2, -h/2) to (+w/2, +h/2) relative to its centre, with steps + 1 points.
/// Zero steps draw nothing; a negative count draws only the end point.
void addLine(
    BadBey &bey, StrokeSize size, Point centre, int color, int objectIndex, int steps, int mode);

/// A circle, counter-clockwise from its rightmost point, with steps + 1 points. Zero steps draw
/// nothing; a negative count draws only the closing point.
void addCircle(BadBey &bey, int radius, Point centre, int color, int objectIndex, int steps);

/// A rectangle, clockwise from its top left corner; each side gets a quarter of the steps.
void addRect(BadBey &bey, StrokeSize size, Point centre, int color, int objectIndex, int steps);

/// A digit in a cell 320 * scale wide and 640 * scale high; values other than 0 to 9 draw nothing.
void addDigit(
    BadBey &bey, int digit, int scale, Point centre, int color, int objectIndex, int steps);

/// PLAY, 608 * scale wide and 128 * scale high; the origin is the middle of its left edge.
void addWinnerCaptionTop(
    BadBey &bey, int scale, Point origin, int color, int objectIndex, int steps);

/// WINS, 528 * scale wide and 128 * scale high; the origin is the middle of its left edge.
void addWinnerCaptionBottom(
    BadBey &bey, int scale, Point origin, int color, int objectIndex, int steps);
