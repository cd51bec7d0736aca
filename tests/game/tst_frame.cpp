#include "badbey.h"
#include "drawing.h"
#include "frame.h"
#include "match.h"

#include <QTest>

#include <limits>

namespace {

constexpr auto lowest = std::numeric_limits<qint32>::min();
constexpr auto highest = std::numeric_limits<qint32>::max();

constexpr int white = 0xFFFFFF;
constexpr int yellow = 0xFFFF00;
constexpr int ballBlue = 0x0030FF;
constexpr int scoreCyan = 0x00FFFF;
constexpr int winnerGreen = 0x00FF00;

Match matchAt(qint32 left, qint32 right, bool pending)
{
    Match match;
    match.leftScore = left;
    match.rightScore = right;
    match.pointPending = pending;
    return match;
}

QList<FramePoint> frameOf(const Match &match)
{
    BadBey bey;
    composeFrame(match, bey);
    return bey.points;
}

/// The points that a drawing function adds.
template <class Draw>
QList<FramePoint> drawn(Draw draw)
{
    BadBey bey;
    draw(bey);
    return bey.points;
}

QList<FramePoint> stroke(int strokeColor, Point from, Point to, int steps)
{
    return StrokeModel(strokeColor).line(from, to, steps).finished();
}

/// A picture split into its strokes: each begins and ends with blanked travel.
QList<QList<FramePoint>> strokesOf(const QList<FramePoint> &points)
{
    QList<QList<FramePoint>> strokes;
    bool within = false;
    for (const FramePoint &point : points) {
        if (!within)
            strokes.append(QList<FramePoint>());
        strokes.last().append(point);
        if (point.flags == 3)
            within = !within;
    }
    return strokes;
}

/// Paddles and borders, the last part of every frame except the winner display.
QList<FramePoint> field(qint32 leftY, qint32 rightY)
{
    return stroke(white, {-32000, leftY - 5000}, {-32000, leftY + 5000}, 20)
        + stroke(white, {32000, rightY - 5000}, {32000, rightY + 5000}, 20)
        + stroke(yellow, {-32000, 32000}, {32000, 32000}, 50)
        + stroke(yellow, {-32000, -32000}, {32000, -32000}, 50);
}

} // namespace

class tst_Frame : public QObject
{
    Q_OBJECT

private slots:
    void a_frame_in_play_has_175_points();
    void a_frame_in_play_is_ball_paddles_and_borders();
    void a_pending_point_shows_the_scores_and_a_dash_for_the_ball_data();
    void a_pending_point_shows_the_scores_and_a_dash_for_the_ball();
    void ten_points_show_only_the_winner_data();
    void ten_points_show_only_the_winner();
    void a_picture_drawn_again_is_the_same_data();
    void a_picture_drawn_again_is_the_same();
    void a_picture_drawn_again_leaves_the_stroke_of_its_last_line_data();
    void a_picture_drawn_again_leaves_the_stroke_of_its_last_line();
    void a_frame_is_appended_to_the_list();
    void a_frame_that_exceeds_the_limit_clears_the_list_data();
    void a_frame_that_exceeds_the_limit_clears_the_list();
    void every_point_is_in_the_hosts_range_whatever_the_match_data();
    void every_point_is_in_the_hosts_range_whatever_the_match();
};

void tst_Frame::a_frame_in_play_has_175_points()
{
    Match match = matchAt(3, 4, false);
    for (const Point ball : {Point{0, 0}, Point{-31200, 27000}, Point{31200, -31300}}) {
        match.ballPos = ball;
        QCOMPARE(frameOf(match).size(), 175);
    }
}

void tst_Frame::a_frame_in_play_is_ball_paddles_and_borders()
{
    Match match = matchAt(9, 9, false);
    match.ballPos = {-1234, 5678};
    match.leftPaddle.y = 2500;
    match.rightPaddle.y = -27000;
    const auto ball = drawn([](BadBey &bey) {
        addCircle(bey, 800, {-1234, 5678}, ballBlue, 4, 20);
    });
    QCOMPARE(ball.size(), 23);
    QCOMPARE(frameOf(match), ball + field(2500, -27000));
}

void tst_Frame::a_pending_point_shows_the_scores_and_a_dash_for_the_ball_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    QTest::addRow("0-0") << 0 << 0;
    QTest::addRow("3-2") << 3 << 2;
    QTest::addRow("1-8") << 1 << 8;
    QTest::addRow("9-9") << 9 << 9;
}

void tst_Frame::a_pending_point_shows_the_scores_and_a_dash_for_the_ball()
{
    QFETCH(int, left);
    QFETCH(int, right);
    Match match = matchAt(left, right, true);
    match.ballPos = {100, 100};
    match.leftPaddle.y = -300;
    match.rightPaddle.y = 400;
    const auto scores = drawn([left, right](BadBey &bey) {
        addDigit(bey, left, 25, {-10666, 10666}, scoreCyan, 5, 80);
        addDigit(bey, right, 25, {10666, 10666}, scoreCyan, 6, 80);
        // 5333 is odd: its ends are truncated from 2666.5.
        addLine(bey, {5333, 0}, {0, 10666}, scoreCyan, 7, 12, 0);
    });
    QCOMPARE(scores[scores.size() - 2], (FramePoint{2666, 10666, 0, scoreCyan, 1}));
    QCOMPARE(frameOf(match), scores + field(-300, 400));
}

