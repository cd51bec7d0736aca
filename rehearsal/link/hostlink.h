#pragma once

#include "gamecalls.h"
#include "memoryfile.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

/// The game's connection to the rehearsal host. All functions may be called from any thread;
/// sendFrame from one thread at a time.
///
/// While the host is gone, each isReady looks for its memory again, because a restarted host may
/// have created a new file. Memory once found stays mapped until the library is unloaded, because
/// another thread may be reading it.
class HostLink
{
public:
    HostLink();
    /// Opens the game's session with the current host.
    void openSession();
    /// Closes the session and notifies the host, unless it has been replaced by another.
    void closeSession();
    /// Whether a host is alive and ready, and still the one of the session: a new host does not
    /// know what the game has switched. The only function that looks for a host.
    bool isReady();
    /// 0 without a host.
    std::int32_t build() const;
    /// 0 without a host.
    std::int32_t zoneCount() const;
    /// False without a host. Switching off is also written to the memory of a host that seems gone,
    /// because it may only be slow.
    bool switchOutput(bool on);
    /// Returns whether the frame was accepted. `points` may be null if pointCount is 0.
    bool sendFrame(std::int32_t zone, std::int32_t pointCount, const LdbPoint *points);

private:
    SharedMemory *livingHost(SharedTime now = sharedNow()) const;
    void lookForHost();
    void note(SharedMemory &host, GameCall call) const;

    const std::uint64_t m_process;
    std::atomic<SharedMemory *> m_memory = nullptr;
    std::atomic<SharedMemory *> m_session = nullptr; ///< the host of the open session, or null
    std::atomic<std::uint32_t> m_sessionRun = 0;
    std::mutex m_looking;
    std::vector<std::unique_ptr<MemoryFile>> m_files;
};
