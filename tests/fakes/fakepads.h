#pragma once

#include "atomicvalue.h"
#include "windowsapi.h"

#include <array>
#include <functional>

/// Replaces the gamepads of this process. Without a FakePads none is connected. Members may be used
/// from any thread, except that `onGetState` must not be set while pads are being polled.
class FakePads
{
public:
    /// The current state of a pad. Unplugging a pad does not reset it.
    struct Pad
    {
        Relaxed<bool> connected = false;
        Relaxed<WORD> buttons = 0;
        Relaxed<BYTE> leftTrigger = 0;
        Relaxed<BYTE> rightTrigger = 0;
        Relaxed<SHORT> thumbLX = 0;
        Relaxed<SHORT> thumbLY = 0;
        Relaxed<SHORT> thumbRX = 0;
        Relaxed<SHORT> thumbRY = 0;
        Relaxed<WORD> leftMotor = 0;
        Relaxed<WORD> rightMotor = 0;
        Relaxed<int> reads = 0; ///< calls of XInputGetState, successful or not
    };

    /// Are the pads of this process until destroyed, the first `connected` of them plugged in. One
    /// at a time.
    explicit FakePads(int connected = 0);
    ~FakePads();
    FakePads(const FakePads &) = delete;
    FakePads &operator=(const FakePads &) = delete;

    /// By user index.
    std::array<Pad, 4> pads;
    /// Calls of XInputGetState for a user index that no pad can have.
    Relaxed<int> readsBeyond = 0;
    /// Runs inside XInputGetState, on the calling thread, to stall it for example.
    std::function<void(DWORD userIndex)> onGetState;
};
