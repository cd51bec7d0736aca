#include "match.h"
#include "matchfixture.h"

#include <QTest>

#include <limits>

namespace {

constexpr auto lowest = std::numeric_limits<qint32>::min();
constexpr auto highest = std::numeric_limits<qint32>::max();

/// The state that a start press or a reset can change.
struct Standing
{
    qint32 phase;
    qint32 left;
    qint32 right;
    bool pending;

    bool operator==(const Standing &) const = default;
};

Standing standingOf(const Match &match)
{
    return {match.servePhase, match.leftScore, match.rightScore, match.pointPending};
}

Match matchWith(Standing standing, bool shown)
{
    Match match;
    match.servePhase = standing.phase;
    match.leftScore = standing.left;
    match.rightScore = standing.right;
    match.pointPending = standing.pending;
    match.gameShown = shown;
    return match;
}

char *toString(const Standing &standing)
{
    return QTest::toString(QStringLiteral("phase %1, %2-%3%4")
                               .arg(standing.phase)
                               .arg(standing.left)
                               .arg(standing.right)
                               .arg(standing.pending ? ", pending" : ""));
}

} // namespace

Q_DECLARE_METATYPE(Standing)

class tst_Match : public QObject
{
    Q_OBJECT

private slots:
    void positions_are_equal_only_if_both_coordinates_are();
    void a_new_match_waits_for_the_left_serve_with_the_scores_shown();
    void each_side_has_its_own_paddle_input();
    void a_paddle_moves_by_its_step_and_stops_at_27000_data();
    void a_paddle_moves_by_its_step_and_stops_at_27000();
    void a_paddle_input_stays_in_force();
    void the_effect_of_a_start_press_depends_on_the_score_and_serve_data();
    void the_effect_of_a_start_press_depends_on_the_score_and_serve();
    void a_press_on_an_invalid_side_changes_nothing();
    void a_launched_ball_flies_off_the_paddle();
    void a_reset_in_play_holds_the_ball_on_the_left_paddle_at_once();
    void a_reset_starts_a_new_match_from_any_state_data();
    void a_reset_starts_a_new_match_from_any_state();
    void ten_points_end_a_match_data();
    void ten_points_end_a_match();
    void a_won_match_leads_to_a_new_one_in_two_presses();
};

void tst_Match::positions_are_equal_only_if_both_coordinates_are()
{
    const Point position = {1, 2};
    QVERIFY(position == Point(position));
    QVERIFY(position != (Point{1, 3}));
    QVERIFY(position != (Point{2, 2}));
}

void tst_Match::a_new_match_waits_for_the_left_serve_with_the_scores_shown()
{
    const Match match;
    QCOMPARE(match.ballPos, (Point{0, 0}));
    QCOMPARE(match.leftPaddle, (Point{-32000, 0}));
    QCOMPARE(match.rightPaddle, (Point{32000, 0}));
    QCOMPARE(int(match.leftStep), 0);
    QCOMPARE(int(match.rightStep), 0);
    QCOMPARE(match.ballVx, 53.0F);
    QCOMPARE(match.ballVy, 0.0F);
    QCOMPARE(int(match.ballSpeed), 20);
    QVERIFY(!match.gameShown);
    QCOMPARE(standingOf(match), (Standing{ServeLeft, 0, 0, true}));
    QVERIFY(!match.isOver());
}

void tst_Match::each_side_has_its_own_paddle_input()
{
    Match match;
    match.setPaddleInput(0, 63);
    match.setPaddleInput(1, -64);
    for (const int noSide : {-1, 2, lowest, highest})
        match.setPaddleInput(noSide, 1000);
    QCOMPARE(int(match.leftStep), 63);
    QCOMPARE(int(match.rightStep), -64);
}

void tst_Match::a_paddle_moves_by_its_step_and_stops_at_27000_data()
{
    QTest::addColumn<qint32>("y");
    QTest::addColumn<qint32>("step");
    QTest::addColumn<qint32>("yAfter");
    QTest::addRow("up") << 0 << 63 << 63;
    QTest::addRow("down") << 0 << -64 << -64;
    QTest::addRow("not at all") << 1234 << 0 << 1234;
    QTest::addRow("to the top") << 26937 << 63 << 27000;
    QTest::addRow("past the top") << 26938 << 63 << 27000;
    QTest::addRow("off the top") << 27000 << -1 << 26999;
    QTest::addRow("to the bottom") << -26936 << -64 << -27000;
    QTest::addRow("past the bottom") << -26937 << -64 << -27000;
    QTest::addRow("off the bottom") << -27000 << 1 << -26999;
    QTest::addRow("the highest step") << 27000 << highest << 27000;
    QTest::addRow("the lowest step") << -27000 << lowest << -27000;
    QTest::addRow("from end to end") << 27000 << -54000 << -27000;
}

