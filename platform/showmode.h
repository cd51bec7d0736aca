#pragma once

#include <chrono>

class QCoreApplication;

/// Asks the system not to save power, throttle timers or blank the screen during a show. A refusal
/// is not an error. GUI thread.
namespace showmode {

/// Call once, before the first window: timers keep their resolution while the window is covered or
/// minimised, a press on the title bar does not hold up the event loop, and a request of the system
/// to end the program shuts down as cleanly, laser blanked, as closing the window.
void prepare(QCoreApplication &application);

/// Keeps display and system awake, or no longer, until the next call or the end of the process.
void keepAwake(bool awake);

/// Ends the process with `exitCode` after that time at the latest, whatever its threads wait for
/// then. The caller has released everything that matters outside the process.
void endWithin(std::chrono::milliseconds time, int exitCode);

/// Ends the process where returning from main() could hang; elsewhere it returns. Call last in
/// main(), once the application is destroyed.
void end(int exitCode);

} // namespace showmode
