#include "badbey.h"
#include "runningwindow.h"

#include <QApplication>
#include <QComboBox>
#include <QMetaMethod>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSlider>
#include <QStatusBar>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

QStringList checkedRadios(const QWidget &window)
{
    QStringList checked;
    for (const QRadioButton *radio : window.findChildren<QRadioButton *>()) {
        if (radio->isChecked())
            checked.append(radio->objectName());
    }
    checked.sort();
    return checked;
}

int valueOf(const QWidget &window, const QString &slider)
{
    return window.findChild<QSlider *>(slider)->value();
}

/// Marks the texts that it translates, those of the main window.
class Marking : public QTranslator
{
    Q_OBJECT

public:
    QString translate(const char *context, const char *sourceText, const char * /*hint*/,
        int /*count*/) const override
    {
        if (qstrcmp(context, "MainWindow") != 0)
            return {};
        return QString::fromUtf8(sourceText) + u'x';
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private slots:
    void the_slots_are_in_order();
    void without_a_settings_file_everything_has_its_default();
    void a_stored_mode_checks_one_radio_button_data();
    void a_stored_mode_checks_one_radio_button();
    void showing_a_stored_mode_does_not_apply_it();
    void the_status_fills_the_bar_and_is_never_hidden();
    void the_texts_are_translated_in_the_main_windows_context();
    void a_stored_speed_reaches_slider_and_game_data();
    void a_stored_speed_reaches_slider_and_game();
    void an_invalid_speed_reads_as_the_lowest();
    void every_change_of_the_speed_is_stored_and_takes_effect();
    void the_sensitivities_are_stored_only_at_the_end();
    void a_sensitivity_for_one_side_leaves_the_other_its_default();
    void only_persistent_settings_are_stored();
    void the_reset_button_begins_a_new_match();
    void each_learn_button_learns_its_control_for_its_side_data();
    void each_learn_button_learns_its_control_for_its_side();
    void a_pad_control_set_through_a_slot_is_stored_for_its_side_data();
    void a_pad_control_set_through_a_slot_is_stored_for_its_side();
};

void tst_MainWindow::the_slots_are_in_order()
{
    const QList<QByteArray> expected = {
        "eventFilter(QObject*,QEvent*)",
        "FirstLoad()",
        "on_showButton_clicked()",
        "on_learnCCL_clicked()",
        "on_learnStartL_clicked()",
        "on_learnCCR_clicked()",
        "on_learnStartR_clicked()",
        "midiLComboChanged(int)",
        "midiRComboChanged(int)",
        "xboxChanged(int)",
        "xboxSetStartSource(int,bool)",
        "xboxSetControllerSource(int,bool)",
        "zoneChanged(int)",
        "ReadMidiData(int,uchar,uchar,uchar)",
        "speedChanged(int)",
        "RefreshBeyondStatus(BeyondState)",
        "RequestExit()",
        "on_enableButton_clicked()",
        "on_resetButton_clicked()",
        "on_learnUpL_clicked()",
        "on_learnDownL_clicked()",
        "on_learnUpR_clicked()",
        "on_learnDownR_clicked()",
    };
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QList<QByteArray> found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        found.append(meta.method(i).methodSignature());
    QCOMPARE(found, expected);
    QCOMPARE(meta.method(meta.methodOffset()).returnMetaType(), QMetaType::fromType<bool>());
}

void tst_MainWindow::without_a_settings_file_everything_has_its_default()
{
    RunningWindow running;
    running.open();
    const MainWindow &window = *running.window;
    QCOMPARE(checkedRadios(window), (QStringList{u"leftXboxRadio"_s, u"rightXboxRadio"_s}));
    QCOMPARE(valueOf(window, u"speedSlider"_s), 20);
    QCOMPARE(valueOf(window, u"sensLSlider"_s), 512);
    QCOMPARE(valueOf(window, u"sensRSlider"_s), 512);
    QCOMPARE(int(window.game().ballSpeed), 20);
    for (const QString &name : {u"enableButton"_s, u"showButton"_s, u"resetButton"_s})
        QVERIFY(!running.find<QPushButton>(name)->isChecked());
}

void tst_MainWindow::a_stored_mode_checks_one_radio_button_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QStringList>("checked");
    const auto add = [](const QByteArray &mode, const QString &radio) {
        QTest::addRow("left '%s'", mode.constData()) << QByteArray(
            "ControlModeLeft") << mode << QStringList{u"left"_s + radio, u"rightXboxRadio"_s};
        QTest::addRow("right '%s'", mode.constData()) << QByteArray(
            "ControlModeRight") << mode << QStringList{u"leftXboxRadio"_s, u"right"_s + radio};
    };
    add("MIDI", u"MidiRadio"_s);
    add("XBOX", u"XboxRadio"_s);
    add("KEYBOARD", u"KeyboardRadio"_s);
    add("midi", u"KeyboardRadio"_s);
    add("xbox", u"KeyboardRadio"_s);
    add(" MIDI x", u"KeyboardRadio"_s);
    add("", u"KeyboardRadio"_s);
}

