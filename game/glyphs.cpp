#include "strokes.h"

#include <array>
#include <span>

namespace {

/// One line of a glyph: its ends in glyph units, its share of the glyph's steps, and how it joins
/// the previous line.
struct GlyphLine
{
    Point from;
    Point to;
    int numerator;
    int denominator;
    LineMode mode;
};

/// How every line of one glyph is drawn.
struct Pen
{
    BadBey &bey;
    int unit; ///< field units
    Point origin;
    int color;
    int objectIndex;
    int steps;

    void draw(std::span<const GlyphLine> lines) const
    {
        for (const GlyphLine &line : lines) {
            const auto w = static_cast<float>((line.to.x - line.from.x) * unit);
            const auto h = static_cast<float>((line.to.y - line.from.y) * unit);
            const Point centre = {origin.x + (line.from.x + line.to.x) / 2 * unit,
                origin.y + (line.from.y + line.to.y) / 2 * unit};
            addLine(bey, {w, h}, centre, color, objectIndex,
                steps * line.numerator / line.denominator, line.mode);
        }
    }
};

// A digit's cell is two units wide and four high, centred at (0, 0). The 0 and the ring of the 8
// are rectangles.

constexpr std::array one = {
    GlyphLine{{0, 2}, {0, -2}, 1, 1, LineSingle},
};
constexpr std::array two = {
    GlyphLine{{-1, 2}, {1, 2}, 1, 5, LineBegin},
    GlyphLine{{1, 2}, {1, 0}, 1, 5, LineContinue},
    GlyphLine{{1, 0}, {-1, 0}, 1, 5, LineContinue},
    GlyphLine{{-1, 0}, {-1, -2}, 1, 5, LineContinue},
    GlyphLine{{-1, -2}, {1, -2}, 1, 5, LineEnd},
};
constexpr std::array three = {
    GlyphLine{{-1, 2}, {1, 2}, 1, 5, LineBegin},
    GlyphLine{{1, 2}, {1, -2}, 2, 5, LineContinue},
    GlyphLine{{1, -2}, {-1, -2}, 1, 5, LineEnd},
    GlyphLine{{-1, 0}, {1, 0}, 1, 5, LineSingle},
};
constexpr std::array four = {
    GlyphLine{{-1, 2}, {-1, 0}, 1, 4, LineBegin},
    GlyphLine{{-1, 0}, {1, 0}, 1, 4, LineEnd},
    GlyphLine{{1, 2}, {1, -2}, 1, 2, LineSingle},
};
constexpr std::array five = {
    GlyphLine{{1, 2}, {-1, 2}, 1, 5, LineBegin},
    GlyphLine{{-1, 2}, {-1, 0}, 1, 5, LineContinue},
    GlyphLine{{-1, 0}, {1, 0}, 1, 5, LineContinue},
    GlyphLine{{1, 0}, {1, -2}, 1, 5, LineContinue},
    GlyphLine{{1, -2}, {-1, -2}, 1, 5, LineEnd},
};
constexpr std::array six = {
    GlyphLine{{1, 2}, {-1, 2}, 1, 6, LineBegin},
    GlyphLine{{-1, 2}, {-1, -2}, 1, 3, LineContinue},
    GlyphLine{{-1, -2}, {1, -2}, 1, 6, LineContinue},
    GlyphLine{{1, -2}, {1, 0}, 1, 6, LineContinue},
    GlyphLine{{1, 0}, {-1, 0}, 1, 6, LineEnd},
};
constexpr std::array seven = {
    GlyphLine{{-1, 2}, {1, 2}, 1, 3, LineBegin},
    GlyphLine{{1, 2}, {1, -2}, 2, 3, LineEnd},
};
constexpr std::array barOfEight = {
    GlyphLine{{-1, 0}, {1, 0}, 1, 7, LineSingle},
};
constexpr std::array nine = {
    GlyphLine{{1, 0}, {-1, 0}, 1, 6, LineBegin},
    GlyphLine{{-1, 0}, {-1, 2}, 1, 6, LineContinue},
    GlyphLine{{-1, 2}, {1, 2}, 1, 6, LineContinue},
    GlyphLine{{1, 2}, {1, -2}, 1, 3, LineContinue},
    GlyphLine{{1, -2}, {-1, -2}, 1, 6, LineEnd},
};

constexpr std::array play = {
    GlyphLine{{0, 0}, {128, 0}, 1, 5, LineBegin}, // P
    GlyphLine{{128, 0}, {128, 64}, 1, 5, LineContinue},
    GlyphLine{{128, 64}, {0, 64}, 1, 5, LineContinue},
    GlyphLine{{0, 64}, {0, -64}, 1, 10, LineEnd},
    GlyphLine{{160, 64}, {160, -64}, 1, 10, LineBegin}, // L
    GlyphLine{{160, -64}, {288, -64}, 1, 10, LineEnd},
    GlyphLine{{320, -64}, {384, 64}, 1, 10, LineBegin}, // A
    GlyphLine{{384, 64}, {448, -64}, 1, 10, LineEnd},
    GlyphLine{{352, 0}, {416, 0}, 1, 5, LineSingle},
    GlyphLine{{480, 64}, {544, 0}, 1, 5, LineBegin}, // Y
    GlyphLine{{544, 0}, {608, 64}, 1, 5, LineEnd},
    GlyphLine{{544, 0}, {544, -64}, 1, 5, LineSingle},
};

constexpr std::array wins = {
    GlyphLine{{0, 64}, {0, -64}, 1, 12, LineBegin}, // W
    GlyphLine{{0, -64}, {64, 0}, 1, 12, LineContinue},
    GlyphLine{{64, 0}, {128, -64}, 1, 12, LineContinue},
    GlyphLine{{128, -64}, {128, 64}, 1, 12, LineEnd},
    GlyphLine{{184, 64}, {184, -64}, 1, 25, LineSingle}, // I
    GlyphLine{{240, -64}, {240, 64}, 1, 12, LineBegin}, // N
    GlyphLine{{240, 64}, {368, -64}, 1, 12, LineContinue},
    GlyphLine{{368, -64}, {368, 64}, 1, 12, LineEnd},
    GlyphLine{{528, 64}, {400, 64}, 1, 25, LineBegin}, // S
    GlyphLine{{400, 64}, {400, 0}, 1, 25, LineContinue},
    GlyphLine{{400, 0}, {528, 0}, 1, 25, LineContinue},
    GlyphLine{{528, 0}, {528, -64}, 1, 25, LineContinue},
    GlyphLine{{528, -64}, {400, -64}, 1, 25, LineEnd},
};

} // namespace

