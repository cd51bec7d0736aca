#include "badbey.h"
#include "debuglines.h"
#include "lasercontrols.h"
#include "runningwindow.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString switchOn = u"ldbEnableLaserOutput"_s;
const QString switchOff = u"ldbDisableLaserOutput"_s;

QStringList outputCalls(FakeHost &host)
{
    return host.takeCalls().filter(u"LaserOutput"_s);
}

QStringList itemsOf(const QComboBox &list)
{
    QStringList items;
    for (int i = 0; i < list.count(); ++i)
        items.append(list.itemText(i));
    return items;
}

} // namespace

class tst_LaserControls : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void the_first_load_switches_the_output_off_and_shows_both_buttons_idle();
    void the_output_button_switches_the_host_on_and_off();
    void the_output_button_shows_its_own_state_whatever_the_host_answers();
    void a_button_changes_its_look_after_switching();
    void the_game_button_shows_and_hides_the_game();
    void showing_and_hiding_the_game_is_signalled_exactly_once_each();
    void a_hidden_game_sends_empty_frames_on_every_tick();
    void the_zones_of_the_host_are_listed_and_the_first_one_selected();
    void frames_are_sent_to_the_chosen_zone();
    void choosing_no_zone_stops_the_frames_at_once();
    void a_refresh_selects_the_first_zone_again();
    void a_refresh_follows_the_number_of_zones();
    void a_host_without_zones_leaves_the_zone_unchanged_data();
    void a_host_without_zones_leaves_the_zone_unchanged();
    void without_zones_only_the_placeholder_is_listed();
    void an_absurd_number_of_zones_is_limited_and_logged();
    void a_thousand_zones_are_all_listed();
    void zones_that_appear_during_a_refresh_select_nothing();
    void zones_missing_from_the_second_answer_are_listed_but_not_selected();

private:
    void start(int zones = 1);
    QComboBox &zoneList() const { return *m_running->find<QComboBox>(u"zoneComboBox"_s); }
    int zone() const { return m_running->game().binding()->zone; }
    void refresh() const { emit m_running->game().beyCoStatus(BeyondReady); }
    /// Chooses an entry with the keyboard, like an operator.
    void choose(int index) const;

    std::unique_ptr<RunningWindow> m_running;
};

void tst_LaserControls::init()
{
    m_running = std::make_unique<RunningWindow>();
}

void tst_LaserControls::cleanup()
{
    m_running.reset();
}

void tst_LaserControls::start(int zones)
{
    m_running->host.zones = zones;
    m_running->open();
    m_running->waitForStatus();
    m_running->host.takeCalls();
}

