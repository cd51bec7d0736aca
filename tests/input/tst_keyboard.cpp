#include "stage.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

struct Keys
{
    Qt::Key up;
    Qt::Key down;
    Qt::Key start;
};
constexpr std::array<Keys, 2> keysOf = {
    {{Qt::Key_W, Qt::Key_S, Qt::Key_D}, {Qt::Key_I, Qt::Key_K, Qt::Key_L}}};
constexpr std::array<int, 2> fullStep = {63, -64}; // up, down

/// Both players on the keyboard with their keys learnt, and what else is given.
Stage::Settings keyboardSettings(const Stage::Settings &others = {})
{
    Stage::Settings settings = {
        {u"ControlModeLeft"_s, u"KEYBOARD"_s}, {u"ControlModeRight"_s, u"KEYBOARD"_s}};
    for (const int side : {0, 1}) {
        const Keys &keys = keysOf[size_t(side)];
        const QChar letter = side == 0 ? u'L' : u'R';
        settings.insert(u"KeyboardUp"_s + letter, QString::number(keys.up));
        settings.insert(u"KeyboardDown"_s + letter, QString::number(keys.down));
        settings.insert(u"KeyboardStart"_s + letter, QString::number(keys.start));
    }
    settings.insert(others);
    return settings;
}

/// Writes down the keys that came through to the window, because nobody on their way used them.
class UnusedKeys : public QObject
{
public:
    explicit UnusedKeys(QWidget *window) { window->installEventFilter(this); }
    bool eventFilter(QObject * /*window*/, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
            types.append(event->type());
        return false;
    }

    QList<QEvent::Type> types;
};

} // namespace

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
    void start_requests_once_until_it_was_left_alone_data();
    void start_requests_once_until_it_was_left_alone();
    void every_press_of_start_makes_the_pause_begin_anew();
    void the_pause_of_one_side_is_not_that_of_the_other();
    void a_key_bound_to_start_and_up_only_starts();
    void a_key_bound_to_up_and_down_goes_up();
    void a_key_of_the_left_never_reaches_the_right();
    void only_a_player_on_the_keyboard_hears_it_data();
    void only_a_player_on_the_keyboard_hears_it();
    void a_key_works_whichever_widget_has_the_focus();
    void a_used_key_goes_no_further_data();
    void a_used_key_goes_no_further();
    void an_unused_key_reaches_the_widget_with_the_focus();
    void a_key_without_a_code_is_not_what_was_not_learnt();
    void a_dialog_keeps_its_keys();
    void the_paddle_stops_when_the_window_is_left();
    void the_paddle_stops_when_a_list_pops_up();
    void a_change_of_focus_inside_the_window_stops_nothing();
    void leaving_the_window_stops_no_paddle_of_another_device();

private:
    void start(const Stage::Settings &others = {}, const QStringList &midiDevices = {});
    void press(Qt::Key key) const { QTest::keyPress(m_stage->window->windowHandle(), key); }
    void release(Qt::Key key) const { QTest::keyRelease(m_stage->window->windowHandle(), key); }
    /// As a held key or one without a code comes, which QTest knows none of.
    void send(QEvent::Type type, int key, bool autoRepeat = false) const;
    /// Lets more time pass than the pause that a start key needs.
    static void leaveAlone();

    std::unique_ptr<Stage> m_stage;
};

void tst_Keyboard::cleanup()
{
    m_stage.reset();
}

void tst_Keyboard::start(const Stage::Settings &others, const QStringList &midiDevices)
{
    m_stage = std::make_unique<Stage>(midiDevices, 0, keyboardSettings(others));
    m_stage->open();
    QVERIFY(QTest::qWaitForWindowActive(m_stage->window.get()));
}

void tst_Keyboard::send(QEvent::Type type, int key, bool autoRepeat) const
{
    QKeyEvent event(type, key, {}, {}, autoRepeat);
    QCoreApplication::sendEvent(m_stage->window->focusWidget(), &event);
}

void tst_Keyboard::leaveAlone()
{
    // Timers end in order: one that began later and takes longer ends after that of the key.
    bool over = false;
    QTimer::singleShot(150, [&over] { over = true; });
    QTRY_VERIFY(over);
}

