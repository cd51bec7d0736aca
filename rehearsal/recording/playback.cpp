#include "playback.h"

#include <algorithm>
#include <cmath>

Playback::Playback(Recording &recording)
    : m_recording(&recording)
{
    SharedTime latest = recording.size() > 0 ? recording.entry(0).at : 0;
    for (qsizetype i = 0; i < recording.size(); ++i) {
        const Recording::Entry entry = recording.entry(i);
        latest = std::max(latest, entry.at);
        m_times.push_back(latest);
        if (!entry.isFrame() && outputAfter(recording.event(i)))
            m_switches.push_back(i);
    }
    m_position = start();
    goTo(nextAfter(m_position));
}

void Playback::setSpeed(double speed)
{
    m_speed = std::isfinite(speed) ? std::clamp(speed, slowest, fastest) : 1;
}

void Playback::advance(std::chrono::nanoseconds elapsed)
{
    if (m_paused)
        return;
    constexpr double day = 86'400e9;
    const double way = std::clamp(double(elapsed.count()), 0.0, day) * m_speed;
    seek(m_position + static_cast<SharedTime>(way));
    m_paused = atEnd();
}

bool Playback::step(int direction)
{
    m_paused = true;
    // Backwards, the first frame found is the current one, so look for a second.
    qsizetype index = direction > 0 ? m_next : m_next - 1;
    for (int frames = direction > 0 ? 1 : 2;
         index >= 0 && index<m_recording->size(); index += direction> 0 ? 1 : -1) {
        if (m_recording->entry(index).isFrame() && --frames == 0) {
            goTo(index + 1);
            m_position = m_times[std::size_t(index)];
            return true;
        }
    }
    return false;
}

void Playback::seek(SharedTime time)
{
    m_position = std::clamp(time, start(), end());
    goTo(nextAfter(m_position));
}

SharedTime Playback::start() const
{
    return m_times.empty() ? 0 : m_times.front();
}

SharedTime Playback::end() const
{
    return m_times.empty() ? 0 : m_times.back();
}

const Frame *Playback::frame(int zone)
{
    const std::vector<qsizetype> &frames = m_recording->framesOf(zone);
    const auto next = std::ranges::lower_bound(frames, m_next);
    return next == frames.begin() ? nullptr : &m_recording->frame(*(next - 1));
}

/// Makes `next` the first record after the current position.
void Playback::goTo(qsizetype next)
{
    m_next = next;
    const auto later = std::ranges::lower_bound(m_switches, next);
    m_outputOn = later != m_switches.begin()
        && outputAfter(m_recording->event(*(later - 1))).value_or(false);
}

qsizetype Playback::nextAfter(SharedTime time) const
{
    return std::ranges::upper_bound(m_times, time) - m_times.begin();
}
