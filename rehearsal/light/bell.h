#pragma once

#include <algorithm>
#include <array>
#include <cmath>

/// Lookup table of a Gaussian bell curve and its integral, in steps of 1/256 of a standard
/// deviation.
class Bell
{
public:
    /// Where the curve ends, in widths (standard deviations).
    static constexpr double reach = 3.0;

    Bell()
    {
        for (std::size_t i = 0; i < m_height.size(); ++i) {
            const double x = (double(i) + 0.5) / stepsPerWidth;
            m_height[i] = static_cast<float>(std::exp(-x * x / 2));
            m_area[i] = static_cast<float>(std::erf(x / std::sqrt(2.0)) / 2);
        }
        m_height.back() = 0;
        m_area.back() = 0.5F;
    }

    /// 1 at the centre, 0 beyond `reach`.
    float height(float x) const { return m_height[index(std::abs(x))]; }
    /// Integral from the centre to x: -0.5 ... 0.5.
    float area(float x) const { return std::copysign(m_area[index(std::abs(x))], x); }

private:
    static constexpr int stepsPerWidth = 256;
    static constexpr auto last = std::size_t(reach * stepsPerWidth);

    static std::size_t index(float x)
    {
        return static_cast<std::size_t>(std::min(x * stepsPerWidth, float(last)));
    }

    std::array<float, last + 1> m_height;
    std::array<float, last + 1> m_area;
};
