#include "mididevices.h"
#include "playerstage.h"

#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

QRadioButton *radioOf(const PlayerStage::Player &player, const QString &mode)
{
    return mode == "MIDI"_L1 ? player.midi : mode == "XBOX"_L1 ? player.xbox : player.keyboard;
}

QString keyOf(int side)
{
    return side == 0 ? u"ControlModeLeft"_s : u"ControlModeRight"_s;
}

/// Whether the widgets of a player are those of a mode.
void checkWidgets(const PlayerStage::Player &player, const QString &mode)
{
    const bool midi = mode == "MIDI"_L1;
    const bool keyboard = mode == "KEYBOARD"_L1;
    QVERIFY(radioOf(player, mode)->isChecked());
    QVERIFY(player.learnStart->isVisible());
    QCOMPARE(player.learnMove->isVisible(), !keyboard);
    QCOMPARE(player.learnUp->isVisible(), keyboard);
    QCOMPARE(player.learnDown->isVisible(), keyboard);
    QCOMPARE(player.bits->isVisible(), midi);
    QVERIFY(player.midiList->isVisible() && player.xboxList->isVisible());
    QCOMPARE(player.midiList->isEnabled(), midi);
    QCOMPARE(player.xboxList->isEnabled(), mode == "XBOX"_L1);
}

/// Settings without the modes.
PlayerStage::Settings others(PlayerStage::Settings settings)
{
    settings.remove(keyOf(0));
    settings.remove(keyOf(1));
    return settings;
}

void addModes()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<QString>("mode");
    for (const int side : {0, 1}) {
        for (const char *mode : {"MIDI", "XBOX", "KEYBOARD"})
            QTest::addRow("%s %s", side == 0 ? "left" : "right", mode)
                << side << QString::fromLatin1(mode);
    }
}

} // namespace

class tst_ControlMode : public QObject
{
    Q_OBJECT

private slots:
    void a_mode_shows_and_enables_its_widgets_data();
    void a_mode_shows_and_enables_its_widgets();
    void a_click_on_a_mode_writes_it_and_nothing_else_data();
    void a_click_on_a_mode_writes_it_and_nothing_else();
    void the_modes_are_written_at_the_start();
    void leaving_midi_closes_the_device_data();
    void leaving_midi_closes_the_device();
    void a_pad_is_polled_in_its_mode_only_data();
    void a_pad_is_polled_in_its_mode_only();
    void leaving_a_mode_stops_the_paddle_data();
    void leaving_a_mode_stops_the_paddle();
    void a_mode_of_one_side_leaves_the_other_side_alone();
    void pending_events_are_processed_once_the_device_is_closed_data();
    void pending_events_are_processed_once_the_device_is_closed();
    void a_mode_chosen_while_modes_are_applied_is_shown_completely_data();
    void a_mode_chosen_while_modes_are_applied_is_shown_completely();
};

void tst_ControlMode::a_mode_shows_and_enables_its_widgets_data()
{
    QTest::addColumn<QString>("mode");
    for (const char *mode : {"MIDI", "XBOX", "KEYBOARD"})
        QTest::addRow("%s", mode) << QString::fromLatin1(mode);
}

void tst_ControlMode::a_mode_shows_and_enables_its_widgets()
{
    QFETCH(QString, mode);
    // From every previous mode, and as stored.
    for (const QString &before : {u"MIDI"_s, u"XBOX"_s, u"KEYBOARD"_s}) {
        PlayerStage stage({u"First"_s}, 1, {{keyOf(0), before}, {keyOf(1), before}});
        stage.open();
        for (const PlayerStage::Player &player : stage.players) {
            checkWidgets(player, before);
            PlayerStage::click(radioOf(player, mode));
            checkWidgets(player, mode);
        }
    }
}

void tst_ControlMode::a_click_on_a_mode_writes_it_and_nothing_else_data()
{
    addModes();
}

void tst_ControlMode::a_click_on_a_mode_writes_it_and_nothing_else()
{
    QFETCH(int, side);
    QFETCH(QString, mode);
    const QString before = mode == "MIDI"_L1 ? u"KEYBOARD"_s : u"MIDI"_s;
    PlayerStage stage(
        {u"First"_s}, 1, {{keyOf(0), before}, {keyOf(1), before}, {u"XMoveL"_s, u"3"_s}});
    stage.open();
    const PlayerStage::Settings settings = stage.settings();
    PlayerStage::click(radioOf(stage.players[size_t(side)], mode));
    QCOMPARE(stage.settings().value(keyOf(side)), mode);
    QCOMPARE(stage.settings().value(keyOf(1 - side)), before);
    QCOMPARE(others(stage.settings()), others(settings));
}

