#pragma once

#include "framefacts.h"
#include "hoststate.h"

#include <deque>
#include <optional>

/// Times between lit frames, in nanoseconds. Those with missed frames in between count for the mean
/// alone.
struct Intervals
{
    int count = 0;
    double mean = 0;
    SharedTime shortest = 0;
    SharedTime median = 0;
    SharedTime longest = 0;
};

/// What a zone has received: figures of all its frames, and the times of those of the last second.
/// Times are those at which frames were sent; one that goes back counts as the one before.
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
    /// Frames that were sent within the second before `now`.
    int framesInLastSecond(SharedTime now) const;
    /// Of the second before `now`.
    Intervals litIntervals(SharedTime now) const;
    /// Frames per second over the whole time, but for the pauses in which none came.
    double framesPerSecond() const;

    /// Nothing for so long is a pause, not a slow frame.
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
