#include "mainwindow.h"
#include "settings.h"

#include <QComboBox>
#include <QPushButton>

namespace {

constexpr QLatin1StringView learntLook(
    "QPushButton {background-color:#97A;} QPushButton:hover {background-color:#FF4;} "
    "QPushButton:pressed {background-color:#DD0;} QPushButton:disabled {background-color:#999;}");
constexpr QLatin1StringView notLearntLook(
    "QPushButton {background-color:#BBB;} QPushButton:hover {background-color:#FF4;} "
    "QPushButton:pressed {background-color:#DD0;} QPushButton:disabled {background-color:#999;}");
constexpr QLatin1StringView learningLook(
    "QPushButton {background-color:#08F;} QPushButton:hover {background-color:#0AF;} "
    "QPushButton:pressed {background-color:#08D;}");

void showBinding(QPushButton *button, const QString &text, bool enabled, bool learnt)
{
    button->setText(text);
    button->setEnabled(enabled);
    button->setStyleSheet(learnt ? learntLook : notLearntLook);
}

void showLearning(QPushButton *button, const QString &text)
{
    button->setText(text);
    button->setStyleSheet(learningLook);
}

} // namespace

// The twins of the two sides.

void MainWindow::on_learnCCL_clicked()
{
    learnOrCancel(moveLearnSide, 0);
}

void MainWindow::on_learnCCR_clicked()
{
    learnOrCancel(moveLearnSide, 1);
}

void MainWindow::on_learnStartL_clicked()
{
    learnOrCancel(startLearnSide, 0);
}

void MainWindow::on_learnStartR_clicked()
{
    learnOrCancel(startLearnSide, 1);
}

void MainWindow::on_learnUpL_clicked()
{
    learnOrCancel(upLearnSide, 0);
}

void MainWindow::on_learnUpR_clicked()
{
    learnOrCancel(upLearnSide, 1);
}

void MainWindow::on_learnDownL_clicked()
{
    learnOrCancel(downLearnSide, 0);
}

void MainWindow::on_learnDownR_clicked()
{
    learnOrCancel(downLearnSide, 1);
}

void MainWindow::learnOrCancel(int &learnSide, int side)
{
    const bool begins = learnSide != side;
    cancelLearn();
    if (begins) {
        learnSide = side;
        // The stick or key that held the paddle may be the one that is about to change, and then
        // nobody would let it go. A MIDI control has no release: the paddle goes on.
        const PlayerSide &player = players[size_t(side)];
        if (&learnSide != &startLearnSide && player.mode() != ControlMode::Midi)
            stopPaddle(player);
    }
    refreshLearnButtons();
}

void MainWindow::cancelLearn()
{
    moveLearnSide = startLearnSide = upLearnSide = downLearnSide = noSide;
}

void MainWindow::learnMidi(int &learnSide, const SettingOfSides<uint> &status,
    const SettingOfSides<uint> &number, uint data1, uint data2)
{
    const auto side = size_t(std::exchange(learnSide, noSide));
    settings::write(*store, status[side], data1);
    settings::write(*store, number[side], data2);
    refreshLearnButtons();
}

void MainWindow::xboxSetStartSource(int button, bool left)
{
    settings::write(*store, settings::xStart[left ? 0 : 1], button);
    startLearnSide = noSide;
    xboxChanged(0);
}

void MainWindow::xboxSetControllerSource(int control, bool left)
{
    settings::write(*store, settings::xMove[left ? 0 : 1], control);
    moveLearnSide = noSide;
    xboxChanged(0);
}

void MainWindow::loadBindings(PlayerSide &player)
{
    const auto side = size_t(player.side);
    player.midiMove = {settings::read(*store, settings::moveStatus[side]),
        settings::read(*store, settings::moveNumber[side])};
    player.midiStart = {settings::read(*store, settings::startStatus[side]),
        settings::read(*store, settings::startNumber[side])};
    player.upKey = settings::read(*store, settings::upKey[side]);
    player.downKey = settings::read(*store, settings::downKey[side]);
    player.startKey = settings::read(*store, settings::startKey[side]);
}

void MainWindow::refreshLearnButtons()
{
    for (PlayerSide &player : players) {
        loadBindings(player);
        showBindings(player);
    }
    if (moveLearnSide != noSide)
        showLearning(players[size_t(moveLearnSide)].learnMove, tr("Learning Move..."));
    if (startLearnSide != noSide)
        showLearning(players[size_t(startLearnSide)].learnStart, tr("Learning Start..."));
    if (upLearnSide != noSide)
        showLearning(players[size_t(upLearnSide)].learnUp, tr("Learning Up..."));
    if (downLearnSide != noSide)
        showLearning(players[size_t(downLearnSide)].learnDown, tr("Learning Down..."));
}

void MainWindow::showBindings(const PlayerSide &player)
{
    const QString start = tr("Click to learn Start");
    const QString move = tr("Click to learn Move");
    const QString noValue = QStringLiteral(" - ");
    switch (player.mode()) {
    case ControlMode::Midi: {
        const bool chosen = player.midiList->currentIndex() > 0;
        const QString ending = chosen ? noValue : QString();
        showBinding(player.learnStart, start + ending, chosen, player.midiStart.isLearnt());
        showBinding(player.learnMove, move + ending, chosen, player.midiMove.isLearnt());
        break;
    }
    case ControlMode::Xbox: {
        const bool chosen = player.xboxList->currentIndex() > 0;
        const auto isLearnt = [this, &player](const SettingOfSides<int> &setting) {
            // Play falls back to the first button and stick; what was never learnt shows so.
            return settings::read(*store, Setting<int>{setting[size_t(player.side)].key, -1}) != -1;
        };
        showBinding(player.learnStart,
            chosen ? start + tr(" - Button ") + QString::number(player.xStart) : start, chosen,
            isLearnt(settings::xStart));
        showBinding(player.learnMove,
            chosen ? move + tr(" - Controller ") + QString::number(player.xMove) : move, chosen,
            isLearnt(settings::xMove));
        break;
    }
    case ControlMode::Keyboard:
        showBinding(player.learnStart, start + noValue, true, player.startKey != 0);
        showBinding(player.learnUp, tr("Click to learn Up") + noValue, true, player.upKey != 0);
        showBinding(
            player.learnDown, tr("Click to learn Down") + noValue, true, player.downKey != 0);
        break;
    }
}
