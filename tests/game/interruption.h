#pragma once

#include <functional>

/// Runs `work`, interrupted by `interruption` after the given number of machine instructions, on
/// the same thread. Returns whether it was interrupted; shorter work just runs to its end.
///
/// By trying every instruction, a test covers all ways in which another thread could interleave its
/// accesses to shared memory, regardless of scheduling.
bool runInterrupted(
    const std::function<void()> &work, int instructions, const std::function<void()> &interruption);
