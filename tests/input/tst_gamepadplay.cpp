#include "playerstage.h"
#include "unseenpoll.h"

#include <QTest>
#include <QThread>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

/// Opens the window with pad `pads[side]` chosen for each side, counted from 1.
void openPads(PlayerStage &stage, const std::array<int, 2> &pads)
{
    stage.open();
    for (const PlayerStage::Player &player : stage.players)
        player.xboxList->setCurrentIndex(pads[size_t(player.side)]);
}

} // namespace

class tst_GamepadPlay : public QObject
{
    Q_OBJECT

private slots:
    void a_stick_steps_the_paddle_by_the_sensitivity_data();
    void a_stick_steps_the_paddle_by_the_sensitivity();
    void without_bindings_the_first_stick_and_button_play_data();
    void without_bindings_the_first_stick_and_button_play();
    void the_learnt_stick_and_button_play_and_no_other_data();
    void the_learnt_stick_and_button_play_and_no_other();
    void a_press_starts_once_and_a_release_not_at_all();
    void invalid_pad_bindings_never_play();
    void each_player_plays_on_a_pad_of_their_own();
    void both_players_play_on_one_pad();
    void both_players_play_on_one_stick();
    void a_shared_pad_keeps_playing_for_the_other_when_one_player_leaves_data();
    void a_shared_pad_keeps_playing_for_the_other_when_one_player_leaves();
    void both_pads_unplugged_in_a_rally_stop_and_come_back();
    void a_pad_is_handled_on_the_thread_of_the_window();
    void queued_pad_input_does_not_move_a_paddle_that_left_the_pad_data();
    void queued_pad_input_does_not_move_a_paddle_that_left_the_pad();
};

void tst_GamepadPlay::a_stick_steps_the_paddle_by_the_sensitivity_data()
{
    QTest::addColumn<int>("slider");
    QTest::addColumn<int>("deflection");
    QTest::addColumn<int>("step");
    QTest::addRow("least, up") << 256 << 32767 << 42;
    QTest::addRow("least, down") << 256 << -32768 << -42;
    QTest::addRow("default, up") << 512 << 32767 << 63;
    QTest::addRow("default, down") << 512 << -32768 << -64;
    QTest::addRow("most, up") << 768 << 32767 << 127;
    QTest::addRow("most, down") << 768 << -32768 << -128;
    QTest::addRow("between, toward zero") << 612 << -20000 << -48;
    QTest::addRow("at the edge of the dead zone") << 512 << 3000 << 5;
    QTest::addRow("within the dead zone") << 512 << -2999 << 0;
}

void tst_GamepadPlay::a_stick_steps_the_paddle_by_the_sensitivity()
{
    QFETCH(int, slider);
    QFETCH(int, deflection);
    QFETCH(int, step);
    PlayerStage stage({}, 2);
    openPads(stage, {1, 2});
    for (const PlayerStage::Player &player : stage.players) {
        const auto pad = size_t(player.side);
        player.sensitivity->setValue(slider);
        stage.pads.pads[pad].thumbLX = 10000;
        stage.poll(pad);
        QVERIFY(stage.step(player.side) > 0);
        stage.pads.pads[pad].thumbLX = static_cast<SHORT>(deflection);
        stage.poll(pad);
        QCOMPARE(stage.step(player.side), step);
    }
}

void tst_GamepadPlay::without_bindings_the_first_stick_and_button_play_data()
{
    addSides();
}

void tst_GamepadPlay::without_bindings_the_first_stick_and_button_play()
{
    QFETCH(int, side);
    PlayerStage stage({}, 1);
    stage.open();
    stage.players[size_t(side)].xboxList->setCurrentIndex(1);
    stage.pads.pads[0].thumbLX = 32767;
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QCOMPARE(stage.step(side), 63);
    QCOMPARE(stage.step(1 - side), 0);
    QCOMPARE(stage.takeStart(), std::optional(side));
    QVERIFY(!stage.settings().contains(u"XMoveL"_s) && !stage.settings().contains(u"XStartL"_s));
}

void tst_GamepadPlay::the_learnt_stick_and_button_play_and_no_other_data()
{
    addSides();
}

