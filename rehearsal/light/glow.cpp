#include "glow.h"

#include <algorithm>
#include <cmath>

namespace {

/// Radius of the glow, as a fraction of the side.
constexpr double reach = 1.0 / 32;

} // namespace

void Glow::resize(const Exposure &exposure)
{
    m_tilesPerSide = exposure.tilesPerSide();
    const std::size_t cells = std::size_t(m_tilesPerSide) * cellsPerTile + 2 * std::size_t(border);
    const std::size_t tiles = std::size_t(m_tilesPerSide) * std::size_t(m_tilesPerSide);
    m_rowSize = cells;
    for (std::vector<Light> *all : {&m_cells, &m_across, &m_blurred})
        all->assign(cells * cells, Light{});
    for (std::vector<std::uint8_t> *all : {&m_lit, &m_wide, &m_reached})
        all->assign(tiles, 0);

    const double cellsReached =
        std::clamp(exposure.side() * reach / cellSide, 1.0, double(cellsPerTile));
    m_weights.clear();
    double sum = 0;
    for (int i = 0; i < cellsReached; ++i) {
        // Falls off smoothly: screens brighten dim light so much that an edge would show.
        const double weight = std::pow(1 - i / cellsReached, 4);
        m_weights.push_back(static_cast<float>(weight));
        sum += weight * (i == 0 ? 1 : 2);
    }
    for (float &weight : m_weights)
        weight = static_cast<float>(weight / sum);
}

void Glow::spread(const Exposure &exposure, float gain)
{
    const int last = m_tilesPerSide - 1;
    // Updates each tile's flag and calls `act` where there is or was light.
    const auto step = [this, last](
                          std::vector<std::uint8_t> &tiles, const auto &hasLight, const auto &act) {
        for (int y = 0; y <= last; ++y) {
            for (int x = 0; x <= last; ++x) {
                std::uint8_t &tile = tiles[tileAt(x, y)];
                tile = static_cast<std::uint8_t>((tile & 1) << 1 | (hasLight(x, y) ? 1 : 0));
                if (tile != 0)
                    act(x, y);
            }
        }
    };
    step(
        m_lit, [&](int x, int y) { return exposure.isLit(x, y); },
        [&](int x, int y) { gather(exposure, x, y, gain); });
    step(
        m_wide,
        [&](int x, int y) {
            return isSet(m_lit, std::max(x - 1, 0), y) || isSet(m_lit, x, y)
                || isSet(m_lit, std::min(x + 1, last), y);
        },
        [this](int x, int y) { blurAcross(x, y); });
    step(
        m_reached,
        [&](int x, int y) {
            return isSet(m_wide, x, std::max(y - 1, 0)) || isSet(m_wide, x, y)
                || isSet(m_wide, x, std::min(y + 1, last));
        },
        [this](int x, int y) { blurDown(x, y); });
}

void Glow::gather(const Exposure &exposure, int tileX, int tileY, float gain)
{
    const float weight = gain * exposure.scale() / (cellSide * cellSide);
    for (int y = tileY * cellsPerTile; y < (tileY + 1) * cellsPerTile; ++y) {
        std::array<Light, cellsPerTile> sums{};
        for (int line = 0; line < cellSide; ++line) {
            const Light *pixel =
                exposure.row(y * cellSide + line) + std::ptrdiff_t(tileX) * Exposure::tileSide;
            for (std::size_t x = 0; x < Exposure::tileSide; ++x)
                sums[x / cellSide] += pixel[x];
        }
        Light *cells = cell(m_cells, tileX * cellsPerTile, y);
        for (std::size_t x = 0; x < sums.size(); ++x)
            cells[x] = sums[x] * weight;
    }
}

// Unlit tiles hold zeros, so the neighbours' flags do not matter. The blur reaches at most one tile
// and stops at the edges.
void Glow::blurAcross(int tileX, int tileY)
{
    const int last = m_tilesPerSide * cellsPerTile - 1;
    const int reached = static_cast<int>(m_weights.size()) - 1;
    for (int y = tileY * cellsPerTile; y < (tileY + 1) * cellsPerTile; ++y) {
        const Light *cells = cell(m_cells, 0, y);
        for (int x = tileX * cellsPerTile; x < (tileX + 1) * cellsPerTile; ++x) {
            Light sum{};
            for (int i = std::max(x - reached, 0); i <= std::min(x + reached, last); ++i)
                sum += cells[i] * m_weights[std::size_t(std::abs(i - x))];
            *cell(m_across, x, y) = sum;
        }
    }
}

void Glow::blurDown(int tileX, int tileY)
{
    const int last = m_tilesPerSide * cellsPerTile - 1;
    const int reached = static_cast<int>(m_weights.size()) - 1;
    for (int y = tileY * cellsPerTile; y < (tileY + 1) * cellsPerTile; ++y) {
        std::array<Light, cellsPerTile> sums{};
        for (int i = std::max(y - reached, 0); i <= std::min(y + reached, last); ++i) {
            const Light *cells = cell(m_across, tileX * cellsPerTile, i);
            const float weight = m_weights[std::size_t(std::abs(i - y))];
            for (std::size_t x = 0; x < sums.size(); ++x)
                sums[x] += cells[x] * weight;
        }
        std::copy(sums.begin(), sums.end(), cell(m_blurred, tileX * cellsPerTile, y));
    }
}

Glow::Row Glow::row(int tileX, int y) const
{
    const int fromMiddle = y + cellSide / 2; // from the centre of the cell row before the first
    const float down = (float(fromMiddle % cellSide) + 0.5F) / cellSide;
    const Light *above = cell(tileX * cellsPerTile - 1, fromMiddle / cellSide - 1);
    const Light *below = above + m_rowSize;
    Row cells;
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells[i] = above[i] + (below[i] - above[i]) * down;
    return cells;
}
