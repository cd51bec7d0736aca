#include "match.h"
#include "matchfixture.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr auto lowest = std::numeric_limits<qint32>::min();
constexpr auto highest = std::numeric_limits<qint32>::max();
constexpr auto infinity = std::numeric_limits<float>::infinity();
constexpr auto noNumber = std::numeric_limits<float>::quiet_NaN();
constexpr auto largest = std::numeric_limits<float>::max();

} // namespace

class tst_Ball : public QObject
{
    Q_OBJECT

private slots:
    void a_served_ball_has_the_full_speed_straight_across_data();
    void a_served_ball_has_the_full_speed_straight_across();
    void a_held_ball_follows_its_paddle();
    void a_flying_ball_is_truncated_to_whole_units_toward_zero_data();
    void a_flying_ball_is_truncated_to_whole_units_toward_zero();
    void a_border_turns_the_ball_without_moving_it_data();
    void a_border_turns_the_ball_without_moving_it();
    void a_paddle_reaches_5000_units_each_way_data();
    void a_paddle_reaches_5000_units_each_way();
    void an_end_begins_at_31200_data();
    void an_end_begins_at_31200();
    void a_miss_gives_the_point_to_the_other_side_and_the_serve_to_this_one_data();
    void a_miss_gives_the_point_to_the_other_side_and_the_serve_to_this_one();
    void at_speed_zero_the_ball_does_not_move();
    void no_speed_step_or_velocity_breaks_the_match_data();
    void no_speed_step_or_velocity_breaks_the_match();
};

void tst_Ball::a_served_ball_has_the_full_speed_straight_across_data()
{
    QTest::addColumn<qint32>("speed");
    QTest::addColumn<float>("expected");
    // 53/10 of the speed, rounded to single precision.
    QTest::addRow("1") << 1 << 0x1.533334p+2F;
    QTest::addRow("7") << 7 << 0x1.28ccccp+5F;
    QTest::addRow("10") << 10 << 53.0F;
    QTest::addRow("19") << 19 << 0x1.92ccccp+6F;
    QTest::addRow("20") << 20 << 106.0F;
    QTest::addRow("21") << 21 << 0x1.bd3332p+6F;
    QTest::addRow("30") << 30 << 159.0F;
    QTest::addRow("100") << 100 << 530.0F;
    QTest::addRow("the highest") << highest << 0x1.533334p+33F;
    QTest::addRow("negative") << -20 << -106.0F;
    QTest::addRow("the lowest") << lowest << -0x1.533334p+33F;
}

void tst_Ball::a_served_ball_has_the_full_speed_straight_across()
{
    QFETCH(qint32, speed);
    QFETCH(float, expected);
    for (const int side : {0, 1}) {
        Match match;
        match.servePhase = side;
        match.ballSpeed = speed;
        match.ballVy = 17.0F;
        QVERIFY(!match.moveBall());
        COMPARE_BITS(match.ballVx, side == 0 ? expected : -expected);
        QCOMPARE(match.ballVy, 0.0F);
    }
}

void tst_Ball::a_held_ball_follows_its_paddle()
{
    for (const int side : {0, 1}) {
        Match match;
        match.servePhase = side;
        for (const qint32 y : {0, 640, -27000, 27000}) {
            paddleOf(match, side).y = y;
            paddleOf(match, 1 - side).y = y / 2;
            QVERIFY(!match.moveBall());
            QCOMPARE(match.ballPos, (Point{directionOf(side) * 31200, y}));
        }
        QCOMPARE(int(match.servePhase), side);
    }
}

void tst_Ball::a_flying_ball_is_truncated_to_whole_units_toward_zero_data()
{
    QTest::addColumn<qint32>("from");
    QTest::addColumn<float>("velocity");
    QTest::addColumn<qint32>("to");
    QTest::addRow("whole") << 100 << 106.0F << 206;
    QTest::addRow("positive") << 100 << 5.75F << 105;
    QTest::addRow("negative") << -100 << -5.75F << -105;
    QTest::addRow("up to zero") << -5 << 5.3F << 0;
    QTest::addRow("down to zero") << 5 << -5.3F << 0;
    QTest::addRow("short of zero from below") << -10 << 5.3F << -4;
    QTest::addRow("short of zero from above") << 10 << -5.3F << 4;
    QTest::addRow("less than a unit up") << 10 << 0.9F << 10;
    QTest::addRow("less than a unit down") << 10 << -0.1F << 9;
    QTest::addRow("single precision rounds up") << 30000 << 0.9993F << 30001;
    QTest::addRow("NaN") << 1234 << noNumber << 1234;
}

