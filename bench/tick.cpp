#include "pong.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

void startPlay(Match &match)
{
    match.gameShown = true;
    match.pointPending = false;
    match.servePhase = InPlay;
    match.ballVx = 106.0F;
}

/// The game's step on its own variables, written only for speed: no atomics for other threads, and
/// no guards against values that cannot occur here.
struct PlainPlay
{
    int leftStep = 0;
    int rightStep = 0;
    int speed = 20;
    int x = 0;
    int y = 0;
    int leftY = 0;
    int rightY = 0;
    float vx = 106.0F;
    float vy = 0.0F;
    bool missed = false;

    void step()
    {
        leftY = std::clamp(leftY + leftStep, -27000, 27000);
        rightY = std::clamp(rightY + rightStep, -27000, 27000);
        x = static_cast<int>(static_cast<float>(x) + vx);
        y = static_cast<int>(static_cast<float>(y) + vy);
        if (x <= -31200)
            vx = std::fabs(vx);
        else if (x >= 31200)
            vx = -std::fabs(vx);
        if (y <= -31200)
            vy = std::fabs(vy);
        else if (y >= 31200)
            vy = -std::fabs(vy);
        if (x <= -31200)
            arrive(-31200, leftY);
        else if (x >= 31200)
            arrive(31200, rightY);
    }

private:
    void arrive(int end, int paddleY)
    {
        if (y < paddleY - 5000 || y > paddleY + 5000) {
            missed = true;
            return;
        }
        x = end;
        const int deflection = (y - paddleY) / 50;
        const float w = static_cast<float>(deflection) + vy;
        const auto s = static_cast<float>(speed);
        const auto length = [](double a, double b) {
            return static_cast<float>(std::sqrt(a * a + b * b));
        };
        vx = vx * 53.0F * s / 10.0F / length(vx, w);
        vy = w * 53.0F * s / 10.0F / length(vx, w);
        const int least = speed * 53 / 40;
        if (static_cast<float>(least) > std::fabs(vx))
            vx = std::fabs(vx) / vx * 53.0F * s / 10.0F * 0.25F;
    }
};

bool playsTheSame()
{
    Pong pong;
    startPlay(pong);
    pong.leftPaddle.y = -300; // deflects the ball a little at every hit
    PlainPlay plain = {.leftY = -300};
    for (int i = 0; i < 100'000 && !plain.missed; ++i) {
        pong.movePaddles();
        pong.stepBall();
        plain.step();
        if (!plain.missed
            && (pong.ballPos != Point{plain.x, plain.y} || pong.ballVx != plain.vx
                || pong.ballVy != plain.vy))
            return false;
    }
    return plain.missed == (pong.servePhase != InPlay);
}

void tick(benchmark::State &state)
{
    Pong pong;
    startPlay(pong);
    for (auto _ : state) {
        pong.movePaddles();
        pong.stepBall();
    }
    benchmark::DoNotOptimize(pong.ballPos);
    if (pong.servePhase != InPlay)
        state.SkipWithError("The ball was lost.");
}

void tickByHand(benchmark::State &state)
{
    if (!playsTheSame())
        state.SkipWithError("The baseline plays a different game.");
    PlainPlay play;
    benchmark::DoNotOptimize(play);
    for (auto _ : state) {
        play.step();
        benchmark::DoNotOptimize(std::as_const(play.x));
        benchmark::DoNotOptimize(std::as_const(play.y));
        benchmark::DoNotOptimize(std::as_const(play.leftY));
        benchmark::DoNotOptimize(std::as_const(play.rightY));
    }
    if (play.missed)
        state.SkipWithError("The ball was lost.");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::RegisterBenchmark("tick/ours", tick);
    benchmark::RegisterBenchmark("tick/baseline", tickByHand);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
