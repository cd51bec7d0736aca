#include "midiconnection.h"

#include <rtmidi/RtMidi.h>

#include <QScopeGuard>
#include <QTest>

#include <memory>
#include <mutex>

using namespace Qt::StringLiterals;

namespace {

const QString faderName = u"Test fader"_s;

/// Opens a player's device by name and starts it; true once it receives messages from `sender`.
bool receives(MidiDevIn &device, MidiSender &sender, const QString &name)
{
    return device.open(unsigned(inputNamed(name)), nullptr) == 0 && device.start() == 0
        && isConnected(sender, device);
}

using Message = std::array<int, 4>;

/// A MIDI listener independent of the program.
class Listener
{
public:
    explicit Listener(const MidiServer &server)
        : m_port(RtMidi::getCompiledApiByName(server.api.toStdString()), "Test listener")
    {
        m_port.ignoreTypes(false, false, false);
        m_port.setCallback([](double, std::vector<unsigned char> *bytes,
                               void *self) { static_cast<Listener *>(self)->hear(*bytes); },
            this);
    }
    RtMidiIn &port() { return m_port; }
    QList<QByteArray> heard() const
    {
        const std::lock_guard lock(m_mutex);
        return m_heard;
    }

private:
    void hear(const std::vector<unsigned char> &bytes)
    {
        const std::lock_guard lock(m_mutex);
        m_heard.append(QByteArray(
            reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size()))
                           .toHex(' '));
    }

    mutable std::mutex m_mutex;
    QList<QByteArray> m_heard;
    RtMidiIn m_port;
};

} // namespace

class tst_Midi : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_control_change_and_a_note_arrive_as_they_were_played();
    void the_two_players_devices_do_not_interfere();
    void the_clock_passes_and_system_exclusive_does_not();
    void a_device_that_is_not_started_is_silent();
    void a_device_cannot_be_opened_twice();
    void a_handle_ends_with_its_device();
    void a_device_that_vanishes_is_gone_from_the_list_and_can_be_closed();
    void a_name_is_cut_between_its_characters();
    void short_messages_are_sent_with_their_actual_length_data();
    void short_messages_are_sent_with_their_actual_length();

private:
    std::unique_ptr<MidiServer> m_server;
    std::unique_ptr<MidiSender> m_fader;
};

void tst_Midi::initTestCase()
{
    m_server = std::make_unique<MidiServer>();
    if (!m_server->problem.isEmpty())
        QSKIP(qPrintable(m_server->problem));
}

void tst_Midi::init()
{
    m_fader = std::make_unique<MidiSender>(*m_server, faderName);
    QVERIFY(m_fader->isReady());
    QTRY_VERIFY(inputNamed(faderName) >= 0);
}

void tst_Midi::cleanup()
{
    for (MidiDevIn *device : {&midiInLeft, &midiInRight}) {
        device->stop();
        device->close();
    }
    m_fader.reset();
}

void tst_Midi::a_control_change_and_a_note_arrive_as_they_were_played()
{
    QVERIFY(receives(midiInLeft, *m_fader, faderName));
    const MidiInbox inbox(midiInLeft);
    QVERIFY(m_fader->send("B2 07 64"));
    QVERIFY(m_fader->send("90 3C 7F"));
    QTRY_COMPARE(inbox.messages.size(), 2);
    QCOMPARE(inbox.messages[0], (Message{0, 0xB2, 0x07, 0x64}));
    QCOMPARE(inbox.messages[1], (Message{0, 0x90, 0x3C, 0x7F}));
}

void tst_Midi::the_two_players_devices_do_not_interfere()
{
    MidiSender pads(*m_server, u"Test pads"_s);
    QVERIFY(pads.isReady());
    QTRY_VERIFY(inputNamed(u"Test pads"_s) >= 0);
    QVERIFY(receives(midiInLeft, *m_fader, faderName));
    QVERIFY(receives(midiInRight, pads, u"Test pads"_s));
    const MidiInbox left(midiInLeft);
    const MidiInbox right(midiInRight);
    QVERIFY(m_fader->send("B0 01 02"));
    QVERIFY(pads.send("91 03 04"));
    QTRY_COMPARE(left.messages.size(), 1);
    QTRY_COMPARE(right.messages.size(), 1);
    QCOMPARE(left.messages[0], (Message{0, 0xB0, 1, 2}));
    QCOMPARE(right.messages[0], (Message{1, 0x91, 3, 4}));
}

