#include "showlog.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr SharedTime ms = 1'000'000;
constexpr SharedTime start = 7'000 * ms;
constexpr LdbPoint white = {0, 0, 0, 0xFFFFFF, 0, 0, 1, 0};

/// A show with times in milliseconds since the host started.
struct Show
{
    ShowLog log{start};

    Show() { happens(Event::HostStarted, 0); }
    void happens(Event::Kind kind, double at) { log.note(Event{kind, time(at), 42}); }
    void lit(double at, int zone = 0) { frame(at, {white, white}, zone); }
    void dark(double at, int zone = 0) { frame(at, {}, zone); }
    void frame(double at, std::vector<LdbPoint> points, int zone = 0)
    {
        log.note(zone, {.missed = 0, .sentAt = time(at), .points = std::move(points)});
    }
    /// The lines of one part of the report, without leading blanks.
    QStringList part(const QString &name) const
    {
        const QString text = QString::fromUtf8(log.report());
        const QString after = text.section(u'\n' + name, 1);
        QStringList lines = after.section(u"\n\n"_s, 0, 0).split(u'\n');
        for (QString &line : lines)
            line = line.trimmed();
        lines.removeAll(QString());
        return lines;
    }
    QString verdict() const { return QString::fromUtf8(log.report()).trimmed().section(u'\n', -1); }

    static SharedTime time(double at) { return start + SharedTime(at * ms); }
};

} // namespace

class tst_ShowLog : public QObject
{
    Q_OBJECT

private slots:
    void a_zone_shows_light_with_output_enabled_and_a_lit_frame();
    void a_zone_repeats_a_lit_frame_for_ever();
    void a_point_is_lit_when_the_beam_is_on_data();
    void a_point_is_lit_when_the_beam_is_on();
    void events_are_listed_with_their_times();
    void a_dark_frame_after_lit_ones_is_an_ending();
    void disabled_output_makes_every_zone_dark_at_once();
    void an_ending_states_how_long_a_zone_had_been_dark();
    void an_ending_that_leaves_a_zone_lit_states_when_it_went_dark_data();
    void an_ending_that_leaves_a_zone_lit_states_when_it_went_dark();
    void a_zone_left_lit_is_reported();
    void frames_that_stop_with_a_lit_one_are_an_ending();
    void a_pause_of_a_second_is_no_ending();
    void zones_end_independently();
    void zones_without_frames_are_omitted();
    void each_zone_has_its_figures();
    void a_flickering_game_does_not_fill_the_memory();
};

void tst_ShowLog::a_zone_shows_light_with_output_enabled_and_a_lit_frame()
{
    Show show;
    show.lit(1);
    QVERIFY(!show.log.showsLight(0));
    show.happens(Event::OutputEnabled, 2);
    QVERIFY(show.log.showsLight(0));
    show.dark(3);
    QVERIFY(!show.log.showsLight(0));
    show.lit(4);
    QVERIFY(show.log.showsLight(0));
    show.happens(Event::OutputDisabled, 5);
    QVERIFY(!show.log.showsLight(0));
}

void tst_ShowLog::a_zone_repeats_a_lit_frame_for_ever()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.lit(2);
    show.happens(Event::SessionClosed, 3);
    show.happens(Event::HostEnded, 3'600'000);
    QVERIFY(show.log.showsLight(0));
}

void tst_ShowLog::a_point_is_lit_when_the_beam_is_on_data()
{
    QTest::addColumn<float>("x");
    QTest::addColumn<int>("color");
    QTest::addColumn<int>("flags");
    QTest::addColumn<bool>("lit");
    const float nowhere = std::numeric_limits<float>::quiet_NaN();
    QTest::addRow("white") << 0.0F << 0xFFFFFF << 0 << true;
    QTest::addRow("the faintest blue") << 0.0F << 1 << 1 << true;
    QTest::addRow("black") << 0.0F << 0 << 1 << false;
    QTest::addRow("a colour beyond 24 bits") << 0.0F << 0x1000000 << 0 << false;
    QTest::addRow("blanked travel") << 0.0F << 0xFFFFFF << 3 << false;
    QTest::addRow("nowhere") << nowhere << 0xFFFFFF << 0 << false;
}

void tst_ShowLog::a_point_is_lit_when_the_beam_is_on()
{
    QFETCH(float, x);
    QFETCH(int, color);
    QFETCH(int, flags);
    QTEST(isLit(LdbPoint{x, 0, 0, color, 0, 0, std::uint8_t(flags), 0}), "lit");
}

void tst_ShowLog::events_are_listed_with_their_times()
{
    Show show;
    show.happens(Event::SessionOpened, 10.5);
    show.dark(11);
    show.happens(Event::OutputEnabled, 12);
    show.lit(20);
    show.lit(29);
    show.dark(32.0015);
    show.happens(Event::OutputDisabled, 40);
    show.happens(Event::SessionClosed, 41);
    show.happens(Event::SessionOpened, 42);
    show.happens(Event::GameGone, 43);
    show.happens(Event::HostEnded, 50);
    const QStringList expected = {
        u"0.000  host started, output disabled"_s,
        u"10.500  session opened by process 42"_s,
        u"12.000  output enabled"_s,
        u"20.000  zone 1: first lit frame"_s,
        u"29.000  zone 1: last lit frame"_s,
        u"32.001  zone 1: dark frame"_s,
        u"40.000  output disabled"_s,
        u"41.000  session closed"_s,
        u"42.000  session opened by process 42"_s,
        u"43.000  game gone"_s,
        u"50.000  host ended"_s,
    };
    QCOMPARE(show.part(u"Events"_s), expected);
}

