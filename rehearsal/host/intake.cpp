#include "intake.h"

#include <algorithm>
#include <iterator>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// A zone remembers 48 ms of the fastest frames, so that a pass may be late.
constexpr auto betweenPasses = 4ms;

/// The time that the game gives, unless it is no time of the last seconds.
SharedTime believable(SharedTime time, SharedTime now)
{
    constexpr std::uint64_t limit = std::chrono::nanoseconds(10s).count();
    const std::uint64_t age = static_cast<std::uint64_t>(now) - static_cast<std::uint64_t>(time);
    return age + limit <= 2 * limit ? time : now;
}

} // namespace

Intake::Intake(SharedMemory &memory, std::size_t mostWaiting)
    : m_memory(&memory)
    , m_calls(memory.calls)
    , m_mostWaiting(mostWaiting)
{
    for (ZoneRing &ring : memory.zones)
        m_zones.push_back({FrameReader(ring)});
}

Intake::~Intake()
{
    stop();
}

void Intake::start()
{
    m_running = true;
    m_thread.reset(QThread::create([this] { run(); }));
    m_thread->setObjectName(QStringLiteral("intake"));
    m_thread->start(QThread::TimeCriticalPriority);
}

void Intake::stop()
{
    if (!m_thread)
        return;
    m_running = false;
    m_thread->wait();
    m_thread.reset();
    pass();
}

void Intake::handOver(std::vector<Arrival> &arrivals)
{
    arrivals.clear();
    const std::lock_guard lock(m_handing);
    std::swap(arrivals, m_waiting);
    m_waitingBytes = 0;
}

void Intake::run()
{
    while (m_running) {
        pass();
        QThread::usleep(std::chrono::microseconds(betweenPasses).count());
    }
}

void Intake::pass()
{
    const SharedTime now = sharedNow();
    // Asked before the rest is taken: whatever an ended game has left is there by now.
    const bool ended = m_game.hasEnded();
    m_taken.clear();
    takeCalls();
    switchOutput(isOutputOn(*m_memory), now);
    for (int zone = 0; zone < maxZones; ++zone)
        takeFrames(zone, now);
    std::ranges::stable_sort(m_taken, {}, &Arrival::at);
    if (ended)
        noticeEndedGame(now);

    const std::lock_guard lock(m_handing);
    std::ranges::move(m_taken, std::back_inserter(m_waiting));
}

void Intake::takeCalls()
{
    while (const auto call = m_calls.take()) {
        const SharedTime at = believable(call->at, sharedNow());
        switch (call->call) {
        case GameCall::EnableOutput:
        case GameCall::DisableOutput:
            switchOutput(call->call == GameCall::EnableOutput, at);
            break;
        case GameCall::OpenSession:
            if (m_game.hasEnded())
                noticeEndedGame(at);
            m_process = call->process;
            m_game.watch(m_process);
            addEvent(Event::SessionOpened, at, m_process);
            break;
        case GameCall::CloseSession:
            m_game.release();
            addEvent(Event::SessionClosed, at, call->process);
            break;
        }
    }
}

void Intake::takeFrames(int zone, SharedTime now)
{
    Zone &from = m_zones[std::size_t(zone)];
    while (from.reader.take(m_frame)) {
        const std::size_t size = sizeof(Arrival) + m_frame.points.size() * sizeof(LdbPoint);
        {
            const std::lock_guard lock(m_handing);
            if (m_waitingBytes + size > m_mostWaiting) {
                from.dropped += 1 + m_frame.missed;
                continue;
            }
            m_waitingBytes += size;
        }
        m_frame.missed += std::exchange(from.dropped, 0);
        m_frame.sentAt = believable(m_frame.sentAt, now);
        m_taken.push_back({m_frame.sentAt, zone, std::exchange(m_frame, {}), {}});
    }
}

void Intake::addEvent(Event::Kind kind, SharedTime at, std::uint64_t process)
{
    m_taken.push_back({at, -1, {}, {kind, at, process}});
}

void Intake::switchOutput(bool on, SharedTime at)
{
    if (std::exchange(m_outputOn, on) != on)
        addEvent(on ? Event::OutputEnabled : Event::OutputDisabled, at);
}

/// The session of a game that is gone ends with it.
void Intake::noticeEndedGame(SharedTime at)
{
    if (!m_game.isWatching())
        return;
    m_game.release();
    addEvent(Event::GameGone, at, m_process);
}