void addDigit(
    BadBey &bey, int digit, int scale, Point centre, int color, int objectIndex, int steps)
{
    const StrokeSize cell = {static_cast<float>(320 * scale), static_cast<float>(640 * scale)};
    const Pen pen = {bey, 160 * scale, centre, color, objectIndex, steps};
    switch (digit) {
    case 0:
        addRect(bey, cell, centre, color, objectIndex, steps);
        break;
    case 1:
        pen.draw(one);
        break;
    case 2:
        pen.draw(two);
        break;
    case 3:
        pen.draw(three);
        break;
    case 4:
        pen.draw(four);
        break;
    case 5:
        pen.draw(five);
        break;
    case 6:
        pen.draw(six);
        break;
    case 7:
        pen.draw(seven);
        break;
    case 8:
        addRect(bey, cell, centre, color, objectIndex, 6 * steps / 7);
        pen.draw(barOfEight);
        break;
    case 9:
        pen.draw(nine);
        break;
    default:
        break;
    }
}

void addWinnerCaptionTop(
    BadBey &bey, int scale, Point origin, int color, int objectIndex, int steps)
{
    Pen{bey, scale, origin, color, objectIndex, steps}.draw(play);
}

void addWinnerCaptionBottom(
    BadBey &bey, int scale, Point origin, int color, int objectIndex, int steps)
{
    Pen{bey, scale, origin, color, objectIndex, steps}.draw(wins);
}
