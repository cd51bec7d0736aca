#include "runningwindow.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The keys that operate the widgets of a window.
constexpr auto workingKeys = std::to_array({Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter,
    Qt::Key_Select, Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp,
    Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End, Qt::Key_F4, Qt::Key_B, Qt::Key_Escape});

} // namespace

/// The keyboard focus in the operator's window, with real keys, clicks and wheel events.
class tst_RestingFocus : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_running.reset(); }
    void at_the_start_no_key_operates_a_widget();
    void after_a_click_no_key_operates_a_widget_data();
    void after_a_click_no_key_operates_a_widget();
    void a_click_on_the_focused_widget_takes_its_focus();
    void a_list_does_not_keep_the_focus_after_a_choice();
    void a_disabled_widget_passes_its_focus_to_no_other_data();
    void a_disabled_widget_passes_its_focus_to_no_other();
    void tab_begins_at_the_output_button_and_reaches_everything();
    void a_key_reaches_the_widget_focused_by_tab();
    void no_widget_gets_the_focus_when_the_window_is_shown_again();
    void a_learnt_key_works_while_the_focus_rests();
    void the_focus_comes_and_goes_without_repainting_the_window();
    void the_wheel_over_a_closed_list_selects_nothing_data();
    void the_wheel_over_a_closed_list_selects_nothing();
    void the_wheel_in_an_open_list_scrolls_it();

private:
    QWindow *handle() const { return m_running->widget()->windowHandle(); }
    void press(Qt::Key key) const { QTest::keyClick(handle(), key); }
    /// Clicks a widget at a position where radio buttons and check boxes accept it.
    void click(const QWidget *widget) const
    {
        QTest::mouseClick(handle(), Qt::LeftButton, {},
            widget->mapTo(m_running->widget(), QPoint(8, widget->height() / 2)));
    }
    void wheel(QWindow *window, const QPoint &place, int notches) const;
    QWidget *restingPlace() const { return m_running->find(u"centralwidget"_s); }
    /// Everything that a key or a wheel could change.
    QStringList state() const;

    std::unique_ptr<RunningWindow> m_running;
};

void tst_RestingFocus::init()
{
    m_running = std::make_unique<RunningWindow>(
        "[General]\nControlModeLeft=MIDI\nControlModeRight=KEYBOARD\nKeyboardUpR=87\n");
    m_running->host.zones = 3;
    m_running->midi.inputs = {{.name = u"First"_s}, {.name = u"Second"_s}};
    m_running->pads.pads[0].connected = true;
    m_running->open();
    m_running->waitForStatus();
    QVERIFY(m_running->find(u"enableButton"_s)->isEnabled());
    QVERIFY(QTest::qWaitForWindowActive(m_running->widget()));
}

void tst_RestingFocus::wheel(QWindow *window, const QPoint &place, int notches) const
{
    QWheelEvent event(place, window->mapToGlobal(place), {}, QPoint(0, 120 * notches), {}, {},
        Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(window, &event);
}

QStringList tst_RestingFocus::state() const
{
    QStringList all;
    for (const QAbstractButton *button : m_running->widget()->findChildren<QAbstractButton *>())
        all.append(
            u"%1 %2 %3"_s.arg(button->objectName(), button->text()).arg(button->isChecked()));
    for (const QSlider *slider : m_running->widget()->findChildren<QSlider *>())
        all.append(u"%1 %2"_s.arg(slider->objectName()).arg(slider->value()));
    for (const QComboBox *list : m_running->widget()->findChildren<QComboBox *>())
        all.append(u"%1 %2"_s.arg(list->objectName()).arg(list->currentIndex()));
    all.append(QApplication::activePopupWidget() ? u"popup"_s : QString());
    return all;
}

void tst_RestingFocus::at_the_start_no_key_operates_a_widget()
{
    QCOMPARE(QApplication::focusWidget(), restingPlace());
    const QStringList before = state();
    for (const Qt::Key key : workingKeys) {
        press(key);
        QCOMPARE(state(), before);
    }
}

void tst_RestingFocus::after_a_click_no_key_operates_a_widget_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
        {"enableButton", "showButton", "resetButton", "speedSlider", "sensLSlider", "sensRSlider",
            "bitsLCheck", "leftMidiRadio", "leftXboxRadio", "leftKeyboardRadio", "rightXboxRadio",
            "learnUpR", "learnStartR", "label_3", "centralwidget", "genGroupBox"})
        QTest::addRow("%s", name) << QString::fromLatin1(name);
}

