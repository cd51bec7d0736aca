#include "badbey.h"
#include "debuglines.h"
#include "fakehost.h"
#include "timerwatch.h"

#include <QEventLoop>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString noHost = u"Beyond not started or Incorrect Beyond Version"_s;

} // namespace

class tst_FirstLoad : public QObject
{
    Q_OBJECT

private slots:
    void the_first_load_runs_100_ms_after_construction();
    void the_game_and_its_binding_move_to_their_own_thread();
    void its_3_and_1000_ms_timers_stay_on_the_gui_thread();
    void the_game_thread_inherits_its_priority();
    void the_host_is_connected_between_the_start_of_the_thread_and_of_the_host_check();
    void the_first_load_reports_the_state_of_the_host_data();
    void the_first_load_reports_the_state_of_the_host();
    void a_found_host_is_signalled_when_frames_already_reach_it();
};

void tst_FirstLoad::the_first_load_runs_100_ms_after_construction()
{
    // However late, timers fire in the order in which they are due.
    FakeHost host;
    std::unique_ptr<Pong> pong;
    int wasLoaded[2] = {-1, -1};
    QTimer::singleShot(90ms, this, [&] { wasLoaded[0] = isLoaded(*pong); });
    pong = std::make_unique<Pong>();
    QTimer::singleShot(110ms, this, [&] { wasLoaded[1] = isLoaded(*pong); });
    QTRY_VERIFY(wasLoaded[1] >= 0);
    QCOMPARE(wasLoaded[0], 0);
    QCOMPARE(wasLoaded[1], 1);
}

void tst_FirstLoad::the_game_and_its_binding_move_to_their_own_thread()
{
    FakeHost host;
    Pong pong;
    QTRY_VERIFY(isLoaded(pong));
    QVERIFY(pong.thread()->isRunning());
    QCOMPARE(pong.binding()->thread(), pong.thread());
}

void tst_FirstLoad::its_3_and_1000_ms_timers_stay_on_the_gui_thread()
{
    FakeHost host;
    const TimerWatch watch;
    const Pong pong;
    QTRY_VERIFY(watch.timeouts(checkMs) >= 1 && watch.timeouts(tickMs) >= 1);
    QCOMPARE(watch.intervals().size(), 2);
    for (const int interval : {tickMs, checkMs}) {
        QCOMPARE(watch.timers(interval).size(), 1);
        QTimer *timer = *watch.timers(interval).constBegin();
        QCOMPARE(timer->thread(), QThread::currentThread());
        QVERIFY(!timer->isSingleShot());
        QVERIFY(timer->isActive());
    }
    QCOMPARE((*watch.timers(tickMs).constBegin())->timerType(), Qt::PreciseTimer);
}

void tst_FirstLoad::the_game_thread_inherits_its_priority()
{
    FakeHost host;
    const Pong pong;
    QTRY_VERIFY(isLoaded(pong));
    QVERIFY(pong.thread()->isRunning());
    QCOMPARE(pong.thread()->priority(), QThread::InheritPriority);
}

void tst_FirstLoad::the_host_is_connected_between_the_start_of_the_thread_and_of_the_host_check()
{
    FakeHost host;
    const TimerWatch watch;
    std::unique_ptr<Pong> pong;
    QStringList found;
    // The first call to the host takes longer than the interval of the host checks. However late,
    // timers fire in the order in which they are due.
    host.onReady = [&] {
        if (QThread::currentThread() != thread() || !found.isEmpty())
            return;
        const bool threadRuns = isLoaded(*pong) && pong->thread()->isRunning();
        found.append(threadRuns ? u"thread runs"_s : u"no thread"_s);
        QEventLoop call;
        QTimer::singleShot(checkMs + 200, Qt::PreciseTimer, &call, &QEventLoop::quit);
        call.exec();
        found.append(watch.timeouts(tickMs) > 0 ? u"ticks"_s : u"no ticks"_s);
        found.append(watch.timeouts(checkMs) > 0 ? u"checks"_s : u"no checks"_s);
    };
    pong = std::make_unique<Pong>();
    QTRY_COMPARE(found, (QStringList{u"thread runs"_s, u"ticks"_s, u"no checks"_s}));
}

void tst_FirstLoad::the_first_load_reports_the_state_of_the_host_data()
{
    QTest::addColumn<int>("ready");
    QTest::addColumn<int>("build");
    QTest::addColumn<QStringList>("lines");
    QTest::addRow("build 1614") << 1 << 1614 << QStringList{u"1614"_s, u"status 2"_s};
    QTest::addRow("build 1613") << 1 << 1613 << QStringList{noHost, u"status 0"_s};
    QTest::addRow("not ready") << 0 << 1700 << QStringList{noHost, u"status 0"_s};
}

void tst_FirstLoad::the_first_load_reports_the_state_of_the_host()
{
    QFETCH(int, ready);
    QFETCH(int, build);
    FakeHost host;
    host.ready = ready;
    host.build = build;
    DebugLines lines;
    Pong pong;
    connect(&pong, &Pong::beyCoStatus, this,
        [](BeyondState state) { qDebug("status %d", int(state)); });
    QTRY_VERIFY(isLoaded(pong));
    QTEST(lines.takeAll(), "lines");
}

void tst_FirstLoad::a_found_host_is_signalled_when_frames_already_reach_it()
{
    FakeHost host;
    int framesMeanwhile = -1;
    Pong pong; // hidden, so every tick sends a frame
    connect(&pong, &Pong::beyCoStatus, [&] {
        QMetaObject::invokeMethod(&pong, &Pong::UpdatePongDisplay, Qt::BlockingQueuedConnection);
        framesMeanwhile = host.framesSent;
    });
    QTRY_COMPARE(framesMeanwhile, 1);
}

QTEST_GUILESS_MAIN(tst_FirstLoad)

#include "tst_firstload.moc"
