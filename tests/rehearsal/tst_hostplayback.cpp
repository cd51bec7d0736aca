#include "host.h"
#include "hostwindow.h"
#include "playbackbar.h"
#include "rehearsalname.h"
#include "showkeeper.h"
#include "shows.h"
#include "sidepanel.h"
#include "workingfolder.h"

#include <QAction>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSlider>
#include <QTimer>
#include <QToolButton>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/resource.h>
#endif

using namespace Qt::StringLiterals;

namespace {

/// Three frames of zone 1 at 0, 1 and 2 seconds, told apart by the place of their one point, and
/// one of zone 3.
Show threeFrames()
{
    return {eventAt(0, Event::HostStarted), frameAt(0, pointAt(1)),
        eventAt(500, Event::OutputEnabled), frameAt(1000, pointAt(2)), frameAt(1500, pointAt(7), 2),
        frameAt(2000, pointAt(3)), eventAt(60'000, Event::HostEnded)};
}

} // namespace

/// Recordings in the host's window.
class tst_HostPlayback : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void a_recording_is_made_and_shows_that_it_is();
    void a_recording_that_gets_no_file_is_not_begun();
    void a_full_disk_ends_the_recording_with_a_message();
    void a_recording_is_opened_at_its_beginning();
    void it_is_stepped_through_frame_by_frame();
    void it_plays_and_pauses();
    void the_slider_and_the_keys_move_through_it();
    void the_speed_is_bounded_and_changed_by_keys();
    void figures_are_those_of_the_moment();
    void live_frames_do_not_disturb_it_and_are_back_afterwards();
    void the_host_stays_alive_meanwhile();
    void a_damaged_one_names_the_byte_and_is_shown_until_there();
    void a_file_that_is_none_leaves_the_show_as_it_was();
    void an_export_writes_a_file();
    void an_export_that_fails_says_why();
    void without_a_recording_there_is_nothing_to_play();

private:
    QAction *action(const QString &text) const
    {
        for (QAction *action : m_window->findChildren<QAction *>()) {
            if (action->text().remove(u'&') == text)
                return action;
        }
        qFatal("No action %s", qPrintable(text));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        m_window->activateWindow(); // again after a dialog
        QVERIFY(QTest::qWaitForWindowActive(&*m_window));
        QTest::keyClick(&*m_window, key, modifiers);
    }
    /// The place of the first point that a zone shows; 0 when it shows none.
    int shown(int zone = 0) const
    {
        const auto &frame = m_window->findChildren<ZoneView *>().at(zone)->frame();
        return frame.empty() ? 0 : int(frame.front().x);
    }
    QString time() const
    {
        for (const QLabel *label : m_window->findChildren<QLabel *>()) {
            if (label->accessibleName() == u"Time in the recording"_s)
                return label->text();
        }
        return {};
    }
    QString figure(const QString &name) const
    {
        for (const QLabel *label : m_window->findChild<SidePanel *>()->findChildren<QLabel *>()) {
            if (label->accessibleName() == name)
                return label->text();
        }
        return {};
    }
    /// The text of the message that is shown, which is closed then.
    QString message()
    {
        auto *box = m_window->findChild<QMessageBox *>();
        if (!box)
            return {};
        QString text = box->text();
        delete box;
        return text;
    }
    /// Gives the next dialog for a file its name; without one it is cancelled.
    static void answer(const QString &path)
    {
        QTimer::singleShot(0, qApp, [path] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return answer(path);
            if (path.isEmpty())
                return dialog->reject();
            dialog->selectFile(path);
            static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
        });
    }
    QString fileOf(const QByteArray &bytes)
    {
        QString path = m_folder->filePath(u"show.rec"_s);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("%s", qPrintable(file.errorString()));
        return path;
    }
    void send(int place) { QVERIFY(writeFrame(*m_file.memory(), 0, pointAt(place), sharedNow())); }

    std::optional<WorkingFolder> m_folder;
    std::optional<RehearsalName> m_name;
    std::optional<Host> m_host;
    std::optional<ShowKeeper> m_keeper;
    std::optional<HostWindow> m_window;
    MemoryFile m_file;
};

