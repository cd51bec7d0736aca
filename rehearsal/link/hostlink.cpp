#include "hostlink.h"

#include "frames.h"

#include <QCoreApplication>

#include <utility>

HostLink::HostLink()
    : m_process(static_cast<std::uint64_t>(QCoreApplication::applicationPid()))
{
}

void HostLink::openSession()
{
    if (SharedMemory *host = livingHost()) {
        m_sessionRun = hostRun(*host);
        m_session = host;
        note(*host, GameCall::OpenSession);
    }
}

void HostLink::closeSession()
{
    SharedMemory *host = m_session.exchange(nullptr);
    if (host && hostRun(*host) == m_sessionRun)
        note(*host, GameCall::CloseSession);
}

bool HostLink::isReady()
{
    if (!livingHost())
        lookForHost();
    const SharedMemory *host = livingHost();
    return host && isHostReady(*host) && (!m_session.load() || hostRun(*host) == m_sessionRun);
}

std::int32_t HostLink::build() const
{
    const SharedMemory *host = livingHost();
    return host ? hostBuild(*host) : 0;
}

std::int32_t HostLink::zoneCount() const
{
    const SharedMemory *host = livingHost();
    return host ? hostZoneCount(*host) : 0;
}

bool HostLink::switchOutput(bool on)
{
    SharedMemory *host = on ? livingHost() : m_memory.load();
    if (host) {
        setOutput(*host, on);
        note(*host, on ? GameCall::EnableOutput : GameCall::DisableOutput);
    }
    return livingHost() != nullptr;
}

bool HostLink::sendFrame(std::int32_t zone, std::int32_t pointCount, const LdbPoint *points)
{
    if (pointCount < 0 || pointCount > ldbMaxPoints || (pointCount > 0 && !points))
        return false;
    const SharedTime now = sharedNow();
    SharedMemory *host = livingHost(now);
    return host && writeFrame(*host, zone, {points, std::size_t(pointCount)}, now);
}

SharedMemory *HostLink::livingHost(SharedTime now) const
{
    SharedMemory *memory = m_memory.load();
    return memory && isHostAlive(*memory, now) ? memory : nullptr;
}

void HostLink::lookForHost()
{
    const std::unique_lock lock(m_looking, std::try_to_lock);
    if (!lock)
        return; // another thread is looking already
    auto file = std::make_unique<MemoryFile>();
    if (!file->attach(memoryFilePath()) || !isHostAlive(*file->memory(), sharedNow()))
        return;
    m_memory = file->memory();
    m_files.push_back(std::move(file));
}

void HostLink::note(SharedMemory &host, GameCall call) const
{
    noteCall(host, {call, sharedNow(), m_process});
}