void tst_Match::a_paddle_moves_by_its_step_and_stops_at_27000()
{
    QFETCH(qint32, y);
    QFETCH(qint32, step);
    for (const int side : {0, 1}) {
        Match match;
        paddleOf(match, side).y = y;
        match.setPaddleInput(side, step);
        match.movePaddles();
        QTEST(paddleOf(match, side).y, "yAfter");
        QCOMPARE(paddleOf(match, side).x, directionOf(side) * 32000);
        QCOMPARE(paddleOf(match, 1 - side), (Point{directionOf(1 - side) * 32000, 0}));
    }
}

void tst_Match::a_paddle_input_stays_in_force()
{
    Match match;
    match.setPaddleInput(0, 10);
    match.setPaddleInput(1, -7);
    for (int tick = 0; tick < 100; ++tick)
        match.movePaddles();
    QCOMPARE(match.leftPaddle.y, 1000);
    QCOMPARE(match.rightPaddle.y, -700);
}

void tst_Match::the_effect_of_a_start_press_depends_on_the_score_and_serve_data()
{
    QTest::addColumn<Standing>("before");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<int>("side");
    QTest::addColumn<Standing>("after");
    struct Row
    {
        const char *name;
        Standing before;
        Standing afterLeft; ///< after a press of the left player
        Standing afterRight;
        bool shown = true;
    };
    const Row rows[] = {
        {"a new match goes to who presses", {0, 0, 0, true}, {0, 0, 0, false}, {1, 0, 0, false}},
        {"whoever was to serve it", {1, 0, 0, true}, {0, 0, 0, false}, {1, 0, 0, false}},
        {"a new match, hidden", {0, 0, 0, true}, {0, 0, 0, false}, {1, 0, 0, false}, false},
        {"left lost the point", {0, 0, 1, true}, {0, 0, 1, false}, {0, 0, 1, false}},
        {"right lost the point", {1, 1, 0, true}, {1, 1, 0, false}, {1, 1, 0, false}},
        {"late in the match, hidden", {1, 9, 9, true}, {1, 9, 9, false}, {1, 9, 9, false}, false},
        {"left serves", {0, 0, 0, false}, {2, 0, 0, false}, {0, 0, 0, false}},
        {"right serves", {1, 3, 4, false}, {1, 3, 4, false}, {2, 3, 4, false}},
        {"left cannot serve hidden", {0, 2, 2, false}, {0, 2, 2, false}, {0, 2, 2, false}, false},
        {"right cannot serve hidden", {1, 2, 2, false}, {1, 2, 2, false}, {1, 2, 2, false}, false},
        {"in play", {2, 5, 6, false}, {2, 5, 6, false}, {2, 5, 6, false}},
        {"in play, hidden", {2, 5, 6, false}, {2, 5, 6, false}, {2, 5, 6, false}, false},
        {"left has won", {1, 10, 3, true}, {0, 0, 0, true}, {0, 0, 0, true}},
        {"right has won", {0, 9, 10, true}, {0, 0, 0, true}, {0, 0, 0, true}},
        {"right has won, hidden", {0, 0, 10, true}, {0, 0, 0, true}, {0, 0, 0, true}, false},
    };
    for (const Row &row : rows) {
        QTest::addRow("%s: left presses", row.name)
            << row.before << row.shown << 0 << row.afterLeft;
        QTest::addRow("%s: right presses", row.name)
            << row.before << row.shown << 1 << row.afterRight;
    }
}

void tst_Match::the_effect_of_a_start_press_depends_on_the_score_and_serve()
{
    QFETCH(Standing, before);
    QFETCH(bool, shown);
    QFETCH(int, side);
    Match match = matchWith(before, shown);
    match.requestStart(side);
    QTEST(standingOf(match), "after");
    QCOMPARE(match.ballPos, (Point{0, 0}));
}

