#include "controlnames.h"
#include "looks.h"
#include "playercontrols.h"
#include "settings.h"
#include "windowtexts.h"

#include <QDebug>
#include <QPushButton>

namespace {

/// The button that learns a control.
QPushButton *learnButton(const PlayerWidgets &ui, Control control)
{
    switch (control) {
    case Control::Move:
        return ui.learnMove;
    case Control::Start:
        return ui.learnStart;
    case Control::Up:
        return ui.learnUp;
    case Control::Down:
        break;
    }
    return ui.learnDown;
}

/// The setting of the key for a control; a key moves up or down, so there is none for Move.
const SettingOfSides<uint> *keySetting(Control control)
{
    switch (control) {
    case Control::Move:
        return nullptr;
    case Control::Start:
        return &settings::startKey;
    case Control::Up:
        return &settings::upKey;
    case Control::Down:
        break;
    }
    return &settings::downKey;
}

const char *nameOf(Control control)
{
    switch (control) {
    case Control::Move:
        return "Move";
    case Control::Start:
        return "Start";
    case Control::Up:
        return "Up";
    case Control::Down:
        break;
    }
    return "Down";
}

void logLearnt(const Player &player, Control control, const QString &source)
{
    qDebug("%s: learnt %s, %s", player.name(), nameOf(control), qUtf8Printable(source));
}

} // namespace

void PlayerControls::learnOrCancel(Control control, Side side)
{
    const Learning wanted = {control, side};
    if (learning == wanted) {
        cancelLearn();
    } else {
        learning = wanted;
        // The stick or key that holds a paddle may be the one being rebound; its release would
        // then be missed. A MIDI control has no release, so the paddle keeps moving.
        if (control != Control::Start && players[side].mode() != ControlMode::Midi)
            stopPlayersOf(players[side]);
    }
    refreshLearnButtons();
}

void PlayerControls::cancelLearn()
{
    learning.reset();
}

bool PlayerControls::learns(Control control, Side side) const
{
    return learning == Learning{control, side};
}

bool PlayerControls::learnsFrom(const CXBOXController *pad, Control control) const
{
    return learning && learning->control == control && padOf(players[learning->side]) == pad;
}

int PlayerControls::learnSide(Control control) const
{
    return learning && learning->control == control ? sideNumber(learning->side) : noSide;
}

bool PlayerControls::learnMidi(Side side, uint status, uint number)
{
    const bool move = learns(Control::Move, side);
    if (!move && !learns(Control::Start, side))
        return false;
    learning.reset();
    settings::write(store, (move ? settings::moveStatus : settings::startStatus)[side], status);
    settings::write(store, (move ? settings::moveNumber : settings::startNumber)[side], number);
    logLearnt(
        players[side], move ? Control::Move : Control::Start, controlnames::midi({status, number}));
    refreshLearnButtons();
    return true;
}

bool PlayerControls::learnKey(const Player &player, uint key)
{
    if (!learning || learning->side != player.side)
        return false;
    const Control control = learning->control;
    const SettingOfSides<uint> *setting = keySetting(control);
    if (!setting)
        return false;
    learning.reset();
    settings::write(store, (*setting)[player.side], key);
    logLearnt(player, control, controlnames::key(key));
    refreshLearnButtons();
    return true;
}

void PlayerControls::xboxSetStartSource(int button, Side side)
{
    settings::write(store, settings::xStart[side], button);
    logLearnt(players[side], Control::Start, controlnames::padButton(button));
    if (learning && learning->control == Control::Start)
        learning.reset();
    xboxChanged();
}

void PlayerControls::xboxSetControllerSource(int control, Side side)
{
    settings::write(store, settings::xMove[side], control);
    logLearnt(players[side], Control::Move, controlnames::padStick(control));
    if (learning && learning->control == Control::Move)
        learning.reset();
    xboxChanged();
}

void PlayerControls::refreshLearnButtons()
{
    const QPushButton *beingLearnt =
        learning ? learnButton(players[learning->side].ui, learning->control) : nullptr;
    for (Player &player : players) {
        player.loadBindings(store);
        player.showBindings(store, beingLearnt);
    }
    if (learning)
        showLearning();
}

void PlayerControls::showLearning()
{
    const auto text = [this] {
        switch (learning->control) {
        case Control::Move:
            return WindowTexts::tr("Learning Move...");
        case Control::Start:
            return WindowTexts::tr("Learning Start...");
        case Control::Up:
            return WindowTexts::tr("Learning Up...");
        case Control::Down:
            break;
        }
        return WindowTexts::tr("Learning Down...");
    };
    QPushButton *button = learnButton(players[learning->side].ui, learning->control);
    button->setText(text());
    looks::apply(button, looks::learning);
}
