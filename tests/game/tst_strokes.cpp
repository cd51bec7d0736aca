#include "badbey.h"
#include "drawing.h"
#include "strokes.h"

#include <QRegularExpression>
#include <QTest>

#include <limits>

namespace {

constexpr auto lowest = std::numeric_limits<qint32>::min();
constexpr auto highest = std::numeric_limits<qint32>::max();
constexpr auto infinity = std::numeric_limits<float>::infinity();
constexpr auto noNumber = std::numeric_limits<float>::quiet_NaN();

/// Discards the begun stroke of an earlier test.
void forgetStroke()
{
    drawnLine({0, 0}, {0, 0}, 0, LineBegin);
}

} // namespace

class tst_Strokes : public QObject
{
    Q_OBJECT

private slots:
    void init() { forgetStroke(); }

    void a_stroke_is_enclosed_by_blanked_travels();
    void the_object_index_changes_no_point();
    void an_empty_stroke_adds_nothing();
    void a_list_of_8192_points_is_kept_and_a_longer_one_dropped_data();
    void a_list_of_8192_points_is_kept_and_a_longer_one_dropped();
    void drawing_continues_after_a_drop();

    void a_line_has_both_ends_and_even_steps_data();
    void a_line_has_both_ends_and_even_steps();
    void a_line_is_truncated_to_whole_units_toward_zero();
    void a_line_of_zero_steps_draws_nothing_data();
    void a_line_of_zero_steps_draws_nothing();
    void zero_steps_still_discard_the_begun_stroke_data();
    void zero_steps_still_discard_the_begun_stroke();
    void a_line_of_negative_steps_is_its_end_point_data();
    void a_line_of_negative_steps_is_its_end_point();
    void lines_join_into_one_stroke_with_every_corner_marked();
    void the_stroke_is_shared_by_all_lines();
    void a_single_line_discards_the_begun_stroke();
    void points_out_of_range_are_omitted_from_a_line_data();
    void points_out_of_range_are_omitted_from_a_line();
    void the_range_applies_to_the_truncated_value();
    void a_line_wholly_out_of_range_adds_nothing_data();
    void a_line_wholly_out_of_range_adds_nothing();
};

void tst_Strokes::a_stroke_is_enclosed_by_blanked_travels()
{
    BadBey bey;
    bey.points = {at(1, 2)};
    appendStroke(bey, {at(-5, 6, 1), at(7, 8), at(9, -10, 1)}, BallObject);
    QCOMPARE(bey.points,
        (QList{at(1, 2), travel(-5, 6), at(-5, 6, 1), at(7, 8), at(9, -10, 1), travel(9, -10)}));
    bey.points.clear();
    appendStroke(bey, {at(3, 4)}, BallObject);
    QCOMPARE(bey.points, (QList{travel(3, 4), at(3, 4), travel(3, 4)}));
}

void tst_Strokes::the_object_index_changes_no_point()
{
    for (const int object : {0, 8, -1, lowest, highest}) {
        BadBey bey;
        appendStroke(bey, {at(3, 4)}, object);
        QCOMPARE(bey.points, (QList{travel(3, 4), at(3, 4), travel(3, 4)}));
    }
}

void tst_Strokes::an_empty_stroke_adds_nothing()
{
    BadBey bey;
    bey.points = {at(1, 2)};
    appendStroke(bey, {}, BallObject);
    QCOMPARE(bey.points, QList{at(1, 2)});
}

void tst_Strokes::a_list_of_8192_points_is_kept_and_a_longer_one_dropped_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("stroke");
    QTest::addColumn<int>("after");
    QTest::addRow("8191") << 8179 << 10 << 8191;
    QTest::addRow("8192") << 8180 << 10 << 8192;
    QTest::addRow("8193") << 8181 << 10 << 0;
    QTest::addRow("8192 in one stroke") << 0 << 8190 << 8192;
    QTest::addRow("8193 in one stroke") << 0 << 8191 << 0;
    QTest::addRow("far too many") << 8000 << 9000 << 0;
}

void tst_Strokes::a_list_of_8192_points_is_kept_and_a_longer_one_dropped()
{
    QFETCH(int, before);
    QFETCH(int, stroke);
    QFETCH(int, after);
    BadBey bey;
    bey.points.fill(at(0, 0), before);
    if (after == 0) {
        const QRegularExpression count(QStringLiteral("\\b%1\\b").arg(before + stroke + 2));
        QTest::ignoreMessage(QtDebugMsg, count);
    }
    appendStroke(bey, QList<FramePoint>(stroke, at(1, 1)), BallObject);
    QCOMPARE(bey.points.size(), after);
}

void tst_Strokes::drawing_continues_after_a_drop()
{
    BadBey bey;
    bey.points.fill(at(0, 0), 8192);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("\\b8195\\b")));
    appendStroke(bey, {at(1, 1)}, BallObject);
    appendStroke(bey, {at(2, 2)}, BallObject);
    QCOMPARE(bey.points, (QList{travel(2, 2), at(2, 2), travel(2, 2)}));
}