void tst_Frame::ten_points_show_only_the_winner_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    QTest::addColumn<bool>("pending");
    QTest::addColumn<int>("winner");
    QTest::addRow("10-0") << 10 << 0 << true << 1;
    QTest::addRow("10-9") << 10 << 9 << true << 1;
    QTest::addRow("0-10") << 0 << 10 << true << 2;
    QTest::addRow("9-10") << 9 << 10 << true << 2;
    QTest::addRow("9-10 without a pending point") << 9 << 10 << false << 2;
}

void tst_Frame::ten_points_show_only_the_winner()
{
    QFETCH(int, left);
    QFETCH(int, right);
    QFETCH(bool, pending);
    QFETCH(int, winner);
    const auto expected = drawn([winner](BadBey &bey) {
        addWinnerCaptionTop(bey, 30, {-12800, 8000}, winnerGreen, 8, 200);
        addDigit(bey, winner, 12, {12800, 8000}, winnerGreen, 8, 60);
        addWinnerCaptionBottom(bey, 30, {-8000, -8000}, winnerGreen, 8, 250);
    });
    QCOMPARE(frameOf(matchAt(left, right, pending)), expected);
}

void tst_Frame::a_picture_drawn_again_is_the_same_data()
{
    QTest::addColumn<Match>("match");
    QTest::addRow("in play") << matchAt(0, 0, false);
    QTest::addRow("scores") << matchAt(1, 2, true);
    QTest::addRow("left has won") << matchAt(10, 2, true);
    QTest::addRow("right has won") << matchAt(2, 10, true);
}

void tst_Frame::a_picture_drawn_again_is_the_same()
{
    QFETCH(Match, match);
    const auto points = frameOf(match);
    for (const Match &between : {match, matchAt(0, 10, true), matchAt(10, 0, true)}) {
        frameOf(between);
        QCOMPARE(frameOf(match), points);
    }
}

void tst_Frame::a_picture_drawn_again_leaves_the_stroke_of_its_last_line_data()
{
    a_picture_drawn_again_is_the_same_data();
}

void tst_Frame::a_picture_drawn_again_leaves_the_stroke_of_its_last_line()
{
    QFETCH(Match, match);
    // The lines share one stroke buffer, which a following line may continue: after every picture
    // it contains the picture's last stroke.
    QList<FramePoint> expected = strokesOf(frameOf(match)).constLast();
    expected.removeLast();
    expected += {at(7, 8, 1), travel(7, 8)};
    for (int times = 0; times < 3; ++times) {
        frameOf(match);
        QCOMPARE(drawnLine({0, 0}, {7, 8}, -1, LineEnd), expected);
        drawnLine({0, 0}, {0, 0}, 0, LineBegin); // clears it
    }
}

void tst_Frame::a_frame_is_appended_to_the_list()
{
    BadBey bey;
    bey.points = {at(1, 2)};
    composeFrame(matchAt(0, 0, false), bey);
    QCOMPARE(bey.points.size(), 176);
    QCOMPARE(bey.points.first(), at(1, 2));
}

void tst_Frame::a_frame_that_exceeds_the_limit_clears_the_list_data()
{
    QTest::addColumn<Match>("match");
    QTest::addColumn<int>("before");
    for (const int before : {7500, 8017, 8018, 8100, 8192}) {
        QTest::addRow("in play after %d", before) << matchAt(0, 0, false) << before;
        QTest::addRow("won after %d", before) << matchAt(10, 0, true) << before;
    }
}

void tst_Frame::a_frame_that_exceeds_the_limit_clears_the_list()
{
    QFETCH(Match, match);
    QFETCH(int, before);
    QList<FramePoint> expected(before, at(1, 2));
    for (const auto &stroke : strokesOf(frameOf(match))) {
        expected += stroke;
        if (expected.size() > 8192)
            expected.clear();
    }
    BadBey bey;
    bey.points = QList<FramePoint>(before, at(1, 2));
    composeFrame(match, bey);
    QCOMPARE(bey.points, expected);
}

void tst_Frame::every_point_is_in_the_hosts_range_whatever_the_match_data()
{
    QTest::addColumn<Match>("match");
    for (const qint32 score : {0, 10, 11, -1, highest, lowest}) {
        for (const bool pending : {true, false}) {
            Match match = matchAt(score, score, pending);
            match.ballPos = {score, lowest};
            QTest::addRow("scores of %d, %s", score, pending ? "pending" : "in play") << match;
        }
    }
    Match outside = matchAt(0, 0, false);
    outside.ballPos = {highest, highest};
    outside.leftPaddle.y = highest;
    outside.rightPaddle.y = lowest;
    QTest::addRow("everything outside") << outside;
}

void tst_Frame::every_point_is_in_the_hosts_range_whatever_the_match()
{
    QFETCH(Match, match);
    const auto points = frameOf(match);
    QVERIFY(points.size() >= qsizetype(2) * 53);
    for (const FramePoint &point : points) {
        QVERIFY(point.x >= -32768 && point.x <= 32767);
        QVERIFY(point.y >= -32768 && point.y <= 32767);
        QCOMPARE(point.z, 0);
        QVERIFY(point.flags == 0 || point.flags == 1 || point.flags == 3);
        QCOMPARE(point.color == 0, point.flags == 3);
    }
}

QTEST_GUILESS_MAIN(tst_Frame)

#include "tst_frame.moc"
