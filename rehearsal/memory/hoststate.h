#pragma once

#include "layout.h"

#include <chrono>
#include <cstdint>

/// Nanoseconds on the machine's steady clock, which all processes share.
using SharedTime = std::int64_t;
SharedTime sharedNow();

/// Interval between a host's heartbeats.
inline constexpr std::chrono::milliseconds heartbeatInterval{100};
/// A host whose last heartbeat is older counts as gone, whether killed or hung. The game polls once
/// a second, so it shows the loss within two. A shorter limit would drop a live host on a busy
/// machine.
inline constexpr std::chrono::milliseconds heartbeatLimit{1000};

/// Properties of a host that the game can query.
struct HostInfo
{
    std::int32_t build = 1700;
    std::int32_t zoneCount = 1; ///< 0 ... maxZones
    bool ready = true;
};

// By the host.

/// Initialises the memory for a host that has just started, with output disabled, whatever it held
/// before.
void openHost(SharedMemory &memory, const HostInfo &info, SharedTime now);
/// Updates the properties of a running host.
void describeHost(SharedMemory &memory, const HostInfo &info);
/// Records a heartbeat.
void beat(SharedMemory &memory, SharedTime now);
/// Marks the host as gone at once, without waiting for its heartbeat to expire.
void closeHost(SharedMemory &memory);

// By the game. Results are in range even if the memory is corrupt.

/// Whether a host of this interface version is there and its heartbeat has not expired.
bool isHostAlive(const SharedMemory &memory, SharedTime now);
/// Whether the host reports that it is ready. Only meaningful if the host is alive.
bool isHostReady(const SharedMemory &memory);
/// Changes with every start of a host.
std::uint32_t hostRun(const SharedMemory &memory);
std::int32_t hostBuild(const SharedMemory &memory);
/// 0 ... maxZones; a count out of range reads as 0.
std::int32_t hostZoneCount(const SharedMemory &memory);

// By both.

void setOutput(SharedMemory &memory, bool on);
bool isOutputOn(const SharedMemory &memory);
