#pragma once

#include "hoststate.h"

#include <optional>

/// A call of the game, as the host reads it from shared memory.
struct NotedCall
{
    GameCall call;
    SharedTime at;
    std::uint64_t process; ///< id of the game's process
};

/// Stores a call. Never blocks, never allocates, makes no system calls. From any thread.
void noteCall(SharedMemory &memory, const NotedCall &call);

/// Reads the calls of the game, each once and in order. Calls that were overwritten before they
/// were read are skipped. One reader only.
class CallReader
{
public:
    /// Starts after the newest call. The ring must outlive the reader.
    explicit CallReader(CallRing &ring);

    /// The oldest unread call, if any.
    std::optional<NotedCall> take();

private:
    CallRing *m_ring;
    std::uint64_t m_last; ///< number of the last call read or skipped
    std::uint64_t m_unfinished = 0; ///< number of the call found incomplete last time
};
