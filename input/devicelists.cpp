#include "cxboxcontroller.h"
#include "mainwindow.h"
#include "mididevices.h"

#include <QComboBox>
#include <QDebug>

namespace {

constexpr std::array midiSlots = {&MainWindow::midiLComboChanged, &MainWindow::midiRComboChanged};

} // namespace

void MainWindow::fillMidiLists()
{
    for (const PlayerSide &player : players) {
        // Filling a list chooses nothing.
        disconnect(
            player.midiList, &QComboBox::currentIndexChanged, this, midiSlots[size_t(player.side)]);
        player.midiList->clear();
        player.midiList->addItem(tr("Select MIDI device"));
    }
    for (unsigned i = 0; i < MidiDevIn::deviceCount(); ++i) {
        for (const PlayerSide &player : players)
            player.midiList->addItem(MidiDevIn::deviceNameAt(static_cast<int>(i)));
    }
    for (const PlayerSide &player : players)
        connect(
            player.midiList, &QComboBox::currentIndexChanged, this, midiSlots[size_t(player.side)]);
}

void MainWindow::fillXboxLists()
{
    for (const PlayerSide &player : players) {
        disconnect(
            player.xboxList, &QComboBox::currentIndexChanged, this, &MainWindow::xboxChanged);
        player.xboxList->clear();
        player.xboxList->addItem(tr("Select XBox device"));
    }
    // Only the unbroken run of pads from the first one on is offered: a list entry is the pad's
    // number.
    const auto nextPad = [this] {
        return std::make_unique<CXBOXController>(static_cast<unsigned>(xboxControllers.size() + 1));
    };
    for (auto pad = nextPad(); pad->isConnected(); pad = nextPad()) {
        connectPad(pad.get());
        xboxControllers.append(pad.release());
        for (const PlayerSide &player : players) {
            player.xboxList->addItem(
                tr("XBox Controller ") + QString::number(xboxControllers.size()));
        }
    }
    for (const PlayerSide &player : players)
        connect(player.xboxList, &QComboBox::currentIndexChanged, this, &MainWindow::xboxChanged);
}

void MainWindow::connectPad(const CXBOXController *pad)
{
    connect(pad, &CXBOXController::buttonXbox, this,
        [this, pad](int button, bool pressed) { padPressed(pad, button, pressed); });
    connect(pad, &CXBOXController::controllerXbox, this,
        [this, pad](int control, int value) { padMoved(pad, control, value); });
}

void MainWindow::midiLComboChanged(int index)
{
    midiComboChanged(players[0], index);
}

void MainWindow::midiRComboChanged(int index)
{
    midiComboChanged(players[1], index);
}

void MainWindow::midiComboChanged(PlayerSide &player, int index)
{
    refreshLearnButtons();
    stopPaddle(player);
    // Once more behind what the device that is left has still in the queue, and before anything
    // of the next one.
    const auto stopLater = [this, &player] {
        QMetaObject::invokeMethod(
            this, [this, &player] { stopPaddle(player); }, Qt::QueuedConnection);
    };
    if (index <= 0) {
        player.midiIn->stop();
        player.midiIn->close();
        stopLater();
        return;
    }
    const bool opened = player.midiIn->open(static_cast<unsigned>(index - 1), this) == 0;
    stopLater();
    if (opened && player.midiIn->start() == 0)
        return;
    qDebug("Cannot open and start Midi device");
    player.midiList->setCurrentIndex(0);
}

CXBOXController *MainWindow::padOf(const PlayerSide &player) const
{
    const int index = player.xboxList->currentIndex();
    const bool plays =
        player.mode() == ControlMode::Xbox && index > 0 && index <= xboxControllers.size();
    return plays ? xboxControllers[index - 1] : nullptr;
}
