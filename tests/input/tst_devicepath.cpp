#include "allocations.h"
#include "playerstage.h"
#include "unseenpoll.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Lets an object handle the calls queued for it, and nothing else. Returns the number of
/// allocations that this took.
long takenByQueuedCalls(QObject *object)
{
    const long before = allocations();
    QCoreApplication::sendPostedEvents(object, QEvent::MetaCall);
    return allocations() - before;
}

/// The allocations that Qt itself makes to deliver a queued call.
long takenByQt(QObject *object)
{
    QCoreApplication::sendPostedEvents(object, QEvent::MetaCall);
    QMetaObject::invokeMethod(
        object, [] {}, Qt::QueuedConnection);
    return takenByQueuedCalls(object);
}

} // namespace

class tst_DevicePath : public QObject
{
    Q_OBJECT

private slots:
    void allocations_are_counted();
    void a_midi_message_reaches_the_paddle_without_allocating_data();
    void a_midi_message_reaches_the_paddle_without_allocating();
    void a_queued_midi_message_allocates_nothing_beyond_qt();
    void queued_pad_signals_allocate_nothing_beyond_qt();
};

void tst_DevicePath::allocations_are_counted()
{
    const long before = allocations();
    const auto number = std::make_unique<int>(7);
    QVERIFY(*number == 7 && allocations() > before);
}

void tst_DevicePath::a_midi_message_reaches_the_paddle_without_allocating_data()
{
    QTest::addColumn<bool>("fourteenBits");
    QTest::addRow("7 bits") << false;
    QTest::addRow("14 bits") << true;
}

void tst_DevicePath::a_midi_message_reaches_the_paddle_without_allocating()
{
    QFETCH(bool, fourteenBits);
    PlayerStage stage({u"First"_s}, 0,
        {{u"CC_00"_s, u"176"_s}, {u"CC_01"_s, u"7"_s}, {u"Start_00"_s, u"144"_s},
            {u"Start_01"_s, u"60"_s}});
    stage.open();
    stage.players[0].bits->setChecked(fourteenBits);
    stage.receive(0, 176, 7, 64);
    const long before = allocations();
    for (int value = 0; value < 128; ++value) {
        stage.receive(0, 176, 7, value);
        stage.receive(0, 144, 60, value);
        stage.receive(1, 144, 60, value);
    }
    const long taken = allocations() - before;
    QCOMPARE(taken, 0L);
    QCOMPARE(stage.step(0), fourteenBits ? 7 - 64 : 63);
    QCOMPARE(stage.takeStart(), std::optional(0));
}

void tst_DevicePath::a_queued_midi_message_allocates_nothing_beyond_qt()
{
    PlayerStage stage({u"First"_s}, 0,
        {{u"ControlModeLeft"_s, u"MIDI"_s}, {u"CC_00"_s, u"176"_s}, {u"CC_01"_s, u"7"_s}});
    stage.open();
    stage.players[0].midiList->setCurrentIndex(1);
    for (const int value : {0, 127}) { // the first is to warm up
        QCoreApplication::processEvents();
        QCOMPARE(stage.midi.send(0, DWORD(176 | 7 << 8 | value << 16)), 1);
        const long taken = takenByQueuedCalls(stage.widget());
        QCOMPARE(stage.step(0), value - 64);
        if (value == 127)
            QCOMPARE(taken, takenByQt(stage.widget()));
    }
}

void tst_DevicePath::queued_pad_signals_allocate_nothing_beyond_qt()
{
    PlayerStage stage({}, 1);
    UnseenPoll poll(stage);
    stage.open();
    for (const PlayerStage::Player &player : stage.players)
        player.xboxList->setCurrentIndex(1);
    stage.pads.pads[0].thumbLX = -32768;
    stage.poll(0);
    QCOMPARE(stage.step(0), -64);
    poll.pushAndPress();
    const long taken = takenByQueuedCalls(stage.controls());
    QCOMPARE(stage.step(0), 63);
    QCOMPARE(stage.step(1), 63);
    QCOMPARE(stage.takeStart(), std::optional(0));
    QCOMPARE(taken, 2 * takenByQt(stage.controls())); // the button and the stick
}

QTEST_MAIN(tst_DevicePath)

#include "tst_devicepath.moc"
