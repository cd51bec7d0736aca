#include "debuglines.h"
#include "playerstage.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

PlayerStage::Settings modes(const QString &left, const QString &right)
{
    return {{u"ControlModeLeft"_s, left}, {u"ControlModeRight"_s, right}};
}

const QString failureLine = u"Cannot open and start Midi device"_s;

} // namespace

/// The lines in the log about devices and learnt controls.
class tst_DeviceLog : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_lines = std::make_unique<DebugLines>(DebugLines::DebugOnly); }
    void cleanup() { m_lines.reset(); }
    void every_device_found_at_the_start_is_logged();
    void a_midi_device_is_logged_when_it_is_opened_and_closed();
    void a_midi_device_still_open_at_the_end_is_logged_as_closed();
    void a_midi_device_that_fails_is_logged_with_its_name_and_result_data();
    void a_midi_device_that_fails_is_logged_with_its_name_and_result();
    void a_name_with_a_line_break_stays_on_one_line();
    void a_pad_is_logged_when_it_is_chosen_and_released();
    void a_pad_that_is_unplugged_and_plugged_in_again_is_logged_once_each();
    void a_learnt_midi_control_is_logged_by_name_data();
    void a_learnt_midi_control_is_logged_by_name();
    void learnt_keys_are_logged_by_name();
    void learnt_pad_controls_are_logged_by_name();
    void controls_in_play_are_not_logged();

private:
    /// The lines since the last take, without those of the game about its host.
    QStringList takeLines()
    {
        QStringList lines = m_lines->takeAll();
        lines.removeAll(u"Beyond not started or Incorrect Beyond Version"_s);
        return lines;
    }
    void open(PlayerStage &stage)
    {
        stage.open();
        takeLines();
    }

    std::unique_ptr<DebugLines> m_lines;
};

void tst_DeviceLog::every_device_found_at_the_start_is_logged()
{
    PlayerStage stage({u"nanoKONTROL2"_s, u"Töne"_s}, 2);
    stage.open();
    QCOMPARE(takeLines().filter(u"found"_s),
        (QStringList{u"MIDI device found: \"nanoKONTROL2\""_s, u"MIDI device found: \"Töne\""_s,
            u"XBox controller 1 found"_s, u"XBox controller 2 found"_s}));
}

void tst_DeviceLog::a_midi_device_is_logged_when_it_is_opened_and_closed()
{
    PlayerStage stage({u"A"_s, u"B"_s}, 0, bothOn(u"MIDI"_s));
    open(stage);
    stage.players[0].midiList->setCurrentIndex(1);
    QCOMPARE(takeLines(), QStringList{u"Left: MIDI device \"A\" opened"_s});
    stage.players[1].midiList->setCurrentIndex(2);
    QCOMPARE(takeLines(), QStringList{u"Right: MIDI device \"B\" opened"_s});
    stage.players[0].midiList->setCurrentIndex(0);
    QCOMPARE(takeLines(), QStringList{u"Left: MIDI device \"A\" closed"_s});
}

void tst_DeviceLog::a_midi_device_still_open_at_the_end_is_logged_as_closed()
{
    PlayerStage stage({u"A"_s}, 0, bothOn(u"MIDI"_s), PlayerStage::WholeWindow);
    open(stage);
    stage.players[1].midiList->setCurrentIndex(1);
    takeLines();
    stage.close();
    QCOMPARE(takeLines().filter(u"MIDI"_s), QStringList{u"Right: MIDI device \"A\" closed"_s});
}

void tst_DeviceLog::a_midi_device_that_fails_is_logged_with_its_name_and_result_data()
{
    QTest::addColumn<MMRESULT>("openResult");
    QTest::addColumn<MMRESULT>("startResult");
    QTest::addColumn<QStringList>("lines");
    const QString opened = u"Left: MIDI device \"A\" opened"_s;
    const QString closed = u"Left: MIDI device \"A\" closed"_s;
    QTest::addRow("cannot be opened")
        << MMRESULT(4) << MMRESULT(0)
        << QStringList{u"Left: MIDI device \"A\" failed, result 4"_s, failureLine};
    QTest::addRow("cannot be started")
        << MMRESULT(0) << MMRESULT(11)
        << QStringList{opened, u"Left: MIDI device \"A\" failed, result 11"_s, failureLine, closed};
}

void tst_DeviceLog::a_midi_device_that_fails_is_logged_with_its_name_and_result()
{
    QFETCH(MMRESULT, openResult);
    QFETCH(MMRESULT, startResult);
    PlayerStage stage({u"A"_s}, 0, bothOn(u"MIDI"_s));
    stage.midi.inputs[0].openResult = openResult;
    stage.midi.inputs[0].startResult = startResult;
    open(stage);
    stage.players[0].midiList->setCurrentIndex(1);
    QTEST(takeLines(), "lines");
}

