#pragma once

#include "midibinding.h"

#include <QString>

// The names of learnt controls for the operator. The numbers come from the settings file and may
// not belong to any real control; those are named by number.

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
