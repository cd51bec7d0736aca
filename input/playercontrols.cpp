#include "playercontrols.h"

#include "cxboxcontroller.h"
#include "mididevices.h"
#include "pong.h"
#include "settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QSlider>
#include <QThread>

PlayerControls::PlayerControls(const PerSide<PlayerWidgets> &widgets, Pong &pong, QSettings &store)
    : pong(pong)
    , store(store)
    , players{{{{.side = Side::Left, .ui = widgets[Side::Left], .midiIn = &midiInLeft},
          {.side = Side::Right, .ui = widgets[Side::Right], .midiIn = &midiInRight}}}}
{
}

PlayerControls::~PlayerControls()
{
    releaseGamepads();
}

void PlayerControls::readSettings()
{
    for (Player &player : players) {
        player.ui.sensitivity->setValue(settings::read(store, settings::sensitivity[player.side]));
        player.showMode(
            controlModeNamed(settings::read(store, settings::controlMode[player.side])));
    }
}

void PlayerControls::writeSettings()
{
    for (const Player &player : players)
        settings::write(store, settings::sensitivity[player.side], player.ui.sensitivity->value());
}

void PlayerControls::applyControlMode()
{
    for (Player &player : players)
        applyControlMode(player);
    xboxChanged();
}

void PlayerControls::applyControlMode(Player &player)
{
    const ControlMode mode = player.mode();
    settings::write(store, settings::controlMode[player.side], controlModeName(mode));
    // The controller of the previous mode no longer steers.
    if (std::exchange(player.appliedMode, mode) != mode)
        stopPaddle(player);
    if (mode != ControlMode::Midi) {
        player.ui.midiList->setCurrentIndex(0);
        QCoreApplication::processEvents();
    }
    // Another mode may have been chosen and applied meanwhile.
    player.showWidgetsOf(player.mode());
}

void PlayerControls::stopPaddle(const Player &player)
{
    pong.setPaddleInput(sideNumber(player.side), 0);
}

void PlayerControls::stopPlayersOf(const Player &player)
{
    const CXBOXController *pad = padOf(player);
    for (const Player &partner : players) {
        if (partner.side == player.side || (pad && padOf(partner) == pad))
            stopPaddle(partner);
    }
}

void PlayerControls::readMidiData(
    int play, unsigned char data1, unsigned char data2, unsigned char data3)
{
    Q_ASSERT(QThread::currentThread() == thread());
    const std::optional<Side> side = sideOfNumber(play);
    if (!side || learnMidi(*side, data1, data2))
        return;
    const Player &player = players[*side];
    const MidiAction action = midiActionFor(
        player.midiMove, player.midiStart, player.ui.bits->isChecked(), {data1, data2, data3});
    if (action.paddleInput)
        pong.setPaddleInput(play, *action.paddleInput);
    if (action.start)
        pong.requestStart(play);
}
