#include "playerstage.h"

#include <QKeyEvent>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString learntLook =
    u"QPushButton {background-color:#97A;} QPushButton:hover {background-color:#FF4;} "
    "QPushButton:pressed {background-color:#DD0;} QPushButton:disabled {background-color:#999;}"_s;
const QString notLearntLook =
    u"QPushButton {background-color:#BBB;} QPushButton:hover {background-color:#FF4;} "
    "QPushButton:pressed {background-color:#DD0;} QPushButton:disabled {background-color:#999;}"_s;
const QString learningLook =
    u"QPushButton {background-color:#08F;} QPushButton:hover {background-color:#0AF;} "
    "QPushButton:pressed {background-color:#08D;}"_s;

QStringList controls()
{
    return {u"Up"_s, u"Down"_s, u"Start"_s};
}

QString keyOf(const QString &control, int side)
{
    return u"Keyboard"_s + control + (side == 0 ? u'L' : u'R');
}

QPushButton *buttonOf(const PlayerStage &stage, const QString &control, int side)
{
    const PlayerStage::Player &player = stage.players[size_t(side)];
    return control == u"Up"_s  ? player.learnUp
        : control == u"Down"_s ? player.learnDown
                               : player.learnStart;
}

/// The buttons that show that they are learning.
QList<QPushButton *> learningButtons(const PlayerStage &stage)
{
    QList<QPushButton *> learning;
    for (const int side : {0, 1}) {
        for (const QString &control : controls()) {
            QPushButton *button = buttonOf(stage, control, side);
            if (button->text() == u"Learning "_s + control + u"..."_s
                && button->styleSheet() == learningLook)
                learning.append(button);
        }
    }
    return learning;
}

} // namespace

class tst_KeyLearn : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void a_player_on_the_keyboard_has_three_keys_to_learn_data();
    void a_player_on_the_keyboard_has_three_keys_to_learn();
    void a_key_is_learnt_by_the_next_press_data();
    void a_key_is_learnt_by_the_next_press();
    void a_second_click_cancels_data();
    void a_second_click_cancels();
    void only_one_control_is_learnt_at_a_time();
    void a_learnt_key_plays_and_is_kept();
    void a_key_that_is_bound_already_is_learnt_too();
    void a_key_of_the_right_player_is_learnt_for_the_left();
    void the_left_players_keys_keep_working_while_the_right_learns();
    void the_keys_of_a_left_player_on_midi_are_learnt_for_the_right();
    void a_player_on_midi_learns_no_key();
    void a_key_without_a_code_is_not_learnt();
    void keys_that_operate_widgets_are_learnt_data();
    void keys_that_operate_widgets_are_learnt();
    void learning_a_direction_stops_the_paddle();

private:
    void start(const PlayerStage::Settings &settings, const QStringList &midiDevices = {});
    void press(Qt::Key key) const { QTest::keyPress(m_stage->widget()->windowHandle(), key); }
    void learn(const QString &control, int side) const
    {
        PlayerStage::click(buttonOf(*m_stage, control, side));
    }
    QString stored(const QString &control, int side) const
    {
        return m_stage->settings().value(keyOf(control, side));
    }

    std::unique_ptr<PlayerStage> m_stage;
};

void tst_KeyLearn::cleanup()
{
    m_stage.reset();
}

void tst_KeyLearn::start(const PlayerStage::Settings &settings, const QStringList &midiDevices)
{
    m_stage = std::make_unique<PlayerStage>(midiDevices, 0, settings);
    m_stage->open();
    QVERIFY(QTest::qWaitForWindowActive(m_stage->widget()));
}

namespace {

void addControls()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<QString>("control");
    for (const int side : {0, 1}) {
        for (const QString &control : controls())
            QTest::addRow("%s %s", side == 0 ? "left" : "right", qPrintable(control))
                << side << control;
    }
}

} // namespace

void tst_KeyLearn::a_player_on_the_keyboard_has_three_keys_to_learn_data()
{
    addControls();
}

