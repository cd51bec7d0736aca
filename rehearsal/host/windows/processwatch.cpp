#include "processwatch.h"

#include <windows.h>

void ProcessWatch::watch(std::uint64_t process)
{
    release();
    m_watching = true;
    const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    if (handle)
        m_handle = reinterpret_cast<std::intptr_t>(handle);
    else
        m_ended = GetLastError() == ERROR_INVALID_PARAMETER;
}

void ProcessWatch::release()
{
    if (m_handle != none)
        CloseHandle(reinterpret_cast<HANDLE>(m_handle));
    m_handle = none;
    m_watching = false;
    m_ended = false;
}

bool ProcessWatch::hasEnded() const
{
    if (m_handle == none)
        return m_ended;
    return WaitForSingleObject(reinterpret_cast<HANDLE>(m_handle), 0) == WAIT_OBJECT_0;
}
