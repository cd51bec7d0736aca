#include "badbey.h"
#include "debuglines.h"
#include "runningwindow.h"

#include <QComboBox>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString lostLine = u"Beyond not started or Incorrect Beyond Version"_s;

} // namespace

/// The lines in the log about the host and the laser controls.
class tst_HostLog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void a_found_host_is_logged_with_its_build_and_zones_and_the_selected_zone();
    void a_lost_host_is_logged_with_its_build_and_switches_off();
    void a_host_that_returns_is_logged_with_its_new_build();
    void a_host_too_old_is_logged_with_its_build();
    void a_host_that_is_not_started_adds_nothing_to_the_given_line();
    void a_second_report_of_the_same_host_is_not_logged();
    void every_change_of_output_and_game_is_logged_once();
    void every_change_of_the_zone_is_logged_once();
    void ticks_and_host_checks_are_not_logged();

private:
    /// Opens the window on a host and forgets the lines about it.
    void start(int zones = 1);
    QStringList linesWhen(const QString &button);
    QComboBox &zoneList() const { return *m_running->find<QComboBox>(u"zoneComboBox"_s); }

    std::unique_ptr<RunningWindow> m_running;
    std::unique_ptr<DebugLines> m_lines;
};

void tst_HostLog::init()
{
    m_running = std::make_unique<RunningWindow>();
    m_lines = std::make_unique<DebugLines>(DebugLines::DebugOnly);
}

void tst_HostLog::cleanup()
{
    m_running.reset();
    m_lines.reset();
}

void tst_HostLog::start(int zones)
{
    m_running->host.zones = zones;
    m_running->open();
    m_running->waitForStatus();
    m_lines->takeAll();
}

QStringList tst_HostLog::linesWhen(const QString &button)
{
    m_running->click(button);
    return m_lines->takeAll();
}

void tst_HostLog::a_found_host_is_logged_with_its_build_and_zones_and_the_selected_zone()
{
    m_running->host.zones = 3;
    m_running->open();
    m_running->waitForStatus();
    const QStringList lines = m_lines->takeAll();
    for (const QString &line :
        {u"1700"_s, u"Host found: BEYOND 1700, zones: 3"_s, u"Zone 1 selected"_s})
        QVERIFY2(lines.count(line) == 1, qPrintable(line));
    QCOMPARE(lines.filter(u"output"_s), QStringList());
    QCOMPARE(lines.filter(u"Game"_s), QStringList());
}

void tst_HostLog::a_lost_host_is_logged_with_its_build_and_switches_off()
{
    start();
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    m_lines->takeAll();
    m_running->host.ready = 0;
    m_running->checkHost();
    QCOMPARE(m_lines->takeAll(),
        (QStringList{
            lostLine, u"Host lost: BEYOND 1700"_s, u"Game hidden"_s, u"Laser output disabled"_s}));
}

void tst_HostLog::a_host_that_returns_is_logged_with_its_new_build()
{
    start();
    m_running->host.ready = 0;
    m_running->checkHost();
    m_lines->takeAll();
    m_running->host.ready = 1;
    m_running->host.build = 1800;
    m_running->host.zones = 2;
    m_running->checkHost();
    QCOMPARE(m_lines->takeAll(), (QStringList{u"1800"_s, u"Host found: BEYOND 1800, zones: 2"_s}));
}

void tst_HostLog::a_host_too_old_is_logged_with_its_build()
{
    m_running->host.build = oldestBeyondBuild - 1;
    m_running->open();
    m_running->waitForStatus();
    QCOMPARE(m_lines->takeAll().filter(u"Host"_s), QStringList{u"Host too old: BEYOND 1613"_s});
}

void tst_HostLog::a_host_that_is_not_started_adds_nothing_to_the_given_line()
{
    m_running->host.ready = 0;
    m_running->open();
    m_running->waitForStatus();
    const QStringList lines = m_lines->takeAll();
    QCOMPARE(lines.count(lostLine), 1);
    QCOMPARE(lines.filter(u"Host"_s), QStringList());
}

void tst_HostLog::a_second_report_of_the_same_host_is_not_logged()
{
    start();
    emit m_running->game().beyCoStatus(BeyondReady);
    QCOMPARE(m_lines->takeAll(), QStringList());
}

void tst_HostLog::every_change_of_output_and_game_is_logged_once()
{
    start();
    QCOMPARE(linesWhen(u"enableButton"_s), QStringList{u"Laser output enabled"_s});
    QCOMPARE(linesWhen(u"showButton"_s), QStringList{u"Game shown"_s});
    QCOMPARE(linesWhen(u"enableButton"_s), QStringList{u"Laser output disabled"_s});
    QCOMPARE(linesWhen(u"showButton"_s), QStringList{u"Game hidden"_s});
}

void tst_HostLog::every_change_of_the_zone_is_logged_once()
{
    start(3);
    zoneList().setCurrentIndex(3);
    QCOMPARE(m_lines->takeAll(), QStringList{u"Zone 3 selected"_s});
    zoneList().setCurrentIndex(0);
    QCOMPARE(m_lines->takeAll(), QStringList{u"No zone selected"_s});
    emit m_running->game().beyCoStatus(BeyondReady);
    QCOMPARE(m_lines->takeAll(), QStringList{u"Zone 1 selected"_s});
    emit m_running->game().beyCoStatus(BeyondReady);
    QCOMPARE(m_lines->takeAll(), QStringList());
}

void tst_HostLog::ticks_and_host_checks_are_not_logged()
{
    start();
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    m_lines->takeAll();
    m_running->tick(100);
    m_running->checkHost();
    QCOMPARE(m_lines->takeAll(), QStringList());
}

QTEST_MAIN(tst_HostLog)
#include "tst_hostlog.moc"
