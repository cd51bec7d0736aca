#include "fakemidi.h"
#include "mididevices.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>

using namespace Qt::StringLiterals;

class tst_MidiDevices : public QObject
{
    Q_OBJECT

private slots:
    void a_device_is_a_midi_with_its_three_signals();
    void midi_is_a_separate_empty_class();
    void a_new_device_is_closed();
    void the_players_devices_are_there_before_main();
    void there_are_three_spare_bytes_and_larger_numbers_use_the_last();

    void without_devices_there_is_no_name();
    void devices_have_their_names_in_the_order_of_the_system();
    void an_invalid_device_number_has_no_name();
    void a_device_whose_name_cannot_be_read_has_none();
    void a_device_opens_with_the_callback_and_the_instance();
    void a_failed_open_is_returned_and_touches_nothing_data();
    void a_failed_open_is_returned_and_touches_nothing();
    void a_name_opens_the_first_device_that_has_exactly_it_data();
    void a_name_opens_the_first_device_that_has_exactly_it();
    void the_result_of_starting_is_returned();
    void closing_forgets_the_device_but_not_its_handle();
    void a_device_is_forgotten_before_it_is_closed();
    void stopping_and_closing_what_is_not_open_is_harmless();
    void a_vanished_device_is_stopped_and_closed_all_the_same();

    void a_devices_own_thread_ends_with_it();
    void destruction_is_signalled_and_leaves_the_device_open();
};

void tst_MidiDevices::a_device_is_a_midi_with_its_three_signals()
{
    const MidiDevIn input;
    const MidiDevOut output;
    QVERIFY(input.inherits("midi"));
    QVERIFY(output.inherits("midi"));
    QVERIFY(!input.parent());
    const QMetaObject *meta = input.metaObject();
    const QList<QByteArray> expected = {
        "midiReceived(int,uchar,uchar,uchar)", "startMonitoring()", "killThread()"};
    QCOMPARE(meta->methodCount() - meta->methodOffset(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const QMetaMethod method = meta->method(meta->methodOffset() + i);
        QCOMPARE(method.methodSignature(), expected[i]);
        QCOMPARE(method.methodType(), QMetaMethod::Signal);
    }
    QCOMPARE(output.metaObject()->methodCount(), output.metaObject()->methodOffset());
}

void tst_MidiDevices::midi_is_a_separate_empty_class()
{
    const midi base;
    const QMetaObject *meta = base.metaObject();
    QCOMPARE(meta->className(), "midi");
    QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta->methodCount(), meta->methodOffset());
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
    for (const QMetaObject &device : {MidiDevIn::staticMetaObject, MidiDevOut::staticMetaObject})
        QCOMPARE(device.superClass(), meta);
}

void tst_MidiDevices::a_new_device_is_closed()
{
    const MidiDevIn input;
    QVERIFY(!input.getHandle());
    QCOMPARE(input.getDeviceIndex(), -1);
    QCOMPARE(input.getDeviceName(), QString());
    for (unsigned i = 0; i < 3; ++i)
        QCOMPARE(int(input.byteAt(i)), 0);
}

void tst_MidiDevices::the_players_devices_are_there_before_main()
{
    for (const MidiDevIn *device : {&midiInLeft, &midiInRight}) {
        QCOMPARE(device->QObject::thread(), qApp->thread());
        QCOMPARE(device->getDeviceIndex(), -1);
    }
}

void tst_MidiDevices::there_are_three_spare_bytes_and_larger_numbers_use_the_last()
{
    MidiDevIn device;
    for (unsigned i = 0; i < 3; ++i)
        device.setByteAt(i, static_cast<unsigned char>(10 + i));
    for (unsigned i = 0; i < 3; ++i)
        QCOMPARE(unsigned(device.byteAt(i)), 10 + i);
    QCOMPARE(int(device.byteAt(3)), 12);
    QCOMPARE(int(device.byteAt(0xFFFFFFFF)), 12);
    device.setByteAt(3, 200);
    QCOMPARE(int(device.byteAt(2)), 200);
    device.setByteAt(0xFFFFFFFF, 255);
    QCOMPARE(int(device.byteAt(2)), 255);
    QCOMPARE(int(device.byteAt(1)), 11);
}

void tst_MidiDevices::without_devices_there_is_no_name()
{
    const FakeMidi system;
    QCOMPARE(MidiDevIn::deviceCount(), 0U);
    QCOMPARE(MidiDevIn::deviceNameAt(0), QString());
}

