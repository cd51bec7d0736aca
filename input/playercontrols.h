#pragma once

#include "player.h"

#include <QList>
#include <QObject>

#include <optional>

class CXBOXController;
class Pong;
class QEvent;

/// A learnable control of a player.
enum class Control { Move, Start, Up, Down };

/// In place of a side's number: nothing is being learnt.
inline constexpr int noSide = 2;

/// Maps the controllers of both players (MIDI devices, gamepads, keyboard) to the paddles and the
/// serve, and learns their controls. Uses the players' widgets, fills their device lists, and owns
/// the gamepad pollers. GUI thread only; use queued connections from other threads.
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

    // Devices. Fill the lists once, before any of the operations below.

    /// Lists the system's MIDI input devices for both players.
    void fillMidiLists();
    /// Lists the connected gamepads from the first one up to the first gap, and creates their
    /// pollers.
    void fillXboxLists();
    /// A MIDI device was chosen (from 1), or none (0): closes or opens and starts it. A device that
    /// cannot be opened is logged and its list returns to no device.
    void chooseMidiDevice(Side side, int entry);
    /// Stores and shows the control modes selected by the radio buttons, and closes devices that
    /// they do not use. Processes events.
    void applyControlMode();
    /// Rereads the gamepad bindings and polls only the gamepads that are in use.
    void xboxChanged();
    /// Deletes the pollers from the last to the first.
    void releaseGamepads();
    /// Stops and closes the open MIDI devices; no message arrives afterwards.
    void closeMidiDevices();

    // Controller events.

    /// Handles a MIDI message from a player's device: learnt, or played. Ignored if `play` is not a
    /// side.
    void readMidiData(int play, unsigned char data1, unsigned char data2, unsigned char data3);
    /// Handles a key event of any widget of the window: learnt, or played. Returns whether it was
    /// used; other events are ignored.
    bool captureKey(const QEvent *event);

    // Learning. At most one control of one side is being learnt at a time.

    /// Starts learning a control, or cancels if that control is being learnt.
    void learnOrCancel(Control control, Side side);
    /// Stops learning without updating the buttons.
    void cancelLearn();
    /// Stores a learnt gamepad button (a CXBOXController::buttonList).
    void xboxSetStartSource(int button, Side side);
    /// Stores a learnt gamepad stick (a CXBOXController::controllerList).
    void xboxSetControllerSource(int control, Side side);
    /// Rereads the bindings and updates the learn buttons.
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
    /// The pad's number in the lists.
    int numberOf(const CXBOXController *pad) const;
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
