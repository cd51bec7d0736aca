#include "frames.h"
#include "host.h"
#include "hostwindow.h"
#include "lightpoints.h"
#include "rehearsalname.h"
#include "scrubbar.h"
#include "showkeeper.h"
#include "sidepanel.h"
#include "workingfolder.h"

#include <QAbstractSpinBox>
#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QScrollArea>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

class tst_HostWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void nothing_is_cut_off_at_the_smallest_size_data();
    void nothing_is_cut_off_at_the_smallest_size();
    void everything_in_the_menus_has_a_key_of_its_own();
    void what_is_used_has_a_name_for_screen_readers();
    void the_host_is_busy_too_old_or_gone_as_switched();
    void a_host_that_comes_back_has_its_output_disabled();
    void zones_are_as_many_as_switched();
    void a_double_click_shows_one_zone_large_and_all_again();
    void full_screen_shows_the_picture_alone();
    void escape_leaves_full_screen();
    void strip_and_doctor_are_shown_as_switched();
    void a_held_frame_is_walked_through_point_by_point();
    void slow_motion_holds_the_frame_and_real_pace_keeps_it();
    void switches_and_numbers_are_remembered();
    void a_corrupt_memory_of_the_window_changes_nothing();
    void the_doctor_names_what_is_wrong_with_the_chosen_zone();
    void a_zone_left_lit_is_named_whichever_is_chosen();
    void corrupt_times_of_frames_do_no_harm();

private:
    QAction *action(const char *name) const
    {
        return m_window->findChild<QAction *>(QLatin1StringView(name));
    }
    SharedMemory &memory() const { return *m_file.memory(); }
    void send(int zone, const std::vector<LdbPoint> &points, SharedTime at = sharedNow())
    {
        QVERIFY(writeFrame(memory(), zone, points, at));
    }
    QString findings() const
    {
        for (const QLabel *label : m_window->findChildren<QLabel *>()) {
            if (label->accessibleName().startsWith(u"Findings"_s))
                return label->text();
        }
        return {};
    }
    QList<QWidget *> views() const
    {
        QList<QWidget *> shown;
        for (ZoneView *view : m_window->findChildren<ZoneView *>()) {
            if (view->isVisible())
                shown.append(view);
        }
        return shown;
    }
    void open();

    std::optional<WorkingFolder> m_folder;
    std::optional<RehearsalName> m_name;
    std::optional<Host> m_host;
    std::optional<ShowKeeper> m_keeper;
    std::optional<HostWindow> m_window;
    MemoryFile m_file;
};

void tst_HostWindow::init()
{
    m_folder.emplace();
    m_name.emplace();
    m_host.emplace(HostInfo());
    m_keeper.emplace(*m_host);
    QVERIFY(m_host->open());
    open();
    m_host->start();
    QVERIFY(m_file.attach(m_name->path()));
}

void tst_HostWindow::open()
{
    m_window.emplace(*m_host, *m_keeper);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(&*m_window));
}

void tst_HostWindow::cleanup()
{
    m_window.reset();
    m_keeper.reset();
    m_host.reset();
    m_name.reset();
    m_folder.reset();
}

void tst_HostWindow::nothing_is_cut_off_at_the_smallest_size_data()
{
    QTest::addColumn<bool>("held");
    QTest::addRow("live") << false;
    QTest::addRow("held") << true;
}