void tst_MainWindow::a_stored_mode_checks_one_radio_button()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, mode);
    QFETCH(QStringList, checked);
    RunningWindow running("[General]\n" + key + '=' + mode + '\n');
    running.open();
    QCOMPARE(checkedRadios(*running.window), checked);
}

void tst_MainWindow::showing_a_stored_mode_does_not_apply_it()
{
    RunningWindow running("[General]\nControlModeLeft=midi\n");
    running.window = std::make_unique<MainWindow>();
    QCOMPARE(running.setting(u"ControlModeLeft"_s), u"midi"_s);
    QCOMPARE(running.setting(u"ControlModeRight"_s), QString());
    running.open();
    QCOMPARE(running.setting(u"ControlModeLeft"_s), u"KEYBOARD"_s);
    QCOMPARE(running.setting(u"ControlModeRight"_s), u"XBOX"_s);
}

void tst_MainWindow::the_status_fills_the_bar_and_is_never_hidden()
{
    RunningWindow running;
    running.open();
    auto *bar = running.find<QStatusBar>(u"statusbar"_s);
    const auto *label = running.find(u"statusLabel"_s);
    QVERIFY(label->width() > bar->width() * 9 / 10);
    bar->showMessage(u"message"_s);
    QCoreApplication::processEvents();
    QVERIFY(label->isVisible());
}

void tst_MainWindow::the_texts_are_translated_in_the_main_windows_context()
{
    Marking translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    RunningWindow running;
    running.open();
    QCOMPARE(running.text(u"enableButton"_s), u"Enable Laser Outputx"_s);
    QCOMPARE(running.text(u"resetButton"_s), u"Reset Gamex"_s);
    QTRY_COMPARE(running.text(u"statusLabel"_s), u"BEYOND x1700 Startedx"_s);
}

void tst_MainWindow::a_stored_speed_reaches_slider_and_game_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("speed");
    QTest::addRow("inside the range") << QByteArray("25") << 25;
    QTest::addRow("too slow") << QByteArray("9") << 10;
    QTest::addRow("too fast") << QByteArray("31") << 30;
    QTest::addRow("zero") << QByteArray("0") << 10;
    QTest::addRow("the lowest") << QByteArray("-2147483648") << 10;
    QTest::addRow("the highest") << QByteArray("2147483647") << 30;
}

void tst_MainWindow::a_stored_speed_reaches_slider_and_game()
{
    QFETCH(QByteArray, stored);
    QFETCH(int, speed);
    RunningWindow running("[General]\nBallSpeed=" + stored + '\n');
    running.window = std::make_unique<MainWindow>();
    QCOMPARE(valueOf(*running.window, u"speedSlider"_s), speed);
    QCOMPARE(int(running.window->game().ballSpeed), speed);
    QCOMPARE(running.setting(u"BallSpeed"_s), QString::number(speed));
}

void tst_MainWindow::an_invalid_speed_reads_as_the_lowest()
{
    RunningWindow running("[General]\nBallSpeed=fast\n");
    QTest::ignoreMessage(QtDebugMsg, R"(Setting "BallSpeed" is not a number: "fast")");
    running.open();
    QCOMPARE(int(running.window->game().ballSpeed), 10);
}

void tst_MainWindow::every_change_of_the_speed_is_stored_and_takes_effect()
{
    RunningWindow running;
    running.open();
    QCOMPARE(running.setting(u"BallSpeed"_s), QString());
    auto *slider = running.find<QSlider>(u"speedSlider"_s);
    for (const int speed : {21, 22, 23}) {
        QTest::keyClick(slider, Qt::Key_Right);
        QCOMPARE(int(running.window->game().ballSpeed), speed);
        QCOMPARE(running.setting(u"BallSpeed"_s), QString::number(speed));
    }
    QTest::keyClick(slider, Qt::Key_Home);
    QCOMPARE(int(running.window->game().ballSpeed), 10);
    QCOMPARE(running.setting(u"BallSpeed"_s), u"10"_s);
}

void tst_MainWindow::the_sensitivities_are_stored_only_at_the_end()
{
    RunningWindow running;
    running.open();
    QTest::keyClick(running.find(u"sensLSlider"_s), Qt::Key_Right);
    QTest::keyClick(running.find(u"sensRSlider"_s), Qt::Key_Left);
    QCOMPARE(running.setting(u"SensL"_s), QString());
    QCOMPARE(running.setting(u"SensR"_s), QString());
    running.close();
    QCOMPARE(running.setting(u"SensL"_s), u"513"_s);
    QCOMPARE(running.setting(u"SensR"_s), u"511"_s);
    running.open();
    QCOMPARE(valueOf(*running.window, u"sensLSlider"_s), 513);
    QCOMPARE(valueOf(*running.window, u"sensRSlider"_s), 511);
}

