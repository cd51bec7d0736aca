#include "fakemidi.h"
#include "mididevices.h"

#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

constexpr DWORD controlChange = 0x6407B2; // channel 3, controller 7, value 100

struct Message
{
    int play;
    int data1;
    int data2;
    int data3;
    bool operator==(const Message &) const = default;
};

/// Collects the messages of both players' devices in the GUI thread, with the thread that emitted
/// them.
class Receiver : public QObject
{
public:
    Receiver()
    {
        for (MidiDevIn *device : {&midiInLeft, &midiInRight}) {
            connect(device, &MidiDevIn::midiReceived, this,
                [this](int play, unsigned char data1, unsigned char data2, unsigned char data3) {
                    QCOMPARE(QThread::currentThread(), QObject::thread());
                    messages.append({play, data1, data2, data3});
                });
            connect(
                device, &MidiDevIn::midiReceived, this,
                [this] { emittedOn = QThread::currentThread(); }, Qt::DirectConnection);
        }
    }

    /// Delivers queued messages and returns all those received since the last take.
    QList<Message> take()
    {
        QCoreApplication::sendPostedEvents(this);
        return std::exchange(messages, {});
    }

    QList<Message> messages;
    QThread *emittedOn = nullptr;
};

/// Opens and starts device `index`, and closes the device at the end of the scope.
class Running
{
public:
    Running(MidiDevIn &device, unsigned index)
        : works(device.open(index, nullptr) == 0 && device.start() == 0)
        , m_device(device)
    {
    }
    ~Running() { m_device.close(); }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

    const bool works;

private:
    MidiDevIn &m_device;
};

} // namespace

class tst_MidiMessages : public QObject
{
    Q_OBJECT

private slots:
    void a_message_is_emitted_on_the_systems_thread_and_arrives_in_the_gui_thread();
    void each_device_names_its_side();
    void a_short_message_of_any_kind_passes_unchanged_data();
    void a_short_message_of_any_kind_passes_unchanged();
    void every_word_arrives_as_its_three_bytes();
    void messages_other_than_short_ones_are_ignored_data();
    void messages_other_than_short_ones_are_ignored();
    void messages_flow_between_start_and_stop_only();
    void a_second_open_leaves_the_first_device_open_and_silent();
    void a_handle_that_neither_device_holds_is_dropped();
    void a_handle_that_both_devices_hold_is_the_left_ones();
};

void tst_MidiMessages::a_message_is_emitted_on_the_systems_thread_and_arrives_in_the_gui_thread()
{
    FakeMidi system({u"Fader"_s});
    const Running left(midiInLeft, 0);
    Receiver receiver;
    QCOMPARE(system.send(0, controlChange), 1);
    QVERIFY(receiver.emittedOn != QThread::currentThread());
    QVERIFY(receiver.messages.isEmpty());
    QCOMPARE(receiver.take(), (QList<Message>{{0, 178, 7, 100}}));
}

void tst_MidiMessages::each_device_names_its_side()
{
    FakeMidi system({u"Fader"_s, u"Pads"_s});
    const Running left(midiInLeft, 1);
    const Running right(midiInRight, 0);
    Receiver receiver;
    system.send(0, 0x010203);
    system.send(1, 0x040506);
    QCOMPARE(receiver.take(), (QList<Message>{{1, 3, 2, 1}, {0, 6, 5, 4}}));
}

void tst_MidiMessages::a_short_message_of_any_kind_passes_unchanged_data()
{
    QTest::addColumn<unsigned>("word");
    QTest::addRow("note off") << 0x403C80U;
    QTest::addRow("note on") << 0x7F3C9FU;
    QTest::addRow("control change") << 0x6407B2U;
    QTest::addRow("program change") << 0x05C0U;
    QTest::addRow("pitch bend") << 0x4000E3U;
    QTest::addRow("song position") << 0x1234F2U;
    QTest::addRow("clock") << 0xF8U;
    QTest::addRow("active sensing") << 0xFEU;
    QTest::addRow("reset") << 0xFFU;
    QTest::addRow("no status at all") << 0x7F7F7FU;
    QTest::addRow("nothing") << 0U;
}

void tst_MidiMessages::a_short_message_of_any_kind_passes_unchanged()
{
    QFETCH(unsigned, word);
    FakeMidi system({u"Fader"_s});
    const Running right(midiInRight, 0);
    Receiver receiver;
    system.send(0, word);
    const auto byte = [word](int shift) { return static_cast<int>(word >> shift & 0xFF); };
    QCOMPARE(receiver.take(), (QList<Message>{{1, byte(0), byte(8), byte(16)}}));
}

