#pragma once

#include "light.h"

#include <array>
#include <bit>
#include <cstdint>

/// Tone mapping from linear light to screen colours: gamma brightens dim light, and bright light
/// saturates. 1 is well lit.
class Tone
{
public:
    Tone();
    /// The colour of any finite light, as a QImage RGB32 pixel.
    std::uint32_t operator()(Light light) const
    {
        light = light > darkest ? light : Light{} + darkest;
        light = light < brightest ? light : Light{} + brightest;
        // Equal steps in a float's bits are nearly equal steps of its logarithm.
        const auto step = (std::bit_cast<Bits>(light) - firstBits) >> shift;
        return 0xff000000 | std::uint32_t(m_bytes[step[2]]) << 16
            | std::uint32_t(m_bytes[step[1]]) << 8 | m_bytes[step[0]];
    }

    /// Less light is shown as black.
    static constexpr float darkest = 1.0F / 2048;
    static constexpr float brightest = 16;

private:
    using Bits = std::uint32_t __attribute__((vector_size(16)));
    static constexpr int shift = 15; // 256 steps for each doubling
    static constexpr std::uint32_t firstBits = std::bit_cast<std::uint32_t>(darkest);
    static constexpr std::uint32_t lastBits = std::bit_cast<std::uint32_t>(brightest);
    std::array<std::uint8_t, ((lastBits - firstBits) >> shift) + 1> m_bytes;
};
