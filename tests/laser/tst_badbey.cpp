#include "badbey.h"
#include "beyonddll.h"
#include "fakehost.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString load = u"LoadLibrary BEYONDIOx64.dll"_s;

QString sent(int zone, int count)
{
    return u"ldbSendFrame 2 %1 0 SingleZone %2 points null 100 -1"_s.arg(zone).arg(count);
}

QList<FramePoint> someStroke()
{
    return {{-32000, 100, 0, 0, 3}, {-32000, 100, 0, 0xFFFFFF, 1}, {32000, -7, 0, 0xFFFF00, 1}};
}

} // namespace

class tst_BadBey : public QObject
{
    Q_OBJECT

private slots:
    void a_new_binding_loads_the_library_and_calls_nothing_in_it();
    void the_entry_points_are_resolved_in_the_order_of_the_table();
    void a_missing_library_asks_for_exit_at_every_connect();
    void a_library_that_lacks_one_entry_point_is_freed_and_counts_as_missing_data();
    void a_library_that_lacks_one_entry_point_is_freed_and_counts_as_missing();
    void a_library_is_unloaded_once();
    void without_the_library_output_and_zones_answer_zero();
    void connecting_opens_the_session_with_output_off();
    void a_host_that_is_not_exactly_ready_is_not_connected_data();
    void a_host_that_is_not_exactly_ready_is_not_connected();
    void reconnecting_destroys_the_old_session_first();
    void a_reconnect_that_finds_no_host_has_closed_the_session();
    void an_old_host_is_connected_with_output_off_and_its_build_returned();
    void the_host_is_ready_from_build_1614_on_data();
    void the_host_is_ready_from_build_1614_on();
    void a_host_that_is_not_ready_is_not_asked_for_its_version();
    void the_output_switch_returns_the_hosts_answer();
    void points_are_equal_only_if_nothing_of_them_differs();
    void a_frame_is_converted_point_by_point();
    void an_empty_frame_is_sent_too();
    void no_zone_sends_nothing_and_empties_the_list();
    void a_deselected_lit_zone_receives_nothing_more_data();
    void a_deselected_lit_zone_receives_nothing_more();
    void a_frame_is_truncated_at_8192_points();
    void the_list_keeps_its_storage();
    void closing_the_session_destroys_it_once();
    void destruction_closes_the_session_before_the_library();
};

void tst_BadBey::a_new_binding_loads_the_library_and_calls_nothing_in_it()
{
    FakeHost host;
    const BadBey bey;
    QCOMPARE(host.takeCalls(), QStringList{load});
    QCOMPARE(int(bey.zone), 0);
    QCOMPARE(int(bey.beyondVersion), -5);
    QVERIFY(bey.points.isEmpty());
}

void tst_BadBey::the_entry_points_are_resolved_in_the_order_of_the_table()
{
    FakeHost host;
    const BadBey bey;
    const QStringList expected = {
        u"ldbCreate"_s,
        u"ldbDestroy"_s,
        u"ldbGetDllVersion"_s,
        u"ldbBeyondExeStarted"_s,
        u"ldbBeyondExeReady"_s,
        u"ldbGetBeyondVersion"_s,
        u"ldbEnableLaserOutput"_s,
        u"ldbDisableLaserOutput"_s,
        u"ldbBlackout"_s,
        u"ldbGetProjectorCount"_s,
        u"ldbGetZoneCount"_s,
        u"ldbGetProjectorEvent"_s,
        u"ldbCreateZoneImage"_s,
        u"ldbCreateProjectorImage"_s,
        u"ldbDeleteZoneImage"_s,
        u"ldbDeleteProjectorImage"_s,
        u"ldbSendFrameToImage"_s,
        u"ldbGetTimeCode"_s,
        u"ldbSetTimeCode"_s,
        u"ldbSetMidiIn"_s,
        u"ldbSetMidiOut"_s,
        u"ldbSetKinect"_s,
        u"ldbSetDmx"_s,
        u"ldbSetChannels"_s,
        u"ldbTimelinePlay"_s,
        u"ldbTimelineStop"_s,
        u"ldbTimelineGetPlaying"_s,
        u"ldbTimelineSetPos"_s,
        u"ldbTimelineGetPos"_s,
        u"ldbTimelineGetDuration"_s,
        u"ldbTimelineSetOnline"_s,
        u"ldbTimelineGetOnline"_s,
        u"ldbGetProjectorSerial"_s,
        u"ldbSendFrame"_s,
    };
    QCOMPARE(host.takeResolved(), expected);
}

