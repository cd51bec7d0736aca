#include "mididevices.h"
#include "playerstage.h"

#include <QTest>

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

/// What is left of a store without the modes.
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
    void a_mode_shows_and_enables_what_belongs_to_it_data();
    void a_mode_shows_and_enables_what_belongs_to_it();
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
    void clicks_that_wait_behind_a_mode_are_served_after_it();
};

void tst_ControlMode::a_mode_shows_and_enables_what_belongs_to_it_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<bool>("midiList");
    QTest::addColumn<bool>("xboxList");
    QTest::addRow("MIDI") << u"MIDI"_s << QStringList({u"start"_s, u"move"_s, u"14 bits"_s}) << true
                          << false;
    QTest::addRow("XBOX") << u"XBOX"_s << QStringList({u"start"_s, u"move"_s}) << false << true;
    QTest::addRow("KEYBOARD") << u"KEYBOARD"_s << QStringList({u"start"_s, u"up"_s, u"down"_s})
                              << false << false;
}

void tst_ControlMode::a_mode_shows_and_enables_what_belongs_to_it()
{
    QFETCH(QString, mode);
    QFETCH(QStringList, shown);
    QFETCH(bool, midiList);
    QFETCH(bool, xboxList);
    const auto check = [&](const PlayerStage::Player &player) {
        const QList<std::pair<QString, QWidget *>> widgets = {{u"start"_s, player.learnStart},
            {u"move"_s, player.learnMove}, {u"up"_s, player.learnUp}, {u"down"_s, player.learnDown},
            {u"14 bits"_s, player.bits}};
        QStringList visible;
        for (const auto &[name, widget] : widgets) {
            if (widget->isVisible())
                visible.append(name);
        }
        QCOMPARE(visible, shown);
        QCOMPARE(player.midiList->isEnabled(), midiList);
        QCOMPARE(player.xboxList->isEnabled(), xboxList);
        QVERIFY(player.midiList->isVisible() && player.xboxList->isVisible());
    };
    // From every mode before, and as stored.
    for (const QString &before : {u"MIDI"_s, u"XBOX"_s, u"KEYBOARD"_s}) {
        PlayerStage stage({u"First"_s}, 1, {{keyOf(0), before}, {keyOf(1), before}});
        stage.open();
        for (const PlayerStage::Player &player : stage.players) {
            if (before == mode)
                check(player);
            PlayerStage::click(radioOf(player, mode));
            check(player);
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
        // The list keeps the pad, and so does the player who comes back.
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

void tst_ControlMode::clicks_that_wait_behind_a_mode_are_served_after_it()
{
    PlayerStage stage({u"First"_s}, 0, {{keyOf(0), u"MIDI"_s}});
    stage.open();
    const PlayerStage::Player &player = stage.players[0];
    player.midiList->setCurrentIndex(1);
    // Waits like a click while the device takes its time to close.
    QMetaObject::invokeMethod(player.midi, &QRadioButton::click, Qt::QueuedConnection);
    PlayerStage::click(player.keyboard);
    QCoreApplication::processEvents();
    QVERIFY(player.midi->isChecked());
    QVERIFY(player.midiList->isEnabled());
    QVERIFY(player.learnMove->isVisible());
    QVERIFY(!player.learnUp->isVisible());
    QCOMPARE(stage.settings().value(keyOf(0)), u"MIDI"_s);
}

QTEST_MAIN(tst_ControlMode)

#include "tst_controlmode.moc"