void tst_Strokes::a_line_has_both_ends_and_even_steps_data()
{
    QTest::addColumn<Point>("from");
    QTest::addColumn<Point>("to");
    QTest::addColumn<int>("steps");
    QTest::addRow("paddle") << Point{-32000, -5000} << Point{-32000, 5000} << 20;
    QTest::addRow("border") << Point{-32000, 32000} << Point{32000, 32000} << 50;
    QTest::addRow("leftward") << Point{32000, -32000} << Point{-32000, -32000} << 50;
    QTest::addRow("downward") << Point{100, 3000} << Point{100, -1000} << 7;
    QTest::addRow("diagonal") << Point{-100, -900} << Point{200, 5000} << 13;
    QTest::addRow("one step") << Point{-6, 4} << Point{6, 8} << 1;
    QTest::addRow("more steps than units") << Point{-2, 0} << Point{2, 0} << 9;
    QTest::addRow("of zero length") << Point{5, 6} << Point{5, 6} << 3;
}

void tst_Strokes::a_line_has_both_ends_and_even_steps()
{
    QFETCH(Point, from);
    QFETCH(Point, to);
    QFETCH(int, steps);
    const StrokeSize size = {static_cast<float>(to.x - from.x), static_cast<float>(to.y - from.y)};
    const auto points = drawnLine(size, {(from.x + to.x) / 2, (from.y + to.y) / 2}, steps);
    QCOMPARE(points.size(), steps + 3);
    QCOMPARE(points, StrokeModel(color).line(from, to, steps).finished());
}

void tst_Strokes::a_line_is_truncated_to_whole_units_toward_zero()
{
    // A width of 5 begins and ends at halves: -2.5, -1.25, 0, 1.25, 2.5 around the centre.
    QCOMPARE(drawnLine({5, 0}, {0, 0}, 4),
        (QList{travel(-2, 0), at(-2, 0, 1), at(-1, 0), at(0, 0), at(1, 0), at(2, 0, 1),
            travel(2, 0)}));
    QCOMPARE(drawnLine({0, 5}, {-7, -1}, 4),
        (QList{travel(-7, -3), at(-7, -3, 1), at(-7, -2), at(-7, -1), at(-7, 0), at(-7, 1, 1),
            travel(-7, 1)}));
}

void tst_Strokes::a_line_of_zero_steps_draws_nothing_data()
{
    QTest::addColumn<int>("mode");
    QTest::addRow("single") << int(LineSingle);
    QTest::addRow("begin") << int(LineBegin);
    QTest::addRow("continue") << int(LineContinue);
    QTest::addRow("end") << int(LineEnd);
}

void tst_Strokes::a_line_of_zero_steps_draws_nothing()
{
    QFETCH(int, mode);
    QCOMPARE(drawnLine({100, 100}, {0, 0}, 0, mode), QList<FramePoint>());
}

void tst_Strokes::zero_steps_still_discard_the_begun_stroke_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("forgotten");
    QTest::addRow("single") << int(LineSingle) << true;
    QTest::addRow("begin") << int(LineBegin) << true;
    QTest::addRow("continue") << int(LineContinue) << false;
    QTest::addRow("end") << int(LineEnd) << false;
}

void tst_Strokes::zero_steps_still_discard_the_begun_stroke()
{
    QFETCH(int, mode);
    QFETCH(bool, forgotten);
    drawnLine({10, 0}, {5, 0}, 1, LineBegin);
    drawnLine({0, 0}, {0, 0}, 0, mode);
    const auto finished = drawnLine({0, 10}, {10, 5}, 1, LineEnd);
    QCOMPARE(finished.size(), forgotten ? 4 : 6);
    QCOMPARE(finished.first(), forgotten ? travel(10, 0) : travel(0, 0));
}

void tst_Strokes::a_line_of_negative_steps_is_its_end_point_data()
{
    QTest::addColumn<int>("steps");
    QTest::addRow("-1") << -1;
    QTest::addRow("the lowest") << lowest;
}

void tst_Strokes::a_line_of_negative_steps_is_its_end_point()
{
    QFETCH(int, steps);
    QCOMPARE(
        drawnLine({100, 50}, {3, 4}, steps), (QList{travel(53, 29), at(53, 29), travel(53, 29)}));
}

void tst_Strokes::lines_join_into_one_stroke_with_every_corner_marked()
{
    BadBey bey;
    addLine(bey, {10, 0}, {5, 0}, color, BallObject, 2, LineBegin);
    addLine(bey, {0, 10}, {10, 5}, color, BallObject, 2, LineContinue);
    QVERIFY(bey.points.isEmpty());
    addLine(bey, {-10, 0}, {5, 10}, color, BallObject, 1, LineEnd);
    QCOMPARE(bey.points,
        (QList{travel(0, 0), at(0, 0, 1), at(5, 0), at(10, 0, 1), at(10, 0), at(10, 5),
            at(10, 10, 1), at(10, 10), at(0, 10, 1), travel(0, 10)}));
}

