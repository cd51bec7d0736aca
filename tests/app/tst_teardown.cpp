#include "badbey.h"
#include "runningwindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Measures the time since a widget was disabled.
class DisabledTimer : public QObject, public QElapsedTimer
{
public:
    bool eventFilter(QObject * /*object*/, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange)
            start();
        return false;
    }
};

} // namespace

/// The end of the window, and the order in which it releases everything.
class tst_Teardown : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void nothing_is_loaded_in_a_closed_window();
    void a_window_closed_while_devices_are_listed_loads_nothing_more();
    void the_game_has_a_tenth_of_a_second_to_blank_the_laser_data();
    void the_game_has_a_tenth_of_a_second_to_blank_the_laser();
    void the_last_frames_of_a_shown_game_are_empty();
    void the_session_is_closed_before_the_library_is_unloaded();
    void the_settings_are_saved_first();
    void no_status_is_shown_while_the_window_closes();
    void a_control_is_not_learnt_while_the_window_closes();
    void no_midi_message_arrives_once_the_devices_are_closed();
    void the_devices_are_closed_after_the_tenth_of_a_second();
    void a_window_may_be_destroyed_before_its_first_load();
    void no_control_works_in_a_window_being_destroyed();
    void the_next_window_can_use_every_device();
};

void tst_Teardown::initTestCase()
{
    // The test continues after a window closes.
    QApplication::setQuitOnLastWindowClosed(false);
}

void tst_Teardown::nothing_is_loaded_in_a_closed_window()
{
    RunningWindow running;
    running.window = std::make_unique<MainWindow>();
    running.window->show();
    QVERIFY(running.window->close());
    running.waitForStatus();
    QVERIFY(running.midi.takeCalls().isEmpty());
    QVERIFY(running.find(u"enableButton"_s)->styleSheet().isEmpty());
}

void tst_Teardown::a_window_closed_while_devices_are_listed_loads_nothing_more()
{
    RunningWindow running;
    running.midi.onCall = [&running](const QString & /*call*/) {
        QMetaObject::invokeMethod(
            running.window.get(), [&running] { running.window->close(); }, Qt::QueuedConnection);
    };
    running.window = std::make_unique<MainWindow>();
    running.window->show();
    QTRY_VERIFY(!running.window->isVisible());
    running.waitForStatus();
    QVERIFY(running.find(u"enableButton"_s)->styleSheet().isEmpty());
    running.midi.onCall = nullptr;
}

void tst_Teardown::the_game_has_a_tenth_of_a_second_to_blank_the_laser_data()
{
    QTest::addColumn<int>("ready");
    QTest::addRow("the host runs") << 1;
    QTest::addRow("the host is not running") << 0;
}

void tst_Teardown::the_game_has_a_tenth_of_a_second_to_blank_the_laser()
{
    QFETCH(int, ready);
    RunningWindow running;
    running.host.ready = ready;
    running.open();
    running.waitForStatus();
    qint64 gameGone = -1;
    QElapsedTimer sinceClose;
    connect(
        &running.game(), &QObject::destroyed, this, [&] { gameGone = sinceClose.elapsed(); },
        Qt::DirectConnection);
    sinceClose.start();
    running.close();
    QVERIFY2(gameGone >= 100, qPrintable(QString::number(gameGone)));
}

