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
    T read() const { return load(std::memory_order_acquire); }
    void write(T value) { std::atomic_ref(m_value).store(value, std::memory_order_release); }

    /// As read and write, and all of these happen in one order that everybody sees: of two who
    /// write one number and then read the other's, at least one sees what the other wrote.
    T readInOrder() const { return load(std::memory_order_seq_cst); }
    void writeInOrder(T value) { std::atomic_ref(m_value).store(value, std::memory_order_seq_cst); }

    /// Adds one and returns the sum; of several who do so at once each gets another one.
    T increment() { return std::atomic_ref(m_value).fetch_add(1, std::memory_order_acq_rel) + 1; }

private:
    T load(std::memory_order order) const
    {
        return std::atomic_ref(const_cast<T &>(m_value)).load(order);
    }

    T m_value;
    static_assert(std::atomic_ref<T>::is_always_lock_free);
};

/// Marks the memory as ours, written last by a starting host.
inline constexpr std::uint64_t memoryMagic = 0x4152'4845'5259'4c52; // "RLYREHRA"
/// Counts up whenever anything below changes.
inline constexpr std::uint32_t interfaceVersion = 3;
/// The most zones that a rehearsal host offers.
inline constexpr std::int32_t maxZones = 8;
/// The frames that a zone remembers: at one frame every 9 ms the host may be late by 144 ms
/// before it misses one.
inline constexpr std::uint64_t framesPerZone = 16;
/// The calls that are remembered. An operator makes a few in a minute.
inline constexpr std::uint64_t rememberedCalls = 64;

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

/// What the game asks of the host, apart from showing frames.
enum class GameCall : std::uint32_t {
    EnableOutput = 1,
    DisableOutput,
    OpenSession,
    CloseSession,
};

/// One remembered call. Its number is 0 while it is being written.
struct CallSlot
{
    Shared<std::uint64_t> number; ///< counts the calls from 1
    Shared<std::int64_t> at; ///< SharedTime
    Shared<std::uint64_t> process; ///< id of the game's process
    Shared<GameCall> call;
};

/// The last calls of the game: call n is in slot n modulo rememberedCalls. The game alone writes
/// it, from any of its threads.
struct CallRing
{
    Shared<std::uint64_t> newest; ///< number of the last call that was begun, 0 = none yet
    std::array<CallSlot, rememberedCalls> calls;

    CallSlot &slotOf(std::uint64_t number) { return calls[number % rememberedCalls]; }
};

/// One remembered frame. Its number is 0 while it is being written.
struct FrameSlot
{
    Shared<std::uint64_t> number; ///< its place in the zone's ring
    Shared<std::uint64_t> sent; ///< counts the zone's frames from 1
    Shared<std::int64_t> sentAt; ///< SharedTime
    Shared<std::uint32_t> pointCount; ///< 0 ... ldbMaxPoints
    std::array<LdbPoint, ldbMaxPoints> points;
};

/// The last frames of one zone: frame n lies in slot n modulo framesPerZone. The game alone writes
/// it, and only `reading` is the host's.
///
/// The points are copied at full speed and by one side at a time: the host says which frame it
/// copies, and the game passes over the slot of that one, and over its number.
struct ZoneRing
{
    Shared<std::uint64_t> newest; ///< number of the last complete frame, 0 = none yet
    Shared<std::uint64_t> reading; ///< number of the frame that the host is copying, 0 = none
    std::array<FrameSlot, framesPerZone> frames;

    FrameSlot &slotOf(std::uint64_t number) { return frames[number % framesPerZone]; }
    bool isReading(const FrameSlot &slot)
    {
        const std::uint64_t number = reading.readInOrder();
        return number != 0 && &slotOf(number) == &slot;
    }
};

/// All of it. Its zeroed state is valid and says that there is no host.
struct SharedMemory
{
    HostHeader header;
    CallRing calls;
    std::array<ZoneRing, maxZones> zones;
};
static_assert(std::is_trivially_default_constructible_v<
                  SharedMemory> && std::is_standard_layout_v<SharedMemory>);
