#include "cxboxcontroller.h"
#include "mididevices.h"
#include "playercontrols.h"
#include "pong.h"
#include "windowtexts.h"

#include <QComboBox>
#include <QDebug>
#include <QSignalBlocker>
#include <QThread>

#include <utility>

namespace {

/// A stick must be pushed this far to be learnt, so that a light touch or stick drift is not.
constexpr int learnDeflection = 25000;

void logMidiDevice(const Player &player, const char *event)
{
    qDebug().nospace() << player.name() << ": MIDI device " << player.midiIn->getDeviceName() << ' '
                       << event;
}

/// Closes the player's MIDI device; harmless without one.
void closeMidiDevice(const Player &player)
{
    if (player.midiIn->getDeviceIndex() >= 0)
        logMidiDevice(player, "closed");
    player.midiIn->stop();
    player.midiIn->close();
}

} // namespace

void PlayerControls::fillMidiLists()
{
    // Filling the lists must not select a device.
    const QSignalBlocker left(players[Side::Left].ui.midiList);
    const QSignalBlocker right(players[Side::Right].ui.midiList);
    for (const Player &player : players) {
        player.ui.midiList->clear();
        player.ui.midiList->addItem(WindowTexts::tr("Select MIDI device"));
    }
    for (unsigned i = 0; i < MidiDevIn::deviceCount(); ++i) {
        const QString name = MidiDevIn::deviceNameAt(static_cast<int>(i));
        qDebug() << "MIDI device found:" << name;
        for (const Player &player : players)
            player.ui.midiList->addItem(name);
    }
}

void PlayerControls::fillXboxLists()
{
    const QSignalBlocker left(players[Side::Left].ui.xboxList);
    const QSignalBlocker right(players[Side::Right].ui.xboxList);
    for (const Player &player : players) {
        player.ui.xboxList->clear();
        player.ui.xboxList->addItem(WindowTexts::tr("Select XBox device"));
    }
    // A list index is the pad's number, so the first gap ends the list.
    const auto nextPad = [this] {
        return std::make_unique<CXBOXController>(static_cast<unsigned>(xboxControllers.size() + 1));
    };
    for (auto pad = nextPad(); pad->isConnected(); pad = nextPad()) {
        xboxControllers.append(pad.release());
        connectPad(xboxControllers.last());
        qDebug("XBox controller %d found", int(xboxControllers.size()));
        for (const Player &player : players) {
            player.ui.xboxList->addItem(
                WindowTexts::tr("XBox Controller ") + QString::number(xboxControllers.size()));
        }
    }
}

void PlayerControls::chooseMidiDevice(Side side, int entry)
{
    Player &player = players[side];
    refreshLearnButtons();
    stopPaddle(player);
    // Stop again after the messages that the old device still has queued, but before any of the
    // new one.
    const auto stopLater = [this, &player] {
        QMetaObject::invokeMethod(
            this, [this, &player] { stopPaddle(player); }, Qt::QueuedConnection);
    };
    if (entry <= 0) {
        closeMidiDevice(player);
        stopLater();
        return;
    }
    MMRESULT result =
        player.midiIn->open(static_cast<unsigned>(entry - 1), player.ui.midiList->window());
    stopLater();
    if (result == MMSYSERR_NOERROR) {
        logMidiDevice(player, "opened");
        result = player.midiIn->start();
    }
    if (result == MMSYSERR_NOERROR)
        return;
    qDebug().nospace() << player.name() << ": MIDI device " << player.ui.midiList->itemText(entry)
                       << " failed, result " << result;
    qDebug("Cannot open and start Midi device");
    player.ui.midiList->setCurrentIndex(0);
}

void PlayerControls::closeMidiDevices()
{
    for (const Player &player : players) {
        if (player.midiIn->getDeviceIndex() >= 0)
            closeMidiDevice(player);
    }
}

void PlayerControls::xboxChanged()
{
    for (Player &player : players)
        player.loadPadBindings(store);
    refreshLearnButtons();
    for (CXBOXController *pad : std::as_const(xboxControllers))
        pad->stopPolling();
    for (Player &player : players) {
        CXBOXController *pad = padOf(player);
        if (player.appliedPad != pad) {
            player.appliedPad = pad;
            if (pad)
                qDebug("%s: XBox controller %d chosen", player.name(), numberOf(pad));
            else
                qDebug("%s: XBox controller released", player.name());
            learns(Control::Move, player.side) ? stopPlayersOf(player) : stopPaddle(player);
        }
        if (pad)
            pad->startPolling();
    }
}

void PlayerControls::releaseGamepads()
{
    while (!xboxControllers.isEmpty())
        delete xboxControllers.takeLast();
}

void PlayerControls::connectPad(const CXBOXController *pad)
{
    connect(pad, &CXBOXController::buttonXbox, this,
        [this, pad](int button, bool pressed) { padPressed(pad, button, pressed); });
    connect(pad, &CXBOXController::controllerXbox, this,
        [this, pad](int control, int value) { padMoved(pad, control, value); });
    connect(&pad->connection(), &PadConnection::changed, this,
        [number = numberOf(pad)](bool connected) {
            qDebug("XBox controller %d %s", number, connected ? "connected again" : "lost");
        });
}

int PlayerControls::numberOf(const CXBOXController *pad) const
{
    return int(xboxControllers.indexOf(pad)) + 1;
}

CXBOXController *PlayerControls::padOf(const Player &player) const
{
    const int index = player.ui.xboxList->currentIndex();
    const bool plays =
        player.mode() == ControlMode::Xbox && index > 0 && index <= xboxControllers.size();
    return plays ? xboxControllers[index - 1] : nullptr;
}

// Both players may share a pad. Events queued before a player left it are dropped.

void PlayerControls::padPressed(const CXBOXController *pad, int button, bool pressed)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (learnsFrom(pad, Control::Start)) {
        xboxSetStartSource(button, learning->side);
        return;
    }
    for (const Player &player : players) {
        if (pressed && padOf(player) == pad && button == player.xStart)
            pong.requestStart(sideNumber(player.side));
    }
}

void PlayerControls::padMoved(const CXBOXController *pad, int control, int value)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (learnsFrom(pad, Control::Move)) {
        if (std::abs(value) >= learnDeflection)
            xboxSetControllerSource(control, learning->side);
        return;
    }
    for (const Player &player : players) {
        if (padOf(player) == pad && control == player.xMove)
            pong.setPaddleInput(sideNumber(player.side), player.paddleInput(value));
    }
}
