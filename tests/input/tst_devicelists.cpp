#include "mididevices.h"
#include "playerstage.h"

#include <QTest>
#include <QThread>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

constexpr auto failureLine = "Cannot open and start Midi device";

MidiDevIn &midiIn(int side)
{
    return side == 0 ? midiInLeft : midiInRight;
}

QStringList entries(const QComboBox *list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts.append(list->itemText(i));
    return texts;
}

} // namespace

class tst_DeviceLists : public QObject
{
    Q_OBJECT

private slots:
    void the_midi_lists_hold_the_devices_in_the_order_of_the_system_data();
    void the_midi_lists_hold_the_devices_in_the_order_of_the_system();
    void the_system_is_asked_for_its_devices_before_each_entry_data();
    void the_system_is_asked_for_its_devices_before_each_entry();
    void the_pad_lists_hold_the_unbroken_run_of_pads_data();
    void the_pad_lists_hold_the_unbroken_run_of_pads();
    void a_device_plugged_in_later_is_not_offered();
    void nothing_is_opened_or_polled_at_the_start();
    void choosing_a_device_opens_and_starts_it_data();
    void choosing_a_device_opens_and_starts_it();
    void choosing_the_placeholder_stops_and_closes_the_device_data();
    void choosing_the_placeholder_stops_and_closes_the_device();
    void the_arrow_keys_choose_a_device();
    void devices_with_the_same_name_are_told_apart_by_position();
    void a_device_that_cannot_be_opened_is_deselected_data();
    void a_device_that_cannot_be_opened_is_deselected();
    void a_device_that_cannot_be_started_is_deselected_data();
    void a_device_that_cannot_be_started_is_deselected();
    void a_device_unplugged_before_it_was_chosen_is_deselected();
    void a_second_device_leaves_the_first_open_and_silent_data();
    void a_second_device_leaves_the_first_open_and_silent();
    void a_second_device_that_fails_closes_the_first();
    void the_placeholder_without_a_device_is_harmless_data();
    void the_placeholder_without_a_device_is_harmless();
    void a_device_serves_one_side_at_a_time_data();
    void a_device_serves_one_side_at_a_time();
    void a_device_that_vanishes_can_be_deselected_data();
    void a_device_that_vanishes_can_be_deselected();
    void closing_the_window_closes_every_device();
    void the_pads_are_released_from_the_last_to_the_first();
};

void tst_DeviceLists::the_midi_lists_hold_the_devices_in_the_order_of_the_system_data()
{
    QTest::addColumn<QStringList>("devices");
    QTest::addRow("none") << QStringList();
    QTest::addRow("one") << QStringList{u"nanoKONTROL2"_s};
    QTest::addRow("three") << QStringList{u"Zeta"_s, u"Alpha"_s, u"Mitte für Töne"_s};
    QTest::addRow("the same name twice") << QStringList{u"USB MIDI"_s, u"Other"_s, u"USB MIDI"_s};
    QTest::addRow("without a name") << QStringList{QString(), u"Other"_s};
}

void tst_DeviceLists::the_midi_lists_hold_the_devices_in_the_order_of_the_system()
{
    QFETCH(QStringList, devices);
    PlayerStage stage(devices);
    stage.open();
    for (const PlayerStage::Player &player : stage.players) {
        QCOMPARE(entries(player.midiList), QStringList{u"Select MIDI device"_s} + devices);
        QCOMPARE(player.midiList->currentIndex(), 0);
    }
}

void tst_DeviceLists::the_system_is_asked_for_its_devices_before_each_entry_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("afterTheFirst");
    QTest::addRow("one is plugged in")
        << QStringList{u"First"_s} << QStringList{u"First"_s, u"Second"_s};
    QTest::addRow("one is unplugged")
        << QStringList{u"First"_s, u"Second"_s} << QStringList{u"First"_s};
}

void tst_DeviceLists::the_system_is_asked_for_its_devices_before_each_entry()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, afterTheFirst);
    PlayerStage stage(before);
    stage.midi.onCall = [&](const QString &call) {
        if (call != "midiInGetDevCapsA 0"_L1)
            return;
        stage.midi.inputs.clear();
        for (const QString &name : afterTheFirst)
            stage.midi.inputs.append({.name = name});
    };
    stage.open();
    for (const PlayerStage::Player &player : stage.players)
        QCOMPARE(entries(player.midiList), QStringList{u"Select MIDI device"_s} + afterTheFirst);
}

