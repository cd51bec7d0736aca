#include "processwatch.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

extern "C" { // which the header of glibc 2.36 lacks
#include <sys/pidfd.h>
}

void ProcessWatch::watch(std::uint64_t process)
{
    release();
    m_watching = true;
    m_handle = pidfd_open(static_cast<pid_t>(process), 0);
    m_ended = m_handle == none && errno == ESRCH;
}

void ProcessWatch::release()
{
    if (m_handle != none)
        close(static_cast<int>(m_handle));
    m_handle = none;
    m_watching = false;
    m_ended = false;
}

bool ProcessWatch::hasEnded() const
{
    if (m_handle == none)
        return m_ended;
    pollfd end = {static_cast<int>(m_handle), POLLIN, 0};
    return poll(&end, 1, 0) == 1 && (end.revents & POLLIN) != 0;
}
