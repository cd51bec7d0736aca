#include "badbey.h"
#include "drawing.h"
#include "strokes.h"

#include <QTest>

#include <algorithm>
#include <limits>

namespace {

/// One stroke of a glyph: its start, and the end and steps of each of its lines.
struct Outline
{
    struct Leg
    {
        Point to;
        int steps;
    };
    Point from;
    QList<Leg> legs;
};

/// The points of outlines given in multiples of `unit` around an origin.
QList<FramePoint> modelOf(const QList<Outline> &outlines, Point origin, int unit)
{
    const auto placed = [origin, unit](Point corner) {
        return Point{origin.x + corner.x * unit, origin.y + corner.y * unit};
    };
    QList<FramePoint> points;
    for (const Outline &outline : outlines) {
        StrokeModel stroke(color);
        Point from = outline.from;
        for (const auto &[to, steps] : outline.legs) {
            stroke.line(placed(from), placed(to), steps);
            from = to;
        }
        points += stroke.finished();
    }
    return points;
}

// The corners of a digit's cell: top, middle, bottom; left and right.
constexpr Point topLeft = {-1, 2};
constexpr Point topRight = {1, 2};
constexpr Point midLeft = {-1, 0};
constexpr Point midRight = {1, 0};
constexpr Point lowLeft = {-1, -2};
constexpr Point lowRight = {1, -2};

QList<Outline> outlinesOfDigit(int digit, int n)
{
    const auto ring = [](int steps) {
        return Outline{topLeft,
            {{topRight, steps / 4}, {lowRight, steps / 4}, {lowLeft, steps / 4},
                {topLeft, steps / 4}}};
    };
    switch (digit) {
    case 0:
        return {ring(n)};
    case 1:
        return {{{0, 2}, {{{0, -2}, n}}}};
    case 2:
        return {{topLeft,
            {{topRight, n / 5}, {midRight, n / 5}, {midLeft, n / 5}, {lowLeft, n / 5},
                {lowRight, n / 5}}}};
    case 3:
        return {{topLeft, {{topRight, n / 5}, {lowRight, 2 * n / 5}, {lowLeft, n / 5}}},
            {midLeft, {{midRight, n / 5}}}};
    case 4:
        return {{topLeft, {{midLeft, n / 4}, {midRight, n / 4}}}, {topRight, {{lowRight, n / 2}}}};
    case 5:
        return {{topRight,
            {{topLeft, n / 5}, {midLeft, n / 5}, {midRight, n / 5}, {lowRight, n / 5},
                {lowLeft, n / 5}}}};
    case 6:
        return {{topRight,
            {{topLeft, n / 6}, {lowLeft, n / 3}, {lowRight, n / 6}, {midRight, n / 6},
                {midLeft, n / 6}}}};
    case 7:
        return {{topLeft, {{topRight, n / 3}, {lowRight, 2 * n / 3}}}};
    case 8:
        return {ring(6 * n / 7), {midLeft, {{midRight, n / 7}}}};
    case 9:
        return {{midRight,
            {{midLeft, n / 6}, {topLeft, n / 6}, {topRight, n / 6}, {lowRight, n / 3},
                {lowLeft, n / 6}}}};
    default:
        return {};
    }
}

QList<Outline> outlinesOfPlay(int n)
{
    const int a = n / 5;
    const int b = n / 10;
    const Outline p = {{0, 0}, {{{128, 0}, a}, {{128, 64}, a}, {{0, 64}, a}, {{0, -64}, b}}};
    const Outline l = {{160, 64}, {{{160, -64}, b}, {{288, -64}, b}}};
    const Outline roofOfA = {{320, -64}, {{{384, 64}, b}, {{448, -64}, b}}};
    const Outline barOfA = {{352, 0}, {{{416, 0}, a}}};
    const Outline armsOfY = {{480, 64}, {{{544, 0}, a}, {{608, 64}, a}}};
    const Outline stemOfY = {{544, 0}, {{{544, -64}, a}}};
    return {p, l, roofOfA, barOfA, armsOfY, stemOfY};
}

QList<Outline> outlinesOfWins(int n)
{
    const int c = n / 12;
    const int d = n / 25;
    const Outline w = {{0, 64}, {{{0, -64}, c}, {{64, 0}, c}, {{128, -64}, c}, {{128, 64}, c}}};
    const Outline i = {{184, 64}, {{{184, -64}, d}}};
    const Outline nn = {{240, -64}, {{{240, 64}, c}, {{368, -64}, c}, {{368, 64}, c}}};
    const Outline s = {{528, 64},
        {{{400, 64}, d}, {{400, 0}, d}, {{528, 0}, d}, {{528, -64}, d}, {{400, -64}, d}}};
    return {w, i, nn, s};
}

} // namespace

