#include "lasercontrols.h"
#include "runningwindow.h"

#include <QComboBox>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QTimer>

using namespace Qt::StringLiterals;

/// The first load of the window, which lists the devices, applies the settings and switches the
/// output off.
class tst_WindowLoad : public QObject
{
    Q_OBJECT

private slots:
    void it_runs_once_from_the_event_loop();
    void it_runs_before_the_games_however_late();
    void it_runs_in_order();
    void the_learn_buttons_are_right_before_events_are_processed();
    void the_window_is_painted_before_the_device_scan();
    void a_window_that_is_never_painted_scans_for_devices_too();
};

void tst_WindowLoad::it_runs_once_from_the_event_loop()
{
    RunningWindow running;
    running.window = std::make_unique<MainWindow>();
    running.window->show();
    const auto *list = running.find<QComboBox>(u"midiLComboBox"_s);
    QCOMPARE(list->itemText(0), u"No device"_s);
    QVERIFY(running.midi.takeCalls().isEmpty());
    QTRY_COMPARE(list->itemText(0), u"Select MIDI device"_s);
    QVERIFY(!running.midi.takeCalls().isEmpty());
    running.waitForStatus(); // 100 ms later
    QVERIFY(running.midi.takeCalls().isEmpty());
}

void tst_WindowLoad::it_runs_before_the_games_however_late()
{
    RunningWindow running;
    running.window = std::make_unique<MainWindow>();
    running.window->show();
    QThread::msleep(150); // longer than the game waits
    int firstLoads = 0;
    bool gameLoaded = true;
    running.midi.onCall = [&](const QString &) {
        if (firstLoads++ == 0)
            gameLoaded = running.game().thread() != thread();
    };
    QTRY_VERIFY(firstLoads > 0);
    QVERIFY(!gameLoaded);
}

void tst_WindowLoad::it_runs_in_order()
{
    RunningWindow running("[General]\nControlModeLeft=MIDI\nControlModeRight=MIDI\n");
    running.window = std::make_unique<MainWindow>();
    QStringList order;
    const auto note = [&order](const QString &step) {
        if (!order.contains(step))
            order += step;
    };
    for (const QString &name :
        {u"midiLComboBox"_s, u"midiRComboBox"_s, u"xboxLComboBox"_s, u"xboxRComboBox"_s}) {
        const auto *list = running.find<QComboBox>(name);
        connect(list->model(), &QAbstractItemModel::rowsInserted, this, [=] { note(name); });
    }
    connect(&running.window->laser(), &LaserControls::gameShownChanged, this, [&](bool shown) {
        QVERIFY(!shown);
        const QStringList calls = running.host.takeCalls();
        note(calls.contains(u"ldbDisableLaserOutput"_s) ? u"output"_s : u"game"_s);
    });
    running.window->show();
    QTRY_VERIFY(order.size() == 5);
    QCOMPARE(order,
        (QStringList{u"midiLComboBox"_s, u"midiRComboBox"_s, u"xboxLComboBox"_s, u"xboxRComboBox"_s,
            u"game"_s}));
    QVERIFY(running.host.takeCalls().contains(u"ldbDisableLaserOutput"_s));
}

void tst_WindowLoad::the_learn_buttons_are_right_before_events_are_processed()
{
    RunningWindow running;
    running.window = std::make_unique<MainWindow>();
    QStringList texts;
    // Arrives in the middle of the first load, while the control modes are applied.
    QTimer::singleShot(0, running.window.get(), [&] {
        texts = {running.text(u"learnStartL"_s), running.text(u"learnStartR"_s)};
    });
    QTRY_VERIFY(!texts.isEmpty());
    QCOMPARE(texts, (QStringList{u"Click to learn Start"_s, u"Click to learn Start"_s}));
}

void tst_WindowLoad::the_window_is_painted_before_the_device_scan()
{
    RunningWindow running;
    running.window = std::make_unique<MainWindow>();
    Paintings paintings;
    running.find<QPushButton>(u"learnStartR"_s)->installEventFilter(&paintings);
    int paintingsBefore = -1;
    connect(running.find<QComboBox>(u"midiLComboBox"_s)->model(), &QAbstractItemModel::rowsInserted,
        this, [&] { paintingsBefore = paintings.count; });
    running.window->show();
    QTRY_VERIFY(paintingsBefore >= 0);
    QVERIFY(paintingsBefore > 0);
}

void tst_WindowLoad::a_window_that_is_never_painted_scans_for_devices_too()
{
    RunningWindow running;
    running.window = std::make_unique<MainWindow>();
    QTRY_COMPARE(running.find<QComboBox>(u"midiLComboBox"_s)->itemText(0), u"Select MIDI device"_s);
}

QTEST_MAIN(tst_WindowLoad)
#include "tst_windowload.moc"
