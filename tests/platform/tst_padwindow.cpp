#include "operatorwindow.h"
#include "virtualpad.h"

#include <QComboBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Selects XBox and a pad, counted from 1, for a side.
void choose(const OperatorWindow &window, int side, int pad)
{
    window.click(side == 0 ? u"leftXboxRadio"_s : u"rightXboxRadio"_s);
    auto *list = window.find<QComboBox>("xbox"_L1 + sideLetter(side) + "ComboBox"_L1);
    QVERIFY(list->count() > pad);
    list->setCurrentIndex(pad);
}

} // namespace

/// From an SDL pad through the operator's window to the paddle.
class tst_PadWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void a_learnt_stick_moves_the_paddle_and_a_learnt_button_starts_data();
    void a_learnt_stick_moves_the_paddle_and_a_learnt_button_starts();
    void each_player_plays_on_a_pad_of_their_own();
    void an_unplugged_pad_stops_its_paddle_and_no_other();
};

void tst_PadWindow::init()
{
    for (DWORD user = 0; user < XUSER_MAX_COUNT; ++user)
        QTRY_COMPARE(resultOf(user), DWORD(ERROR_DEVICE_NOT_CONNECTED));
}

void tst_PadWindow::a_learnt_stick_moves_the_paddle_and_a_learnt_button_starts_data()
{
    addSides();
}

void tst_PadWindow::a_learnt_stick_moves_the_paddle_and_a_learnt_button_starts()
{
    QFETCH(int, side);
    VirtualPad pad;
    QTRY_COMPARE(resultOf(0), DWORD(ERROR_SUCCESS));
    OperatorWindow window;
    window.open();
    choose(window, side, 1);
    window.click("learnCC"_L1 + sideLetter(side));
    pad.move(SDL_CONTROLLER_AXIS_RIGHTY, -32768);
    QTRY_COMPARE(window.setting("XMove"_L1 + sideLetter(side)), u"3"_s);
    window.click("learnStart"_L1 + sideLetter(side));
    pad.press(SDL_CONTROLLER_BUTTON_Y, true);
    QTRY_COMPARE(window.setting("XStart"_L1 + sideLetter(side)), u"3"_s);
    pad.press(SDL_CONTROLLER_BUTTON_Y, false);
    QCOMPARE(window.step(side), 0);

    pad.move(SDL_CONTROLLER_AXIS_RIGHTY, 32767);
    QTRY_COMPARE(window.step(side), -64);
    pad.move(SDL_CONTROLLER_AXIS_RIGHTY, -32768);
    QTRY_COMPARE(window.step(side), 63);
    QVERIFY(!window.takeStart());
    pad.press(SDL_CONTROLLER_BUTTON_Y, true);
    QCOMPARE(window.awaitStart(), std::optional(side));
    QCOMPARE(window.step(side), 63);
    QCOMPARE(window.step(1 - side), 0);
}

void tst_PadWindow::each_player_plays_on_a_pad_of_their_own()
{
    VirtualPad first;
    VirtualPad second;
    QTRY_COMPARE(resultOf(1), DWORD(ERROR_SUCCESS));
    OperatorWindow window;
    window.open();
    choose(window, 0, 2);
    choose(window, 1, 1);
    second.move(SDL_CONTROLLER_AXIS_LEFTX, 32767);
    QTRY_COMPARE(window.step(0), 63);
    QCOMPARE(window.step(1), 0);
    first.move(SDL_CONTROLLER_AXIS_LEFTX, -32768);
    QTRY_COMPARE(window.step(1), -64);
    QCOMPARE(window.step(0), 63);
    first.press(SDL_CONTROLLER_BUTTON_A, true);
    QCOMPARE(window.awaitStart(), std::optional(1));
    second.press(SDL_CONTROLLER_BUTTON_A, true);
    QCOMPARE(window.awaitStart(), std::optional(0));
}

void tst_PadWindow::an_unplugged_pad_stops_its_paddle_and_no_other()
{
    VirtualPad first;
    VirtualPad second;
    QTRY_COMPARE(resultOf(1), DWORD(ERROR_SUCCESS));
    OperatorWindow window;
    window.open();
    choose(window, 0, 1);
    choose(window, 1, 2);
    first.move(SDL_CONTROLLER_AXIS_LEFTX, 32767);
    second.move(SDL_CONTROLLER_AXIS_LEFTX, -32768);
    QTRY_COMPARE(window.step(0), 63);
    QTRY_COMPARE(window.step(1), -64);
    first.unplug();
    QTRY_COMPARE(window.step(0), 0);
    QCOMPARE(window.step(1), -64);
    second.unplug();
    QTRY_COMPARE(window.step(1), 0);
}

QTEST_MAIN(tst_PadWindow)

#include "tst_padwindow.moc"
