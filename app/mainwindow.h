#pragma once

#include "playerside.h"
#include "pong.h"
#include "settings.h"

#include <QList>
#include <QMainWindow>

#include <array>
#include <functional>
#include <memory>

class CXBOXController;

namespace Ui {
class MainWindow;
}

/// The operator's window. It owns the game, the settings and the gamepad pollers, and is where
/// their signals meet. All of it runs on the GUI thread; what comes from other threads is queued.
///
/// It is one class because the slots of the form are its own, but each concern lies in the room
/// where it belongs: laser controls and host status in laser/, devices, keyboard, mapping and
/// learning in input/.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Builds the window from the form and the settings. FirstLoad follows from the event loop.
    explicit MainWindow(QWidget *parent = nullptr);
    /// Saves, turns the laser dark, and gives devices and host back.
    ~MainWindow() override;

    /// Called whenever the operator or the loss of the host shows or hides the game, with what it
    /// is now, and once at the first load.
    std::function<void(bool)> gameShownChanged = [](bool) {};

    /// The game, to be looked at.
    const Pong &game() const { return *pong; }

public slots:
    bool eventFilter(QObject *obj, QEvent *event) override;
    void FirstLoad();
    void on_showButton_clicked();
    void on_learnCCL_clicked();
    void on_learnStartL_clicked();
    void on_learnCCR_clicked();
    void on_learnStartR_clicked();
    void midiLComboChanged(int index);
    void midiRComboChanged(int index);
    void xboxChanged(int index);
    void xboxSetStartSource(int button, bool left);
    void xboxSetControllerSource(int control, bool left);
    void zoneChanged(int iZone);
    void ReadMidiData(int play, unsigned char data1, unsigned char data2, unsigned char data3);
    void speedChanged(int value);
    void RefreshBeyondStatus(BeyondState beState);
    void RequestExit();
    void on_enableButton_clicked();
    void on_resetButton_clicked();
    void on_learnUpL_clicked();
    void on_learnDownL_clicked();
    void on_learnUpR_clicked();
    void on_learnDownR_clicked();

protected:
    /// Ends the program, from inside any event loop. The window is closed from here on.
    void closeEvent(QCloseEvent *event) override;

private:
    // app/mainwindow.cpp
    void makeReadable();
    void connectGame();
    void readSettings();

    // app/updatechecker.cpp
    /// Asks the maker's server for a newer version. True when its installer runs, which is to
    /// replace this program.
    bool CheckForUpdate();

    // laser/
    void RefreshZoneList(bool noZones);

    // input/devicelists.cpp
    void fillMidiLists();
    void fillXboxLists();
    void connectPad(const CXBOXController *pad);
    void midiComboChanged(PlayerSide &player, int index);
    /// The poller of the gamepad that a side plays with, or null.
    CXBOXController *padOf(const PlayerSide &player) const;

    // input/controlmapping.cpp
    void applyControlMode();
    void applyControlMode(PlayerSide &player);
    void padMoved(const CXBOXController *pad, int control, int value);
    void padPressed(const CXBOXController *pad, int button, bool pressed);
    /// Whether a control is being learnt from a pad for `learnSide`; its players then rest.
    bool learnsFrom(const CXBOXController *pad, int learnSide) const;
    void stopPaddle(const PlayerSide &player);

    // input/learn.cpp
    void learnOrCancel(int &learnSide, int side);
    void cancelLearn();
    void learnMidi(int &learnSide, const SettingOfSides<uint> &status,
        const SettingOfSides<uint> &number, uint data1, uint data2);
    void loadBindings(PlayerSide &player);
    void refreshLearnButtons();
    void showBindings(const PlayerSide &player);

    // input/keyboardcapture.cpp
    bool pressKey(PlayerSide &player, uint key);
    bool learnKey(PlayerSide &player, uint key);
    bool releaseKey(const PlayerSide &player, uint key, bool autoRepeat);
    void pressStart(PlayerSide &player);
    void releaseHeldKeys();

    std::unique_ptr<Ui::MainWindow> ui;
    std::unique_ptr<QSettings> store;
    QString releaseNotes; ///< of the version that the update check found
    std::unique_ptr<Pong> pong;
    std::array<PlayerSide, 2> players;
    QList<CXBOXController *> xboxControllers;

    // The side for which a control is being learnt, or noSide. At most one of them is a side.
    int moveLearnSide = noSide;
    int startLearnSide = noSide;
    int upLearnSide = noSide;
    int downLearnSide = noSide;

    bool loaded = false; ///< the first load has brought every widget up to date
    bool libraryMissing = false; ///< the host's, so that the program is to end
    /// Set once the window is closed or being destroyed. Nothing may be started from then on;
    /// whatever processes events has to look at it afterwards.
    bool closed = false;
};