void tst_Match::a_press_on_an_invalid_side_changes_nothing()
{
    const Standing standings[] = {{0, 0, 0, true}, {1, 4, 2, true}, {0, 10, 2, true},
        {0, 0, 0, false}, {1, 4, 2, false}, {2, 4, 2, false}};
    for (const Standing &standing : standings) {
        for (const int noSide : {-1, 2, lowest, highest}) {
            Match match = matchWith(standing, true);
            match.requestStart(noSide);
            QCOMPARE(standingOf(match), standing);
        }
    }
}

void tst_Match::a_launched_ball_flies_off_the_paddle()
{
    for (const int side : {0, 1}) {
        Match match = matchWith({side, 1, 1, false}, true);
        paddleOf(match, side).y = 4321;
        match.moveBall();
        match.requestStart(side);
        match.moveBall();
        QCOMPARE(match.ballPos, (Point{directionOf(side) * (31200 - 106), 4321}));
        QCOMPARE(match.ballVx, static_cast<float>(-directionOf(side) * 106));
    }
}

void tst_Match::a_reset_in_play_holds_the_ball_on_the_left_paddle_at_once()
{
    Match match = inPlay({12000, -7000}, 90.0F, 50.0F);
    match.leftScore = 4;
    match.rightScore = 7;
    match.leftPaddle.y = 2500;
    match.resetMatch();
    QCOMPARE(standingOf(match), (Standing{ServeLeft, 0, 0, true}));
    match.moveBall();
    QCOMPARE(match.ballPos, (Point{-31200, 2500}));
    QCOMPARE(match.ballVy, 0.0F);
    QCOMPARE(standingOf(match), (Standing{ServeLeft, 0, 0, true}));
}

void tst_Match::a_reset_starts_a_new_match_from_any_state_data()
{
    QTest::addColumn<Standing>("before");
    QTest::addRow("new") << Standing{0, 0, 0, true};
    QTest::addRow("serve") << Standing{1, 2, 3, false};
    QTest::addRow("scores shown") << Standing{1, 2, 3, true};
    QTest::addRow("play") << Standing{2, 9, 9, false};
    QTest::addRow("won") << Standing{1, 10, 9, true};
}

void tst_Match::a_reset_starts_a_new_match_from_any_state()
{
    QFETCH(Standing, before);
    for (const bool shown : {true, false}) {
        Match match = matchWith(before, shown);
        match.leftPaddle.y = 100;
        match.setPaddleInput(1, 5);
        match.resetMatch();
        QCOMPARE(standingOf(match), (Standing{ServeLeft, 0, 0, true}));
        // The players keep their paddles.
        QCOMPARE(match.leftPaddle.y, 100);
        QCOMPARE(int(match.rightStep), 5);
        QCOMPARE(bool(match.gameShown), shown);
    }
}

void tst_Match::ten_points_end_a_match_data()
{
    QTest::addColumn<int>("loser");
    QTest::addRow("right wins") << 0;
    QTest::addRow("left wins") << 1;
}

void tst_Match::ten_points_end_a_match()
{
    QFETCH(int, loser);
    const int toward = directionOf(loser);
    Match match;
    for (int point = 1; point <= 10; ++point) {
        QVERIFY(!match.isOver());
        match.servePhase = InPlay;
        match.ballPos = {toward * 31100, 5001};
        match.ballVx = static_cast<float>(toward * 106);
        QCOMPARE(match.moveBall(), std::optional(otherSide(*sideOfNumber(loser))));
        QCOMPARE(int(loser == 0 ? match.rightScore : match.leftScore), point);
        QCOMPARE(int(loser == 0 ? match.leftScore : match.rightScore), 0);
    }
    QVERIFY(match.isOver());
}

void tst_Match::a_won_match_leads_to_a_new_one_in_two_presses()
{
    for (const int side : {0, 1}) {
        Match match = matchWith({ServeRight, 10, 4, true}, true);
        for (int tick = 0; tick < 100; ++tick) {
            match.movePaddles();
            QVERIFY(!match.moveBall());
        }
        QVERIFY(match.isOver());
        match.requestStart(side);
        QCOMPARE(standingOf(match), (Standing{ServeLeft, 0, 0, true}));
        match.requestStart(side);
        QCOMPARE(standingOf(match), (Standing{side, 0, 0, false}));
        match.moveBall();
        QCOMPARE(match.ballPos.x, directionOf(side) * 31200);
        match.requestStart(side);
        QCOMPARE(int(match.servePhase), int(InPlay));
    }
}

QTEST_GUILESS_MAIN(tst_Match)

#include "tst_match.moc"
