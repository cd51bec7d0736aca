#pragma once

#include "fakehost.h"
#include "fakemidi.h"
#include "fakepads.h"
#include "operatorwindow.h"

/// The operator's window with a fake host, MIDI devices and gamepads that the test controls.
class RunningWindow : public OperatorWindow
{
public:
    using OperatorWindow::OperatorWindow;
    ~RunningWindow() override;
    RunningWindow(const RunningWindow &) = delete;
    RunningWindow &operator=(const RunningWindow &) = delete;

    /// Waits until `count` more frames have been sent.
    void waitForFrames(int count);

    FakeHost host;
    FakeMidi midi;
    FakePads pads;
};
