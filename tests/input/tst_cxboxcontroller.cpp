#include "cxboxcontroller.h"
#include "fakepads.h"

#include <QMetaEnum>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

using Pad = FakePads::Pad;

/// A poller on its worker thread, with its reports in order: "ButtonA 1", "ThumbLX 3000".
class Polled
{
public:
    explicit Polled(unsigned playerNumber = 1)
        : controller(playerNumber)
    {
        QObject::connect(
            &controller, &CXBOXController::buttonXbox, &controller,
            [this](CXBOXController::buttonList index, bool pressed) {
                m_reports.append(u"%1 %2"_s.arg(name(index)).arg(pressed));
            },
            Qt::DirectConnection);
        QObject::connect(
            &controller, &CXBOXController::controllerXbox, &controller,
            [this](CXBOXController::controllerList index, SHORT val) {
                m_reports.append(u"%1 %2"_s.arg(name(index)).arg(val));
            },
            Qt::DirectConnection);
        while (!hasWorker())
            QCoreApplication::processEvents();
    }

    bool hasWorker() const { return controller.QObject::thread() != QThread::currentThread(); }

    /// Polls once on the worker and returns the reports.
    QStringList poll()
    {
        m_reports.clear();
        QMetaObject::invokeMethod(&controller, "CheckStates", Qt::BlockingQueuedConnection);
        return m_reports;
    }

    CXBOXController controller;

private:
    template <class Enum>
    static QString name(Enum value)
    {
        return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(value));
    }

    QStringList m_reports; ///< written by the worker, read while it is idle
};

} // namespace

class tst_CXBOXController : public QObject
{
    Q_OBJECT

private slots:
    void the_signals_and_slots_have_their_order();
    void the_stored_numbers_of_buttons_and_sticks_are_fixed();
    void the_types_of_the_signals_are_known_by_name();

    void player_numbers_count_from_one_data();
    void player_numbers_count_from_one();
    void a_pad_is_connected_while_it_is_plugged_in();
    void the_state_of_a_missing_pad_is_all_zero();
    void the_motors_are_driven_with_the_systems_answer();

    void one_poll_reads_the_pad_twenty_times();
    void a_pad_at_rest_reports_nothing();
    void a_button_is_reported_when_it_changes_and_not_while_it_is_held_data();
    void a_button_is_reported_when_it_changes_and_not_while_it_is_held();
    void buttons_come_in_their_order_and_sticks_after_them();
    void other_buttons_of_the_pad_are_ignored();
    void a_press_between_two_polls_is_missed();
    void the_pad_is_read_again_for_each_button();
    void the_dead_zone_ends_at_3000_data();
    void the_dead_zone_ends_at_3000();
    void a_stick_is_reported_when_its_value_changes();
    void an_unplugged_pad_is_released_and_centred_once();
    void a_pad_that_comes_back_is_reported_as_it_is();
    void two_pads_do_not_interfere();
};