void tst_DeviceLists::the_pad_lists_hold_the_unbroken_run_of_pads_data()
{
    QTest::addColumn<QList<int>>("connected");
    QTest::addColumn<int>("listed");
    QTest::addColumn<QList<int>>("probes"); // by user index; the fifth for all higher ones
    QTest::addRow("none") << QList<int>() << 0 << QList<int>{1, 0, 0, 0, 0};
    QTest::addRow("the first") << QList<int>{0} << 1 << QList<int>{1, 1, 0, 0, 0};
    QTest::addRow("not the first") << QList<int>{1, 2, 3} << 0 << QList<int>{1, 0, 0, 0, 0};
    QTest::addRow("0 and 2") << QList<int>{0, 2} << 1 << QList<int>{1, 1, 0, 0, 0};
    QTest::addRow("all four") << QList<int>{0, 1, 2, 3} << 4 << QList<int>{1, 1, 1, 1, 1};
}

void tst_DeviceLists::the_pad_lists_hold_the_unbroken_run_of_pads()
{
    QFETCH(QList<int>, connected);
    QFETCH(int, listed);
    QFETCH(QList<int>, probes);
    PlayerStage stage;
    for (const int pad : connected)
        stage.pads.pads[size_t(pad)].connected = true;
    stage.open();
    QStringList expected = {u"Select XBox device"_s, u"XBox Controller 1"_s, u"XBox Controller 2"_s,
        u"XBox Controller 3"_s, u"XBox Controller 4"_s};
    expected.resize(1 + listed);
    for (const PlayerStage::Player &player : stage.players) {
        QCOMPARE(entries(player.xboxList), expected);
        QCOMPARE(player.xboxList->currentIndex(), 0);
    }
    QList<int> reads;
    for (const FakePads::Pad &pad : stage.pads.pads)
        reads.append(pad.reads);
    QCOMPARE(reads + QList<int>{stage.pads.readsBeyond}, probes);
}

void tst_DeviceLists::a_device_plugged_in_later_is_not_offered()
{
    PlayerStage stage({u"First"_s}, 1, bothOn(u"MIDI"_s));
    stage.open();
    stage.midi.inputs.append({.name = u"Second"_s});
    stage.pads.pads[1].connected = true;
    for (const PlayerStage::Player &player : stage.players) {
        PlayerStage::click(player.xbox);
        PlayerStage::click(player.midi);
        QCOMPARE(player.midiList->count(), 2);
        QCOMPARE(player.xboxList->count(), 2);
    }
}

void tst_DeviceLists::nothing_is_opened_or_polled_at_the_start()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 2, {{u"ControlModeLeft"_s, u"MIDI"_s}});
    stage.open();
    QCOMPARE(stage.midi.takeDeviceCalls(), QStringList());
    for (const int side : {0, 1})
        QCOMPARE(midiIn(side).getDeviceIndex(), -1);
    for (const std::size_t pad : {0U, 1U})
        QVERIFY(!stage.isPolled(pad));
}

void tst_DeviceLists::choosing_a_device_opens_and_starts_it_data()
{
    addSides();
}

void tst_DeviceLists::choosing_a_device_opens_and_starts_it()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    stage.players[size_t(side)].midiList->setCurrentIndex(2);
    QCOMPARE(stage.midi.takeDeviceCalls(), QStringList({u"midiInOpen 1"_s, u"midiInStart 1"_s}));
    QCOMPARE(stage.midi.instances, {reinterpret_cast<DWORD_PTR>(stage.widget())});
    QCOMPARE(midiIn(side).getDeviceIndex(), 1);
    QCOMPARE(midiIn(side).getDeviceName(), u"Second"_s);
    QCOMPARE(midiIn(1 - side).getDeviceIndex(), -1);
    QCOMPARE(stage.players[size_t(1 - side)].midiList->currentIndex(), 0);
}

void tst_DeviceLists::choosing_the_placeholder_stops_and_closes_the_device_data()
{
    addSides();
}

void tst_DeviceLists::choosing_the_placeholder_stops_and_closes_the_device()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    QComboBox *list = stage.players[size_t(side)].midiList;
    list->setCurrentIndex(2);
    stage.midi.takeCalls();
    list->setCurrentIndex(0);
    QCOMPARE(stage.midi.takeDeviceCalls(), QStringList({u"midiInStop 1"_s, u"midiInClose 1"_s}));
    QCOMPARE(midiIn(side).getDeviceIndex(), -1);
    QVERIFY(stage.midi.openInputs.isEmpty());
}

void tst_DeviceLists::the_arrow_keys_choose_a_device()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    QComboBox *list = stage.players[1].midiList;
    QTest::keyClick(list, Qt::Key_Down);
    QCOMPARE(midiInRight.getDeviceName(), u"First"_s);
    QTest::keyClick(list, Qt::Key_Up);
    QCOMPARE(midiInRight.getDeviceName(), QString());
}

