#pragma once

#include "midibinding.h"

#include <QString>

// What an operator calls a control that a player has learnt. The numbers come from the settings
// file, so that they may be none that a device has; those are named by their numbers.

namespace controlnames {

/// "control change 7, channel 3". Channels count from 1.
QString midi(const MidiBinding &binding);
/// "button A", of a CXBOXController::buttonList.
QString padButton(int button);
/// "left stick, vertical", of a CXBOXController::controllerList.
QString padStick(int control);
/// "key W", of a Qt::Key.
QString key(uint key);

} // namespace controlnames