void tst_Teardown::the_last_frames_of_a_shown_game_are_empty()
{
    RunningWindow running;
    running.host.zones = 2;
    running.open();
    running.waitForStatus();
    running.click(u"showButton"_s);
    running.click(u"enableButton"_s);
    QTest::keyClick(running.find(u"zoneComboBox"_s), Qt::Key_End);
    running.tick(3);
    QVERIFY(!running.host.takeFrames().constLast().points.isEmpty());
    // The window's grace period, in which the game ticks however busy the machine is. At most the
    // frame that was being composed when it began is lit.
    QTimer::singleShot(0, this, [&host = running.host, game = &running.game()] {
        host.takeFrames();
        for (int i = 0; i < 4; ++i)
            QMetaObject::invokeMethod(game, &Pong::UpdatePongDisplay, Qt::BlockingQueuedConnection);
    });
    running.close();
    const QList<FakeHost::Frame> frames = running.host.takeFrames();
    const qsizetype lit = frames.value(0).points.isEmpty() ? 0 : 1;
    QVERIFY(frames.size() > lit + 3);
    for (const FakeHost::Frame &frame : frames.mid(lit)) {
        QCOMPARE(frame.zone, 1);
        QVERIFY(frame.points.isEmpty());
    }
}

void tst_Teardown::the_session_is_closed_before_the_library_is_unloaded()
{
    RunningWindow running;
    running.open();
    running.waitForStatus();
    running.click(u"showButton"_s);
    running.tick(3);
    running.host.takeCalls();
    running.close();
    QStringList calls = running.host.takeCalls();
    QVERIFY(calls.size() >= 3);
    QCOMPARE(calls.takeLast(), u"FreeLibrary"_s);
    QCOMPARE(calls.takeLast(), u"ldbDestroy"_s);
    QCOMPARE(calls.takeLast(), u"ldbSendFrame 2 0 0 SingleZone 0 points null 100 -1"_s);
    QCOMPARE(calls.filter(u"ldbDestroy"_s), QStringList());
    QVERIFY(!running.host.loaded);
}

void tst_Teardown::the_settings_are_saved_first()
{
    RunningWindow running;
    running.pads.pads[0].connected = true;
    running.open();
    QTest::keyClick(running.find(u"sensRSlider"_s), Qt::Key_Right);
    QTest::keyClick(running.find(u"xboxLComboBox"_s), Qt::Key_Down);
    QTRY_VERIFY(running.pads.pads[0].reads > 30);
    // When the grace period begins, the file is already written and pads are no longer read.
    QByteArray file;
    int reads = -1;
    QTimer::singleShot(0, this, [&] {
        QFile pong(u".pong"_s);
        file = pong.open(QIODevice::ReadOnly) ? pong.readAll() : QByteArray();
        reads = running.pads.pads[0].reads;
    });
    running.close();
    QVERIFY2(file.contains("SensR=513"), file);
    QCOMPARE(int(running.pads.pads[0].reads), reads);
}

void tst_Teardown::no_status_is_shown_while_the_window_closes()
{
    RunningWindow running;
    running.open();
    running.waitForStatus();
    Pong &game = running.game();
    const auto *label = running.find(u"statusLabel"_s);
    QString text;
    QTimer::singleShot(0, this, [&] {
        emit game.beyCoStatus(BeyondNotReady);
        text = label->property("text").toString();
    });
    running.close();
    QCOMPARE(text, u"BEYOND 1700 Started"_s);
}

void tst_Teardown::a_control_is_not_learnt_while_the_window_closes()
{
    RunningWindow running("[General]\nControlModeLeft=MIDI\n");
    running.midi.inputs.append({.name = u"Fader"_s});
    running.open();
    running.waitForStatus();
    QTest::keyClick(running.find(u"midiLComboBox"_s), Qt::Key_Down);
    running.click(u"learnCCL"_s);
    int receivers = 0;
    QTimer::singleShot(0, this, [&] { receivers = running.midi.send(0, 0x4007B0); });
    running.close();
    QCOMPARE(receivers, 1);
    QCOMPARE(running.setting(u"CC_01"_s), QString());
}

