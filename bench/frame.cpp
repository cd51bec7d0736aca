#include "frame.h"
#include "badbey.h"
#include "handdrawn.h"
#include "ldb.h"
#include "match.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <vector>

// Each benchmark ".../ours" is compared with one named ".../baseline".

namespace {

Match matchInPlay()
{
    Match match;
    match.gameShown = true;
    match.pointPending = false;
    match.servePhase = InPlay;
    match.ballPos = {1234, -5678};
    match.leftPaddle.y = 2500;
    match.rightPaddle.y = -9000;
    return match;
}

Match matchWon()
{
    Match match = matchInPlay();
    match.leftScore = winningScore;
    return match;
}

qsizetype pointsOf(const Match &match)
{
    BadBey bey;
    composeFrame(match, bey);
    return bey.points.size();
}

void composeAndSend(benchmark::State &state, Match match)
{
    BadBey bey;
    for (auto _ : state) {
        benchmark::DoNotOptimize(match);
        composeFrame(match, bey);
        bey.SendFrame();
    }
}

/// The minimum that the host's interface requires for any frame: a cleared buffer of the maximum
/// size with the points in it.
void zeroAndWrite(benchmark::State &state, qsizetype count)
{
    for (auto _ : state) {
        std::array<LdbPoint, ldbMaxPoints> buffer = {};
        benchmark::DoNotOptimize(count);
        for (qsizetype i = 0; i < count; ++i) {
            LdbPoint &point = buffer[static_cast<std::size_t>(i)];
            point.x = static_cast<float>(i);
            point.y = static_cast<float>(-i);
            point.color = 0xFFFFFF;
            point.flags = 1;
        }
        benchmark::DoNotOptimize(buffer.data());
        benchmark::ClobberMemory();
    }
}

void compose(benchmark::State &state)
{
    Match match = matchInPlay();
    BadBey bey;
    for (auto _ : state) {
        benchmark::DoNotOptimize(match);
        bey.points.clear();
        composeFrame(match, bey);
        benchmark::DoNotOptimize(bey.points.constData());
        benchmark::ClobberMemory();
    }
}

void composeByHand(benchmark::State &state)
{
    Match match = matchInPlay();
    std::vector<FramePoint> points(pointsInPlay);
    BadBey bey;
    composeFrame(match, bey);
    drawPlay(points.data(), match);
    if (!std::equal(points.begin(), points.end(), bey.points.cbegin(), bey.points.cend()))
        state.SkipWithError("The baseline draws a different picture.");
    for (auto _ : state) {
        benchmark::DoNotOptimize(match);
        drawPlay(points.data(), match);
        benchmark::DoNotOptimize(points.data());
        benchmark::ClobberMemory();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const Match play = matchInPlay();
    const Match won = matchWon();
    benchmark::RegisterBenchmark("frame/ours", composeAndSend, play);
    benchmark::RegisterBenchmark("frame/baseline", zeroAndWrite, pointsOf(play));
    benchmark::RegisterBenchmark("winner frame/ours", composeAndSend, won);
    benchmark::RegisterBenchmark("winner frame/baseline", zeroAndWrite, pointsOf(won));
    benchmark::RegisterBenchmark("compose/ours", compose);
    benchmark::RegisterBenchmark("compose/baseline", composeByHand);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
