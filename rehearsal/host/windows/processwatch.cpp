#include "processwatch.h"

#include <windows.h>

namespace {

HANDLE handleOf(std::intptr_t number)
{
    return reinterpret_cast<HANDLE>(number); // NOLINT(performance-no-int-to-ptr)
}

} // namespace

void ProcessWatch::watch(std::uint64_t process)
{
    release();
    m_watching = true;
    HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    if (handle)
        m_handle = reinterpret_cast<std::intptr_t>(handle);
    else
        m_ended = GetLastError() == ERROR_INVALID_PARAMETER;
}

void ProcessWatch::release()
{
    if (m_handle != none)
        CloseHandle(handleOf(m_handle));
    m_handle = none;
    m_watching = false;
    m_ended = false;
}

bool ProcessWatch::hasEnded() const
{
    if (m_handle == none)
        return m_ended;
    return WaitForSingleObject(handleOf(m_handle), 0) == WAIT_OBJECT_0;
}
