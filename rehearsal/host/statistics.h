#pragma once

#include <QtGlobal>

#include <chrono>
#include <deque>

/// What came of frames, counted. Times are the host's own, never going back.
class Statistics
{
public:
    using Time = std::chrono::steady_clock::time_point;

    void add(Time arrived, qsizetype points, quint64 missed);

    quint64 frames() const { return m_frames; }
    quint64 missed() const { return m_missed; }
    /// Points of the last frame.
    qsizetype points() const { return m_points; }
    /// Frames that came within the last second.
    int framesInLastSecond(Time now);
    /// Frames per second over the whole time, but for the pauses in which none came.
    double framesPerSecond() const;

private:
    quint64 m_frames = 0;
    quint64 m_missed = 0;
    qsizetype m_points = 0;
    std::deque<Time> m_lastSecond;
    Time m_last; ///< when the last frame came
    quint64 m_intervals = 0; ///< between frames, without the pauses
    std::chrono::steady_clock::duration m_busy{}; ///< the sum of the intervals
};
