#include "match.h"

#include "numbers.h"

#include <algorithm>
#include <cmath>

namespace {

/// A hit adds its offset from the paddle's centre, divided by this, to the ball's vertical
/// velocity.
constexpr qint32 deflectionDivisor = 50;

/// The direction from the centre towards a side: -1 left, +1 right.
constexpr qint32 directionOf(Side side)
{
    return side == Side::Left ? -1 : 1;
}

/// speed * 53 / divisor in integer arithmetic, without overflow for any int speed.
float wholeSpeed(qint32 speed, qint64 divisor)
{
    const qint64 whole = qint64(speed) * 53 / divisor;
    return static_cast<float>(whole);
}

} // namespace

void Match::setPaddleInput(int side, int step)
{
    if (side == 0)
        leftStep = step;
    else if (side == 1)
        rightStep = step;
}

void Match::requestStart(int side)
{
    if (!sideOfNumber(side))
        return;
    if (pointPending) {
        if (isOver()) {
            resetMatch();
            return;
        }
        pointPending = false;
        if (leftScore == 0 && rightScore == 0)
            servePhase = side;
    } else if (gameShown && servePhase.replace(side, InPlay) && pointPending) {
        // A miss on the game thread is only half recorded: undo the serve, show the score first.
        servePhase.replace(InPlay, side);
    }
}

void Match::resetMatch()
{
    servePhase = ServeLeft;
    leftScore = 0;
    rightScore = 0;
    pointPending = true;
}

bool Match::isOver() const
{
    return leftScore == winningScore || rightScore == winningScore;
}

void Match::movePaddles()
{
    const auto moved = [](qint32 y, qint32 step) {
        return static_cast<qint32>(
            std::clamp<qint64>(qint64(y) + step, -paddleTravel, paddleTravel));
    };
    leftPaddle.y = moved(leftPaddle.y, leftStep);
    rightPaddle.y = moved(rightPaddle.y, rightStep);
}

std::optional<Side> Match::moveBall()
{
    if (const std::optional<Side> server = sideOfNumber(servePhase))
        holdBall(*server);
    else
        flyBall();
    bounceOffBorders();
    for (const Side side : bothSides) {
        if (!isAtEnd(side))
            continue;
        if (!reachesBall(side))
            return missBall(side);
        hitBall(side);
        break;
    }
    return std::nullopt;
}

void Match::holdBall(Side side)
{
    ballPos = {directionOf(side) * ballLimit, paddle(side).y};
    ballVx = std::copysign(wholeSpeed(ballSpeed, 10), static_cast<float>(-directionOf(side)));
    ballVy = 0.0F;
}

void Match::flyBall()
{
    ballPos.x = truncated(static_cast<float>(ballPos.x) + ballVx, ballPos.x);
    ballPos.y = truncated(static_cast<float>(ballPos.y) + ballVy, ballPos.y);
    if (ballPos.x <= -ballLimit)
        ballVx = std::fabs(ballVx);
    else if (ballPos.x >= ballLimit)
        ballVx = -std::fabs(ballVx);
}

void Match::bounceOffBorders()
{
    if (ballPos.y <= -ballLimit)
        ballVy = std::fabs(ballVy);
    else if (ballPos.y >= ballLimit)
        ballVy = -std::fabs(ballVy);
}

bool Match::isAtEnd(Side side) const
{
    return side == Side::Left ? ballPos.x <= -ballLimit : ballPos.x >= ballLimit;
}

bool Match::reachesBall(Side side)
{
    const qint32 y = paddle(side).y;
    return y - paddleHalf <= ballPos.y && ballPos.y <= y + paddleHalf;
}

void Match::hitBall(Side side)
{
    ballPos.x = directionOf(side) * ballLimit;
    const qint32 deflection = (ballPos.y - paddle(side).y) / deflectionDivisor;
    const float vy = static_cast<float>(deflection) + ballVy;
    const qint32 setting = ballSpeed;
    const auto speed = static_cast<float>(setting);
    // Deliberate: the second rescaling uses the first one's result in its divisor. The ball's speed
    // is therefore only close to the setting, and the drift is part of the game.
    ballVx = ballVx * 53.0F * speed / 10.0F / hypotenuse(ballVx, vy);
    ballVy = vy * 53.0F * speed / 10.0F / hypotenuse(ballVx, vy);
    // A ball flying almost vertically would never arrive.
    if (wholeSpeed(setting, 40) > std::fabs(ballVx))
        ballVx = std::fabs(ballVx) / ballVx * 53.0F * speed / 10.0F * 0.25F;
}

Side Match::missBall(Side side)
{
    // A start press may come between any two of these writes. The pending flag is set after score
    // and serve, so that a press that sees it also sees a tenth point. A press that came before
    // may have served already; the last line undoes that.
    const Side scorer = otherSide(side);
    (scorer == Side::Left ? leftScore : rightScore) += 1;
    servePhase = sideNumber(side);
    pointPending = true;
    servePhase.replace(InPlay, sideNumber(side));
    return scorer;
}
