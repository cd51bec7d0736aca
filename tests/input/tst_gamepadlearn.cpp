#include "playerstage.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Opens the window and gives each player their own pad.
void openPads(PlayerStage &stage)
{
    stage.open();
    for (const PlayerStage::Player &player : stage.players)
        player.xboxList->setCurrentIndex(player.side + 1);
}

} // namespace

class tst_GamepadLearn : public QObject
{
    Q_OBJECT

private slots:
    void a_stick_is_learnt_beyond_24999_data();
    void a_stick_is_learnt_beyond_24999();
    void a_button_is_learnt_by_a_press_or_a_release_data();
    void a_button_is_learnt_by_a_press_or_a_release();
    void a_paddle_does_not_follow_the_pad_from_which_move_is_learnt_data();
    void a_paddle_does_not_follow_the_pad_from_which_move_is_learnt();
    void learning_start_blocks_start_but_not_the_stick();
    void input_learnt_from_a_shared_pad_plays_for_neither_side_data();
    void input_learnt_from_a_shared_pad_plays_for_neither_side();
    void a_move_learn_on_a_shared_pad_stops_both_paddles_data();
    void a_move_learn_on_a_shared_pad_stops_both_paddles();
    void choosing_the_partners_pad_while_learning_stops_the_partner_data();
    void choosing_the_partners_pad_while_learning_stops_the_partner();
    void a_move_learn_stops_no_partner_on_another_device_data();
    void a_move_learn_stops_no_partner_on_another_device();
    void a_pad_of_the_other_side_is_not_learnt_from();
    void a_cancelled_pad_learn_leaves_the_pad_playing();
};

void tst_GamepadLearn::a_stick_is_learnt_beyond_24999_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<int>("deflection");
    QTest::addColumn<bool>("learnt");
    for (const int side : {0, 1}) {
        const char *name = side == 0 ? "left" : "right";
        for (const int deflection : {3000, 24999, -24999, 25000, -25000, 32767, -32768})
            QTest::addRow("%s %d", name, deflection)
                << side << deflection << (std::abs(deflection) >= 25000);
    }
}

void tst_GamepadLearn::a_stick_is_learnt_beyond_24999()
{
    QFETCH(int, side);
    QFETCH(int, deflection);
    QFETCH(bool, learnt);
    PlayerStage stage({}, 2);
    openPads(stage);
    const PlayerStage::Settings before = stage.settings();
    PlayerStage::click(stage.players[size_t(side)].learnMove);
    stage.pads.pads[size_t(side)].thumbRY = static_cast<SHORT>(deflection);
    stage.poll(size_t(side));
    const PlayerStage::Settings expected = {{u"XMove"_s + sideLetter(side), u"3"_s}};
    QCOMPARE(stage.settingsSince(before), learnt ? expected : PlayerStage::Settings());
    QCOMPARE(stage.learning().isEmpty(), learnt);
    QCOMPARE(stage.step(side), 0);
}

void tst_GamepadLearn::a_button_is_learnt_by_a_press_or_a_release_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<bool>("press");
    for (const int side : {0, 1}) {
        const char *name = side == 0 ? "left" : "right";
        QTest::addRow("%s, press", name) << side << true;
        QTest::addRow("%s, release", name) << side << false;
    }
}

void tst_GamepadLearn::a_button_is_learnt_by_a_press_or_a_release()
{
    QFETCH(int, side);
    QFETCH(bool, press);
    PlayerStage stage({}, 2);
    openPads(stage);
    const auto pad = size_t(side);
    if (!press) {
        stage.pads.pads[pad].buttons = XINPUT_GAMEPAD_Y;
        stage.poll(pad);
    }
    const PlayerStage::Settings before = stage.settings();
    PlayerStage::click(stage.players[pad].learnStart);
    stage.poll(pad);
    QCOMPARE(stage.learning(), QStringList{stage.players[pad].learnStart->objectName()});
    stage.pads.pads[pad].buttons = press ? XINPUT_GAMEPAD_Y : WORD(0);
    stage.poll(pad);
    QCOMPARE(stage.settingsSince(before),
        (PlayerStage::Settings{{u"XStart"_s + sideLetter(side), u"3"_s}}));
    QCOMPARE(stage.learning(), QStringList());
    QCOMPARE(stage.players[pad].learnStart->text(), u"Click to learn Start - Button 3"_s);
    QVERIFY(!stage.takeStart());
    // From now on it starts, but only on a press.
    stage.pads.pads[pad].buttons = 0;
    stage.poll(pad);
    QVERIFY(!stage.takeStart());
    stage.pads.pads[pad].buttons = XINPUT_GAMEPAD_Y;
    stage.poll(pad);
    QCOMPARE(stage.takeStart(), std::optional(side));
}

