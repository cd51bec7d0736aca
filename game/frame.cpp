#include "frame.h"

#include "match.h"
#include "strokes.h"

namespace {

constexpr int white = 0xFFFFFF;
constexpr int yellow = 0xFFFF00;
constexpr int blue = 0x0030FF;
constexpr int cyan = 0x00FFFF;
constexpr int green = 0x00FF00;

void composeScores(const Match &match, BadBey &bey)
{
    addDigit(bey, match.leftScore, 25, {-10666, 10666}, cyan, LeftScoreObject, 80);
    addDigit(bey, match.rightScore, 25, {10666, 10666}, cyan, RightScoreObject, 80);
    addLine(bey, {5333, 0}, {0, 10666}, cyan, DashObject, 12, LineSingle);
}

void composeField(const Match &match, BadBey &bey)
{
    const StrokeSize paddle = {0, 2 * paddleHalf};
    addLine(bey, paddle, match.leftPaddle, white, LeftPaddleObject, 20, LineSingle);
    addLine(bey, paddle, match.rightPaddle, white, RightPaddleObject, 20, LineSingle);
    const StrokeSize border = {2 * fieldHalf, 0};
    addLine(bey, border, {0, fieldHalf}, yellow, TopBorderObject, 50, LineSingle);
    addLine(bey, border, {0, -fieldHalf}, yellow, BottomBorderObject, 50, LineSingle);
}

void composeWinner(const Match &match, BadBey &bey)
{
    const int winner = match.leftScore == winningScore ? 1 : 2;
    addWinnerCaptionTop(bey, 30, {-12800, 8000}, green, WinnerObject, 200);
    addDigit(bey, winner, 12, {12800, 8000}, green, WinnerObject, 60);
    addWinnerCaptionBottom(bey, 30, {-8000, -8000}, green, WinnerObject, 250);
}

} // namespace

void composeFrame(const Match &match, BadBey &bey)
{
    if (match.isOver()) {
        composeWinner(match, bey);
        return;
    }
    if (match.pointPending)
        composeScores(match, bey);
    else
        addCircle(bey, 800, match.ballPos, blue, BallObject, 20);
    composeField(match, bey);
}