void tst_RestingFocus::after_a_click_no_key_operates_a_widget()
{
    QFETCH(QString, name);
    press(Qt::Key_Tab); // moves the focus elsewhere first
    QVERIFY(QApplication::focusWidget() != restingPlace());
    QWidget *widget = m_running->find(name);
    QVERIFY(widget->isVisible() && widget->isEnabled());
    click(widget);
    QCOMPARE(QApplication::focusWidget(), restingPlace());
    if (name.startsWith("learn"_L1))
        click(widget); // ends learning, which would accept the next key
    const QStringList before = state();
    for (const Qt::Key key : workingKeys) {
        press(key);
        QCOMPARE(state(), before);
    }
}

void tst_RestingFocus::a_click_on_the_focused_widget_takes_its_focus()
{
    auto *output = m_running->find<QPushButton>(u"enableButton"_s);
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), output);
    click(output);
    QVERIFY(output->isChecked());
    QCOMPARE(QApplication::focusWidget(), restingPlace());
    press(Qt::Key_Space);
    QVERIFY(output->isChecked());
}

void tst_RestingFocus::a_list_does_not_keep_the_focus_after_a_choice()
{
    auto *zones = m_running->find<QComboBox>(u"zoneComboBox"_s);
    click(zones);
    QVERIFY(QApplication::activePopupWidget());
    QWindow *popup = QApplication::activePopupWidget()->windowHandle();
    QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key_Return);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QCOMPARE(zones->currentIndex(), 2);
    m_running->widget()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_running->widget()));
    QTRY_COMPARE(QApplication::focusWidget(), restingPlace());
    press(Qt::Key_Down);
    QCOMPARE(zones->currentIndex(), 2);
}

void tst_RestingFocus::a_disabled_widget_passes_its_focus_to_no_other_data()
{
    QTest::addColumn<bool>("active");
    QTest::addRow("in the active window") << true;
    QTest::addRow("in a window that is not active") << false;
}

void tst_RestingFocus::a_disabled_widget_passes_its_focus_to_no_other()
{
    QFETCH(bool, active);
    press(Qt::Key_Tab);
    QWidget other;
    if (!active) {
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
    }
    m_running->host.ready = 0;
    m_running->checkHost();
    QTRY_VERIFY(!m_running->find(u"enableButton"_s)->isEnabled());
    other.close();
    m_running->widget()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_running->widget()));
    QCOMPARE(QApplication::focusWidget(), restingPlace());
}

void tst_RestingFocus::tab_begins_at_the_output_button_and_reaches_everything()
{
    QSet<QWidget *> missing;
    for (QWidget *widget : m_running->widget()->findChildren<QWidget *>()) {
        const bool worked = qobject_cast<QPushButton *>(widget) || qobject_cast<QSlider *>(widget)
            || qobject_cast<QCheckBox *>(widget) || qobject_cast<QComboBox *>(widget);
        if (worked && widget->isVisible() && widget->isEnabled())
            missing.insert(widget);
    }
    QVERIFY(missing.size() > 10);
    auto sidesWithRadio = 0;
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"enableButton"_s);
    do {
        missing.remove(QApplication::focusWidget());
        // Tab reaches one of a side's radio buttons, the arrow keys the others.
        sidesWithRadio += qobject_cast<QRadioButton *>(QApplication::focusWidget()) ? 1 : 0;
        press(Qt::Key_Tab);
    } while (QApplication::focusWidget()->objectName() != u"enableButton"_s);
    QVERIFY(missing.isEmpty());
    QCOMPARE(sidesWithRadio, 2);
}

