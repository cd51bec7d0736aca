#pragma once

#include "ldb.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

// Layout of the memory shared by the rehearsal host and the library in the game: one file, mapped
// by both. The types have a fixed layout, because the two programs are built separately.

/// A number in shared memory: plain in layout, lock-free atomic in use, with acquire and release
/// ordering.
template <class T>
class Shared
{
public:
    T read() const { return load(std::memory_order_acquire); }
    void write(T value) { std::atomic_ref(m_value).store(value, std::memory_order_release); }

    /// Sequentially consistent: if two processes each write one number and then read the other's,
    /// at least one of them sees the other's write.
    T readInOrder() const { return load(std::memory_order_seq_cst); }
    void writeInOrder(T value) { std::atomic_ref(m_value).store(value, std::memory_order_seq_cst); }

    /// Atomically adds one and returns the new value.
    T increment() { return std::atomic_ref(m_value).fetch_add(1, std::memory_order_acq_rel) + 1; }

private:
    T load(std::memory_order order) const
    {
        return std::atomic_ref(const_cast<T &>(m_value)).load(order);
    }

    T m_value;
    static_assert(std::atomic_ref<T>::is_always_lock_free);
};

/// Identifies the memory; a starting host writes it last.
inline constexpr std::uint64_t memoryMagic = 0x4152'4845'5259'4c52; // "RLYREHRA"
/// Incremented whenever anything below changes.
inline constexpr std::uint32_t interfaceVersion = 3;
/// The maximum number of zones of a rehearsal host.
inline constexpr std::int32_t maxZones = 8;
/// Frames kept per zone: at one frame every 9 ms the host can lag by 144 ms before it misses one.
inline constexpr std::uint64_t framesPerZone = 16;
/// Number of calls kept. An operator makes a few per minute.
inline constexpr std::uint64_t rememberedCalls = 64;

/// State of the host. Written by the host only, except for `outputOn`.
struct HostHeader
{
    Shared<std::uint64_t> magic; ///< memoryMagic
    Shared<std::uint32_t> version; ///< interfaceVersion
    Shared<std::int32_t> build; ///< the host's build number
    Shared<std::int32_t> zoneCount; ///< 0 ... maxZones
    Shared<std::uint32_t> ready; ///< 0 while the host pretends to be still starting
    Shared<std::uint32_t> outputOn; ///< 1 while laser output is enabled; the game switches it
    Shared<std::uint32_t> run; ///< number of host starts in this memory
    Shared<std::int64_t> heartbeat; ///< SharedTime of the last heartbeat, 0 = gone
};

/// The game's calls to the host, other than frames.
enum class GameCall : std::uint32_t {
    EnableOutput = 1,
    DisableOutput,
    OpenSession,
    CloseSession,
};

/// One stored call. Its number is 0 while it is being written.
struct CallSlot
{
    Shared<std::uint64_t> number; ///< counts the calls from 1
    Shared<std::int64_t> at; ///< SharedTime
    Shared<std::uint64_t> process; ///< id of the game's process
    Shared<GameCall> call;
};

/// The game's latest calls: call n is in slot n modulo rememberedCalls. Written by the game only,
/// from any thread.
struct CallRing
{
    Shared<std::uint64_t> newest; ///< number of the last call begun, 0 = none yet
    std::array<CallSlot, rememberedCalls> calls;

    CallSlot &slotOf(std::uint64_t number) { return calls[number % rememberedCalls]; }
};

/// One stored frame. Its number is 0 while it is being written.
struct FrameSlot
{
    Shared<std::uint64_t> number; ///< its sequence number in the zone's ring
    Shared<std::uint64_t> sent; ///< counts the zone's frames from 1
    Shared<std::int64_t> sentAt; ///< SharedTime
    Shared<std::uint32_t> pointCount; ///< 0 ... ldbMaxPoints
    std::array<LdbPoint, ldbMaxPoints> points;
};

/// The latest frames of one zone: frame n is in slot n modulo framesPerZone. Written by the game
/// only, except for `reading`.
///
/// Points are copied without atomics, so only one side may access a slot at a time: the host
/// announces the frame that it is copying, and the game skips that slot and its number.
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

/// The whole shared memory. All zeros is valid and means that there is no host.
struct SharedMemory
{
    HostHeader header;
    CallRing calls;
    std::array<ZoneRing, maxZones> zones;
};
static_assert(std::is_trivially_default_constructible_v<
                  SharedMemory> && std::is_standard_layout_v<SharedMemory>);
