#include "mididevices.h"
#include "playerstage.h"

#include <QTest>
#include <QThread>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int notASide = 2;

/// Both players on MIDI, each with its own fader and pad.
PlayerStage::Settings learntMidi()
{
    return {
        {u"ControlModeLeft"_s, u"MIDI"_s},
        {u"ControlModeRight"_s, u"MIDI"_s},
        {u"CC_00"_s, u"176"_s},
        {u"CC_01"_s, u"7"_s},
        {u"Start_00"_s, u"144"_s},
        {u"Start_01"_s, u"60"_s},
        {u"CC_10"_s, u"177"_s},
        {u"CC_11"_s, u"8"_s},
        {u"Start_10"_s, u"145"_s},
        {u"Start_11"_s, u"61"_s},
    };
}

/// The bindings of a side in those settings.
constexpr int moveStatus(int side)
{
    return 176 + side;
}

constexpr int moveNumber(int side)
{
    return 7 + side;
}

constexpr int startStatus(int side)
{
    return 144 + side;
}

constexpr int startNumber(int side)
{
    return 60 + side;
}

/// Opens the window and selects a device for each player.
void openDevices(PlayerStage &stage)
{
    stage.open();
    for (const PlayerStage::Player &player : stage.players)
        player.midiList->setCurrentIndex(player.side + 1);
}

} // namespace

class tst_ControlMapping : public QObject
{
    Q_OBJECT

private slots:
    void a_message_steps_the_paddle_of_its_side_data();
    void a_message_steps_the_paddle_of_its_side();
    void the_sensitivity_does_not_touch_midi();
    void a_start_message_starts_for_its_side_whatever_its_value_data();
    void a_start_message_starts_for_its_side_whatever_its_value();
    void a_message_of_the_other_sides_binding_does_nothing_data();
    void a_message_of_the_other_sides_binding_does_nothing();
    void with_14_bits_the_first_data_byte_of_the_status_steps_data();
    void with_14_bits_the_first_data_byte_of_the_status_steps();
    void a_message_of_both_bindings_moves_and_starts_data();
    void a_message_of_both_bindings_moves_and_starts();
    void an_unlearnt_message_does_nothing();
    void no_message_reaches_another_side_or_binding();
    void a_message_of_an_invalid_side_is_ignored();
    void a_message_is_handled_on_the_thread_of_the_window();
    void a_message_still_queued_does_not_move_a_paddle_that_left_its_device_data();
    void a_message_still_queued_does_not_move_a_paddle_that_left_its_device();
    void choosing_another_device_stops_the_paddle_but_not_its_own_messages();
};

void tst_ControlMapping::a_message_steps_the_paddle_of_its_side_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("step");
    for (const int side : {0, 1}) {
        const char *name = side == 0 ? "left" : "right";
        QTest::addRow("%s, lowest", name) << side << 0 << -64;
        QTest::addRow("%s, below the centre", name) << side << 63 << -1;
        QTest::addRow("%s, above the centre", name) << side << 65 << 1;
        QTest::addRow("%s, highest", name) << side << 127 << 63;
    }
}

void tst_ControlMapping::a_message_steps_the_paddle_of_its_side()
{
    QFETCH(int, side);
    QFETCH(int, value);
    QFETCH(int, step);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    openDevices(stage);
    QCOMPARE(stage.sendMidi(side, moveStatus(side), moveNumber(side), value), 1);
    QCOMPARE(stage.step(side), step);
    QCOMPARE(stage.step(1 - side), 0);
    QVERIFY(!stage.takeStart());
    stage.sendMidi(side, moveStatus(side), moveNumber(side), 64);
    QCOMPARE(stage.step(side), 0);
}

void tst_ControlMapping::the_sensitivity_does_not_touch_midi()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    openDevices(stage);
    for (const int position : {256, 768}) {
        for (const PlayerStage::Player &player : stage.players) {
            player.sensitivity->setValue(position);
            stage.sendMidi(player.side, moveStatus(player.side), moveNumber(player.side), 127);
            QCOMPARE(stage.step(player.side), 63);
        }
    }
}

void tst_ControlMapping::a_start_message_starts_for_its_side_whatever_its_value_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<int>("value");
    for (const int side : {0, 1}) {
        const char *name = side == 0 ? "left" : "right";
        QTest::addRow("%s, hard", name) << side << 127;
        QTest::addRow("%s, softly", name) << side << 1;
        QTest::addRow("%s, key released", name) << side << 0;
    }
}

void tst_ControlMapping::a_start_message_starts_for_its_side_whatever_its_value()
{
    QFETCH(int, side);
    QFETCH(int, value);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    openDevices(stage);
    stage.sendMidi(side, startStatus(side), startNumber(side), value);
    QCOMPARE(stage.takeStart(), std::optional(side));
    QCOMPARE(stage.step(side), 0);
}

