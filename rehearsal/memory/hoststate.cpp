#include "hoststate.h"

SharedTime sharedNow()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

void openHost(SharedMemory &memory, const HostInfo &info, SharedTime now)
{
    HostHeader &header = memory.header;
    header.heartbeat.write(0);
    for (ZoneRing &ring : memory.zones)
        ring.reading.write(0); // the previous host may have been killed while copying
    header.version.write(interfaceVersion);
    describeHost(memory, info);
    header.outputOn.write(0);
    header.run.write(header.run.read() + 1);
    header.magic.write(memoryMagic);
    beat(memory, now);
}

void describeHost(SharedMemory &memory, const HostInfo &info)
{
    memory.header.build.write(info.build);
    memory.header.zoneCount.write(info.zoneCount);
    memory.header.ready.write(info.ready ? 1 : 0);
}

void beat(SharedMemory &memory, SharedTime now)
{
    memory.header.heartbeat.write(now);
}

void closeHost(SharedMemory &memory)
{
    memory.header.outputOn.write(0);
    memory.header.heartbeat.write(0);
}

bool isHostAlive(const SharedMemory &memory, SharedTime now)
{
    const HostHeader &header = memory.header;
    if (header.magic.read() != memoryMagic || header.version.read() != interfaceVersion)
        return false;
    const SharedTime last = header.heartbeat.read();
    if (last == 0)
        return false;
    // Unsigned, so that a corrupt time, or one from before the last boot, counts as expired. A beat
    // may be slightly later than `now`, which was read first.
    const std::uint64_t age = static_cast<std::uint64_t>(now) - static_cast<std::uint64_t>(last);
    constexpr std::uint64_t limit = std::chrono::nanoseconds(heartbeatLimit).count();
    return age + limit <= 2 * limit;
}

bool isHostReady(const SharedMemory &memory)
{
    return memory.header.ready.read() == 1;
}

std::uint32_t hostRun(const SharedMemory &memory)
{
    return memory.header.run.read();
}

std::int32_t hostBuild(const SharedMemory &memory)
{
    return memory.header.build.read();
}

std::int32_t hostZoneCount(const SharedMemory &memory)
{
    const std::int32_t count = memory.header.zoneCount.read();
    return count >= 0 && count <= maxZones ? count : 0;
}

void setOutput(SharedMemory &memory, bool on)
{
    memory.header.outputOn.write(on ? 1 : 0);
}

bool isOutputOn(const SharedMemory &memory)
{
    return memory.header.outputOn.read() == 1;
}