void tst_Midi::the_clock_passes_and_system_exclusive_does_not()
{
    QVERIFY(receives(midiInLeft, *m_fader, faderName));
    const MidiInbox inbox(midiInLeft);
    QVERIFY(m_fader->send("F0 7E 7F 06 01 F7"));
    QVERIFY(m_fader->send("F8"));
    QVERIFY(m_fader->send("C5 09"));
    QVERIFY(m_fader->send("FE"));
    QTRY_COMPARE(inbox.messages.size(), 3);
    QCOMPARE(inbox.messages[0], (Message{0, 0xF8, 0, 0}));
    QCOMPARE(inbox.messages[1], (Message{0, 0xC5, 9, 0}));
    QCOMPARE(inbox.messages[2], (Message{0, 0xFE, 0, 0}));
}

void tst_Midi::a_device_that_is_not_started_is_silent()
{
    Listener witness(*m_server);
    witness.port().openPort(unsigned(inputNamed(faderName)));
    QVERIFY(
        isConnected([&](unsigned char status) { m_fader->send(QByteArray::number(status, 16)); },
            [&](unsigned char status) {
                return witness.heard().contains(QByteArray::number(status, 16));
            }));
    QVERIFY(receives(midiInLeft, *m_fader, faderName));
    QTRY_COMPARE(witness.heard().count("fb"), 2);
    midiInLeft.stop();
    QCoreApplication::processEvents();
    const MidiInbox inbox(midiInLeft);
    // When the witness hears the last message, the first ones have passed the device.
    const auto before = witness.heard().size();
    for (int i = 1; i <= 5; ++i) {
        QVERIFY(m_fader->send("B0 01 02"));
        QTRY_COMPARE(witness.heard().size(), before + i);
    }
    QCoreApplication::processEvents();
    QCOMPARE(inbox.messages.size(), 0);
    midiInLeft.start();
    QVERIFY(m_fader->send("B0 01 03"));
    QTRY_COMPARE(inbox.messages.size(), 1);
    QCOMPARE(inbox.messages[0], (Message{0, 0xB0, 1, 3}));
}

void tst_Midi::a_device_cannot_be_opened_twice()
{
    const auto index = unsigned(inputNamed(faderName));
    QCOMPARE(midiInLeft.open(index, nullptr), 0U);
    QCOMPARE(midiInRight.open(index, nullptr), unsigned(MMSYSERR_ALLOCATED));
    QCOMPARE(midiInLeft.close(), 0U);
    QCOMPARE(midiInRight.open(index, nullptr), 0U);
    QCOMPARE(midiInLeft.open(MidiDevIn::deviceCount(), nullptr), unsigned(MMSYSERR_BADDEVICEID));
}

void tst_Midi::a_handle_ends_with_its_device()
{
    QCOMPARE(midiInLeft.open(unsigned(inputNamed(faderName)), nullptr), 0U);
    HMIDIIN handle = midiInLeft.getHandle();
    QCOMPARE(midiInClose(handle), unsigned(MMSYSERR_NOERROR));
    QCOMPARE(midiInStart(handle), unsigned(MMSYSERR_INVALHANDLE));
    QCOMPARE(midiInStop(handle), unsigned(MMSYSERR_INVALHANDLE));
    QCOMPARE(midiInClose(handle), unsigned(MMSYSERR_INVALHANDLE));
    QCOMPARE(midiInStart(nullptr), unsigned(MMSYSERR_INVALHANDLE));
    QCOMPARE(midiInRight.open(unsigned(inputNamed(faderName)), nullptr), 0U);
    QVERIFY(midiInRight.getHandle() != handle);
}

