#pragma once

#include "match.h"

#include <QTest>

#include <array>
#include <bit>

// Shared by the tests of the rules. Sides are 0 left, 1 right.

inline constexpr std::array sideNames = {"left", "right"};

/// -1 on the left, +1 on the right.
constexpr int directionOf(int side)
{
    return 2 * side - 1;
}

inline Point &paddleOf(Match &match, int side)
{
    return side == 0 ? match.leftPaddle : match.rightPaddle;
}

/// A match with the ball in play.
inline Match inPlay(Point ball, float vx, float vy)
{
    Match match;
    match.pointPending = false;
    match.gameShown = true;
    match.servePhase = InPlay;
    match.ballPos = ball;
    match.ballVx = vx;
    match.ballVy = vy;
    return match;
}

/// Compares two floats bit by bit; QCOMPARE accepts nearby values.
#define COMPARE_BITS(actual, expected)                                           \
    QVERIFY2(std::bit_cast<quint32>(actual) == std::bit_cast<quint32>(expected), \
        qPrintable(                                                              \
            QStringLiteral("%1 is not %2").arg(actual, 0, 'g', 9).arg(expected, 0, 'g', 9)))