void tst_HostWindow::nothing_is_cut_off_at_the_smallest_size()
{
    QFETCH(bool, held);
    action("hold")->setChecked(held);
    QCoreApplication::processEvents();
    m_window->resize(1, 1);
    QCoreApplication::processEvents();
    QVERIFY(m_window->width() < 800 && m_window->height() < 740);
    int looked = 0;
    for (const QWidget *part : m_window->findChildren<QWidget *>()) {
        const bool matters = qobject_cast<const QLabel *>(part)
            || qobject_cast<const QAbstractSpinBox *>(part) || qobject_cast<const QSlider *>(part)
            || qobject_cast<const ZoneView *>(part);
        const bool scrolls = qobject_cast<const QScrollArea *>(
            part->parentWidget() ? part->parentWidget()->parentWidget() : nullptr);
        if (!matters || !part->isVisible() || scrolls)
            continue;
        ++looked;
        const QRect place(part->mapTo(&*m_window, QPoint()), part->size());
        QVERIFY2(m_window->rect().contains(place), qPrintable(part->accessibleName()));
        const auto *label = qobject_cast<const QLabel *>(part);
        const auto fits = [part, label] {
            const QSize needed = label && label->wordWrap()
                ? QSize(part->width(), label->heightForWidth(part->width()))
                : part->minimumSizeHint();
            return part->width() >= needed.width() && part->height() >= needed.height();
        };
        // A text that has just changed is laid out in the next event.
        QTRY_VERIFY2(fits(), qPrintable(label ? label->text() : part->accessibleName()));
    }
    QVERIFY2(looked > 25, qPrintable(QString::number(looked)));
    for (const QWidget *view : views())
        QVERIFY(view->width() >= 280 && view->height() >= 280);
}

void tst_HostWindow::everything_in_the_menus_has_a_key_of_its_own()
{
    QList<QKeySequence> keys;
    const auto look = [&keys](const auto &self, const QList<QAction *> &actions) -> void {
        for (const QAction *action : actions) {
            if (action->menu()) {
                self(self, action->menu()->actions());
            } else if (!action->isSeparator()) {
                QVERIFY2(!action->shortcut().isEmpty(), qPrintable(action->text()));
                QVERIFY2(!keys.contains(action->shortcut()), qPrintable(action->text()));
                keys.append(action->shortcut());
            }
        }
    };
    look(look, m_window->menuBar()->actions());
    QVERIFY(keys.size() > 25);
}

void tst_HostWindow::what_is_used_has_a_name_for_screen_readers()
{
    for (const QWidget *part : m_window->findChildren<QWidget *>()) {
        if (qobject_cast<const QAbstractSpinBox *>(part) || qobject_cast<const QSlider *>(part)
            || qobject_cast<const ZoneView *>(part))
            QVERIFY2(!part->accessibleName().isEmpty(), part->metaObject()->className());
    }
}

void tst_HostWindow::the_host_is_busy_too_old_or_gone_as_switched()
{
    QVERIFY(isHostReady(memory()));
    action("busy")->trigger();
    QVERIFY(!isHostReady(memory()));
    action("busy")->trigger();
    QVERIFY(isHostReady(memory()));
    action("tooOld")->trigger();
    QCOMPARE(hostBuild(memory()), 1613);
    action("tooOld")->trigger();
    QCOMPARE(hostBuild(memory()), 1700);
    action("gone")->trigger();
    QVERIFY(!isHostAlive(memory(), sharedNow()));
    action("busy")->trigger();
    QVERIFY(!isHostAlive(memory(), sharedNow()));
    action("gone")->trigger();
    QVERIFY(isHostAlive(memory(), sharedNow()));
    QVERIFY(!isHostReady(memory()));
}

void tst_HostWindow::a_host_that_comes_back_has_its_output_disabled()
{
    setOutput(memory(), true);
    QTRY_VERIFY(m_host->isOutputOn());
    const std::uint32_t run = hostRun(memory());
    QSignalSpy switched(&*m_host, &Host::outputSwitched);
    action("gone")->trigger();
    QVERIFY(!m_host->isOutputOn());
    QCOMPARE(switched.takeFirst(), QVariantList{false});
    // A game that has not noticed yet.
    setOutput(memory(), true);
    QTest::qWait(50);
    QVERIFY(!m_host->isOutputOn());
    action("gone")->trigger();
    QVERIFY(!m_host->isOutputOn() && !isOutputOn(memory()));
    QVERIFY(switched.isEmpty());
    QVERIFY(hostRun(memory()) != run);
}

