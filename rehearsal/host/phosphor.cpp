#include "phosphor.h"

#include <algorithm>
#include <cmath>

namespace {

/// Seconds after which half of the light is left.
constexpr double halfLife = 0.030;

/// Fades one row of `count` colour values to kept/256 and lays the light over it. Returns whether
/// anything older is brighter than the light. In bytes throughout, so that the compiler takes many
/// at a time.
bool fadeRow(std::uint8_t *shown, const std::uint16_t *light, int count, std::uint8_t kept)
{
    std::uint8_t differs = 0;
    for (int i = 0; i < count; ++i) {
        const auto fresh = static_cast<std::uint8_t>(light[i] >> 8U);
        const auto old =
            static_cast<std::uint8_t>(static_cast<std::uint16_t>(shown[i] * kept) >> 8U);
        shown[i] = std::max(fresh, old);
        differs = static_cast<std::uint8_t>(differs | (shown[i] ^ fresh));
    }
    return differs != 0;
}

} // namespace

void Phosphor::resize(int side)
{
    m_picture = QImage(side, side, QImage::Format_RGB32);
    clear();
}

void Phosphor::clear()
{
    m_picture.fill(Qt::black);
}

bool Phosphor::show(const Exposure &exposure, std::chrono::duration<double> elapsed)
{
    static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the order of the colours in a pixel");
    Q_ASSERT(exposure.side() == m_picture.width());
    const double share = std::exp2(-std::max(elapsed.count(), 0.0) / halfLife);
    const auto kept = static_cast<std::uint8_t>(share * 255);
    bool fades = false;
    for (int y = 0; y < m_picture.height(); ++y)
        fades |= fadeRow(m_picture.scanLine(y), exposure.row(y), 4 * exposure.side(), kept);
    return fades;
}
