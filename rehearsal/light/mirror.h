#pragma once

/// One scanner mirror: a damped second-order system with a limited slew rate. Positions are in
/// field units, times in seconds.
class Mirror
{
public:
    /// Typical of a well-tuned galvanometer: 4.6 % overshoot on a step.
    static constexpr double damping = 0.7;
    /// The -3 dB bandwidth in hertz, as in data sheets.
    static constexpr double bandwidth = 2400;
    /// Field units per second: crosses the whole field in a quarter of a millisecond.
    static constexpr double slewRate = 2.5e8;

    /// Sets the duration of one step.
    void setStep(double seconds);
    /// Places the mirror at rest at a position.
    void rest(double place);
    /// Simulates one step toward a constant target; returns the mirror's new position.
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