class tst_Glyphs : public QObject
{
    Q_OBJECT

private slots:
    void a_digit_has_its_strokes_in_order_data();
    void a_digit_has_its_strokes_in_order();
    void a_digit_in_play_has_its_number_of_points_data();
    void a_digit_in_play_has_its_number_of_points();
    void values_that_are_not_digits_draw_nothing_data();
    void values_that_are_not_digits_draw_nothing();
    void the_captions_have_their_strokes_in_order_data();
    void the_captions_have_their_strokes_in_order();
    void the_captions_span_their_words();
};

void tst_Glyphs::a_digit_has_its_strokes_in_order_data()
{
    QTest::addColumn<int>("digit");
    QTest::addColumn<int>("scale");
    QTest::addColumn<Point>("centre");
    QTest::addColumn<int>("steps");
    for (int digit = 0; digit <= 9; ++digit) {
        QTest::addRow("%d as a score", digit) << digit << 25 << Point{-10666, 10666} << 80;
        QTest::addRow("%d as a winner", digit) << digit << 12 << Point{12800, 8000} << 60;
        QTest::addRow("%d with an odd scale", digit) << digit << 7 << Point{-33, 1} << 41;
    }
}

void tst_Glyphs::a_digit_has_its_strokes_in_order()
{
    QFETCH(int, digit);
    QFETCH(int, scale);
    QFETCH(Point, centre);
    QFETCH(int, steps);
    BadBey bey;
    addDigit(bey, digit, scale, centre, color, LeftScoreObject, steps);
    QCOMPARE(bey.points, modelOf(outlinesOfDigit(digit, steps), centre, 160 * scale));
}

void tst_Glyphs::a_digit_in_play_has_its_number_of_points_data()
{
    QTest::addColumn<int>("digit");
    QTest::addColumn<int>("count");
    const int counts[] = {86, 83, 87, 88, 87, 87, 85, 83, 88, 85};
    for (int digit = 0; digit <= 9; ++digit)
        QTest::addRow("%d", digit) << digit << counts[digit];
}

void tst_Glyphs::a_digit_in_play_has_its_number_of_points()
{
    QFETCH(int, digit);
    BadBey bey;
    addDigit(bey, digit, 25, {10666, 10666}, color, RightScoreObject, 80);
    QTEST(int(bey.points.size()), "count");
}

void tst_Glyphs::values_that_are_not_digits_draw_nothing_data()
{
    QTest::addColumn<int>("digit");
    QTest::addRow("10") << 10;
    QTest::addRow("11") << 11;
    QTest::addRow("-1") << -1;
    QTest::addRow("the lowest") << std::numeric_limits<int>::min();
    QTest::addRow("the highest") << std::numeric_limits<int>::max();
}

void tst_Glyphs::values_that_are_not_digits_draw_nothing()
{
    QFETCH(int, digit);
    BadBey bey;
    addDigit(bey, digit, 25, {0, 0}, color, LeftScoreObject, 80);
    QCOMPARE(bey.points, QList<FramePoint>());
}

void tst_Glyphs::the_captions_have_their_strokes_in_order_data()
{
    QTest::addColumn<int>("scale");
    QTest::addColumn<Point>("origin");
    QTest::addColumn<int>("steps");
    QTest::addRow("as shown, PLAY") << 30 << Point{-12800, 8000} << 200;
    QTest::addRow("as shown, WINS") << 30 << Point{-8000, -8000} << 250;
    QTest::addRow("another scale") << 7 << Point{-33, 1} << 133;
}

void tst_Glyphs::the_captions_have_their_strokes_in_order()
{
    QFETCH(int, scale);
    QFETCH(Point, origin);
    QFETCH(int, steps);
    BadBey bey;
    addWinnerCaptionTop(bey, scale, origin, color, WinnerObject, steps);
    QCOMPARE(bey.points, modelOf(outlinesOfPlay(steps), origin, scale));
    bey.points.clear();
    addWinnerCaptionBottom(bey, scale, origin, color, WinnerObject, steps);
    QCOMPARE(bey.points, modelOf(outlinesOfWins(steps), origin, scale));
}

void tst_Glyphs::the_captions_span_their_words()
{
    const auto spanOf = [](const QList<FramePoint> &points) {
        const auto byX = [](const FramePoint &a, const FramePoint &b) { return a.x < b.x; };
        const auto [left, right] = std::minmax_element(points.begin(), points.end(), byX);
        return std::pair(left->x, right->x);
    };
    BadBey bey;
    addWinnerCaptionTop(bey, 30, {-12800, 8000}, color, WinnerObject, 200);
    QCOMPARE(spanOf(bey.points), std::pair(-12800, 5440));
    bey.points.clear();
    addWinnerCaptionBottom(bey, 30, {-8000, -8000}, color, WinnerObject, 250);
    QCOMPARE(spanOf(bey.points), std::pair(-8000, 7840));
}

QTEST_GUILESS_MAIN(tst_Glyphs)

#include "tst_glyphs.moc"
