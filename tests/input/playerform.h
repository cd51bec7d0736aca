#pragma once

#include "player.h"
#include "playercontrols.h"
#include "pong.h"
#include "settings.h"

#include <QWidget>

#include <memory>

class QGridLayout;

/// Only the players' widgets of the operator's window, with the same names and connected to
/// PlayerControls in the same way, with a game and the settings of the working directory.
class PlayerForm : public QWidget
{
public:
    /// Lists the devices and applies the stored modes.
    PlayerForm();
    ~PlayerForm() override;

    Pong game;

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    PlayerWidgets makeWidgets(Side side, QGridLayout &layout);
    void connectWidgets(Side side, const PlayerWidgets &widgets);

    settings::Store m_store;
    PerSide<PlayerWidgets> m_widgets;

public:
    PlayerControls controls;
};
