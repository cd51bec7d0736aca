#include "entrypoints.h"

#include "hostlink.h"

// The functions that the game calls.

namespace {

HostLink host; // lives as long as the library; clazy:exclude=non-pod-global-static

} // namespace

std::int32_t ldbCreate()
{
    host.openSession();
    return host.isReady() ? 1 : 0;
}

std::int32_t ldbDestroy()
{
    host.closeSession();
    return 1;
}

std::int32_t ldbBeyondExeReady()
{
    return host.isReady() ? 1 : 0;
}

std::int32_t ldbGetBeyondVersion()
{
    return host.build();
}

std::int32_t ldbGetZoneCount()
{
    return host.zoneCount();
}

std::int32_t ldbEnableLaserOutput()
{
    return host.switchOutput(true) ? 1 : 0;
}

std::int32_t ldbDisableLaserOutput()
{
    return host.switchOutput(false) ? 1 : 0;
}

std::int32_t ldbSendFrame(std::int32_t /*frameType*/, std::int32_t zone, std::int32_t /*reserved*/,
    const char * /*imageName*/, std::int32_t pointCount, const LdbPoint *points,
    const void * /*extra*/, std::int32_t /*rate*/, std::int32_t /*option*/)
{
    return host.sendFrame(zone, pointCount, points) ? 1 : 0;
}
