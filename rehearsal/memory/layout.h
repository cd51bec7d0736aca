#pragma once

#include "ldb.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

// What lies in the memory that the rehearsal host and the library in the game share. It is one
// file, mapped by both, so that its content means the same to two programs built apart.

/// A number in shared memory: plain in layout, atomic in use, free of locks. A reader that sees a
/// written value sees also what was written before it.
template <class T>
class Shared
{
public:
    T read() const
    {
        return std::atomic_ref(const_cast<T &>(m_value)).load(std::memory_order_acquire);
    }
    void write(T value) { std::atomic_ref(m_value).store(value, std::memory_order_release); }

private:
    T m_value;
    static_assert(std::atomic_ref<T>::is_always_lock_free);
};

/// Marks the memory as ours, written last by a starting host.
inline constexpr std::uint64_t memoryMagic = 0x4152'4845'5259'4c52; // "RLYREHRA"
/// Counts up whenever anything below changes.
inline constexpr std::uint32_t interfaceVersion = 1;
/// The most zones that a rehearsal host offers.
inline constexpr std::int32_t maxZones = 8;
/// The frames that a zone remembers: at one frame every 9 ms the host may be late by 144 ms
/// before it misses one.
inline constexpr std::uint64_t framesPerZone = 16;
inline constexpr std::size_t wordsPerPoint = sizeof(LdbPoint) / sizeof(std::uint32_t);

/// What the host says of itself. The host alone writes it, but for `outputOn`.
struct HostHeader
{
    Shared<std::uint64_t> magic; ///< memoryMagic
    Shared<std::uint32_t> version; ///< interfaceVersion
    Shared<std::int32_t> build; ///< the build number that the host gives out
    Shared<std::int32_t> zoneCount; ///< 0 ... maxZones
    Shared<std::uint32_t> ready; ///< 1 unless the host plays one that is still starting
    Shared<std::uint32_t> outputOn; ///< 1 while laser output is enabled; the game switches it
    Shared<std::uint32_t> run; ///< counts the hosts that started in this memory
    Shared<std::int64_t> heartbeat; ///< SharedTime of the last sign of life, 0 = gone
};

/// One remembered frame. Its number is 0 while it is being written, so that a reader that finds
/// the same number before and after copying has copied one whole frame.
struct FrameSlot
{
    Shared<std::uint64_t> number; ///< counted from 1 in each zone
    Shared<std::int64_t> sentAt; ///< SharedTime
    Shared<std::uint32_t> pointCount; ///< 0 ... ldbMaxPoints
    std::array<Shared<std::uint32_t>, std::size_t(ldbMaxPoints) * wordsPerPoint> words;
};

/// The last frames of one zone: frame n lies in slot n modulo framesPerZone. The game alone writes
/// it.
struct ZoneRing
{
    Shared<std::uint64_t> newest; ///< number of the last frame that is complete, 0 = none yet
    std::array<FrameSlot, framesPerZone> frames;

    FrameSlot &slotOf(std::uint64_t number) { return frames[number % framesPerZone]; }
    const FrameSlot &slotOf(std::uint64_t number) const { return frames[number % framesPerZone]; }
};

/// All of it. Its zeroed state is valid and says that there is no host.
struct SharedMemory
{
    HostHeader header;
    std::array<ZoneRing, maxZones> zones;
};
static_assert(std::is_trivially_default_constructible_v<
                  SharedMemory> && std::is_standard_layout_v<SharedMemory>);