void tst_RestingFocus::a_key_reaches_the_widget_focused_by_tab()
{
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    QVERIFY(m_running->find<QPushButton>(u"enableButton"_s)->isChecked());
    for (int i = 0; i < 3; ++i)
        press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"speedSlider"_s);
    press(Qt::Key_Right);
    QCOMPARE(m_running->find<QSlider>(u"speedSlider"_s)->value(), 21);
}

void tst_RestingFocus::no_widget_gets_the_focus_when_the_window_is_shown_again()
{
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    other.close();
    m_running->widget()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_running->widget()));
    QCOMPARE(QApplication::focusWidget(), restingPlace());
}

void tst_RestingFocus::a_learnt_key_works_while_the_focus_rests()
{
    QTest::keyPress(handle(), Qt::Key_W);
    QCOMPARE(m_running->step(1), 63);
    QTest::keyRelease(handle(), Qt::Key_W);
    QCOMPARE(m_running->step(1), 0);
    // An open list takes the keyboard focus.
    QTest::keyPress(handle(), Qt::Key_W);
    click(m_running->find(u"zoneComboBox"_s));
    QVERIFY(QApplication::activePopupWidget());
    QCOMPARE(m_running->step(1), 0);
}

// A list that opens takes the focus, so the whole window would be painted in the middle of a rally.
void tst_RestingFocus::the_focus_comes_and_goes_without_repainting_the_window()
{
    auto *list = m_running->find<QComboBox>(u"zoneComboBox"_s);
    const auto openAndClose = [list] {
        list->showPopup();
        QVERIFY(QTest::qWaitForWindowExposed(list->view()->window()));
        list->hidePopup();
        QTRY_VERIFY(!list->view()->isVisible());
        QCoreApplication::processEvents();
    };
    openAndClose(); // the first time creates its window
    Paintings paintings;
    // Far from the list, whose window may uncover what is near it.
    m_running->find(u"sensRSlider"_s)->installEventFilter(&paintings);
    openAndClose();
    press(Qt::Key_Tab);
    QVERIFY(!restingPlace()->hasFocus());
    click(m_running->find(u"leftMidiRadio"_s)); // checked already, so nothing else changes
    QVERIFY(restingPlace()->hasFocus());
    QCoreApplication::processEvents();
    QCOMPARE(paintings.count, 0);
}

void tst_RestingFocus::the_wheel_over_a_closed_list_selects_nothing_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"zoneComboBox", "midiLComboBox", "xboxRComboBox"})
        QTest::addRow("%s", name) << QString::fromLatin1(name);
}

void tst_RestingFocus::the_wheel_over_a_closed_list_selects_nothing()
{
    QFETCH(QString, name);
    auto *list = m_running->find<QComboBox>(name);
    click(m_running->find(u"rightXboxRadio"_s));
    QVERIFY(list->isEnabled() && list->count() > 1);
    const QPoint centre = list->mapTo(m_running->widget(), list->rect().center());
    for (const bool focused : {false, true}) {
        if (focused)
            list->setFocus(Qt::TabFocusReason);
        QWidget *before = QApplication::focusWidget();
        const QStringList unchanged = state();
        for (const int notches : {-1, 1}) {
            wheel(handle(), centre, notches);
            QCOMPARE(state(), unchanged);
        }
        QCOMPARE(QApplication::focusWidget(), before);
    }
    // The wheel event does arrive.
    auto *slider = m_running->find<QSlider>(u"speedSlider"_s);
    wheel(handle(), slider->mapTo(m_running->widget(), slider->rect().center()), 1);
    QVERIFY(slider->value() > 20);
}

void tst_RestingFocus::the_wheel_in_an_open_list_scrolls_it()
{
    auto *zones = m_running->find<QComboBox>(u"zoneComboBox"_s);
    click(zones);
    QWidget *popup = QApplication::activePopupWidget();
    QVERIFY(popup);
    wheel(popup->windowHandle(), popup->rect().center(), -1);
    QVERIFY(QApplication::activePopupWidget());
    QCOMPARE(zones->currentIndex(), 1);
    zones->hidePopup();
}

QTEST_MAIN(tst_RestingFocus)

#include "tst_restingfocus.moc"
