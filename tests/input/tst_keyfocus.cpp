#include "keyboardstage.h"

#include <QDialog>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

/// Records the keys that reach the window because no other object used them.
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

/// Which widget receives a key, and what happens to held keys when the window loses the focus.
class tst_KeyFocus : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { m_stage.reset(); }
    void a_key_works_whichever_widget_has_the_focus();
    void a_used_key_is_not_passed_on_data();
    void a_used_key_is_not_passed_on();
    void an_unused_key_reaches_the_widget_with_the_focus();
    void a_key_without_a_code_does_not_match_an_unlearnt_control();
    void a_dialog_keeps_its_keys();
    void the_paddle_stops_when_the_window_is_deactivated();
    void the_paddle_stops_when_a_list_pops_up();
    void a_change_of_focus_inside_the_window_stops_nothing();
    void deactivating_the_window_stops_no_paddle_of_another_device();

private:
    void start(const PlayerStage::Settings &others = {}, const QStringList &midiDevices = {})
    {
        m_stage = std::make_unique<KeyboardStage>(others, midiDevices, PlayerStage::WholeWindow);
    }

    std::unique_ptr<KeyboardStage> m_stage;
};

void tst_KeyFocus::a_key_works_whichever_widget_has_the_focus()
{
    start();
    int tried = 0;
    for (QWidget *widget : m_stage->widget()->findChildren<QWidget *>()) {
        if (!widget->isVisible() || !widget->isEnabled() || !(widget->focusPolicy() & Qt::TabFocus))
            continue;
        widget->setFocus();
        QCOMPARE(QApplication::focusWidget(), widget);
        m_stage->press(Qt::Key_W);
        QCOMPARE(m_stage->step(0), fullUp);
        m_stage->release(Qt::Key_W);
        QCOMPARE(m_stage->step(0), 0);
        ++tried;
    }
    QVERIFY(tried > 10);
}

void tst_KeyFocus::a_used_key_is_not_passed_on_data()
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

void tst_KeyFocus::a_used_key_is_not_passed_on()
{
    QFETCH(QEvent::Type, type);
    QFETCH(Qt::Key, key);
    QFETCH(bool, autoRepeat);
    QFETCH(bool, used);
    start();
    m_stage->players[0].learnUp->setFocus(); // a button, which ignores letters
    const UnusedKeys unused(m_stage->widget());
    m_stage->send(type, key, autoRepeat);
    QCOMPARE(unused.types, used ? QList<QEvent::Type>() : QList<QEvent::Type>{type});
}

void tst_KeyFocus::an_unused_key_reaches_the_widget_with_the_focus()
{
    start({{u"ControlModeRight"_s, u"MIDI"_s}, {u"KeyboardUpL"_s, QString::number(Qt::Key_Left)},
        {u"KeyboardUpR"_s, QString::number(Qt::Key_Right)}});
    auto *slider = m_stage->players[1].sensitivity;
    slider->setFocus();
    m_stage->press(Qt::Key_Right);
    QCOMPARE(slider->value(), 513);
    m_stage->press(Qt::Key_Left);
    QCOMPARE(slider->value(), 513);
    QCOMPARE(m_stage->step(0), fullUp);
}

void tst_KeyFocus::a_key_without_a_code_does_not_match_an_unlearnt_control()
{
    start({{u"KeyboardUpL"_s, u"0"_s}, {u"KeyboardStartL"_s, u"0"_s}});
    m_stage->press(Qt::Key_S);
    m_stage->players[0].learnUp->setFocus();
    const UnusedKeys unused(m_stage->widget());
    m_stage->send(QEvent::KeyPress, 0);
    m_stage->send(QEvent::KeyRelease, 0);
    QCOMPARE(m_stage->step(0), fullDown);
    QVERIFY(!m_stage->takeStart());
    QCOMPARE(unused.types.size(), 2);
}

void tst_KeyFocus::a_dialog_keeps_its_keys()
{
    start();
    QDialog dialog(m_stage->widget());
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

void tst_KeyFocus::the_paddle_stops_when_the_window_is_deactivated()
{
    start();
    m_stage->press(Qt::Key_W);
    m_stage->press(Qt::Key_K);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QCOMPARE(m_stage->step(0), 0);
    QCOMPARE(m_stage->step(1), 0);
}

void tst_KeyFocus::the_paddle_stops_when_a_list_pops_up()
{
    start();
    m_stage->press(Qt::Key_W);
    auto *zones = m_stage->widget()->findChild<QComboBox *>(u"zoneComboBox"_s);
    QTest::mouseClick(zones, Qt::LeftButton);
    QVERIFY(QApplication::activePopupWidget());
    QCOMPARE(m_stage->step(0), 0);
    zones->hidePopup();
    // The popup also took the window system's focus, which returns asynchronously.
    QTRY_VERIFY(!QGuiApplication::focusWindow()
        || QGuiApplication::focusWindow() == m_stage->widget()->windowHandle());
    m_stage->widget()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_stage->widget()));
    QCoreApplication::processEvents();
    m_stage->press(Qt::Key_W);
    QCOMPARE(m_stage->step(0), fullUp);
}

void tst_KeyFocus::a_change_of_focus_inside_the_window_stops_nothing()
{
    start();
    m_stage->press(Qt::Key_W);
    QTest::keyClick(m_stage->widget()->windowHandle(), Qt::Key_Tab);
    m_stage->players[1].sensitivity->setFocus();
    QCOMPARE(m_stage->step(0), fullUp);
}

void tst_KeyFocus::deactivating_the_window_stops_no_paddle_of_another_device()
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

QTEST_MAIN(tst_KeyFocus)
#include "tst_keyfocus.moc"
