#pragma once

#include "beam.h"
#include "mirror.h"

#include <deque>
#include <vector>

/// How a projector draws.
struct ScannerSettings
{
    static constexpr int slowestRate = 8000;
    static constexpr int fastestRate = 60000;
    static constexpr double longestColorDelay = 500e-6;

    /// Points per second, slowestRate ... fastestRate.
    int pointRate = 30000;
    /// Seconds by which colours come later than the points, as projectors set it to make up for the
    /// lag of their mirrors; 0 ... longestColorDelay. Without mirrors it has no effect.
    double colorDelay = 110e-6;
    /// False for points as they are sent: the beam is at once where it is to be.
    bool hasMirrors = true;
    ColorOrder colorOrder = ColorOrder::RedGreenBlue;
    /// 1 for the real pace, less for slow motion; the lag slows with it.
    double speed = 1;

    bool operator==(const ScannerSettings &) const = default;
};

/// Turns points into the way of the beam, one point after the other.
///
/// As sent, the beam moves evenly from one lit point to the next in the colour of the second, rests
/// at a point that is lit alone, and does nothing on its way from or to a blanked point. As drawn,
/// the mirrors are given one point after the other and follow as they can.
class Scanner
{
public:
    Scanner() { setSettings({}); }

    void setSettings(const ScannerSettings &settings);
    const ScannerSettings &settings() const { return m_settings; }
    /// Seconds that a point takes.
    double pointSeconds() const { return m_pointSeconds; }

    /// Draws one point, beginning at a time that is not before the end of the last one, and appends
    /// the lit pieces of its way.
    void scan(const LdbPoint &point, double begin, std::vector<BeamPiece> &way);
    /// Blanks the beam where it is; the mirrors come to rest.
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
    QPointF m_target; ///< of the last point that had finite coordinates
    int m_litPoints = 0; ///< in a row, up to now
    std::uint32_t m_lastColor = 0; ///< of the last point
    std::uint32_t m_color = 0; ///< that leaves the projector now
    std::deque<ColorChange> m_changes; ///< that have not come into effect yet
};
