#pragma once

#include "debuglines.h"
#include "fakehost.h"
#include "pong.h"

// Shared by the tests of the game's ticks and host checks.

inline const QString noHost = QStringLiteral("Beyond not started or Incorrect Beyond Version");

/// The host call of one frame.
inline QString sent(int zone, int count)
{
    return QStringLiteral("ldbSendFrame 2 %1 0 SingleZone %2 points null 100 -1")
        .arg(zone)
        .arg(count);
}

/// A game on the test's thread, whose ticks and host checks the test calls directly.
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

    /// Ticks until a frame is sent, because the process-wide divider may be at any count. The match
    /// waits for a serve, so it does not change.
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