void tst_GamepadPlay::the_learnt_stick_and_button_play_and_no_other()
{
    QFETCH(int, side);
    PlayerStage stage({}, 1,
        {{u"XMoveL"_s, u"3"_s}, {u"XMoveR"_s, u"3"_s}, {u"XStartL"_s, u"10"_s},
            {u"XStartR"_s, u"10"_s}});
    stage.open();
    stage.players[size_t(side)].xboxList->setCurrentIndex(1);
    FakePads::Pad &pad = stage.pads.pads[0];
    pad.thumbLX = 32767;
    pad.thumbLY = 32767;
    pad.thumbRX = 32767;
    pad.buttons = 0xFFFF;
    pad.rightTrigger = 255;
    stage.poll(0);
    QCOMPARE(stage.step(side), 0);
    QVERIFY(!stage.takeStart());
    pad.thumbRY = -32768;
    pad.leftTrigger = 1;
    stage.poll(0);
    QCOMPARE(stage.step(side), -64);
    QCOMPARE(stage.takeStart(), std::optional(side));
    QCOMPARE(stage.step(1 - side), 0);
}

void tst_GamepadPlay::a_press_starts_once_and_a_release_not_at_all()
{
    PlayerStage stage({}, 1);
    openPads(stage, {1, 0});
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QCOMPARE(stage.takeStart(), std::optional(0));
    stage.poll(0);
    QVERIFY(!stage.takeStart());
    stage.pads.pads[0].buttons = 0;
    stage.poll(0);
    QVERIFY(!stage.takeStart());
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QCOMPARE(stage.takeStart(), std::optional(0));
}

void tst_GamepadPlay::invalid_pad_bindings_never_play()
{
    PlayerStage stage({}, 1,
        {{u"XMoveL"_s, u"4"_s}, {u"XMoveR"_s, u"-1"_s}, {u"XStartL"_s, u"16"_s},
            {u"XStartR"_s, u"-2147483648"_s}});
    openPads(stage, {1, 1});
    FakePads::Pad &pad = stage.pads.pads[0];
    for (Relaxed<SHORT> *stick : {&pad.thumbLX, &pad.thumbLY, &pad.thumbRX, &pad.thumbRY})
        *stick = 32767;
    pad.buttons = 0xFFFF;
    pad.leftTrigger = 255;
    pad.rightTrigger = 255;
    stage.poll(0);
    QCOMPARE(stage.step(0), 0);
    QCOMPARE(stage.step(1), 0);
    QVERIFY(!stage.takeStart());
}

void tst_GamepadPlay::each_player_plays_on_a_pad_of_their_own()
{
    PlayerStage stage({}, 3);
    openPads(stage, {3, 1});
    stage.pads.pads[0].thumbLX = 32767;
    stage.pads.pads[2].thumbLX = -32768;
    stage.poll(0);
    stage.poll(2);
    QCOMPARE(stage.step(0), -64);
    QCOMPARE(stage.step(1), 63);
    QVERIFY(!stage.isPolled(1));
    stage.pads.pads[2].buttons = XINPUT_GAMEPAD_A;
    stage.poll(2);
    QCOMPARE(stage.takeStart(), std::optional(0));
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QCOMPARE(stage.takeStart(), std::optional(1));
}

void tst_GamepadPlay::both_players_play_on_one_pad()
{
    PlayerStage stage({}, 1,
        {{u"XMoveL"_s, u"1"_s}, {u"XMoveR"_s, u"3"_s}, {u"XStartL"_s, u"14"_s},
            {u"XStartR"_s, u"15"_s}});
    openPads(stage, {1, 1});
    FakePads::Pad &pad = stage.pads.pads[0];
    pad.thumbLY = 32767;
    pad.thumbRY = -32768;
    stage.poll(0);
    QCOMPARE(stage.step(0), 63);
    QCOMPARE(stage.step(1), -64);
    pad.buttons = XINPUT_GAMEPAD_LEFT_SHOULDER;
    stage.poll(0);
    QCOMPARE(stage.takeStart(), std::optional(0));
    pad.buttons = XINPUT_GAMEPAD_RIGHT_SHOULDER;
    stage.poll(0);
    QCOMPARE(stage.takeStart(), std::optional(1));
}

void tst_GamepadPlay::both_players_play_on_one_stick()
{
    PlayerStage stage({}, 1);
    openPads(stage, {1, 1});
    stage.players[1].sensitivity->setValue(768);
    stage.pads.pads[0].thumbLX = 32767;
    stage.poll(0);
    QCOMPARE(stage.step(0), 63);
    QCOMPARE(stage.step(1), 127);
}

void tst_GamepadPlay::a_shared_pad_keeps_playing_for_the_other_when_one_player_leaves_data()
{
    addSides();
}

