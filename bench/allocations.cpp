#include "allocations.h"
#include "pong.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>

// Prints how often 10,000 warm frames of a match in play reach for the heap. The C library's
// functions are counted, which operator new calls as Qt's containers do.

namespace {

constexpr int ticksPerFrame = 3;
constexpr int frames = 10'000;

/// Whether the counter sees both ways to the heap.
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
        std::fputs("Nothing was measured.\n", stderr);
        return 1;
    }
    std::printf("{\"allocations\": %ld}\n", after - before);
    return 0;
}
