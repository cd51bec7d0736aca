#include "player.h"

#include "controlnames.h"
#include "looks.h"
#include "sensitivity.h"
#include "settings.h"
#include "windowtexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

namespace {

/// `control` is the name of the learnt control, or nothing.
void showBinding(
    QPushButton *button, const QString &text, bool enabled, const std::optional<QString> &control)
{
    button->setText(text);
    button->setEnabled(enabled);
    button->setToolTip(control ? WindowTexts::tr("Learnt: %1").arg(*control)
                               : WindowTexts::tr("Nothing learnt yet"));
}

std::optional<QString> nameOf(const MidiBinding &binding)
{
    if (!binding.isLearnt())
        return std::nullopt;
    return controlnames::midi(binding);
}

std::optional<QString> nameOf(uint key)
{
    if (key == 0)
        return std::nullopt;
    return controlnames::key(key);
}

} // namespace

QLatin1StringView controlModeName(ControlMode mode)
{
    switch (mode) {
    case ControlMode::Midi:
        return QLatin1StringView("MIDI");
    case ControlMode::Xbox:
        return QLatin1StringView("XBOX");
    case ControlMode::Keyboard:
        break;
    }
    return QLatin1StringView("KEYBOARD");
}

ControlMode controlModeNamed(const QString &name)
{
    for (const ControlMode mode : {ControlMode::Midi, ControlMode::Xbox}) {
        if (name == controlModeName(mode))
            return mode;
    }
    return ControlMode::Keyboard;
}

ControlMode Player::mode() const
{
    return ui.midiRadio->isChecked()    ? ControlMode::Midi
        : ui.keyboardRadio->isChecked() ? ControlMode::Keyboard
                                        : ControlMode::Xbox;
}

void Player::showMode(ControlMode mode)
{
    QRadioButton *radio = mode == ControlMode::Midi ? ui.midiRadio
        : mode == ControlMode::Xbox                 ? ui.xboxRadio
                                                    : ui.keyboardRadio;
    radio->setChecked(true);
}

void Player::showWidgetsOf(ControlMode mode)
{
    ui.midiList->setEnabled(mode == ControlMode::Midi);
    ui.xboxList->setEnabled(mode == ControlMode::Xbox);
    ui.bits->setVisible(mode == ControlMode::Midi);
    ui.learnMove->setVisible(mode != ControlMode::Keyboard);
    ui.learnUp->setVisible(mode == ControlMode::Keyboard);
    ui.learnDown->setVisible(mode == ControlMode::Keyboard);
}

int Player::paddleInput(int deflection) const
{
    return paddleInputFor(
        deflection, ui.sensitivity->minimum(), ui.sensitivity->maximum(), ui.sensitivity->value());
}

void Player::loadBindings(const QSettings &store)
{
    midiMove = {settings::read(store, settings::moveStatus[side]),
        settings::read(store, settings::moveNumber[side])};
    midiStart = {settings::read(store, settings::startStatus[side]),
        settings::read(store, settings::startNumber[side])};
    upKey = settings::read(store, settings::upKey[side]);
    downKey = settings::read(store, settings::downKey[side]);
    startKey = settings::read(store, settings::startKey[side]);
}

void Player::loadPadBindings(const QSettings &store)
{
    xStart = settings::read(store, settings::xStart[side]);
    xMove = settings::read(store, settings::xMove[side]);
}

void Player::showBindings(const QSettings &store, const QPushButton *beingLearnt)
{
    const auto show = [beingLearnt](QPushButton *button, const QString &text, bool enabled,
                          const std::optional<QString> &control) {
        showBinding(button, text, enabled, control);
        if (button != beingLearnt)
            looks::apply(button, control ? looks::learnt : looks::notLearnt);
    };
    const QString start = WindowTexts::tr("Click to learn Start");
    const QString move = WindowTexts::tr("Click to learn Move");
    const QString noValue = QStringLiteral(" - ");
    switch (mode()) {
    case ControlMode::Midi: {
        const bool chosen = ui.midiList->currentIndex() > 0;
        const QString ending = chosen ? noValue : QString();
        show(ui.learnStart, start + ending, chosen, nameOf(midiStart));
        show(ui.learnMove, move + ending, chosen, nameOf(midiMove));
        break;
    }
    case ControlMode::Xbox: {
        const bool chosen = ui.xboxList->currentIndex() > 0;
        const auto ifLearnt = [&](const SettingOfSides<int> &setting, const QString &name) {
            // The defaults, the first button and stick, work but do not count as learnt.
            const int learnt = settings::read(store, Setting<int>{setting[side].key, -1});
            return learnt == -1 ? std::nullopt : std::optional(name);
        };
        const QString button = WindowTexts::tr(" - Button ") + QString::number(xStart);
        const QString controller = WindowTexts::tr(" - Controller ") + QString::number(xMove);
        show(ui.learnStart, chosen ? start + button : start, chosen,
            ifLearnt(settings::xStart, controlnames::padButton(xStart)));
        show(ui.learnMove, chosen ? move + controller : move, chosen,
            ifLearnt(settings::xMove, controlnames::padStick(xMove)));
        break;
    }
    case ControlMode::Keyboard:
        show(ui.learnStart, start + noValue, true, nameOf(startKey));
        show(ui.learnUp, WindowTexts::tr("Click to learn Up") + noValue, true, nameOf(upKey));
        show(ui.learnDown, WindowTexts::tr("Click to learn Down") + noValue, true, nameOf(downKey));
        break;
    }
}
