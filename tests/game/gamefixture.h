#pragma once

#include "debuglines.h"
#include "fakehost.h"
#include "pong.h"

// What the tests of the game's ticks and host checks have in common.

inline const QString noHost = QStringLiteral("Beyond not started or Incorrect Beyond Version");

/// The host call of one frame.
inline QString sent(int zone, int count)
{
    return QStringLiteral("ldbSendFrame 2 %1 0 SingleZone %2 points null 100 -1")
        .arg(zone)
        .arg(count);
}

/// A game that is still on the test's thread: ticks and host checks are called by hand.
struct Game
{
    explicit Game(bool connected = true)
    {
        QObject::connect(
            &pong, &Pong::beyCoStatus, [](BeyondState state) { qDebug("status %d", int(state)); });
        if (connected)
            pong.checkHost();
        pong.gameShown = true;
        lines.takeAll();
        host.takeCalls();
    }

    void tick(int times = 1)
    {
        for (int i = 0; i < times; ++i)
            pong.UpdatePongDisplay();
    }

    /// Ticks until a frame has gone out, because the count of ticks between frames belongs to the
    /// process. The match, which waits for a serve, is none the worse.
    void tickToFrame()
    {
        const int before = host.framesSent;
        while (host.framesSent == before)
            tick();
        host.takeCalls();
        host.takeFrames();
    }

    void play()
    {
        pong.requestStart(0);
        tick();
        pong.requestStart(0);
    }

    FakeHost host;
    DebugLines lines;
    Pong pong;
};