void tst_ControlMapping::a_message_of_the_other_sides_binding_does_nothing_data()
{
    addSides();
}

void tst_ControlMapping::a_message_of_the_other_sides_binding_does_nothing()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    openDevices(stage);
    const int other = 1 - side;
    QCOMPARE(stage.sendMidi(side, moveStatus(other), moveNumber(other), 100), 1);
    QCOMPARE(stage.sendMidi(side, startStatus(other), startNumber(other), 100), 1);
    // Neither half of a binding is enough.
    stage.sendMidi(side, moveStatus(side), moveNumber(other), 100);
    stage.sendMidi(side, moveStatus(other), moveNumber(side), 100);
    stage.sendMidi(side, startStatus(side), startNumber(other), 100);
    stage.sendMidi(side, startStatus(other), startNumber(side), 100);
    QCOMPARE(stage.step(0), 0);
    QCOMPARE(stage.step(1), 0);
    QVERIFY(!stage.takeStart());
}

void tst_ControlMapping::with_14_bits_the_first_data_byte_of_the_status_steps_data()
{
    addSides();
}

void tst_ControlMapping::with_14_bits_the_first_data_byte_of_the_status_steps()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    openDevices(stage);
    PlayerStage::click(stage.players[size_t(side)].bits);
    for (const int number : {0, moveNumber(side), 100, 127}) {
        stage.sendMidi(side, moveStatus(side), number, 99);
        QCOMPARE(stage.step(side), number - 64);
    }
    stage.sendMidi(side, moveStatus(1 - side), 64, 64);
    QCOMPARE(stage.step(side), 63);
    // The other side has its own check box.
    stage.sendMidi(1 - side, moveStatus(1 - side), 100, 99);
    QCOMPARE(stage.step(1 - side), 0);

    PlayerStage::click(stage.players[size_t(side)].bits);
    stage.sendMidi(side, moveStatus(side), 100, 64);
    QCOMPARE(stage.step(side), 63);
    stage.sendMidi(side, moveStatus(side), moveNumber(side), 64);
    QCOMPARE(stage.step(side), 0);
}

void tst_ControlMapping::a_message_of_both_bindings_moves_and_starts_data()
{
    addSides();
}

void tst_ControlMapping::a_message_of_both_bindings_moves_and_starts()
{
    QFETCH(int, side);
    PlayerStage::Settings settings = learntMidi();
    settings[midiKey(u"Start"_s, side, 0)] = QString::number(moveStatus(side));
    settings[midiKey(u"Start"_s, side, 1)] = QString::number(moveNumber(side));
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, settings);
    openDevices(stage);
    stage.sendMidi(side, moveStatus(side), moveNumber(side), 127);
    QCOMPARE(stage.step(side), 63);
    QCOMPARE(stage.takeStart(), std::optional(side));

    PlayerStage::click(stage.players[size_t(side)].bits);
    stage.sendMidi(side, moveStatus(side), 20, 127);
    QCOMPARE(stage.step(side), -44);
    QVERIFY(!stage.takeStart());
    stage.sendMidi(side, moveStatus(side), moveNumber(side), 127);
    QCOMPARE(stage.step(side), moveNumber(side) - 64);
    QCOMPARE(stage.takeStart(), std::optional(side));
}

void tst_ControlMapping::an_unlearnt_message_does_nothing()
{
    // A damaged file may hold a number without a status.
    PlayerStage stage({u"First"_s, u"Second"_s}, 0,
        {{u"ControlModeLeft"_s, u"MIDI"_s}, {u"ControlModeRight"_s, u"MIDI"_s},
            {u"CC_11"_s, u"7"_s}, {u"Start_11"_s, u"7"_s}});
    openDevices(stage);
    for (const int side : {0, 1}) {
        for (const int status : {0x00, 0x80, 0x90, 0xB0, 0xF8, 0xFF}) {
            stage.sendMidi(side, status, 0, 100);
            stage.sendMidi(side, status, 7, 100);
        }
        QCOMPARE(stage.step(side), 0);
    }
    QVERIFY(!stage.takeStart());
}