void tst_ControlMode::the_modes_are_written_at_the_start()
{
    PlayerStage stage({}, 0, {{keyOf(1), u"midi"_s}});
    stage.open();
    QCOMPARE(stage.settings().value(keyOf(0)), u"XBOX"_s);
    QCOMPARE(stage.settings().value(keyOf(1)), u"KEYBOARD"_s);
}

void tst_ControlMode::leaving_midi_closes_the_device_data()
{
    addModes();
}

void tst_ControlMode::leaving_midi_closes_the_device()
{
    QFETCH(int, side);
    QFETCH(QString, mode);
    PlayerStage stage({u"First"_s}, 1, {{keyOf(0), u"MIDI"_s}, {keyOf(1), u"MIDI"_s}});
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    player.midiList->setCurrentIndex(1);
    stage.midi.takeCalls();
    PlayerStage::click(radioOf(player, mode));
    const bool stays = mode == "MIDI"_L1;
    QCOMPARE(player.midiList->currentIndex(), stays ? 1 : 0);
    QCOMPARE(stage.midi.takeDeviceCalls(),
        stays ? QStringList() : QStringList({u"midiInStop 0"_s, u"midiInClose 0"_s}));
}

void tst_ControlMode::a_pad_is_polled_in_its_mode_only_data()
{
    addSides();
}

void tst_ControlMode::a_pad_is_polled_in_its_mode_only()
{
    QFETCH(int, side);
    PlayerStage stage({}, 2);
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    player.xboxList->setCurrentIndex(2);
    stage.poll(1);
    QVERIFY(!stage.isPolled(0));
    for (QRadioButton *mode : {player.midi, player.keyboard}) {
        PlayerStage::click(mode);
        QVERIFY(!stage.isPolled(1));
        // The list keeps the pad, so a player who returns to the mode has it again.
        QCOMPARE(player.xboxList->currentIndex(), 2);
        PlayerStage::click(player.xbox);
        stage.poll(1);
    }
    player.xboxList->setCurrentIndex(1);
    stage.poll(0);
    QVERIFY(!stage.isPolled(1));
    player.xboxList->setCurrentIndex(0);
    QVERIFY(!stage.isPolled(0));
}

void tst_ControlMode::leaving_a_mode_stops_the_paddle_data()
{
    addSides();
}

void tst_ControlMode::leaving_a_mode_stops_the_paddle()
{
    QFETCH(int, side);
    const QString letter = sideLetter(side);
    PlayerStage stage({u"First"_s}, 2,
        {{midiKey(u"CC"_s, side, 0), u"176"_s}, {midiKey(u"CC"_s, side, 1), u"7"_s},
            {u"KeyboardUp"_s + letter, QString::number(Qt::Key_U)}});
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    PlayerStage::click(player.midi);
    player.midiList->setCurrentIndex(1);
    stage.sendMidi(0, 176, 7, 0);
    QCOMPARE(stage.step(side), -64);
    PlayerStage::click(player.keyboard);
    QCOMPARE(stage.step(side), 0);
    QTest::keyPress(player.keyboard, Qt::Key_U);
    QCOMPARE(stage.step(side), 63);
    PlayerStage::click(player.xbox);
    QCOMPARE(stage.step(side), 0);
    player.xboxList->setCurrentIndex(1);
    stage.pads.pads[0].thumbLX = 32767;
    stage.poll(0);
    QCOMPARE(stage.step(side), 63);
    player.xboxList->setCurrentIndex(2);
    QCOMPARE(stage.step(side), 0);
    stage.pads.pads[1].thumbLX = -32768;
    stage.poll(1);
    QCOMPARE(stage.step(side), -64);
    player.xboxList->setCurrentIndex(0);
    QCOMPARE(stage.step(side), 0);
}

void tst_ControlMode::a_mode_of_one_side_leaves_the_other_side_alone()
{
    PlayerStage stage(
        {u"First"_s}, 1, {{keyOf(0), u"MIDI"_s}, {u"CC_00"_s, u"176"_s}, {u"CC_01"_s, u"7"_s}});
    stage.open();
    stage.players[0].midiList->setCurrentIndex(1);
    stage.players[1].xboxList->setCurrentIndex(1);
    stage.sendMidi(0, 176, 7, 127);
    stage.pads.pads[0].thumbLX = -32768;
    stage.poll(0);
    for (QRadioButton *mode : {stage.players[1].keyboard, stage.players[1].midi}) {
        PlayerStage::click(mode);
        QCOMPARE(stage.step(0), 63);
        QCOMPARE(midiInLeft.getDeviceIndex(), 0);
    }
    PlayerStage::click(stage.players[1].xbox);
    stage.pads.pads[0].thumbLX = 32767;
    stage.poll(0);
    QCOMPARE(stage.step(1), 63);
    PlayerStage::click(stage.players[0].keyboard);
    QCOMPARE(stage.step(0), 0);
    QCOMPARE(stage.step(1), 63);
}