void tst_MidiMessages::every_word_arrives_as_its_three_bytes()
{
    FakeMidi system({u"Fader"_s});
    const Running right(midiInRight, 0);
    unsigned word = 0;
    unsigned arrived = 0;
    const QObject context;
    connect(&midiInRight, &MidiDevIn::midiReceived, &context,
        [&](int play, unsigned char data1, unsigned char data2, unsigned char data3) {
            arrived += play == 1 && (data1 | unsigned{data2} << 8 | unsigned{data3} << 16) == word;
        });
    for (const unsigned value : {0x00U, 0x40U, 0x7FU, 0x80U, 0xFFU}) {
        for (unsigned low = 0; low <= 0xFFFF; ++low) {
            word = value << 16 | low;
            midiInCallback(midiInRight.getHandle(), MIM_DATA, 0, word | 0xAB000000U, 0);
        }
    }
    QCOMPARE(arrived, 5U * 0x10000);
}

void tst_MidiMessages::messages_other_than_short_ones_are_ignored_data()
{
    QTest::addColumn<unsigned>("message");
    QTest::addRow("opened") << unsigned(MIM_OPEN);
    QTest::addRow("closed") << unsigned(MIM_CLOSE);
    QTest::addRow("system exclusive") << unsigned(MIM_LONGDATA);
    QTest::addRow("error") << unsigned(MIM_ERROR);
    QTest::addRow("error in system exclusive") << unsigned(MIM_LONGERROR);
    QTest::addRow("more data") << unsigned(MIM_MOREDATA);
    QTest::addRow("nothing") << 0U;
    QTest::addRow("an unknown message") << 0xFFFFFFFFU;
}

void tst_MidiMessages::messages_other_than_short_ones_are_ignored()
{
    QFETCH(unsigned, message);
    FakeMidi system({u"Fader"_s});
    const Running left(midiInLeft, 0);
    Receiver receiver;
    QCOMPARE(system.callBack(0, message, controlChange), 1);
    QVERIFY(receiver.take().isEmpty());
    QVERIFY(!receiver.emittedOn);
}

void tst_MidiMessages::messages_flow_between_start_and_stop_only()
{
    FakeMidi system({u"Fader"_s});
    Receiver receiver;
    midiInLeft.open(0, nullptr);
    QCOMPARE(system.send(0, controlChange), 0);
    midiInLeft.start();
    QCOMPARE(system.send(0, controlChange), 1);
    midiInLeft.stop();
    QCOMPARE(system.send(0, controlChange), 0);
    midiInLeft.close();
    QCOMPARE(receiver.take().size(), 1);
}

void tst_MidiMessages::a_second_open_leaves_the_first_device_open_and_silent()
{
    FakeMidi system({u"Fader"_s, u"Pads"_s});
    const Running first(midiInLeft, 0);
    const Running second(midiInLeft, 1);
    QVERIFY(first.works && second.works);
    QCOMPARE(system.takeDeviceCalls(),
        (QStringList{
            u"midiInOpen 0"_s, u"midiInStart 0"_s, u"midiInOpen 1"_s, u"midiInStart 1"_s}));
    Receiver receiver;
    QCOMPARE(system.send(0, controlChange), 1);
    QVERIFY(receiver.take().isEmpty());
    QCOMPARE(system.send(1, controlChange), 1);
    QCOMPARE(receiver.take().size(), 1);
}

void tst_MidiMessages::a_handle_that_neither_device_holds_is_dropped()
{
    FakeMidi system({u"Fader"_s, u"Pads"_s, u"Keys"_s});
    const Running left(midiInLeft, 0);
    const Running right(midiInRight, 1);
    MidiDevIn other;
    const Running third(other, 2);
    Receiver receiver;
    bool received = false;
    connect(&other, &MidiDevIn::midiReceived, this, [&] { received = true; });
    QCOMPARE(system.send(2, controlChange, FakeMidi::Thread::Caller), 1);
    QVERIFY(receiver.take().isEmpty());
    QVERIFY(!received);
}

void tst_MidiMessages::a_handle_that_both_devices_hold_is_the_left_ones()
{
    FakeMidi system({u"Fader"_s});
    midiInLeft.open(0, nullptr);
    midiInLeft.close();
    system.nextInputHandle = midiInLeft.getHandle();
    const Running right(midiInRight, 0);
    QCOMPARE(midiInRight.getHandle(), midiInLeft.getHandle());
    Receiver receiver;
    system.send(0, controlChange);
    QCOMPARE(receiver.take(), (QList<Message>{{0, 178, 7, 100}}));
}

QTEST_GUILESS_MAIN(tst_MidiMessages)

#include "tst_midimessages.moc"
