#pragma once

#include "fieldsquare.h"
#include "light.h"

#include <cstdint>
#include <vector>

/// The light that has fallen on a square of pixels, added up and fading. The square is kept in
/// tiles, and only those that have light on them cost time.
///
/// Energy is in whites: a full white beam that rests on the square for a second leaves an energy of
/// 1 in each of the three colours, spread over the pixels as the bell that the beam is.
class Exposure
{
public:
    /// Pixels along the side of a tile.
    static constexpr int tileSide = 32;

    /// Makes the square `side` pixels wide, and dark.
    void resize(int side);
    void clear();
    /// Fades all light to a part of what it is, 0 ... 1.
    void fade(double kept);
    /// Spreads the energy of a white beam evenly along a line between two places of the field, or
    /// on a dot, in parts as the colour 0xRRGGBB has them.
    void add(const QPointF &from, const QPointF &to, std::uint32_t color, double energy);

    int side() const { return m_side; }
    const FieldSquare &field() const { return m_field; }
    int tilesPerSide() const { return m_tilesPerSide; }
    /// Whether there may be light on a tile.
    bool isLit(int tileX, int tileY) const { return m_lit[tileAt(tileX, tileY)] != 0; }
    /// Makes a tile dark.
    void darken(int tileX, int tileY);
    /// The pixels of a row, each to be multiplied by scale(). Rows and columns are tiles whole, so
    /// that there are more than are seen.
    const Light *row(int y) const { return m_light.data() + rowSize() * std::size_t(y); }
    float scale() const { return static_cast<float>(m_scale); }
    /// All energy, for the mean of the three colours.
    double energy() const;

private:
    struct Brush;

    std::size_t rowSize() const { return std::size_t(m_tilesPerSide) * tileSide; }
    std::size_t tileAt(int tileX, int tileY) const
    {
        return std::size_t(tileY) * std::size_t(m_tilesPerSide) + std::size_t(tileX);
    }
    void light(int left, int top, int right, int bottom);
    void addDot(const QPointF &middle, const Light &light);
    void addLine(const QPointF &from, const QPointF &to, double length, const Light &light);

    int m_side = 0;
    int m_tilesPerSide = 0;
    FieldSquare m_field;
    double m_beamWidth = 1; ///< pixels, one standard deviation
    double m_scale = 1; ///< fades everything at no cost
    std::vector<Light> m_light;
    std::vector<std::uint8_t> m_lit; ///< by tile
};
