#pragma once

#include "pong.h"

#include <QObject>

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

/// What the operator decides about the laser: its output, whether the game is shown, and in which
/// zone. Shows the state of the host, without which none of it can be used. GUI thread.
class LaserControls : public QObject
{
    Q_OBJECT

public:
    /// Neither the widgets nor the game are owned; they outlive this object.
    LaserControls(const LaserWidgets &widgets, Pong &pong);

    /// Switches the host's output to what the output button shows.
    void switchOutput();
    /// Shows or hides the game as the game button says.
    void showGame();
    /// Sends the frames to the zone of a list entry; the first entry is none.
    void chooseZone(int entry);
    /// Lists the host's zones, or none, and selects the first one if there is one.
    void RefreshZoneList(bool noZones);
    /// Shows the state of the host. Without a host the game is hidden and the output is off.
    void RefreshBeyondStatus(BeyondState beState);

signals:
    /// The game is shown or hidden, by the operator or because the host is lost.
    void gameShownChanged(bool shown);

private:
    void showHostReady();

    LaserWidgets ui;
    Pong &pong;
};