void tst_Ball::a_flying_ball_is_truncated_to_whole_units_toward_zero()
{
    QFETCH(qint32, from);
    QFETCH(float, velocity);
    QFETCH(qint32, to);
    Match across = inPlay({from, 77}, velocity, 0.0F);
    QVERIFY(!across.moveBall());
    QCOMPARE(across.ballPos, (Point{to, 77}));
    Match upward = inPlay({77, from}, 0.0F, velocity);
    QVERIFY(!upward.moveBall());
    QCOMPARE(upward.ballPos, (Point{77, to}));
}

void tst_Ball::a_border_turns_the_ball_without_moving_it_data()
{
    QTest::addColumn<qint32>("y");
    QTest::addColumn<float>("vy");
    QTest::addColumn<qint32>("yAfter");
    QTest::addColumn<float>("vyAfter");
    QTest::addRow("one unit short of the top") << 31099 << 100.0F << 31199 << 100.0F;
    QTest::addRow("at the top") << 31100 << 100.0F << 31200 << -100.0F;
    QTest::addRow("beyond the top") << 31190 << 100.0F << 31290 << -100.0F;
    QTest::addRow("beyond the top on the way back") << 31390 << -100.0F << 31290 << -100.0F;
    QTest::addRow("one unit short of the bottom") << -31099 << -100.0F << -31199 << -100.0F;
    QTest::addRow("at the bottom") << -31100 << -100.0F << -31200 << 100.0F;
    QTest::addRow("beyond the bottom") << -31190 << -100.0F << -31290 << 100.0F;
    QTest::addRow("beyond the bottom on the way back") << -31390 << 100.0F << -31290 << 100.0F;
}

void tst_Ball::a_border_turns_the_ball_without_moving_it()
{
    QFETCH(qint32, y);
    QFETCH(float, vy);
    Match match = inPlay({0, y}, 106.0F, vy);
    QVERIFY(!match.moveBall());
    QTEST(match.ballPos.y, "yAfter");
    QTEST(match.ballVy, "vyAfter");
    QCOMPARE(match.ballPos.x, 106);
    QCOMPARE(match.ballVx, 106.0F);
}

void tst_Ball::a_paddle_reaches_5000_units_each_way_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<qint32>("paddleY");
    QTest::addColumn<qint32>("offset");
    QTest::addColumn<bool>("hit");
    for (const int side : {0, 1}) {
        for (const qint32 paddleY : {0, 1, 12345, 27000, -27000}) {
            for (const qint32 offset : {0, 1, 4999, 5000, 5001, 10000}) {
                for (const int sign : {1, -1}) {
                    QTest::addRow("%s paddle at %d, %d off", sideNames.at(size_t(side)), paddleY,
                        sign * offset)
                        << side << paddleY << sign * offset << (offset <= 5000);
                }
            }
        }
    }
}

void tst_Ball::a_paddle_reaches_5000_units_each_way()
{
    QFETCH(int, side);
    QFETCH(qint32, paddleY);
    QFETCH(qint32, offset);
    QFETCH(bool, hit);
    const int toward = directionOf(side);
    Match match =
        inPlay({toward * 31150, paddleY + offset}, static_cast<float>(toward * 106), 0.0F);
    paddleOf(match, side).y = paddleY;
    const auto scorer = match.moveBall();
    QCOMPARE(scorer.has_value(), !hit);
    QCOMPARE(bool(match.pointPending), !hit);
    QCOMPARE(match.ballPos, (Point{toward * (hit ? 31200 : 31256), paddleY + offset}));
    QVERIFY(match.ballVx * static_cast<float>(toward) < 0.0F);
}

void tst_Ball::an_end_begins_at_31200_data()
{
    QTest::addColumn<qint32>("x");
    QTest::addColumn<bool>("end");
    QTest::addRow("one unit short of it") << 31199 << false;
    QTest::addRow("at it") << 31200 << true;
    QTest::addRow("one unit beyond it") << 31201 << true;
}

