#pragma once

#include <cstdint>

/// Watches another process of this machine until it has ended, however it does. One that ends and
/// whose number another one gets is not taken for that.
class ProcessWatch
{
public:
    ProcessWatch() = default;
    ~ProcessWatch() { release(); }
    ProcessWatch(const ProcessWatch &) = delete;
    ProcessWatch &operator=(const ProcessWatch &) = delete;

    /// Watches the process with this id instead of the one before.
    void watch(std::uint64_t process);
    void release();

    bool isWatching() const { return m_watching; }
    /// Whether the process has ended; never when the system does not let it be watched. Costs one
    /// call of the system.
    bool hasEnded() const;

private:
    std::intptr_t m_handle = none; ///< the system's
    bool m_watching = false;
    bool m_ended = false; ///< it had ended before it could be watched

    static constexpr std::intptr_t none = -1;
};
