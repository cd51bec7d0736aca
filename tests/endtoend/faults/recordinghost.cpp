#include "entrypoints.h"
#include "seams.h"

#include <chrono>
#include <thread>

// The host's library: answers and blocks as scripted, and records the frames and the output.

namespace {

void blockIn(HostCall call)
{
    if (seams().blocks != call)
        return;
    seams().isBlocked = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(seams().blockTime));
    seams().blocks = HostCall::None;
    seams().isBlocked = false;
}

} // namespace

std::int32_t ldbCreate()
{
    return 0;
}

std::int32_t ldbDestroy()
{
    return 0;
}

std::int32_t ldbBeyondExeReady()
{
    blockIn(HostCall::Ready);
    return seams().ready;
}

std::int32_t ldbGetBeyondVersion()
{
    return seams().build;
}

std::int32_t ldbGetZoneCount()
{
    blockIn(HostCall::ZoneCount);
    return seams().zones;
}

std::int32_t ldbEnableLaserOutput()
{
    blockIn(HostCall::SwitchOutput);
    seams().outputOn = true;
    return 1;
}

std::int32_t ldbDisableLaserOutput()
{
    seams().outputOn = false;
    return 1;
}

std::int32_t ldbSendFrame(std::int32_t /*frameType*/, std::int32_t zone, std::int32_t /*reserved*/,
    const char * /*imageName*/, std::int32_t pointCount, const LdbPoint *points,
    const void * /*extra*/, std::int32_t /*rate*/, std::int32_t /*option*/)
{
    blockIn(HostCall::SendFrame);
    if (zone < 0 || pointCount < 0 || pointCount > ldbMaxPoints || !points)
        ++seams().badFrames;
    else if (zone < watchedZones)
        seams().points[std::size_t(zone)] = pointCount;
    ++seams().framesSent;
    return 1;
}
