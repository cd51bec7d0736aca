#include "allocations.h"
#include "pong.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>

// Prints the number of heap allocations in 10,000 warm frames of a match in play. Counts calls of
// the C library's functions, which both operator new and Qt's containers use.

namespace {

constexpr int ticksPerFrame = 3;
constexpr int frames = 10'000;

/// Whether the counter sees both kinds of allocation.
bool counts()
{
    const long before = allocations();
    const std::unique_ptr<int> one(new int(1));
    QList<int> list;
    list.reserve(100);
    return one && allocations() == before + 2;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Pong pong;
    pong.checkHost();
    pong.gameShown = true;
    pong.pointPending = false;
    pong.servePhase = InPlay;
    for (int i = 0; i < 10 * ticksPerFrame; ++i)
        pong.UpdatePongDisplay();
    const long before = allocations();
    for (int i = 0; i < frames * ticksPerFrame; ++i)
        pong.UpdatePongDisplay();
    const long after = allocations();
    if (!counts() || pong.servePhase != InPlay) {
        std::fputs("The allocation counter does not work.\n", stderr);
        return 1;
    }
    std::printf("{\"allocations\": %ld}\n", after - before);
    return 0;
}