void tst_Strokes::the_stroke_is_shared_by_all_lines()
{
    // A stroke begun in one list and ended in another is appended completely to the second. Ending
    // again appends it again: only a single or a beginning line discards it.
    QVERIFY(drawnLine({10, 0}, {5, 0}, 1, LineBegin).isEmpty());
    const auto stroke = drawnLine({0, 10}, {10, 5}, 1, LineEnd);
    QCOMPARE(stroke,
        (QList{travel(0, 0), at(0, 0, 1), at(10, 0, 1), at(10, 0), at(10, 10, 1), travel(10, 10)}));
    QCOMPARE(drawnLine({0, 10}, {10, 15}, -1, LineEnd).size(), stroke.size() + 1);
}

void tst_Strokes::a_single_line_discards_the_begun_stroke()
{
    drawnLine({10, 0}, {5, 0}, 1, LineBegin);
    QCOMPARE(drawnLine({2, 0}, {1, 0}, 1),
        (QList{travel(0, 0), at(0, 0, 1), at(2, 0, 1), travel(2, 0)}));
}

void tst_Strokes::points_out_of_range_are_omitted_from_a_line_data()
{
    QTest::addColumn<float>("length");
    QTest::addColumn<Point>("centre");
    QTest::addColumn<QList<FramePoint>>("kept");
    // Five points around the centre: -2000, -1000, 0, 1000, 2000 on both axes.
    QTest::addRow("right") << 4000.0F << Point{32000, 0}
                           << QList{at(30000, -2000, 1), at(31000, -1000), at(32000, 0, 1)};
    QTest::addRow("left") << 4000.0F << Point{-32000, 0}
                          << QList{at(-32000, 0, 1), at(-31000, 1000), at(-30000, 2000, 1)};
    QTest::addRow("top") << 4000.0F << Point{0, 32000}
                         << QList{at(-2000, 30000, 1), at(-1000, 31000), at(0, 32000, 1)};
    QTest::addRow("bottom") << 4000.0F << Point{0, -32000}
                            << QList{at(0, -32000, 1), at(1000, -31000), at(2000, -30000, 1)};
    QTest::addRow("all but one") << 4000.0F << Point{34000, 5} << QList{at(32000, -1995)};
    QTest::addRow("both ends") << 120000.0F << Point{0, 0}
                               << QList{at(-30000, -30000, 1), at(0, 0), at(30000, 30000, 1)};
}

void tst_Strokes::points_out_of_range_are_omitted_from_a_line()
{
    QFETCH(float, length);
    QFETCH(Point, centre);
    QFETCH(QList<FramePoint>, kept);
    const QList<FramePoint> expected = QList{travel(kept.first().x, kept.first().y)} + kept
        + QList{travel(kept.last().x, kept.last().y)};
    QCOMPARE(drawnLine({length, length}, centre, 4), expected);
}

void tst_Strokes::the_range_applies_to_the_truncated_value()
{
    // A line of zero or one unit at the edge of the range; halves are truncated first.
    const auto kept = [](Point centre, float width) {
        return !drawnLine({width, 0}, centre, -1).isEmpty();
    };
    QVERIFY(kept({32767, 0}, 0));
    QVERIFY(kept({32767, 0}, 1)); // 32767.5
    QVERIFY(!kept({32768, 0}, 0));
    QVERIFY(kept({-32768, 0}, 0));
    QVERIFY(kept({-32768, 0}, -1)); // -32768.5
    QVERIFY(!kept({-32769, 0}, 0));
    QVERIFY(kept({0, 32767}, 0));
    QVERIFY(!kept({0, 32768}, 0));
    QVERIFY(kept({0, -32768}, 0));
    QVERIFY(!kept({0, -32769}, 0));
}

void tst_Strokes::a_line_wholly_out_of_range_adds_nothing_data()
{
    QTest::addColumn<Point>("centre");
    QTest::addColumn<float>("width");
    QTest::addRow("to the right") << Point{40000, 0} << 100.0F;
    QTest::addRow("below") << Point{0, -40000} << 100.0F;
    QTest::addRow("at the highest number") << Point{highest, highest} << 100.0F;
    QTest::addRow("at the lowest number") << Point{lowest, lowest} << 100.0F;
    QTest::addRow("infinite") << Point{0, 0} << infinity;
    QTest::addRow("NaN") << Point{0, 0} << noNumber;
}

void tst_Strokes::a_line_wholly_out_of_range_adds_nothing()
{
    QFETCH(Point, centre);
    QFETCH(float, width);
    QCOMPARE(drawnLine({width, 0}, centre, 10), QList<FramePoint>());
}

QTEST_GUILESS_MAIN(tst_Strokes)

#include "tst_strokes.moc"
