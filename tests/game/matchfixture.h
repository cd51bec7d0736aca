#pragma once

#include "match.h"

#include <QTest>

#include <array>
#include <bit>

// What the tests of the rules have in common. Sides are 0 left, 1 right.

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

/// A match whose ball flies.
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

/// Two floats that are the same to the bit; QCOMPARE lets neighbours pass.
#define COMPARE_BITS(actual, expected)                                           \
    QVERIFY2(std::bit_cast<quint32>(actual) == std::bit_cast<quint32>(expected), \
        qPrintable(                                                              \
            QStringLiteral("%1 is not %2").arg(actual, 0, 'g', 9).arg(expected, 0, 'g', 9)))
