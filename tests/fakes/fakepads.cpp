#include "fakepads.h"

#include <atomic>

namespace {

std::atomic<FakePads *> fakePads = nullptr;

/// The pad of a user index, or null if it is not connected.
FakePads::Pad *connectedPad(FakePads *pads, DWORD userIndex)
{
    if (!pads || userIndex >= pads->pads.size() || !pads->pads[userIndex].connected)
        return nullptr;
    return &pads->pads[userIndex];
}

} // namespace

FakePads::FakePads(int connected)
{
    for (int index = 0; index < connected; ++index)
        pads[static_cast<std::size_t>(index)].connected = true;
    fakePads = this;
}

FakePads::~FakePads()
{
    fakePads = nullptr;
}

DWORD XInputGetState(DWORD userIndex, XINPUT_STATE *state)
{
    FakePads *pads = fakePads;
    if (!pads)
        return ERROR_DEVICE_NOT_CONNECTED;
    if (pads->onGetState)
        pads->onGetState(userIndex);
    (userIndex < pads->pads.size() ? pads->pads[userIndex].reads : pads->readsBeyond) += 1;
    const FakePads::Pad *pad = connectedPad(pads, userIndex);
    if (!pad)
        return ERROR_DEVICE_NOT_CONNECTED;
    *state = {1,
        {pad->buttons, pad->leftTrigger, pad->rightTrigger, pad->thumbLX, pad->thumbLY,
            pad->thumbRX, pad->thumbRY}};
    return ERROR_SUCCESS;
}

DWORD XInputSetState(DWORD userIndex, XINPUT_VIBRATION *vibration)
{
    FakePads::Pad *pad = connectedPad(fakePads, userIndex);
    if (!pad)
        return ERROR_DEVICE_NOT_CONNECTED;
    pad->leftMotor = vibration->wLeftMotorSpeed;
    pad->rightMotor = vibration->wRightMotorSpeed;
    return ERROR_SUCCESS;
}