void tst_ControlMode::pending_events_are_processed_once_the_device_is_closed_data()
{
    addModes();
}

void tst_ControlMode::pending_events_are_processed_once_the_device_is_closed()
{
    QFETCH(int, side);
    QFETCH(QString, mode);
    PlayerStage stage({u"First"_s}, 1, bothOn(u"MIDI"_s));
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    player.midiList->setCurrentIndex(1);
    QCoreApplication::processEvents();
    std::optional<int> entry;
    QMetaObject::invokeMethod(
        this, [&] { entry = player.midiList->currentIndex(); }, Qt::QueuedConnection);
    radioOf(player, mode)->click();
    // A player who stays on MIDI has nothing to close.
    QCOMPARE(entry, mode == "MIDI"_L1 ? std::nullopt : std::optional(0));
    QCoreApplication::processEvents();
}

void tst_ControlMode::a_mode_chosen_while_modes_are_applied_is_shown_completely_data()
{
    QTest::addColumn<bool>("firstLoad");
    QTest::addColumn<int>("side");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QStringList>("choices");
    for (const bool firstLoad : {true, false}) {
        for (const int side : {0, 1}) {
            for (const char *before : {"MIDI", "XBOX", "KEYBOARD"}) {
                for (const char *choices :
                    {"MIDI", "KEYBOARD MIDI", "XBOX MIDI device", "MIDI KEYBOARD",
                        "MIDI device XBOX", "KEYBOARD MIDI device XBOX MIDI device"}) {
                    QTest::addRow("%s, %s, %s: %s", firstLoad ? "in the first load" : "in a click",
                        side == 0 ? "left" : "right", before, choices)
                        << firstLoad << side << QString::fromLatin1(before)
                        << QString::fromLatin1(choices).split(u' ');
                }
            }
        }
    }
}

void tst_ControlMode::a_mode_chosen_while_modes_are_applied_is_shown_completely()
{
    QFETCH(bool, firstLoad);
    QFETCH(int, side);
    QFETCH(QString, before);
    QFETCH(QStringList, choices);
    const QString word = side == 0 ? u"left"_s : u"right"_s;
    // The left player is applied first and would process all the events if it were not on MIDI.
    const QString partners = side == 0 ? u"XBOX"_s : u"MIDI"_s;
    PlayerStage stage({u"First"_s}, 0, {{keyOf(side), before}, {keyOf(1 - side), partners}},
        firstLoad ? PlayerStage::WholeWindow : PlayerStage::Form);
    int chosen = 0;
    const auto choose = [&](const QString &choice) {
        const QString radio = choice == "MIDI"_L1 ? u"Midi"_s
            : choice == "XBOX"_L1                 ? u"Xbox"_s
                                                  : u"Keyboard"_s;
        if (choice == "device"_L1)
            stage.find<QComboBox>(u"midi"_s + sideLetter(side) + u"ComboBox"_s)->setCurrentIndex(1);
        else
            stage.find<QRadioButton>(word + radio + u"Radio"_s)->click();
        ++chosen;
    };
    // Like clicks, they are queued while the devices are listed or closed. Each is handled while
    // the previous ones are still being applied.
    const auto post = [&] {
        for (const QString &choice : choices)
            QMetaObject::invokeMethod(
                this, [&choose, choice] { choose(choice); }, Qt::QueuedConnection);
    };
    if (firstLoad)
        stage.pads.onGetState = [&](DWORD) { post(); }; // called once, because there is no pad
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    if (!firstLoad) {
        post();
        (before == "KEYBOARD"_L1 ? player.xbox : player.keyboard)->click();
    }
    QTRY_COMPARE(chosen, choices.size());

    const bool device = choices.last() == "device"_L1;
    const QString mode = device ? u"MIDI"_s : choices.last();
    checkWidgets(player, mode);
    QCOMPARE(stage.settings().value(keyOf(side)), mode);
    if (device || mode != "MIDI"_L1)
        QCOMPARE(player.midiList->currentIndex(), device ? 1 : 0);
    const int entry = player.midiList->currentIndex();
    QCOMPARE((side == 0 ? midiInLeft : midiInRight).getDeviceIndex(), entry - 1);
    if (player.learnMove->isVisible())
        QCOMPARE(player.learnMove->isEnabled(), entry > 0);
    checkWidgets(stage.players[size_t(1 - side)], partners);
    QCOMPARE(stage.settings().value(keyOf(1 - side)), partners);
}

QTEST_MAIN(tst_ControlMode)

#include "tst_controlmode.moc"
