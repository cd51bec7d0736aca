#include "showplayer.h"

#include <utility>

using namespace std::chrono_literals;

ShowPlayer::ShowPlayer(QObject *parent)
    : QObject(parent)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(16ms);
    connect(&m_timer, &QTimer::timeout, this,
        [this] { advance(std::chrono::nanoseconds(m_sinceAdvance.nsecsElapsed())); });
}

bool ShowPlayer::open(const QString &path)
{
    m_playback.reset();
    const bool intact = m_recording.open(path);
    m_playback = std::make_unique<Playback>(m_recording);
    giveOutMoment();
    return intact;
}

void ShowPlayer::play()
{
    if (!m_playback)
        return;
    if (m_playback->atEnd())
        seek(m_playback->start());
    m_playback->setPaused(false);
    m_sinceAdvance.start();
    m_timer.start();
    emit received();
}

void ShowPlayer::pause()
{
    if (!m_playback)
        return;
    m_playback->setPaused(true);
    finish();
}

void ShowPlayer::setSpeed(double speed)
{
    if (m_playback)
        m_playback->setSpeed(speed);
}

void ShowPlayer::step(int direction)
{
    if (!m_playback)
        return;
    const qsizetype before = m_playback->passed();
    m_playback->step(direction);
    if (direction > 0)
        giveOut(before);
    else
        giveOutMoment();
}

void ShowPlayer::seek(SharedTime time)
{
    if (!m_playback)
        return;
    m_playback->seek(time);
    giveOutMoment();
}

void ShowPlayer::advance(std::chrono::nanoseconds elapsed)
{
    if (!m_playback)
        return;
    m_sinceAdvance.start();
    const qsizetype before = m_playback->passed();
    m_playback->advance(elapsed);
    giveOut(before);
}

/// Emits every record from an index to the current one.
void ShowPlayer::giveOut(qsizetype from)
{
    for (qsizetype i = from; i < m_playback->passed(); ++i) {
        const Recording::Entry entry = m_recording.entry(i);
        if (entry.isFrame())
            emit frameReceived(entry.zone, m_recording.frame(i));
        else if (const auto on = outputAfter(m_recording.event(i)))
            switchOutput(*on);
    }
    finish();
}

/// Emits the current frame of each zone.
void ShowPlayer::giveOutMoment()
{
    for (int zone = 0; zone < maxZones; ++zone) {
        const Frame *frame = m_playback->frame(zone);
        emit frameReceived(zone, frame ? *frame : Frame());
    }
    emit leapt();
    finish();
}

void ShowPlayer::finish()
{
    if (m_playback->isPaused())
        m_timer.stop();
    switchOutput(m_playback->isOutputOn());
    emit received();
}

void ShowPlayer::switchOutput(bool on)
{
    if (std::exchange(m_outputOn, on) != on)
        emit outputSwitched(on);
}
