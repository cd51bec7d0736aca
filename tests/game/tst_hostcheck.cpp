#include "gamefixture.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class tst_HostCheck : public QObject
{
    Q_OBJECT

private slots:
    void a_check_that_finds_the_host_unchanged_reports_nothing();
    void a_host_is_found_from_build_1614_on_data();
    void a_host_is_found_from_build_1614_on();
    void a_lost_host_is_reported_once_data();
    void a_lost_host_is_reported_once();
    void a_host_that_returns_has_its_output_off();
    void the_loss_of_the_host_is_signalled_before_the_frames_stop();
    void a_found_host_is_signalled_when_frames_already_reach_it();
};

void tst_HostCheck::a_check_that_finds_the_host_unchanged_reports_nothing()
{
    Game game;
    game.pong.checkHost();
    QCOMPARE(game.lines.takeAll(), QStringList());
    QCOMPARE(
        game.host.takeCalls(), (QStringList{u"ldbBeyondExeReady"_s, u"ldbGetBeyondVersion"_s}));
    game.host.ready = 0;
    game.pong.checkHost();
    game.lines.takeAll();
    for (int check = 0; check < 3; ++check)
        game.pong.checkHost();
    QCOMPARE(game.lines.takeAll(), QStringList());
}

void tst_HostCheck::a_host_is_found_from_build_1614_on_data()
{
    QTest::addColumn<int>("build");
    QTest::addColumn<QStringList>("lines");
    QTest::addRow("1613") << 1613 << QStringList();
    QTest::addRow("1614") << 1614 << QStringList{u"1614"_s, u"status 2"_s};
    QTest::addRow("1700") << 1700 << QStringList{u"1700"_s, u"status 2"_s};
    QTest::addRow("0") << 0 << QStringList();
    QTest::addRow("-2, which is no missing library") << -2 << QStringList();
    QTest::addRow("the lowest") << std::numeric_limits<int>::min() << QStringList();
}

void tst_HostCheck::a_host_is_found_from_build_1614_on()
{
    QFETCH(int, build);
    QFETCH(QStringList, lines);
    Game game(false);
    game.host.build = build;
    game.pong.checkHost();
    QCOMPARE(game.lines.takeAll(), lines);
    QCOMPARE(game.host.takeCalls(),
        (QStringList{u"ldbBeyondExeReady"_s, u"ldbCreate"_s, u"ldbGetBeyondVersion"_s,
            u"ldbDisableLaserOutput"_s}));
    game.tick(3);
    QCOMPARE(game.host.framesSent > 0, !lines.isEmpty());
}

void tst_HostCheck::a_lost_host_is_reported_once_data()
{
    QTest::addColumn<int>("ready");
    QTest::addColumn<int>("build");
    QTest::addRow("gone") << 0 << 1700;
    QTest::addRow("not exactly ready") << 2 << 1700;
    QTest::addRow("replaced by an older one") << 1 << 1613;
}

void tst_HostCheck::a_lost_host_is_reported_once()
{
    QFETCH(int, ready);
    QFETCH(int, build);
    Game game;
    game.host.ready = ready;
    game.host.build = build;
    game.pong.checkHost();
    QCOMPARE(game.lines.takeAll(), (QStringList{u"status 0"_s, noHost}));
    game.pong.checkHost();
    QCOMPARE(game.lines.takeAll(), QStringList());
    game.host.ready = 1;
    game.host.build = 1800;
    game.pong.checkHost();
    QCOMPARE(game.lines.takeAll(), (QStringList{u"1800"_s, u"status 2"_s}));
}

void tst_HostCheck::a_host_that_returns_has_its_output_off()
{
    Game game;
    game.pong.enableOutput(true);
    QVERIFY(game.host.outputOn);
    game.host.ready = 0;
    game.pong.checkHost();
    game.host.ready = 1;
    game.pong.checkHost();
    QVERIFY(!game.host.outputOn);
}

void tst_HostCheck::the_loss_of_the_host_is_signalled_before_the_frames_stop()
{
    Game game;
    game.pong.gameShown = false;
    int framesMeanwhile = -1;
    QObject::connect(&game.pong, &Pong::beyCoStatus, [&] {
        const int before = game.host.framesSent;
        game.tick();
        framesMeanwhile = game.host.framesSent - before;
    });
    game.host.ready = 0;
    game.pong.checkHost();
    QCOMPARE(framesMeanwhile, 1);
    game.host.takeCalls();
    game.tick();
    QCOMPARE(game.host.takeCalls(), QStringList());
}

void tst_HostCheck::a_found_host_is_signalled_when_frames_already_reach_it()
{
    Game game(false);
    game.pong.gameShown = false;
    int framesMeanwhile = -1;
    QObject::connect(&game.pong, &Pong::beyCoStatus, [&] {
        const int before = game.host.framesSent;
        game.tick();
        framesMeanwhile = game.host.framesSent - before;
    });
    game.pong.checkHost();
    QCOMPARE(framesMeanwhile, 1);
}

QTEST_GUILESS_MAIN(tst_HostCheck)

#include "tst_hostcheck.moc"