void tst_HostWindow::zones_are_as_many_as_switched()
{
    QTest::keyClick(&*m_window, Qt::Key_4, Qt::ControlModifier);
    QCOMPARE(hostZoneCount(memory()), 4);
    QCOMPARE(views().size(), 4);
    send(3, {lit(0, 0, 1)});
    QTRY_VERIFY(m_window->summary().startsWith(u"1 frames"_s));
    QTest::keyClick(&*m_window, Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(hostZoneCount(memory()), 0);
    QVERIFY(views().isEmpty());
    QTest::keyClick(&*m_window, Qt::Key_1, Qt::ControlModifier);
    QCOMPARE(views().size(), 1);
}

void tst_HostWindow::a_double_click_shows_one_zone_large_and_all_again()
{
    QTest::keyClick(&*m_window, Qt::Key_4, Qt::ControlModifier);
    QWidget *third = views().at(2);
    const QSize small = third->size();
    QTest::mouseClick(third, Qt::LeftButton);
    QTest::mouseDClick(third, Qt::LeftButton);
    QCOMPARE(views(), QList<QWidget *>{third});
    QVERIFY(third->width() > small.width());
    QTest::mouseDClick(third, Qt::LeftButton);
    QCOMPARE(views().size(), 4);
}

void tst_HostWindow::full_screen_shows_the_picture_alone()
{
    QTest::keyClick(&*m_window, Qt::Key_F11);
    QVERIFY(m_window->isFullScreen());
    QVERIFY(!m_window->menuBar()->isVisible());
    QVERIFY(!m_window->findChild<SidePanel *>()->isVisible());
    QTest::keyClick(&*m_window, Qt::Key_F11);
    QVERIFY(!m_window->isFullScreen());
    QVERIFY(m_window->menuBar()->isVisible());
    QVERIFY(m_window->findChild<SidePanel *>()->isVisible());
}

void tst_HostWindow::escape_leaves_full_screen()
{
    QTest::keyClick(&*m_window, Qt::Key_F11);
    QTest::keyClick(&*m_window, Qt::Key_Escape);
    QVERIFY(!m_window->isFullScreen());
    QVERIFY(m_window->menuBar()->isVisible());
}

void tst_HostWindow::strip_and_doctor_are_shown_as_switched()
{
    auto *panel = m_window->findChild<SidePanel *>();
    auto *rate = panel->findChild<QSpinBox *>();
    QVERIFY(panel->isVisible() && rate->isVisible());
    QTest::keyClick(&*m_window, Qt::Key_T);
    QVERIFY(panel->isVisible() && !rate->isVisible());
    QTest::keyClick(&*m_window, Qt::Key_D);
    QVERIFY(!panel->isVisible());
    QTest::keyClick(&*m_window, Qt::Key_T);
    QVERIFY(panel->isVisible() && rate->isVisible());
}

void tst_HostWindow::a_held_frame_is_walked_through_point_by_point()
{
    send(0, strokeOf({-1000, 0}, {1000, 0}, 4, 0x123456));
    QTRY_VERIFY(m_window->summary().startsWith(u"1 frames"_s));
    auto *scrub = m_window->findChild<ScrubBar *>();
    QVERIFY(!scrub->isVisible());
    QTest::keyClick(&*m_window, Qt::Key_Space);
    QVERIFY(scrub->isVisible());
    QCOMPARE(scrub->pointsShown(), 7);
    QTest::keyClick(&*m_window, Qt::Key_Left);
    QTest::keyClick(&*m_window, Qt::Key_Left);
    QCOMPARE(scrub->pointsShown(), 5);
    QTest::keyClick(&*m_window, Qt::Key_Right);
    QCOMPARE(scrub->pointsShown(), 6);
    QCOMPARE(scrub->findChild<QLabel *>()->text(), u"6 of 7: 1000, 0 123456 flags 0"_s);
    QTest::keyClick(&*m_window, Qt::Key_Space);
    QVERIFY(!scrub->isVisible());
}

void tst_HostWindow::slow_motion_holds_the_frame_and_real_pace_keeps_it()
{
    send(0, strokeOf({-1000, 0}, {1000, 0}, 400));
    setOutput(memory(), true);
    QTRY_VERIFY(m_host->isOutputOn() && m_window->summary().startsWith(u"1 frames"_s));
    auto *scrub = m_window->findChild<ScrubBar *>();
    QTest::keyClick(&*m_window, Qt::Key_2);
    QVERIFY(action("hold")->isChecked());
    // The slider goes with the beam.
    QTRY_VERIFY(scrub->pointsShown() > 10 && scrub->pointsShown() < 400);
    QTest::keyClick(&*m_window, Qt::Key_0);
    QVERIFY(action("hold")->isChecked());
}

void tst_HostWindow::switches_and_numbers_are_remembered()
{
    action("points")->trigger();
    action("asDrawn")->trigger();
    m_window->findChild<SidePanel *>()->setPointRate(12345);
    m_window->resize(m_window->size() + QSize(31, 17));
    QCoreApplication::processEvents();
    const QSize size = m_window->size();
    m_window->remember();
    m_window.reset();
    open();
    QVERIFY(action("points")->isChecked());
    QVERIFY(!action("asDrawn")->isChecked());
    QVERIFY(action("doctor")->isChecked());
    QCOMPARE(m_window->findChild<SidePanel *>()->pointRate(), 12345);
    QCOMPARE(m_window->size(), size);
}

void tst_HostWindow::a_corrupt_memory_of_the_window_changes_nothing()
{
    m_window.reset();
    QFile file(u".rehearsal"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        "[General]\npointRate=nan\ncolorDelayMicroseconds=1e300\n"
        "persistenceMilliseconds=-7\nstandLimitMilliseconds=soon\ngeometry=@Invalid()\n\xff");
    file.close();
    open();
    const auto *panel = m_window->findChild<SidePanel *>();
    QCOMPARE(panel->pointRate(), 30000);
    QCOMPARE(panel->colorDelay(), 110e-6);
    QCOMPARE(panel->persistence(), 0.005); // the least there is
    QCOMPARE(panel->longestStand(), 0.001);
}

void tst_HostWindow::the_doctor_names_what_is_wrong_with_the_chosen_zone()
{
    QTest::keyClick(&*m_window, Qt::Key_2, Qt::ControlModifier);
    send(1, {lit(40000, 0, 1), lit(0, 0, 1)});
    QTRY_VERIFY(m_window->summary().startsWith(u"1 frames"_s));
    QVERIFY(!findings().contains(u"outside the field"_s));
    QTest::mouseClick(views().at(1), Qt::LeftButton);
    QTRY_VERIFY(findings().contains(u"1 point is outside the field."_s));
}

void tst_HostWindow::a_zone_left_lit_is_named_whichever_is_chosen()
{
    QTest::keyClick(&*m_window, Qt::Key_2, Qt::ControlModifier);
    setOutput(memory(), true);
    send(1, strokeOf({0, 0}, {1000, 0}), sharedNow() - 5'000'000'000);
    QTRY_VERIFY2(findings().contains(u"Zone 2 is left lit"_s), qPrintable(findings()));
}

void tst_HostWindow::corrupt_times_of_frames_do_no_harm()
{
    for (const SharedTime time : {std::numeric_limits<SharedTime>::min(), SharedTime(-1),
             std::numeric_limits<SharedTime>::max()})
        send(0, strokeOf({0, 0}, {1000, 0}), time);
    setOutput(memory(), true);
    QTRY_VERIFY(m_window->summary().startsWith(u"3 frames"_s));
    // The last one counts as sent just now.
    QTRY_VERIFY(findings().contains(u"Jumps have at least 2 blanked points"_s));
    QVERIFY(!findings().contains(u"is left lit"_s));
}

QTEST_MAIN(tst_HostWindow)

#include "tst_hostwindow.moc"
