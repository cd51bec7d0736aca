#include "cxboxcontroller.h"
#include "expiredtimers.h"
#include "fakepads.h"

#include <QScopeGuard>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <memory>

namespace {

constexpr int readsPerPoll = 20;

QThread *threadOf(const QObject &object)
{
    return object.thread();
}

/// Lets the event loop run until the poller is on its worker thread.
void settle(const CXBOXController &controller)
{
    QTRY_VERIFY(threadOf(controller) != QThread::currentThread());
}

/// Runs one more poll, after those already queued.
void pollOnce(CXBOXController &controller)
{
    QMetaObject::invokeMethod(&controller, "CheckStates", Qt::BlockingQueuedConnection);
}

/// Stalls the first read of the first pad until released.
class Stall
{
public:
    explicit Stall(FakePads &system)
    {
        system.onGetState = [this, &system](DWORD userIndex) {
            if (userIndex != 0 || system.pads[0].reads > 0)
                return;
            begun = true;
            m_end.acquire();
        };
    }
    void end() { m_end.release(); }

    Relaxed<bool> begun = false;

private:
    QSemaphore m_end;
};

} // namespace

class tst_Polling : public QObject
{
    Q_OBJECT

private slots:
    void a_poller_has_a_worker_thread_of_its_own();
    void the_worker_thread_inherits_its_priority();
    void polls_run_on_the_worker_and_their_signals_arrive_in_the_gui_thread();
    void nothing_polls_before_it_is_started();
    void a_started_poller_polls_every_10_ms();
    void a_stopped_poller_does_not_poll();
    void at_most_one_poll_waits_behind_a_stalled_one();
    void deleting_a_poller_waits_for_the_poll_under_way();
    void a_poller_deleted_before_its_thread_started_ends_at_once();
    void a_poller_deleted_as_its_thread_starts_ends_too();
};

void tst_Polling::a_poller_has_a_worker_thread_of_its_own()
{
    const FakePads system(2);
    const CXBOXController first(1);
    const CXBOXController second(2);
    QCOMPARE(threadOf(first), QThread::currentThread());
    settle(first);
    settle(second);
    QVERIFY(threadOf(first) != threadOf(second));
    QVERIFY(threadOf(first)->isRunning());
}

void tst_Polling::the_worker_thread_inherits_its_priority()
{
    const FakePads system(1);
    const CXBOXController controller(1);
    settle(controller);
    QVERIFY(threadOf(controller)->isRunning());
    QCOMPARE(threadOf(controller)->priority(), QThread::InheritPriority);
}

void tst_Polling::polls_run_on_the_worker_and_their_signals_arrive_in_the_gui_thread()
{
    FakePads system(1);
    QThread *readOn = nullptr;
    system.onGetState = [&](DWORD) { readOn = QThread::currentThread(); };
    CXBOXController controller(1);
    settle(controller);
    QThread *arrivedOn = nullptr;
    connect(&controller, &CXBOXController::buttonXbox, this,
        [&] { arrivedOn = QThread::currentThread(); });
    QThread *stickArrivedOn = nullptr;
    connect(&controller, &CXBOXController::controllerXbox, this,
        [&] { stickArrivedOn = QThread::currentThread(); });
    system.pads[0].buttons = XINPUT_GAMEPAD_A;
    system.pads[0].thumbLX = 4000;
    pollOnce(controller);
    QCOMPARE(readOn, threadOf(controller));
    QVERIFY(!arrivedOn);
    QCoreApplication::sendPostedEvents(this);
    QCOMPARE(arrivedOn, QThread::currentThread());
    QCOMPARE(stickArrivedOn, QThread::currentThread());
}

void tst_Polling::nothing_polls_before_it_is_started()
{
    FakePads system(2);
    CXBOXController idle(1);
    CXBOXController clock(2);
    clock.startPolling();
    QTRY_VERIFY(system.pads[1].reads >= 5 * readsPerPoll);
    QCOMPARE(int(system.pads[0].reads), 0);
}

void tst_Polling::a_started_poller_polls_every_10_ms()
{
    FakePads system(1);
    CXBOXController controller(1);
    settle(controller);
    const ExpiredTimers expired;
    controller.startPolling();
    for (int times = 1; times <= 3; ++times) {
        while (expired.timers.size() < times)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        pollOnce(controller); // after the one that the timer queued
        QCOMPARE(int(system.pads[0].reads), 2 * times * readsPerPoll);
        QCOMPARE(expired.timers.last()->interval(), 10);
        QCOMPARE(expired.timers.last()->timerType(), Qt::PreciseTimer);
    }
}

void tst_Polling::a_stopped_poller_does_not_poll()
{
    FakePads system(2);
    CXBOXController controller(1);
    CXBOXController clock(2);
    clock.startPolling();
    for (int starts = 0; starts < 2; ++starts) {
        controller.startPolling();
        const int before = system.pads[0].reads;
        QTRY_VERIFY(system.pads[0].reads > before);
        controller.stopPolling();
        settle(controller);
        pollOnce(controller);
        const int reads = system.pads[0].reads;
        const int ticks = system.pads[1].reads;
        QTRY_VERIFY(system.pads[1].reads >= ticks + 5 * readsPerPoll);
        QCOMPARE(int(system.pads[0].reads), reads);
    }
}

void tst_Polling::at_most_one_poll_waits_behind_a_stalled_one()
{
    FakePads system(2);
    Stall stall(system);
    CXBOXController controller(1);
    CXBOXController clock(2);
    const auto end = qScopeGuard([&] { stall.end(); });
    settle(controller);
    settle(clock);
    controller.startPolling();
    clock.startPolling();
    QTRY_VERIFY(stall.begun);
    const int ticks = system.pads[1].reads;
    QTRY_VERIFY(system.pads[1].reads >= ticks + 10 * readsPerPoll);
    controller.stopPolling();
    stall.end();
    pollOnce(controller);
    QCOMPARE(int(system.pads[0].reads), 3 * readsPerPoll);
}

void tst_Polling::deleting_a_poller_waits_for_the_poll_under_way()
{
    FakePads system(1);
    Stall stall(system);
    auto controller = std::make_unique<CXBOXController>(1);
    settle(*controller);
    // Connecting to the thread while it starts would race with its own signal.
    QMetaObject::invokeMethod(
        controller.get(), [] {}, Qt::BlockingQueuedConnection);
    bool finished = false;
    connect(
        threadOf(*controller), &QThread::finished, this, [&] { finished = true; },
        Qt::DirectConnection);
    connect(controller.get(), &CXBOXController::killThread, this, [&] { stall.end(); });
    controller->startPolling();
    QTRY_VERIFY(stall.begun);
    controller.reset();
    QCOMPARE(int(system.pads[0].reads), readsPerPoll);
    QVERIFY(finished);
}

void tst_Polling::a_poller_deleted_before_its_thread_started_ends_at_once()
{
    FakePads system(1);
    {
        CXBOXController controller(1);
        controller.startPolling();
        QCOMPARE(threadOf(controller), QThread::currentThread());
    }
    QCoreApplication::processEvents();
    QCOMPARE(int(system.pads[0].reads), 0);
}

void tst_Polling::a_poller_deleted_as_its_thread_starts_ends_too()
{
    const FakePads system(1);
    for (int i = 0; i < 100; ++i) {
        const CXBOXController controller(1);
        while (threadOf(controller) == QThread::currentThread())
            QCoreApplication::processEvents();
    }
}

QTEST_GUILESS_MAIN(tst_Polling)

#include "tst_polling.moc"
