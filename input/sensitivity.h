#pragma once

#include <cstdint>

/// The paddle's step per tick for a stick's deflection (-32768 ... 32767) at a position of the
/// sensitivity slider: the higher the slider, the smaller the divisor. Truncates toward zero. A
/// divisor below 1, which the form's slider never yields, stops the paddle.
constexpr int paddleInputFor(int deflection, int sliderMinimum, int sliderMaximum, int sliderValue)
{
    const std::int64_t divisor = std::int64_t{sliderMinimum} + sliderMaximum - sliderValue;
    return divisor < 1 ? 0 : static_cast<int>(deflection / divisor);
}
