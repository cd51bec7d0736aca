#include "badbey.h"
#include "gamefixture.h"

#include <QMetaMethod>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

const QString load = u"LoadLibrary BEYONDIOx64.dll"_s;

} // namespace

class tst_Tick : public QObject
{
    Q_OBJECT

private slots:
    void the_signals_and_slots_are_in_order();
    void a_new_game_has_loaded_the_library_and_waits_for_its_first_load();
    void a_shown_game_sends_a_frame_on_every_third_tick();
    void the_match_moves_on_every_tick();
    void the_paddles_move_before_the_ball();
    void a_frame_in_play_has_175_points_and_one_that_waits_shows_the_scores();
    void a_point_logs_the_scorer_and_the_score_data();
    void a_point_logs_the_scorer_and_the_score();
    void a_hidden_game_sends_an_empty_frame_on_every_tick_and_does_not_move();
    void a_hidden_game_sends_the_points_that_are_in_the_list();
    void without_a_zone_nothing_is_sent_and_the_match_continues();
    void without_a_host_a_tick_does_nothing();
    void a_lost_host_freezes_the_match_until_it_is_back();
    void output_zones_and_zone_reach_the_host();
    void without_the_library_the_host_is_never_called();
};

void tst_Tick::the_signals_and_slots_are_in_order()
{
    QByteArrayList signatures;
    const QMetaObject &meta = Pong::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        signatures.append(meta.method(i).methodSignature());
    QCOMPARE(signatures,
        (QByteArrayList{
            "killThread()", "beyCoStatus(BeyondState)", "FirstLoad()", "UpdatePongDisplay()"}));
}

void tst_Tick::a_new_game_has_loaded_the_library_and_waits_for_its_first_load()
{
    FakeHost host;
    const Pong pong;
    QCOMPARE(host.takeCalls(), QStringList{load});
    QCOMPARE(pong.thread(), QThread::currentThread());
    QCOMPARE(pong.binding()->parent(), &pong);
    QVERIFY(!pong.gameShown);
    QVERIFY(pong.pointPending);
}

void tst_Tick::a_shown_game_sends_a_frame_on_every_third_tick()
{
    Game game;
    game.tickToFrame();
    for (int frame = 1; frame <= 10; ++frame) {
        game.tick(2);
        QCOMPARE(game.host.takeCalls(), QStringList());
        game.tick();
        QCOMPARE(game.host.takeCalls().size(), 1);
    }
}

void tst_Tick::the_match_moves_on_every_tick()
{
    Game game;
    game.play();
    game.pong.setPaddleInput(0, 63);
    game.pong.setPaddleInput(1, -64);
    for (int tick = 1; tick <= 10; ++tick) {
        game.tick();
        QCOMPARE(game.pong.ballPos, (Point{-31200 + tick * 106, 0}));
        QCOMPARE(game.pong.leftPaddle.y, tick * 63);
        QCOMPARE(game.pong.rightPaddle.y, tick * -64);
    }
}

void tst_Tick::the_paddles_move_before_the_ball()
{
    Game game;
    game.pong.setPaddleInput(0, 50);
    game.tick();
    QCOMPARE(game.pong.ballPos, (Point{-31200, 50}));
}

void tst_Tick::a_frame_in_play_has_175_points_and_one_that_waits_shows_the_scores()
{
    Game game;
    game.tickToFrame();
    game.tick(3);
    // Two zeros, the dash and the field.
    QCOMPARE(game.host.takeCalls(), QStringList{sent(0, 2 * 86 + 15 + 152)});
    game.pong.requestStart(0);
    game.tick(3);
    QCOMPARE(game.host.takeCalls(), QStringList{sent(0, 175)});
    game.pong.requestStart(0);
    game.tick(3);
    QCOMPARE(game.host.takeCalls(), QStringList{sent(0, 175)});
    const auto frames = game.host.takeFrames();
    QCOMPARE(frames.last().points[1].x, -31200.0F + 3 * 106 + 800);
}

void tst_Tick::a_point_logs_the_scorer_and_the_score_data()
{
    QTest::addColumn<int>("loser");
    QTest::addColumn<QStringList>("expected");
    QTest::addRow("left misses") << 0 << QStringList{u"Right scores"_s, u"Score LR = 3-6"_s};
    QTest::addRow("right misses") << 1 << QStringList{u"Left scores"_s, u"Score LR = 4-5"_s};
}

