#include "showmachine.h"

// Timers keep their resolution here, window managers answer for title bars, and a desktop that
// goes to sleep does so only where somebody works on the program.

void showmachine::prepare(QCoreApplication & /*application*/) { }

void showmachine::keepAwake(bool /*awake*/) { }
