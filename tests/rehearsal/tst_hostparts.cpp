#include "frames.h"
#include "statistics.h"
#include "viewgrid.h"
#include "zoneview.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr Statistics::Time start = Statistics::Time(1h);

std::vector<LdbPoint> whiteLine()
{
    return {{-20000, 0, 0, 0xFFFFFF, 0, 0, 1, 0}, {20000, 0, 0, 0xFFFFFF, 0, 0, 1, 0}};
}

int litPixels(QWidget &view)
{
    const QImage picture = view.grab().toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += qGray(picture.pixel(x, y)) > 128 ? 1 : 0;
    }
    return count;
}

} // namespace

class tst_HostParts : public QObject
{
    Q_OBJECT

private slots:
    void frames_of_the_last_second_are_counted();
    void the_rate_leaves_out_the_pauses();
    void missed_frames_count_for_the_rate_of_the_game();
    void nothing_received_is_a_rate_of_zero();
    void views_fill_the_window_best_data();
    void views_fill_the_window_best();
    void a_view_shows_a_frame_only_while_output_is_enabled();
    void a_view_keeps_its_frame_until_the_next();
    void a_view_without_a_name_is_all_field();
    void a_picture_that_stands_is_not_painted_again();
};

void tst_HostParts::frames_of_the_last_second_are_counted()
{
    Statistics statistics;
    for (int i = 0; i < 30; ++i)
        statistics.add(start + i * 100ms, 175, 0);
    QCOMPARE(statistics.frames(), 30U);
    QCOMPARE(statistics.points(), 175);
    QCOMPARE(statistics.framesInLastSecond(start + 2900ms), 10);
    QCOMPARE(statistics.framesInLastSecond(start + 3400ms), 5);
    QCOMPARE(statistics.framesInLastSecond(start + 3900ms), 0);
}

void tst_HostParts::the_rate_leaves_out_the_pauses()
{
    Statistics statistics;
    for (const auto beginning : {0s, 60s}) {
        for (int i = 0; i <= 100; ++i)
            statistics.add(start + beginning + i * 10ms, 1, 0);
    }
    QCOMPARE(statistics.framesPerSecond(), 100.0);
}

void tst_HostParts::missed_frames_count_for_the_rate_of_the_game()
{
    Statistics statistics;
    statistics.add(start, 1, 0);
    statistics.add(start + 100ms, 1, 9);
    QCOMPARE(statistics.missed(), 9U);
    QCOMPARE(statistics.framesPerSecond(), 100.0);
}

void tst_HostParts::nothing_received_is_a_rate_of_zero()
{
    Statistics statistics;
    QCOMPARE(statistics.framesPerSecond(), 0.0);
    statistics.add(start, 1, 0);
    QCOMPARE(statistics.framesPerSecond(), 0.0);
}

void tst_HostParts::views_fill_the_window_best_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QSize>("area");
    QTest::addColumn<int>("columns");
    QTest::addRow("none") << 0 << QSize(600, 600) << 1;
    QTest::addRow("one") << 1 << QSize(900, 600) << 1;
    QTest::addRow("three in a wide window") << 3 << QSize(1600, 600) << 3;
    QTest::addRow("three in a tall window") << 3 << QSize(600, 1600) << 1;
    QTest::addRow("four in a square") << 4 << QSize(600, 600) << 2;
    QTest::addRow("eight on a wide screen") << 8 << QSize(1600, 900) << 4;
    QTest::addRow("no room") << 2 << QSize(0, 0) << 1;
}

void tst_HostParts::views_fill_the_window_best()
{
    QFETCH(int, count);
    QFETCH(QSize, area);
    QTEST(bestColumns(count, area), "columns");
}

void tst_HostParts::a_view_shows_a_frame_only_while_output_is_enabled()
{
    ZoneView view({});
    view.resize(300, 300);
    view.setFrame(whiteLine());
    QCOMPARE(litPixels(view), 0);
    view.setOutputOn(true);
    QVERIFY(litPixels(view) > 100);
    view.setOutputOn(false);
    QCOMPARE(litPixels(view), 0);
}

void tst_HostParts::a_view_keeps_its_frame_until_the_next()
{
    ZoneView view({});
    view.resize(300, 300);
    view.setOutputOn(true);
    view.setFrame(whiteLine());
    QVERIFY(litPixels(view) > 100);
    QVERIFY(litPixels(view) > 100);
    view.setFrame({});
    QTRY_COMPARE(litPixels(view), 0);
}

void tst_HostParts::a_view_without_a_name_is_all_field()
{
    ZoneView plain({});
    ZoneView named(u"Zone 1"_s);
    plain.setOutputOn(true);
    named.setOutputOn(true);
    const std::vector<LdbPoint> border = {
        {-32768, -32768, 0, 0xFFFFFF, 0, 0, 1, 0}, {32768, -32768, 0, 0xFFFFFF, 0, 0, 1, 0}};
    for (ZoneView *view : {&plain, &named}) {
        view->resize(300, 300);
        view->setFrame(border);
    }
    const auto lowestLit = [](QWidget &view) {
        const QImage picture = view.grab().toImage();
        int y = picture.height() - 1;
        while (y > 0 && qGray(picture.pixel(150, y)) < 128)
            --y;
        return y;
    };
    QVERIFY(lowestLit(plain) > 280);
    QVERIFY(lowestLit(named) < 280);
}

void tst_HostParts::a_picture_that_stands_is_not_painted_again()
{
    class Counter : public QObject
    {
    public:
        int paints = 0;
        bool eventFilter(QObject * /*object*/, QEvent *event) override
        {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    };
    Counter counter;
    ZoneView view({});
    view.installEventFilter(&counter);
    view.resize(300, 300);
    view.setOutputOn(true);
    view.setFrame(whiteLine());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    // Painted until the first frame has come up, and then no more.
    QTRY_VERIFY(([&] {
        const int before = counter.paints;
        view.refresh();
        QCoreApplication::processEvents();
        return counter.paints > 0 && counter.paints == before;
    })());
    const auto paintsAgain = [&](const std::vector<LdbPoint> &frame) {
        const int before = counter.paints;
        view.setFrame(frame);
        view.refresh();
        QCoreApplication::processEvents();
        return counter.paints > before;
    };
    QVERIFY(!paintsAgain(whiteLine()));
    QVERIFY(paintsAgain({}));
    view.setOutputOn(false);
    QTRY_VERIFY(!paintsAgain({}));
    QVERIFY(!paintsAgain(whiteLine()));
}

QTEST_MAIN(tst_HostParts)

#include "tst_hostparts.moc"
