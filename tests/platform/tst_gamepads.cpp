#include "cxboxcontroller.h"
#include "virtualpad.h"

#include <QTest>

#include <memory>
#include <utility>

namespace {

XINPUT_STATE stateOf(DWORD user)
{
    XINPUT_STATE state = {};
    XInputGetState(user, &state);
    return state;
}

XINPUT_GAMEPAD padOf(DWORD user)
{
    return stateOf(user).Gamepad;
}

} // namespace

class tst_Gamepads : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void without_a_pad_no_user_is_connected();
    void an_invalid_user_index_is_rejected();
    void buttons_set_their_bits_data();
    void buttons_set_their_bits();
    void sticks_point_right_and_up_data();
    void sticks_point_right_and_up();
    void triggers_reach_255_data();
    void triggers_reach_255();
    void the_packet_number_changes_with_the_state();
    void pads_come_in_the_order_in_which_they_were_plugged_in();
    void an_unplugged_pad_is_not_connected_and_frees_its_slot();
    void a_fifth_pad_is_ignored();
    void motors_run_at_the_set_speed();
    void a_poller_reports_what_is_played_on_the_pad();
};

void tst_Gamepads::cleanup()
{
    for (DWORD user = 0; user < XUSER_MAX_COUNT; ++user)
        QTRY_COMPARE(resultOf(user), DWORD(ERROR_DEVICE_NOT_CONNECTED));
}

void tst_Gamepads::without_a_pad_no_user_is_connected()
{
    for (DWORD user = 0; user < XUSER_MAX_COUNT; ++user)
        QCOMPARE(resultOf(user), DWORD(ERROR_DEVICE_NOT_CONNECTED));
    XINPUT_VIBRATION vibration = {1, 1};
    QCOMPARE(XInputSetState(0, &vibration), DWORD(ERROR_DEVICE_NOT_CONNECTED));
}

void tst_Gamepads::an_invalid_user_index_is_rejected()
{
    const VirtualPad pad;
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_SUCCESS));
    XINPUT_VIBRATION vibration = {1, 1};
    for (const DWORD user : {XUSER_MAX_COUNT, DWORD(0xFFFFFFFF)}) {
        QVERIFY(resultOf(user) != ERROR_SUCCESS);
        QVERIFY(XInputSetState(user, &vibration) != ERROR_SUCCESS);
    }
}

void tst_Gamepads::buttons_set_their_bits_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("bits");
    QTest::addRow("A") << int(SDL_CONTROLLER_BUTTON_A) << 0x1000;
    QTest::addRow("B") << int(SDL_CONTROLLER_BUTTON_B) << 0x2000;
    QTest::addRow("X") << int(SDL_CONTROLLER_BUTTON_X) << 0x4000;
    QTest::addRow("Y") << int(SDL_CONTROLLER_BUTTON_Y) << 0x8000;
    QTest::addRow("start") << int(SDL_CONTROLLER_BUTTON_START) << 0x0010;
    QTest::addRow("back") << int(SDL_CONTROLLER_BUTTON_BACK) << 0x0020;
    QTest::addRow("up") << int(SDL_CONTROLLER_BUTTON_DPAD_UP) << 0x0001;
    QTest::addRow("down") << int(SDL_CONTROLLER_BUTTON_DPAD_DOWN) << 0x0002;
    QTest::addRow("left") << int(SDL_CONTROLLER_BUTTON_DPAD_LEFT) << 0x0004;
    QTest::addRow("right") << int(SDL_CONTROLLER_BUTTON_DPAD_RIGHT) << 0x0008;
    QTest::addRow("left stick") << int(SDL_CONTROLLER_BUTTON_LEFTSTICK) << 0x0040;
    QTest::addRow("right stick") << int(SDL_CONTROLLER_BUTTON_RIGHTSTICK) << 0x0080;
    QTest::addRow("left shoulder") << int(SDL_CONTROLLER_BUTTON_LEFTSHOULDER) << 0x0100;
    QTest::addRow("right shoulder") << int(SDL_CONTROLLER_BUTTON_RIGHTSHOULDER) << 0x0200;
}

void tst_Gamepads::buttons_set_their_bits()
{
    QFETCH(int, button);
    QFETCH(int, bits);
    VirtualPad pad;
    QVERIFY(pad.works());
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_SUCCESS));
    QCOMPARE(int(padOf(0).wButtons), 0);
    pad.press(static_cast<SDL_GameControllerButton>(button), true);
    QTRY_COMPARE(int(padOf(0).wButtons), bits);
    pad.press(static_cast<SDL_GameControllerButton>(button), false);
    QTRY_COMPARE(int(padOf(0).wButtons), 0);
}

