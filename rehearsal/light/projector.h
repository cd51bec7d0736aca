#pragma once

#include "scanner.h"

#include <deque>
#include <span>

/// A projector: it repeats the frame that it has until the next one comes, which it takes up when
/// it has drawn the last point; an empty one turns it dark at once. It draws nothing while its
/// output is disabled. Times are seconds on one clock.
class Projector
{
public:
    void setSettings(const ScannerSettings &settings) { m_scanner.setSettings(settings); }
    const ScannerSettings &settings() const { return m_scanner.settings(); }
    void setOutputOn(bool on);

    /// Hands over a frame that was sent at a time; frames come in the order of their times.
    void show(std::span<const LdbPoint> points, double sentAt);
    /// Draws a frame from its first point on, in place of all that there is.
    void showAtOnce(std::span<const LdbPoint> points);
    /// Draws on up to a time and appends the lit pieces of the beam's way. After a long pause only
    /// the last `longestRun` seconds are drawn.
    void run(double until, std::vector<BeamPiece> &way);

    /// Whether something is or may soon be drawn.
    bool isLit() const;
    /// Seconds that one pass through the present frame takes; 0 without one.
    double passSeconds() const;
    /// The number of the point of the present frame that is drawn next.
    std::size_t nextPoint() const { return m_next; }

    static constexpr double longestRun = 0.1;

private:
    struct TimedFrame
    {
        double sentAt;
        std::vector<LdbPoint> points;
    };

    void takeFrame();

    Scanner m_scanner;
    bool m_outputOn = false;
    double m_now = 0; ///< up to when the beam has been drawn
    std::deque<TimedFrame> m_waiting;
    std::vector<LdbPoint> m_frame;
    std::size_t m_next = 0;
};
