#include "cxboxcontroller.h"
#include "mainwindow.h"
#include "settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QPushButton>

namespace {

/// A stick has to be pushed this far to be learnt, so that neither a small touch nor a drifting
/// stick is.
constexpr int learnDeflection = 25000;

} // namespace

void MainWindow::applyControlMode()
{
    for (PlayerSide &player : players)
        applyControlMode(player);
    xboxChanged(0);
}

void MainWindow::applyControlMode(PlayerSide &player)
{
    const ControlMode mode = player.mode();
    settings::write(*store, settings::controlMode[size_t(player.side)], controlModeName(mode));
    // What moved the paddle before has no say any more.
    if (std::exchange(player.appliedMode, mode) != mode)
        stopPaddle(player);
    if (mode != ControlMode::Midi) {
        player.midiList->setCurrentIndex(0);
        QCoreApplication::processEvents();
    }
    player.midiList->setEnabled(mode == ControlMode::Midi);
    player.xboxList->setEnabled(mode == ControlMode::Xbox);
    player.bits->setVisible(mode == ControlMode::Midi);
    player.learnMove->setVisible(mode != ControlMode::Keyboard);
    player.learnUp->setVisible(mode == ControlMode::Keyboard);
    player.learnDown->setVisible(mode == ControlMode::Keyboard);
}

void MainWindow::ReadMidiData(
    int play, unsigned char data1, unsigned char data2, unsigned char data3)
{
    if (play != 0 && play != 1)
        return;
    const PlayerSide &player = players[size_t(play)];
    if (moveLearnSide == play) {
        learnMidi(moveLearnSide, settings::moveStatus, settings::moveNumber, data1, data2);
        return;
    }
    if (startLearnSide == play) {
        learnMidi(startLearnSide, settings::startStatus, settings::startNumber, data1, data2);
        return;
    }
    const MidiAction action = midiActionFor(
        player.midiMove, player.midiStart, player.bits->isChecked(), {data1, data2, data3});
    if (action.paddleInput)
        pong->setPaddleInput(play, *action.paddleInput);
    if (action.start)
        pong->requestStart(play);
}

void MainWindow::xboxChanged(int /*index*/)
{
    for (PlayerSide &player : players) {
        player.xStart = settings::read(*store, settings::xStart[size_t(player.side)]);
        player.xMove = settings::read(*store, settings::xMove[size_t(player.side)]);
    }
    refreshLearnButtons();
    for (CXBOXController *pad : std::as_const(xboxControllers)) {
        pad->stopPolling();
        pad->disconnect(this);
    }
    // Both players may play on the same pad; each then has handlers of its own.
    for (PlayerSide &player : players) {
        CXBOXController *pad = padOf(player);
        if (std::exchange(player.appliedPad, pad) != pad)
            stopPaddle(player);
        if (!pad)
            continue;
        connect(pad, &CXBOXController::buttonXbox, this,
            [this, &player, pad](
                int button, bool pressed) { padPressed(player, pad, button, pressed); });
        connect(pad, &CXBOXController::controllerXbox, this,
            [this, &player, pad](
                int control, int value) { padMoved(player, pad, control, value); });
        pad->startPolling();
    }
}

void MainWindow::padPressed(
    const PlayerSide &player, const CXBOXController *pad, int button, bool pressed)
{
    if (padOf(player) != pad) // queued before the player left that pad
        return;
    if (learnsFrom(pad, startLearnSide)) {
        if (startLearnSide == player.side)
            xboxSetStartSource(button, player.side == 0);
    } else if (pressed && button == player.xStart) {
        pong->requestStart(player.side);
    }
}

void MainWindow::padMoved(
    const PlayerSide &player, const CXBOXController *pad, int control, int value)
{
    if (padOf(player) != pad)
        return;
    if (learnsFrom(pad, moveLearnSide)) {
        if (moveLearnSide == player.side && std::abs(value) >= learnDeflection)
            xboxSetControllerSource(control, player.side == 0);
    } else if (control == player.xMove) {
        pong->setPaddleInput(player.side, player.paddleInput(value));
    }
}

bool MainWindow::learnsFrom(const CXBOXController *pad, int learnSide) const
{
    return learnSide != noSide && padOf(players[size_t(learnSide)]) == pad;
}

void MainWindow::stopPaddle(const PlayerSide &player)
{
    pong->setPaddleInput(player.side, 0);
}