void tst_Gamepads::sticks_point_right_and_up_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<int>("moved");
    QTest::addColumn<QList<int>>("sticks");
    const int lx = SDL_CONTROLLER_AXIS_LEFTX;
    const int ly = SDL_CONTROLLER_AXIS_LEFTY;
    const int rx = SDL_CONTROLLER_AXIS_RIGHTX;
    const int ry = SDL_CONTROLLER_AXIS_RIGHTY;
    QTest::addRow("left stick right") << lx << 32767 << QList{32767, 0, 0, 0};
    QTest::addRow("left stick left") << lx << -32768 << QList{-32768, 0, 0, 0};
    QTest::addRow("left stick up") << ly << -32768 << QList{0, 32767, 0, 0};
    QTest::addRow("left stick almost up") << ly << -32767 << QList{0, 32767, 0, 0};
    QTest::addRow("left stick half up") << ly << -16000 << QList{0, 16000, 0, 0};
    QTest::addRow("left stick down") << ly << 32767 << QList{0, -32768, 0, 0};
    QTest::addRow("right stick right") << rx << 20000 << QList{0, 0, 20000, 0};
    QTest::addRow("right stick left") << rx << -20000 << QList{0, 0, -20000, 0};
    QTest::addRow("right stick up") << ry << -32768 << QList{0, 0, 0, 32767};
    QTest::addRow("right stick down") << ry << 32767 << QList{0, 0, 0, -32768};
}

void tst_Gamepads::sticks_point_right_and_up()
{
    QFETCH(int, axis);
    QFETCH(int, moved);
    QFETCH(QList<int>, sticks);
    VirtualPad pad;
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_SUCCESS));
    const auto read = [] {
        const XINPUT_GAMEPAD now = padOf(0);
        return QList<int>{now.sThumbLX, now.sThumbLY, now.sThumbRX, now.sThumbRY};
    };
    pad.move(static_cast<SDL_GameControllerAxis>(axis), static_cast<Sint16>(moved));
    QTRY_COMPARE(read(), sticks);
    pad.move(static_cast<SDL_GameControllerAxis>(axis), 0);
    QTRY_COMPARE(read(), (QList{0, 0, 0, 0}));
}

void tst_Gamepads::triggers_reach_255_data()
{
    QTest::addColumn<int>("pulled");
    QTest::addColumn<int>("trigger");
    // A trigger's axis is at its minimum when released.
    QTest::addRow("at rest") << -32768 << 0;
    QTest::addRow("slightest pull of 255 steps") << -32768 + 257 << 1;
    QTest::addRow("half") << 0 << 127;
    QTest::addRow("full") << 32767 << 255;
}

void tst_Gamepads::triggers_reach_255()
{
    QFETCH(int, pulled);
    QFETCH(int, trigger);
    VirtualPad pad;
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_SUCCESS));
    // SDL treats the first small movement of an axis as its rest position.
    for (const auto axis : {SDL_CONTROLLER_AXIS_TRIGGERLEFT, SDL_CONTROLLER_AXIS_TRIGGERRIGHT})
        pad.move(axis, 16000);
    QTRY_VERIFY(padOf(0).bLeftTrigger > 0 && padOf(0).bRightTrigger > 0);
    pad.move(SDL_CONTROLLER_AXIS_TRIGGERLEFT, static_cast<Sint16>(pulled));
    pad.move(SDL_CONTROLLER_AXIS_TRIGGERRIGHT, -32768);
    QTRY_COMPARE(int(padOf(0).bLeftTrigger), trigger);
    QTRY_COMPARE(int(padOf(0).bRightTrigger), 0);
    pad.move(SDL_CONTROLLER_AXIS_TRIGGERRIGHT, static_cast<Sint16>(pulled));
    QTRY_COMPARE(int(padOf(0).bRightTrigger), trigger);
}

void tst_Gamepads::the_packet_number_changes_with_the_state()
{
    VirtualPad pad;
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_SUCCESS));
    const DWORD before = stateOf(0).dwPacketNumber;
    pad.press(SDL_CONTROLLER_BUTTON_A, true);
    QTRY_VERIFY(stateOf(0).dwPacketNumber != before);
}

