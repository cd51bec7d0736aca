#include "mirror.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

/// Radians per second of the undamped mirror, from the bandwidth at half power.
double naturalFrequency()
{
    const double part = 1 - 2 * Mirror::damping * Mirror::damping;
    return 2 * std::numbers::pi * Mirror::bandwidth / std::sqrt(part + std::hypot(part, 1.0));
}

} // namespace

void Mirror::setStep(double seconds)
{
    const double natural = naturalFrequency();
    const double decay = damping * natural;
    const double ringing = natural * std::sqrt(1 - damping * damping);
    const double left = std::exp(-decay * seconds);
    const double cosine = left * std::cos(ringing * seconds);
    const double sine = left * std::sin(ringing * seconds) / ringing;
    m_placeOfPlace = cosine + decay * sine;
    m_placeOfSpeed = sine;
    m_speedOfPlace = -natural * natural * sine;
    m_speedOfSpeed = cosine - decay * sine;
    m_farthest = slewRate * seconds;
}

void Mirror::rest(double place)
{
    m_place = place;
    m_speed = 0;
}

double Mirror::follow(double target)
{
    const double distance = m_place - target;
    const double place = target + m_placeOfPlace * distance + m_placeOfSpeed * m_speed;
    const double speed = m_speedOfPlace * distance + m_speedOfSpeed * m_speed;
    m_place = std::clamp(place, m_place - m_farthest, m_place + m_farthest);
    m_speed = std::clamp(speed, -slewRate, slewRate);
    return m_place;
}