void tst_DeviceLists::devices_with_the_same_name_are_told_apart_by_position()
{
    PlayerStage stage({u"USB MIDI"_s, u"USB MIDI"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    stage.players[0].midiList->setCurrentIndex(2);
    stage.players[1].midiList->setCurrentIndex(1);
    QCOMPARE(stage.midi.takeDeviceCalls(),
        QStringList(
            {u"midiInOpen 1"_s, u"midiInStart 1"_s, u"midiInOpen 0"_s, u"midiInStart 0"_s}));
    QCOMPARE(midiInLeft.getDeviceIndex(), 1);
    QCOMPARE(midiInRight.getDeviceIndex(), 0);
}

void tst_DeviceLists::a_device_that_cannot_be_opened_is_deselected_data()
{
    addSides();
}

void tst_DeviceLists::a_device_that_cannot_be_opened_is_deselected()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.midi.inputs[1].openResult = MMSYSERR_NOMEM;
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    QTest::ignoreMessage(QtDebugMsg, failureLine);
    player.midiList->setCurrentIndex(2);
    QCOMPARE(stage.midi.takeDeviceCalls(),
        QStringList({u"midiInOpen 1"_s, u"midiInStop invalid"_s, u"midiInClose invalid"_s}));
    QCOMPARE(player.midiList->currentIndex(), 0);
    QCOMPARE(midiIn(side).getDeviceIndex(), -1);
    QVERIFY(!player.learnMove->isEnabled());
    QCOMPARE(player.learnMove->text(), u"Click to learn Move"_s);
}

void tst_DeviceLists::a_device_that_cannot_be_started_is_deselected_data()
{
    addSides();
}

void tst_DeviceLists::a_device_that_cannot_be_started_is_deselected()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.midi.inputs[0].startResult = MMSYSERR_ERROR;
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    QTest::ignoreMessage(QtDebugMsg, failureLine);
    player.midiList->setCurrentIndex(1);
    QCOMPARE(stage.midi.takeDeviceCalls(),
        QStringList(
            {u"midiInOpen 0"_s, u"midiInStart 0"_s, u"midiInStop 0"_s, u"midiInClose 0"_s}));
    QCOMPARE(player.midiList->currentIndex(), 0);
    QCOMPARE(midiIn(side).getDeviceIndex(), -1);
    QVERIFY(stage.midi.openInputs.isEmpty());
}

void tst_DeviceLists::a_device_unplugged_before_it_was_chosen_is_deselected()
{
    PlayerStage stage({u"First"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    stage.midi.unplugInput(0);
    QTest::ignoreMessage(QtDebugMsg, failureLine);
    stage.players[0].midiList->setCurrentIndex(1);
    QCOMPARE(stage.players[0].midiList->currentIndex(), 0);
    QCOMPARE(midiInLeft.getDeviceIndex(), -1);
}

void tst_DeviceLists::a_second_device_leaves_the_first_open_and_silent_data()
{
    addSides();
}

void tst_DeviceLists::a_second_device_leaves_the_first_open_and_silent()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    player.midiList->setCurrentIndex(1);
    PlayerStage::click(player.learnMove);
    stage.sendMidi(0, 0xB0, 7, 64);
    stage.midi.takeCalls();
    player.midiList->setCurrentIndex(2);
    QCOMPARE(stage.midi.takeDeviceCalls(), QStringList({u"midiInOpen 1"_s, u"midiInStart 1"_s}));
    QCOMPARE(midiIn(side).getDeviceIndex(), 1);
    QCOMPARE(stage.sendMidi(0, 0xB0, 7, 100), 1);
    QCOMPARE(stage.step(0), 0);
    QCOMPARE(stage.step(1), 0);
    QCOMPARE(stage.sendMidi(1, 0xB0, 7, 100), 1);
    QCOMPARE(stage.step(side), 36);
}

void tst_DeviceLists::a_second_device_that_fails_closes_the_first()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.midi.inputs[1].openResult = MMSYSERR_NOMEM;
    stage.open();
    stage.players[0].midiList->setCurrentIndex(1);
    stage.midi.takeCalls();
    QTest::ignoreMessage(QtDebugMsg, failureLine);
    stage.players[0].midiList->setCurrentIndex(2);
    QCOMPARE(stage.midi.takeDeviceCalls(),
        QStringList({u"midiInOpen 1"_s, u"midiInStop 0"_s, u"midiInClose 0"_s}));
    QCOMPARE(midiInLeft.getDeviceIndex(), -1);
}

void tst_DeviceLists::the_placeholder_without_a_device_is_harmless_data()
{
    addSides();
}

