#pragma once

#include "atomicvalue.h"
#include "side.h"

#include <QtGlobal>

#include <optional>

/// A position in the field: units from -32000 to +32000, x to the right, y upward.
struct Point
{
    qint32 x = 0;
    qint32 y = 0;

    bool operator==(const Point &) const = default;
};

/// Who has the ball. The serves equal the numbers of their sides.
enum ServePhase : qint32 {
    ServeLeft = 0, ///< held on the left paddle
    ServeRight = 1, ///< held on the right paddle
    InPlay = 2,
};

inline constexpr qint32 fieldHalf = 32000; ///< from the centre to a border or a paddle
inline constexpr qint32 ballLimit = 31200; ///< where the ball turns back or a point is decided
inline constexpr qint32 paddleTravel = 27000; ///< how far a paddle's centre goes up and down
inline constexpr qint32 paddleHalf = 5000; ///< from the centre of a paddle to its tip
inline constexpr qint32 winningScore = 10;

/// One match: its complete state, which a replay needs, and its rules. Time is counted in steps; a
/// step is the same however much real time has passed. Sides are 0 left, 1 right.
///
/// The game thread steps the match. The operations and the atomic members may be used by the GUI
/// thread too; all other members belong to the game thread.
struct Match
{
    Point ballPos; ///< centre of the ball
    Point leftPaddle = {-fieldHalf, 0}; ///< centre; x never changes
    Point rightPaddle = {fieldHalf, 0}; ///< centre; x never changes
    Relaxed<qint32> leftStep = 0; ///< added to the left paddle's y in every step
    Relaxed<qint32> rightStep = 0; ///< the same for the right paddle
    float ballVx = 53.0F; ///< units per step
    float ballVy = 0.0F; ///< units per step
    Relaxed<qint32> ballSpeed = 20; ///< the ball flies ballSpeed * 53 / 10 units per step
    Relaxed<bool> gameShown = false; ///< the game is drawn and runs
    Ordered<qint32> servePhase = ServeLeft;
    Ordered<qint32> leftScore = 0;
    Ordered<qint32> rightScore = 0;
    /// A point has ended, or the match is new: the scores are shown until a start press.
    Ordered<bool> pointPending = true;

    /// Sets the step of a paddle for every tick from now on. Invalid sides are ignored.
    void setPaddleInput(int side, int step);
    /// A player's start button: leaves the winner display, leaves the score display, or serves.
    void requestStart(int side);
    /// Starts a new match immediately.
    void resetMatch();

    /// Moves both paddles by their steps.
    void movePaddles();
    /// Moves the ball by one step. Returns the side that scored, if any.
    std::optional<Side> moveBall();
    /// Whether a player has won; the match then waits for a start press.
    bool isOver() const;

private:
    Point &paddle(Side side) { return side == Side::Left ? leftPaddle : rightPaddle; }
    void holdBall(Side side);
    void flyBall();
    void bounceOffBorders();
    bool isAtEnd(Side side) const;
    bool reachesBall(Side side);
    void hitBall(Side side);
    Side missBall(Side side);
};
