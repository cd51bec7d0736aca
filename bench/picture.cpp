#include "badbey.h"
#include "eye.h"
#include "frame.h"
#include "match.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

// A picture of the rehearsal host, from the sixtieth of a second that its projector drew before,
// against clearing a picture of the same size and copying it once.

namespace {

constexpr int side = 1000;
constexpr double framePeriod = 0.009;
constexpr double picturePeriod = 1.0 / 60;

Match matchInPlay()
{
    Match match;
    match.gameShown = true;
    match.pointPending = false;
    match.servePhase = InPlay;
    return match;
}

std::vector<LdbPoint> frameOf(const Match &match)
{
    BadBey bey;
    composeFrame(match, bey);
    std::vector<LdbPoint> points;
    for (const FramePoint &point : bey.points) {
        points.push_back({static_cast<float>(point.x), static_cast<float>(point.y), 0, point.color,
            0, 0, static_cast<std::uint8_t>(point.flags), 0});
    }
    return points;
}

/// The ball crosses the field, as it does in a rally.
std::vector<std::vector<LdbPoint>> rally()
{
    std::vector<std::vector<LdbPoint>> frames;
    Match match = matchInPlay();
    for (qint32 x = -30000; x <= 30000; x += 318) {
        match.ballPos = {x, x / 2};
        frames.push_back(frameOf(match));
    }
    return frames;
}

void picture(benchmark::State &state, bool hasMirrors)
{
    Projector projector;
    ScannerSettings settings;
    settings.hasMirrors = hasMirrors;
    projector.setSettings(settings);
    projector.setOutputOn(true);
    Eye eye(projector);
    eye.resize(side);
    const auto frames = rally();
    std::size_t next = 0;
    double now = 1;
    double sent = now;
    for (auto _ : state) {
        now += picturePeriod;
        while (sent <= now) {
            projector.show(frames[next++ % frames.size()], sent);
            sent += framePeriod;
        }
        benchmark::DoNotOptimize(eye.look(now));
    }
}

void clearAndCopy(benchmark::State &state)
{
    const std::vector<std::uint32_t>::size_type pixels = std::size_t(side) * side;
    std::vector<std::uint32_t> cleared(pixels);
    std::vector<std::uint32_t> copied(pixels);
    for (auto _ : state) {
        std::fill(cleared.begin(), cleared.end(), 0xff000000);
        benchmark::DoNotOptimize(cleared.data());
        std::copy(cleared.begin(), cleared.end(), copied.begin());
        benchmark::DoNotOptimize(copied.data());
        benchmark::ClobberMemory();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    benchmark::RegisterBenchmark("picture as sent/ours", picture, false);
    benchmark::RegisterBenchmark("picture as sent/baseline", clearAndCopy);
    benchmark::RegisterBenchmark("picture as drawn/ours", picture, true);
    benchmark::RegisterBenchmark("picture as drawn/baseline", clearAndCopy);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
