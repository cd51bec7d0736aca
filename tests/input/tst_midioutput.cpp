#include "fakemidi.h"
#include "mididevices.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_MidiOutput : public QObject
{
    Q_OBJECT

private slots:
    void a_new_output_is_closed();
    void outputs_have_their_names_in_the_order_of_the_system();
    void an_output_whose_name_cannot_be_read_has_none();
    void an_output_opens_by_number_without_a_callback();
    void a_failed_open_is_returned_and_touches_nothing();
    void a_name_opens_the_first_output_that_has_exactly_it();
    void closing_forgets_the_device_but_not_its_handle();
    void an_output_is_forgotten_before_it_is_closed();
    void a_short_message_is_packed_with_the_status_lowest();
};

void tst_MidiOutput::a_new_output_is_closed()
{
    const MidiDevOut output;
    QVERIFY(!output.getHandle());
    QCOMPARE(output.getDeviceIndex(), -1);
    QCOMPARE(output.getDeviceName(), QString());
}

void tst_MidiOutput::outputs_have_their_names_in_the_order_of_the_system()
{
    const FakeMidi system({u"Fader"_s}, {u"Synth"_s, u"Flügel"_s});
    QCOMPARE(MidiDevOut::deviceCount(), 2U);
    QCOMPARE(MidiDevOut::deviceNameAt(0), u"Synth"_s);
    QCOMPARE(MidiDevOut::deviceNameAt(1), u"Flügel"_s);
    QCOMPARE(MidiDevOut::deviceNameAt(2), QString());
    QCOMPARE(MidiDevOut::deviceNameAt(-1), QString());
}

void tst_MidiOutput::an_output_whose_name_cannot_be_read_has_none()
{
    FakeMidi system({}, {u"Synth"_s});
    system.outputs[0].capsResult = MMSYSERR_NODRIVER;
    QCOMPARE(MidiDevOut::deviceNameAt(0), QString());
}

void tst_MidiOutput::an_output_opens_by_number_without_a_callback()
{
    FakeMidi system({}, {u"Synth"_s, u"Lights"_s});
    MidiDevOut output;
    QCOMPARE(output.open(1), 0U);
    QCOMPARE(system.takeDeviceCalls(), QStringList{u"midiOutOpen 1"_s});
    QCOMPARE(output.getHandle(), system.openOutputs.first().handle);
    QCOMPARE(output.getDeviceIndex(), 1);
    QCOMPARE(output.getDeviceName(), u"Lights"_s);
}

void tst_MidiOutput::a_failed_open_is_returned_and_touches_nothing()
{
    FakeMidi system({}, {u"Synth"_s});
    system.outputs[0].openResult = MMSYSERR_ALLOCATED;
    MidiDevOut output;
    QCOMPARE(output.open(0), unsigned(MMSYSERR_ALLOCATED));
    QCOMPARE(output.open(1), unsigned(MMSYSERR_BADDEVICEID));
    QVERIFY(!output.getHandle());
    QCOMPARE(output.getDeviceIndex(), -1);
}

void tst_MidiOutput::a_name_opens_the_first_output_that_has_exactly_it()
{
    FakeMidi system({}, {u"Synth"_s, u"Lights"_s, u"Lights"_s});
    MidiDevOut output;
    QCOMPARE(output.open(u"lights"_s), 0U);
    QCOMPARE(output.getDeviceIndex(), -1);
    QCOMPARE(system.takeDeviceCalls(), QStringList());
    QCOMPARE(output.open(u"Lights"_s), 0U);
    QCOMPARE(output.getDeviceIndex(), 1);
    QCOMPARE(system.takeDeviceCalls(), QStringList{u"midiOutOpen 1"_s});
    QCOMPARE(output.open(u"Synth"_s), 0U);
    QCOMPARE(output.getDeviceIndex(), 0);
}

void tst_MidiOutput::closing_forgets_the_device_but_not_its_handle()
{
    FakeMidi system({}, {u"Synth"_s});
    MidiDevOut output;
    output.open(0);
    HMIDIOUT handle = output.getHandle();
    system.takeCalls();
    QCOMPARE(output.close(), 0U);
    QCOMPARE(system.takeCalls(), QStringList{u"midiOutClose 0"_s});
    QCOMPARE(output.getDeviceIndex(), -1);
    QCOMPARE(output.getDeviceName(), QString());
    QCOMPARE(output.getHandle(), handle);
    QCOMPARE(output.close(), unsigned(MMSYSERR_INVALHANDLE));
}

void tst_MidiOutput::an_output_is_forgotten_before_it_is_closed()
{
    FakeMidi system({}, {u"Synth"_s});
    MidiDevOut output;
    output.open(0);
    QStringList calls;
    system.onCall = [&](const QString &call) {
        calls.append(call);
        QCOMPARE(output.getDeviceIndex(), -1);
        QCOMPARE(output.getDeviceName(), QString());
    };
    output.close();
    QCOMPARE(calls, QStringList{u"midiOutClose 0"_s});
}

void tst_MidiOutput::a_short_message_is_packed_with_the_status_lowest()
{
    FakeMidi system({}, {u"Synth"_s});
    MidiDevOut output;
    QCOMPARE(output.sendShortMessage(0xB2, 7, 100), unsigned(MMSYSERR_INVALHANDLE));
    output.open(0);
    system.takeCalls();
    QCOMPARE(output.sendShortMessage(0xB2, 7, 100), 0U);
    QCOMPARE(output.sendShortMessage(0xFF, 0xFF, 0xFF), 0U);
    QCOMPARE(system.takeCalls(),
        (QStringList{u"midiOutShortMsg 0 6407b2"_s, u"midiOutShortMsg 0 ffffff"_s}));
}

QTEST_APPLESS_MAIN(tst_MidiOutput)

#include "tst_midioutput.moc"