void tst_Keyboard::a_held_key_holds_the_paddle_at_a_full_step_data()
{
    addSides();
}

void tst_Keyboard::a_held_key_holds_the_paddle_at_a_full_step()
{
    QFETCH(int, side);
    start();
    const Keys &keys = keysOf[size_t(side)];
    for (const auto &[key, step] : {std::pair(keys.up, 63), std::pair(keys.down, -64)}) {
        press(key);
        QCOMPARE(m_stage->step(side), step);
        QCOMPARE(m_stage->step(1 - side), 0);
        release(key);
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
    const Keys &keys = keysOf[size_t(side)];
    press(keys.up);
    QCOMPARE(m_stage->step(side), up);
    press(keys.down);
    QCOMPARE(m_stage->step(side), down);
    press(keysOf[size_t(1 - side)].up);
    QCOMPARE(m_stage->step(1 - side), fullStep[0]);
}

void tst_Keyboard::releasing_one_direction_stops_the_paddle_though_the_other_is_held()
{
    start();
    press(Qt::Key_W);
    press(Qt::Key_S);
    QCOMPARE(m_stage->step(0), fullStep[1]);
    release(Qt::Key_S);
    QCOMPARE(m_stage->step(0), 0);
    send(QEvent::KeyPress, Qt::Key_W, true);
    QCOMPARE(m_stage->step(0), fullStep[0]);
}

void tst_Keyboard::repeats_of_a_held_key_change_nothing()
{
    start();
    press(Qt::Key_W);
    for (int i = 0; i < 3; ++i) {
        send(QEvent::KeyRelease, Qt::Key_W, true);
        QCOMPARE(m_stage->step(0), fullStep[0]);
        send(QEvent::KeyPress, Qt::Key_W, true);
        QCOMPARE(m_stage->step(0), fullStep[0]);
    }
    release(Qt::Key_W);
    QCOMPARE(m_stage->step(0), 0);
}

void tst_Keyboard::start_requests_once_until_it_was_left_alone_data()
{
    addSides();
}

void tst_Keyboard::start_requests_once_until_it_was_left_alone()
{
    QFETCH(int, side);
    start();
    const Qt::Key key = keysOf[size_t(side)].start;
    for (int times = 0; times < 2; ++times) {
        send(QEvent::KeyPress, key);
        QCOMPARE(m_stage->takeStart(), side);
        send(QEvent::KeyRelease, key);
        send(QEvent::KeyPress, key);
        send(QEvent::KeyPress, key, true);
        QVERIFY(!m_stage->takeStart());
        send(QEvent::KeyRelease, key);
        leaveAlone();
    }
}

void tst_Keyboard::every_press_of_start_makes_the_pause_begin_anew()
{
    start();
    constexpr int longest = 90;
    bool fair = false;
    for (int attempt = 0; !fair && attempt < 50; ++attempt) {
        leaveAlone();
        QElapsedTimer sincePress;
        send(QEvent::KeyPress, Qt::Key_D);
        QCOMPARE(m_stage->takeStart(), 0);
        fair = true; // unless this machine was away for longer than a repeat takes
        for (int repeats = 0; fair && repeats < 4; ++repeats) {
            sincePress.start();
            QTest::qWait(40);
            fair = sincePress.elapsed() < longest;
            send(QEvent::KeyPress, Qt::Key_D, true);
            QVERIFY(!fair || !m_stage->takeStart());
        }
        m_stage->takeStart();
    }
    QVERIFY(fair);
}

void tst_Keyboard::the_pause_of_one_side_is_not_that_of_the_other()
{
    start();
    send(QEvent::KeyPress, Qt::Key_D);
    QCOMPARE(m_stage->takeStart(), 0);
    send(QEvent::KeyPress, Qt::Key_L);
    QCOMPARE(m_stage->takeStart(), 1);
}

void tst_Keyboard::a_key_bound_to_start_and_up_only_starts()
{
    start({{u"KeyboardUpL"_s, QString::number(Qt::Key_D)}});
    press(Qt::Key_D);
    QCOMPARE(m_stage->takeStart(), 0);
    QCOMPARE(m_stage->step(0), 0);
}

void tst_Keyboard::a_key_bound_to_up_and_down_goes_up()
{
    start({{u"KeyboardDownL"_s, QString::number(Qt::Key_W)}});
    press(Qt::Key_W);
    QCOMPARE(m_stage->step(0), fullStep[0]);
}

void tst_Keyboard::a_key_of_the_left_never_reaches_the_right()
{
    start({{u"KeyboardUpR"_s, QString::number(Qt::Key_W)},
        {u"KeyboardStartR"_s, QString::number(Qt::Key_D)}});
    press(Qt::Key_K);
    QCOMPARE(m_stage->step(1), fullStep[1]);
    press(Qt::Key_W);
    QCOMPARE(m_stage->step(0), fullStep[0]);
    QCOMPARE(m_stage->step(1), fullStep[1]);
    release(Qt::Key_W);
    QCOMPARE(m_stage->step(0), 0);
    QCOMPARE(m_stage->step(1), fullStep[1]);
    press(Qt::Key_D);
    QCOMPARE(m_stage->takeStart(), 0);
}

void tst_Keyboard::only_a_player_on_the_keyboard_hears_it_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<QString>("mode");
    for (const char *mode : {"MIDI", "XBOX"}) {
        QTest::addRow("left on %s", mode) << 0 << QString::fromLatin1(mode);
        QTest::addRow("right on %s", mode) << 1 << QString::fromLatin1(mode);
    }
}

