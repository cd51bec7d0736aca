#include "frames.h"
#include "lightpoints.h"
#include "viewgrid.h"
#include "windowmemory.h"
#include "zoneview.h"

#include <QTest>

using namespace Qt::StringLiterals;
namespace {

/// Minimum size of the window being placed.
constexpr QSize smallest(620, 600);

std::vector<LdbPoint> whiteLine()
{
    return strokeOf({-20000, 0}, {20000, 0}, 60);
}

/// A view of a zone, updated sixty times a second.
class WatchedView : public ZoneView
{
public:
    WatchedView()
        : ZoneView(u"Zone 1"_s)
    {
        setLineShown(false);
        ScannerSettings settings;
        settings.hasMirrors = false;
        setScanner(settings);
        resize(300, 300);
    }

    void watch(int pictures = 30)
    {
        for (int i = 0; i < pictures; ++i)
            refresh(m_now += 16'000'000);
    }
    void take(const std::vector<LdbPoint> &points) { takeFrame(points, m_now); }

private:
    SharedTime m_now = 1'000'000'000;
};

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
    void views_fill_the_window_best_data();
    void views_fill_the_window_best();
    void one_view_can_be_shown_alone();
    void a_view_shows_a_frame_only_while_output_is_enabled();
    void a_view_keeps_its_frame_until_the_next();
    void a_held_frame_stays_and_is_drawn_up_to_a_point();
    void marks_are_painted_over_the_light();
    void a_view_without_a_line_is_all_field();
    void a_dark_view_is_not_painted_again();
    void the_window_is_first_placed_beside_the_game_data();
    void the_window_is_first_placed_beside_the_game();
};

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

void tst_HostParts::one_view_can_be_shown_alone()
{
    ViewGrid grid;
    QList<QWidget *> views;
    for (int i = 0; i < 4; ++i) {
        views.append(new QWidget);
        grid.add(views.back());
    }
    grid.resize(400, 400);
    grid.show();
    QVERIFY(views[0]->width() < 200 && views[3]->isVisible());
    grid.setAlone(views[2]);
    QCOMPARE(views[2]->size(), grid.size());
    QVERIFY(views[2]->isVisible() && !views[0]->isVisible());
    grid.setCount(2);
    QVERIFY(!grid.alone() && views[0]->isVisible() && !views[2]->isVisible());
    grid.setCount(0);
    QVERIFY(!views[0]->isVisible());
}

void tst_HostParts::a_view_shows_a_frame_only_while_output_is_enabled()
{
    WatchedView view;
    view.take(whiteLine());
    view.watch();
    QCOMPARE(litPixels(view), 0);
    view.setOutputOn(true);
    view.watch();
    QVERIFY(litPixels(view) > 100);
    view.setOutputOn(false);
    view.watch(1);
    QCOMPARE(litPixels(view), 0);
}

void tst_HostParts::a_view_keeps_its_frame_until_the_next()
{
    WatchedView view;
    view.setOutputOn(true);
    view.take(whiteLine());
    view.watch();
    QVERIFY(litPixels(view) > 100);
    view.watch(300);
    QVERIFY(litPixels(view) > 100);
    view.take({});
    view.watch();
    QCOMPARE(litPixels(view), 0);
}

void tst_HostParts::a_held_frame_stays_and_is_drawn_up_to_a_point()
{
    WatchedView view;
    view.setOutputOn(true);
    view.take(whiteLine());
    view.watch();
    view.hold(true);
    view.take({});
    view.watch(60);
    QCOMPARE(view.frame().size(), whiteLine().size());
    const int whole = litPixels(view);
    QVERIFY(whole > 100);
    view.setPointsShown(30);
    view.watch(60);
    QVERIFY(litPixels(view) > whole / 4);
    QVERIFY(litPixels(view) < whole * 3 / 4);
    view.setPointsShown(-5);
    view.watch(60);
    QCOMPARE(litPixels(view), 0);
    view.hold(false);
    view.watch(60);
    QVERIFY(view.frame().empty());
    QCOMPARE(litPixels(view), 0);
}

