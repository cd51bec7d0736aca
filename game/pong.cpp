#include "pong.h"

#include "badbey.h"
#include "frame.h"

#include <QDebug>
#include <QThread>
#include <QTimer>

using namespace std::chrono_literals;

namespace {

constexpr auto firstLoadDelay = 100ms;
constexpr auto tickInterval = 3ms;
constexpr auto hostCheckInterval = 1000ms;
constexpr int ticksPerFrame = 3;

} // namespace

Pong::Pong(QObject *parent)
    : QObject(parent)
    , bey(new BadBey(this))
{
    QTimer::singleShot(firstLoadDelay, this, &Pong::FirstLoad);
}

Pong::~Pong()
{
    delete tickTimer;
    delete statusTimer;
    emit killThread();
    if (workerThread) {
        workerThread->wait();
        delete workerThread; // a deleteLater() might find no event loop running
    }
    // Blank the zone, whatever the last tick drew.
    if (beyondState == BeyondReady) {
        bey->points.clear();
        bey->SendFrame();
    }
}

void Pong::enableOutput(bool on)
{
    bey->SetLaserOutput(on);
}

int Pong::zoneCount() const
{
    return bey->GetZoneCount();
}

void Pong::setZone(int zone)
{
    bey->zone = zone;
}

void Pong::FirstLoad()
{
    startTimers();
    startThread();
    const int build = bey->ConnectBeyond();
    if (build == BadBey::NotLoaded) {
        statusTimer->disconnect(this);
    } else if (build >= oldestBeyondBuild) {
        hostFound(build);
    } else {
        beyondState = BeyondNotReady;
        qDebug("Beyond not started or Incorrect Beyond Version");
        emit beyCoStatus(BeyondNotReady);
    }
    statusTimer->start();
}

void Pong::startTimers()
{
    tickTimer = new QTimer;
    tickTimer->setTimerType(Qt::PreciseTimer);
    tickTimer->setInterval(tickInterval);
    // The timers stay on the GUI thread, which also decides whether anything is posted.
    connect(
        tickTimer, &QTimer::timeout, this, [this] { post(&Pong::UpdatePongDisplay, tickWaits); },
        Qt::DirectConnection);
    tickTimer->start();
    statusTimer = new QTimer;
    statusTimer->setInterval(hostCheckInterval);
    connect(
        statusTimer, &QTimer::timeout, this, [this] { post(&Pong::checkHost, checkWaits); },
        Qt::DirectConnection);
}

void Pong::startThread()
{
    workerThread = new QThread;
    workerThread->setObjectName("game");
    connect(this, &Pong::killThread, workerThread, &QThread::quit);
    connect(workerThread, &QThread::finished, workerThread, &QThread::deleteLater);
    moveToThread(workerThread);
    workerThread->start(QThread::InheritPriority);
}

void Pong::hostFound(int build)
{
    qDebug() << build;
    beyondState = BeyondReady;
    emit beyCoStatus(BeyondReady);
}

void Pong::checkHost()
{
    Q_ASSERT(QThread::currentThread() == thread());
    checkWaits = false;
    if (beyondState == BeyondReady) {
        if (bey->IsBeyondReady())
            return;
        emit beyCoStatus(BeyondNotReady);
        beyondState = BeyondNotReady;
        qDebug("Beyond not started or Incorrect Beyond Version");
    } else if (const int build = bey->ConnectBeyond(); build >= oldestBeyondBuild) {
        hostFound(build);
    }
}

void Pong::post(void (Pong::*step)(), Relaxed<bool> &waits)
{
    // At most one of each is queued: after a stall the ball continues where it was instead of
    // catching up, and the host is checked once.
    if (!waits.exchange(true))
        QMetaObject::invokeMethod(this, step, Qt::QueuedConnection);
}

void Pong::UpdatePongDisplay()
{
    Q_ASSERT(QThread::currentThread() == thread());
    tickWaits = false;
    if (beyondState == BeyondNotReady)
        return;
    if (!gameShown) {
        bey->SendFrame();
        return;
    }
    movePaddles();
    stepBall();
    static int ticks = 0;
    if (++ticks < ticksPerFrame)
        return;
    ticks = 0;
    composeFrame(*this, *bey);
    bey->SendFrame();
}

void Pong::stepBall()
{
    const auto scorer = moveBall();
    if (!scorer)
        return;
    qDebug(*scorer == Side::Left ? "Left scores" : "Right scores");
    qDebug("Score LR = %d-%d", int(leftScore), int(rightScore));
}
