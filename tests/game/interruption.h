#pragma once

#include <functional>

/// Runs `work` and, in its midst, `interruption`: after that many machine instructions of it, on
/// the same thread. Returns whether it came to that; work that is shorter runs to its end alone.
///
/// With a counter that goes through all of them a test sees every way in which another thread could
/// have come between two accesses to shared memory, whatever the machine has else to do.
bool runInterrupted(
    const std::function<void()> &work, int instructions, const std::function<void()> &interruption);
