#include "showmode.h"

#include "windowsapi.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <thread>
#include <windowsx.h>

namespace {

/// Windows 11 gives timers of 15.6 ms to a process whose windows cannot be seen, and slows it
/// down. Resolved at run time because older versions of Windows do not export it.
void refusePowerThrottling()
{
    using Set = BOOL(WINAPI *)(HANDLE, PROCESS_INFORMATION_CLASS, LPVOID, DWORD);
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    const auto set = reinterpret_cast<Set>(
        reinterpret_cast<void (*)()>(GetProcAddress(kernel, "SetProcessInformation")));
    if (!set)
        return;
    // One by one: Windows 10 knows the second only, and refuses a call that has both.
    for (const ULONG kind : {ULONG{PROCESS_POWER_THROTTLING_IGNORE_TIMER_RESOLUTION},
             ULONG{PROCESS_POWER_THROTTLING_EXECUTION_SPEED}}) {
        PROCESS_POWER_THROTTLING_STATE never = {
            .Version = PROCESS_POWER_THROTTLING_CURRENT_VERSION,
            .ControlMask = kind,
            .StateMask = 0,
        };
        set(GetCurrentProcess(), ProcessPowerThrottling, &never, sizeof never);
    }
}

/// After a press on a title bar the system waits half a second for the mouse to move, to see
/// whether a drag begins, and blocks the thread meanwhile: no tick. A move that is already queued
/// ends the wait.
class TitleBarPress : public QAbstractNativeEventFilter
{
public:
    bool nativeEventFilter(
        const QByteArray & /*type*/, void *message, qintptr * /*result*/) override
    {
        const auto *press = static_cast<const MSG *>(message);
        if (press->message == WM_NCLBUTTONDOWN && press->wParam == HTCAPTION) {
            // The press is in screen coordinates, the move in those of the window.
            POINT place = {GET_X_LPARAM(press->lParam), GET_Y_LPARAM(press->lParam)};
            ScreenToClient(press->hwnd, &place);
            PostMessageW(press->hwnd, WM_MOUSEMOVE, 0, MAKELPARAM(place.x, place.y));
        }
        return false;
    }
};

/// Exiting would kill the other threads, the one of endWithin() too, and then unload the libraries,
/// of which Qt's network library waits for its threads for ever.
[[noreturn]] void terminate(int exitCode)
{
    TerminateProcess(GetCurrentProcess(), UINT(exitCode));
    std::_Exit(exitCode);
}

} // namespace

void showmode::prepare(QCoreApplication &application)
{
    refusePowerThrottling();
    static TitleBarPress titleBarPress;
    application.installNativeEventFilter(&titleBarPress);
}

void showmode::keepAwake(bool awake)
{
    const EXECUTION_STATE needed =
        awake ? EXECUTION_STATE(ES_SYSTEM_REQUIRED | ES_DISPLAY_REQUIRED) : 0;
    SetThreadExecutionState(ES_CONTINUOUS | needed);
}

void showmode::endWithin(std::chrono::milliseconds time, int exitCode)
{
    std::thread([time, exitCode] {
        std::this_thread::sleep_for(time);
        terminate(exitCode);
    }).detach();
}

void showmode::end(int exitCode)
{
    std::fflush(nullptr);
    terminate(exitCode);
}
