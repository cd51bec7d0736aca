#include "badbey.h"
#include "frame.h"
#include "match.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

// Sends frames to the rehearsal host as the game composes and sends them, for pictures of the
// host's views. Usage: showsender VIEW [SECONDS]. Its last frame is lit, like that of a game that
// is killed.

using namespace Qt::StringLiterals;

namespace {

constexpr int ticksPerFrame = 3;
constexpr qint64 frameNanoseconds = 9'000'000;

Match rally()
{
    Match match;
    match.gameShown = true;
    match.pointPending = false;
    match.servePhase = InPlay;
    match.ballVy = 21.0F;
    match.ballPos = {-9000, -12000};
    match.leftPaddle.y = -9000;
    match.rightPaddle.y = 6000;
    return match;
}

Match scores()
{
    Match match = rally();
    match.pointPending = true;
    match.servePhase = ServeLeft;
    match.leftScore = 7;
    match.rightScore = 5;
    return match;
}

Match winner()
{
    Match match = scores();
    match.leftScore = winningScore;
    return match;
}

/// The frames for the zones, starting with the first.
QList<Match> matchesOf(const QString &view)
{
    if (view == u"rally"_s)
        return {rally()};
    if (view == u"scores"_s)
        return {scores()};
    if (view == u"winner"_s)
        return {winner()};
    if (view == u"zones"_s)
        return {rally(), scores(), winner(), rally()};
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QList<Match> matches = matchesOf(arguments.value(1));
    const int seconds = arguments.value(2, u"3"_s).toInt();
    // One per zone: a binding blanks the zone that it leaves.
    std::vector<std::unique_ptr<BadBey>> zones;
    for (qint32 zone = 0; zone < matches.size(); ++zone) {
        zones.push_back(std::make_unique<BadBey>());
        zones.back()->zone = zone;
    }
    if (zones.empty() || zones.front()->ConnectBeyond() < oldestBeyondBuild) {
        std::fputs(
            "showsender rally|scores|winner|zones [SECONDS], beside a rehearsal host\n", stderr);
        return EXIT_FAILURE;
    }
    zones.front()->SetLaserOutput(true);
    QElapsedTimer clock;
    clock.start();
    qint64 due = 0;
    while (clock.elapsed() < seconds * 1000LL) {
        for (std::size_t zone = 0; zone < zones.size(); ++zone) {
            Match &match = matches[static_cast<qsizetype>(zone)];
            for (int tick = 0; tick < ticksPerFrame; ++tick) {
                match.movePaddles();
                match.moveBall();
            }
            composeFrame(match, *zones[zone]);
            zones[zone]->SendFrame();
        }
        // Like the game, do not catch up on late frames.
        due = std::max(due + frameNanoseconds, clock.nsecsElapsed());
        const qint64 early = std::max<qint64>(due - clock.nsecsElapsed(), 0);
        QThread::usleep(static_cast<unsigned long>(early / 1000));
    }
    std::_Exit(EXIT_SUCCESS); // without blanking the laser
}
