#include "runningwindow.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace {

const QString startedLook = u"color:#26F;font-weight:bold;"_s;
const QString notStartedLook = u"color:#D30;font-weight:bold;"_s;
const QString notStartedText = u"BEYOND Not Started - Please Start BEYOND build 1614 or above"_s;
const std::array governed = {u"showButton"_s, u"enableButton"_s, u"resetButton"_s};

/// Records the buttons' events: "showButton clicked", "showButton disabled".
class ButtonRecord : public QObject
{
public:
    explicit ButtonRecord(const RunningWindow &running)
    {
        for (const QString &name : governed) {
            auto *button = running.find<QPushButton>(name);
            button->installEventFilter(this);
            connect(button, &QPushButton::clicked, this,
                [this, name] { lines.append(name + u" clicked"_s); });
        }
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange) {
            const bool enabled = static_cast<QWidget *>(object)->isEnabled();
            lines.append(object->objectName() + (enabled ? u" enabled"_s : u" disabled"_s));
        }
        return false;
    }

    QStringList lines;
};

} // namespace

class tst_HostStatus : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void the_label_says_not_started_until_the_host_is_checked();
    void a_started_host_is_shown_with_its_build_and_enables_the_controls();
    void the_host_counts_as_started_from_build_1614_on_data();
    void the_host_counts_as_started_from_build_1614_on();
    void a_lost_host_hides_the_game_and_switches_the_output_off();
    void a_lost_host_leaves_switched_off_controls_off_data();
    void a_lost_host_leaves_switched_off_controls_off();
    void a_lost_host_is_asked_for_its_zones_before_anything_changes();
    void a_found_host_is_asked_for_its_zones_before_the_controls_are_enabled_in_order();
    void a_second_report_of_a_lost_host_changes_nothing();
    void an_unknown_state_disables_the_controls_and_keeps_the_label_data();
    void an_unknown_state_disables_the_controls_and_keeps_the_label();
    void a_second_report_of_a_started_host_leaves_the_buttons_as_they_are();
    void a_host_that_returns_enables_the_controls_with_all_off();
    void a_newer_host_is_shown_with_its_new_build();
    void without_a_host_the_first_report_switches_everything_off();
    void the_loss_of_the_host_is_noticed_automatically();

private:
    void start();
    /// The buttons' events while the host becomes ready or is lost and, whenever the host is asked
    /// for its zones, the text of the status: "zones, BEYOND 1700 Started".
    QStringList changesWhen(bool ready) const;
    void lookAt(const QString &text, const QString &look, bool enabled) const;
    QStringList outputCalls() { return m_running->host.takeCalls().filter(u"LaserOutput"_s); }

    std::unique_ptr<RunningWindow> m_running;
};

void tst_HostStatus::init()
{
    m_running = std::make_unique<RunningWindow>();
}

void tst_HostStatus::cleanup()
{
    m_running.reset();
}

void tst_HostStatus::start()
{
    m_running->open();
    m_running->waitForStatus();
    m_running->host.takeCalls();
}

QStringList tst_HostStatus::changesWhen(bool ready) const
{
    ButtonRecord record(*m_running);
    m_running->host.onZoneCount = [this, &record] {
        record.lines.append(u"zones, "_s + m_running->text(u"statusLabel"_s));
    };
    m_running->host.ready = ready ? 1 : 0;
    m_running->checkHost();
    m_running->host.onZoneCount = nullptr;
    return record.lines;
}

void tst_HostStatus::lookAt(const QString &text, const QString &look, bool enabled) const
{
    QCOMPARE(m_running->text(u"statusLabel"_s), text);
    QCOMPARE(m_running->find(u"statusLabel"_s)->styleSheet(), look);
    for (const QString &name : governed)
        QVERIFY2(m_running->find(name)->isEnabled() == enabled, qPrintable(name));
}

void tst_HostStatus::the_label_says_not_started_until_the_host_is_checked()
{
    const MainWindow window;
    const auto *label = window.findChild<QLabel *>(u"statusLabel"_s);
    QVERIFY(label);
    QCOMPARE(label->parentWidget(), window.findChild<QStatusBar *>(u"statusbar"_s));
    QCOMPARE(label->text(), u"BEYOND Not started"_s);
    QCOMPARE(label->styleSheet(), QString());
}