void tst_CXBOXController::the_signals_and_slots_have_their_order()
{
    const QMetaObject &meta = CXBOXController::staticMetaObject;
    const QList<QByteArray> expected = {"killThread()", "buttonXbox(buttonList,bool)",
        "controllerXbox(controllerList,SHORT)", "FirstLoad()", "CheckStates()"};
    QCOMPARE(meta.methodCount() - meta.methodOffset(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const QMetaMethod method = meta.method(meta.methodOffset() + i);
        QCOMPARE(method.methodSignature(), expected[i]);
        QCOMPARE(method.methodType(), i < 3 ? QMetaMethod::Signal : QMetaMethod::Slot);
    }
}

void tst_CXBOXController::the_stored_numbers_of_buttons_and_sticks_are_fixed()
{
    const auto check = [](const QMetaEnum &numbers, const QList<QByteArray> &names) {
        QCOMPARE(numbers.keyCount(), names.size());
        for (int i = 0; i < names.size(); ++i)
            QCOMPARE(QByteArray(numbers.valueToKey(i)), names[i]);
    };
    check(QMetaEnum::fromType<CXBOXController::buttonList>(),
        {"ButtonA", "ButtonB", "ButtonX", "ButtonY", "ButtonStart", "ButtonBack", "DPadUp",
            "DPadDown", "DPadLeft", "DPadRight", "LeftTrigger", "RightTrigger", "LeftThumb",
            "RightThumb", "LeftShoulder", "RightShoulder"});
    check(QMetaEnum::fromType<CXBOXController::controllerList>(),
        {"ThumbLX", "ThumbLY", "ThumbRX", "ThumbRY"});
}

void tst_CXBOXController::the_types_of_the_signals_are_known_by_name()
{
    const CXBOXController controller(1);
    QCOMPARE(QMetaType::fromName("buttonList"), QMetaType::fromType<CXBOXController::buttonList>());
    QCOMPARE(QMetaType::fromName("controllerList"),
        QMetaType::fromType<CXBOXController::controllerList>());
    QCOMPARE(QMetaType::fromName("SHORT"), QMetaType::fromType<SHORT>());
}

void tst_CXBOXController::player_numbers_count_from_one_data()
{
    QTest::addColumn<unsigned>("playerNumber");
    QTest::addColumn<int>("userIndex");
    QTest::addRow("the first") << 1U << 0;
    QTest::addRow("the second") << 2U << 1;
    QTest::addRow("the last") << 4U << 3;
    QTest::addRow("an invalid index") << 5U << -1;
    QTest::addRow("none") << 0U << -1;
}

void tst_CXBOXController::player_numbers_count_from_one()
{
    QFETCH(unsigned, playerNumber);
    QFETCH(int, userIndex);
    FakePads system(4);
    const CXBOXController controller(playerNumber);
    QCOMPARE(controller.isConnected(), userIndex >= 0);
    for (int index = 0; index < 4; ++index)
        QCOMPARE(int(system.pads[static_cast<std::size_t>(index)].reads), index == userIndex);
    QCOMPARE(int(system.readsBeyond), userIndex < 0);
}

void tst_CXBOXController::a_pad_is_connected_while_it_is_plugged_in()
{
    FakePads system;
    const CXBOXController controller(2);
    for (const bool connected : {false, true, false}) {
        system.pads[1].connected = connected;
        QCOMPARE(controller.isConnected(), connected);
    }
}

void tst_CXBOXController::the_state_of_a_missing_pad_is_all_zero()
{
    FakePads system(1);
    system.pads[0].buttons = XINPUT_GAMEPAD_A;
    system.pads[0].thumbRY = -32768;
    const CXBOXController controller(1);
    QCOMPARE(int(controller.getState().Gamepad.wButtons), XINPUT_GAMEPAD_A);
    QCOMPARE(int(controller.getState().Gamepad.sThumbRY), -32768);
    system.pads[0].connected = false;
    QCOMPARE(int(controller.getState().Gamepad.wButtons), 0);
    QCOMPARE(int(controller.getState().Gamepad.sThumbRY), 0);
}

void tst_CXBOXController::the_motors_are_driven_with_the_systems_answer()
{
    FakePads system(1);
    CXBOXController controller(1);
    QCOMPARE(controller.vibrate(1, 65535), DWORD(ERROR_SUCCESS));
    QCOMPARE(int(system.pads[0].leftMotor), 1);
    QCOMPARE(int(system.pads[0].rightMotor), 65535);
    CXBOXController missing(2);
    QCOMPARE(missing.vibrate(1, 2), DWORD(ERROR_DEVICE_NOT_CONNECTED));
}

void tst_CXBOXController::one_poll_reads_the_pad_twenty_times()
{
    FakePads system(1);
    Polled polled;
    polled.poll();
    QCOMPARE(int(system.pads[0].reads), 20);
}

void tst_CXBOXController::a_pad_at_rest_reports_nothing()
{
    const FakePads system(1);
    Polled polled;
    QCOMPARE(polled.poll(), QStringList());
}

void tst_CXBOXController::a_button_is_reported_when_it_changes_and_not_while_it_is_held_data()
{
    QTest::addColumn<WORD>("bit");
    QTest::addColumn<BYTE>("leftTrigger");
    QTest::addColumn<BYTE>("rightTrigger");
    const auto button = [](const char *name, WORD bit) {
        QTest::addRow("%s", name) << bit << BYTE(0) << BYTE(0);
    };
    button("ButtonA", 0x1000);
    button("ButtonB", 0x2000);
    button("ButtonX", 0x4000);
    button("ButtonY", 0x8000);
    button("ButtonStart", 0x0010);
    button("ButtonBack", 0x0020);
    button("DPadUp", 0x0001);
    button("DPadDown", 0x0002);
    button("DPadLeft", 0x0004);
    button("DPadRight", 0x0008);
    button("LeftThumb", 0x0040);
    button("RightThumb", 0x0080);
    button("LeftShoulder", 0x0100);
    button("RightShoulder", 0x0200);
    QTest::addRow("LeftTrigger") << WORD(0) << BYTE(1) << BYTE(0);
    QTest::addRow("RightTrigger") << WORD(0) << BYTE(0) << BYTE(1);
}

void tst_CXBOXController::a_button_is_reported_when_it_changes_and_not_while_it_is_held()
{
    QFETCH(WORD, bit);
    QFETCH(BYTE, leftTrigger);
    QFETCH(BYTE, rightTrigger);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    FakePads system(1);
    Pad &pad = system.pads[0];
    Polled polled;
    pad.buttons = bit;
    pad.leftTrigger = leftTrigger;
    pad.rightTrigger = rightTrigger;
    QCOMPARE(polled.poll(), QStringList{name + u" 1"_s});
    QCOMPARE(polled.poll(), QStringList());
    pad.leftTrigger = leftTrigger ? 255 : 0;
    pad.rightTrigger = rightTrigger ? 255 : 0;
    QCOMPARE(polled.poll(), QStringList());
    pad.buttons = 0;
    pad.leftTrigger = 0;
    pad.rightTrigger = 0;
    QCOMPARE(polled.poll(), QStringList{name + u" 0"_s});
    QCOMPARE(polled.poll(), QStringList());
}

void tst_CXBOXController::buttons_come_in_their_order_and_sticks_after_them()
{
    FakePads system(1);
    Pad &pad = system.pads[0];
    pad.buttons = 0xF3FF;
    pad.leftTrigger = 255;
    pad.rightTrigger = 255;
    pad.thumbLX = 3001;
    pad.thumbLY = 3002;
    pad.thumbRX = 3003;
    pad.thumbRY = 3004;
    Polled polled;
    QCOMPARE(polled.poll(),
        (QStringList{u"DPadUp 1"_s, u"DPadDown 1"_s, u"DPadLeft 1"_s, u"DPadRight 1"_s,
            u"ButtonA 1"_s, u"ButtonB 1"_s, u"ButtonX 1"_s, u"ButtonY 1"_s, u"LeftThumb 1"_s,
            u"RightThumb 1"_s, u"LeftShoulder 1"_s, u"RightShoulder 1"_s, u"ButtonStart 1"_s,
            u"ButtonBack 1"_s, u"LeftTrigger 1"_s, u"RightTrigger 1"_s, u"ThumbLX 3001"_s,
            u"ThumbLY 3002"_s, u"ThumbRX 3003"_s, u"ThumbRY 3004"_s}));
}

void tst_CXBOXController::other_buttons_of_the_pad_are_ignored()
{
    FakePads system(1);
    Polled polled;
    system.pads[0].buttons = 0x0C00;
    QCOMPARE(polled.poll(), QStringList());
}

void tst_CXBOXController::a_press_between_two_polls_is_missed()
{
    FakePads system(1);
    Polled polled;
    polled.poll();
    system.pads[0].buttons = XINPUT_GAMEPAD_A;
    system.pads[0].buttons = 0;
    QCOMPARE(polled.poll(), QStringList());
}

void tst_CXBOXController::the_pad_is_read_again_for_each_button()
{
    FakePads system(1);
    Polled polled;
    Pad &pad = system.pads[0];
    // Pressed after the first read, which is the directional pad's: A comes later in this poll,
    // the directional pad in the next.
    system.onGetState = [&](DWORD) {
        if (pad.reads == 1)
            pad.buttons = XINPUT_GAMEPAD_A | XINPUT_GAMEPAD_DPAD_UP;
    };
    QCOMPARE(polled.poll(), QStringList{u"ButtonA 1"_s});
    QCOMPARE(polled.poll(), QStringList{u"DPadUp 1"_s});
}

void tst_CXBOXController::the_dead_zone_ends_at_3000_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("reported");
    QTest::addRow("centre") << 0 << 0;
    QTest::addRow("within") << 2999 << 0;
    QTest::addRow("edge") << 3000 << 3000;
    QTest::addRow("outside, unscaled") << 3001 << 3001;
    QTest::addRow("full") << 32767 << 32767;
    QTest::addRow("within, the other way") << -2999 << 0;
    QTest::addRow("edge, the other way") << -3000 << -3000;
    QTest::addRow("full, the other way") << -32768 << -32768;
}