void tst_Keyboard::only_a_player_on_the_keyboard_hears_it()
{
    QFETCH(int, side);
    QFETCH(QString, mode);
    start({{side == 0 ? u"ControlModeLeft"_s : u"ControlModeRight"_s, mode}});
    const Keys &deaf = keysOf[size_t(side)];
    for (const Qt::Key key : {deaf.up, deaf.down, deaf.start}) {
        press(key);
        QCOMPARE(m_stage->step(side), 0);
        QVERIFY(!m_stage->takeStart());
    }
    press(keysOf[size_t(1 - side)].up);
    QCOMPARE(m_stage->step(1 - side), fullStep[0]);
}

void tst_Keyboard::a_key_works_whichever_widget_has_the_focus()
{
    start();
    int tried = 0;
    for (QWidget *widget : m_stage->window->findChildren<QWidget *>()) {
        if (!widget->isVisible() || !widget->isEnabled() || !(widget->focusPolicy() & Qt::TabFocus))
            continue;
        widget->setFocus();
        QCOMPARE(QApplication::focusWidget(), widget);
        press(Qt::Key_W);
        QCOMPARE(m_stage->step(0), fullStep[0]);
        release(Qt::Key_W);
        QCOMPARE(m_stage->step(0), 0);
        ++tried;
    }
    QVERIFY(tried > 10);
}

void tst_Keyboard::a_used_key_goes_no_further_data()
{
    QTest::addColumn<QEvent::Type>("type");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("autoRepeat");
    QTest::addColumn<bool>("used");
    QTest::addRow("press of up") << QEvent::KeyPress << Qt::Key_W << false << true;
    QTest::addRow("repeated press of down") << QEvent::KeyPress << Qt::Key_K << true << true;
    QTest::addRow("press of start") << QEvent::KeyPress << Qt::Key_D << false << true;
    QTest::addRow("repeated press of start") << QEvent::KeyPress << Qt::Key_L << true << true;
    QTest::addRow("release of up") << QEvent::KeyRelease << Qt::Key_W << false << true;
    QTest::addRow("repeated release of down") << QEvent::KeyRelease << Qt::Key_S << true << true;
    QTest::addRow("release of start") << QEvent::KeyRelease << Qt::Key_D << false << false;
    QTest::addRow("press of another key") << QEvent::KeyPress << Qt::Key_Q << false << false;
    QTest::addRow("release of another key") << QEvent::KeyRelease << Qt::Key_Q << false << false;
}

