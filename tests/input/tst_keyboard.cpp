#include "expiredtimers.h"
#include "keyboardstage.h"

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class tst_Keyboard : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void a_held_key_holds_the_paddle_at_a_full_step_data();
    void a_held_key_holds_the_paddle_at_a_full_step();
    void the_sensitivity_sets_the_step_data();
    void the_sensitivity_sets_the_step();
    void releasing_one_direction_stops_the_paddle_though_the_other_is_held();
    void repeats_of_a_held_key_change_nothing();
    void start_requests_once_until_its_pause_is_over_data();
    void start_requests_once_until_its_pause_is_over();
    void the_pause_of_start_lasts_100_ms_data();
    void the_pause_of_start_lasts_100_ms();
    void every_press_of_start_restarts_its_pause_data();
    void every_press_of_start_restarts_its_pause();
    void each_side_has_its_own_pause();
    void a_key_bound_to_start_and_up_only_starts();
    void a_key_bound_to_up_and_down_goes_up();
    void a_key_of_the_left_never_reaches_the_right();
    void keys_act_only_for_a_player_on_the_keyboard_data();
    void keys_act_only_for_a_player_on_the_keyboard();

private:
    void start(const PlayerStage::Settings &others = {})
    {
        m_stage = std::make_unique<KeyboardStage>(others);
    }
    /// Presses the start key of a side and waits until its pause is over. Returns the timer of the
    /// pause.
    QTimer *pressAndLeaveAlone(int side) const;

    std::unique_ptr<KeyboardStage> m_stage;
};

void tst_Keyboard::cleanup()
{
    m_stage.reset();
}

QTimer *tst_Keyboard::pressAndLeaveAlone(int side) const
{
    const ExpiredTimers expired;
    m_stage->send(QEvent::KeyPress, keysOf[std::size_t(side)].start);
    m_stage->takeStart();
    // The game's own timers never stop.
    const auto pause = [&] {
        return std::find_if(expired.timers.begin(), expired.timers.end(),
            [](const QTimer *timer) { return timer->isSingleShot(); });
    };
    if (!QTest::qWaitFor([&] { return pause() != expired.timers.end(); }))
        return nullptr;
    return *pause();
}

void tst_Keyboard::a_held_key_holds_the_paddle_at_a_full_step_data()
{
    addSides();
}

void tst_Keyboard::a_held_key_holds_the_paddle_at_a_full_step()
{
    QFETCH(int, side);
    start();
    const Keys &keys = keysOf[std::size_t(side)];
    for (const auto &[key, step] : {std::pair(keys.up, 63), std::pair(keys.down, -64)}) {
        m_stage->press(key);
        QCOMPARE(m_stage->step(side), step);
        QCOMPARE(m_stage->step(1 - side), 0);
        m_stage->release(key);
        QCOMPARE(m_stage->step(side), 0);
    }
    QVERIFY(!m_stage->takeStart());
}

void tst_Keyboard::the_sensitivity_sets_the_step_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<QString>("slider");
    QTest::addColumn<int>("up");
    QTest::addColumn<int>("down");
    for (const int side : {0, 1}) {
        const char *name = side == 0 ? "left" : "right";
        QTest::addRow("%s, least", name) << side << u"256"_s << 42 << -42;
        QTest::addRow("%s, middle", name) << side << u"512"_s << 63 << -64;
        QTest::addRow("%s, most", name) << side << u"768"_s << 127 << -128;
    }
}

void tst_Keyboard::the_sensitivity_sets_the_step()
{
    QFETCH(int, side);
    QFETCH(QString, slider);
    QFETCH(int, up);
    QFETCH(int, down);
    start({{side == 0 ? u"SensL"_s : u"SensR"_s, slider}});
    const Keys &keys = keysOf[std::size_t(side)];
    m_stage->press(keys.up);
    QCOMPARE(m_stage->step(side), up);
    m_stage->press(keys.down);
    QCOMPARE(m_stage->step(side), down);
    m_stage->press(keysOf[std::size_t(1 - side)].up);
    QCOMPARE(m_stage->step(1 - side), fullUp);
}

void tst_Keyboard::releasing_one_direction_stops_the_paddle_though_the_other_is_held()
{
    start();
    m_stage->press(Qt::Key_W);
    m_stage->press(Qt::Key_S);
    QCOMPARE(m_stage->step(0), fullDown);
    m_stage->release(Qt::Key_S);
    QCOMPARE(m_stage->step(0), 0);
    m_stage->send(QEvent::KeyPress, Qt::Key_W, true);
    QCOMPARE(m_stage->step(0), fullUp);
}

void tst_Keyboard::repeats_of_a_held_key_change_nothing()
{
    start();
    m_stage->press(Qt::Key_W);
    for (int i = 0; i < 3; ++i) {
        m_stage->send(QEvent::KeyRelease, Qt::Key_W, true);
        QCOMPARE(m_stage->step(0), fullUp);
        m_stage->send(QEvent::KeyPress, Qt::Key_W, true);
        QCOMPARE(m_stage->step(0), fullUp);
    }
    m_stage->release(Qt::Key_W);
    QCOMPARE(m_stage->step(0), 0);
}

