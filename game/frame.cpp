#include "frame.h"

#include "badbey.h"
#include "ldb.h"
#include "match.h"
#include "strokes.h"

#include <array>

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

/// What looks the same in every frame is drawn once and kept. A list that it does not fit into is
/// left to the strokes, which drop it.
template <class Draw>
void addKept(QList<FramePoint> &kept, BadBey &bey, Draw draw)
{
    const qsizetype before = bey.points.size();
    if (!kept.isEmpty() && before + kept.size() <= ldbMaxPoints) {
        bey.points.append(kept);
        return;
    }
    draw();
    if (kept.isEmpty() && bey.points.size() > before)
        kept = bey.points.sliced(before);
}

void composeBorders(BadBey &bey)
{
    static QList<FramePoint> kept;
    addKept(kept, bey, [&bey] {
        const StrokeSize border = {2 * fieldHalf, 0};
        addLine(bey, border, {0, fieldHalf}, yellow, TopBorderObject, 50, LineSingle);
        addLine(bey, border, {0, -fieldHalf}, yellow, BottomBorderObject, 50, LineSingle);
    });
}

void composeField(const Match &match, BadBey &bey)
{
    const StrokeSize paddle = {0, 2 * paddleHalf};
    addLine(bey, paddle, match.leftPaddle, white, LeftPaddleObject, 20, LineSingle);
    addLine(bey, paddle, match.rightPaddle, white, RightPaddleObject, 20, LineSingle);
    composeBorders(bey);
}

void composeWinner(const Match &match, BadBey &bey)
{
    static std::array<QList<FramePoint>, 2> kept;
    const std::size_t winner = match.leftScore == winningScore ? 0 : 1;
    addKept(kept[winner], bey, [&bey, winner] {
        addWinnerCaptionTop(bey, 30, {-12800, 8000}, green, WinnerObject, 200);
        addDigit(bey, int(winner) + 1, 12, {12800, 8000}, green, WinnerObject, 60);
        addWinnerCaptionBottom(bey, 30, {-8000, -8000}, green, WinnerObject, 250);
    });
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
