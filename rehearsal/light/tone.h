#pragma once

#include "light.h"

#include <array>
#include <bit>
#include <cstdint>

/// From linear light to the colour that a screen shows it with: dim light is lifted as screens
/// expect it, and bright light saturates. 1 is well lit.
class Tone
{
public:
    Tone();
    /// The colour of light of any finite amount, as QImage keeps it in RGB32.
    std::uint32_t operator()(Light light) const
    {
        light = light > darkest ? light : Light{} + darkest;
        light = light < brightest ? light : Light{} + brightest;
        // Equal steps of a float's bits are even steps of its logarithm, near enough.
        const auto step = (std::bit_cast<Bits>(light) - firstBits) >> shift;
        return 0xff000000 | std::uint32_t(m_bytes[step[2]]) << 16
            | std::uint32_t(m_bytes[step[1]]) << 8 | m_bytes[step[0]];
    }

    /// Less light shows as black.
    static constexpr float darkest = 1.0F / 2048;
    static constexpr float brightest = 16;

private:
    using Bits = std::uint32_t __attribute__((vector_size(16)));
    static constexpr int shift = 15; // 256 steps for each doubling
    static constexpr std::uint32_t firstBits = std::bit_cast<std::uint32_t>(darkest);
    static constexpr std::uint32_t lastBits = std::bit_cast<std::uint32_t>(brightest);
    std::array<std::uint8_t, ((lastBits - firstBits) >> shift) + 1> m_bytes;
};