void tst_DeviceLog::a_name_with_a_line_break_stays_on_one_line()
{
    PlayerStage stage({u"A\n2026-11-21T23:00:00.000 [game] 1700"_s});
    stage.open();
    for (const QString &line : takeLines())
        QVERIFY2(!line.contains(u'\n'), qPrintable(line));
}

void tst_DeviceLog::a_pad_is_logged_when_it_is_chosen_and_released()
{
    PlayerStage stage({}, 2, bothOn(u"XBOX"_s));
    open(stage);
    stage.players[1].xboxList->setCurrentIndex(2);
    QCOMPARE(takeLines(), QStringList{u"Right: XBox controller 2 chosen"_s});
    stage.players[1].keyboard->setChecked(true);
    QCOMPARE(takeLines(), QStringList{u"Right: XBox controller released"_s});
}

void tst_DeviceLog::a_pad_that_is_unplugged_and_plugged_in_again_is_logged_once_each()
{
    PlayerStage stage({}, 2, bothOn(u"XBOX"_s));
    open(stage);
    stage.players[0].xboxList->setCurrentIndex(2);
    stage.poll(1);
    takeLines();
    stage.pads.pads[1].connected = false;
    stage.poll(1);
    stage.poll(1);
    QCOMPARE(takeLines(), QStringList{u"XBox controller 2 lost"_s});
    stage.pads.pads[1].connected = true;
    stage.poll(1);
    stage.poll(1);
    QCOMPARE(takeLines(), QStringList{u"XBox controller 2 connected again"_s});
}

void tst_DeviceLog::a_learnt_midi_control_is_logged_by_name_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<bool>("move");
    QTest::addColumn<QString>("line");
    QTest::addRow("left move") << 0 << true << u"Left: learnt Move, control change 7, channel 3"_s;
    QTest::addRow("right start") << 1 << false
                                 << u"Right: learnt Start, control change 7, channel 3"_s;
}

void tst_DeviceLog::a_learnt_midi_control_is_logged_by_name()
{
    QFETCH(int, side);
    QFETCH(bool, move);
    QFETCH(QString, line);
    PlayerStage stage({u"A"_s}, 0, bothOn(u"MIDI"_s));
    open(stage);
    const PlayerStage::Player &player = stage.players[size_t(side)];
    player.midiList->setCurrentIndex(1);
    PlayerStage::click(move ? player.learnMove : player.learnStart);
    takeLines();
    stage.receive(side, 0xB2, 7, 64);
    QCOMPARE(takeLines(), QStringList{line});
}

void tst_DeviceLog::learnt_keys_are_logged_by_name()
{
    PlayerStage stage({}, 0, modes(u"KEYBOARD"_s, u"XBOX"_s), PlayerStage::WholeWindow);
    open(stage);
    const PlayerStage::Player &player = stage.players[0];
    PlayerStage::click(player.learnStart);
    QTest::keyClick(player.learnStart, Qt::Key_D);
    PlayerStage::click(player.learnUp);
    QTest::keyClick(player.learnUp, Qt::Key_W);
    PlayerStage::click(player.learnDown);
    QTest::keyClick(player.learnDown, Qt::Key_Down);
    QCOMPARE(takeLines().filter(u"learnt"_s),
        (QStringList{u"Left: learnt Start, key D"_s, u"Left: learnt Up, key W"_s,
            u"Left: learnt Down, key Down"_s}));
}

void tst_DeviceLog::learnt_pad_controls_are_logged_by_name()
{
    PlayerStage stage({}, 1, bothOn(u"XBOX"_s));
    open(stage);
    const PlayerStage::Player &player = stage.players[1];
    player.xboxList->setCurrentIndex(1);
    takeLines();
    PlayerStage::click(player.learnStart);
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QCOMPARE(takeLines(), QStringList{u"Right: learnt Start, button A"_s});
    PlayerStage::click(player.learnMove);
    stage.pads.pads[0].thumbRY = 30000;
    stage.poll(0);
    QCOMPARE(takeLines(), QStringList{u"Right: learnt Move, right stick, vertical"_s});
}

void tst_DeviceLog::controls_in_play_are_not_logged()
{
    PlayerStage stage({u"A"_s}, 1, modes(u"MIDI"_s, u"XBOX"_s));
    open(stage);
    stage.players[0].midiList->setCurrentIndex(1);
    stage.players[1].xboxList->setCurrentIndex(1);
    takeLines();
    stage.receive(0, 0xB2, 7, 64);
    stage.pads.pads[0].thumbRY = 30000;
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QCOMPARE(takeLines(), QStringList());
}

QTEST_MAIN(tst_DeviceLog)
#include "tst_devicelog.moc"
