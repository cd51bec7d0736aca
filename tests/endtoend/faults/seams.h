#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <type_traits>

// The scripted libraries that the running program loads in place of the host's, of winmm and of
// XInput share this record with the test, in a file that both map.

/// The environment variable with the path of that file.
inline constexpr char seamsVariable[] = "FAULTS_SEAMS";

/// A call of the host's library that can be made to block.
enum class HostCall : std::int32_t { None, SendFrame, Ready, ZoneCount, SwitchOutput };

inline constexpr std::int32_t watchedZones = 8;

/// All zeros is valid.
struct Seams
{
    // The host's script.
    std::atomic<std::int32_t> ready; ///< the answer of ldbBeyondExeReady
    std::atomic<std::int32_t> build;
    std::atomic<std::int32_t> zones;
    std::atomic<HostCall> blocks; ///< the call that blocks next, once; it resets this on returning
    std::atomic<std::int32_t> blockTime; ///< in ms
    std::atomic<bool> isBlocked; ///< inside that call now

    // The host's record.
    std::atomic<std::int32_t> framesSent;
    std::atomic<std::int32_t> badFrames; ///< with a count, zone or pointer that no caller may pass
    std::atomic<bool> outputOn;
    std::array<std::atomic<std::int32_t>, watchedZones> points; ///< of the last frame of each zone

    // MIDI.
    std::atomic<std::int32_t> midiDevices;
    std::atomic<std::int32_t> messagesPerSecond; ///< from each device that is started
    std::atomic<std::int64_t> messagesSent;

    // Gamepads: a bit for each user index that is connected, and where their sticks are.
    std::atomic<std::uint32_t> pads;
    std::atomic<std::int16_t> sticks;
    std::atomic<std::int32_t> padReads;
};
static_assert(std::is_standard_layout_v<Seams>);

/// The record of this process, mapped at the first call. Aborts if there is none. Any thread.
Seams &seams();