void tst_Teardown::no_midi_message_arrives_once_the_devices_are_closed()
{
    RunningWindow running("[General]\nControlModeLeft=MIDI\nControlModeRight=MIDI\n"
                          "CC_00=176\nCC_01=7\nCC_10=176\nCC_11=7\n");
    running.midi.inputs = {{.name = u"Left"_s}, {.name = u"Right"_s}};
    running.open();
    running.waitForStatus();
    QTest::keyClick(running.find(u"midiLComboBox"_s), Qt::Key_Down);
    QTest::keyClick(running.find(u"midiRComboBox"_s), Qt::Key_End);
    const auto sendBoth = [&](DWORD word) {
        return running.midi.send(0, word, FakeMidi::Thread::Caller)
            + running.midi.send(1, word, FakeMidi::Thread::Caller);
    };
    QCOMPARE(sendBoth(0x7F07B0), 2);
    const Pong &game = running.game();
    QVERIFY(game.leftStep != 0 && game.rightStep != 0);
    QCOMPARE(sendBoth(0x4007B0), 2);
    const QList<int> still = {game.leftStep, game.rightStep};

    // A device may send remaining messages when it is stopped.
    QList<int> steps;
    running.midi.onCall = [&](const QString &call) {
        if (call != "midiInStop 0"_L1)
            return;
        QCOMPARE(sendBoth(0x7F07B0), 2);
        steps = {game.leftStep, game.rightStep};
    };
    running.close();
    QCOMPARE(steps, still);
}

void tst_Teardown::the_devices_are_closed_after_the_tenth_of_a_second()
{
    // Everything is written when the window is disabled, shortly before the grace period begins.
    RunningWindow running("[General]\nControlModeLeft=MIDI\nSensL=512\nSensR=512\n");
    running.midi.inputs.append({.name = u"Fader"_s});
    running.open();
    running.waitForStatus();
    QTest::keyClick(running.find(u"midiLComboBox"_s), Qt::Key_Down);
    DisabledTimer sinceDisabled;
    running.window->installEventFilter(&sinceDisabled);
    qint64 stopped = -1;
    running.midi.onCall = [&](const QString &call) {
        if (call == "midiInStop 0"_L1)
            stopped = sinceDisabled.elapsed();
    };
    running.close();
    QVERIFY2(stopped >= 100, qPrintable(QString::number(stopped)));
}

void tst_Teardown::a_window_may_be_destroyed_before_its_first_load()
{
    RunningWindow running;
    running.window = std::make_unique<MainWindow>();
    running.window->show();
    running.close();
    QCOMPARE(running.setting(u"SensL"_s), u"512"_s);
    QVERIFY(!running.host.loaded);
    QVERIFY(running.midi.takeCalls().isEmpty());
}

void tst_Teardown::no_control_works_in_a_window_being_destroyed()
{
    RunningWindow running("[General]\nControlModeLeft=KEYBOARD\n");
    running.open();
    running.waitForStatus();
    const QWidget *window = running.window.get();
    bool tried = false;
    QTimer::singleShot(0, this, [&] {
        for (QWidget *widget : window->findChildren<QWidget *>()) {
            if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus)
                continue;
            QTest::mouseClick(widget, Qt::LeftButton, {}, {8, widget->height() / 2});
            QTest::keyClick(widget, Qt::Key_Right);
        }
        tried = true;
    });
    running.close();
    QVERIFY(tried);
    QCOMPARE(running.setting(u"BallSpeed"_s), QString());
    QVERIFY(!running.host.outputOn);
}

void tst_Teardown::the_next_window_can_use_every_device()
{
    RunningWindow running("[General]\nControlModeLeft=MIDI\n");
    running.midi.inputs.append({.name = u"Fader"_s});
    for (int times = 0; times < 2; ++times) {
        running.open();
        running.waitForStatus();
        QCOMPARE(running.text(u"statusLabel"_s), u"BEYOND 1700 Started"_s);
        QTest::keyClick(running.find(u"midiLComboBox"_s), Qt::Key_Down);
        QCOMPARE(running.midi.openInputs.size(), 1);
        running.close();
        QCOMPARE(running.midi.openInputs.size(), 0);
    }
}

QTEST_MAIN(tst_Teardown)
#include "tst_teardown.moc"
