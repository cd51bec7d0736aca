#include "statistics.h"

using namespace std::chrono_literals;

namespace {

/// Nothing for so long is a pause, not a slow frame.
constexpr auto shortestPause = 500ms;

} // namespace

void Statistics::add(Time arrived, qsizetype points, quint64 missed)
{
    if (m_frames > 0 && arrived - m_last < shortestPause) {
        m_intervals += 1 + missed;
        m_busy += arrived - m_last;
    }
    m_last = arrived;
    ++m_frames;
    m_missed += missed;
    m_points = points;
    m_lastSecond.push_back(arrived);
    framesInLastSecond(arrived);
}

int Statistics::framesInLastSecond(Time now)
{
    while (!m_lastSecond.empty() && now - m_lastSecond.front() >= 1s)
        m_lastSecond.pop_front();
    return static_cast<int>(m_lastSecond.size());
}

double Statistics::framesPerSecond() const
{
    const double seconds = std::chrono::duration<double>(m_busy).count();
    return seconds > 0 ? double(m_intervals) / seconds : 0;
}