void tst_GamepadLearn::a_paddle_does_not_follow_the_pad_from_which_move_is_learnt_data()
{
    addSides();
}

void tst_GamepadLearn::a_paddle_does_not_follow_the_pad_from_which_move_is_learnt()
{
    QFETCH(int, side);
    PlayerStage stage({}, 2);
    openPads(stage);
    const auto pad = size_t(side);
    stage.pads.pads[pad].thumbLX = 20000;
    stage.poll(pad);
    QCOMPARE(stage.step(side), 39);
    PlayerStage::click(stage.players[pad].learnMove);
    QCOMPARE(stage.step(side), 0);
    stage.pads.pads[pad].thumbLX = 24000;
    stage.poll(pad);
    QCOMPARE(stage.step(side), 0);
    // The other side keeps playing.
    stage.pads.pads[1 - pad].thumbLX = 32767;
    stage.poll(1 - pad);
    QCOMPARE(stage.step(1 - side), 63);
    // A button is not learnt for Move.
    stage.pads.pads[pad].buttons = XINPUT_GAMEPAD_A;
    stage.poll(pad);
    QCOMPARE(stage.takeStart(), std::optional(side));
    // The deflection being learnt does not move the paddle; the next one does.
    stage.pads.pads[pad].thumbRX = 30000;
    stage.poll(pad);
    QCOMPARE(stage.learning(), QStringList());
    QCOMPARE(stage.step(side), 0);
    stage.pads.pads[pad].thumbRX = 20000;
    stage.poll(pad);
    QCOMPARE(stage.step(side), 39);
    stage.pads.pads[pad].thumbLX = 0;
    stage.poll(pad);
    QCOMPARE(stage.step(side), 39);
}

void tst_GamepadLearn::learning_start_blocks_start_but_not_the_stick()
{
    PlayerStage stage({}, 2);
    openPads(stage);
    stage.pads.pads[0].thumbLX = 32767;
    stage.poll(0);
    PlayerStage::click(stage.players[0].learnStart);
    QCOMPARE(stage.step(0), 63);
    stage.pads.pads[0].thumbLX = -32768;
    stage.poll(0);
    QCOMPARE(stage.step(0), -64);
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QVERIFY(!stage.takeStart());
    QCOMPARE(stage.settings().value(u"XStartL"_s), u"0"_s);
}

void tst_GamepadLearn::input_learnt_from_a_shared_pad_plays_for_neither_side_data()
{
    addSides();
}

void tst_GamepadLearn::input_learnt_from_a_shared_pad_plays_for_neither_side()
{
    QFETCH(int, side);
    PlayerStage stage({}, 1);
    stage.open();
    for (const PlayerStage::Player &player : stage.players)
        player.xboxList->setCurrentIndex(1);
    FakePads::Pad &pad = stage.pads.pads[0];
    // Both play on the same stick and button; one side learns others.
    PlayerStage::click(stage.players[size_t(side)].learnStart);
    pad.buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QVERIFY(!stage.takeStart());
    PlayerStage::click(stage.players[size_t(side)].learnMove);
    pad.thumbLX = 20000;
    stage.poll(0);
    QCOMPARE(stage.step(1 - side), 0);
    pad.thumbLX = 32767;
    stage.poll(0);
    QCOMPARE(stage.learning(), QStringList());
    QCOMPARE(stage.step(0), 0);
    QCOMPARE(stage.step(1), 0);
    pad.thumbLX = -32768;
    stage.poll(0);
    QCOMPARE(stage.step(0), -64);
    QCOMPARE(stage.step(1), -64);
}

void tst_GamepadLearn::a_move_learn_on_a_shared_pad_stops_both_paddles_data()
{
    addSides();
}

void tst_GamepadLearn::a_move_learn_on_a_shared_pad_stops_both_paddles()
{
    QFETCH(int, side);
    PlayerStage stage({}, 1);
    stage.open();
    for (const PlayerStage::Player &player : stage.players)
        player.xboxList->setCurrentIndex(1);
    stage.pads.pads[0].thumbLX = 32767;
    stage.poll(0);
    // The sticks keep working while Start is learnt.
    PlayerStage::click(stage.players[size_t(side)].learnStart);
    QCOMPARE(stage.step(0), 63);
    QCOMPARE(stage.step(1), 63);
    // Its release is ignored while Move is learnt.
    PlayerStage::click(stage.players[size_t(side)].learnMove);
    QCOMPARE(stage.step(0), 0);
    QCOMPARE(stage.step(1), 0);
}