void tst_Midi::a_device_that_vanishes_is_gone_from_the_list_and_can_be_closed()
{
    QVERIFY(receives(midiInLeft, *m_fader, faderName));
    m_fader->kill();
    QTRY_VERIFY(inputNamed(faderName) < 0);
    midiInLeft.stop();
    QCOMPARE(midiInLeft.close(), 0U);

    m_fader = std::make_unique<MidiSender>(*m_server, faderName);
    QTRY_VERIFY(inputNamed(faderName) >= 0);
    QVERIFY(receives(midiInLeft, *m_fader, faderName));
    const MidiInbox inbox(midiInLeft);
    QVERIFY(m_fader->send("B2 07 64"));
    QTRY_COMPARE(inbox.messages.size(), 1);
}

void tst_Midi::a_name_is_cut_between_its_characters()
{
    // 31 bytes hold 15 and a half of these characters.
    const QString name = u"é"_s.repeated(20);
    const MidiSender sender(*m_server, name);
    QVERIFY(sender.isReady());
    QTRY_VERIFY(inputNamed(u"é"_s.repeated(15)) >= 0);
    const QString cut = MidiDevIn::deviceNameAt(inputNamed(u"é"_s.repeated(15)));
    QCOMPARE(cut, u"é"_s.repeated(15));
}

void tst_Midi::short_messages_are_sent_with_their_actual_length_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addRow("note off") << 0x80 << QByteArray("80 01 02");
    QTest::addRow("control change") << 0xBF << QByteArray("bf 01 02");
    QTest::addRow("program change") << 0xC0 << QByteArray("c0 01");
    QTest::addRow("channel pressure") << 0xDF << QByteArray("df 01");
    QTest::addRow("pitch bend") << 0xE0 << QByteArray("e0 01 02");
    QTest::addRow("song position") << 0xF2 << QByteArray("f2 01 02");
    QTest::addRow("song select") << 0xF3 << QByteArray("f3 01");
    QTest::addRow("clock") << 0xF8 << QByteArray("f8");
    QTest::addRow("data without a status") << 0x7F << QByteArray();
    QTest::addRow("system exclusive") << 0xF0 << QByteArray();
}

void tst_Midi::short_messages_are_sent_with_their_actual_length()
{
    QFETCH(int, status);
    QFETCH(QByteArray, bytes);
    Listener listener(*m_server);
    listener.port().openVirtualPort("Test ear");
    MidiDevOut output;
    const auto outputNamed = [](const QString &name) {
        for (int index = 0; index < int(MidiDevOut::deviceCount()); ++index) {
            if (MidiDevOut::deviceNameAt(index).contains(name))
                return index;
        }
        return -1;
    };
    QTRY_VERIFY(outputNamed(u"Test"_s) >= 0);
    QCOMPARE(output.open(unsigned(outputNamed(u"Test"_s))), 0U);
    const auto close = qScopeGuard([&] { output.close(); });
    QVERIFY(isConnected([&](unsigned char warmUp) { output.sendShortMessage(warmUp, 0, 0); },
        [&](unsigned char warmUp) {
            return listener.heard().contains(QByteArray::number(warmUp, 16));
        }));
    const auto before = listener.heard().size();
    QCOMPARE(output.sendShortMessage(static_cast<unsigned char>(status), 1, 2),
        bytes.isEmpty() ? unsigned(MMSYSERR_INVALPARAM) : unsigned(MMSYSERR_NOERROR));
    QCOMPARE(output.sendShortMessage(0x90, 3, 4), unsigned(MMSYSERR_NOERROR));
    const QList<QByteArray> last = {"90 03 04"};
    QTRY_COMPARE(listener.heard().mid(before), bytes.isEmpty() ? last : QList{bytes} + last);
    QCOMPARE(output.close(), unsigned(MMSYSERR_NOERROR));
    QCOMPARE(output.close(), unsigned(MMSYSERR_INVALHANDLE));
}

QTEST_GUILESS_MAIN(tst_Midi)

#include "tst_midi.moc"
