#include "playercontrols.h"
#include "pong.h"

#include <QKeyEvent>
#include <QRadioButton>

using namespace std::chrono_literals;

namespace {

/// How long the start key must be idle before it counts as pressed again; longer than the
/// auto-repeat interval of a held key.
constexpr auto startPause = 100ms;

constexpr int fullUp = 32767;
constexpr int fullDown = -32768;

/// Whether another window will receive the release of held keys.
bool losesKeys(const QEvent *event)
{
    return event->type() == QEvent::WindowDeactivate
        || (event->type() == QEvent::FocusOut
            && static_cast<const QFocusEvent *>(event)->reason() == Qt::PopupFocusReason);
}

} // namespace

bool PlayerControls::captureKey(const QEvent *event)
{
    if (losesKeys(event))
        releaseHeldKeys();
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return false;
    const auto *keyEvent = static_cast<const QKeyEvent *>(event);
    const auto key = static_cast<uint>(keyEvent->key());
    if (key == 0) // 0 means "not learnt"
        return false;
    for (Player &player : players) {
        if (!player.ui.keyboardRadio->isChecked())
            continue;
        const bool used = event->type() == QEvent::KeyPress
            ? pressKey(player, key)
            : releaseKey(player, key, keyEvent->isAutoRepeat());
        if (used)
            return true;
    }
    return false;
}

bool PlayerControls::pressKey(Player &player, uint key)
{
    if (learnKey(player, key))
        return true;
    if (key == player.startKey)
        pressStart(player);
    else if (key == player.upKey)
        pong.setPaddleInput(sideNumber(player.side), player.paddleInput(fullUp));
    else if (key == player.downKey)
        pong.setPaddleInput(sideNumber(player.side), player.paddleInput(fullDown));
    else
        return false;
    return true;
}

void PlayerControls::pressStart(Player &player)
{
    if (!player.startTimer) {
        player.startTimer = std::make_unique<QTimer>();
        player.startTimer->setSingleShot(true);
    }
    // Every press restarts the timer, so a held, repeating key starts only once.
    if (!player.startTimer->isActive())
        pong.requestStart(sideNumber(player.side));
    player.startTimer->start(startPause);
}

bool PlayerControls::releaseKey(const Player &player, uint key, bool autoRepeat)
{
    if (key != player.upKey && key != player.downKey)
        return false;
    // Some systems report auto-repeat as repeated releases and presses.
    if (!autoRepeat)
        stopPaddle(player);
    return true;
}

void PlayerControls::releaseHeldKeys()
{
    for (const Player &player : players) {
        if (player.mode() == ControlMode::Keyboard)
            stopPaddle(player);
    }
}
