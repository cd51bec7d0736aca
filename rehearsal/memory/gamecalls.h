#pragma once

#include "hoststate.h"

#include <optional>

/// A call of the game, as the host takes it from the memory.
struct NotedCall
{
    GameCall call;
    SharedTime at;
    std::uint64_t process; ///< id of the game's process
};

/// Remembers a call. Never waits, never allocates, calls nothing of the system. From any thread.
void noteCall(SharedMemory &memory, const NotedCall &call);

/// Takes the calls of the game, each once and in order. Calls that were written over before they
/// could be taken are passed over. There is one reader.
class CallReader
{
public:
    /// Starts behind the newest call. The ring must outlive it.
    explicit CallReader(CallRing &ring);

    /// The oldest call that is left; none if there is no more for now.
    std::optional<NotedCall> take();

private:
    CallRing *m_ring;
    std::uint64_t m_last; ///< number of the last call that was taken or passed over
    std::uint64_t m_unfinished = 0; ///< number of the call that was incomplete at the last look
};
