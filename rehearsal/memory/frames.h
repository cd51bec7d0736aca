#pragma once

#include "hoststate.h"

#include <span>
#include <vector>

/// Remembers a frame of a zone and returns whether it was taken: a zone that the host does not
/// have and more points than ldbMaxPoints are refused. Never waits, never allocates, calls nothing
/// of the system. One thread of one process at a time.
bool writeFrame(
    SharedMemory &memory, std::int32_t zone, std::span<const LdbPoint> points, SharedTime sentAt);

/// A frame as the host takes it from the memory. The coordinates, colours and flags are the
/// writer's and may be any.
struct Frame
{
    std::uint64_t missed = 0; ///< frames between the one taken before and this one
    SharedTime sentAt = 0;
    std::vector<LdbPoint> points; ///< at most ldbMaxPoints
};

/// Takes the frames of one zone, each once and in order, and notices those that were written over
/// before they could be taken. Whatever the memory holds, what it gives out is whole and in range.
/// A zone has one reader.
class FrameReader
{
public:
    /// Starts behind the newest frame: what was sent before is not for this reader. The ring must
    /// outlive it.
    explicit FrameReader(ZoneRing &ring);

    /// Takes the oldest frame that is left, into storage that is used again. False when there is
    /// none.
    bool take(Frame &frame);

private:
    bool copy(std::uint64_t number, Frame &frame);
    bool copy(const FrameSlot &slot, Frame &frame);

    ZoneRing *m_ring;
    std::uint64_t m_last; ///< number of the last frame that was looked at
    std::uint64_t m_sent; ///< the count in the last one that was taken
};