void tst_GamepadLearn::choosing_the_partners_pad_while_learning_stops_the_partner_data()
{
    addSides();
}

void tst_GamepadLearn::choosing_the_partners_pad_while_learning_stops_the_partner()
{
    QFETCH(int, side);
    PlayerStage stage({}, 2);
    openPads(stage);
    const auto partnersPad = size_t(1 - side);
    stage.pads.pads[partnersPad].thumbLX = 32767;
    stage.poll(partnersPad);
    PlayerStage::click(stage.players[size_t(side)].learnMove);
    QCOMPARE(stage.step(1 - side), 63);
    stage.players[size_t(side)].xboxList->setCurrentIndex(1 - side + 1);
    QCOMPARE(stage.step(1 - side), 0);
}

void tst_GamepadLearn::a_move_learn_stops_no_partner_on_another_device_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<QString>("mode");
    for (const int side : {0, 1}) {
        for (const char *mode : {"MIDI", "XBOX", "KEYBOARD"})
            QTest::addRow("%s, partner on %s", side == 0 ? "left" : "right", mode)
                << side << QString::fromLatin1(mode);
    }
}

void tst_GamepadLearn::a_move_learn_stops_no_partner_on_another_device()
{
    QFETCH(int, side);
    QFETCH(QString, mode);
    const int partnerSide = 1 - side;
    PlayerStage stage({u"Fader"_s}, 2,
        {{partnerSide == 0 ? u"ControlModeLeft"_s : u"ControlModeRight"_s, mode},
            {midiKey(u"CC"_s, partnerSide, 0), u"176"_s},
            {u"KeyboardUp"_s + sideLetter(partnerSide), QString::number(Qt::Key_U)}});
    openPads(stage); // the partner's list keeps its pad in other modes too
    const PlayerStage::Player &player = stage.players[size_t(side)];
    const PlayerStage::Player &partner = stage.players[size_t(partnerSide)];
    if (mode != "XBOX"_L1)
        partner.xboxList->setCurrentIndex(player.xboxList->currentIndex());
    partner.midiList->setCurrentIndex(1);
    stage.sendMidi(0, 176, 0, 127);
    QTest::keyPress(partner.sensitivity, Qt::Key_U);
    stage.pads.pads[size_t(partnerSide)].thumbLX = 32767;
    if (mode == "XBOX"_L1)
        stage.poll(size_t(partnerSide));
    QCOMPARE(stage.step(partnerSide), 63);
    PlayerStage::click(player.learnMove);
    QCOMPARE(stage.step(partnerSide), 63);
}

void tst_GamepadLearn::a_pad_of_the_other_side_is_not_learnt_from()
{
    PlayerStage stage({}, 2);
    openPads(stage);
    const PlayerStage::Settings before = stage.settings();
    PlayerStage::click(stage.players[1].learnMove);
    stage.pads.pads[0].thumbRY = 32767;
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_Y;
    stage.poll(0);
    QCOMPARE(stage.settings(), before);
    PlayerStage::click(stage.players[1].learnStart);
    stage.pads.pads[0].buttons = 0;
    stage.poll(0);
    QCOMPARE(stage.settings(), before);
    QCOMPARE(stage.learning(), QStringList{u"learnStartR"_s});
}

void tst_GamepadLearn::a_cancelled_pad_learn_leaves_the_pad_playing()
{
    PlayerStage stage({}, 2);
    openPads(stage);
    for (QPushButton *button : {stage.players[0].learnMove, stage.players[0].learnStart}) {
        PlayerStage::click(button);
        PlayerStage::click(button);
    }
    stage.pads.pads[0].thumbLX = 32767;
    stage.pads.pads[0].buttons = XINPUT_GAMEPAD_A;
    stage.poll(0);
    QCOMPARE(stage.step(0), 63);
    QCOMPARE(stage.takeStart(), std::optional(0));
    QVERIFY(!stage.settings().contains(u"XMoveL"_s));
    QVERIFY(!stage.settings().contains(u"XStartL"_s));
}

QTEST_MAIN(tst_GamepadLearn)

#include "tst_gamepadlearn.moc"