void tst_Keyboard::a_used_key_goes_no_further()
{
    QFETCH(QEvent::Type, type);
    QFETCH(Qt::Key, key);
    QFETCH(bool, autoRepeat);
    QFETCH(bool, used);
    start();
    m_stage->players[0].learnUp->setFocus(); // a button, which has no use for letters
    const UnusedKeys unused(m_stage->window.get());
    send(type, key, autoRepeat);
    QCOMPARE(unused.types, used ? QList<QEvent::Type>() : QList<QEvent::Type>{type});
}

void tst_Keyboard::an_unused_key_reaches_the_widget_with_the_focus()
{
    start({{u"ControlModeRight"_s, u"MIDI"_s}, {u"KeyboardUpL"_s, QString::number(Qt::Key_Left)},
        {u"KeyboardUpR"_s, QString::number(Qt::Key_Right)}});
    auto *slider = m_stage->players[1].sensitivity;
    slider->setFocus();
    press(Qt::Key_Right);
    QCOMPARE(slider->value(), 513);
    press(Qt::Key_Left);
    QCOMPARE(slider->value(), 513);
    QCOMPARE(m_stage->step(0), fullStep[0]);
}

void tst_Keyboard::a_key_without_a_code_is_not_what_was_not_learnt()
{
    start({{u"KeyboardUpL"_s, u"0"_s}, {u"KeyboardStartL"_s, u"0"_s}});
    press(Qt::Key_S);
    m_stage->players[0].learnUp->setFocus();
    const UnusedKeys unused(m_stage->window.get());
    send(QEvent::KeyPress, 0);
    send(QEvent::KeyRelease, 0);
    QCOMPARE(m_stage->step(0), fullStep[1]);
    QVERIFY(!m_stage->takeStart());
    QCOMPARE(unused.types.size(), 2);
}

void tst_Keyboard::a_dialog_keeps_its_keys()
{
    start();
    QDialog dialog(m_stage->window.get());
    QLineEdit line(&dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    line.setFocus();
    QTest::keyClick(dialog.windowHandle(), 'w');
    QTest::keyClick(dialog.windowHandle(), 'd');
    QCOMPARE(line.text(), u"wd"_s);
    QCOMPARE(m_stage->step(0), 0);
    QVERIFY(!m_stage->takeStart());
}

void tst_Keyboard::the_paddle_stops_when_the_window_is_left()
{
    start();
    press(Qt::Key_W);
    press(Qt::Key_K);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCOMPARE(m_stage->step(0), 0);
    QCOMPARE(m_stage->step(1), 0);
}

void tst_Keyboard::the_paddle_stops_when_a_list_pops_up()
{
    start();
    press(Qt::Key_W);
    auto *zones = m_stage->window->findChild<QComboBox *>(u"zoneComboBox"_s);
    QTest::mouseClick(zones, Qt::LeftButton);
    QVERIFY(QApplication::activePopupWidget());
    QCOMPARE(m_stage->step(0), 0);
    zones->hidePopup();
    QCoreApplication::processEvents(); // the popup took the focus of the window system too
    m_stage->window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_stage->window.get()));
    press(Qt::Key_W);
    QCOMPARE(m_stage->step(0), fullStep[0]);
}

void tst_Keyboard::a_change_of_focus_inside_the_window_stops_nothing()
{
    start();
    press(Qt::Key_W);
    QTest::keyClick(m_stage->window->windowHandle(), Qt::Key_Tab);
    m_stage->players[1].sensitivity->setFocus();
    QCOMPARE(m_stage->step(0), fullStep[0]);
}

void tst_Keyboard::leaving_the_window_stops_no_paddle_of_another_device()
{
    constexpr int controlChange = 176;
    constexpr int controller = 7;
    start({{u"ControlModeLeft"_s, u"MIDI"_s}, {u"CC_00"_s, QString::number(controlChange)},
              {u"CC_01"_s, QString::number(controller)}},
        {u"Fader"_s});
    QTest::keyClick(m_stage->players[0].midiList, Qt::Key_Down);
    QCOMPARE(m_stage->sendMidi(0, controlChange, controller, 100), 1);
    QCOMPARE(m_stage->step(0), 36);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCOMPARE(m_stage->step(0), 36);
}

QTEST_MAIN(tst_Keyboard)
#include "tst_keyboard.moc"
