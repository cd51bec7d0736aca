#include "playerstage.h"

#include "cxboxcontroller.h"

#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString fileName = u".pong"_s;
constexpr int readsOfPoll = 20;

PlayerStage::Player playerOf(const QWidget &window, int side)
{
    const auto find = [&window]<class Widget>(Widget *&widget, const QString &name) {
        widget = window.findChild<Widget *>(name);
        QVERIFY2(widget, qPrintable(name));
    };
    const QString letter = sideLetter(side);
    const QString word = side == 0 ? u"left"_s : u"right"_s;
    PlayerStage::Player player = {};
    player.side = side;
    find(player.midi, word + "MidiRadio"_L1);
    find(player.xbox, word + "XboxRadio"_L1);
    find(player.keyboard, word + "KeyboardRadio"_L1);
    find(player.midiList, "midi"_L1 + letter + "ComboBox"_L1);
    find(player.xboxList, "xbox"_L1 + letter + "ComboBox"_L1);
    find(player.learnMove, "learnCC"_L1 + letter);
    find(player.learnStart, "learnStart"_L1 + letter);
    find(player.learnUp, "learnUp"_L1 + letter);
    find(player.learnDown, "learnDown"_L1 + letter);
    find(player.bits, "bits"_L1 + letter + "Check"_L1);
    find(player.sensitivity, "sens"_L1 + letter + "Slider"_L1);
    return player;
}

} // namespace

PlayerStage::PlayerStage(
    const QStringList &midiDevices, int pads, const Settings &settings, Surface surface)
    : m_surface(surface)
{
    host.ready = 0;
    for (const QString &name : midiDevices)
        midi.inputs.append({.name = name});
    for (int pad = 0; pad < pads; ++pad)
        this->pads.pads[std::size_t(pad)].connected = true;
    QSettings store(fileName, QSettings::IniFormat);
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        store.setValue(setting.key(), setting.value());
}

PlayerStage::~PlayerStage()
{
    PlayerStage::close();
}

void PlayerStage::open()
{
    if (m_surface == WholeWindow) {
        RunningWindow::open();
    } else {
        m_form = std::make_unique<PlayerForm>();
        m_form->show();
    }
    players = {playerOf(*widget(), 0), playerOf(*widget(), 1)};
}

void PlayerStage::close()
{
    m_form.reset();
    RunningWindow::close();
}

Pong &PlayerStage::game() const
{
    return m_form ? m_form->game : RunningWindow::game();
}

QWidget *PlayerStage::widget() const
{
    return m_form ? m_form.get() : RunningWindow::widget();
}

void PlayerStage::receive(int play, int status, int number, int value) const
{
    const auto byte = [](int number) { return static_cast<unsigned char>(number); };
    if (m_form)
        m_form->controls.readMidiData(play, byte(status), byte(number), byte(value));
    else
        window->ReadMidiData(play, byte(status), byte(number), byte(value));
}

PlayerStage::Settings PlayerStage::settings() const
{
    const QSettings store(fileName, QSettings::IniFormat);
    Settings all;
    for (const QString &key : store.allKeys())
        all.insert(key, store.value(key).toString());
    return all;
}

PlayerStage::Settings PlayerStage::settingsSince(const Settings &before) const
{
    const Settings now = settings();
    Settings changes;
    for (auto setting = now.begin(); setting != now.end(); ++setting) {
        if (!before.contains(setting.key()) || before[setting.key()] != setting.value())
            changes.insert(setting.key(), setting.value());
    }
    for (auto setting = before.begin(); setting != before.end(); ++setting) {
        if (!now.contains(setting.key()))
            changes.insert(setting.key(), u"removed"_s);
    }
    return changes;
}

QStringList PlayerStage::learning() const
{
    QStringList names;
    for (const Player &player : players) {
        for (const QPushButton *button :
            {player.learnMove, player.learnStart, player.learnUp, player.learnDown}) {
            if (button->text().startsWith("Learning"_L1))
                names.append(button->objectName());
        }
    }
    return names;
}

int PlayerStage::sendMidi(int device, int status, int number, int value)
{
    const int handles = midi.send(device, static_cast<DWORD>(status | number << 8 | value << 16));
    QCoreApplication::processEvents();
    return handles;
}

void PlayerStage::poll(std::size_t pad)
{
    // A poll may have been in progress; the next one is complete.
    const int enough = pads.pads[pad].reads + 2 * readsOfPoll;
    QTRY_VERIFY(pads.pads[pad].reads >= enough);
    QCoreApplication::processEvents();
}

bool PlayerStage::isPolled(std::size_t pad)
{
    // A separate poller on the fourth pad serves as the clock.
    CXBOXController clock(4);
    clock.startPolling();
    poll(3);
    const int before = pads.pads[pad].reads;
    poll(3);
    return pads.pads[pad].reads != before;
}

QString midiKey(const QString &control, int side, int byte)
{
    return control + u'_' + QString::number(side) + QString::number(byte);
}

PlayerStage::Settings bothOn(const QString &mode)
{
    return {{u"ControlModeLeft"_s, mode}, {u"ControlModeRight"_s, mode}};
}
