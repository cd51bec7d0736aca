#pragma once

#include "player.h"

#include <QList>
#include <QObject>

#include <optional>

class CXBOXController;
class Pong;
class QEvent;

/// A control that a player can have learnt.
enum class Control { Move, Start, Up, Down };

/// No side at all, where the number of a side could be: nothing is being learnt.
inline constexpr int noSide = 2;

/// Maps the controllers of both players (MIDI devices, gamepads, keyboard) to the paddles and the
/// serve, and learns their controls. It has the players' widgets, fills their device lists, and
/// owns the gamepad pollers. All of it runs on the GUI thread; connect signals of other threads
/// queued.
class PlayerControls : public QObject
{
    Q_OBJECT

public:
    /// Neither the widgets nor the game are owned; they outlive this object. The store may be
    /// deleted after releaseGamepads() and cancelLearn(), if the widgets are disabled by then.
    PlayerControls(const PerSide<PlayerWidgets> &widgets, Pong &pong, QSettings &store);
    ~PlayerControls() override;

    /// Shows the stored sensitivities and control modes. Applies nothing yet.
    void readSettings();
    /// Stores the sensitivities.
    void writeSettings();

    // Devices. The lists are filled once, before any of the operations below.

    /// Lists the system's MIDI input devices for both players.
    void fillMidiLists();
    /// Lists the unbroken run of connected gamepads from the first one on, and makes their pollers.
    void fillXboxLists();
    /// A MIDI device was chosen (from 1), or none (0): closes or opens and starts it. A device that
    /// cannot be opened is logged and its list returns to no device.
    void chooseMidiDevice(Side side, int entry);
    /// Stores and shows the control modes that the radio buttons have, and closes what they do not
    /// use. Processes events.
    void applyControlMode();
    /// Reads the gamepad bindings again and polls the gamepads that are in use, and no others.
    void xboxChanged();
    /// Deletes the pollers from the last to the first.
    void releaseGamepads();
    /// Stops and closes the open MIDI devices, so that no message comes any more.
    void closeMidiDevices();

    // Controller events.

    /// A MIDI message of a player's device: learnt, or played. Other numbers than those of sides
    /// are ignored.
    void readMidiData(int play, unsigned char data1, unsigned char data2, unsigned char data3);
    /// A key event of any of the window's widgets: learnt, or played. Returns whether it was used;
    /// other events never are.
    bool captureKey(const QEvent *event);

    // Learning. At most one control of one side is being learnt at a time.

    /// Begins to learn a control, or cancels it if it is the one being learnt.
    void learnOrCancel(Control control, Side side);
    /// Stops learning, without showing it.
    void cancelLearn();
    /// Stores a learnt gamepad button (a CXBOXController::buttonList).
    void xboxSetStartSource(int button, Side side);
    /// Stores a learnt gamepad stick (a CXBOXController::controllerList).
    void xboxSetControllerSource(int control, Side side);
    /// Reads the bindings again and shows them on the learn buttons.
    void refreshLearnButtons();

    // The side whose control is being learnt: 0, 1 or noSide.
    int moveLearnSide() const { return learnSide(Control::Move); }
    int startLearnSide() const { return learnSide(Control::Start); }
    int upLearnSide() const { return learnSide(Control::Up); }
    int downLearnSide() const { return learnSide(Control::Down); }

private:
    struct Learning
    {
        Control control;
        Side side;
        bool operator==(const Learning &) const = default;
    };

    // playercontrols.cpp
    void applyControlMode(Player &player);
    void stopPaddle(const Player &player);
    /// Stops the paddle of a player and, on a shared gamepad, that of the partner.
    void stopPlayersOf(const Player &player);

    // devicelists.cpp
    void connectPad(const CXBOXController *pad);
    /// The poller of the gamepad that a player plays with, or null.
    CXBOXController *padOf(const Player &player) const;
    void padMoved(const CXBOXController *pad, int control, int value);
    void padPressed(const CXBOXController *pad, int button, bool pressed);

    // learn.cpp
    bool learns(Control control, Side side) const;
    bool learnsFrom(const CXBOXController *pad, Control control) const;
    int learnSide(Control control) const;
    bool learnMidi(Side side, uint status, uint number);
    bool learnKey(const Player &player, uint key);
    void showLearning();

    // keyboardcapture.cpp
    bool pressKey(Player &player, uint key);
    bool releaseKey(const Player &player, uint key, bool autoRepeat);
    void pressStart(Player &player);
    void releaseHeldKeys();

    Pong &pong;
    QSettings &store;
    PerSide<Player> players;
    QList<CXBOXController *> xboxControllers;
    std::optional<Learning> learning;
};