void tst_BadBey::a_missing_library_asks_for_exit_at_every_connect()
{
    FakeHost host;
    host.installed = false;
    BadBey bey;
    const QSignalSpy exits(&bey, &BadBey::reqExit);
    for (int connects = 1; connects <= 2; ++connects) {
        QTest::ignoreMessage(QtDebugMsg, "DLL Not found");
        QCOMPARE(bey.ConnectBeyond(), -2);
        QCOMPARE(exits.count(), connects - 1);
        QTRY_COMPARE(exits.count(), connects);
    }
    QCOMPARE(host.takeCalls(), QStringList{load});
}

void tst_BadBey::a_library_that_lacks_one_entry_point_is_freed_and_counts_as_missing_data()
{
    QTest::addColumn<QByteArray>("missing");
    QTest::addColumn<int>("resolved");
    int resolved = 0;
#define ADD_ROW(name, parameters, arguments) \
    QTest::addRow(#name) << QByteArray(#name) << ++resolved;
    LDB_ENTRY_POINTS(ADD_ROW)
#undef ADD_ROW
    QCOMPARE(resolved, 34);
}

void tst_BadBey::a_library_that_lacks_one_entry_point_is_freed_and_counts_as_missing()
{
    QFETCH(QByteArray, missing);
    QFETCH(int, resolved);
    FakeHost host;
    host.missingEntryPoint = missing;
    {
        BadBey bey;
        QCOMPARE(host.takeResolved().size(), resolved);
        QCOMPARE(host.takeCalls(), (QStringList{load, u"FreeLibrary"_s}));
        QTest::ignoreMessage(QtDebugMsg, "DLL Not found");
        QCOMPARE(bey.ConnectBeyond(), -2);
        QVERIFY(!bey.IsBeyondReady());
        bey.points = someStroke();
        bey.SendFrame();
        QVERIFY(bey.points.isEmpty());
    }
    QCOMPARE(host.takeCalls(), QStringList());
}

void tst_BadBey::a_library_is_unloaded_once()
{
    FakeHost host;
    FreeBeyondDll();
    QCOMPARE(host.takeCalls(), QStringList());
    QCOMPARE(LoadBeyondDll(), 1);
    FreeBeyondDll();
    FreeBeyondDll();
    QCOMPARE(host.takeCalls(), (QStringList{load, u"FreeLibrary"_s}));
}

void tst_BadBey::without_the_library_output_and_zones_answer_zero()
{
    FakeHost host;
    host.installed = false;
    host.zones = 3;
    BadBey bey;
    QCOMPARE(bey.SetLaserOutput(true), 0);
    QCOMPARE(bey.SetLaserOutput(false), 0);
    QCOMPARE(bey.GetZoneCount(), 0);
    QCOMPARE(host.takeCalls(), QStringList{load});
}

void tst_BadBey::connecting_opens_the_session_with_output_off()
{
    FakeHost host;
    BadBey bey;
    host.takeCalls();
    QCOMPARE(bey.ConnectBeyond(), 1700);
    QCOMPARE(int(bey.beyondVersion), 1700);
    QCOMPARE(host.takeCalls(),
        (QStringList{u"ldbBeyondExeReady"_s, u"ldbCreate"_s, u"ldbGetBeyondVersion"_s,
            u"ldbDisableLaserOutput"_s}));
}

void tst_BadBey::a_host_that_is_not_exactly_ready_is_not_connected_data()
{
    QTest::addColumn<int>("ready");
    QTest::addRow("0") << 0;
    QTest::addRow("2") << 2;
    QTest::addRow("-1") << -1;
}

void tst_BadBey::a_host_that_is_not_exactly_ready_is_not_connected()
{
    QFETCH(int, ready);
    FakeHost host;
    host.ready = ready;
    BadBey bey;
    host.takeCalls();
    QCOMPARE(bey.ConnectBeyond(), -1);
    QCOMPARE(int(bey.beyondVersion), -5);
    QCOMPARE(host.takeCalls(), QStringList{u"ldbBeyondExeReady"_s});
}

void tst_BadBey::reconnecting_destroys_the_old_session_first()
{
    FakeHost host;
    BadBey bey;
    bey.ConnectBeyond();
    bey.SetLaserOutput(true);
    host.takeCalls();
    bey.ConnectBeyond();
    QCOMPARE(host.takeCalls(),
        (QStringList{u"ldbDestroy"_s, u"ldbBeyondExeReady"_s, u"ldbCreate"_s,
            u"ldbGetBeyondVersion"_s, u"ldbDisableLaserOutput"_s}));
    QVERIFY(!host.outputOn);
}

void tst_BadBey::a_reconnect_that_finds_no_host_has_closed_the_session()
{
    FakeHost host;
    {
        BadBey bey;
        bey.ConnectBeyond();
        host.ready = 0;
        QCOMPARE(bey.ConnectBeyond(), -1);
        QCOMPARE(int(bey.beyondVersion), 1700);
        host.takeCalls();
    }
    QCOMPARE(host.takeCalls(), QStringList{u"FreeLibrary"_s});
}

void tst_BadBey::an_old_host_is_connected_with_output_off_and_its_build_returned()
{
    FakeHost host;
    host.build = 1613;
    BadBey bey;
    QCOMPARE(bey.ConnectBeyond(), 1613);
    QCOMPARE(int(bey.beyondVersion), 1613);
    QCOMPARE(host.takeCalls().constLast(), u"ldbDisableLaserOutput"_s);
}

void tst_BadBey::the_host_is_ready_from_build_1614_on_data()
{
    QTest::addColumn<int>("build");
    QTest::addColumn<bool>("ready");
    QTest::addRow("1613") << 1613 << false;
    QTest::addRow("1614") << 1614 << true;
    QTest::addRow("0") << 0 << false;
    QTest::addRow("-1") << -1 << false;
    QTest::addRow("the lowest") << std::numeric_limits<int>::min() << false;
    QTest::addRow("the highest") << std::numeric_limits<int>::max() << true;
}

void tst_BadBey::the_host_is_ready_from_build_1614_on()
{
    QFETCH(int, build);
    FakeHost host;
    host.build = build;
    const BadBey bey;
    QTEST(bey.IsBeyondReady(), "ready");
}

void tst_BadBey::a_host_that_is_not_ready_is_not_asked_for_its_version()
{
    FakeHost host;
    host.ready = 0;
    const BadBey bey;
    host.takeCalls();
    QVERIFY(!bey.IsBeyondReady());
    QCOMPARE(host.takeCalls(), QStringList{u"ldbBeyondExeReady"_s});
}

void tst_BadBey::the_output_switch_returns_the_hosts_answer()
{
    FakeHost host;
    host.outputAnswer = 42;
    BadBey bey;
    host.takeCalls();
    QCOMPARE(bey.SetLaserOutput(true), 42);
    QCOMPARE(bey.SetLaserOutput(false), 42);
    QCOMPARE(
        host.takeCalls(), (QStringList{u"ldbEnableLaserOutput"_s, u"ldbDisableLaserOutput"_s}));
}

void tst_BadBey::points_are_equal_only_if_nothing_of_them_differs()
{
    const FramePoint point = {1, 2, 3, 4, 5};
    QVERIFY(point == FramePoint(point));
    for (qint32 FramePoint::*const part :
        {&FramePoint::x, &FramePoint::y, &FramePoint::z, &FramePoint::color, &FramePoint::flags}) {
        FramePoint other = point;
        other.*part += 1;
        QVERIFY(point != other);
    }
}

void tst_BadBey::a_frame_is_converted_point_by_point()
{
    FakeHost host;
    BadBey bey;
    bey.zone = 2;
    bey.points = someStroke();
    bey.points[1].flags = 0x101; // only the low byte reaches the host
    host.takeCalls();
    bey.SendFrame();
    QCOMPARE(host.takeCalls(), QStringList{sent(2, 3)});
    const auto frames = host.takeFrames();
    const auto &points = frames.first().points;
    QCOMPARE(points.size(), 3);
    QCOMPARE(points[0].x, -32000.0F);
    QCOMPARE(points[0].y, 100.0F);
    QCOMPARE(points[0].z, 0.0F);
    QCOMPARE(points[0].color, 0);
    QCOMPARE(int(points[0].flags), 3);
    QCOMPARE(points[1].color, 0xFFFFFF);
    QCOMPARE(int(points[1].flags), 1);
    QCOMPARE(points[2].y, -7.0F);
    for (const LdbPoint &point : points)
        QCOMPARE(point.reserved0 | point.reserved1 | point.reserved2, 0);
    QVERIFY(bey.points.isEmpty());
}

void tst_BadBey::an_empty_frame_is_sent_too()
{
    FakeHost host;
    BadBey bey;
    host.takeCalls();
    bey.SendFrame();
    QCOMPARE(host.takeCalls(), QStringList{sent(0, 0)});
}

void tst_BadBey::no_zone_sends_nothing_and_empties_the_list()
{
    FakeHost host;
    BadBey bey;
    bey.zone = -1;
    bey.points = someStroke();
    host.takeCalls();
    bey.SendFrame();
    QCOMPARE(host.takeCalls(), QStringList());
    QVERIFY(bey.points.isEmpty());
}

void tst_BadBey::a_deselected_lit_zone_receives_nothing_more_data()
{
    QTest::addColumn<int>("nextZone");
    QTest::addRow("for another zone") << 3;
    QTest::addRow("for no zone") << -1;
}

void tst_BadBey::a_deselected_lit_zone_receives_nothing_more()
{
    QFETCH(int, nextZone);
    FakeHost host;
    BadBey bey;
    bey.points = someStroke();
    bey.SendFrame();
    host.takeCalls();
    bey.zone = nextZone;
    const QStringList expected = nextZone < 0 ? QStringList() : QStringList{sent(nextZone, 3)};
    for (int frame = 0; frame < 2; ++frame) {
        bey.points = someStroke();
        bey.SendFrame();
        QCOMPARE(host.takeCalls(), expected);
        QVERIFY(bey.points.isEmpty());
    }
}

void tst_BadBey::a_frame_is_truncated_at_8192_points()
{
    FakeHost host;
    BadBey bey;
    bey.points.fill({1, 2, 0, 3, 0}, 8193);
    host.takeCalls();
    bey.SendFrame();
    QCOMPARE(host.takeCalls(), QStringList{sent(0, 8192)});
    QVERIFY(bey.points.isEmpty());
}

void tst_BadBey::the_list_keeps_its_storage()
{
    FakeHost host;
    BadBey bey;
    bey.points = someStroke();
    bey.points.append(someStroke());
    const auto *const storage = bey.points.constData();
    bey.SendFrame();
    bey.points.append(someStroke());
    QCOMPARE(bey.points.constData(), storage);
}

void tst_BadBey::closing_the_session_destroys_it_once()
{
    FakeHost host;
    BadBey bey;
    bey.ConnectBeyond();
    host.takeCalls();
    bey.CloseSession();
    bey.CloseSession();
    QCOMPARE(host.takeCalls(), QStringList{u"ldbDestroy"_s});
}

void tst_BadBey::destruction_closes_the_session_before_the_library()
{
    FakeHost host;
    {
        BadBey bey;
        bey.ConnectBeyond();
        host.takeCalls();
    }
    QCOMPARE(host.takeCalls(), (QStringList{u"ldbDestroy"_s, u"FreeLibrary"_s}));
}

QTEST_GUILESS_MAIN(tst_BadBey)

#include "tst_badbey.moc"
