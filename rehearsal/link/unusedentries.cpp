#include "entrypoints.h"

// The functions that the game never calls, although it refuses a library that lacks one of them.
// Each does nothing and returns 0.

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
