#pragma once

#include "pong.h"

#include <QObject>

#include <optional>

class QComboBox;
class QLabel;
class QPushButton;

/// The widgets of the operator's window that switch the laser and show the state of its host.
struct LaserWidgets
{
    QPushButton *enableButton;
    QPushButton *showButton;
    QPushButton *resetButton;
    QComboBox *zoneComboBox;
    QLabel *statusLabel;
};

/// The operator's laser controls: output, whether the game is shown, and in which zone. Shows the
/// state of the host and disables the controls without one. Logs every change. GUI thread.
class LaserControls : public QObject
{
    Q_OBJECT

public:
    /// Takes no ownership; the widgets and the game must outlive this object.
    LaserControls(const LaserWidgets &widgets, Pong &pong);

    /// Switches the host's output according to the output button.
    void switchOutput();
    /// Shows or hides the game according to the game button.
    void showGame();
    /// Sends the frames to the zone of a list entry; the first entry means no zone.
    void chooseZone(int entry);
    /// Lists the host's zones, or none, and selects the first one if any.
    void RefreshZoneList(bool noZones);
    /// Shows the state of the host. Without a host, hides the game and switches the output off.
    void RefreshBeyondStatus(BeyondState beState);

signals:
    /// The game was shown or hidden, by the operator or because the host was lost.
    void gameShownChanged(bool shown);

private:
    void showHostReady();
    void logHost(BeyondState beState);

    LaserWidgets ui;
    Pong &pong;
    // As last logged.
    std::optional<int> hostBuild; ///< none without a host
    bool outputOn = false;
    int zoneEntry = -1; ///< of the zone list
};
