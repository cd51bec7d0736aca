#pragma once

#include "pong.h"

#include <QMainWindow>
#include <QSettings>

#include <memory>

class LaserControls;
class PlayerControls;

namespace Ui {
class MainWindow;
}

/// The operator's window. It owns the form, the settings, the game and the controls of laser and
/// players, and is where their signals meet: each slot hands on to what it is about. All of it
/// runs on the GUI thread; signals of other threads are queued.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Builds the window from the form and the settings. FirstLoad follows from the event loop.
    explicit MainWindow(QWidget *parent = nullptr);
    /// Saves, blanks the laser and releases the devices and the host.
    ~MainWindow() override;

    /// The game, read-only.
    const Pong &game() const { return *pong; }
    /// The laser controls, for their signals: the meta-object of the window has its slots alone.
    const LaserControls &laser() const { return *laserControls; }

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
    void makeReadable();
    void connectGame();
    void connectControls();

    /// Asks the maker's server for a newer version. True when its installer runs, which is to
    /// replace this program.
    bool CheckForUpdate();

    std::unique_ptr<Ui::MainWindow> ui;
    std::unique_ptr<QSettings> store;
    QString releaseNotes; ///< of the version that the update check found
    std::unique_ptr<Pong> pong;
    std::unique_ptr<LaserControls> laserControls;
    std::unique_ptr<PlayerControls> playerControls;

    bool loaded = false; ///< the first load has brought every widget up to date
    bool libraryMissing = false; ///< the host's, so that the program is to end
    /// Set once the window is closed or being destroyed. Nothing may be started from then on;
    /// check it after processing events.
    bool closed = false;
};
