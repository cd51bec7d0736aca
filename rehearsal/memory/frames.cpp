#include "frames.h"

#include <bit>
#include <cstring>

namespace {

using PointWords = std::array<std::uint32_t, wordsPerPoint>;

/// No writer is ahead by more; a number that is says nothing about frames.
constexpr std::uint64_t believableLead = 1'000'000;

} // namespace

bool writeFrame(
    SharedMemory &memory, std::int32_t zone, std::span<const LdbPoint> points, SharedTime sentAt)
{
    if (zone < 0 || zone >= hostZoneCount(memory) || points.size() > std::size_t(ldbMaxPoints))
        return false;
    ZoneRing &ring = memory.zones[std::size_t(zone)];
    const std::uint64_t number = ring.newest.read() + 1;
    FrameSlot &slot = ring.slotOf(number);
    slot.number.write(0);
    slot.sentAt.write(sentAt);
    slot.pointCount.write(static_cast<std::uint32_t>(points.size()));
    const std::span<const std::byte> bytes = std::as_bytes(points);
    for (std::size_t i = 0; i < points.size() * wordsPerPoint; ++i) {
        std::uint32_t word = 0;
        std::memcpy(&word, &bytes[i * sizeof word], sizeof word);
        slot.words[i].write(word);
    }
    slot.number.write(number);
    ring.newest.write(number);
    return true;
}

FrameReader::FrameReader(const ZoneRing &ring)
    : m_ring(&ring)
    , m_last(ring.newest.read())
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
    if (lead > framesPerZone) {
        m_missed += lead - framesPerZone;
        m_last = newest - framesPerZone;
    }
    while (m_last != newest) {
        ++m_last;
        if (copy(m_last, frame)) {
            frame.missed = m_missed;
            m_missed = 0;
            return true;
        }
        ++m_missed;
    }
    return false;
}

bool FrameReader::copy(std::uint64_t number, Frame &frame) const
{
    const FrameSlot &slot = m_ring->slotOf(number);
    if (number == 0 || slot.number.read() != number)
        return false;
    const std::uint32_t count = slot.pointCount.read();
    if (count > std::uint32_t(ldbMaxPoints))
        return false;
    frame.sentAt = slot.sentAt.read();
    frame.points.resize(count);
    auto word = slot.words.begin();
    for (LdbPoint &point : frame.points) {
        PointWords words;
        for (std::uint32_t &value : words)
            value = (word++)->read();
        point = std::bit_cast<LdbPoint>(words);
    }
    return slot.number.read() == number;
}
