#pragma once

/// One scanner mirror: it follows its target with the lag of a damped second-order system, and no
/// faster than its slew rate. Places are field units, times seconds.
class Mirror
{
public:
    /// Of a well tuned galvanometer: a step overshoots by 4.6 %.
    static constexpr double damping = 0.7;
    /// Hertz at which it follows with 1/sqrt(2) of the amplitude, as data sheets give it.
    static constexpr double bandwidth = 2400;
    /// Field units per second: the whole field in a quarter of a millisecond.
    static constexpr double slewRate = 2.5e8;

    /// Prepares moves that take `seconds` each.
    void setStep(double seconds);
    /// Puts the mirror to rest at a place.
    void rest(double place);
    /// Lets one step pass with the target unchanged; returns where the mirror is then.
    double follow(double target);

    double place() const { return m_place; }

private:
    double m_place = 0;
    double m_speed = 0;
    // The exact solution over one step: distance to the target and speed afterwards, of each
    // before.
    double m_placeOfPlace = 1;
    double m_placeOfSpeed = 0;
    double m_speedOfPlace = 0;
    double m_speedOfSpeed = 1;
    double m_farthest = 0; ///< that the slew rate lets it go in a step
};