void tst_LaserControls::choose(int index) const
{
    QTest::keyClick(&zoneList(), Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        QTest::keyClick(&zoneList(), Qt::Key_Down);
    QCOMPARE(zoneList().currentIndex(), index);
}

void tst_LaserControls::the_first_load_switches_the_output_off_and_shows_both_buttons_idle()
{
    // Without a host, no new session switches the output off as well.
    m_running->host.ready = 0;
    m_running->open();
    const QStringList calls = m_running->host.takeCalls();
    QCOMPARE(calls.value(0), u"LoadLibrary BEYONDIOx64.dll"_s);
    QCOMPARE(calls.filter(u"LaserOutput"_s), QStringList{switchOff});
    QCOMPARE(m_running->text(u"enableButton"_s), u"Enable Laser Output"_s);
    QCOMPARE(m_running->find(u"enableButton"_s)->styleSheet(), idleLook);
    QCOMPARE(m_running->text(u"showButton"_s), u"Show pong"_s);
    QCOMPARE(m_running->find(u"showButton"_s)->styleSheet(), idleLook);
    QVERIFY(!m_running->game().gameShown);
}

void tst_LaserControls::the_output_button_switches_the_host_on_and_off()
{
    start();
    const auto *button = m_running->find<QPushButton>(u"enableButton"_s);
    m_running->click(u"enableButton"_s);
    QCOMPARE(outputCalls(m_running->host), QStringList{switchOn});
    QVERIFY(button->isChecked());
    QCOMPARE(button->text(), u"Disable Laser Output"_s);
    QCOMPARE(button->styleSheet(), activeLook);
    m_running->click(u"enableButton"_s);
    QCOMPARE(outputCalls(m_running->host), QStringList{switchOff});
    QVERIFY(!button->isChecked());
    QCOMPARE(button->text(), u"Enable Laser Output"_s);
    QCOMPARE(button->styleSheet(), idleLook);
}

void tst_LaserControls::the_output_button_shows_its_own_state_whatever_the_host_answers()
{
    m_running->host.outputAnswer = 0;
    start();
    m_running->click(u"enableButton"_s);
    QCOMPARE(m_running->text(u"enableButton"_s), u"Disable Laser Output"_s);
    QCOMPARE(m_running->find(u"enableButton"_s)->styleSheet(), activeLook);
}

void tst_LaserControls::a_button_changes_its_look_after_switching()
{
    start();
    QStringList textsMeanwhile;
    m_running->host.onOutput = [&] { textsMeanwhile.append(m_running->text(u"enableButton"_s)); };
    connect(&m_running->window->laser(), &LaserControls::gameShownChanged, m_running->window.get(),
        [&] { textsMeanwhile.append(m_running->text(u"showButton"_s)); });
    for (const QString &name : {u"enableButton"_s, u"showButton"_s}) {
        m_running->click(name);
        m_running->click(name);
    }
    m_running->host.onOutput = nullptr;
    QCOMPARE(textsMeanwhile,
        (QStringList{
            u"Enable Laser Output"_s, u"Disable Laser Output"_s, u"Show pong"_s, u"Hide pong"_s}));
}

void tst_LaserControls::the_game_button_shows_and_hides_the_game()
{
    start();
    m_running->click(u"showButton"_s);
    QVERIFY(m_running->game().gameShown);
    QCOMPARE(m_running->text(u"showButton"_s), u"Hide pong"_s);
    QCOMPARE(m_running->find(u"showButton"_s)->styleSheet(), activeLook);
    m_running->click(u"showButton"_s);
    QVERIFY(!m_running->game().gameShown);
    QCOMPARE(m_running->text(u"showButton"_s), u"Show pong"_s);
    QCOMPARE(m_running->find(u"showButton"_s)->styleSheet(), idleLook);
    QCOMPARE(outputCalls(m_running->host), QStringList());
}

void tst_LaserControls::showing_and_hiding_the_game_is_signalled_exactly_once_each()
{
    start();
    QList<bool> told;
    connect(&m_running->window->laser(), &LaserControls::gameShownChanged, m_running->window.get(),
        [&told](bool shown) { told.append(shown); });
    m_running->click(u"showButton"_s);
    QCOMPARE(told, QList{true});
    m_running->click(u"enableButton"_s);
    m_running->click(u"resetButton"_s);
    QCOMPARE(told, QList{true});
    m_running->click(u"showButton"_s);
    QCOMPARE(told, (QList{true, false}));
    m_running->click(u"showButton"_s);
    m_running->host.ready = 0;
    m_running->checkHost();
    QCOMPARE(told, (QList{true, false, true, false}));
}

void tst_LaserControls::a_hidden_game_sends_empty_frames_on_every_tick()
{
    start();
    m_running->click(u"showButton"_s);
    m_running->tick(3);
    m_running->click(u"showButton"_s);
    m_running->tick(1); // a frame in progress has been sent
    m_running->host.takeFrames();
    m_running->tick(3);
    const QList<FakeHost::Frame> frames = m_running->host.takeFrames();
    QVERIFY(frames.size() >= 3);
    for (const FakeHost::Frame &frame : frames)
        QVERIFY(frame.points.isEmpty());
}

void tst_LaserControls::the_zones_of_the_host_are_listed_and_the_first_one_selected()
{
    start(3);
    QCOMPARE(itemsOf(zoneList()),
        (QStringList{
            u"Select laser zone"_s, u"BEYOND Zone 1"_s, u"BEYOND Zone 2"_s, u"BEYOND Zone 3"_s}));
    QCOMPARE(zoneList().currentIndex(), 1);
    QCOMPARE(zone(), 0);
    for (int i = 0; i < zoneList().count(); ++i) {
        QVERIFY(zoneList().itemIcon(i).isNull());
        QVERIFY(!zoneList().itemData(i).isValid());
    }
}

void tst_LaserControls::frames_are_sent_to_the_chosen_zone()
{
    start(3);
    m_running->click(u"showButton"_s);
    for (const int index : {3, 1, 2}) {
        choose(index);
        QCOMPARE(zone(), index - 1);
        m_running->tick(3); // includes a frame that was in progress
        m_running->host.takeFrames();
        m_running->tick(3);
        const QList<FakeHost::Frame> frames = m_running->host.takeFrames();
        QVERIFY(!frames.isEmpty());
        for (const FakeHost::Frame &frame : frames) {
            QCOMPARE(frame.zone, index - 1);
            QVERIFY(!frame.points.isEmpty());
        }
    }
}

void tst_LaserControls::choosing_no_zone_stops_the_frames_at_once()
{
    start(2);
    m_running->click(u"showButton"_s);
    m_running->tick(3);
    choose(0);
    QCOMPARE(zone(), -1);
    m_running->tick(1); // a frame in progress has been sent
    const QList<FakeHost::Frame> frames = m_running->host.takeFrames();
    QVERIFY(!frames.isEmpty());
    QCOMPARE(frames.last().zone, 0);
    QVERIFY(!frames.last().points.isEmpty());
    m_running->tick(6);
    QVERIFY(m_running->host.takeFrames().isEmpty());
}

void tst_LaserControls::a_refresh_selects_the_first_zone_again()
{
    start(3);
    for (const int index : {3, 0, 1}) {
        choose(index);
        refresh();
        QCOMPARE(zoneList().currentIndex(), 1);
        QCOMPARE(zone(), 0);
    }
}

void tst_LaserControls::a_refresh_follows_the_number_of_zones()
{
    start(3);
    for (const int zones : {1, 12, 2}) {
        m_running->host.zones = zones;
        refresh();
        QCOMPARE(zoneList().count(), zones + 1);
        QCOMPARE(zoneList().itemText(zones), u"BEYOND Zone %1"_s.arg(zones));
        QCOMPARE(zoneList().currentIndex(), 1);
    }
}

void tst_LaserControls::a_host_without_zones_leaves_the_zone_unchanged_data()
{
    QTest::addColumn<int>("chosen");
    QTest::addColumn<int>("zones");
    QTest::addRow("no zone was chosen") << 0 << 0;
    QTest::addRow("the second zone was chosen") << 2 << 0;
    QTest::addRow("a count below zero") << 2 << -1;
    QTest::addRow("the lowest count") << 2 << std::numeric_limits<int>::min();
}

void tst_LaserControls::a_host_without_zones_leaves_the_zone_unchanged()
{
    QFETCH(int, chosen);
    QFETCH(int, zones);
    start(3);
    choose(chosen);
    m_running->host.zones = zones;
    refresh();
    QCOMPARE(itemsOf(zoneList()), QStringList{u"Select laser zone"_s});
    QCOMPARE(zoneList().currentIndex(), 0);
    QCOMPARE(zone(), chosen - 1);
}

void tst_LaserControls::without_zones_only_the_placeholder_is_listed()
{
    start(3);
    const_cast<LaserControls &>(m_running->window->laser()).RefreshZoneList(true);
    QCOMPARE(zoneList().count(), 1);
    QCOMPARE(zoneList().currentText(), u"Select laser zone"_s);
}

void tst_LaserControls::an_absurd_number_of_zones_is_limited_and_logged()
{
    start();
    m_running->host.zones = std::numeric_limits<int>::max();
    QTest::ignoreMessage(QtDebugMsg, "Only the first 1000 zones are listed of 2147483647");
    refresh();
    QCOMPARE(zoneList().count(), 1001);
    QCOMPARE(zoneList().itemText(1000), u"BEYOND Zone 1000"_s);
    QCOMPARE(zoneList().currentIndex(), 1);
    QCOMPARE(zone(), 0);
}

void tst_LaserControls::a_thousand_zones_are_all_listed()
{
    start();
    m_running->host.zones = 1000;
    DebugLines lines;
    refresh();
    QCOMPARE(zoneList().count(), 1001);
    QCOMPARE(zoneList().itemText(1000), u"BEYOND Zone 1000"_s);
    QCOMPARE(lines.takeAll(), QStringList());
}

void tst_LaserControls::zones_that_appear_during_a_refresh_select_nothing()
{
    start(3);
    choose(2);
    m_running->host.zones = 0;
    m_running->host.onZoneCount = [this, asked = false]() mutable {
        if (std::exchange(asked, true))
            m_running->host.zones = 3;
    };
    refresh();
    m_running->host.onZoneCount = nullptr;
    QCOMPARE(zoneList().count(), 1);
    QCOMPARE(zoneList().currentIndex(), 0);
    QCOMPARE(zone(), 1);
}

void tst_LaserControls::zones_missing_from_the_second_answer_are_listed_but_not_selected()
{
    start(3);
    choose(2);
    m_running->host.takeCalls();
    m_running->host.onZoneCount = [this, asked = false]() mutable {
        if (std::exchange(asked, true))
            m_running->host.zones = 0;
    };
    refresh();
    m_running->host.onZoneCount = nullptr;
    QCOMPARE(m_running->host.takeCalls().filter(u"ldbGetZoneCount"_s).size(), 2);
    QCOMPARE(zoneList().count(), 4);
    QCOMPARE(zoneList().currentIndex(), 0);
    QCOMPARE(zone(), 1);
}

QTEST_MAIN(tst_LaserControls)
#include "tst_lasercontrols.moc"
