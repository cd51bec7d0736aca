#pragma once

#include "lightstrokes.h"

#include <cstdint>
#include <vector>

/// The light that one frame throws on a square of pixels, the field with a narrow margin around
/// it. Light adds up where beams cross. A beam is a fine line with a soft glow, as wide at any
/// size in proportion to the square.
class Exposure
{
public:
    /// Makes the square `side` pixels wide, and dark.
    void resize(int side);
    /// Replaces the light by that of a frame.
    void expose(std::span<const LdbPoint> points);

    int side() const { return m_side; }
    /// The pixels of a row as blue, green, red (256 parts of a colour step each) and opacity,
    /// always full: four values a pixel, in the order in which QImage keeps them.
    const std::uint16_t *row(int y) const { return m_light.data() + rowSize() * std::size_t(y); }
    /// Where a place of the field falls on the square; y turns from upward to downward.
    QPointF pixelOf(const QPointF &place) const;

private:
    struct Brush;

    std::size_t rowSize() const { return 4 * std::size_t(m_side); }
    std::uint16_t *pixel(int x, int y)
    {
        return m_light.data() + rowSize() * std::size_t(y) + 4 * std::size_t(x);
    }
    void darken();
    void drawLine(const Brush &brush, const Stroke &stroke);
    void drawDot(const Brush &brush, const Stroke &stroke);

    int m_side = 0;
    std::vector<std::uint16_t> m_light;
    std::vector<std::uint16_t> m_darkRow;
    std::vector<Stroke> m_strokes;
};
