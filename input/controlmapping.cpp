#include "cxboxcontroller.h"
#include "mainwindow.h"
#include "settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QPushButton>
#include <QThread>

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
    Q_ASSERT(QThread::currentThread() == thread());
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
    for (CXBOXController *pad : std::as_const(xboxControllers))
        pad->stopPolling();
    for (PlayerSide &player : players) {
        CXBOXController *pad = padOf(player);
        if (std::exchange(player.appliedPad, pad) != pad)
            stopPaddle(player);
        if (pad)
            pad->startPolling();
    }
}

// Both players may play on the same pad. What was queued before a player left it finds nobody.

void MainWindow::padPressed(const CXBOXController *pad, int button, bool pressed)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (learnsFrom(pad, startLearnSide)) {
        xboxSetStartSource(button, startLearnSide == 0);
        return;
    }
    for (const PlayerSide &player : players) {
        if (pressed && padOf(player) == pad && button == player.xStart)
            pong->requestStart(player.side);
    }
}

void MainWindow::padMoved(const CXBOXController *pad, int control, int value)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (learnsFrom(pad, moveLearnSide)) {
        if (std::abs(value) >= learnDeflection)
            xboxSetControllerSource(control, moveLearnSide == 0);
        return;
    }
    for (const PlayerSide &player : players) {
        if (padOf(player) == pad && control == player.xMove)
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
