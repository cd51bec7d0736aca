#pragma once

class QCoreApplication;

/// What a show asks of the computer that it runs on, where the system would otherwise do what is
/// right for an office. A system that refuses, or that needs no asking, is no error. GUI thread.
namespace showmachine {

/// To be called once, before the first window: timers keep their resolution while the window is
/// covered or minimised, a press on the title bar does not hold up the event loop, and whoever ends
/// the program from outside gets the same farewell, and a dark laser, as one who closes the window.
void prepare(QCoreApplication &application);

/// Whether display and system must stay awake, from now on until told otherwise or until the
/// process ends.
void keepAwake(bool awake);

/// Ends the process at once, without waiting for its threads and without destroying what is static
/// or on the stack. The caller has released everything that matters outside the process.
[[noreturn]] void endProcess(int exitCode);

} // namespace showmachine