void tst_GamepadPlay::a_shared_pad_keeps_playing_for_the_other_when_one_player_leaves()
{
    QFETCH(int, side);
    PlayerStage stage({}, 1);
    openPads(stage, {1, 1});
    stage.pads.pads[0].thumbLX = 32767;
    stage.poll(0);
    stage.players[size_t(side)].xboxList->setCurrentIndex(0);
    QCOMPARE(stage.step(side), 0);
    QCOMPARE(stage.step(1 - side), 63);
    stage.pads.pads[0].thumbLX = -32768;
    stage.poll(0);
    QCOMPARE(stage.step(side), 0);
    QCOMPARE(stage.step(1 - side), -64);
}

void tst_GamepadPlay::both_pads_unplugged_in_a_rally_stop_and_come_back()
{
    PlayerStage stage({}, 2, {}, PlayerStage::WholeWindow);
    stage.host.ready = 1;
    openPads(stage, {1, 2});
    const Pong &game = stage.game();
    auto *show = stage.widget()->findChild<QPushButton *>(u"showButton"_s);
    // When the host is ready, its first zone is selected.
    QTRY_COMPARE(stage.widget()->findChild<QComboBox *>(u"zoneComboBox"_s)->currentIndex(), 1);
    PlayerStage::click(show);
    auto &pads = stage.pads.pads;
    for (int press = 0; press < 2; ++press) { // leaves the score display, then serves
        pads[0].buttons = XINPUT_GAMEPAD_A;
        stage.poll(0);
        pads[0].buttons = 0;
        stage.poll(0);
    }
    QCOMPARE(int(game.servePhase), int(InPlay));
    pads[0].thumbLX = 32767;
    pads[1].thumbLX = -32768;
    pads[1].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    stage.poll(1);
    QCOMPARE(stage.step(0), 63);
    QCOMPARE(stage.step(1), -64);

    pads[0].connected = false;
    pads[1].connected = false;
    stage.poll(0);
    stage.poll(1);
    QCOMPARE(stage.step(0), 0);
    QCOMPARE(stage.step(1), 0);

    pads[0].thumbLX = -32768;
    pads[0].connected = true;
    pads[1].connected = true;
    stage.poll(0);
    stage.poll(1);
    QCOMPARE(stage.step(0), -64);
    QCOMPARE(stage.step(1), -64);
    QCOMPARE(stage.players[0].xboxList->currentIndex(), 1);
    QCOMPARE(stage.players[1].xboxList->currentIndex(), 2);
}

void tst_GamepadPlay::a_pad_is_handled_on_the_thread_of_the_window()
{
    PlayerStage stage({}, 1);
    UnseenPoll poll(stage);
    openPads(stage, {1, 0});
    poll.pushAndPress();
    QVERIFY(poll.polledOn() && poll.polledOn() != QThread::currentThread());
    // The poller has emitted its signals, but no event has been processed since.
    QCOMPARE(stage.step(0), 0);
    QVERIFY(!stage.takeStart());
    QCoreApplication::processEvents();
    QCOMPARE(stage.step(0), 63);
    QCOMPARE(stage.takeStart(), std::optional(0));
}

void tst_GamepadPlay::queued_pad_input_does_not_move_a_paddle_that_left_the_pad_data()
{
    using Leave = std::function<void(const PlayerStage::Player &)>;
    QTest::addColumn<Leave>("leave");
    QTest::addRow("for no pad") << Leave(
        [](const PlayerStage::Player &player) { player.xboxList->setCurrentIndex(0); });
    QTest::addRow("for another pad")
        << Leave([](const PlayerStage::Player &player) { player.xboxList->setCurrentIndex(2); });
    QTest::addRow("for MIDI") << Leave(
        [](const PlayerStage::Player &player) { PlayerStage::click(player.midi); });
    QTest::addRow("for the keyboard")
        << Leave([](const PlayerStage::Player &player) { PlayerStage::click(player.keyboard); });
}

void tst_GamepadPlay::queued_pad_input_does_not_move_a_paddle_that_left_the_pad()
{
    QFETCH(std::function<void(const PlayerStage::Player &)>, leave);
    for (const int side : {0, 1}) {
        PlayerStage stage({}, 2);
        UnseenPoll poll(stage);
        stage.open();
        const PlayerStage::Player &player = stage.players[size_t(side)];
        player.xboxList->setCurrentIndex(1);
        poll.pushAndPress();
        leave(player);
        QCoreApplication::processEvents();
        QCOMPARE(stage.step(side), 0);
        QVERIFY(!stage.takeStart());
    }
}

QTEST_MAIN(tst_GamepadPlay)

#include "tst_gamepadplay.moc"
