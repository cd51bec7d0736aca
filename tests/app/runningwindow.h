#pragma once

#include "fakehost.h"
#include "fakemidi.h"
#include "fakepads.h"
#include "operatorwindow.h"

/// The operator's window with a host, MIDI devices and gamepads to be played by hand.
class RunningWindow : public OperatorWindow
{
public:
    using OperatorWindow::OperatorWindow;
    ~RunningWindow() override;
    RunningWindow(const RunningWindow &) = delete;
    RunningWindow &operator=(const RunningWindow &) = delete;

    /// Waits until `count` more frames were sent.
    void waitForFrames(int count);

    FakeHost host;
    FakeMidi midi;
    FakePads pads;
};
