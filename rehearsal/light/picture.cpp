#include "picture.h"

#include <algorithm>

namespace {

/// Tone mapping reference: light counts as well lit at this share of a white beam's power, averaged
/// over a millionth of the square. The borders of a rally are that bright.
constexpr double wellLit = 1.0e-4;
/// Share of the light that becomes glow.
constexpr float glowShare = 0.30F;
/// Share of the light above well lit that spills into the other colours.
constexpr float spill = 0.10F;

bool isDark(const Light &light)
{
    return std::max(std::max(light[0], light[1]), light[2]) < Tone::darkest;
}

} // namespace

void Picture::resize(const Exposure &exposure)
{
    if (m_image.width() == exposure.side())
        return;
    m_image = QImage(exposure.side(), exposure.side(), QImage::Format_RGB32);
    m_image.fill(Qt::black);
    m_glow.resize(exposure);
    const auto tiles = std::size_t(exposure.tilesPerSide());
    m_shown.assign(tiles * tiles, 0);
    m_gain = static_cast<float>(double(exposure.side()) * exposure.side() / 1e6 / wellLit);
}

bool Picture::develop(Exposure &exposure)
{
    static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the order of the colours in a pixel");
    resize(exposure);
    m_glow.spread(exposure, m_gain * glowShare);
    bool anyLit = false;
    std::size_t tile = 0;
    for (int y = 0; y < exposure.tilesPerSide(); ++y) {
        for (int x = 0; x < exposure.tilesPerSide(); ++x) {
            std::uint8_t &shown = m_shown[tile++];
            if (!m_glow.reaches(x, y) && shown == 0)
                continue;
            const bool isLit = developTile(exposure, x, y);
            if (!isLit && exposure.isLit(x, y))
                exposure.darken(x, y);
            shown = isLit;
            anyLit |= isLit;
        }
    }
    return anyLit;
}

bool Picture::developTile(const Exposure &exposure, int tileX, int tileY)
{
    constexpr int tileSide = Exposure::tileSide;
    const int left = tileX * tileSide;
    const int right = std::min(left + tileSide, exposure.side());
    const int bottom = std::min((tileY + 1) * tileSide, exposure.side());
    QRgb lit = 0;
    for (int y = tileY * tileSide; y < bottom; ++y) {
        auto *shown = reinterpret_cast<QRgb *>(m_image.scanLine(y));
        lit |= developRow(exposure, tileX, y, std::span(shown + left, shown + right));
    }
    return (lit & 0xffffff) != 0;
}

/// Returns the bitwise OR of the row's colours.
QRgb Picture::developRow(const Exposure &exposure, int tileX, int y, std::span<QRgb> shown)
{
    constexpr int cellSide = Glow::cellSide;
    const float scale = exposure.scale() * m_gain;
    const Light *beam = exposure.row(y) + std::ptrdiff_t(tileX) * Exposure::tileSide;
    const Glow::Row cells = m_glow.row(tileX, y);
    const int width = static_cast<int>(shown.size());
    QRgb lit = 0;
    // From the centre of one cell to the next; the first cell is left of the tile.
    for (std::size_t i = 0; i + 1 < cells.size(); ++i) {
        const int middle = static_cast<int>(i) * cellSide - cellSide / 2;
        const int first = std::max(middle, 0);
        const int end = std::min(middle + cellSide, width);
        // Without glow there is no beam either.
        if (isDark(cells[i]) && isDark(cells[i + 1])) {
            std::fill(shown.data() + first, shown.data() + std::max(end, first), qRgb(0, 0, 0));
            continue;
        }
        const Light step = (cells[i + 1] - cells[i]) / float(cellSide);
        Light glow = cells[i] + step * (float(first - middle) + 0.5F);
        for (int x = first; x < end; ++x, glow += step) {
            Light light = beam[x] * scale + glow;
            const float more = std::max(std::max(light[0], light[1]), light[2]) - 1;
            if (more > 0)
                light += more * spill;
            shown[std::size_t(x)] = m_tone(light);
            lit |= shown[std::size_t(x)];
        }
    }
    return lit;
}