void tst_HostPlayback::init()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    m_folder.emplace();
    m_name.emplace();
    m_host.emplace(HostInfo());
    m_keeper.emplace(*m_host);
    QVERIFY(m_host->open());
    m_window.emplace(*m_host, *m_keeper);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(&*m_window));
    m_host->start();
    QVERIFY(m_file.attach(m_name->path()));
}

void tst_HostPlayback::cleanup()
{
    m_window.reset();
    m_keeper.reset();
    m_host.reset();
    m_name.reset();
    m_folder.reset();
}

void tst_HostPlayback::a_recording_is_made_and_shows_that_it_is()
{
    const QString path = m_folder->filePath(u"made.rec"_s);
    answer(path);
    press(Qt::Key_R, Qt::ControlModifier);
    QVERIFY2(m_keeper->isRecording(), qPrintable(message()));
    QVERIFY(action(u"Record…"_s)->isChecked());
    QVERIFY(m_window->windowTitle().startsWith(u'●'));
    const auto buttons = m_window->findChildren<QToolButton *>();
    QVERIFY(std::ranges::any_of(buttons, [](const QToolButton *button) {
        return button->isVisible() && button->text().startsWith(u"Recording 0:0"_s);
    }));
    send(5);
    QTRY_COMPARE(shown(), 5);
    press(Qt::Key_R, Qt::ControlModifier);
    QVERIFY(!m_keeper->isRecording() && !action(u"Record…"_s)->isChecked());
    QCOMPARE(m_window->windowTitle(), u"Rehearsal host"_s);
    QVERIFY(m_window->openRecording(path));
    QCOMPARE(shown(), 5);
    QCOMPARE(message(), QString());
}

void tst_HostPlayback::a_recording_that_gets_no_file_is_not_begun()
{
    answer({});
    action(u"Record…"_s)->trigger();
    QVERIFY(!m_keeper->isRecording() && !action(u"Record…"_s)->isChecked());
    QCOMPARE(message(), QString());
}

void tst_HostPlayback::a_full_disk_ends_the_recording_with_a_message()
{
#ifdef Q_OS_LINUX
    // No file may become longer than this.
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit tight = {20, before.rlim_max};
    QVERIFY(m_keeper->startRecording(m_folder->filePath(u"full.rec"_s)));
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &tight), 0);
    send(5);
    send(6);
    const bool ended = QTest::qWaitFor([this] { return !m_keeper->isRecording(); });
    setrlimit(RLIMIT_FSIZE, &before);
    QVERIFY(ended);
    const QString text = message();
    QVERIFY2(text.contains(u"full.rec\" is not complete: File too large"_s), qPrintable(text));
    QVERIFY(!action(u"Record…"_s)->isChecked());
#else
    QSKIP("This system has no limit for the length of a file.");
#endif
}

void tst_HostPlayback::a_recording_is_opened_at_its_beginning()
{
    answer(fileOf(recorded(threeFrames())));
    press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(m_window->findChild<PlaybackBar *>()->isVisible());
    QCOMPARE(m_window->windowTitle(), u"show.rec – Rehearsal host"_s);
    QCOMPARE(shown(), 1);
    QCOMPARE(time(), u"0:00.000 / 1:00.000"_s);
    QVERIFY(!action(u"Play"_s)->isChecked());
    // Zone 3 has frames, so there are three.
    QVERIFY(m_window->findChildren<ZoneView *>().at(2)->isVisible());
    QVERIFY(!m_window->findChildren<ZoneView *>().at(3)->isVisible());
}

void tst_HostPlayback::it_is_stepped_through_frame_by_frame()
{
    QVERIFY(m_window->openRecording(fileOf(recorded(threeFrames()))));
    press(Qt::Key_Period);
    QCOMPARE(shown(), 2);
    QCOMPARE(time(), u"0:01.000 / 1:00.000"_s);
    press(Qt::Key_Period);
    QCOMPARE(shown(2), 7);
    press(Qt::Key_Period);
    QCOMPARE(shown(), 3);
    press(Qt::Key_Comma);
    press(Qt::Key_Comma);
    QCOMPARE(shown(), 2);
    QCOMPARE(shown(2), 0);
    // A held frame would hide it.
    press(Qt::Key_Space);
    press(Qt::Key_Comma);
    QCOMPARE(shown(), 1);
}

