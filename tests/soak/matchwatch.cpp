#include "matchwatch.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr std::int32_t green = 0x00FF00;

/// The ball's largest step on either axis: the game speed slider at its maximum, 30.
constexpr qint32 longestStep = 30 * 53 / 10;
/// The ball turns back in the step after it has crossed the limit. A hit in that step may send it
/// out once more, vertically.
constexpr qint32 farthestX = ballLimit + longestStep;
constexpr qint32 farthestY = ballLimit + 2 * longestStep;

QString brokenScore(qint32 left, qint32 right)
{
    const bool possible = left >= 0 && right >= 0 && left <= winningScore && right <= winningScore
        && left + right < 2 * winningScore;
    return possible ? QString() : u"The scores are %1-%2"_s.arg(left).arg(right);
}

QString brokenPaddle(const Point &paddle, qint32 x)
{
    const bool inBounds = paddle.x == x && std::abs(paddle.y) <= paddleTravel;
    return inBounds ? QString() : u"A paddle is at %1, %2"_s.arg(paddle.x).arg(paddle.y);
}

} // namespace

QString brokenRule(const Match &match)
{
    if (QString broken = brokenScore(match.leftScore, match.rightScore); !broken.isEmpty())
        return broken;
    if (QString broken = brokenPaddle(match.leftPaddle, -fieldHalf); !broken.isEmpty())
        return broken;
    if (QString broken = brokenPaddle(match.rightPaddle, fieldHalf); !broken.isEmpty())
        return broken;
    const Point ball = match.ballPos;
    if (std::abs(ball.x) > farthestX || std::abs(ball.y) > farthestY)
        return u"The ball is at %1, %2"_s.arg(ball.x).arg(ball.y);
    if (!std::isfinite(match.ballVx) || !std::isfinite(match.ballVy))
        return u"The ball flies at %1, %2"_s.arg(match.ballVx).arg(match.ballVy);
    if (match.servePhase < ServeLeft || match.servePhase > InPlay)
        return u"The serve phase is %1"_s.arg(match.servePhase);
    if (match.isOver() && !match.pointPending)
        return u"The match is over and waits for no start press"_s;
    return {};
}

bool showsWinner(const QList<LdbPoint> &points)
{
    const auto isGreen = [](const LdbPoint &point) { return point.color == green; };
    const auto isDark = [](const LdbPoint &point) { return point.color == 0; };
    return std::any_of(points.begin(), points.end(), isGreen)
        && std::all_of(points.begin(), points.end(),
            [&](const LdbPoint &point) { return isGreen(point) || isDark(point); });
}

QString brokenFrame(const Match &match, const QList<LdbPoint> &points)
{
    if (showsWinner(points) == match.isOver())
        return {};
    return match.isOver() ? u"The winner is not shown"_s : u"A winner is shown before the end"_s;
}
