#pragma once

#include "layout.h"

#include <chrono>
#include <cstdint>

/// Nanoseconds of the machine's steady clock, which is the same in every process.
using SharedTime = std::int64_t;
SharedTime sharedNow();

/// How often a host gives a sign of life.
inline constexpr std::chrono::milliseconds heartbeatInterval{100};
/// A host whose last sign of life is older counts as gone, be it killed or hung. The game, which
/// asks once a second, then shows it within two. Shorter, and a host on a busy machine would seem
/// gone in the middle of a rehearsal.
inline constexpr std::chrono::milliseconds heartbeatLimit{1000};

/// What a host tells the game about itself.
struct HostInfo
{
    std::int32_t build = 1700;
    std::int32_t zoneCount = 1; ///< 0 ... maxZones
    bool ready = true;
};

// By the host.

/// Makes the memory that of a host which has just started, with output disabled, whatever was in
/// it before.
void openHost(SharedMemory &memory, const HostInfo &info, SharedTime now);
/// Changes what a host tells about itself while it runs.
void describeHost(SharedMemory &memory, const HostInfo &info);
/// A sign of life.
void beat(SharedMemory &memory, SharedTime now);
/// Takes the leave at once, so that nobody waits for the heartbeat to grow old.
void closeHost(SharedMemory &memory);

// By the game. Whatever the memory holds, the answers are in their ranges.

/// Whether a host of this interface version is there and has given a sign of life of late.
bool isHostAlive(const SharedMemory &memory, SharedTime now);
/// Whether the host says that it is ready; asked of one that is alive.
bool isHostReady(const SharedMemory &memory);
/// Another number after every start of a host.
std::uint32_t hostRun(const SharedMemory &memory);
std::int32_t hostBuild(const SharedMemory &memory);
/// 0 ... maxZones; a count out of range counts as none.
std::int32_t hostZoneCount(const SharedMemory &memory);

// By both.

void setOutput(SharedMemory &memory, bool on);
bool isOutputOn(const SharedMemory &memory);