void tst_HostPlayback::it_plays_and_pauses()
{
    QVERIFY(m_window->openRecording(fileOf(recorded(threeFrames()))));
    press(Qt::Key_K);
    QVERIFY(action(u"Play"_s)->isChecked());
    QTRY_COMPARE(shown(), 2);
    press(Qt::Key_K);
    QVERIFY(!action(u"Play"_s)->isChecked());
    const QString paused = time();
    QVERIFY(paused > u"0:01"_s);
    QTest::qWait(60);
    QCOMPARE(time(), paused);
}

void tst_HostPlayback::the_slider_and_the_keys_move_through_it()
{
    QVERIFY(m_window->openRecording(fileOf(recorded(threeFrames()))));
    auto *slider = m_window->findChild<PlaybackBar *>()->findChild<QSlider *>();
    QCOMPARE(slider->maximum(), 60'000);
    slider->setValue(1700);
    QCOMPARE(shown(), 2);
    QCOMPARE(shown(2), 7);
    QCOMPARE(time(), u"0:01.700 / 1:00.000"_s);
    press(Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(time(), u"0:11.700 / 1:00.000"_s);
    QCOMPARE(slider->value(), 11'700);
    press(Qt::Key_Left, Qt::ControlModifier);
    press(Qt::Key_Left, Qt::ControlModifier);
    QCOMPARE(time(), u"0:00.000 / 1:00.000"_s);
}

void tst_HostPlayback::the_speed_is_bounded_and_changed_by_keys()
{
    QVERIFY(m_window->openRecording(fileOf(recorded(threeFrames()))));
    auto *bar = m_window->findChild<PlaybackBar *>();
    press(Qt::Key_Minus);
    QCOMPARE(bar->speed(), 0.5);
    for (int i = 0; i < 9; ++i)
        press(Qt::Key_Minus);
    QCOMPARE(bar->speed(), 0.1);
    for (int i = 0; i < 9; ++i)
        press(Qt::Key_Plus);
    QCOMPARE(bar->speed(), 4);
    // Two seconds of the show take half a second, however late the look.
    QElapsedTimer real;
    press(Qt::Key_K);
    real.start();
    QTRY_COMPARE(shown(), 3);
    press(Qt::Key_K);
    const int position = bar->findChild<QSlider *>()->value();
    QVERIFY2(position >= 2000 && position <= 4 * real.elapsed() + 200,
        qPrintable(QString::number(position)));
    QVERIFY(position > 2 * real.elapsed());
}

void tst_HostPlayback::figures_are_those_of_the_moment()
{
    Show show;
    for (int i = 0; i < 200; ++i)
        show.emplace_back(frameAt(10 * i, pointAt(i)));
    QVERIFY(m_window->openRecording(fileOf(recorded(show))));
    m_window->findChild<PlaybackBar *>()->findChild<QSlider *>()->setValue(1500);
    QTRY_COMPARE(figure(u"Frames a second"_s), u"100"_s);
    press(Qt::Key_Comma);
    QTest::qWait(300);
    QCOMPARE(figure(u"Frames a second"_s), u"100"_s);
}

void tst_HostPlayback::live_frames_do_not_disturb_it_and_are_back_afterwards()
{
    send(50);
    QTRY_COMPARE(shown(), 50);
    QVERIFY(m_window->openRecording(fileOf(recorded(threeFrames()))));
    int live = 0;
    connect(&*m_host, &Host::frameReceived, &*m_window, [&live] { ++live; });
    setOutput(*m_file.memory(), true);
    send(51);
    QTRY_COMPARE(live, 1);
    QTRY_VERIFY(m_host->isOutputOn());
    QCOMPARE(shown(), 1);
    QVERIFY(m_window->summary().startsWith(u"2 frames"_s));
    press(Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(shown(), 51);
    QCOMPARE(shown(2), 0);
    QVERIFY(!m_window->findChild<PlaybackBar *>()->isVisible());
    QCOMPARE(m_window->windowTitle(), u"Rehearsal host"_s);
    QVERIFY(!m_window->findChildren<ZoneView *>().at(2)->isVisible());
    send(52);
    QTRY_COMPARE(shown(), 52);
}

void tst_HostPlayback::the_host_stays_alive_meanwhile()
{
    QVERIFY(m_window->openRecording(fileOf(recorded(threeFrames()))));
    press(Qt::Key_K);
    const SharedTime until = sharedNow() + 1'500 * showMs;
    while (sharedNow() < until) {
        QTest::qWait(100);
        QVERIFY(isHostAlive(*m_file.memory(), sharedNow()));
    }
}

void tst_HostPlayback::a_damaged_one_names_the_byte_and_is_shown_until_there()
{
    QByteArray bytes = recorded(threeFrames());
    const qsizetype wrong = bytes.size() - 4;
    bytes[wrong] = char(bytes[wrong] ^ 0x55);
    QVERIFY(m_window->openRecording(fileOf(bytes)));
    const QString text = message();
    QVERIFY2(text.contains(QRegularExpression(u"show.rec\".*byte \\d+"_s)), qPrintable(text));
    QCOMPARE(shown(), 1);
    press(Qt::Key_Period);
    QCOMPARE(shown(), 2);
}

void tst_HostPlayback::a_file_that_is_none_leaves_the_show_as_it_was()
{
    QVERIFY(m_window->openRecording(fileOf(recorded(threeFrames()))));
    press(Qt::Key_Period);
    const QString path = m_folder->filePath(u"other"_s);
    QVERIFY(!m_window->openRecording(path));
    QVERIFY(message().startsWith(u"Cannot read \""_s));
    QCOMPARE(shown(), 2);
    QCOMPARE(m_window->windowTitle(), u"show.rec – Rehearsal host"_s);
}

void tst_HostPlayback::an_export_writes_a_file()
{
    Show show = {frameAt(0, pointAt(1)), frameAt(10, pointAt(2))};
    QVERIFY(m_window->openRecording(fileOf(recorded(show))));
    QFile file(m_folder->filePath(u"show.ild"_s));
    answer(file.fileName());
    press(Qt::Key_E, Qt::ControlModifier);
    QTRY_VERIFY(action(u"Export ILDA…"_s)->isEnabled());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(),
        ildaSection(pointAt(1), {0, 2, 0}, ColorOrder::RedGreenBlue)
            + ildaSection(pointAt(2), {1, 2, 0}, ColorOrder::RedGreenBlue) + ildaEnd());
    QCOMPARE(message(), QString());
}

void tst_HostPlayback::an_export_that_fails_says_why()
{
    QVERIFY(m_window->openRecording(fileOf(recorded({frameAt(0, pointAt(1))}))));
    // Longer than a file's name may be.
    answer(m_folder->filePath(QString(300, u'x') + u".ild"_s));
    press(Qt::Key_E, Qt::ControlModifier);
    QTRY_VERIFY(m_window->findChild<QMessageBox *>());
    const QString text = message();
    QVERIFY2(text.startsWith(u"Cannot write \""_s), qPrintable(text));
    QVERIFY(action(u"Export ILDA…"_s)->isEnabled());
}

void tst_HostPlayback::without_a_recording_there_is_nothing_to_play()
{
    QVERIFY(!m_window->findChild<PlaybackBar *>()->isVisible());
    for (const auto &text : {u"Play"_s, u"Next Frame"_s, u"Previous Frame"_s, u"Export ILDA…"_s,
             u"Back to the Live Show"_s})
        QVERIFY2(!action(text)->isEnabled(), qPrintable(text));
}

QTEST_MAIN(tst_HostPlayback)

#include "tst_hostplayback.moc"
