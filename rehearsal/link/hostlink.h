#pragma once

#include "gamecalls.h"
#include "memoryfile.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

/// The way from the game to the rehearsal host. Every function may be called from any thread;
/// sendFrame from one at a time.
///
/// While the host is gone each isReady looks for its memory anew, because a host that comes back
/// may have had to make a new file. Memory once found stays mapped until the library is given
/// back: another thread may be reading it.
class HostLink
{
public:
    HostLink();
    /// Opens the game's session with the host that is there.
    void openSession();
    /// Closes it and tells the host, unless another one has taken its place.
    void closeSession();
    /// Whether a host is alive and ready, and not another one than that of the session: the one
    /// that comes after knows nothing of what the game has switched. The only function that looks
    /// for a host.
    bool isReady();
    /// 0 without a host.
    std::int32_t build() const;
    /// 0 without a host.
    std::int32_t zoneCount() const;
    /// False without a host. Switching off reaches the memory of a host that seems gone too: it
    /// may only be slow.
    bool switchOutput(bool on);
    /// Whether the frame was taken. Points may be null when there are none of them.
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