void tst_ControlMapping::no_message_reaches_another_side_or_binding()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    openDevices(stage);
    int strays = 0;
    int moves = 0;
    int starts = 0;
    for (const int side : {0, 1}) {
        for (const bool fourteenBits : {false, true}) {
            stage.players[size_t(side)].bits->setChecked(fourteenBits);
            for (const int value : {0, 64, 127, 255}) {
                for (int low = 0; low <= 0xFFFF; ++low) {
                    const int status = low & 0xFF;
                    const int number = low >> 8;
                    const int before = stage.step(side);
                    const int otherBefore = stage.step(1 - side);
                    stage.receive(side, status, number, value);
                    const bool isMove =
                        status == moveStatus(side) && (fourteenBits || number == moveNumber(side));
                    const int step = !isMove ? before : (fourteenBits ? number : value) - 64;
                    const bool isStart = status == startStatus(side) && number == startNumber(side);
                    const int start = isStart ? side : notASide;
                    strays += stage.step(side) != step || stage.step(1 - side) != otherBefore
                        || stage.takeStart().value_or(notASide) != start;
                    moves += isMove;
                    starts += isStart;
                }
            }
        }
    }
    QCOMPARE(strays, 0);
    QCOMPARE(moves, 2 * 4 * (1 + 256));
    QCOMPARE(starts, 2 * 4 * 2);
}

void tst_ControlMapping::a_message_of_an_invalid_side_is_ignored()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    openDevices(stage);
    for (const int play : {-1, 2, 3, std::numeric_limits<int>::max()}) {
        // Nor does it complete a learn, although 2 also means "no side".
        stage.receive(play, 0xB0, 7, 100);
        stage.receive(play, 0xB1, 8, 100);
        stage.receive(play, 0x90, 60, 100);
    }
    QCOMPARE(stage.step(0), 0);
    QCOMPARE(stage.step(1), 0);
    QVERIFY(!stage.takeStart());
    const PlayerStage::Settings settings = stage.settings();
    const PlayerStage::Settings learnt = learntMidi();
    for (auto setting = learnt.begin(); setting != learnt.end(); ++setting)
        QCOMPARE(settings[setting.key()], setting.value());
}

void tst_ControlMapping::a_message_is_handled_on_the_thread_of_the_window()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    openDevices(stage);
    QThread *emittedOn = nullptr;
    QThread *handledOn = nullptr;
    QObject onThisThread;
    const auto note = [](QThread *&thread) {
        return [&thread] { thread = QThread::currentThread(); };
    };
    connect(&midiInLeft, &MidiDevIn::midiReceived, &onThisThread, note(emittedOn),
        Qt::DirectConnection);
    connect(&midiInLeft, &MidiDevIn::midiReceived, &onThisThread, note(handledOn));
    QCOMPARE(stage.midi.send(0, 0x6407B0), 1);
    // The message has been emitted and its thread has ended, but no event has been processed since.
    QVERIFY(emittedOn && emittedOn != QThread::currentThread());
    QCOMPARE(stage.step(0), 0);
    QCoreApplication::processEvents();
    QCOMPARE(handledOn, QThread::currentThread());
    QCOMPARE(stage.step(0), 36);
}

void tst_ControlMapping::a_message_still_queued_does_not_move_a_paddle_that_left_its_device_data()
{
    addSides();
}

void tst_ControlMapping::a_message_still_queued_does_not_move_a_paddle_that_left_its_device()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s, u"Third"_s}, 0, learntMidi());
    const auto word = static_cast<DWORD>(moveStatus(side) | moveNumber(side) << 8 | 127 << 16);
    openDevices(stage);
    const PlayerStage::Player &player = stage.players[size_t(side)];
    const auto leaveWithAMessageQueued = [&](const std::function<void()> &leave) {
        player.midi->click();
        player.midiList->setCurrentIndex(side + 1);
        QCoreApplication::processEvents();
        QCOMPARE(stage.midi.send(side, word), 1);
        leave();
        QCoreApplication::processEvents();
        QCOMPARE(stage.step(side), 0);
    };
    leaveWithAMessageQueued([&] { player.midiList->setCurrentIndex(3); });
    player.midiList->setCurrentIndex(0);
    stage.midi.openInputs.removeIf( // left open; removed so that it can be opened again
        [&](const FakeMidi::Input &input) { return input.device == side; });
    leaveWithAMessageQueued([&] { player.midiList->setCurrentIndex(0); });
    leaveWithAMessageQueued([&] { PlayerStage::click(player.xbox); });
    leaveWithAMessageQueued([&] { PlayerStage::click(player.keyboard); });
}

void tst_ControlMapping::choosing_another_device_stops_the_paddle_but_not_its_own_messages()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, learntMidi());
    stage.open();
    QComboBox *list = stage.players[0].midiList;
    list->setCurrentIndex(1);
    stage.sendMidi(0, 176, 7, 127);
    QCOMPARE(stage.step(0), 63);
    QCOMPARE(stage.midi.send(0, 0x0007B0), 1); // the old device's last message
    list->setCurrentIndex(2);
    QCOMPARE(stage.midi.send(1, 0x6407B0), 1); // the new device's first
    QCoreApplication::processEvents();
    QCOMPARE(stage.step(0), 36);
    list->setCurrentIndex(0);
    QCOMPARE(stage.step(0), 0);
}

QTEST_MAIN(tst_ControlMapping)

#include "tst_controlmapping.moc"