void tst_KeyLearn::a_player_on_the_keyboard_has_three_keys_to_learn()
{
    QFETCH(int, side);
    QFETCH(QString, control);
    PlayerStage::Settings settings = bothOn(u"KEYBOARD"_s);
    settings.insert(keyOf(control, side), QString::number(Qt::Key_W));
    start(settings);
    for (const int s : {0, 1}) {
        QVERIFY(!m_stage->players[size_t(s)].learnMove->isVisible());
        for (const QString &other : controls()) {
            const QPushButton *button = buttonOf(*m_stage, other, s);
            QVERIFY(button->isVisible());
            QVERIFY(button->isEnabled());
            QCOMPARE(button->text(), u"Click to learn "_s + other + u" - "_s);
            const bool learnt = s == side && other == control;
            QCOMPARE(button->styleSheet(), learnt ? learntLook : notLearntLook);
        }
    }
}

void tst_KeyLearn::a_key_is_learnt_by_the_next_press_data()
{
    addControls();
}

void tst_KeyLearn::a_key_is_learnt_by_the_next_press()
{
    QFETCH(int, side);
    QFETCH(QString, control);
    start(bothOn(u"KEYBOARD"_s));
    const PlayerStage::Settings before = m_stage->settings();
    QPushButton *button = buttonOf(*m_stage, control, side);
    PlayerStage::click(button);
    QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>{button});
    press(Qt::Key_W);
    QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>());
    QCOMPARE(button->text(), u"Click to learn "_s + control + u" - "_s);
    QCOMPARE(button->styleSheet(), learntLook);
    PlayerStage::Settings expected = before;
    expected.insert(keyOf(control, side), QString::number(Qt::Key_W));
    QCOMPARE(m_stage->settings(), expected);
    QCOMPARE(m_stage->step(side), 0);
    QVERIFY(!m_stage->takeStart());
    press(Qt::Key_E); // too late
    QCOMPARE(m_stage->settings(), expected);
}

void tst_KeyLearn::a_second_click_cancels_data()
{
    addControls();
}

void tst_KeyLearn::a_second_click_cancels()
{
    QFETCH(int, side);
    QFETCH(QString, control);
    start(bothOn(u"KEYBOARD"_s));
    const PlayerStage::Settings before = m_stage->settings();
    learn(control, side);
    learn(control, side);
    QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>());
    const QPushButton *button = buttonOf(*m_stage, control, side);
    QCOMPARE(button->text(), u"Click to learn "_s + control + u" - "_s);
    QCOMPARE(button->styleSheet(), notLearntLook);
    press(Qt::Key_W);
    QCOMPARE(m_stage->settings(), before);
}

void tst_KeyLearn::only_one_control_is_learnt_at_a_time()
{
    start(bothOn(u"KEYBOARD"_s));
    const PlayerStage::Settings before = m_stage->settings();
    QList<QPushButton *> buttons;
    for (const int side : {0, 1}) {
        for (const QString &control : controls())
            buttons.append(buttonOf(*m_stage, control, side));
    }
    for (QPushButton *first : std::as_const(buttons)) {
        for (QPushButton *second : std::as_const(buttons)) {
            if (first == second)
                continue;
            PlayerStage::click(first);
            PlayerStage::click(second);
            QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>{second});
            PlayerStage::click(second);
            QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>());
        }
    }
    QCOMPARE(m_stage->settings(), before);
}

void tst_KeyLearn::a_learnt_key_plays_and_is_kept()
{
    start(bothOn(u"KEYBOARD"_s));
    learn(u"Up"_s, 1);
    press(Qt::Key_Shift);
    press(Qt::Key_Shift);
    QCOMPARE(m_stage->step(1), 63);
    m_stage->close();
    m_stage->open();
    press(Qt::Key_Shift);
    QCOMPARE(m_stage->step(1), 63);
}

void tst_KeyLearn::a_key_that_is_bound_already_is_learnt_too()
{
    PlayerStage::Settings settings = bothOn(u"KEYBOARD"_s);
    settings.insert(u"KeyboardStartL"_s, QString::number(Qt::Key_W));
    start(settings);
    learn(u"Down"_s, 0);
    press(Qt::Key_W);
    QCOMPARE(stored(u"Down"_s, 0), QString::number(Qt::Key_W));
    QCOMPARE(stored(u"Start"_s, 0), QString::number(Qt::Key_W));
    QVERIFY(!m_stage->takeStart());
}

