#include "projector.h"

#include <algorithm>

namespace {

/// More than arrive between two pictures on the slowest machine; older ones are out of date anyway.
constexpr std::size_t mostWaiting = 64;

} // namespace

void Projector::setOutputOn(bool on)
{
    if (on == m_outputOn)
        return;
    m_outputOn = on;
    m_scanner.rest();
    m_next = 0;
}

void Projector::show(std::span<const LdbPoint> points, double sentAt)
{
    if (m_waiting.size() == mostWaiting)
        m_waiting.pop_front();
    m_waiting.push_back({sentAt, {points.begin(), points.end()}});
}

void Projector::showAtOnce(std::span<const LdbPoint> points)
{
    m_waiting.clear();
    m_frame.assign(points.begin(), points.end());
    m_next = 0;
    if (m_frame.empty())
        m_scanner.rest();
}

void Projector::run(double until, std::vector<BeamPiece> &way)
{
    m_now = std::max(m_now, until - longestRun);
    for (; m_now < until; m_now += m_scanner.pointSeconds()) {
        takeFrame();
        if (m_frame.empty() || !m_outputOn)
            continue;
        m_scanner.scan(m_frame[m_next], m_now, way);
        m_next = (m_next + 1) % m_frame.size();
    }
}

void Projector::takeFrame()
{
    if (m_waiting.empty() || m_waiting.front().sentAt > m_now)
        return;
    while (m_waiting.size() > 1 && m_waiting[1].sentAt <= m_now)
        m_waiting.pop_front();
    TimedFrame &next = m_waiting.front();
    if (m_next != 0 && !next.points.empty())
        return;
    if (next.points.empty())
        m_scanner.rest();
    m_frame.swap(next.points);
    m_next = 0;
    m_waiting.pop_front();
}

bool Projector::isLit() const
{
    return m_outputOn && (!m_frame.empty() || !m_waiting.empty());
}

double Projector::passSeconds() const
{
    return double(m_frame.size()) * m_scanner.pointSeconds();
}
