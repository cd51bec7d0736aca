#pragma once

#include "pong.h"
#include "settings.h"

#include <QMainWindow>

#include <memory>

class LaserControls;
class PlayerControls;

namespace Ui {
class MainWindow;
}

/// The operator's window. It owns the form, the settings, the game, and the laser and player
/// controls, and connects them: each slot forwards to the object responsible. GUI thread only;
/// signals from other threads are queued.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// Builds the window from the form and the settings. The event loop then runs FirstLoad.
    explicit MainWindow(QWidget *parent = nullptr);
    /// Saves, blanks the laser and releases the devices and the host.
    ~MainWindow() override;

    /// The game, read-only.
    const Pong &game() const { return *pong; }
    /// The laser controls, for their signals; the window itself declares only slots.
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
    /// Ends the program, even from inside a nested event loop. Sets `closed`.
    void closeEvent(QCloseEvent *event) override;

private:
    void makeReadable();
    void connectGame();
    void connectControls();

    /// Asks the maker's server for a newer version. True if its installer was started, so that
    /// this program must end.
    bool CheckForUpdate();

    std::unique_ptr<Ui::MainWindow> ui;
    std::unique_ptr<QSettings, settings::Close> store;
    QString releaseNotes; ///< of the version that the update check found
    std::unique_ptr<Pong> pong;
    std::unique_ptr<LaserControls> laserControls;
    std::unique_ptr<PlayerControls> playerControls;

    bool loaded = false; ///< the first load has updated every widget
    bool libraryMissing = false; ///< the host's library was not found; the program must end
    /// Set once the window is closed or being destroyed. Nothing may be started from then on;
    /// check it after processing events.
    bool closed = false;
};
