#pragma once

#include "atomicvalue.h"
#include "windowsapi.h"

#include <array>
#include <functional>

/// The gamepads of this process, in place of the real ones. Without a FakePads none is connected.
/// Its members may be used from any thread, but `onGetState`, which is set while nobody asks.
class FakePads
{
public:
    /// A pad as it is now. Unplugging it does not centre it: what it reads is lost with it.
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
        Relaxed<int> reads = 0; ///< calls of XInputGetState, answered or not
    };

    /// Becomes the pads of this process until it is destroyed, with the first `connected` of them
    /// plugged in. One at a time.
    explicit FakePads(int connected = 0);
    ~FakePads();
    FakePads(const FakePads &) = delete;
    FakePads &operator=(const FakePads &) = delete;

    /// By user index.
    std::array<Pad, 4> pads;
    /// Calls of XInputGetState for a user index that no pad can have.
    Relaxed<int> readsBeyond = 0;
    /// Runs inside XInputGetState, on the thread that asks: to stall it, for example.
    std::function<void(DWORD userIndex)> onGetState;
};