void tst_KeyLearn::a_key_of_the_right_player_is_learnt_for_the_left()
{
    PlayerStage::Settings settings = bothOn(u"KEYBOARD"_s);
    settings.insert(u"KeyboardDownR"_s, QString::number(Qt::Key_K));
    start(settings);
    learn(u"Up"_s, 0);
    press(Qt::Key_K);
    QCOMPARE(stored(u"Up"_s, 0), QString::number(Qt::Key_K));
    QCOMPARE(m_stage->step(1), 0);
}

void tst_KeyLearn::the_left_players_keys_keep_working_while_the_right_learns()
{
    PlayerStage::Settings settings = bothOn(u"KEYBOARD"_s);
    settings.insert(u"KeyboardUpL"_s, QString::number(Qt::Key_W));
    settings.insert(u"KeyboardStartL"_s, QString::number(Qt::Key_D));
    start(settings);
    learn(u"Up"_s, 1);
    press(Qt::Key_W);
    QCOMPARE(m_stage->step(0), 63);
    press(Qt::Key_D);
    QCOMPARE(m_stage->takeStart(), 0);
    QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>{m_stage->players[1].learnUp});
    QCOMPARE(stored(u"Up"_s, 1), QString());
    press(Qt::Key_I);
    QCOMPARE(stored(u"Up"_s, 1), QString::number(Qt::Key_I));
}

void tst_KeyLearn::the_keys_of_a_left_player_on_midi_are_learnt_for_the_right()
{
    start({{u"ControlModeLeft"_s, u"MIDI"_s}, {u"ControlModeRight"_s, u"KEYBOARD"_s},
        {u"KeyboardUpL"_s, QString::number(Qt::Key_W)}});
    learn(u"Start"_s, 1);
    press(Qt::Key_W);
    QCOMPARE(stored(u"Start"_s, 1), QString::number(Qt::Key_W));
    QCOMPARE(m_stage->step(0), 0);
}

void tst_KeyLearn::a_player_on_midi_learns_no_key()
{
    start(
        {{u"ControlModeLeft"_s, u"MIDI"_s}, {u"ControlModeRight"_s, u"KEYBOARD"_s}}, {u"Fader"_s});
    QTest::keyClick(m_stage->players[0].midiList, Qt::Key_Down);
    learn(u"Start"_s, 0);
    QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>{m_stage->players[0].learnStart});
    press(Qt::Key_W);
    QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>{m_stage->players[0].learnStart});
    QCOMPARE(stored(u"Start"_s, 0), QString());
    QCOMPARE(stored(u"Start"_s, 1), QString());
}

void tst_KeyLearn::a_key_without_a_code_is_not_learnt()
{
    start(bothOn(u"KEYBOARD"_s));
    learn(u"Up"_s, 0);
    QKeyEvent event(QEvent::KeyPress, 0, {});
    QCoreApplication::sendEvent(m_stage->widget()->focusWidget(), &event);
    QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>{m_stage->players[0].learnUp});
    QCOMPARE(stored(u"Up"_s, 0), QString());
}

void tst_KeyLearn::keys_that_operate_widgets_are_learnt_data()
{
    QTest::addColumn<Qt::Key>("key");
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape,
             Qt::Key_Up, Qt::Key_Control, Qt::Key_F10})
        QTest::addRow("%x", key) << key;
}

void tst_KeyLearn::keys_that_operate_widgets_are_learnt()
{
    QFETCH(Qt::Key, key);
    start(bothOn(u"KEYBOARD"_s));
    learn(u"Down"_s, 0);
    press(key);
    QTest::keyRelease(m_stage->widget()->windowHandle(), key);
    QCOMPARE(stored(u"Down"_s, 0), QString::number(key));
    QCOMPARE(learningButtons(*m_stage), QList<QPushButton *>());
    press(key);
    QCOMPARE(m_stage->step(0), -64);
}

void tst_KeyLearn::learning_a_direction_stops_the_paddle()
{
    PlayerStage::Settings settings = bothOn(u"KEYBOARD"_s);
    settings.insert(u"KeyboardUpL"_s, QString::number(Qt::Key_W));
    start(settings);
    for (const QString &control : {u"Up"_s, u"Down"_s}) {
        press(Qt::Key_W);
        QCOMPARE(m_stage->step(0), 63);
        learn(control, 0);
        QCOMPARE(m_stage->step(0), 0);
        learn(control, 0);
    }
}

QTEST_MAIN(tst_KeyLearn)
#include "tst_keylearn.moc"
