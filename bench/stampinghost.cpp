#include "ldb.h"
#include "stamps.h"

#include <chrono>
#include <string_view>
#include <thread>

// A laser host for the whole program: ready, recent enough, and timestamps the frames of a match in
// play. RALLYVANE_BENCH_STALL is the number of the frame whose call blocks for one second.

namespace {

constexpr std::int32_t pointsInPlay = 175;

Stamps &stamps()
{
    static Stamps ofFrames;
    return ofFrames;
}

int framesUntilStall = qEnvironmentVariableIntValue("RALLYVANE_BENCH_STALL");

/// Ignores the arguments.
template <class... Arguments>
std::int32_t answer(std::string_view name, Arguments... /*arguments*/)
{
    if (name == "ldbGetBeyondVersion")
        return 1700;
    return name == "ldbBeyondExeReady" || name == "ldbGetZoneCount" ? 1 : 0;
}

/// The frame.
std::int32_t answer(std::string_view /*name*/, std::int32_t /*frameType*/, std::int32_t /*zone*/,
    std::int32_t /*reserved*/, const char * /*imageName*/, std::int32_t pointCount,
    const LdbPoint * /*points*/, const void * /*extra*/, std::int32_t /*rate*/,
    std::int32_t /*option*/)
{
    if (pointCount != pointsInPlay)
        return 0;
    stamps().stamp();
    if (framesUntilStall > 0 && --framesUntilStall == 0) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        stamps().stamp();
    }
    return 0;
}

} // namespace

#define PASS(...) __VA_OPT__(, ) __VA_ARGS__
#define DEFINE_ENTRY_POINT(name, parameters, arguments)                             \
    extern "C" __attribute__((visibility("default"))) std::int32_t name parameters; \
    std::int32_t name parameters                                                    \
    {                                                                               \
        return answer(#name PASS arguments);                                        \
    }
LDB_ENTRY_POINTS(DEFINE_ENTRY_POINT)
