#pragma once

#include "midibinding.h"

#include <QLatin1StringView>
#include <QTimer>

#include <memory>

class CXBOXController;
class MidiDevIn;
class QCheckBox;
class QComboBox;
class QPushButton;
class QRadioButton;
class QSlider;

/// With what a player plays.
enum class ControlMode { Midi, Xbox, Keyboard };

/// The name of a mode in the settings file.
QLatin1StringView controlModeName(ControlMode mode);

/// No side at all, where a side could stand: nothing is being learnt.
inline constexpr int noSide = 2;

/// One player as the main window sees it: the widgets, the MIDI device and the learnt controls of
/// a side. GUI thread.
struct PlayerSide
{
    int side; ///< 0 left, 1 right

    QRadioButton *midiRadio;
    QRadioButton *xboxRadio;
    QRadioButton *keyboardRadio;
    QComboBox *midiList;
    QComboBox *xboxList;
    QPushButton *learnMove;
    QPushButton *learnStart;
    QPushButton *learnUp;
    QPushButton *learnDown;
    QCheckBox *bits;
    QSlider *sensitivity;
    MidiDevIn *midiIn;

    MidiBinding midiMove = {};
    MidiBinding midiStart = {};
    int xStart = 0; ///< a CXBOXController::buttonList
    int xMove = 0; ///< a CXBOXController::controllerList
    uint upKey = 0; ///< a Qt::Key, 0 for not learnt, here and below
    uint downKey = 0;
    uint startKey = 0;

    /// Runs while the start key counts as held; made at its first press.
    std::unique_ptr<QTimer> startTimer = nullptr;
    // What is in force, to see a change of it.
    ControlMode appliedMode = ControlMode::Xbox;
    const CXBOXController *appliedPad = nullptr;

    /// The mode that the radio buttons show.
    ControlMode mode() const;
    /// The paddle's step per tick for a deflection of -32768 ... 32767, by the sensitivity slider.
    int paddleInput(int deflection) const;
};
