#include "framehistory.h"

#include <algorithm>
#include <vector>

namespace {

constexpr SharedTime second = 1'000'000'000;

} // namespace

void FrameHistory::add(SharedTime sentAt, const FrameFacts &facts, std::uint64_t missed)
{
    const SharedTime at = std::max(sentAt, m_last.value_or(sentAt));
    const bool isPause = !m_last || at - *m_last >= shortestPause;
    if (!isPause) {
        m_intervals += 1 + missed;
        m_busy += at - *m_last;
    }
    m_last = at;
    ++m_frames;
    m_missed += missed;
    m_facts = facts;
    m_lastSecond.push_back({at, !facts.isEmpty(), !isPause, missed});
    while (at - m_lastSecond.front().at >= second)
        m_lastSecond.pop_front();
}

int FrameHistory::framesInLastSecond(SharedTime now) const
{
    return static_cast<int>(std::count_if(m_lastSecond.begin(), m_lastSecond.end(),
        [now](const Sent &sent) { return now - sent.at < second; }));
}

Intervals FrameHistory::litIntervals(SharedTime now) const
{
    std::vector<SharedTime> intervals;
    SharedTime total = 0;
    std::uint64_t frames = 0;
    for (std::size_t i = 1; i < m_lastSecond.size(); ++i) {
        const Sent &sent = m_lastSecond[i];
        const Sent &before = m_lastSecond[i - 1];
        if (now - before.at >= second || !sent.isLit || !before.isLit || !sent.isContinued)
            continue;
        total += sent.at - before.at;
        frames += 1 + sent.missed;
        if (sent.missed == 0)
            intervals.push_back(sent.at - before.at);
    }
    if (intervals.empty())
        return {};
    std::sort(intervals.begin(), intervals.end());
    return {static_cast<int>(intervals.size()), double(total) / double(frames), intervals.front(),
        intervals[intervals.size() / 2], intervals.back()};
}

double FrameHistory::framesPerSecond() const
{
    return m_busy > 0 ? double(m_intervals) * second / double(m_busy) : 0;
}
