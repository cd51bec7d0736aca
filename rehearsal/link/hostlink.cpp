#include "hostlink.h"

#include "frames.h"

#include <utility>

void HostLink::openSession()
{
    if (const SharedMemory *host = livingHost()) {
        m_sessionRun = hostRun(*host);
        m_inSession = true;
    }
}

void HostLink::closeSession()
{
    m_inSession = false;
}

bool HostLink::isReady()
{
    if (!livingHost())
        lookForHost();
    const SharedMemory *host = livingHost();
    return host && isHostReady(*host) && (!m_inSession || hostRun(*host) == m_sessionRun);
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
    if (host)
        setOutput(*host, on);
    return livingHost() != nullptr;
}

bool HostLink::sendFrame(std::int32_t zone, std::int32_t pointCount, const LdbPoint *points)
{
    if (pointCount < 0 || pointCount > ldbMaxPoints || (pointCount > 0 && !points))
        return false;
    SharedMemory *host = livingHost();
    return host && writeFrame(*host, zone, {points, std::size_t(pointCount)}, sharedNow());
}

SharedMemory *HostLink::livingHost() const
{
    SharedMemory *memory = m_memory.load();
    return memory && isHostAlive(*memory, sharedNow()) ? memory : nullptr;
}

void HostLink::lookForHost()
{
    const std::unique_lock lock(m_looking, std::try_to_lock);
    if (!lock)
        return; // another thread is at it
    auto file = std::make_unique<MemoryFile>();
    if (!file->attach(memoryFilePath()) || !isHostAlive(*file->memory(), sharedNow()))
        return;
    m_memory = file->memory();
    m_files.push_back(std::move(file));
}
