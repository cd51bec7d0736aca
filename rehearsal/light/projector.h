#pragma once

#include "scanner.h"

#include <deque>
#include <span>

/// A projector: it repeats the current frame and switches to the next one after the last point. An
/// empty frame blanks it at once, and it draws nothing while output is disabled. Times are seconds
/// on one clock.
class Projector
{
public:
    void setSettings(const ScannerSettings &settings) { m_scanner.setSettings(settings); }
    const ScannerSettings &settings() const { return m_scanner.settings(); }
    void setOutputOn(bool on);

    /// Queues a frame; frames must come in the order of `sentAt`.
    void show(std::span<const LdbPoint> points, double sentAt);
    /// Replaces the current and all queued frames; starts with the first point.
    void showAtOnce(std::span<const LdbPoint> points);
    /// Draws up to a time and appends the lit pieces of the beam's path. After a long pause only
    /// the last `longestRun` seconds are drawn.
    void run(double until, std::vector<BeamPiece> &way);

    /// Whether anything is drawn or may soon be.
    bool isLit() const;
    /// Duration of one pass through the current frame in seconds; 0 without a frame.
    double passSeconds() const;
    /// Index of the next point to draw in the current frame.
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
    double m_now = 0; ///< time up to which the beam has been drawn
    std::deque<TimedFrame> m_waiting;
    std::vector<LdbPoint> m_frame;
    std::size_t m_next = 0;
};
