#include "allocations.h"
#include "fakehost.h"
#include "pong.h"

#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <memory>

class tst_Allocations : public QObject
{
    Q_OBJECT

private slots:
    void the_counter_counts();
    void a_warm_tick_allocates_nothing_data();
    void a_warm_tick_allocates_nothing();
};

void tst_Allocations::the_counter_counts()
{
    const long before = allocations();
    const std::unique_ptr<int> one(new int(1));
    QCOMPARE(allocations(), before + 1);
    QList<int> list;
    list.reserve(100);
    QCOMPARE(allocations(), before + 2);
}

void tst_Allocations::a_warm_tick_allocates_nothing_data()
{
    QTest::addColumn<qint32>("phase");
    QTest::addColumn<qint32>("leftScore");
    QTest::addColumn<bool>("pending");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<int>("zone");
    QTest::addColumn<int>("frames"); ///< in 10,000 ticks
    QTest::addRow("in play") << qint32(InPlay) << 0 << false << true << 0 << 3333;
    QTest::addRow("at serve") << qint32(ServeRight) << 3 << false << true << 0 << 3333;
    QTest::addRow("scores") << qint32(ServeLeft) << 9 << true << true << 0 << 3333;
    QTest::addRow("winner") << qint32(ServeRight) << 10 << true << true << 0 << 3333;
    QTest::addRow("hidden") << qint32(InPlay) << 0 << false << false << 0 << 10'000;
    QTest::addRow("no zone") << qint32(InPlay) << 0 << false << true << -1 << 0;
}

void tst_Allocations::a_warm_tick_allocates_nothing()
{
    QFETCH(qint32, phase);
    QFETCH(qint32, leftScore);
    QFETCH(bool, pending);
    QFETCH(bool, shown);
    QFETCH(int, zone);
    QFETCH(int, frames);
    FakeHost host;
    Pong pong;
    pong.checkHost();
    host.recording = false;
    pong.servePhase = phase;
    pong.leftScore = leftScore;
    pong.pointPending = pending;
    pong.gameShown = shown;
    pong.setZone(zone);
    pong.ballVy = 40.0F;
    auto tick = [&pong, n = 0]() mutable {
        // Both players reach every ball, at many offsets, because a scored point would be logged.
        const qint32 offset = ++n % 9000 - 4500;
        const qint32 y = std::clamp(pong.ballPos.y + offset, -27000, 27000);
        pong.leftPaddle.y = y;
        pong.rightPaddle.y = y;
        pong.UpdatePongDisplay();
    };
    for (int warmUp = 0; warmUp < 3; ++warmUp)
        tick();

    const int framesBefore = host.framesSent;
    const long before = allocations();
    for (int i = 0; i < 10'000; ++i)
        tick();
    const long after = allocations();

    QCOMPARE(after - before, 0L);
    QVERIFY(std::abs(host.framesSent - framesBefore - frames) <= 1);
    QCOMPARE(int(pong.leftScore), leftScore);
}

QTEST_GUILESS_MAIN(tst_Allocations)

#include "tst_allocations.moc"