void tst_Tick::a_point_logs_the_scorer_and_the_score()
{
    QFETCH(int, loser);
    Game game;
    game.play();
    game.pong.leftScore = 3;
    game.pong.rightScore = 5;
    game.pong.ballPos = {loser == 0 ? -31190 : 31190, 9000};
    game.pong.ballVx = loser == 0 ? -106.0F : 106.0F;
    game.tick();
    QTEST(game.lines.takeAll(), "expected");
    game.tick(10);
    QCOMPARE(game.lines.takeAll(), QStringList());
}

void tst_Tick::a_hidden_game_sends_an_empty_frame_on_every_tick_and_does_not_move()
{
    Game game;
    game.play();
    game.tickToFrame();
    game.pong.setPaddleInput(0, 63);
    game.tick();
    const Point ball = game.pong.ballPos;
    game.pong.gameShown = false;
    for (int tick = 0; tick < 10; ++tick) {
        game.tick();
        QCOMPARE(game.host.takeCalls(), QStringList{sent(0, 0)});
    }
    QCOMPARE(game.pong.ballPos, ball);
    QCOMPARE(game.pong.leftPaddle.y, 63);
    // Shown again, it continues where it stopped: two more ticks to the frame.
    game.pong.gameShown = true;
    game.tick();
    QCOMPARE(game.host.takeCalls(), QStringList());
    game.tick();
    QCOMPARE(game.host.takeCalls(), QStringList{sent(0, 175)});
    QCOMPARE(game.pong.ballPos, (Point{ball.x + 2 * 106, ball.y}));
}

void tst_Tick::a_hidden_game_sends_the_points_that_are_in_the_list()
{
    Game game;
    game.pong.gameShown = false;
    game.pong.findChild<BadBey *>()->points.fill({1, 2, 0, 3, 0}, 7);
    game.tick(2);
    QCOMPARE(game.host.takeCalls(), (QStringList{sent(0, 7), sent(0, 0)}));
}

void tst_Tick::without_a_zone_nothing_is_sent_and_the_match_continues()
{
    Game game;
    game.pong.setZone(-1);
    game.play();
    game.tick(30);
    QCOMPARE(game.host.takeCalls(), QStringList());
    QCOMPARE(game.pong.ballPos, (Point{-31200 + 30 * 106, 0}));
    QVERIFY(game.pong.binding()->points.isEmpty());
    game.pong.gameShown = false;
    game.tick(30);
    QCOMPARE(game.host.takeCalls(), QStringList());
}

void tst_Tick::without_a_host_a_tick_does_nothing()
{
    Game game(false);
    game.pong.setPaddleInput(0, 63);
    for (const bool shown : {true, false}) {
        game.pong.gameShown = shown;
        game.tick(9);
        QCOMPARE(game.host.takeCalls(), QStringList());
        QCOMPARE(game.pong.leftPaddle.y, 0);
        QCOMPARE(game.pong.ballPos, (Point{0, 0}));
    }
}

void tst_Tick::a_lost_host_freezes_the_match_until_it_is_back()
{
    Game game;
    game.play();
    game.tickToFrame();
    game.tick();
    const Point ball = game.pong.ballPos;
    game.host.ready = 0;
    game.pong.checkHost();
    game.host.takeCalls();
    game.tick(10);
    QCOMPARE(game.pong.ballPos, ball);
    QCOMPARE(game.host.takeCalls(), QStringList());
    game.host.ready = 1;
    game.pong.checkHost();
    game.host.takeCalls();
    game.tick(2);
    QCOMPARE(game.pong.ballPos, (Point{ball.x + 2 * 106, ball.y}));
    QCOMPARE(game.host.takeCalls(), QStringList{sent(0, 175)});
}

void tst_Tick::output_zones_and_zone_reach_the_host()
{
    Game game;
    game.host.zones = 5;
    game.pong.enableOutput(true);
    game.pong.enableOutput(false);
    QCOMPARE(game.pong.zoneCount(), 5);
    game.pong.setZone(4);
    game.pong.gameShown = false;
    game.tick();
    QCOMPARE(game.host.takeCalls(),
        (QStringList{u"ldbEnableLaserOutput"_s, u"ldbDisableLaserOutput"_s, u"ldbGetZoneCount"_s,
            sent(4, 0)}));
}

void tst_Tick::without_the_library_the_host_is_never_called()
{
    FakeHost host;
    host.installed = false;
    Pong pong;
    host.takeCalls();
    pong.enableOutput(true);
    QCOMPARE(pong.zoneCount(), 0);
    pong.UpdatePongDisplay();
    QCOMPARE(host.takeCalls(), QStringList());
}

QTEST_GUILESS_MAIN(tst_Tick)

#include "tst_tick.moc"
