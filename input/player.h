#pragma once

#include "midibinding.h"
#include "side.h"

#include <QLatin1StringView>
#include <QTimer>

#include <memory>

class CXBOXController;
class MidiDevIn;
class QCheckBox;
class QComboBox;
class QPushButton;
class QRadioButton;
class QSettings;
class QSlider;

/// The kind of controller that a player uses.
enum class ControlMode { Midi, Xbox, Keyboard };

/// The name of a mode in the settings file.
QLatin1StringView controlModeName(ControlMode mode);
/// The mode of a name in the settings file; the keyboard if the name matches no other mode exactly.
ControlMode controlModeNamed(const QString &name);

/// The widgets of the operator's window that belong to one player.
struct PlayerWidgets
{
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
};

/// One player: the widgets, the MIDI device and the learnt controls of a side. GUI thread.
struct Player
{
    Side side;
    PlayerWidgets ui;
    MidiDevIn *midiIn;

    MidiBinding midiMove = {};
    MidiBinding midiStart = {};
    int xStart = 0; ///< a CXBOXController::buttonList
    int xMove = 0; ///< a CXBOXController::controllerList
    uint upKey = 0; ///< a Qt::Key, 0 for not learnt, here and below
    uint downKey = 0;
    uint startKey = 0;

    /// Runs while the start key counts as held; created at its first press.
    std::unique_ptr<QTimer> startTimer = nullptr;
    // As last applied, to detect changes.
    ControlMode appliedMode = ControlMode::Xbox;
    const CXBOXController *appliedPad = nullptr;

    /// The side, for the log.
    const char *name() const { return side == Side::Left ? "Left" : "Right"; }
    /// The mode selected by the radio buttons.
    ControlMode mode() const;
    /// Checks the radio button of a mode.
    void showMode(ControlMode mode);
    /// Enables and shows only the widgets that a mode needs.
    void showWidgetsOf(ControlMode mode);
    /// The paddle's step per tick for a deflection of -32768 ... 32767, by the sensitivity slider.
    int paddleInput(int deflection) const;

    /// Reads the learnt MIDI messages and keys.
    void loadBindings(const QSettings &store);
    /// Reads the learnt gamepad button and stick.
    void loadPadBindings(const QSettings &store);
    /// Updates the learn buttons: enabled or not, and whether their controls are learnt. The button
    /// that is learning keeps its look, which would otherwise be set twice.
    void showBindings(const QSettings &store, const QPushButton *beingLearnt);
};