void tst_ShowLog::a_dark_frame_after_lit_ones_is_an_ending()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.lit(2);
    show.lit(11);
    show.dark(14.5);
    QCOMPARE(show.part(u"Endings"_s),
        QStringList(u"11.000  zone 1, last lit frame: dark 3.500 ms after"_s));
    QCOMPARE(show.verdict(), u"Every ending left every zone dark."_s);
}

void tst_ShowLog::disabled_output_makes_every_zone_dark_at_once()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.lit(2, 0);
    show.lit(3, 7);
    show.happens(Event::OutputDisabled, 9);
    QCOMPARE(show.part(u"Endings"_s),
        (QStringList{u"9.000  output disabled: zone 1 dark 0.000 ms after"_s,
            u"9.000  output disabled: zone 8 dark 0.000 ms after"_s}));
}

void tst_ShowLog::an_ending_states_how_long_a_zone_had_been_dark()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.lit(2);
    show.dark(5);
    show.happens(Event::SessionClosed, 105.25);
    QCOMPARE(show.part(u"Endings"_s).constLast(),
        u"105.250  session closed: zone 1 dark 100.250 ms before"_s);
}

void tst_ShowLog::an_ending_that_leaves_a_zone_lit_states_when_it_went_dark_data()
{
    QTest::addColumn<int>("ending");
    QTest::addColumn<QString>("name");
    QTest::addRow("session closed") << int(Event::SessionClosed) << u"session closed"_s;
    QTest::addRow("game gone") << int(Event::GameGone) << u"game gone"_s;
}

void tst_ShowLog::an_ending_that_leaves_a_zone_lit_states_when_it_went_dark()
{
    QFETCH(int, ending);
    QFETCH(QString, name);
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.lit(2);
    show.happens(Event::Kind(ending), 10);
    QCOMPARE(show.part(u"Endings"_s), QStringList(u"10.000  %1: zone 1 not dark"_s.arg(name)));
    QCOMPARE(show.verdict(), u"Left lit: 1 of 1 endings."_s);
    show.happens(Event::OutputDisabled, 510);
    QCOMPARE(show.part(u"Endings"_s).constFirst(),
        u"10.000  %1: zone 1 dark 500.000 ms after"_s.arg(name));
    QCOMPARE(show.verdict(), u"Every ending left every zone dark."_s);
}

void tst_ShowLog::a_zone_left_lit_is_reported()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.dark(2, 1);
    show.lit(3, 0);
    show.happens(Event::GameGone, 10);
    show.happens(Event::HostEnded, 500);
    QCOMPARE(show.part(u"Endings"_s),
        (QStringList{u"10.000  game gone: zone 1 not dark"_s,
            u"10.000  game gone: zone 2 dark 10.000 ms before"_s}));
    QCOMPARE(show.verdict(), u"Left lit: 1 of 2 endings."_s);
}

void tst_ShowLog::frames_that_stop_with_a_lit_one_are_an_ending()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.lit(2, 0);
    for (int at = 11; at < 1100; at += 9) // the game has switched to another zone
        show.dark(at, 1);
    QVERIFY(show.part(u"Events"_s).contains(u"2.000  zone 1: frames stopped with a lit one"_s));
    QCOMPARE(show.part(u"Endings"_s), QStringList(u"2.000  zone 1, frames stopped: not dark"_s));
    show.dark(2000, 0);
    QCOMPARE(show.part(u"Endings"_s),
        QStringList(u"2.000  zone 1, frames stopped: dark 1998.000 ms after"_s));
}

void tst_ShowLog::a_pause_of_a_second_is_no_ending()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.lit(2);
    show.lit(1002);
    show.lit(2002);
    QVERIFY(show.part(u"Endings"_s).isEmpty());
    show.lit(3002.001);
    QCOMPARE(show.part(u"Endings"_s).size(), 1);
}

void tst_ShowLog::zones_end_independently()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.lit(2, 0);
    show.lit(2, 3);
    show.dark(5, 3);
    QVERIFY(show.log.showsLight(0));
    QVERIFY(!show.log.showsLight(3));
    QCOMPARE(show.part(u"Endings"_s),
        QStringList(u"2.000  zone 4, last lit frame: dark 3.000 ms after"_s));
}

void tst_ShowLog::zones_without_frames_are_omitted()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.happens(Event::OutputDisabled, 2);
    QVERIFY(show.part(u"Endings"_s).isEmpty());
    QCOMPARE(show.verdict(), u"Every ending left every zone dark."_s);
}

void tst_ShowLog::each_zone_has_its_figures()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    show.dark(2);
    show.lit(3);
    show.log.note(0, {.missed = 5, .sentAt = Show::time(4), .points = {white, white, white}});
    show.dark(5, 2);
    QCOMPARE(show.part(u"Zones"_s),
        (QStringList{u"zone 1: 3 frames, 2 lit, 5 missed, at most 3 points, lit at the end"_s,
            u"zone 3: 1 frames, 0 lit, 0 missed, at most 0 points, dark at the end"_s}));
}

void tst_ShowLog::a_flickering_game_does_not_fill_the_memory()
{
    Show show;
    show.happens(Event::OutputEnabled, 1);
    for (int i = 0; i < 20'000; ++i) {
        show.lit(2 + 2 * i);
        show.dark(3 + 2 * i);
    }
    QVERIFY(show.part(u"Events"_s).size() <= 10'001);
    QCOMPARE(
        show.part(u"Events"_s).constLast(), u"The list is full; later events are not shown."_s);
    QCOMPARE(show.part(u"Endings"_s).size(), 10'000);
    QVERIFY(show.part(u"Zones"_s).constFirst().startsWith(u"zone 1: 40000 frames, 20000 lit"_s));
}

QTEST_GUILESS_MAIN(tst_ShowLog)

#include "tst_showlog.moc"