void tst_HostStatus::a_started_host_is_shown_with_its_build_and_enables_the_controls()
{
    m_running->host.zones = 2;
    start();
    lookAt(u"BEYOND 1700 Started"_s, startedLook, true);
    QCOMPARE(m_running->find<QComboBox>(u"zoneComboBox"_s)->currentIndex(), 1);
}

void tst_HostStatus::the_host_counts_as_started_from_build_1614_on_data()
{
    QTest::addColumn<int>("ready");
    QTest::addColumn<int>("build");
    QTest::addColumn<bool>("started");
    QTest::addRow("not running") << 0 << 1700 << false;
    QTest::addRow("too old") << 1 << 1613 << false;
    QTest::addRow("just new enough") << 1 << 1614 << true;
}

void tst_HostStatus::the_host_counts_as_started_from_build_1614_on()
{
    QFETCH(int, ready);
    QFETCH(int, build);
    QFETCH(bool, started);
    m_running->host.ready = ready;
    m_running->host.build = build;
    start();
    if (started)
        lookAt(u"BEYOND %1 Started"_s.arg(build), startedLook, true);
    else
        lookAt(notStartedText, notStartedLook, false);
}

void tst_HostStatus::a_lost_host_hides_the_game_and_switches_the_output_off()
{
    start();
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    const ButtonRecord record(*m_running);
    m_running->host.takeCalls();
    m_running->host.ready = 0;
    m_running->checkHost();
    lookAt(notStartedText, notStartedLook, false);
    QCOMPARE(m_running->text(u"showButton"_s), u"Show pong"_s);
    QCOMPARE(m_running->find(u"showButton"_s)->styleSheet(), idleLook);
    QVERIFY(!m_running->find<QPushButton>(u"showButton"_s)->isChecked());
    QVERIFY(!m_running->game().gameShown);
    QCOMPARE(m_running->text(u"enableButton"_s), u"Enable Laser Output"_s);
    QCOMPARE(m_running->find(u"enableButton"_s)->styleSheet(), idleLook);
    QVERIFY(!m_running->find<QPushButton>(u"enableButton"_s)->isChecked());
    QCOMPARE(record.lines,
        (QStringList{u"showButton clicked"_s, u"enableButton clicked"_s, u"showButton disabled"_s,
            u"enableButton disabled"_s, u"resetButton disabled"_s}));
    QCOMPARE(outputCalls(), QStringList{u"ldbDisableLaserOutput"_s});
    QVERIFY(!m_running->host.outputOn);
}

void tst_HostStatus::a_lost_host_leaves_switched_off_controls_off_data()
{
    QTest::addColumn<QString>("on");
    QTest::addColumn<QStringList>("clicked");
    QTest::addRow("nothing is on") << QString() << QStringList();
    QTest::addRow("the game is shown") << u"showButton"_s << QStringList{u"showButton clicked"_s};
    QTest::addRow("the output is on")
        << u"enableButton"_s << QStringList{u"enableButton clicked"_s};
}

void tst_HostStatus::a_lost_host_leaves_switched_off_controls_off()
{
    QFETCH(QString, on);
    QFETCH(QStringList, clicked);
    start();
    if (!on.isEmpty())
        m_running->click(on);
    const ButtonRecord record(*m_running);
    m_running->host.ready = 0;
    m_running->checkHost();
    QCOMPARE(record.lines.filter(u"clicked"_s), clicked);
    lookAt(notStartedText, notStartedLook, false);
}

void tst_HostStatus::a_lost_host_is_asked_for_its_zones_before_anything_changes()
{
    start();
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    const QString zones = u"zones, BEYOND 1700 Started"_s;
    QCOMPARE(changesWhen(false),
        (QStringList{zones, zones, u"showButton clicked"_s, u"enableButton clicked"_s,
            u"showButton disabled"_s, u"enableButton disabled"_s, u"resetButton disabled"_s}));
}

