#include "midiconnection.h"
#include "operatorwindow.h"

#include <QComboBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array devices = {&midiInLeft, &midiInRight};

/// Selects MIDI and a device for a side, and waits until messages from `sender` arrive.
void choose(const OperatorWindow &window, int side, const QString &device, MidiSender &sender)
{
    window.click(side == 0 ? u"leftMidiRadio"_s : u"rightMidiRadio"_s);
    auto *list = window.find<QComboBox>("midi"_L1 + sideLetter(side) + "ComboBox"_L1);
    list->setCurrentIndex(list->findText(device, Qt::MatchContains));
    QVERIFY2(list->currentIndex() > 0, qPrintable(device));
    QVERIFY(isConnected(sender, *devices[size_t(side)]));
}

} // namespace

/// From a real MIDI stream through the operator's window to the paddle.
class tst_MidiWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void a_learnt_control_change_moves_the_paddle_and_a_learnt_note_starts_data();
    void a_learnt_control_change_moves_the_paddle_and_a_learnt_note_starts();
    void each_player_plays_on_a_device_of_their_own();
    void a_side_that_leaves_its_device_is_not_moved_by_it();

private:
    std::unique_ptr<MidiServer> m_server;
    std::unique_ptr<MidiSender> m_fader;
    std::unique_ptr<MidiSender> m_wheel;
};

void tst_MidiWindow::initTestCase()
{
    m_server = std::make_unique<MidiServer>();
    if (!m_server->problem.isEmpty())
        QSKIP(qPrintable(m_server->problem));
}

void tst_MidiWindow::init()
{
    m_fader = std::make_unique<MidiSender>(*m_server, u"Test fader"_s);
    m_wheel = std::make_unique<MidiSender>(*m_server, u"Test wheel"_s);
    QVERIFY(m_fader->isReady() && m_wheel->isReady());
    QTRY_VERIFY(inputNamed(u"Test fader"_s) >= 0 && inputNamed(u"Test wheel"_s) >= 0);
}

void tst_MidiWindow::cleanup()
{
    m_fader.reset();
    m_wheel.reset();
}

void tst_MidiWindow::a_learnt_control_change_moves_the_paddle_and_a_learnt_note_starts_data()
{
    addSides();
}

void tst_MidiWindow::a_learnt_control_change_moves_the_paddle_and_a_learnt_note_starts()
{
    QFETCH(int, side);
    const QString digit = QString::number(side);
    OperatorWindow window;
    window.open();
    choose(window, side, u"Test fader"_s, *m_fader);
    window.click("learnCC"_L1 + sideLetter(side));
    QVERIFY(m_fader->send("B2 07 64"));
    QTRY_COMPARE(window.setting("CC_"_L1 + digit + u'1'), u"7"_s);
    window.click("learnStart"_L1 + sideLetter(side));
    QVERIFY(m_fader->send("90 3C 7F"));
    QTRY_COMPARE(window.setting("Start_"_L1 + digit + u'1'), u"60"_s);
    // The learnt message itself has not played.
    QCOMPARE(window.step(side), 0);
    QVERIFY(!window.takeStart());

    QVERIFY(m_fader->send("B2 07 64"));
    QTRY_COMPARE(window.step(side), 36);
    QVERIFY(m_fader->send("B2 07 00"));
    QTRY_COMPARE(window.step(side), -64);
    QVERIFY(!window.takeStart());
    QVERIFY(m_fader->send("90 3C 7F"));
    QCOMPARE(window.awaitStart(), std::optional(side));
    QCOMPARE(window.step(side), -64);
    QCOMPARE(window.step(1 - side), 0);
}

void tst_MidiWindow::each_player_plays_on_a_device_of_their_own()
{
    // Both have learnt the same messages, each from their own device.
    OperatorWindow window("[General]\nCC_00=176\nCC_01=7\nStart_00=144\nStart_01=60\n"
                          "CC_10=176\nCC_11=7\nStart_10=144\nStart_11=60\n");
    window.open();
    choose(window, 0, u"Test wheel"_s, *m_wheel);
    choose(window, 1, u"Test fader"_s, *m_fader);
    QVERIFY(m_wheel->send("B0 07 7F"));
    QTRY_COMPARE(window.step(0), 63);
    QCOMPARE(window.step(1), 0);
    QVERIFY(m_fader->send("B0 07 00"));
    QTRY_COMPARE(window.step(1), -64);
    QCOMPARE(window.step(0), 63);
    QVERIFY(m_fader->send("90 3C 7F"));
    QCOMPARE(window.awaitStart(), std::optional(1));
    QVERIFY(m_wheel->send("90 3C 7F"));
    QCOMPARE(window.awaitStart(), std::optional(0));
}

void tst_MidiWindow::a_side_that_leaves_its_device_is_not_moved_by_it()
{
    OperatorWindow window("[General]\nCC_00=176\nCC_01=7\nCC_10=176\nCC_11=7\n");
    window.open();
    choose(window, 0, u"Test fader"_s, *m_fader);
    QVERIFY(m_fader->send("B0 07 7F"));
    QTRY_COMPARE(window.step(0), 63);
    window.click(u"leftKeyboardRadio"_s);
    QCOMPARE(window.step(0), 0);
    // The other side opens the device, to show when the message has arrived.
    choose(window, 1, u"Test fader"_s, *m_fader);
    QVERIFY(m_fader->send("B0 07 00"));
    QTRY_COMPARE(window.step(1), -64);
    QCOMPARE(window.step(0), 0);
}

QTEST_MAIN(tst_MidiWindow)

#include "tst_midiwindow.moc"