void tst_Gamepads::pads_come_in_the_order_in_which_they_were_plugged_in()
{
    VirtualPad first;
    VirtualPad second;
    QTRY_COMPARE(resultOf(1), DWORD(ERROR_SUCCESS));
    first.press(SDL_CONTROLLER_BUTTON_A, true);
    second.press(SDL_CONTROLLER_BUTTON_B, true);
    QTRY_COMPARE(int(padOf(0).wButtons), XINPUT_GAMEPAD_A);
    QTRY_COMPARE(int(padOf(1).wButtons), XINPUT_GAMEPAD_B);
    QCOMPARE(resultOf(2), DWORD(ERROR_DEVICE_NOT_CONNECTED));
}

void tst_Gamepads::an_unplugged_pad_is_not_connected_and_frees_its_slot()
{
    auto first = std::make_unique<VirtualPad>();
    VirtualPad second;
    QTRY_COMPARE(resultOf(1), DWORD(ERROR_SUCCESS));
    first->press(SDL_CONTROLLER_BUTTON_A, true);
    QTRY_COMPARE(int(padOf(0).wButtons), XINPUT_GAMEPAD_A);
    first->unplug();
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_DEVICE_NOT_CONNECTED));
    QCOMPARE(resultOf(1), DWORD(ERROR_SUCCESS));
    first = std::make_unique<VirtualPad>();
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_SUCCESS));
    QCOMPARE(int(padOf(0).wButtons), 0);
    first->press(SDL_CONTROLLER_BUTTON_Y, true);
    QTRY_COMPARE(int(padOf(0).wButtons), XINPUT_GAMEPAD_Y);
    QCOMPARE(int(padOf(1).wButtons), 0);
}

void tst_Gamepads::a_fifth_pad_is_ignored()
{
    std::array<VirtualPad, 5> pads;
    QTRY_COMPARE(resultOf(3), DWORD(ERROR_SUCCESS));
    pads[4].press(SDL_CONTROLLER_BUTTON_A, true);
    pads[3].press(SDL_CONTROLLER_BUTTON_B, true);
    QTRY_COMPARE(int(padOf(3).wButtons), XINPUT_GAMEPAD_B);
    for (DWORD user = 0; user < 3; ++user)
        QCOMPARE(int(padOf(user).wButtons), 0);
}

void tst_Gamepads::motors_run_at_the_set_speed()
{
    const VirtualPad pad;
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_SUCCESS));
    XINPUT_VIBRATION vibration = {1000, 65535};
    QCOMPARE(XInputSetState(0, &vibration), DWORD(ERROR_SUCCESS));
    QTRY_COMPARE(int(pad.lowMotor), 1000);
    QTRY_COMPARE(int(pad.highMotor), 65535);
    vibration = {};
    QCOMPARE(XInputSetState(0, &vibration), DWORD(ERROR_SUCCESS));
    QTRY_COMPARE(int(pad.lowMotor), 0);
    QTRY_COMPARE(int(pad.highMotor), 0);
}

void tst_Gamepads::a_poller_reports_what_is_played_on_the_pad()
{
    auto pad = std::make_unique<VirtualPad>();
    CXBOXController controller(1);
    CXBOXController other(2);
    QTRY_VERIFY(controller.isConnected());
    QVERIFY(!other.isConnected());
    // Queued, because the signals come from the pollers' threads.
    QList<std::pair<CXBOXController::buttonList, bool>> buttons;
    connect(&controller, &CXBOXController::buttonXbox, this,
        [&](CXBOXController::buttonList button, bool pressed) {
            buttons.append({button, pressed});
        });
    QList<std::pair<CXBOXController::controllerList, SHORT>> sticks;
    connect(&controller, &CXBOXController::controllerXbox, this,
        [&](CXBOXController::controllerList stick, SHORT value) {
            sticks.append({stick, value});
        });
    controller.startPolling();
    other.startPolling();
    pad->press(SDL_CONTROLLER_BUTTON_A, true);
    QTRY_COMPARE(buttons.size(), 1);
    QCOMPARE(buttons[0], std::pair(CXBOXController::ButtonA, true));
    pad->move(SDL_CONTROLLER_AXIS_LEFTY, -20000);
    QTRY_COMPARE(sticks.size(), 1);
    QCOMPARE(sticks[0], std::pair(CXBOXController::ThumbLY, SHORT(20000)));
    pad.reset();
    QTRY_COMPARE(buttons.size(), 2);
    QCOMPARE(buttons[1], std::pair(CXBOXController::ButtonA, false));
    QTRY_COMPARE(sticks.size(), 2);
    QCOMPARE(sticks[1], std::pair(CXBOXController::ThumbLY, SHORT(0)));
    QVERIFY(!controller.isConnected());
}

QTEST_GUILESS_MAIN(tst_Gamepads)

#include "tst_gamepads.moc"