void tst_CXBOXController::the_dead_zone_ends_at_3000()
{
    QFETCH(int, value);
    QFETCH(int, reported);
    QCOMPARE(int(withoutDeadZone(static_cast<SHORT>(value))), reported);
    FakePads system(1);
    Polled polled;
    system.pads[0].thumbRY = static_cast<SHORT>(value);
    QCOMPARE(
        polled.poll(), reported == 0 ? QStringList() : QStringList{u"ThumbRY %1"_s.arg(reported)});
}

void tst_CXBOXController::a_stick_is_reported_when_its_value_changes()
{
    FakePads system(1);
    Polled polled;
    Pad &pad = system.pads[0];
    pad.thumbLX = 2999;
    QCOMPARE(polled.poll(), QStringList());
    pad.thumbLX = 3000;
    QCOMPARE(polled.poll(), QStringList{u"ThumbLX 3000"_s});
    QCOMPARE(polled.poll(), QStringList());
    pad.thumbLX = 3001;
    QCOMPARE(polled.poll(), QStringList{u"ThumbLX 3001"_s});
    pad.thumbLX = -3001;
    QCOMPARE(polled.poll(), QStringList{u"ThumbLX -3001"_s});
    pad.thumbLX = 2500;
    QCOMPARE(polled.poll(), QStringList{u"ThumbLX 0"_s});
    QCOMPARE(polled.poll(), QStringList());
}

