#include "badbey.h"
#include "drawing.h"
#include "strokes.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr auto lowest = std::numeric_limits<qint32>::min();
constexpr auto highest = std::numeric_limits<qint32>::max();

QList<FramePoint> drawnCircle(int radius, Point centre, int steps)
{
    BadBey bey;
    addCircle(bey, radius, centre, color, BallObject, steps);
    return bey.points;
}

} // namespace

class tst_Shapes : public QObject
{
    Q_OBJECT

private slots:
    void a_circle_runs_counter_clockwise_from_its_rightmost_point();
    void a_circle_closes_at_its_rightmost_point_data();
    void a_circle_closes_at_its_rightmost_point();
    void a_circle_of_zero_steps_draws_nothing();
    void a_circle_of_negative_steps_is_its_closing_point_data();
    void a_circle_of_negative_steps_is_its_closing_point();
    void points_out_of_range_are_omitted_from_a_circle();
    void a_circle_wholly_out_of_range_adds_nothing();
    void a_circle_does_not_affect_a_begun_line();

    void a_rectangle_is_one_clockwise_stroke_data();
    void a_rectangle_is_one_clockwise_stroke();
    void a_rectangle_at_half_units_is_truncated_toward_zero();
    void a_rectangle_of_fewer_than_four_steps_draws_nothing();
};

void tst_Shapes::a_circle_runs_counter_clockwise_from_its_rightmost_point()
{
    // Eight steps at radius 1000: 707.1 is truncated toward zero around the origin.
    QCOMPARE(drawnCircle(1000, {0, 0}, 8),
        (QList{travel(1000, 0), at(1000, 0, 1), at(707, 707), at(0, 1000), at(-707, 707),
            at(-1000, 0), at(-707, -707), at(0, -1000), at(707, -707), at(1000, 0, 1),
            travel(1000, 0)}));
}

void tst_Shapes::a_circle_closes_at_its_rightmost_point_data()
{
    QTest::addColumn<int>("radius");
    QTest::addColumn<Point>("centre");
    QTest::addColumn<int>("steps");
    QTest::addRow("ball") << 800 << Point{0, 0} << 20;
    QTest::addRow("ball on the left paddle") << 800 << Point{-31200, 4567} << 20;
    QTest::addRow("ball at the top") << 800 << Point{1234, 31251} << 20;
    QTest::addRow("one step") << 10 << Point{1, 2} << 1;
    QTest::addRow("negative radius") << -500 << Point{100, 100} << 12;
}

void tst_Shapes::a_circle_closes_at_its_rightmost_point()
{
    QFETCH(int, radius);
    QFETCH(Point, centre);
    QFETCH(int, steps);
    const auto points = drawnCircle(radius, centre, steps);
    QCOMPARE(points.size(), steps + 3);
    QCOMPARE(points.first(), travel(centre.x + radius, centre.y));
    QCOMPARE(points.last(), travel(centre.x + radius, centre.y));
    QCOMPARE(points[1], at(centre.x + radius, centre.y, 1));
    QCOMPARE(points[steps + 1], at(centre.x + radius, centre.y, 1));
    for (int i = 1; i < steps; ++i) {
        const double angle = 2 * std::acos(-1.0) * i / steps;
        const FramePoint &point = points[i + 1];
        QCOMPARE(point, at(point.x, point.y));
        QVERIFY(std::fabs(point.x - centre.x - radius * std::cos(angle)) < 1.001);
        QVERIFY(std::fabs(point.y - centre.y - radius * std::sin(angle)) < 1.001);
    }
}

void tst_Shapes::a_circle_of_zero_steps_draws_nothing()
{
    QCOMPARE(drawnCircle(800, {0, 0}, 0), QList<FramePoint>());
}

void tst_Shapes::a_circle_of_negative_steps_is_its_closing_point_data()
{
    QTest::addColumn<int>("steps");
    QTest::addRow("-1") << -1;
    QTest::addRow("-20") << -20;
    QTest::addRow("the lowest") << lowest;
}

void tst_Shapes::a_circle_of_negative_steps_is_its_closing_point()
{
    QFETCH(int, steps);
    QCOMPARE(drawnCircle(800, {3, 4}, steps), (QList{travel(803, 4), at(803, 4), travel(803, 4)}));
}

void tst_Shapes::points_out_of_range_are_omitted_from_a_circle()
{
    // The right corner of the diamond, where it begins and ends, is out of range. The lowest is
    // slightly to the left, because the constant of the full turn has only ten digits.
    const auto points = drawnCircle(1000, {32000, 0}, 4);
    QCOMPARE(points,
        (QList{travel(32000, 1000), at(32000, 1000, 1), at(31000, 0), at(31999, -1000, 1),
            travel(31999, -1000)}));
}

void tst_Shapes::a_circle_wholly_out_of_range_adds_nothing()
{
    for (const Point centre : {Point{40000, 0}, Point{0, -40000}, Point{highest, lowest}})
        QCOMPARE(drawnCircle(800, centre, 20), QList<FramePoint>());
}

void tst_Shapes::a_circle_does_not_affect_a_begun_line()
{
    drawnLine({10, 0}, {5, 0}, 1, LineBegin);
    drawnCircle(800, {0, 0}, 20);
    QCOMPARE(drawnLine({0, 10}, {10, 5}, 1, LineEnd).size(), 6);
}

void tst_Shapes::a_rectangle_is_one_clockwise_stroke_data()
{
    QTest::addColumn<int>("steps");
    QTest::addColumn<int>("side");
    QTest::addRow("80 steps") << 80 << 20;
    QTest::addRow("83 steps") << 83 << 20;
    QTest::addRow("68 steps") << 68 << 17;
    QTest::addRow("4 steps") << 4 << 1;
}

void tst_Shapes::a_rectangle_is_one_clockwise_stroke()
{
    QFETCH(int, steps);
    QFETCH(int, side);
    BadBey bey;
    addRect(bey, {8000, 16000}, {-10666, 10666}, color, LeftScoreObject, steps);
    const Point topLeft = {-14666, 18666};
    const Point topRight = {-6666, 18666};
    const Point bottomRight = {-6666, 2666};
    const Point bottomLeft = {-14666, 2666};
    QCOMPARE(bey.points,
        StrokeModel(color)
            .line(topLeft, topRight, side)
            .line(topRight, bottomRight, side)
            .line(bottomRight, bottomLeft, side)
            .line(bottomLeft, topLeft, side)
            .finished());
    QCOMPARE(bey.points.size(), 4 * (side + 1) + 2);
}

void tst_Shapes::a_rectangle_at_half_units_is_truncated_toward_zero()
{
    // The edges of a 5 by 5 rectangle around (0, 0) are at 2.5 units, their centres at 2.
    BadBey bey;
    addRect(bey, {5, 5}, {0, 0}, color, LeftScoreObject, 4);
    QCOMPARE(bey.points,
        (QList{travel(-2, 2), at(-2, 2, 1), at(2, 2, 1), at(2, 2), at(2, -2, 1), at(2, -2),
            at(-2, -2, 1), at(-2, -2), at(-2, 2, 1), travel(-2, 2)}));
}

void tst_Shapes::a_rectangle_of_fewer_than_four_steps_draws_nothing()
{
    BadBey bey;
    for (const int steps : {0, 3, -3})
        addRect(bey, {100, 100}, {0, 0}, color, LeftScoreObject, steps);
    QCOMPARE(bey.points, QList<FramePoint>());
}

QTEST_GUILESS_MAIN(tst_Shapes)

#include "tst_shapes.moc"
