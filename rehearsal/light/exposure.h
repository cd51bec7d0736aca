#pragma once

#include "fieldsquare.h"
#include "light.h"

#include <cstdint>
#include <vector>

/// Accumulates and fades the light on a square of pixels. The square is divided into tiles, and
/// only lit tiles cost time.
///
/// Unit of energy: a full white beam at rest for one second adds 1 to each of the three colours,
/// spread over the pixels by the beam's bell-shaped profile.
class Exposure
{
public:
    /// Pixels along the side of a tile.
    static constexpr int tileSide = 32;

    /// Resizes the square to `side` pixels and clears it.
    void resize(int side);
    void clear();
    /// Multiplies all light by `kept`, 0 ... 1.
    void fade(double kept);
    /// Adds a line between two field positions, or a dot. `energy` is that of a white beam, scaled
    /// by the components of the colour 0xRRGGBB.
    void add(const QPointF &from, const QPointF &to, std::uint32_t color, double energy);

    int side() const { return m_side; }
    const FieldSquare &field() const { return m_field; }
    int tilesPerSide() const { return m_tilesPerSide; }
    /// Whether there may be light on a tile.
    bool isLit(int tileX, int tileY) const { return m_lit[tileAt(tileX, tileY)] != 0; }
    /// Clears a tile.
    void darken(int tileX, int tileY);
    /// The pixels of a row, each to be multiplied by scale(). Rows and columns are padded to whole
    /// tiles.
    const Light *row(int y) const { return m_light.data() + rowSize() * std::size_t(y); }
    float scale() const { return static_cast<float>(m_scale); }
    /// Total energy, averaged over the three colours.
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
    double m_scale = 1; ///< makes fading cheap
    std::vector<Light> m_light;
    std::vector<std::uint8_t> m_lit; ///< by tile
};
