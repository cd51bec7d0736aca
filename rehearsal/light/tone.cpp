#include "tone.h"

#include <cmath>

namespace {

constexpr double screenGamma = 2.2;
/// Light below this level is lost in the ambient light of a dark room.
constexpr double roomLight = 0.0005;

} // namespace

Tone::Tone()
{
    for (std::uint32_t i = 0; i < m_bytes.size(); ++i) {
        const double light = double(std::bit_cast<float>(firstBits + (i << shift))) - roomLight;
        const double shown = light > 0 ? 1 - std::exp(-1.6 * light) : 0;
        m_bytes[i] = static_cast<std::uint8_t>(std::lround(255 * std::pow(shown, 1 / screenGamma)));
    }
}
