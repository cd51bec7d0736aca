#pragma once

#include <cstdint>

/// The paddle's step per tick for the deflection of a stick (-32768 ... 32767) at a position of
/// the sensitivity slider: the further up the slider, the smaller the divisor. Truncates toward
/// zero. Divisors below 1, which no range of ours gives, stop the paddle.
constexpr int paddleInputFor(int deflection, int sliderMinimum, int sliderMaximum, int sliderValue)
{
    const std::int64_t divisor = std::int64_t{sliderMinimum} + sliderMaximum - sliderValue;
    return divisor < 1 ? 0 : static_cast<int>(deflection / divisor);
}