void tst_MainWindow::a_sensitivity_for_one_side_leaves_the_other_its_default()
{
    RunningWindow running("[General]\nSensL=300\n");
    running.window = std::make_unique<MainWindow>();
    QCOMPARE(valueOf(*running.window, u"sensLSlider"_s), 300);
    QCOMPARE(valueOf(*running.window, u"sensRSlider"_s), 512);
}

void tst_MainWindow::only_persistent_settings_are_stored()
{
    RunningWindow running;
    running.host.zones = 3;
    running.open();
    running.waitForStatus();
    running.click(u"leftMidiRadio"_s);
    running.click(u"bitsLCheck"_s);
    running.click(u"enableButton"_s);
    running.click(u"showButton"_s);
    QTest::keyClick(running.find(u"zoneComboBox"_s), Qt::Key_End);
    running.close();
    QStringList keys = QSettings(u".pong"_s, QSettings::IniFormat).allKeys();
    keys.sort();
    QCOMPARE(
        keys, (QStringList{u"ControlModeLeft"_s, u"ControlModeRight"_s, u"SensL"_s, u"SensR"_s}));
    running.open();
    QVERIFY(!running.find<QAbstractButton>(u"bitsLCheck"_s)->isChecked());
    QVERIFY(!running.find<QAbstractButton>(u"enableButton"_s)->isChecked());
    QVERIFY(!running.find<QAbstractButton>(u"showButton"_s)->isChecked());
}

void tst_MainWindow::the_reset_button_begins_a_new_match()
{
    RunningWindow running;
    running.open();
    running.waitForStatus();
    Pong &game = running.game();
    for (int times = 0; times < 2; ++times) { // first checks the button, then unchecks it
        game.leftScore = 7;
        game.rightScore = 3;
        game.servePhase = ServeRight;
        game.pointPending = false;
        running.click(u"resetButton"_s);
        QCOMPARE(int(game.leftScore), 0);
        QCOMPARE(int(game.rightScore), 0);
        QCOMPARE(int(game.servePhase), int(ServeLeft));
        QVERIFY(game.pointPending);
    }
}

void tst_MainWindow::each_learn_button_learns_its_control_for_its_side_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("text");
    for (const QString &side : {u"L"_s, u"R"_s}) {
        const auto add = [&side](const char *mode, const QString &name, const QString &text) {
            QTest::addRow("%s %s", mode, qPrintable(name + side))
                << QByteArray(mode) << name + side << text;
        };
        add("MIDI", u"learnCC"_s, u"Learning Move..."_s);
        add("MIDI", u"learnStart"_s, u"Learning Start..."_s);
        add("KEYBOARD", u"learnStart"_s, u"Learning Start..."_s);
        add("KEYBOARD", u"learnUp"_s, u"Learning Up..."_s);
        add("KEYBOARD", u"learnDown"_s, u"Learning Down..."_s);
    }
}

void tst_MainWindow::each_learn_button_learns_its_control_for_its_side()
{
    QFETCH(QByteArray, mode);
    QFETCH(QString, button);
    QFETCH(QString, text);
    RunningWindow running("ControlModeLeft=" + mode + "\nControlModeRight=" + mode + '\n');
    running.midi.inputs = {{.name = u"First"_s}, {.name = u"Second"_s}};
    running.open();
    running.find<QComboBox>(u"midiLComboBox"_s)->setCurrentIndex(1);
    running.find<QComboBox>(u"midiRComboBox"_s)->setCurrentIndex(2);
    const auto learning = [&running] {
        QStringList found;
        for (const QPushButton *each : running.window->findChildren<QPushButton *>()) {
            if (each->text().startsWith(u"Learning"_s))
                found += {each->objectName(), each->text()};
        }
        return found;
    };
    running.click(button);
    QCOMPARE(learning(), (QStringList{button, text}));
    running.click(button);
    QCOMPARE(learning(), QStringList());
}

void tst_MainWindow::a_pad_control_set_through_a_slot_is_stored_for_its_side_data()
{
    addSides();
}

void tst_MainWindow::a_pad_control_set_through_a_slot_is_stored_for_its_side()
{
    QFETCH(int, side);
    RunningWindow running;
    running.open();
    running.window->xboxSetStartSource(7, side == 0);
    running.window->xboxSetControllerSource(2, side == 0);
    running.close();
    QCOMPARE(running.setting(u"XStart"_s + sideLetter(side)), u"7"_s);
    QCOMPARE(running.setting(u"XMove"_s + sideLetter(side)), u"2"_s);
    QCOMPARE(running.setting(u"XStart"_s + sideLetter(1 - side)), QString());
    QCOMPARE(running.setting(u"XMove"_s + sideLetter(1 - side)), QString());
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