void tst_CXBOXController::an_unplugged_pad_is_released_and_centred_once()
{
    FakePads system(1);
    Polled polled;
    Pad &pad = system.pads[0];
    pad.buttons = XINPUT_GAMEPAD_A | XINPUT_GAMEPAD_Y;
    pad.rightTrigger = 9;
    pad.thumbLY = -32768;
    QCOMPARE(polled.poll().size(), 4);
    pad.connected = false;
    QCOMPARE(polled.poll(),
        (QStringList{u"ButtonA 0"_s, u"ButtonY 0"_s, u"RightTrigger 0"_s, u"ThumbLY 0"_s}));
    QCOMPARE(polled.poll(), QStringList());
}

void tst_CXBOXController::a_pad_that_comes_back_is_reported_as_it_is()
{
    FakePads system(1);
    Polled polled;
    Pad &pad = system.pads[0];
    pad.thumbLY = 20000;
    QCOMPARE(polled.poll(), QStringList{u"ThumbLY 20000"_s});
    pad.connected = false;
    QCOMPARE(polled.poll(), QStringList{u"ThumbLY 0"_s});
    pad.connected = true;
    pad.buttons = XINPUT_GAMEPAD_B;
    QCOMPARE(polled.poll(), (QStringList{u"ButtonB 1"_s, u"ThumbLY 20000"_s}));
}

void tst_CXBOXController::two_pads_do_not_interfere()
{
    FakePads system(2);
    Polled first(1);
    Polled second(2);
    system.pads[0].buttons = XINPUT_GAMEPAD_A;
    system.pads[1].buttons = XINPUT_GAMEPAD_B;
    system.pads[0].connected = false;
    QCOMPARE(first.poll(), QStringList());
    QCOMPARE(second.poll(), QStringList{u"ButtonB 1"_s});
}

QTEST_GUILESS_MAIN(tst_CXBOXController)

#include "tst_cxboxcontroller.moc"
