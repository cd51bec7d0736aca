#pragma once

#include "beam.h"
#include "mirror.h"

#include <deque>
#include <vector>

/// Settings of a projector's scanner.
struct ScannerSettings
{
    static constexpr int slowestRate = 8000;
    static constexpr int fastestRate = 60000;
    static constexpr double longestColorDelay = 500e-6;

    /// Points per second, slowestRate ... fastestRate.
    int pointRate = 30000;
    /// Seconds by which colours are delayed to compensate for the lag of the mirrors;
    /// 0 ... longestColorDelay. No effect without mirrors.
    double colorDelay = 110e-6;
    /// False for points as sent: the beam reaches its target at once.
    bool hasMirrors = true;
    ColorOrder colorOrder = ColorOrder::RedGreenBlue;
    /// 1 for real time, less for slow motion; the lag is slowed too.
    double speed = 1;

    bool operator==(const ScannerSettings &) const = default;
};

/// Turns points into the beam's path, one point at a time.
///
/// As sent, the beam moves at constant speed from one lit point to the next in the colour of the
/// second, rests at a single lit point, and draws nothing on the way from or to a blanked point. As
/// drawn, each point is a target that the mirrors follow with their lag.
class Scanner
{
public:
    Scanner() { setSettings({}); }

    void setSettings(const ScannerSettings &settings);
    const ScannerSettings &settings() const { return m_settings; }
    /// Duration of one point in seconds.
    double pointSeconds() const { return m_pointSeconds; }

    /// Draws one point and appends the lit pieces of its path. `begin` must not be before the end
    /// of the previous point.
    void scan(const LdbPoint &point, double begin, std::vector<BeamPiece> &way);
    /// Blanks the beam and stops the mirrors where they are.
    void rest();

private:
    struct ColorChange
    {
        double time;
        std::uint32_t color;
    };

    void scanAsSent(const LdbPoint &point, double begin, std::vector<BeamPiece> &way);
    void scanAsDrawn(const LdbPoint &point, double begin, std::vector<BeamPiece> &way);
    std::uint32_t colorAt(double time);

    ScannerSettings m_settings;
    double m_pointSeconds = 0;
    int m_stepsPerPoint = 1;
    Mirror m_x;
    Mirror m_y;
    QPointF m_target; ///< of the last point with finite coordinates
    int m_litPoints = 0; ///< consecutive, up to now
    std::uint32_t m_lastColor = 0; ///< of the last point
    std::uint32_t m_color = 0; ///< currently emitted
    std::deque<ColorChange> m_changes; ///< pending
};