void tst_Keyboard::start_requests_once_until_its_pause_is_over_data()
{
    addSides();
}

void tst_Keyboard::start_requests_once_until_its_pause_is_over()
{
    QFETCH(int, side);
    start();
    const Qt::Key key = keysOf[std::size_t(side)].start;
    const QTimer *pause = pressAndLeaveAlone(side);
    QVERIFY(pause);
    for (int times = 0; times < 2; ++times) {
        m_stage->send(QEvent::KeyPress, key);
        QCOMPARE(m_stage->takeStart(), side);
        m_stage->send(QEvent::KeyRelease, key);
        m_stage->send(QEvent::KeyPress, key);
        m_stage->send(QEvent::KeyPress, key, true);
        QVERIFY(!m_stage->takeStart());
        m_stage->send(QEvent::KeyRelease, key);
        QTRY_VERIFY(!pause->isActive());
    }
}

void tst_Keyboard::the_pause_of_start_lasts_100_ms_data()
{
    addSides();
}

void tst_Keyboard::the_pause_of_start_lasts_100_ms()
{
    QFETCH(int, side);
    start();
    const QTimer *pause = pressAndLeaveAlone(side);
    QVERIFY(pause);
    QCOMPARE(pause->interval(), 100);
    QVERIFY(!pause->isActive());
    m_stage->send(QEvent::KeyPress, keysOf[std::size_t(side)].start);
    QVERIFY(pause->isActive());
}

void tst_Keyboard::every_press_of_start_restarts_its_pause_data()
{
    addSides();
}

void tst_Keyboard::every_press_of_start_restarts_its_pause()
{
    QFETCH(int, side);
    start();
    const Qt::Key key = keysOf[std::size_t(side)].start;
    QTimer *pause = pressAndLeaveAlone(side);
    QVERIFY(pause);
    m_stage->send(QEvent::KeyPress, key);
    QCOMPARE(m_stage->takeStart(), side);
    for (const bool autoRepeat : {true, false, true}) {
        pause->setInterval(1h); // kept unless the pause is restarted
        m_stage->send(QEvent::KeyPress, key, autoRepeat);
        QVERIFY(pause->isActive());
        QCOMPARE(pause->interval(), 100);
        QVERIFY(!m_stage->takeStart());
    }
}

void tst_Keyboard::each_side_has_its_own_pause()
{
    start();
    m_stage->send(QEvent::KeyPress, Qt::Key_D);
    QCOMPARE(m_stage->takeStart(), 0);
    m_stage->send(QEvent::KeyPress, Qt::Key_L);
    QCOMPARE(m_stage->takeStart(), 1);
}

void tst_Keyboard::a_key_bound_to_start_and_up_only_starts()
{
    start({{u"KeyboardUpL"_s, QString::number(Qt::Key_D)}});
    m_stage->press(Qt::Key_D);
    QCOMPARE(m_stage->takeStart(), 0);
    QCOMPARE(m_stage->step(0), 0);
}

void tst_Keyboard::a_key_bound_to_up_and_down_goes_up()
{
    start({{u"KeyboardDownL"_s, QString::number(Qt::Key_W)}});
    m_stage->press(Qt::Key_W);
    QCOMPARE(m_stage->step(0), fullUp);
}

void tst_Keyboard::a_key_of_the_left_never_reaches_the_right()
{
    start({{u"KeyboardUpR"_s, QString::number(Qt::Key_W)},
        {u"KeyboardStartR"_s, QString::number(Qt::Key_D)}});
    m_stage->press(Qt::Key_K);
    QCOMPARE(m_stage->step(1), fullDown);
    m_stage->press(Qt::Key_W);
    QCOMPARE(m_stage->step(0), fullUp);
    QCOMPARE(m_stage->step(1), fullDown);
    m_stage->release(Qt::Key_W);
    QCOMPARE(m_stage->step(0), 0);
    QCOMPARE(m_stage->step(1), fullDown);
    m_stage->press(Qt::Key_D);
    QCOMPARE(m_stage->takeStart(), 0);
}

void tst_Keyboard::keys_act_only_for_a_player_on_the_keyboard_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<QString>("mode");
    for (const char *mode : {"MIDI", "XBOX"}) {
        QTest::addRow("left on %s", mode) << 0 << QString::fromLatin1(mode);
        QTest::addRow("right on %s", mode) << 1 << QString::fromLatin1(mode);
    }
}

void tst_Keyboard::keys_act_only_for_a_player_on_the_keyboard()
{
    QFETCH(int, side);
    QFETCH(QString, mode);
    start({{side == 0 ? u"ControlModeLeft"_s : u"ControlModeRight"_s, mode}});
    const Keys &deaf = keysOf[std::size_t(side)];
    for (const Qt::Key key : {deaf.up, deaf.down, deaf.start}) {
        m_stage->press(key);
        QCOMPARE(m_stage->step(side), 0);
        QVERIFY(!m_stage->takeStart());
    }
    m_stage->press(keysOf[std::size_t(1 - side)].up);
    QCOMPARE(m_stage->step(1 - side), fullUp);
}

QTEST_MAIN(tst_Keyboard)
#include "tst_keyboard.moc"
