#include "playerside.h"

#include "sensitivity.h"

#include <QRadioButton>
#include <QSlider>

QLatin1StringView controlModeName(ControlMode mode)
{
    switch (mode) {
    case ControlMode::Midi:
        return QLatin1StringView("MIDI");
    case ControlMode::Xbox:
        return QLatin1StringView("XBOX");
    case ControlMode::Keyboard:
        break;
    }
    return QLatin1StringView("KEYBOARD");
}

ControlMode PlayerSide::mode() const
{
    return midiRadio->isChecked()    ? ControlMode::Midi
        : keyboardRadio->isChecked() ? ControlMode::Keyboard
                                     : ControlMode::Xbox;
}

int PlayerSide::paddleInput(int deflection) const
{
    return paddleInputFor(
        deflection, sensitivity->minimum(), sensitivity->maximum(), sensitivity->value());
}
