#pragma once

#include "exposure.h"

#include <array>

/// The soft light around a beam, spread by dust, lens and eye: the exposure at a quarter of its
/// size, blurred. Only lit tiles cost time.
class Glow
{
public:
    /// Pixels along the side of a cell.
    static constexpr int cellSide = 4;
    static constexpr int cellsPerTile = Exposure::tileSide / cellSide;

    void resize(const Exposure &exposure);
    /// Computes the glow of an exposure, multiplied by `gain`.
    void spread(const Exposure &exposure, float gain);

    /// Whether glow may reach a tile.
    bool reaches(int tileX, int tileY) const { return isSet(m_reached, tileX, tileY); }
    /// The glow along a row of pixels of a tile, at the centres of its cells and of one more on
    /// each side; to be interpolated linearly.
    using Row = std::array<Light, cellsPerTile + 2>;
    Row row(int tileX, int y) const;

private:
    /// An extra cell at each edge, so that edge pixels have neighbours too.
    static constexpr int border = 1;

    std::size_t tileAt(int tileX, int tileY) const
    {
        return std::size_t(tileY) * std::size_t(m_tilesPerSide) + std::size_t(tileX);
    }
    bool isSet(const std::vector<std::uint8_t> &tiles, int tileX, int tileY) const
    {
        return (tiles[tileAt(tileX, tileY)] & 1) != 0;
    }
    Light *cell(std::vector<Light> &cells, int x, int y) const
    {
        return cells.data() + std::size_t(y + border) * m_rowSize + std::size_t(x + border);
    }
    const Light *cell(int x, int y) const
    {
        return m_blurred.data() + std::size_t(y + border) * m_rowSize + std::size_t(x + border);
    }
    void gather(const Exposure &exposure, int tileX, int tileY, float gain);
    void blurAcross(int tileX, int tileY);
    void blurDown(int tileX, int tileY);

    int m_tilesPerSide = 0;
    std::size_t m_rowSize = 0;
    std::vector<float> m_weights; ///< of the centre cell and those on one side of it
    std::vector<Light> m_cells;
    std::vector<Light> m_across;
    std::vector<Light> m_blurred;
    // By tile. Bit 0: the cells of this step may hold light. Bit 1: they might have before, and
    // must be cleared.
    std::vector<std::uint8_t> m_lit;
    std::vector<std::uint8_t> m_wide;
    std::vector<std::uint8_t> m_reached;
};