void tst_Ball::an_end_begins_at_31200()
{
    QFETCH(qint32, x);
    QFETCH(bool, end);
    for (const int side : {0, 1}) {
        const int toward = directionOf(side);
        Match match = inPlay({toward * (x - 100), 6000}, static_cast<float>(toward * 100), 0.0F);
        QCOMPARE(match.moveBall().has_value(), end);
        QCOMPARE(match.ballVx, static_cast<float>(end ? -toward * 100 : toward * 100));
    }
}

void tst_Ball::a_miss_gives_the_point_to_the_other_side_and_the_serve_to_this_one_data()
{
    QTest::addColumn<int>("side");
    QTest::addRow("left") << 0;
    QTest::addRow("right") << 1;
}

void tst_Ball::a_miss_gives_the_point_to_the_other_side_and_the_serve_to_this_one()
{
    QFETCH(int, side);
    const int toward = directionOf(side);
    Match match = inPlay({toward * 31150, 9000}, static_cast<float>(toward * 106), 33.5F);
    match.leftScore = 3;
    match.rightScore = 5;
    paddleOf(match, side).y = -200;
    QCOMPARE(match.moveBall(), std::optional(otherSide(*sideOfNumber(side))));
    QVERIFY(match.pointPending);
    QCOMPARE(int(match.leftScore), side == 0 ? 3 : 4);
    QCOMPARE(int(match.rightScore), side == 0 ? 6 : 5);
    QCOMPARE(int(match.servePhase), side);
    // The ball stays beyond the paddle, turned, until the next step moves it to the server.
    QCOMPARE(match.ballPos, (Point{toward * 31256, 9033}));
    QCOMPARE(match.ballVx, static_cast<float>(-toward * 106));
    QCOMPARE(match.ballVy, 33.5F);
    QVERIFY(!match.moveBall());
    QCOMPARE(match.ballPos, (Point{toward * 31200, -200}));
    QCOMPARE(match.leftScore + match.rightScore, 9);
}

void tst_Ball::at_speed_zero_the_ball_does_not_move()
{
    for (const int side : {0, 1}) {
        Match match;
        match.gameShown = true;
        match.pointPending = false;
        match.servePhase = side;
        match.ballSpeed = 0;
        match.moveBall();
        match.requestStart(side);
        QCOMPARE(int(match.servePhase), int(InPlay));
        for (int step = 0; step < 100; ++step)
            QVERIFY(!match.moveBall());
        QCOMPARE(match.ballPos, (Point{directionOf(side) * 31200, 0}));
    }
}

void tst_Ball::no_speed_step_or_velocity_breaks_the_match_data()
{
    QTest::addColumn<qint32>("speed");
    QTest::addColumn<qint32>("paddleStep");
    for (const qint32 speed : {lowest, -20, -1, 0, 1, highest}) {
        for (const qint32 step : {lowest, 0, highest})
            QTest::addRow("speed %d, step %d", speed, step) << speed << step;
    }
}

void tst_Ball::no_speed_step_or_velocity_breaks_the_match()
{
    QFETCH(qint32, speed);
    QFETCH(qint32, paddleStep);
    const auto velocities = {noNumber, infinity, -infinity, largest, -largest, 1e-40F, 0.0F, -0.0F};
    for (const float vx : velocities) {
        for (const float vy : velocities) {
            Match match = inPlay({31000, -31000}, vx, vy);
            match.ballSpeed = speed;
            match.setPaddleInput(0, paddleStep);
            match.setPaddleInput(1, paddleStep);
            for (int tick = 0; tick < 50; ++tick) {
                match.movePaddles();
                match.moveBall();
                match.requestStart(tick % 2);
                QVERIFY(std::abs(match.leftPaddle.y) <= 27000);
                QVERIFY(std::abs(match.rightPaddle.y) <= 27000);
                QVERIFY(match.servePhase >= 0 && match.servePhase <= 2);
                QVERIFY(match.leftScore >= 0 && match.leftScore <= 10);
                QVERIFY(match.rightScore >= 0 && match.rightScore <= 10);
            }
            // In any case a reset restores the match.
            match.resetMatch();
            match.ballSpeed = 20;
            match.moveBall();
            QCOMPARE(match.ballPos, (Point{-31200, match.leftPaddle.y}));
            QCOMPARE(match.ballVx, 106.0F);
            QCOMPARE(match.ballVy, 0.0F);
        }
    }
}

QTEST_GUILESS_MAIN(tst_Ball)

#include "tst_ball.moc"
