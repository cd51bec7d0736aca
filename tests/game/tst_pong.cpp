#include "badbey.h"
#include "debuglines.h"
#include "fakehost.h"
#include "pong.h"
#include "timerwatch.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString load = u"LoadLibrary BEYONDIOx64.dll"_s;
const QString dark = u"ldbSendFrame 2 0 0 SingleZone 0 points null 100 -1"_s;

/// Lets the game thread finish its posted work, without posting ticks meanwhile.
void settle(Pong &pong)
{
    QMetaObject::invokeMethod(
        &pong, [] {}, Qt::BlockingQueuedConnection);
}

/// A host call that stalls until the gate is opened.
struct Stall
{
    explicit Stall(FakeHost &host)
    {
        host.onSendFrame = [this] {
            entered.release();
            gate.acquire();
        };
    }
    void open() { gate.release(1'000'000); }

    QSemaphore entered;
    QSemaphore gate;
};

} // namespace

class tst_Pong : public QObject
{
    Q_OBJECT

private slots:
    void ticks_and_host_checks_run_on_the_game_thread();
    void a_host_that_starts_later_is_found();
    void without_the_library_the_game_asks_for_exit_once_and_reports_no_state();
    void ticks_do_not_pile_up_behind_a_host_call();

    void the_last_frame_is_empty_before_session_and_library_are_closed();
    void a_game_destroyed_during_a_stalled_host_call_blanks_the_laser();
    void a_game_that_never_loaded_unloads_the_library();
    void a_game_without_a_host_ends_without_a_frame();
    void nothing_of_the_game_outlives_it();
};

void tst_Pong::ticks_and_host_checks_run_on_the_game_thread()
{
    FakeHost host;
    std::atomic<QThread *> tickThread = nullptr;
    std::atomic<QThread *> checkThread = nullptr;
    host.onSendFrame = [&] { tickThread = QThread::currentThread(); };
    Pong pong;
    connect(&pong, &Pong::beyCoStatus, [&] { checkThread = QThread::currentThread(); });
    QTRY_VERIFY(tickThread);
    QCOMPARE(tickThread.load(), pong.thread());
    QCOMPARE(checkThread.load(), QThread::currentThread());
    host.ready = 0;
    QTRY_COMPARE(checkThread.load(), pong.thread());
}

void tst_Pong::a_host_that_starts_later_is_found()
{
    FakeHost host;
    host.ready = 0;
    QList<BeyondState> states;
    Pong pong;
    connect(&pong, &Pong::beyCoStatus, this, [&](BeyondState state) { states.append(state); });
    QTRY_COMPARE(states, QList{BeyondNotReady});
    QCOMPARE(host.framesSent.load(), 0);
    host.ready = 1;
    QTRY_COMPARE(states, (QList{BeyondNotReady, BeyondReady}));
    QTRY_VERIFY(host.framesSent > 0);
}

void tst_Pong::without_the_library_the_game_asks_for_exit_once_and_reports_no_state()
{
    FakeHost host;
    host.installed = false;
    DebugLines lines;
    const TimerWatch watch;
    int exits = 0;
    int states = 0;
    Pong pong;
    connect(pong.binding(), &BadBey::reqExit, this, [&] { ++exits; });
    connect(&pong, &Pong::beyCoStatus, this, [&] { ++states; });
    QTRY_COMPARE(exits, 1);
    QTRY_VERIFY(watch.timeouts(checkMs) >= 1);
    settle(pong);
    QCoreApplication::processEvents();
    QCOMPARE(exits, 1);
    QCOMPARE(states, 0);
    QCOMPARE(lines.takeAll(), QStringList{u"DLL Not found"_s});
    QCOMPARE(host.takeCalls(), QStringList{load});
}

void tst_Pong::ticks_do_not_pile_up_behind_a_host_call()
{
    FakeHost host;
    Stall stall(host);
    const TimerWatch watch;
    Pong pong; // hidden, so every tick sends a frame
    connect(&pong, &Pong::killThread, [&] { stall.open(); }); // in case the test fails early
    QTRY_VERIFY(stall.entered.available() == 1);
    const int before = watch.timeouts(tickMs);
    QTRY_VERIFY(watch.timeouts(tickMs) >= before + 50);
    QCOMPARE(host.framesSent.load(), 1);
    stall.open();
    settle(pong);
    // The tick that stalled and the one that was queued.
    QCOMPARE(host.framesSent.load(), 2);
    QTRY_VERIFY(host.framesSent > 10);
}

void tst_Pong::the_last_frame_is_empty_before_session_and_library_are_closed()
{
    FakeHost host;
    auto pong = std::make_unique<Pong>();
    pong->gameShown = true;
    QTRY_VERIFY(host.framesSent > 3);
    pong.reset();
    const auto frames = host.takeFrames();
    QVERIFY(!frames.first().points.isEmpty());
    QVERIFY(frames.last().points.isEmpty());
    const auto calls = host.takeCalls();
    QCOMPARE(calls.last(3), (QStringList{dark, u"ldbDestroy"_s, u"FreeLibrary"_s}));
    QVERIFY(!host.loaded);
}

void tst_Pong::a_game_destroyed_during_a_stalled_host_call_blanks_the_laser()
{
    FakeHost host;
    Stall stall(host);
    auto pong = std::make_unique<Pong>();
    pong->gameShown = true;
    QTRY_VERIFY(stall.entered.available() == 1);
    // The host call returns only after the game thread was asked to end.
    connect(pong.get(), &Pong::killThread, [&] { stall.open(); });
    pong.reset();
    const auto frames = host.takeFrames();
    QVERIFY(!frames.first().points.isEmpty());
    const QStringList calls = host.takeCalls();
    QCOMPARE(calls.last(3), (QStringList{dark, u"ldbDestroy"_s, u"FreeLibrary"_s}));
}

void tst_Pong::a_game_that_never_loaded_unloads_the_library()
{
    FakeHost host;
    {
        const Pong pong;
    }
    QCOMPARE(host.takeCalls(), (QStringList{load, u"FreeLibrary"_s}));
    QVERIFY(!host.loaded);
}

void tst_Pong::a_game_without_a_host_ends_without_a_frame()
{
    FakeHost host;
    host.ready = 0;
    {
        const Pong pong;
        QTRY_VERIFY(isLoaded(pong));
    }
    QCOMPARE(host.framesSent.load(), 0);
    QCOMPARE(host.takeCalls(), (QStringList{load, u"ldbBeyondExeReady"_s, u"FreeLibrary"_s}));
}

void tst_Pong::nothing_of_the_game_outlives_it()
{
    FakeHost host;
    const TimerWatch watch;
    auto pong = std::make_unique<Pong>();
    QTRY_VERIFY(watch.timeouts(tickMs) > 0 && watch.timeouts(checkMs) > 0);
    const QPointer<QThread> thread = pong->thread();
    const QPointer<QTimer> tickTimer = *watch.timers(tickMs).constBegin();
    const QPointer<QTimer> checkTimer = *watch.timers(checkMs).constBegin();
    pong.reset();
    QVERIFY(!thread);
    QVERIFY(!tickTimer);
    QVERIFY(!checkTimer);
}

QTEST_GUILESS_MAIN(tst_Pong)

#include "tst_pong.moc"