void tst_MidiDevices::devices_have_their_names_in_the_order_of_the_system()
{
    const QString longest = u"a name of thirty-one bytes, so."_s;
    const FakeMidi system({u"Fader"_s, u"Fader"_s, u"Flügel ♪"_s, longest + u"cut"_s});
    QCOMPARE(MidiDevIn::deviceCount(), 4U);
    QCOMPARE(MidiDevIn::deviceNameAt(0), u"Fader"_s);
    QCOMPARE(MidiDevIn::deviceNameAt(1), u"Fader"_s);
    QCOMPARE(MidiDevIn::deviceNameAt(2), u"Flügel ♪"_s);
    QCOMPARE(MidiDevIn::deviceNameAt(3), longest);
}

void tst_MidiDevices::an_invalid_device_number_has_no_name()
{
    const FakeMidi system({u"Fader"_s});
    for (const int index :
        {-1, 1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QCOMPARE(MidiDevIn::deviceNameAt(index), QString());
}

void tst_MidiDevices::a_device_whose_name_cannot_be_read_has_none()
{
    FakeMidi system({u"Fader"_s});
    system.inputs[0].capsResult = MMSYSERR_NODRIVER;
    QCOMPARE(MidiDevIn::deviceNameAt(0), QString());
}

void tst_MidiDevices::a_device_opens_with_the_callback_and_the_instance()
{
    FakeMidi system({u"Fader"_s, u"Pads"_s});
    MidiDevIn device;
    int instance = 0;
    QCOMPARE(device.open(1, &instance), 0U);
    QCOMPARE(system.takeDeviceCalls(), QStringList{u"midiInOpen 1"_s});
    QCOMPARE(system.openInputs.first().callback, reinterpret_cast<DWORD_PTR>(&midiInCallback));
    QCOMPARE(system.instances, QList{reinterpret_cast<DWORD_PTR>(&instance)});
    QCOMPARE(device.getHandle(), system.openInputs.first().handle);
    QCOMPARE(device.getDeviceIndex(), 1);
    QCOMPARE(device.getDeviceName(), u"Pads"_s);
}

void tst_MidiDevices::a_failed_open_is_returned_and_touches_nothing_data()
{
    QTest::addColumn<unsigned>("index");
    QTest::addColumn<unsigned>("result");
    QTest::addRow("in use by another program") << 1U << unsigned(MMSYSERR_ALLOCATED);
    QTest::addRow("no such device") << 2U << unsigned(MMSYSERR_BADDEVICEID);
    QTest::addRow("a number far out of range") << 0xFFFFFFFF << unsigned(MMSYSERR_BADDEVICEID);
}

void tst_MidiDevices::a_failed_open_is_returned_and_touches_nothing()
{
    QFETCH(unsigned, index);
    QFETCH(unsigned, result);
    FakeMidi system({u"Fader"_s, u"Pads"_s});
    system.inputs[1].openResult = MMSYSERR_ALLOCATED;
    MidiDevIn device;
    QCOMPARE(device.open(index, nullptr), result);
    QVERIFY(!device.getHandle());
    QCOMPARE(device.getDeviceIndex(), -1);
    QCOMPARE(device.getDeviceName(), QString());

    QCOMPARE(device.open(0, nullptr), 0U);
    HMIDIIN handle = device.getHandle();
    QCOMPARE(device.open(index, nullptr), result);
    QCOMPARE(device.getHandle(), handle);
    QCOMPARE(device.getDeviceIndex(), 0);
    QCOMPARE(device.getDeviceName(), u"Fader"_s);
}

void tst_MidiDevices::a_name_opens_the_first_device_that_has_exactly_it_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("index");
    QTest::addRow("the first") << u"Fader"_s << 0;
    QTest::addRow("the first of two") << u"Pads"_s << 1;
    QTest::addRow("the last") << u"Flügel"_s << 3;
    QTest::addRow("in another case") << u"pads"_s << -1;
    QTest::addRow("longer") << u"Pads "_s << -1;
    QTest::addRow("shorter") << u"Pad"_s << -1;
    QTest::addRow("no name") << QString() << -1;
}

void tst_MidiDevices::a_name_opens_the_first_device_that_has_exactly_it()
{
    QFETCH(QString, name);
    QFETCH(int, index);
    FakeMidi system({u"Fader"_s, u"Pads"_s, u"Pads"_s, u"Flügel"_s});
    MidiDevIn device;
    QCOMPARE(device.open(name, nullptr), 0U);
    QCOMPARE(device.getDeviceIndex(), index);
    QCOMPARE(device.getDeviceName(), index < 0 ? QString() : name);
    QCOMPARE(system.takeDeviceCalls(),
        index < 0 ? QStringList() : QStringList{u"midiInOpen %1"_s.arg(index)});
}

void tst_MidiDevices::the_result_of_starting_is_returned()
{
    FakeMidi system({u"Fader"_s});
    MidiDevIn device;
    QCOMPARE(device.start(), unsigned(MMSYSERR_INVALHANDLE));
    device.open(0, nullptr);
    system.inputs[0].startResult = MMSYSERR_NOMEM;
    QCOMPARE(device.start(), unsigned(MMSYSERR_NOMEM));
    system.inputs[0].startResult = MMSYSERR_NOERROR;
    QCOMPARE(device.start(), 0U);
}

void tst_MidiDevices::closing_forgets_the_device_but_not_its_handle()
{
    FakeMidi system({u"Fader"_s});
    MidiDevIn device;
    device.open(0, nullptr);
    HMIDIIN handle = device.getHandle();
    system.takeCalls();
    device.stop();
    QCOMPARE(device.close(), 0U);
    QCOMPARE(system.takeCalls(), (QStringList{u"midiInStop 0"_s, u"midiInClose 0"_s}));
    QCOMPARE(device.getDeviceIndex(), -1);
    QCOMPARE(device.getDeviceName(), QString());
    QCOMPARE(device.getHandle(), handle);
}

void tst_MidiDevices::a_device_is_forgotten_before_it_is_closed()
{
    FakeMidi system({u"Fader"_s});
    MidiDevIn device;
    device.open(0, nullptr);
    QStringList calls;
    system.onCall = [&](const QString &call) {
        calls.append(call);
        QCOMPARE(device.getDeviceIndex(), -1);
        QCOMPARE(device.getDeviceName(), QString());
    };
    device.close();
    QCOMPARE(calls, QStringList{u"midiInClose 0"_s});
}

void tst_MidiDevices::stopping_and_closing_what_is_not_open_is_harmless()
{
    FakeMidi system({u"Fader"_s});
    MidiDevIn device;
    for (const bool everOpened : {false, true}) {
        if (everOpened) {
            device.open(0, nullptr);
            device.close();
        }
        system.takeCalls();
        device.stop();
        QCOMPARE(device.close(), unsigned(MMSYSERR_INVALHANDLE));
        QCOMPARE(
            system.takeCalls(), (QStringList{u"midiInStop invalid"_s, u"midiInClose invalid"_s}));
        QCOMPARE(device.getDeviceIndex(), -1);
    }
}

void tst_MidiDevices::a_vanished_device_is_stopped_and_closed_all_the_same()
{
    FakeMidi system({u"Fader"_s});
    MidiDevIn device;
    device.open(0, nullptr);
    device.start();
    system.unplugInput(0);
    QCOMPARE(MidiDevIn::deviceCount(), 0U);
    device.stop();
    QCOMPARE(device.close(), unsigned(MMSYSERR_NODRIVER));
    QCOMPARE(device.getDeviceIndex(), -1);
    QVERIFY(system.openInputs.isEmpty());
}

void tst_MidiDevices::a_devices_own_thread_ends_with_it()
{
    FakeMidi system({u"Fader"_s});
    auto device = std::make_unique<MidiDevIn>();
    device->startThread();
    QThread *worker = device->QObject::thread();
    QVERIFY(worker != QThread::currentThread());
    QVERIFY(worker->isRunning());
    device->startThread();
    QCOMPARE(device->QObject::thread(), worker);
    QCOMPARE(device->open(0, nullptr), 0U);
    QCOMPARE(device->start(), 0U);
    const auto finished = std::make_shared<std::atomic<bool>>(false);
    // Once it has done something, its signal that it starts no longer looks for connections.
    QMetaObject::invokeMethod(
        device.get(), [] {}, Qt::BlockingQueuedConnection);
    connect(
        worker, &QThread::finished, this, [finished] { *finished = true; }, Qt::DirectConnection);
    device.reset();
    QVERIFY(*finished);
}

void tst_MidiDevices::destruction_is_signalled_and_leaves_the_device_open()
{
    FakeMidi system({u"Fader"_s});
    bool announced = false;
    {
        MidiDevIn device;
        connect(&device, &MidiDevIn::killThread, this, [&] { announced = true; });
        device.open(0, nullptr);
        device.start();
        system.takeCalls();
    }
    QVERIFY(announced);
    QCOMPARE(system.takeCalls(), QStringList());
    QCOMPARE(system.openInputs.size(), 1);
}

QTEST_GUILESS_MAIN(tst_MidiDevices)

#include "tst_mididevices.moc"
