#pragma once

#include "hoststate.h"

#include <span>
#include <vector>

/// Stores a frame of a zone. Returns false for a zone that the host does not have or for more than
/// ldbMaxPoints points. Never blocks, never allocates, makes no system calls. One thread of one
/// process at a time.
bool writeFrame(
    SharedMemory &memory, std::int32_t zone, std::span<const LdbPoint> points, SharedTime sentAt);

/// A frame as the host reads it from shared memory. Coordinates, colours and flags are unchecked.
struct Frame
{
    std::uint64_t missed = 0; ///< frames lost since the previous one taken
    SharedTime sentAt = 0;
    std::vector<LdbPoint> points; ///< at most ldbMaxPoints
};

/// Reads the frames of one zone, each once and in order, and counts those that were overwritten
/// before they were read. Frames are always complete and in range, even if the memory is corrupt.
/// One reader per zone.
class FrameReader
{
public:
    /// Starts after the newest frame; earlier ones are skipped. The ring must outlive the reader.
    explicit FrameReader(ZoneRing &ring);

    /// Reads the oldest unread frame, reusing the storage of `frame`. False if there is none.
    bool take(Frame &frame);

private:
    bool copy(std::uint64_t number, Frame &frame);
    bool copy(const FrameSlot &slot, Frame &frame);

    ZoneRing *m_ring;
    std::uint64_t m_last; ///< number of the last frame examined
    std::uint64_t m_sent; ///< `sent` of the last frame taken
};
