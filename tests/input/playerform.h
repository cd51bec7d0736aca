#pragma once

#include "player.h"
#include "playercontrols.h"
#include "pong.h"

#include <QSettings>
#include <QWidget>

#include <memory>

class QGridLayout;

/// The widgets of both players under the names that the operator's window gives them, and nothing
/// else of that window: with a game and the settings of the working directory, and wired to
/// PlayerControls as the window wires its own.
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

    std::unique_ptr<QSettings> m_store;
    PerSide<PlayerWidgets> m_widgets;

public:
    PlayerControls controls;
};
