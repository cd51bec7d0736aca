#pragma once

#include "framefacts.h"
#include "hoststate.h"

#include <deque>
#include <optional>

/// Intervals between lit frames, in nanoseconds. Intervals with missed frames count only for the
/// mean.
struct Intervals
{
    int count = 0;
    double mean = 0;
    SharedTime shortest = 0;
    SharedTime median = 0;
    SharedTime longest = 0;
};

/// History of a zone: figures of all its frames, and the times of those in the last second. Times
/// are when frames were sent; a time before the previous one counts as equal to it.
class FrameHistory
{
public:
    void add(SharedTime sentAt, const FrameFacts &facts, std::uint64_t missed);

    std::uint64_t frames() const { return m_frames; }
    std::uint64_t missed() const { return m_missed; }
    /// Of the last frame.
    const FrameFacts &facts() const { return m_facts; }
    /// When the last frame was sent.
    std::optional<SharedTime> lastSent() const { return m_last; }
    /// Frames sent within the second before `now`.
    int framesInLastSecond(SharedTime now) const;
    /// Intervals within the second before `now`.
    Intervals litIntervals(SharedTime now) const;
    /// Frames per second over the whole time, excluding pauses.
    double framesPerSecond() const;

    /// A longer interval is a pause, not a slow frame.
    static constexpr SharedTime shortestPause = 500'000'000;

private:
    struct Sent
    {
        SharedTime at;
        bool isLit;
        bool isContinued; ///< no pause before it
        std::uint64_t missed; ///< before it
    };

    std::uint64_t m_frames = 0;
    std::uint64_t m_missed = 0;
    FrameFacts m_facts;
    std::optional<SharedTime> m_last;
    std::deque<Sent> m_lastSecond;
    std::uint64_t m_intervals = 0; ///< between frames, without the pauses
    SharedTime m_busy = 0; ///< the sum of the intervals
};
