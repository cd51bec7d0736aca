#include "looks.h"
#include "runningwindow.h"

#include <QComboBox>
#include <QDir>
#include <QPixmap>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The folder of the pictures; docs/pictures sets it.
QString pictureFolder()
{
    return qEnvironmentVariable("RALLYVANE_PICTURES", QDir::currentPath());
}

void choose(const OperatorWindow &running, const QString &list, int entry)
{
    running.find<QComboBox>(list)->setCurrentIndex(entry);
}

bool hasLook(const OperatorWindow &running, const QString &button, QLatin1StringView look)
{
    return running.find(button)->styleSheet() == look;
}

} // namespace

/// Makes the pictures of the operator's window that the documents show, with simulated devices.
class tst_WindowPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void without_a_host_the_status_is_red();
    void in_a_show_both_switches_are_on();
    void a_midi_controller_is_learnt();
    void a_gamepad_is_learnt();
    void keys_are_learnt();

private:
    /// Saves a picture of the window, or of its part `within`.
    void save(const OperatorWindow &running, const QString &name, QRect within = {}) const;
    /// Saves a picture of the left player's controls.
    void saveLeft(const OperatorWindow &running, const QString &name) const;

    QString m_folder = pictureFolder(); // a window changes the working directory
};

void tst_WindowPictures::initTestCase()
{
    QVERIFY(QDir().mkpath(m_folder));
}

void tst_WindowPictures::without_a_host_the_status_is_red()
{
    RunningWindow running;
    running.host.ready = 0;
    running.host.zones = 0;
    running.open();
    running.waitForStatus();
    QVERIFY(hasLook(running, u"statusLabel"_s, looks::hostNotReady));
    QVERIFY(!running.find(u"enableButton"_s)->isEnabled());
    save(running, u"window-no-host"_s);
}

void tst_WindowPictures::in_a_show_both_switches_are_on()
{
    RunningWindow running;
    running.host.zones = 3;
    running.midi.inputs = {{u"Fader Box"_s}};
    running.pads.pads[0].connected = true;
    running.open();
    running.waitForStatus();
    running.click(u"enableButton"_s);
    running.click(u"showButton"_s);
    running.click(u"leftMidiRadio"_s);
    choose(running, u"midiLComboBox"_s, 1);
    choose(running, u"xboxRComboBox"_s, 1);
    QVERIFY(running.host.outputOn);
    running.waitForFrames(1);
    QVERIFY(hasLook(running, u"statusLabel"_s, looks::hostReady));
    save(running, u"window-show"_s);
}

void tst_WindowPictures::a_midi_controller_is_learnt()
{
    RunningWindow running;
    running.midi.inputs = {{u"Fader Box"_s}};
    running.open();
    running.waitForStatus();
    running.click(u"leftMidiRadio"_s);
    choose(running, u"midiLComboBox"_s, 1);
    running.click(u"learnStartL"_s);
    QCOMPARE(running.midi.send(0, 0x7F3C90), 1); // note 60
    QTRY_VERIFY(hasLook(running, u"learnStartL"_s, looks::learnt));
    running.click(u"learnCCL"_s);
    QCOMPARE(running.midi.send(0, 0x4007B0), 1); // control change 7
    QTRY_VERIFY(hasLook(running, u"learnCCL"_s, looks::learnt));
    saveLeft(running, u"controls-midi"_s);
}

void tst_WindowPictures::a_gamepad_is_learnt()
{
    RunningWindow running;
    FakePads::Pad &pad = running.pads.pads[0];
    pad.connected = true;
    running.open();
    running.waitForStatus();
    choose(running, u"xboxLComboBox"_s, 1);
    running.click(u"learnStartL"_s);
    pad.buttons = XINPUT_GAMEPAD_A;
    QTRY_VERIFY(hasLook(running, u"learnStartL"_s, looks::learnt));
    running.click(u"learnCCL"_s);
    pad.thumbLY = 32767;
    QTRY_VERIFY(hasLook(running, u"learnCCL"_s, looks::learnt));
    saveLeft(running, u"controls-gamepad"_s);
}

void tst_WindowPictures::keys_are_learnt()
{
    RunningWindow running;
    running.open();
    running.waitForStatus();
    running.click(u"leftKeyboardRadio"_s);
    running.click(u"learnUpL"_s);
    QTest::keyClick(running.find(u"learnUpL"_s), Qt::Key_W);
    QVERIFY(hasLook(running, u"learnUpL"_s, looks::learnt));
    running.click(u"learnDownL"_s);
    QVERIFY(hasLook(running, u"learnDownL"_s, looks::learning));
    QVERIFY(hasLook(running, u"learnStartL"_s, looks::notLearnt));
    saveLeft(running, u"learning"_s);
    QTest::keyClick(running.find(u"learnUpL"_s), Qt::Key_S);
    running.click(u"learnStartL"_s);
    QTest::keyClick(running.find(u"learnUpL"_s), Qt::Key_D);
    for (const auto &button : {u"learnUpL"_s, u"learnDownL"_s, u"learnStartL"_s})
        QVERIFY(hasLook(running, button, looks::learnt));
    saveLeft(running, u"controls-keyboard"_s);
}

void tst_WindowPictures::save(
    const OperatorWindow &running, const QString &name, QRect within) const
{
    QWidget *window = running.widget();
    QTest::mouseMove(window, {1, 1}); // a button under the pointer would be highlighted
    QCoreApplication::processEvents();
    const QImage picture = window->grab(within.isNull() ? window->rect() : within).toImage();
    QVERIFY(picture.height() > 100 && !picture.allGray());
    QVERIFY(picture.save(m_folder + u'/' + name + u".png"_s));
}

void tst_WindowPictures::saveLeft(const OperatorWindow &running, const QString &name) const
{
    constexpr int margin = 8;
    const auto *group = running.find(u"groupBox_2"_s);
    const auto *lowest = running.find(u"sensLSlider"_s)->parentWidget()->parentWidget();
    const int bottom = lowest->mapTo(group, QPoint(0, lowest->height())).y();
    save(running, name,
        QRect(group->mapTo(running.widget(), QPoint()), QSize(group->width(), bottom + margin)));
}

QTEST_MAIN(tst_WindowPictures)

#include "tst_windowpictures.moc"