void tst_HostStatus::a_found_host_is_asked_for_its_zones_before_the_controls_are_enabled_in_order()
{
    m_running->host.ready = 0;
    start();
    const QString zones = u"zones, "_s + notStartedText;
    QCOMPARE(changesWhen(true),
        (QStringList{zones, zones, u"showButton enabled"_s, u"enableButton enabled"_s,
            u"resetButton enabled"_s}));
}

void tst_HostStatus::a_second_report_of_a_lost_host_changes_nothing()
{
    start();
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    m_running->host.ready = 0;
    m_running->checkHost();
    const ButtonRecord record(*m_running);
    m_running->host.takeCalls();
    emit m_running->game().beyCoStatus(BeyondNotReady);
    lookAt(notStartedText, notStartedLook, false);
    QCOMPARE(record.lines, QStringList());
    QCOMPARE(outputCalls(), QStringList());
}

void tst_HostStatus::an_unknown_state_disables_the_controls_and_keeps_the_label_data()
{
    QTest::addColumn<int>("state");
    for (const int state : {1, 3, -1})
        QTest::addRow("%d", state) << state;
}

void tst_HostStatus::an_unknown_state_disables_the_controls_and_keeps_the_label()
{
    QFETCH(int, state);
    start();
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    m_running->host.takeCalls();
    emit m_running->game().beyCoStatus(BeyondState(state));
    lookAt(u"BEYOND 1700 Started"_s, startedLook, false);
    QVERIFY(!m_running->game().gameShown);
    QCOMPARE(outputCalls(), QStringList{u"ldbDisableLaserOutput"_s});
}

void tst_HostStatus::a_second_report_of_a_started_host_leaves_the_buttons_as_they_are()
{
    start();
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    m_running->host.takeCalls();
    m_running->host.zones = 4;
    emit m_running->game().beyCoStatus(BeyondReady);
    lookAt(u"BEYOND 1700 Started"_s, startedLook, true);
    QVERIFY(m_running->game().gameShown);
    QCOMPARE(m_running->text(u"enableButton"_s), u"Disable Laser Output"_s);
    QCOMPARE(outputCalls(), QStringList());
    QCOMPARE(m_running->find<QComboBox>(u"zoneComboBox"_s)->count(), 5);
}

void tst_HostStatus::a_host_that_returns_enables_the_controls_with_all_off()
{
    m_running->host.ready = 0;
    start();
    lookAt(notStartedText, notStartedLook, false);
    m_running->host.ready = 1;
    m_running->checkHost();
    lookAt(u"BEYOND 1700 Started"_s, startedLook, true);
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    m_running->host.ready = 0;
    m_running->checkHost();
    m_running->host.ready = 1;
    m_running->checkHost();
    lookAt(u"BEYOND 1700 Started"_s, startedLook, true);
    QVERIFY(!m_running->game().gameShown);
    QCOMPARE(m_running->text(u"showButton"_s), u"Show pong"_s);
    QCOMPARE(m_running->text(u"enableButton"_s), u"Enable Laser Output"_s);
    QVERIFY(!m_running->host.outputOn);
}

void tst_HostStatus::a_newer_host_is_shown_with_its_new_build()
{
    start();
    m_running->host.ready = 0;
    m_running->checkHost();
    m_running->host.build = 1801;
    m_running->host.ready = 1;
    m_running->checkHost();
    lookAt(u"BEYOND 1801 Started"_s, startedLook, true);
}

void tst_HostStatus::without_a_host_the_first_report_switches_everything_off()
{
    m_running->host.ready = 0;
    m_running->window = std::make_unique<MainWindow>();
    m_running->window->show();
    m_running->click(u"showButton"_s);
    m_running->click(u"enableButton"_s);
    m_running->waitForStatus();
    lookAt(notStartedText, notStartedLook, false);
    QVERIFY(!m_running->game().gameShown);
    QVERIFY(!m_running->host.outputOn);
}

void tst_HostStatus::the_loss_of_the_host_is_noticed_automatically()
{
    start();
    m_running->host.ready = 0;
    QTRY_COMPARE(m_running->text(u"statusLabel"_s), notStartedText);
    m_running->host.ready = 1;
    QTRY_COMPARE(m_running->text(u"statusLabel"_s), u"BEYOND 1700 Started"_s);
}

QTEST_MAIN(tst_HostStatus)
#include "tst_hoststatus.moc"
