#include "hostlink.h"
#include "rehearsal_export.h"

// The functions that the game resolves in the laser host's library.

#define DECLARE_ENTRY_POINT(name, parameters, arguments) \
    extern "C" REHEARSAL_EXPORT std::int32_t name parameters;
LDB_ENTRY_POINTS(DECLARE_ENTRY_POINT)

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

// Never called by the game, but it refuses a library that lacks one of them.
#define ANSWER_NEUTRALLY(name) \
    std::int32_t name()        \
    {                          \
        return 0;              \
    }
ANSWER_NEUTRALLY(ldbGetDllVersion)
ANSWER_NEUTRALLY(ldbBeyondExeStarted)
ANSWER_NEUTRALLY(ldbBlackout)
ANSWER_NEUTRALLY(ldbGetProjectorCount)
ANSWER_NEUTRALLY(ldbGetProjectorEvent)
ANSWER_NEUTRALLY(ldbCreateZoneImage)
ANSWER_NEUTRALLY(ldbCreateProjectorImage)
ANSWER_NEUTRALLY(ldbDeleteZoneImage)
ANSWER_NEUTRALLY(ldbDeleteProjectorImage)
ANSWER_NEUTRALLY(ldbSendFrameToImage)
ANSWER_NEUTRALLY(ldbGetTimeCode)
ANSWER_NEUTRALLY(ldbSetTimeCode)
ANSWER_NEUTRALLY(ldbSetKinect)
ANSWER_NEUTRALLY(ldbSetDmx)
ANSWER_NEUTRALLY(ldbSetChannels)
ANSWER_NEUTRALLY(ldbTimelinePlay)
ANSWER_NEUTRALLY(ldbTimelineStop)
ANSWER_NEUTRALLY(ldbTimelineGetPlaying)
ANSWER_NEUTRALLY(ldbTimelineSetPos)
ANSWER_NEUTRALLY(ldbTimelineGetPos)
ANSWER_NEUTRALLY(ldbTimelineGetDuration)
ANSWER_NEUTRALLY(ldbTimelineSetOnline)
ANSWER_NEUTRALLY(ldbTimelineGetOnline)
ANSWER_NEUTRALLY(ldbGetProjectorSerial)

#define ANSWER_MIDI_NEUTRALLY(name)                                                           \
    std::int32_t name(std::uint8_t /*byte0*/, std::uint8_t /*byte1*/, std::uint8_t /*byte2*/, \
        std::uint8_t /*byte3*/)                                                               \
    {                                                                                         \
        return 0;                                                                             \
    }
ANSWER_MIDI_NEUTRALLY(ldbSetMidiIn)
ANSWER_MIDI_NEUTRALLY(ldbSetMidiOut)
