#include "controlnames.h"
#include "cxboxcontroller.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_ControlNames : public QObject
{
    Q_OBJECT

private slots:
    void a_midi_message_is_named_by_its_kind_number_and_channel_data();
    void a_midi_message_is_named_by_its_kind_number_and_channel();
    void a_button_is_named_as_on_the_pad_data();
    void a_button_is_named_as_on_the_pad();
    void a_stick_is_named_with_its_direction_data();
    void a_stick_is_named_with_its_direction();
    void a_key_is_named_as_on_the_keyboard_data();
    void a_key_is_named_as_on_the_keyboard();
};

void tst_ControlNames::a_midi_message_is_named_by_its_kind_number_and_channel_data()
{
    QTest::addColumn<MidiBinding>("binding");
    QTest::addColumn<QString>("name");
    const auto row = [](unsigned status, unsigned number, const char *name) {
        QTest::addRow("%s", name) << MidiBinding{status, number} << QString::fromLatin1(name);
    };
    row(0x80, 60, "note off 60, channel 1");
    row(0x90, 60, "note 60, channel 1");
    row(0x9F, 0, "note 0, channel 16");
    row(0xA1, 60, "pressure on note 60, channel 2");
    row(0xB2, 7, "control change 7, channel 3");
    row(0xC3, 5, "program change 5, channel 4");
    row(0xD4, 99, "channel pressure, channel 5");
    row(0xE1, 0, "pitch bend, channel 2");
    row(0xEF, 127, "pitch bend, channel 16");
    row(0xF1, 0, "time code");
    row(0xF2, 0, "song position");
    row(0xF3, 0, "song select");
    row(0xF6, 0, "tune request");
    row(0xF8, 0, "clock");
    row(0xFA, 0, "start");
    row(0xFB, 0, "continue");
    row(0xFC, 0, "stop");
    row(0xFE, 0, "active sensing");
    row(0xFF, 0, "reset");
    row(0xF0, 1, "MIDI message 240, 1");
    row(0x7F, 3, "MIDI message 127, 3");
    row(0x190, 60, "MIDI message 400, 60");
    row(0xB0, 4294967295, "control change 4294967295, channel 1");
    row(4294967295, 4294967295, "MIDI message 4294967295, 4294967295");
}

void tst_ControlNames::a_midi_message_is_named_by_its_kind_number_and_channel()
{
    QFETCH(MidiBinding, binding);
    QFETCH(QString, name);
    QCOMPARE(controlnames::midi(binding), name);
}

void tst_ControlNames::a_button_is_named_as_on_the_pad_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("name");
    const auto row = [](int button, const char *name) {
        QTest::addRow("%s", name) << button << QString::fromLatin1(name);
    };
    row(CXBOXController::ButtonA, "button A");
    row(CXBOXController::ButtonB, "button B");
    row(CXBOXController::ButtonX, "button X");
    row(CXBOXController::ButtonY, "button Y");
    row(CXBOXController::ButtonStart, "button Start");
    row(CXBOXController::ButtonBack, "button Back");
    row(CXBOXController::DPadUp, "directional pad, up");
    row(CXBOXController::DPadDown, "directional pad, down");
    row(CXBOXController::DPadLeft, "directional pad, left");
    row(CXBOXController::DPadRight, "directional pad, right");
    row(CXBOXController::LeftTrigger, "left trigger");
    row(CXBOXController::RightTrigger, "right trigger");
    row(CXBOXController::LeftThumb, "left stick, pressed");
    row(CXBOXController::RightThumb, "right stick, pressed");
    row(CXBOXController::LeftShoulder, "left shoulder");
    row(CXBOXController::RightShoulder, "right shoulder");
    row(16, "button 16");
    row(-1, "button -1");
}

void tst_ControlNames::a_button_is_named_as_on_the_pad()
{
    QFETCH(int, button);
    QFETCH(QString, name);
    QCOMPARE(controlnames::padButton(button), name);
}

void tst_ControlNames::a_stick_is_named_with_its_direction_data()
{
    QTest::addColumn<int>("control");
    QTest::addColumn<QString>("name");
    const auto row = [](int control, const char *name) {
        QTest::addRow("%s", name) << control << QString::fromLatin1(name);
    };
    row(CXBOXController::ThumbLX, "left stick, horizontal");
    row(CXBOXController::ThumbLY, "left stick, vertical");
    row(CXBOXController::ThumbRX, "right stick, horizontal");
    row(CXBOXController::ThumbRY, "right stick, vertical");
    row(4, "stick 4");
    row(-2147483647 - 1, "stick -2147483648");
}

void tst_ControlNames::a_stick_is_named_with_its_direction()
{
    QFETCH(int, control);
    QFETCH(QString, name);
    QCOMPARE(controlnames::padStick(control), name);
}

void tst_ControlNames::a_key_is_named_as_on_the_keyboard_data()
{
    QTest::addColumn<uint>("key");
    QTest::addColumn<QString>("name");
    const auto row = [](uint key, const QString &name) {
        QTest::addRow("%s", qPrintable(name)) << key << u"key "_s + name;
    };
    row(Qt::Key_W, u"W"_s);
    row(Qt::Key_1, u"1"_s);
    row(Qt::Key_Udiaeresis, u"\u00DC"_s);
    row(0x1F600, u"\U0001F600"_s);
    row(Qt::Key_Space, u"Space"_s);
    row(Qt::Key_Up, u"Up"_s);
    row(Qt::Key_Return, u"Return"_s);
    row(Qt::Key_F5, u"F5"_s);
    row(Qt::Key_Shift, u"Shift"_s);
    row(Qt::Key_Control, u"Control"_s);
    row(Qt::Key_Alt, u"Alt"_s);
    row(Qt::Key_AltGr, u"AltGr"_s);
    row(Qt::Key_PageUp, u"PageUp"_s);
    row(Qt::Key_VolumeUp, u"VolumeUp"_s);
    // Numbers that are not keys are shown as numbers.
    row(7, u"7"_s);
    row(0xE000, u"57344"_s);
    row(0xD800, u"55296"_s);
    row(0x200000, u"2097152"_s);
    row(0x01FFFFF0, u"33554416"_s);
    row(0x02000057, u"33554519"_s);
    row(0xFFFFFFFF, u"4294967295"_s);
}

void tst_ControlNames::a_key_is_named_as_on_the_keyboard()
{
    QFETCH(uint, key);
    QFETCH(QString, name);
    QCOMPARE(controlnames::key(key), name);
}

QTEST_GUILESS_MAIN(tst_ControlNames)

#include "tst_controlnames.moc"
