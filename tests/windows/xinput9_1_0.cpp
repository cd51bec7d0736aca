// Replaces the system library with one pad, with user index 0, that is played by a script.

#include "script.h"

#include <windows.h>

#include <xinput.h>

#include <mutex>

namespace {

std::mutex mutex; // clazy:exclude=non-pod-global-static
XINPUT_STATE pad = {};

/// pad BUTTONS LEFTX LEFTY RIGHTX RIGHTY
void playPad(const std::vector<int> &numbers)
{
    const std::lock_guard lock(mutex);
    ++pad.dwPacketNumber;
    pad.Gamepad.wButtons = static_cast<WORD>(numbers.at(0));
    pad.Gamepad.sThumbLX = static_cast<SHORT>(numbers.at(1));
    pad.Gamepad.sThumbLY = static_cast<SHORT>(numbers.at(2));
    pad.Gamepad.sThumbRX = static_cast<SHORT>(numbers.at(3));
    pad.Gamepad.sThumbRY = static_cast<SHORT>(numbers.at(4));
}

} // namespace

extern "C" {

DWORD WINAPI XInputGetState(DWORD userIndex, XINPUT_STATE *state)
{
    static std::once_flag once;
    std::call_once(once, [] { Script::follow("pad", playPad); });
    Script::note("XInputGetState " + std::to_string(userIndex));
    if (userIndex != 0)
        return ERROR_DEVICE_NOT_CONNECTED;
    const std::lock_guard lock(mutex);
    *state = pad;
    return ERROR_SUCCESS;
}

DWORD WINAPI XInputSetState(DWORD userIndex, XINPUT_VIBRATION * /*vibration*/)
{
    Script::note("XInputSetState " + std::to_string(userIndex));
    return userIndex == 0 ? ERROR_SUCCESS : ERROR_DEVICE_NOT_CONNECTED;
}
}
