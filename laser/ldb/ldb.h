#pragma once

#include <cstddef>
#include <cstdint>

// The C interface of the host's library: called by the program, exported by any substitute.

/// One laser point as the host reads it; frames are contiguous arrays of these.
struct LdbPoint
{
    float x; ///< field units, -32768 ... +32767, to the right
    float y; ///< field units, upward
    float z; ///< always 0
    std::int32_t color; ///< colour number, 0 = beam off
    std::uint8_t reserved0;
    std::uint8_t reserved1;
    std::uint8_t flags; ///< 0 ordinary, 1 first or last of a stroke, 3 blanked travel
    std::uint8_t reserved2;
};
static_assert(sizeof(LdbPoint) == 20 && alignof(LdbPoint) == 4);
static_assert(offsetof(LdbPoint, x) == 0 && offsetof(LdbPoint, y) == 4 && offsetof(LdbPoint, z) == 8
    && offsetof(LdbPoint, color) == 12 && offsetof(LdbPoint, flags) == 18);

/// The largest number of points in a frame.
inline constexpr std::int32_t ldbMaxPoints = 8192;

/// Every function of the library in the order of resolution: name, parameters, and the parameters
/// as arguments. All return an int32. The parameters of functions that the program never calls are
/// not known here, so none are declared.
#define LDB_ENTRY_POINTS(ENTRY)                                                                    \
    ENTRY(ldbCreate, (), ())                                                                       \
    ENTRY(ldbDestroy, (), ())                                                                      \
    ENTRY(ldbGetDllVersion, (), ())                                                                \
    ENTRY(ldbBeyondExeStarted, (), ())                                                             \
    ENTRY(ldbBeyondExeReady, (), ())                                                               \
    ENTRY(ldbGetBeyondVersion, (), ())                                                             \
    ENTRY(ldbEnableLaserOutput, (), ())                                                            \
    ENTRY(ldbDisableLaserOutput, (), ())                                                           \
    ENTRY(ldbBlackout, (), ())                                                                     \
    ENTRY(ldbGetProjectorCount, (), ())                                                            \
    ENTRY(ldbGetZoneCount, (), ())                                                                 \
    ENTRY(ldbGetProjectorEvent, (), ())                                                            \
    ENTRY(ldbCreateZoneImage, (), ())                                                              \
    ENTRY(ldbCreateProjectorImage, (), ())                                                         \
    ENTRY(ldbDeleteZoneImage, (), ())                                                              \
    ENTRY(ldbDeleteProjectorImage, (), ())                                                         \
    ENTRY(ldbSendFrameToImage, (), ())                                                             \
    ENTRY(ldbGetTimeCode, (), ())                                                                  \
    ENTRY(ldbSetTimeCode, (), ())                                                                  \
    ENTRY(ldbSetMidiIn,                                                                            \
        (std::uint8_t byte0, std::uint8_t byte1, std::uint8_t byte2, std::uint8_t byte3),          \
        (byte0, byte1, byte2, byte3))                                                              \
    ENTRY(ldbSetMidiOut,                                                                           \
        (std::uint8_t byte0, std::uint8_t byte1, std::uint8_t byte2, std::uint8_t byte3),          \
        (byte0, byte1, byte2, byte3))                                                              \
    ENTRY(ldbSetKinect, (), ())                                                                    \
    ENTRY(ldbSetDmx, (), ())                                                                       \
    ENTRY(ldbSetChannels, (), ())                                                                  \
    ENTRY(ldbTimelinePlay, (), ())                                                                 \
    ENTRY(ldbTimelineStop, (), ())                                                                 \
    ENTRY(ldbTimelineGetPlaying, (), ())                                                           \
    ENTRY(ldbTimelineSetPos, (), ())                                                               \
    ENTRY(ldbTimelineGetPos, (), ())                                                               \
    ENTRY(ldbTimelineGetDuration, (), ())                                                          \
    ENTRY(ldbTimelineSetOnline, (), ())                                                            \
    ENTRY(ldbTimelineGetOnline, (), ())                                                            \
    ENTRY(ldbGetProjectorSerial, (), ())                                                           \
    ENTRY(ldbSendFrame,                                                                            \
        (std::int32_t frameType, std::int32_t zone, std::int32_t reserved, const char *imageName,  \
            std::int32_t pointCount, const LdbPoint *points, const void *extra, std::int32_t rate, \
            std::int32_t option),                                                                  \
        (frameType, zone, reserved, imageName, pointCount, points, extra, rate, option))
