#include "host.h"

#include <utility>

using namespace std::chrono_literals;

Host::Host(const HostInfo &info, QObject *parent)
    : QObject(parent)
    , m_info(info)
{
    m_heartbeat.setTimerType(Qt::PreciseTimer);
    m_heartbeat.setInterval(heartbeatInterval);
    connect(&m_heartbeat, &QTimer::timeout, this, [this] { beat(*m_file.memory(), sharedNow()); });
    m_receiving.setTimerType(Qt::PreciseTimer);
    m_receiving.setInterval(16ms);
    connect(&m_receiving, &QTimer::timeout, this, &Host::receive);
}

Host::~Host()
{
    close();
}

bool Host::open()
{
    const QString path = memoryFilePath();
    if (path.isEmpty()) {
        m_error = tr("The name in %1 may have letters, digits, '.', '-' and '_' only.")
                      .arg(QLatin1StringView(rehearsalVariable));
        return false;
    }
    m_lock = std::make_unique<QLockFile>(path + QStringLiteral(".lock"));
    m_lock->setStaleLockTime(0); // stale is only the lock of a process that is gone
    if (!m_lock->tryLock()) {
        m_error = m_lock->error() == QLockFile::LockFailedError
            ? tr("A rehearsal host is running already.")
            : tr("Cannot write %1.lock.").arg(path);
        return false;
    }
    if (!m_file.create(path)) {
        m_error = tr("Cannot share memory in %1: %2").arg(path, m_file.errorString());
        return false;
    }
    return true;
}

void Host::start()
{
    SharedMemory &memory = *m_file.memory();
    m_startTime = sharedNow();
    openHost(memory, m_info, m_startTime);
    m_intake = std::make_unique<Intake>(memory);
    giveOut({Event::HostStarted, m_startTime});
    m_intake->start();
    m_heartbeat.start();
    m_receiving.start();
    emit changed();
}

void Host::close()
{
    if (!m_receiving.isActive())
        return;
    m_receiving.stop();
    m_intake->stop();
    receive();
    m_heartbeat.stop();
    closeHost(*m_file.memory());
    giveOut({Event::HostEnded, sharedNow()});
}

void Host::setInfo(const HostInfo &info)
{
    m_info = info;
    if (m_receiving.isActive())
        describeHost(*m_file.memory(), m_info);
    emit changed();
}

void Host::setGone(bool gone)
{
    if (!m_receiving.isActive() || gone == isGone())
        return;
    receive();
    if (gone) {
        m_heartbeat.stop();
        closeHost(*m_file.memory());
        switchOutput(false);
        giveOut({Event::HostEnded, sharedNow()});
    } else {
        const SharedTime now = sharedNow();
        openHost(*m_file.memory(), m_info, now);
        giveOut({Event::HostStarted, now});
        m_heartbeat.start();
    }
    emit changed();
}

void Host::receive()
{
    m_intake->handOver(m_arrivals);
    for (const Arrival &arrival : m_arrivals) {
        if (arrival.zone >= 0)
            emit frameReceived(arrival.zone, arrival.frame);
        else
            giveOut(arrival.event);
    }
    emit received();
}

void Host::giveOut(const Event &event)
{
    emit happened(event);
    switch (event.kind) {
    case Event::HostStarted:
        m_opened = event.at;
        switchOutput(false);
        break;
    case Event::OutputEnabled:
        // A call of the run before may still have been under way through the intake.
        switchOutput(!isGone() && event.at >= m_opened);
        break;
    case Event::OutputDisabled:
        switchOutput(false);
        break;
    default:
        break;
    }
}

void Host::switchOutput(bool on)
{
    if (std::exchange(m_outputOn, on) != on)
        emit outputSwitched(on);
}
