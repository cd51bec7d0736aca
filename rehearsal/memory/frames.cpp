#include "frames.h"

#include <algorithm>

namespace {

/// A frame number further ahead than this is corrupt.
constexpr std::uint64_t believableLead = 1'000'000;

/// The most frames that a host reads while none is added: the rest of those that it knew of, then
/// those that it finds.
constexpr std::uint64_t mostReadInTurn = 2 * framesPerZone;

/// The slot for the next frame; `number` skips a slot that the host is copying. A host that reads
/// as fast as this looks may be one slot ahead each time, but not for ever. Null if it is, as only
/// a faulty host can be.
FrameSlot *claimSlot(ZoneRing &ring, std::uint64_t &number)
{
    for (const std::uint64_t last = number + mostReadInTurn + 1; number != last; ++number) {
        FrameSlot &slot = ring.slotOf(number);
        if (number == 0 || ring.isReading(slot))
            continue;
        slot.number.writeInOrder(0);
        if (!ring.isReading(slot))
            return &slot;
    }
    return nullptr;
}

} // namespace

bool writeFrame(
    SharedMemory &memory, std::int32_t zone, std::span<const LdbPoint> points, SharedTime sentAt)
{
    if (zone < 0 || zone >= hostZoneCount(memory) || points.size() > std::size_t(ldbMaxPoints))
        return false;
    ZoneRing &ring = memory.zones[std::size_t(zone)];
    const std::uint64_t newest = ring.newest.read();
    std::uint64_t number = newest + 1;
    FrameSlot *slot = claimSlot(ring, number);
    if (!slot)
        return false;
    slot->sent.write(ring.slotOf(newest).sent.read() + 1);
    slot->sentAt.write(sentAt);
    slot->pointCount.write(static_cast<std::uint32_t>(points.size()));
    std::copy_n(points.data(), points.size(), slot->points.data());
    slot->number.write(number);
    ring.newest.write(number);
    return true;
}

FrameReader::FrameReader(ZoneRing &ring)
    : m_ring(&ring)
    , m_last(ring.newest.read())
    , m_sent(ring.slotOf(m_last).sent.read())
{
}

bool FrameReader::take(Frame &frame)
{
    const std::uint64_t newest = m_ring->newest.read();
    const std::uint64_t lead = newest - m_last;
    if (lead > believableLead) {
        m_last = newest;
        return false;
    }
    if (lead > framesPerZone)
        m_last = newest - framesPerZone;
    while (m_last != newest) {
        if (copy(++m_last, frame))
            return true;
    }
    return false;
}

bool FrameReader::copy(std::uint64_t number, Frame &frame)
{
    const FrameSlot &slot = m_ring->slotOf(number);
    m_ring->reading.writeInOrder(number);
    const bool isWhole = number != 0 && slot.number.readInOrder() == number && copy(slot, frame);
    m_ring->reading.write(0);
    return isWhole;
}

bool FrameReader::copy(const FrameSlot &slot, Frame &frame)
{
    const std::uint32_t count = slot.pointCount.read();
    if (count > std::uint32_t(ldbMaxPoints))
        return false;
    const std::uint64_t sent = slot.sent.read();
    const std::uint64_t missed = sent - m_sent - 1;
    frame.missed = missed <= believableLead ? missed : 0;
    m_sent = sent;
    frame.sentAt = slot.sentAt.read();
    frame.points.assign(slot.points.begin(), slot.points.begin() + count);
    return true;
}
