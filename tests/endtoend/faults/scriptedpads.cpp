#include "seams.h"
#include "windowsapi.h"

// The gamepads: those of the scripted bits are connected, with all sticks at the scripted place.

namespace {

bool isConnected(DWORD userIndex)
{
    return userIndex < 32 && (seams().pads >> userIndex & 1U) != 0;
}

} // namespace

DWORD XInputGetState(DWORD userIndex, XINPUT_STATE *state)
{
    ++seams().padReads;
    if (!isConnected(userIndex))
        return ERROR_DEVICE_NOT_CONNECTED;
    const SHORT stick = seams().sticks;
    *state = {1, {0, 0, 0, stick, stick, stick, stick}};
    return ERROR_SUCCESS;
}

DWORD XInputSetState(DWORD userIndex, XINPUT_VIBRATION * /*vibration*/)
{
    return isConnected(userIndex) ? ERROR_SUCCESS : ERROR_DEVICE_NOT_CONNECTED;
}