void tst_HostParts::marks_are_painted_over_the_light()
{
    const std::vector<LdbPoint> points = strokeOf({-20000, 20000}, {20000, 20000}, 4)
        + strokeOf({-20000, -20000}, {20000, -20000}, 4);
    const auto colorsOf = [&points](const Marks &marks, const QPoint &from, const QPoint &to) {
        WatchedView view;
        view.take(points);
        view.setMarks(marks);
        view.watch(1);
        const QImage picture = view.grab(QRect(from, to)).toImage();
        QList<QRgb> colors;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (qGray(picture.pixel(x, y)) > 60 && !colors.contains(picture.pixel(x, y)))
                    colors.append(picture.pixel(x, y));
            }
        }
        return colors.size();
    };
    // The first line, and the area between the lines, which the beam crosses.
    const QPoint line[] = {{30, 40}, {270, 80}};
    const QPoint travel[] = {{100, 120}, {200, 180}};
    QCOMPARE(colorsOf({}, line[0], line[1]), 0);
    QVERIFY(colorsOf({.points = true}, line[0], line[1]) > 0);
    QCOMPARE(colorsOf({.points = true}, travel[0], travel[1]), 0);
    QVERIFY(colorsOf({.travel = true}, travel[0], travel[1]) > 0);
    QCOMPARE(colorsOf({.order = true}, travel[0], travel[1]), 0);
    QVERIFY(colorsOf({.order = true}, line[0], line[1]) > 3);
}

void tst_HostParts::a_view_without_a_line_is_all_field()
{
    WatchedView plain;
    WatchedView named;
    named.setLineShown(true);
    for (WatchedView *view : {&plain, &named}) {
        view->setOutputOn(true);
        view->take(strokeOf({-32768, -32768}, {32768, -32768}, 60));
        view->watch();
    }
    const auto lowestLit = [](QWidget &view) {
        const QImage picture = view.grab().toImage();
        int y = picture.height() - 1;
        while (y > 0 && qGray(picture.pixel(150, y)) < 100)
            --y;
        return y;
    };
    QVERIFY(lowestLit(plain) > 280);
    QVERIFY(lowestLit(named) < 280);
}

void tst_HostParts::a_dark_view_is_not_painted_again()
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
    WatchedView view;
    view.installEventFilter(&counter);
    view.setOutputOn(true);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const auto isPainted = [&] {
        const int before = counter.paints;
        view.watch(1);
        QCoreApplication::processEvents();
        return counter.paints > before;
    };
    QTRY_VERIFY(!isPainted());
    view.take(whiteLine());
    QVERIFY(isPainted());
    QVERIFY(isPainted());
    view.take({});
    QVERIFY(isPainted());
    view.watch(100);
    QCoreApplication::processEvents();
    QVERIFY(!isPainted());
    view.setOutputOn(false);
    view.take(whiteLine());
    QVERIFY(isPainted());
    QVERIFY(!isPainted());
}

void tst_HostParts::the_window_is_first_placed_beside_the_game_data()
{
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<bool>("hasRoom");
    QTest::addColumn<QSize>("size");
    QTest::addRow("wide") << QRect(0, 0, 1920, 1080) << true << QSize(900, 720);
    QTest::addRow("with a bar above") << QRect(0, 30, 1920, 1050) << true << QSize(900, 720);
    QTest::addRow("second screen") << QRect(1920, 0, 1600, 1200) << true << QSize(900, 720);
    QTest::addRow("tall") << QRect(0, 0, 1080, 1920) << true << QSize(900, 720);
    QTest::addRow("very wide") << QRect(0, 0, 3440, 700) << true << QSize(900, 700);
    QTest::addRow("small") << QRect(0, 0, 1366, 728) << false << smallest;
}

void tst_HostParts::the_window_is_first_placed_beside_the_game()
{
    QFETCH(QRect, screen);
    const QRect place = placeBesideGame(screen, smallest);
    const QRect game(screen.topLeft(), QSize(937, 420));
    QVERIFY(screen.contains(place));
    QTEST(place.size(), "size");
    QTEST(!place.intersects(game), "hasRoom");
}

QTEST_MAIN(tst_HostParts)

#include "tst_hostparts.moc"