void tst_DeviceLists::the_placeholder_without_a_device_is_harmless()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s}, 0, bothOn(u"MIDI"_s), PlayerStage::WholeWindow);
    stage.open();
    stage.players[size_t(1 - side)].midiList->setCurrentIndex(1);
    stage.midi.takeCalls();
    // The list is complete, so it would not signal again.
    if (side == 0)
        stage.window->midiLComboChanged(0);
    else
        stage.window->midiRComboChanged(0);
    QCOMPARE(stage.midi.takeDeviceCalls(),
        QStringList({u"midiInStop invalid"_s, u"midiInClose invalid"_s}));
    QCOMPARE(midiIn(side).getDeviceIndex(), -1);
    QCOMPARE(midiIn(1 - side).getDeviceIndex(), 0);
}

void tst_DeviceLists::a_device_serves_one_side_at_a_time_data()
{
    addSides();
}

void tst_DeviceLists::a_device_serves_one_side_at_a_time()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    const PlayerStage::Player &first = stage.players[size_t(side)];
    const PlayerStage::Player &second = stage.players[size_t(1 - side)];
    first.midiList->setCurrentIndex(1);
    QTest::ignoreMessage(QtDebugMsg, failureLine);
    second.midiList->setCurrentIndex(1);
    QCOMPARE(second.midiList->currentIndex(), 0);
    QCOMPARE(midiIn(1 - side).getDeviceIndex(), -1);
    QCOMPARE(first.midiList->currentIndex(), 1);
    QCOMPARE(midiIn(side).getDeviceIndex(), 0);
    PlayerStage::click(first.learnMove);
    QCOMPARE(stage.sendMidi(0, 0xB0, 7, 64), 1);
    QCOMPARE(stage.sendMidi(0, 0xB0, 7, 127), 1);
    QCOMPARE(stage.step(side), 63);

    first.midiList->setCurrentIndex(0);
    second.midiList->setCurrentIndex(1);
    QCOMPARE(midiIn(1 - side).getDeviceIndex(), 0);
}

void tst_DeviceLists::a_device_that_vanishes_can_be_deselected_data()
{
    addSides();
}

void tst_DeviceLists::a_device_that_vanishes_can_be_deselected()
{
    QFETCH(int, side);
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    const PlayerStage::Player &player = stage.players[size_t(side)];
    player.midiList->setCurrentIndex(1);
    PlayerStage::click(player.learnMove);
    stage.sendMidi(0, 0xB0, 7, 64);
    stage.sendMidi(0, 0xB0, 7, 100);
    QCOMPARE(stage.step(side), 36);
    stage.midi.unplugInput(0);
    stage.midi.takeCalls();
    player.midiList->setCurrentIndex(0);
    QCOMPARE(stage.midi.takeDeviceCalls(), QStringList({u"midiInStop 0"_s, u"midiInClose 0"_s}));
    QCOMPARE(midiIn(side).getDeviceIndex(), -1);
    QCOMPARE(stage.step(side), 0);
    // The other device now has the number of the one that was removed.
    player.midiList->setCurrentIndex(1);
    QCOMPARE(midiIn(side).getDeviceName(), u"Second"_s);
    stage.sendMidi(0, 0xB0, 7, 0);
    QCOMPARE(stage.step(side), -64);
}

void tst_DeviceLists::closing_the_window_closes_every_device()
{
    PlayerStage stage({u"First"_s, u"Second"_s}, 0, bothOn(u"MIDI"_s));
    stage.open();
    stage.players[0].midiList->setCurrentIndex(1);
    stage.players[1].midiList->setCurrentIndex(2);
    stage.midi.takeCalls();
    stage.close();
    QCOMPARE(stage.midi.takeDeviceCalls(),
        QStringList(
            {u"midiInStop 0"_s, u"midiInClose 0"_s, u"midiInStop 1"_s, u"midiInClose 1"_s}));
    for (const int side : {0, 1})
        QCOMPARE(midiIn(side).getDeviceIndex(), -1);
}

void tst_DeviceLists::the_pads_are_released_from_the_last_to_the_first()
{
    PlayerStage stage({}, 3);
    std::array<std::atomic<QThread *>, 4> workers = {};
    stage.pads.onGetState = [&](DWORD pad) {
        if (QThread::currentThread() != qApp->thread())
            workers[pad] = QThread::currentThread();
    };
    stage.open();
    QList<int> released; // each is released before the next
    for (const int pad : {0, 1, 2}) {
        stage.players[0].xboxList->setCurrentIndex(pad + 1);
        stage.poll(size_t(pad));
        connect(
            workers[size_t(pad)], &QThread::finished, this,
            [&released, pad] { released.append(pad); }, Qt::DirectConnection);
    }
    stage.close();
    QCOMPARE(released, QList({2, 1, 0}));
}

QTEST_MAIN(tst_DeviceLists)

#include "tst_devicelists.moc"
